// Which series a model has in the graph, and an empty graph of them.
#include <algorithm>

#include "graphs/ChartBatch.h"
#include "graphs/LivePlot.h"

namespace marisonde {

namespace {

constexpr int kFirstLength = 1000;

/// Families lay their series out differently; a Corvane-4 has as many as a Delph-6.
bool IsOfSameFamily(InstTypeCode a, InstTypeCode b) {
    return IsCorvaneFamily(a) == IsCorvaneFamily(b) && IsTidalFamily(a) == IsTidalFamily(b) &&
           IsDelphFamily(a) == IsDelphFamily(b);
}

void Empty(ChartGroup& group) {
    group.SetNumPoints(0);
    group.SetNumPoints(kFirstLength);
    group.SetLastPoint(1);
}

}  // namespace

std::int32_t& LivePlot::ChartContents(int group, int series) {
    return contents_.at(static_cast<std::size_t>(group)).at(static_cast<std::size_t>(series));
}

bool& LivePlot::AutoColor(int channel) {
    return autoColor_.at(static_cast<std::size_t>(channel));
}

bool LivePlot::AutoColor(int channel) const {
    return autoColor_.at(static_cast<std::size_t>(channel));
}

int LivePlot::FindSeriesOfType(std::int32_t type) const {
    const int last =
        std::min<int>(chart_.ChartGroups(1).NumSeries(), static_cast<int>(contents_[0].size()) - 1);
    for (int series = 1; series <= last; ++series)
        if (contents_[0][static_cast<std::size_t>(series)] == type) return series;
    return 0;
}

void LivePlot::SetupChartForInstrument(InstTypeCode model) {
    const ChartBatch batch(chart_);
    const int seriesBefore = Primary().NumSeries();
    const bool sameFamily = IsOfSameFamily(model_, model);
    model_ = model;
    contents_ = {};
    readouts_ = {};
    if (IsCorvaneFamily(model))
        LayOutCorvane();
    else if (IsTidalFamily(model))
        LayOutTidal();
    else if (IsDelphFamily(model))
        LayOutDelph();
    else
        LayOutNothing();
    if (!sameFamily || Primary().NumSeries() != seriesBefore) ClearGraph();
}

void LivePlot::LayOutNothing() {
    Primary().SetNumSeries(0);
    Secondary().SetNumSeries(0);
    SetPlotTypes(PlotYType, PlotType::None, PlotXType);
}

void LivePlot::LayOutCorvane() {
    const int scatter = ChannelsShown(model_);
    const int all = ChannelSlots(model_);
    const std::int32_t bb =
        SigmaOption == SigmaChoice::NoSigma ? PlotType::BbUncorrected : PlotType::BbCorrected;
    Primary().SetNumSeries(all + 3);
    Secondary().SetNumSeries(0);
    for (int series = 1; series <= all; ++series) {
        ChartContents(0, series) = series <= scatter ? bb : PlotType::Fluorescence;
        Primary().SetDisplay(series, SeriesDisplay::Drawn);
    }
    LayOutKeptSeries(all);
    LabelAxes(bb, PlotType::None);
}

void LivePlot::LayOutDelph() {
    const int channels = DelphChannels(model_);
    Primary().SetNumSeries(channels + 1);
    Secondary().SetNumSeries(0);
    for (int series = 1; series <= channels; ++series) {
        ChartContents(0, series) = PlotType::Attenuation;
        Primary().SetDisplay(series, SeriesDisplay::Drawn);
    }
    LayOutKeptSeries(channels);
    LabelAxes(PlotType::Attenuation, PlotType::None);
}

/// Behind the channels: depth, time and temperature, kept but not drawn as far as the group has room for
/// them.
void LivePlot::LayOutKeptSeries(int channels) {
    ChartContents(0, channels + 1) = PlotType::DepthMeters;
    ChartContents(0, channels + 2) = PlotType::ElapsedTime;
    ChartContents(0, channels + 3) = PlotType::Temperature;
    for (int series = channels + 1; series <= channels + 3; ++series)
        Primary().SetDisplay(series, SeriesDisplay::Kept);
}

void LivePlot::LayOutTidal() {
    const bool absorption = model_ == InstTypeCode::LTidal;
    const int series = absorption ? 3 : 2;
    const bool corrected = SigmaOption == SigmaChoice::SigmaCorrect;
    const std::int32_t beam = absorption ? PlotType::AttenuationAndAbsorption : PlotType::Attenuation;
    Primary().SetNumSeries(series);
    Secondary().SetNumSeries(series);
    for (int s = 1; s <= series; ++s) {
        Primary().SetDisplay(s, s == 1 ? SeriesDisplay::Drawn : SeriesDisplay::Kept);
        Secondary().SetDisplay(s, s == 1 ? SeriesDisplay::Kept : SeriesDisplay::Drawn);
        if (s > 1) ChartContents(1, s) = beam;
    }
    ChartContents(0, 1) = corrected ? PlotType::BbCorrected : PlotType::BbUncorrected;
    if (absorption) ChartContents(0, 2) = corrected ? PlotType::BbUncorrected : PlotType::BbCorrected;
    ChartContents(1, 1) = view_ == PlotView::Vs_Time ? PlotType::DepthMeters : PlotType::ElapsedTime;
    LabelAxes(ChartContents(0, 1), beam);
}

void LivePlot::LabelAxes(std::int32_t yType, std::int32_t y2Type) {
    SetPlotTypes(yType, y2Type, DepthOnX() ? PlotType::DepthMeters : PlotType::ElapsedTime);
    ChangeDepthUnits(depthInMeters_);
}

void LivePlot::ClearGraph() {
    const ChartBatch batch(chart_);
    Empty(Primary());
    if (Secondary().NumSeries() != 0) Empty(Secondary());
    readouts_ = {};
    InitializePlotInfo();
}

}  // namespace marisonde
