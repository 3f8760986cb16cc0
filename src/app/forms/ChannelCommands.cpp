#include "app/forms/ChannelCommands.h"

#include "app/ChannelDetails.h"
#include "app/DataWindow.h"
#include "app/Recalculate.h"
#include "app/forms/ChannelPanel.h"
#include "app/forms/FormHelpers.h"
#include "graphs/ChannelOnOff.h"
#include "graphs/PlotReadouts.h"
#include "graphs/forms/ChartView.h"

namespace marisonde {

namespace {

constexpr int kTicksBetweenDetails = 20;  ///< about a second: their limits look at every point

}  // namespace

ChannelCommands::ChannelCommands(DataWindow& window, ChartView& chart, ChannelPanel& panel)
    : QObject(&panel), window_(window), chart_(chart), panel_(panel) {
    connect(&panel_, &ChannelPanel::OnOff, this, &ChannelCommands::ChannelOnOffCommand);
    connect(&panel_, &ChannelPanel::Opened, this, &ChannelCommands::ShowDetails);
    connect(&panel_, &ChannelPanel::SigmaChosen, this, &ChannelCommands::SetSigmaOption);
}

void ChannelCommands::InstrumentChanged() {
    const InstTypeCode model = window_.Plot.Model();
    channels_ = PlottedChannels(window_.Plot, window_.Link.CalData);
    std::erase_if(channels_, [](const PlottedChannel& channel) { return !channel.calibrated; });
    std::vector<ChannelRow> rows;
    for (const PlottedChannel& channel : channels_) {
        const bool on = ChannelIsOn(window_.Chart, model, channel.number);
        rows.push_back({channel.box, FromText(channel.name), FromText(channel.unit),
                        chart_.SampleOf(channel.group, channel.series), on});
    }
    panel_.SetChannels(rows);
    ShowSigmaOptions();
    ticksToDetails_ = 0;
}

/// The values of a Delph have one form only; before a calibration there are no values.
void ChannelCommands::ShowSigmaOptions() {
    const InstTypeCode model = window_.Plot.Model();
    const bool twoForms = IsCorvaneFamily(model) || IsTidalFamily(model);
    panel_.SetSigmaOption(window_.Plot.SigmaOption);
    if (!twoForms)
        panel_.ShowSigmaOptions(false);
    else if (window_.Link.State.CalReady)
        panel_.ShowSigmaOptions(true);
}

void ChannelCommands::Update() {
    const PlotReadouts& shown = window_.Plot.Readouts();
    for (std::size_t box = 0; box < shown.DataBox.size(); ++box)
        panel_.SetValue(static_cast<int>(box), shown.DataBox[box].View());
    if (--ticksToDetails_ > 0) return;
    ticksToDetails_ = kTicksBetweenDetails;
    for (const PlottedChannel& channel : channels_)
        if (panel_.IsOpen(channel.box)) ShowDetails(channel.box);
}

void ChannelCommands::ShowDetails(int box) {
    for (const PlottedChannel& channel : channels_)
        if (channel.box == box) panel_.SetDetails(box, DetailsOf(window_, channel));
}

void ChannelCommands::ChannelOnOffCommand(int box, bool on) {
    const InstTypeCode model = window_.Plot.Model();
    marisonde::ChannelOnOffCommand(window_.Chart, model, box - FirstDataBox(model), on);
}

void ChannelCommands::SetSigmaOption(SigmaChoice choice) {
    if (window_.Plot.SetSigmaOption(choice)) ReplotWindow(window_);
    window_.App().prefs.Sigma = choice == SigmaChoice::SigmaCorrect;
}

}  // namespace marisonde
