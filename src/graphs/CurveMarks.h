#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace marisonde {

/// The sign that a curve carries at its points.
enum class CurveMarker : std::uint8_t { None, Circle, Square, Triangle, Cross };
inline constexpr int kCurveMarkers = 5;

/// By the name in settings; None for any other.
CurveMarker MarkerFromName(std::string_view name);

/// One column of a marker's pixels: places relative to its middle, ends included, `top` above `bottom`.
struct MarkSpan {
    int column;
    int top;
    int bottom;
};
/// The pixels of a marker `size` pixels wide; none for None and for a size below 1. `transposed`: columns are
/// those of a chart on its side.
std::vector<MarkSpan> MarkSpans(CurveMarker marker, int size, bool transposed);

/// Curves are drawn in strokes of full and of faint colour, so that they can be told apart by who sees no
/// colours. Faint and not left out: a spike of a single pixel must not fall into a gap.
inline constexpr int kDashPeriod = 32;   ///< pixels of the layout after which a pattern repeats
inline constexpr int kDashPatterns = 8;  ///< 0 is a solid line; from 8 on they repeat
/// Whether a pattern has its full colour at a place along X.
bool IsFullAt(int pattern, int place);

}  // namespace marisonde
