#pragma once

#include <string>
#include <string_view>

namespace marisonde {

class Chart2D;

/// The axes of a chart: X of both groups, Y of the primary and Y2 of the secondary group.
enum class AxisName { X, Y, Y2 };

/// A limit that either stands as set or follows the data.
struct AxisLimit {
    double value = 0;
    bool isDefault = false;
};

/// One axis of a chart. Limits are always finite: a value that is not is refused and the axis stays as it
/// was.
class ChartAxis {
  public:
    ChartAxis(Chart2D& chart, AxisName name, double min, double max)
        : chart_(chart), name_(name), min_{min}, max_{max} {}
    ChartAxis(const ChartAxis&) = delete;
    ChartAxis& operator=(const ChartAxis&) = delete;

    /// The value as set or, while IsDefault, as computed from the data: round values around them; 0 and 1
    /// when there are none. Setting a value clears IsDefault; clearing IsDefault freezes the computed value.
    [[nodiscard]] double Min() const;
    [[nodiscard]] double Max() const;
    void SetMin(double value);
    void SetMax(double value);
    [[nodiscard]] bool MinIsDefault() const { return min_.isDefault; }
    [[nodiscard]] bool MaxIsDefault() const { return max_.isDefault; }
    void SetMinIsDefault(bool isDefault);
    void SetMaxIsDefault(bool isDefault);

    /// What stands for the smallest and largest data value when Min and Max are computed. While IsDefault,
    /// the drawn points themselves, failed values (at or beyond 1e300) left out.
    [[nodiscard]] AxisLimit DataMin() const { return dataMin_; }
    [[nodiscard]] AxisLimit DataMax() const { return dataMax_; }
    void SetDataMin(AxisLimit limit);
    void SetDataMax(AxisLimit limit);

    /// Spacing of the ticks at the present limits; above 0.
    [[nodiscard]] double TickSpacing() const;

    [[nodiscard]] const std::string& Title() const { return title_; }
    void SetTitle(std::string_view title);
    [[nodiscard]] bool Visible() const { return visible_; }
    void SetVisible(bool visible);
    [[nodiscard]] bool Reversed() const { return reversed_; }
    void SetReversed(bool reversed);
    /// Code 1, 2 or 3 of where axis and title stand.
    [[nodiscard]] int Placement() const { return placement_; }
    void SetPlacement(int placement);

  private:
    struct Limits {
        double min;
        double max;
    };
    [[nodiscard]] Limits Computed() const;

    Chart2D& chart_;
    AxisName name_;
    AxisLimit min_;
    AxisLimit max_;
    AxisLimit dataMin_{0, true};
    AxisLimit dataMax_{0, true};
    std::string title_;
    bool visible_ = true;
    bool reversed_ = false;
    int placement_ = 1;
};

}  // namespace marisonde
