#include "graphs/LivePlot.h"

#include <algorithm>

#include "common/DepthUnits.h"
#include "common/Numbers.h"

namespace marisonde {

namespace {

constexpr double kDaysPerMinute = 0.0006944444444444445;
constexpr int kGrowth = 1000;
constexpr int kDecimals = 5;
constexpr int kDelphDecimals = 4;

int RoundedFifth(int length) {
    return ToInt32(length / 5.0);
}

void DropOldest(ChartGroup& group, int cut) {
    group.MovePoints(group.NumPoints() - cut, 1, cut + 1);
    group.SetLastPoint(group.LastPoint() - cut);
}

void Grow(ChartGroup& group, int lastPoint) {
    group.Lengthen(kGrowth);
    group.SetLastPoint(lastPoint);
}

}  // namespace

void ExpandChart(Chart2D& chart, int& plotIndex, int maxGraphPoints) {
    chart.SetIsBatched(true);
    ChartGroup& primary = chart.ChartGroups(1);
    ChartGroup& secondary = chart.ChartGroups(2);
    const int length = primary.NumPoints();
    if (length >= std::clamp(maxGraphPoints, kLeastGraphPoints, kMostGraphPoints)) {
        const int cut = RoundedFifth(length);
        DropOldest(primary, cut);
        plotIndex -= cut;
        if (secondary.NumSeries() != 0) DropOldest(secondary, cut);
        return;
    }
    const int last = primary.LastPoint();
    Grow(primary, last);
    if (secondary.NumSeries() != 0) Grow(secondary, last);
}

void LivePlot::DataLimits::Include(double value) {
    if (value > max) max = value;
    if (value < min) min = value;
}

void LivePlot::ExpectPoints(int points) {
    const int most = std::clamp(MaxGraphPoints, kLeastGraphPoints, kMostGraphPoints);
    // The arrays grow in whole steps, also past the limit.
    const int places = (std::clamp(points, 0, most) + kGrowth - 1) / kGrowth * kGrowth;
    Primary().Reserve(places);
    if (Secondary().NumSeries() != 0) Secondary().Reserve(places);
}

int LivePlot::BeginTick(int queuedLines) {
    newData_ = {};
    newData2_ = {};
    boxes_ = {};
    pointsAdded_ = 0;
    if (plotIndex_ == 1) {
        plotStartTime_ = 0;
        readouts_.Elapsed.Clear();
        Primary().SetLastPoint(0);
        if (Secondary().NumSeries() != 0) Secondary().SetLastPoint(0);
    }
    const int length = Primary().NumPoints();
    linesLeft_ = queuedLines > length / 5.0 ? RoundedFifth(length) : std::max(queuedLines, 0);
    if (linesLeft_ > 0) MakeRoom();
    return linesLeft_;
}

void LivePlot::MakeRoom() {
    if (plotIndex_ > Primary().NumPoints()) ExpandChart(chart_, plotIndex_, MaxGraphPoints);
}

void LivePlot::AddSample(const RawSample& raw, const CalibratedSample& sample) {
    MakeRoom();
    StoreCoordinates(sample);
    if (IsCorvaneFamily(model_))
        StoreCorvane(raw, sample);
    else if (IsDelphFamily(model_))
        StoreDelph(sample);
    else if (model_ == InstTypeCode::NTidal || model_ == InstTypeCode::LTidal)
        StoreTidalScatter(raw, sample);
    // A Tidal sample tells by one flag whether the light that came through the water could be used:
    // absorption and attenuation are both made from it.
    if (model_ == InstTypeCode::NTidal) StoreTidalBeam(2, 1, sample.Valid[0], sample.k[0]);
    if (model_ == InstTypeCode::LTidal) {
        StoreTidalBeam(2, 1, sample.Valid[0], sample.a);
        StoreTidalBeam(3, 2, sample.Valid[0], sample.k[0]);
    }
    ++plotIndex_;
    ++pointsAdded_;
    if (--linesLeft_ > 0) MakeRoom();
}

void LivePlot::StoreCoordinates(const CalibratedSample& sample) {
    if (plotStartTime_ == 0) plotStartTime_ = sample.Time;
    depth_ = ShownDepth(sample.Depth, depthInMeters_);
    minutes_ = (sample.Time - plotStartTime_) / kDaysPerMinute;
    const bool paired = Secondary().NumSeries() != 0;
    if (PlotXType == PlotType::Distance) {
        Primary().SetX(plotIndex_, PlotDistance);
        if (paired) Secondary().SetX(plotIndex_, Primary().X(plotIndex_));
        return;
    }
    const double x = DepthOnX() ? depth_ : minutes_;
    const double other = DepthOnX() ? minutes_ : depth_;
    Primary().SetX(plotIndex_, x);
    if (paired) {
        Secondary().SetX(plotIndex_, x);
        Secondary().SetY(1, plotIndex_, other);
    } else {
        Primary().SetY(Primary().NumSeries(), plotIndex_, other);
    }
}

template <class Values>
void LivePlot::StoreChannels(const CalibratedSample& sample, const Values& values) {
    const bool zeroIsNoData = PlotYType == PlotType::NormalizedSignal;
    ChartGroup& group = Primary();
    DataLimits limits = newData_;
    for (int channel = 0; channel < 8; ++channel) {
        const auto i = static_cast<std::size_t>(channel);
        if (!sample.Valid[i]) {
            SetBox(channel, BoxContent::NoData);
            continue;
        }
        const double value = values[i];
        group.SetY(channel + 1, plotIndex_, value);
        if (group.Display(channel + 1) != SeriesDisplay::Kept) limits.Include(value);
        SetBox(channel, zeroIsNoData && value == 0 ? BoxContent::NoData : BoxContent::Value, value);
    }
    newData_ = limits;
}

// Which values are plotted is asked once for all channels: a stored cast has many samples.
void LivePlot::StoreCorvane(const RawSample& raw, const CalibratedSample& sample) {
    if (PlotYType == PlotType::NormalizedSignal)
        StoreChannels(sample, raw.Snorm);
    else
        StoreChannels(sample, SigmaOption == SigmaChoice::SigmaCorrect ? sample.bb : sample.bbUncorr);
}

void LivePlot::StoreDelph(const CalibratedSample& sample) {
    for (int channel = 1; channel <= DelphChannels(model_); ++channel) {
        const double value = sample.k[static_cast<std::size_t>(channel) - 1];
        Store(Primary(), channel, value);
        SetBox(channel, BoxContent::Value, value);
    }
}

void LivePlot::StoreTidalScatter(const RawSample& raw, const CalibratedSample& sample) {
    // Scattered light was measured at all only with a usable gain step.
    if (raw.Gain[0] < 1 || raw.Gain[0] > 5) {
        SetBox(0, BoxContent::NoData);
        return;
    }
    StoreScatter(0, raw.SnormF[0], sample);
    if (model_ != InstTypeCode::LTidal) return;
    const bool corrected = SigmaOption == SigmaChoice::SigmaCorrect;
    Primary().SetY(2, plotIndex_, corrected ? sample.bbUncorr[0] : sample.bb[0]);
}

void LivePlot::StoreTidalBeam(int series, int channel, bool active, double value) {
    if (!active) {
        SetBox(channel, BoxContent::NoData);
        return;
    }
    Store(Secondary(), series, value);
    SetBox(channel, BoxContent::Value, value);
}

void LivePlot::StoreScatter(int channel, double normalized, const CalibratedSample& sample) {
    const bool plainSignal = PlotYType == PlotType::NormalizedSignal;
    const double value = plainSignal ? normalized : Chosen(sample, channel);
    Store(Primary(), channel + 1, value);
    SetBox(channel, plainSignal && value == 0 ? BoxContent::NoData : BoxContent::Value, value);
}

void LivePlot::StoreVisibility(double distance) {
    constexpr int kVisibility = 3;
    Primary().SetY(kVisibility, plotIndex_ - 1, distance);
}

void LivePlot::Store(ChartGroup& group, int series, double value) {
    group.SetY(series, plotIndex_, value);
    if (group.Display(series) != SeriesDisplay::Kept)
        (&group == &Primary() ? newData_ : newData2_).Include(value);
}

void LivePlot::SetBox(int channel, BoxContent content, double value) {
    boxes_[static_cast<std::size_t>(channel)] = {content, value};
}

double LivePlot::Chosen(const CalibratedSample& sample, int channel) const {
    const auto i = static_cast<std::size_t>(channel);
    return SigmaOption == SigmaChoice::SigmaCorrect ? sample.bb[i] : sample.bbUncorr[i];
}

void LivePlot::EndTick() {
    if (pointsAdded_ > 0) {
        Primary().FastAdd(pointsAdded_);
        if (Secondary().NumSeries() != 0) Secondary().FastAdd(pointsAdded_);
        FollowX();
        FollowY(chart_.Axes(AxisName::Y), newData_, AutoDataMax, AutoDataMin);
        FollowY(chart_.Axes(AxisName::Y2), newData2_, AutoDataMax2, AutoDataMin2);
        WriteReadouts();
    }
    UpdateCurrentPlotInfo();
    if (chart_.IsBatched()) chart_.SetIsBatched(false);
}

void LivePlot::AbandonTick() {
    if (pointsAdded_ > 0) WriteReadouts();
}

// Texts of a tick follow each other faster than anyone reads: only the last sample's are made.
void LivePlot::WriteReadouts() {
    const int decimals = IsDelphFamily(model_) ? kDelphDecimals : kDecimals;
    for (std::size_t i = 0; i < boxes_.size(); ++i) {
        if (boxes_[i].content == BoxContent::NoData) readouts_.DataBox[i].Set(kNoData);
        if (boxes_[i].content == BoxContent::Value) readouts_.DataBox[i].SetCut(boxes_[i].value, decimals);
    }
    readouts_.Elapsed.SetMinutes(minutes_);
}

void LivePlot::FollowX() {
    ChartAxis& x = chart_.Axes(AxisName::X);
    if (PlotXType == PlotType::Distance) {
        if (static_cast<float>(x.Max()) <= PlotDistance) MoveMax(x, PlotDistance);
        return;
    }
    const bool depth = DepthOnX();
    const double value = depth ? depth_ : minutes_;
    if (value >= x.Max() && (depth ? AutoDepthMax : AutoTimeMax)) MoveMax(x, value);
    if (value < x.Min() && (depth ? AutoDepthMin : VsTimeMenuVisible && AutoTimeMin)) MoveMin(x, value);
}

void LivePlot::FollowY(ChartAxis& axis, const DataLimits& limits, bool followMax, bool followMin) {
    if (limits.max >= axis.Max() && followMax) MoveMax(axis, limits.max);
    if (limits.min < axis.Min() && followMin) MoveMin(axis, limits.min);
}

// A failed value may lead to a limit that is no number; the axis refuses that one and stays where it is.
void LivePlot::MoveMax(ChartAxis& axis, double value) {
    chart_.SetIsBatched(true);
    axis.SetMax(TickAbove(value, axis.TickSpacing()));
}

void LivePlot::MoveMin(ChartAxis& axis, double value) {
    chart_.SetIsBatched(true);
    axis.SetMin(TickBelow(value, axis.TickSpacing()));
}

}  // namespace marisonde
