#include <algorithm>
#include <array>

#include "common/Numbers.h"
#include "graphs/ChartBatch.h"
#include "graphs/LivePlot.h"

namespace marisonde {

namespace {

constexpr double kWide = 1e300;  ///< data limits so far out that no data count in scaling

constexpr std::array kAxes{AxisName::X, AxisName::Y, AxisName::Y2};

// Quarters and halves are exact, so these are (3a + b) / 4 and (3a - b) / 2 to the last bit, but their steps
// leave the range of numbers no sooner than the result does.
AxisRange ZoomedIn(const AxisRange& range) {
    return {0.75 * range.min + 0.25 * range.max, 0.75 * range.max + 0.25 * range.min};
}
AxisRange ZoomedOut(const AxisRange& range) {
    return {1.5 * range.min - 0.5 * range.max, 1.5 * range.max - 0.5 * range.min};
}

AxisRange RangeOf(const ChartAxis& axis) {
    return {axis.Min(), axis.Max()};
}

double CoordinateOn(AxisName name, const ChartPoint& point) {
    return name == AxisName::X ? point.x : name == AxisName::Y ? point.y : point.y2;
}

void FollowMin(ChartAxis& axis) {
    axis.SetMinIsDefault(true);
    axis.SetDataMin({0, true});
}

void FollowMax(ChartAxis& axis) {
    axis.SetMaxIsDefault(true);
    axis.SetDataMax({0, true});
}

}  // namespace

void LivePlot::StoreDataScale() {
    const ChartAxis& y = chart_.Axes(AxisName::Y);
    const ChartAxis& y2 = chart_.Axes(AxisName::Y2);
    PrevDataMin = y.Min();
    PrevDataMax = y.Max();
    PrevData2Min = y2.Min();
    PrevData2Max = y2.Max();
}

void LivePlot::StoreXScale(bool asDepth) {
    const ChartAxis& x = chart_.Axes(AxisName::X);
    (asDepth ? PrevDepthMin : PrevTimeMin) = x.Min();
    (asDepth ? PrevDepthMax : PrevTimeMax) = x.Max();
}

void LivePlot::StoreScale() {
    StoreDataScale();
    StoreXScale(view_ == PlotView::Vs_Depth);
}

template <class Change>
void LivePlot::ChangeScale(Change change) {
    for (const AxisName name : kAxes) {
        if (name == AxisName::Y2 && Secondary().NumSeries() == 0) continue;
        const AxisRange range = change(name, RangeOf(chart_.Axes(name)));
        SetAxisRange(chart_, name, range.min, range.max);
    }
}

void LivePlot::Z_In_Button_Click() {
    chart_.SetIsBatched(true);
    StoreScale();
    ChangeScale([](AxisName, const AxisRange& range) { return ZoomedIn(range); });
    UpdateCurrentPlotInfo();
    chart_.SetIsBatched(false);
}

void LivePlot::Z_Out_Button_Click() {
    chart_.SetIsBatched(true);
    StoreScale();
    ChangeScale([](AxisName, const AxisRange& range) { return ZoomedOut(range); });
    UpdateCurrentPlotInfo();
    chart_.SetIsBatched(false);
}

void LivePlot::Previous_Button_Click() {
    chart_.SetIsBatched(true);
    const bool depth = view_ == PlotView::Vs_Depth;
    const AxisRange x{depth ? PrevDepthMin : PrevTimeMin, depth ? PrevDepthMax : PrevTimeMax};
    ChangeScale([&](AxisName name, const AxisRange&) {
        if (name == AxisName::X) return x;
        return name == AxisName::Y ? AxisRange{PrevDataMin, PrevDataMax}
                                   : AxisRange{PrevData2Min, PrevData2Max};
    });
    chart_.SetIsBatched(false);
}

void LivePlot::AutoScaleCommand() {
    const ChartBatch batch(chart_);
    StoreDataScale();
    // X goes to the other view's place: what Previous brings back is the X of the last zoom or drag.
    StoreXScale(view_ != PlotView::Vs_Depth);
    for (const AxisName name : kAxes) {
        FollowMin(chart_.Axes(name));
        FollowMax(chart_.Axes(name));
    }
    UpdateCurrentPlotInfo();
    FreezeScale();
}

void LivePlot::FreezeScale() {
    for (const AxisName name : kAxes) {
        ChartAxis& axis = chart_.Axes(name);
        axis.SetMinIsDefault(false);
        axis.SetMaxIsDefault(false);
    }
    for (const AxisName name : kAxes) {
        chart_.Axes(name).SetDataMin({-kWide, false});
        chart_.Axes(name).SetDataMax({kWide, false});
    }
}

void LivePlot::ApplyAutoScaleFlags() {
    const ChartBatch batch(chart_);
    ChartAxis& x = chart_.Axes(AxisName::X);
    ChartAxis& y = chart_.Axes(AxisName::Y);
    ChartAxis& y2 = chart_.Axes(AxisName::Y2);
    struct Flag {
        bool set;
        ChartAxis& axis;
        double& stored;
        bool isMin;
    };
    const bool depth = view_ == PlotView::Vs_Depth;
    const bool time = view_ == PlotView::Vs_Time;
    for (const Flag& flag :
         {Flag{depth && AutoDepthMin, x, PrevDepthMin, true},
          Flag{depth && AutoDepthMax, x, PrevDepthMax, false},
          Flag{time && AutoTimeMin, x, PrevTimeMin, true}, Flag{time && AutoTimeMax, x, PrevTimeMax, false},
          Flag{AutoDataMin, y, PrevDataMin, true}, Flag{AutoDataMin2, y2, PrevData2Min, true},
          Flag{AutoDataMax, y, PrevDataMax, false}, Flag{AutoDataMax2, y2, PrevData2Max, false}}) {
        if (!flag.set) continue;
        flag.stored = flag.isMin ? flag.axis.Min() : flag.axis.Max();
        (flag.isMin ? FollowMin : FollowMax)(flag.axis);
    }
    UpdateCurrentPlotInfo();
    FreezeScale();
}

void LivePlot::ChartMouseDown(bool leftButton, double x, double y) {
    if (!leftButton) return;
    ChartMouseDownX = ToInt16(x);
    ChartMouseDownY = ToInt16(y);
    StoreScale();
}

void LivePlot::ChartMouseUp(double x, double y) {
    ChartMouseUpX = ToInt16(x);
    ChartMouseUpY = ToInt16(y);
}

void LivePlot::ShowRectangle(const ChartPoint& a, const ChartPoint& b) {
    const ChartBatch batch(chart_);
    ChangeScale([&](AxisName name, const AxisRange& range) {
        const double from = CoordinateOn(name, a);
        const double to = CoordinateOn(name, b);
        return from == to ? range : AxisRange{std::min(from, to), std::max(from, to)};
    });
    UpdateCurrentPlotInfo();
}

void LivePlot::ZoomAbout(const ChartPoint& point, double factor, bool firstStep) {
    const ChartBatch batch(chart_);
    if (firstStep) StoreScale();
    ChangeScale([&](AxisName name, const AxisRange& range) {
        const double fixed = CoordinateOn(name, point);
        return AxisRange{fixed + (range.min - fixed) * factor, fixed + (range.max - fixed) * factor};
    });
    UpdateCurrentPlotInfo();
}

void LivePlot::Pan(double xShare, double yShare, bool firstStep) {
    const ChartBatch batch(chart_);
    if (firstStep) StoreScale();
    ChangeScale([&](AxisName name, const AxisRange& range) {
        const double step = (range.max - range.min) * (name == AxisName::X ? xShare : yShare);
        return AxisRange{range.min + step, range.max + step};
    });
    UpdateCurrentPlotInfo();
}

void LivePlot::ChangeDepthUnitsAndLimits(bool toMeters) {
    if (toMeters == depthInMeters_) return;
    const ChartBatch batch(chart_);
    const double factor = DepthFactor(toMeters);
    ChangeDepthUnits(toMeters);
    for (double* limit : {&CurrentDepthMin, &CurrentDepthMax, &PrevDepthMin, &PrevDepthMax}) *limit *= factor;
    if (!DepthOnX()) return;
    const AxisRange x = RangeOf(chart_.Axes(AxisName::X));
    SetAxisRange(chart_, AxisName::X, x.min * factor, x.max * factor);
    UpdateCurrentPlotInfo();
}

void LivePlot::CopyGraphSettings(const LivePlot& from) {
    const ChartBatch batch(chart_);
    if (from.DepthOnX() != DepthOnX()) TurnTo(from.DepthOnX() ? PlotView::Vs_Depth : PlotView::Vs_Time);
    ChangeDepthUnits(from.depthInMeters_);
    for (double LivePlot::*limit :
         {&LivePlot::CurrentDepthMin, &LivePlot::CurrentDepthMax, &LivePlot::CurrentTimeMin,
          &LivePlot::CurrentTimeMax, &LivePlot::PrevDepthMin, &LivePlot::PrevDepthMax, &LivePlot::PrevTimeMin,
          &LivePlot::PrevTimeMax, &LivePlot::PrevDataMin, &LivePlot::PrevDataMax, &LivePlot::PrevData2Min,
          &LivePlot::PrevData2Max})
        this->*limit = from.*limit;
    for (bool LivePlot::*flag :
         {&LivePlot::AutoDataMax, &LivePlot::AutoDataMin, &LivePlot::AutoDataMax2, &LivePlot::AutoDataMin2,
          &LivePlot::AutoDepthMax, &LivePlot::AutoDepthMin, &LivePlot::AutoTimeMax, &LivePlot::AutoTimeMin})
        this->*flag = from.*flag;
    Look = from.Look;
    autoColor_ = from.autoColor_;
    for (const AxisName name : kAxes) {
        const AxisRange range = RangeOf(from.chart_.Axes(name));
        SetAxisRange(chart_, name, range.min, range.max);
    }
}

}  // namespace marisonde
