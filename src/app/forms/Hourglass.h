#pragma once

#include <QGuiApplication>

namespace marisonde {

/// The pointer says "wait" as long as this lives.
class Hourglass {
  public:
    Hourglass() { QGuiApplication::setOverrideCursor(Qt::WaitCursor); }
    ~Hourglass() { QGuiApplication::restoreOverrideCursor(); }
    Hourglass(const Hourglass&) = delete;
    Hourglass& operator=(const Hourglass&) = delete;
};

}  // namespace marisonde
