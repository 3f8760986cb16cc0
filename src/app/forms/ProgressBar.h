#pragma once

#include <QProgressBar>

#include "common/Clock.h"
#include "files/LineReader.h"

namespace marisonde {

/// Ten times a second is all that an eye follows; painting takes time from the work that it tells of.
inline constexpr Millis kBetweenPaintings{100};

/// The share of a file that has been read, from 0 to 1: 0 of an empty one, 1 of one that has grown meanwhile.
double ShareDone(const ReadProgress& progress);

/// Shows which share of a work is done, in steps as fine as the screen.
class ProgressBar final : public QProgressBar {
    Q_OBJECT

  public:
    ProgressBar(QWidget* parent, const char* name, const QString& meaning);

    /// From 0 to 1.
    void ShowShare(double share);
};

}  // namespace marisonde
