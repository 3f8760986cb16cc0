#pragma once

#include <QFrame>
#include <array>
#include <string_view>

#include "graphs/forms/CurveSample.h"

class QCheckBox;
class QLabel;
class QToolButton;

namespace marisonde {

struct ChannelDetails;
class CurveSwatch;

/// One channel as the panel shows it.
struct ChannelRow {
    int box = 0;   ///< index of its DataBox
    QString name;  ///< such as "bb(470)"
    QString unit;  ///< such as "1/m"; may be empty
    CurveSample curve;
    bool on = true;  ///< its curve is drawn
};

/// The row of one channel, Channel_Frame: colour, name, current value, whether its curve is drawn, and below,
/// when opened, what else is known of it.
class ChannelFrame final : public QFrame {
    Q_OBJECT

  public:
    ChannelFrame(int channel, QWidget* parent);

    /// Shows another channel, with an empty value.
    void SetChannel(const ChannelRow& row);
    void Clear();
    /// Costs nothing when the text stands there already.
    void SetValue(std::string_view text);
    void SetDetails(const ChannelDetails& details);
    [[nodiscard]] bool IsOpen() const;
    /// Slides the detail row open or shut; the rows below move.
    void OpenChannelView();
    void CloseChannelView();
    /// Width that the value needs, so that a panel is as wide without channels as with them.
    [[nodiscard]] int ContentWidth() const;

  signals:
    void OnOff(int channel, bool on);
    void Opened(int channel);

  private:
    static constexpr int kDetails = 5;
    void MakeDetails();
    QToolButton* MakeArrow(const char* name, Qt::ArrowType arrow);

    int channel_;
    CurveSwatch* swatch_;  ///< Color_sel
    QCheckBox* onOff_;     ///< ChannelOnOff_Check
    QLabel* name_;         ///< Channel_Text
    QLabel* value_;        ///< DataBox
    QToolButton* open_;    ///< Channel_Open
    QToolButton* close_;   ///< Close_Channel
    QWidget* detail_;
    struct Detail {
        QLabel* label = nullptr;
        QLabel* value = nullptr;
    };
    std::array<Detail, kDetails> details_;
};

}  // namespace marisonde
