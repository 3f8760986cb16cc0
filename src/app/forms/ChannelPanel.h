#pragma once

#include <QWidget>
#include <array>
#include <string_view>
#include <vector>

#include "app/forms/ChannelFrame.h"
#include "common/InstTypes.h"
#include "graphs/LivePlot.h"

class QLabel;
class QRadioButton;

namespace marisonde {

/// The channels of an instrument beside the graph: colour, name and current value of each, and which form of
/// the values is shown.
class ChannelPanel final : public QWidget {
    Q_OBJECT

  public:
    explicit ChannelPanel(QWidget* parent);

    /// Shows these channels, with empty values.
    void SetChannels(const std::vector<ChannelRow>& rows);
    /// Shows a value; costs nothing when the text stands there already.
    void SetValue(int channel, std::string_view text) { Frame(channel).SetValue(text); }
    [[nodiscard]] bool IsOpen(int channel) const;
    void SetDetails(int channel, const ChannelDetails& details) { Frame(channel).SetDetails(details); }
    /// Which of the two buttons is pressed; nothing is emitted.
    void SetSigmaOption(SigmaChoice choice);
    void ShowSigmaOptions(bool shown);

  signals:
    void OnOff(int channel, bool on);
    void Opened(int channel);
    void SigmaChosen(SigmaChoice choice);

  private:
    QWidget* MakeSigmaOptions();
    QWidget* MakeRows();
    ChannelFrame& Frame(int channel) { return *frames_.at(static_cast<std::size_t>(channel)); }

    std::array<ChannelFrame*, kChannelSlots> frames_{};
    std::array<QRadioButton*, 2> sigma_{};
    QWidget* sigmaOptions_;
    QLabel* hint_ = nullptr;
};

}  // namespace marisonde
