#include <algorithm>

#include "graphs/ChartBatch.h"
#include "graphs/LivePlot.h"

namespace marisonde {

namespace {

constexpr int kFirstLength = 1000;
constexpr double kFeetPerMeter = 39.37 / 12;
constexpr double kMetersPerFoot = 12 / 39.37;

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
    const int primaryBefore = Primary().NumSeries();
    const int secondaryBefore = Secondary().NumSeries();
    model_ = model;
    contents_ = {};
    readouts_ = {};
    if (IsCorvaneFamily(model)) LayOutCorvane();
    if (IsTidalFamily(model)) LayOutTidal();
    if (IsDelphFamily(model)) LayOutDelph();
    if (model == InstTypeCode::Unknown) {
        Primary().SetNumSeries(0);
        Secondary().SetNumSeries(0);
        SetPlotTypes(PlotYType, PlotType::None, PlotXType);
    }
    if (Primary().NumSeries() != primaryBefore || Secondary().NumSeries() != secondaryBefore) ClearGraph();
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

void LivePlot::SetPlotTypes(std::int32_t yType, std::int32_t y2Type, std::int32_t xType) {
    PlotYType = yType;
    PlotY2Type = y2Type;
    PlotXType = xType;
    chart_.Axes(AxisName::Y).SetTitle(AxisTitleForType(yType));
    chart_.Axes(AxisName::Y2).SetTitle(AxisTitleForType(y2Type));
    chart_.Axes(AxisName::X).SetTitle(AxisTitleForType(xType));
    chart_.Axes(AxisName::Y2).SetVisible(y2Type != PlotType::None);
    const bool depth = xType == PlotType::DepthMeters || xType == PlotType::DepthFeet;
    TurnAxes(depth);
    chart_.Axes(AxisName::Y2).SetPlacement(depth ? 1 : 3);
}

void LivePlot::TurnAxes(bool depthOnX) {
    chart_.Axes(AxisName::X).SetReversed(depthOnX);
    chart_.SetRotated(depthOnX);
    chart_.Axes(AxisName::X).SetPlacement(depthOnX ? 2 : 1);
    chart_.Axes(AxisName::Y).SetPlacement(depthOnX ? 1 : 2);
}

void LivePlot::ClearGraph() {
    const ChartBatch batch(chart_);
    Empty(Primary());
    if (Secondary().NumSeries() != 0) Empty(Secondary());
    readouts_ = {};
    InitializePlotInfo();
}

void LivePlot::InitializePlotInfo() {
    const ChartAxis& y = chart_.Axes(AxisName::Y);
    PrevDataMin = y.Min();
    PrevDataMax = y.Max();
    PrevData2Max = chart_.Axes(AxisName::Y2).Max();
    const bool depth = view_ == PlotView::Vs_Depth;
    ChartAxis& x = chart_.Axes(AxisName::X);
    x.SetMax(depth ? CurrentDepthMax : CurrentTimeMax);
    x.SetMin(depth ? CurrentDepthMin : CurrentTimeMin);
    plotIndex_ = 1;
    UpdateCurrentPlotInfo();
}

void LivePlot::UpdateCurrentPlotInfo() {
    const ChartAxis& x = chart_.Axes(AxisName::X);
    const bool depth = view_ == PlotView::Vs_Depth;
    (depth ? CurrentDepthMax : CurrentTimeMax) = x.Max();
    (depth ? CurrentDepthMin : CurrentTimeMin) = x.Min();
}

bool LivePlot::VsTimeCommand() {
    if (view_ == PlotView::Vs_Time) return false;
    // The type of Y, not of X: while plotting only a normalized signal on Y and a distance on X are asked
    // for.
    PlotYType = PlotType::ElapsedTime;
    ChangeView(PlotView::Vs_Time);
    return true;
}

bool LivePlot::VsDepthCommand() {
    if (view_ == PlotView::Vs_Depth) return false;
    PlotXType = PlotType::DepthMeters;
    ChangeView(PlotView::Vs_Depth);
    return true;
}

void LivePlot::ChangeView(PlotView view) {
    chart_.SetIsBatched(true);
    TurnTo(view);
    chart_.SetIsBatched(false);
}

void LivePlot::TurnTo(PlotView view) {
    const bool fromOrca = view_ == PlotView::Orca;
    const bool depth = view == PlotView::Vs_Depth;
    view_ = view;
    TurnAxes(depth);
    ChangeDepthUnits(depthInMeters_);
    ChartAxis& x = chart_.Axes(AxisName::X);
    x.SetMin(depth ? CurrentDepthMin : CurrentTimeMin);
    x.SetMax(depth ? CurrentDepthMax : CurrentTimeMax);
    chart_.Axes(AxisName::Y)
        .SetTitle(IsDelphFamily(model_) ? "Attenuation Coefficient (/m)" : "Backscattering Coefficient (/m)");
    ShowSecondaryAxis(depth);
    if (fromOrca && depth) Primary().SwapSeries(1, 3);
    SwapCarrier();
    if (fromOrca && !depth) Primary().SwapSeries(1, 3);
}

void LivePlot::ShowSecondaryAxis(bool depth) {
    ChartAxis& y2 = chart_.Axes(AxisName::Y2);
    y2.SetVisible(IsTidalFamily(model_));
    if (!IsTidalFamily(model_)) return;
    y2.SetPlacement(depth ? 1 : 2);
    y2.SetTitle(depth ? "Attenuation Coefficient(/m)" : "Attenuation Coefficient (/m)");
}

// Values are only moved, so that going there and back leaves every bit of them as it was.
void LivePlot::SwapCarrier() {
    if (Secondary().NumSeries() == 0) {
        Primary().SwapXWithSeries(Primary().NumSeries());
        return;
    }
    Secondary().SwapXWithSeries(1);
    Primary().CopyXFrom(Secondary());
}

double LivePlot::DepthFactor(bool toMeters) const {
    return toMeters == depthInMeters_ ? 1 : toMeters ? kMetersPerFoot : kFeetPerMeter;
}

void LivePlot::ChangeDepthUnits(bool toMeters) {
    const ChartBatch batch(chart_);
    const double factor = DepthFactor(toMeters);
    depthInMeters_ = toMeters;
    ChartAxis& x = chart_.Axes(AxisName::X);
    const bool paired = Secondary().NumSeries() != 0;
    if (view_ == PlotView::Vs_Time) {
        x.SetTitle("Elapsed Time (minutes)");
        if (factor == 1) return;
        if (paired)
            Secondary().ScaleSeries(1, factor);
        else
            Primary().ScaleSeries(Primary().NumSeries(), factor);
        return;
    }
    x.SetTitle(toMeters ? "Depth (m)" : "Depth (ft)");
    if (factor == 1) return;
    Primary().ScaleX(factor);
    if (paired) Secondary().ScaleX(factor);
}

}  // namespace marisonde
