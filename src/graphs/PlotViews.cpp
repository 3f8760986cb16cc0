// What the axes show, and the change between the views.
#include "common/DepthUnits.h"
#include "graphs/ChartBatch.h"
#include "graphs/LivePlot.h"

namespace marisonde {

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
    return toMeters == depthInMeters_ ? 1 : toMeters ? MetersFromFeet(1) : FeetFromMeters(1);
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
