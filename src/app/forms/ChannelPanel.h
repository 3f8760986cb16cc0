#pragma once

#include <QColor>
#include <QWidget>
#include <array>
#include <string_view>
#include <vector>

#include "common/InstTypes.h"

class QFrame;
class QLabel;

namespace marisonde {

/// One channel as the panel shows it.
struct ChannelRow {
    int box = 0;   ///< index of its DataBox
    QString name;  ///< such as "bb(470)"
    QString unit;  ///< such as "1/m"; may be empty
    QColor color;  ///< of its curve
};

/// The channels of an instrument beside the graph: colour, name and current value of each.
class ChannelPanel final : public QWidget {
    Q_OBJECT

  public:
    explicit ChannelPanel(QWidget* parent);

    /// Shows these channels, with empty values.
    void SetChannels(const std::vector<ChannelRow>& rows);
    /// Shows a value; costs nothing when the text stands there already.
    void SetValue(int channel, std::string_view text);

  private:
    struct Row {
        QFrame* frame = nullptr;   ///< Channel_Frame
        QLabel* swatch = nullptr;  ///< Color_sel
        QLabel* name = nullptr;    ///< Channel_Text
        QLabel* value = nullptr;   ///< DataBox
    };
    Row MakeRow(int channel);

    std::array<Row, kChannelSlots> rows_;
    QLabel* hint_;
};

}  // namespace marisonde
