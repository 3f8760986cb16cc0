#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "graphs/ChartGroup.h"
#include "graphs/CurveMarks.h"

namespace marisonde {

/// From values to pixels along one direction. Increasing values give increasing pixels, or decreasing ones
/// when flipped; `max` itself falls into the last pixel of the range.
class PixelScale {
  public:
    /// `min` below `max`, both finite and at most 1e300; `pixels` above 0.
    PixelScale(double min, double max, int pixels, bool flipped);

    /// Pixel of a value, outside 0..pixels-1 for values out of the range, held to a million pixels beyond it.
    /// Not for not-a-number.
    [[nodiscard]] int At(double value) const {
        constexpr double kFar = 1 << 20;
        double place = (value - min_) * perUnit_;
        place = place < -kFar ? -kFar : place;
        place = place > kFar ? kFar : place;
        const int pixel = static_cast<int>(place + kFar) - (1 << 20);
        return flipped_ ? last_ - pixel : pixel;
    }

  private:
    double min_;
    double perUnit_;
    int last_;
    bool flipped_;
};

/// A box of pixels, ends included; empty when x0 is above x1.
struct PixelBox {
    int x0 = 0;
    int y0 = 0;
    int x1 = -1;
    int y1 = -1;
    [[nodiscard]] bool Empty() const { return x0 > x1 || y0 > y1; }
};

/// Draws curves into an array of bytes: each pixel holds the highest rank among the curves that cover it, 0
/// where there is none. A curve covers the pixels of the lines between its neighbouring points, and nothing
/// else counts, except the markers, which stand at points in the order of the points: so the picture depends
/// on the points alone, not on the order or the pieces in which they were drawn, and points added later may
/// be drawn on top of what is there. The work is bounded by the pixels wherever many points share a column of
/// X.
class SeriesRaster {
  public:
    using Markers = std::array<CurveMarker, 256>;

    /// Clears, and sets the size. `lineWidth` in pixels, 1 or more. No curve has markers.
    void Reset(int xPixels, int yPixels, int lineWidth);
    /// Gives curves markers by their rank, `size` pixels wide. Where points lie closer along X than twice
    /// that, only some of them carry one.
    void SetMarkers(const Markers& byRank, int size, bool transposed);
    [[nodiscard]] int XPixels() const { return xPixels_; }
    [[nodiscard]] int YPixels() const { return yPixels_; }
    /// Ranks along Y at one X pixel, YPixels() of them.
    [[nodiscard]] std::span<const std::uint8_t> Column(int x) const;

    /// Draws the points `from` to `to` (counted from 1, held to the arrays) of all series with Display Drawn
    /// and the lines between them. Series 1 has rank `firstRank`, the next ones follow; ranks stop at 255.
    /// Returns the box that holds all pixels touched.
    PixelBox Draw(const ChartGroup& group, int from, int to, const PixelScale& x, const PixelScale& y,
                  int firstRank);

  private:
    /// Points that follow each other in one column.
    struct Run {
        int begin;
        int end;
        int column;
    };
    /// Where a curve has come to, and the extent in its column that is still to be drawn.
    struct Pen {
        bool down = false;
        int x = 0;
        int y = 0;
        int low = 0;
        int high = 0;
    };
    struct Extremes {
        double low;
        double high;
        bool gaps;  ///< some value may be not-a-number
    };
    struct Steps {
        std::int64_t first;
        std::int64_t last;
    };
    /// Steps from `start` on that come near enough to 0..pixels-1 to be seen.
    [[nodiscard]] Steps SeenSteps(int start, int direction, std::int64_t length, int pixels) const;
    static Extremes ExtremesOf(std::span<const double> values);
    static Extremes ExtremesOfFew(std::span<const double> values);
    void FindRuns(std::span<const double> x, const PixelScale& scale);
    void DrawRuns(std::span<const double> y, const PixelScale& scale);
    void DrawRun(const Run& run, std::span<const double> y, const PixelScale& scale, Pen& pen);
    void DrawPointByPoint(const Run& run, std::span<const double> y, const PixelScale& scale, Pen& pen);
    /// Draws what is due and the line to `entry`, the first place of the next column.
    void MoveOn(Pen& pen, Pen next, int entry);
    void Lift(Pen& pen);
    /// Pixels of a line over two columns or more; its ends may be left to others.
    void Line(int x0, int y0, int x1, int y1);
    void SteepLine(int x0, int y0, int x1, int y1);
    void FlatLine(int x0, int y0, int x1, int y1);
    void Span(int column, int y0, int y1);
    /// Raises a box of pixels, as far as it lies within the picture.
    void Cover(int x0, int x1, int y0, int y1);
    void DrawMarkers(std::span<const double> y, const PixelScale& scale);
    void Fill(int column, int y0, int y1);

    int xPixels_ = 0;
    int yPixels_ = 0;
    int before_ = 0;  ///< pixels that a wide line has before and behind its middle
    int behind_ = 0;
    std::uint8_t rank_ = 0;
    PixelBox touched_;
    std::vector<std::uint8_t> pixels_;  ///< by column: a curve's extent in a column is one stretch of memory
    std::vector<Run> runs_;
    Markers markers_{};
    std::array<std::vector<MarkSpan>, kCurveMarkers> shapes_;
    int markerSpacing_ = 0;
    std::array<int, 256> lastMarked_{};  ///< by rank: column of the last marker
};

}  // namespace marisonde
