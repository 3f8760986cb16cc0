#pragma once

#include <array>
#include <cstdint>

#include "calibration/CalibratedSample.h"
#include "common/InstTypes.h"
#include "decode/RawSample.h"
#include "graphs/Chart2D.h"
#include "graphs/GraphLook.h"
#include "graphs/PlotReadouts.h"
#include "graphs/PlotTypes.h"

namespace marisonde {

/// Which menu item of the views is checked.
enum class PlotView { Vs_Time, Vs_Depth, Orca };

/// Which backscattering is shown: the buttons "No Sigma" and "Sigma Correct".
enum class SigmaChoice { NoSigma = 0, SigmaCorrect = 1 };

/// Preference range of the points that a graph holds.
inline constexpr int kLeastGraphPoints = 1000;
inline constexpr int kMostGraphPoints = 100000;

/// Makes room when `plotIndex` has passed the arrays: 1000 more places, or, from `maxGraphPoints` on (held to
/// the preference's range), the oldest fifth is dropped and `plotIndex` lowered by it. Leaves the chart
/// batched.
void ExpandChart(Chart2D& chart, int& plotIndex, int maxGraphPoints);

/// The plotting side of one data window: what the axes and series of its chart show, and how converted
/// samples become points of the chart, readouts and axes that follow the data.
class LivePlot {
  public:
    /// `chart` outlives the object.
    explicit LivePlot(Chart2D& chart) : chart_(chart) {}

    // The X range last in force in each view.
    double CurrentDepthMin = 0, CurrentDepthMax = 100, CurrentTimeMin = 0, CurrentTimeMax = 100;
    // The one stored scale.
    double PrevDepthMin = 0, PrevDepthMax = 0, PrevTimeMin = 0, PrevTimeMax = 0;
    double PrevDataMin = 0, PrevDataMax = 0, PrevData2Min = 0, PrevData2Max = 0;
    // Whether a limit follows the data.
    bool AutoDataMax = true, AutoDataMin = true, AutoDataMax2 = true, AutoDataMin2 = true;
    bool AutoDepthMax = true, AutoDepthMin = true, AutoTimeMax = true, AutoTimeMin = true;
    // Where the left button was last pressed on the chart, and any button released, in pixels.
    std::int16_t ChartMouseDownX = 0, ChartMouseDownY = 0, ChartMouseUpX = 0, ChartMouseUpY = 0;
    GraphLook Look;
    float PlotDistance = 0;  ///< X value while PlotXType is Distance, cm
    std::int32_t PlotXType = PlotType::ElapsedTime;
    std::int32_t PlotYType = PlotType::BbCorrected;
    std::int32_t PlotY2Type = PlotType::None;
    SigmaChoice SigmaOption = SigmaChoice::SigmaCorrect;
    bool VsTimeMenuVisible = true;
    int MaxGraphPoints = 50000;

    [[nodiscard]] bool DepthInMeters() const { return depthInMeters_; }
    [[nodiscard]] PlotView View() const { return view_; }
    [[nodiscard]] InstTypeCode Model() const { return model_; }
    /// Chart index of the next point; 1 when the chart is empty.
    [[nodiscard]] int PlotIndex() const { return plotIndex_; }
    /// Date of the first sample plotted; 0 before it.
    [[nodiscard]] double PlotStartTime() const { return plotStartTime_; }
    [[nodiscard]] const PlotReadouts& Readouts() const { return readouts_; }

    /// Data type that a series holds: group 0 (of ChartGroups(1)) or 1, series 0..15. Throws
    /// std::out_of_range.
    [[nodiscard]] std::int32_t& ChartContents(int group, int series);
    /// Whether the colour of a channel, 0..12, follows its wavelength. Throws std::out_of_range.
    [[nodiscard]] bool& AutoColor(int channel);
    [[nodiscard]] bool AutoColor(int channel) const;
    /// The first series of the primary group that holds `type`, or 0.
    [[nodiscard]] int FindSeriesOfType(std::int32_t type) const;

    /// Lays the series out for a model. Points of another layout are discarded, those of the same one stay.
    void SetupChartForInstrument(InstTypeCode model);
    /// Titles, the visibility of Y2, and the turn of the axes when X is depth.
    void SetPlotTypes(std::int32_t yType, std::int32_t y2Type, std::int32_t xType);
    /// Shows the other form of backscattering from the next sample on. True: the points in the graph are
    /// still of the form before and have to be made anew; an l-Tidal keeps both forms and changes at once.
    bool SetSigmaOption(SigmaChoice choice);
    void ClearGraph();
    void InitializePlotInfo();
    void UpdateCurrentPlotInfo();

    /// Changes to the view against time or depth; false, and nothing done, when it is in force already.
    bool VsTimeCommand();
    bool VsDepthCommand();
    /// Points of depth are converted, limits of axes are not.
    void ChangeDepthUnits(bool toMeters);
    /// The same for a user who asks for the other unit: limits of depth go with the points, so that the
    /// picture stays.
    void ChangeDepthUnitsAndLimits(bool toMeters);

    // Commands of scale. All but Previous, and a release of the mouse, store the scale that they find.
    /// Halves, or doubles, each axis about its centre. An axis at the end of its numbers stays.
    void Z_In_Button_Click();
    void Z_Out_Button_Click();
    /// Goes back to the stored scale, which stays stored.
    void Previous_Button_Click();
    /// Shows all the data, and has limits that follow the data again from there on.
    void AutoScaleCommand();
    /// The same for the limits whose Auto flag is set.
    void ApplyAutoScaleFlags();
    /// Press and release of a mouse button at a place in the chart, in pixels.
    void ChartMouseDown(bool leftButton, double x, double y);
    void ChartMouseUp(double x, double y);
    /// Shows the rectangle between two corners, as drawn with the mouse; the scale before it was stored by
    /// the press. A side of no length leaves its axis.
    void ShowRectangle(const ChartPoint& a, const ChartPoint& b);
    /// Multiplies each range by `factor`, a positive number, about a point. Steps that follow each other in
    /// one movement of the user's count as one change of scale: only the first stores the scale.
    void ZoomAbout(const ChartPoint& point, double factor, bool firstStep);
    /// Moves the ranges by these shares of their length; positive toward larger values.
    void Pan(double xShare, double yShare, bool firstStep);

    /// Takes scale, automatic limits, look, unit and view of another window's graph.
    void CopyGraphSettings(const LivePlot& from);

    /// Makes room at once for a graph that will hold so many points, as far as it may hold them.
    void ExpectPoints(int points);
    /// Opens a tick with so many lines waiting and returns how many it may take: at most a fifth of the
    /// arrays.
    int BeginTick(int queuedLines);
    /// Stores one converted sample as the next point. Its Time is a date: the tick has stamped what had none.
    void AddSample(const RawSample& raw, const CalibratedSample& sample);
    /// Keeps the visibility of the l-Tidal sample that was added last, behind its two forms of
    /// backscattering.
    void StoreVisibility(double distance);
    /// Shows the points, lets the axes follow them, and writes the readouts of the last sample.
    void EndTick();
    /// Ends a tick whose next line could not be decoded: the points stored so far stay behind the last one
    /// shown.
    void AbandonTick();

  private:
    struct DataLimits {
        double max = -1e300;
        double min = 1e300;
        void Include(double value);
    };
    enum class BoxContent : std::uint8_t { Untouched, NoData, Value };
    struct Box {
        BoxContent content = BoxContent::Untouched;
        double value = 0;
    };

    [[nodiscard]] bool DepthOnX() const { return view_ != PlotView::Vs_Time; }
    ChartGroup& Primary() { return chart_.ChartGroups(1); }
    ChartGroup& Secondary() { return chart_.ChartGroups(2); }

    void LayOutCorvane();
    void LayOutTidal();
    void LayOutDelph();
    void LayOutNothing();
    void LayOutKeptSeries(int channels);
    void LabelAxes(std::int32_t yType, std::int32_t y2Type);
    void ChangeView(PlotView view);
    void TurnTo(PlotView view);
    [[nodiscard]] double DepthFactor(bool toMeters) const;
    void StoreScale();
    void StoreDataScale();
    void StoreXScale(bool asDepth);
    /// Gives each axis in use the range that `change` makes of its name and present range.
    template <class Change>
    void ChangeScale(Change change);
    void FreezeScale();
    void ShowSecondaryAxis(bool depth);
    void SwapCarrier();
    void TurnAxes(bool depthOnX);

    void MakeRoom();
    void StoreCoordinates(const CalibratedSample& sample);
    template <class Values>
    void StoreChannels(const CalibratedSample& sample, const Values& values);
    void StoreCorvane(const RawSample& raw, const CalibratedSample& sample);
    void StoreDelph(const CalibratedSample& sample);
    void StoreTidalScatter(const RawSample& raw, const CalibratedSample& sample);
    void StoreTidalBeam(int series, int channel, bool active, double value);
    void StoreScatter(int channel, double normalized, const CalibratedSample& sample);
    void Store(ChartGroup& group, int series, double value);
    void SetBox(int channel, BoxContent content, double value = 0);
    [[nodiscard]] double Chosen(const CalibratedSample& sample, int channel) const;
    void WriteReadouts();
    void FollowX();
    void FollowY(ChartAxis& axis, const DataLimits& limits, bool followMax, bool followMin);
    void MoveMax(ChartAxis& axis, double value);
    void MoveMin(ChartAxis& axis, double value);

    Chart2D& chart_;
    InstTypeCode model_ = InstTypeCode::Unknown;
    PlotView view_ = PlotView::Vs_Time;
    bool depthInMeters_ = true;
    int plotIndex_ = 1;
    double plotStartTime_ = 0;
    std::array<std::array<std::int32_t, 16>, 2> contents_{};
    std::array<bool, kChannelSlots> autoColor_{};

    // The tick at hand.
    int linesLeft_ = 0;
    int pointsAdded_ = 0;
    double depth_ = 0;
    double minutes_ = 0;
    DataLimits newData_;
    DataLimits newData2_;
    std::array<Box, kChannelSlots> boxes_{};
    PlotReadouts readouts_;
};

}  // namespace marisonde
