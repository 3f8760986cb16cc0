#include "graphs/CurveMarks.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace marisonde {

namespace {

constexpr double kArm = 0.2;  ///< half the breadth of a cross's arm, against half its size

struct MarkerRow {
    std::string_view name;
    CurveMarker marker;
    /// Whether a place belongs to the marker; both from -1 to 1, v downward.
    bool (*holds)(double u, double v);
};
constexpr std::array kMarkers{
    MarkerRow{"Circle", CurveMarker::Circle, [](double u, double v) { return u * u + v * v <= 1; }},
    MarkerRow{"Square", CurveMarker::Square, [](double, double) { return true; }},
    MarkerRow{"Triangle", CurveMarker::Triangle,
              [](double u, double v) { return (u < 0 ? -u : u) <= (v + 1) / 2; }},
    MarkerRow{"Cross", CurveMarker::Cross,
              [](double u, double v) { return (u < 0 ? -u : u) <= kArm || (v < 0 ? -v : v) <= kArm; }},
};

/// Lengths of full and faint strokes in turn, up to the period.
using Strokes = std::array<int, 8>;
constexpr std::array<Strokes, kDashPatterns> kStrokes{{
    {32},
    {10, 6, 10, 6},
    {5, 3, 5, 3, 5, 11},
    {18, 5, 4, 5},
    {26, 6},
    {6, 10, 6, 10},
    {12, 4, 4, 4, 4, 4},
    {4, 4, 4, 4, 4, 4, 4, 4},
}};

constexpr std::uint32_t BitsOf(const Strokes& strokes) {
    std::uint32_t bits = 0;
    int place = 0;
    for (std::size_t i = 0; i < strokes.size(); ++i)
        for (int k = 0; k < strokes[i] && place < kDashPeriod; ++k, ++place)
            if (i % 2 == 0) bits |= std::uint32_t{1} << place;
    return bits;
}

constexpr std::array kBits = [] {
    std::array<std::uint32_t, kDashPatterns> bits{};
    for (std::size_t i = 0; i < bits.size(); ++i) bits[i] = BitsOf(kStrokes[i]);
    return bits;
}();

}  // namespace

CurveMarker MarkerFromName(std::string_view name) {
    const auto* const row =
        std::find_if(kMarkers.begin(), kMarkers.end(), [&](const MarkerRow& r) { return r.name == name; });
    return row == kMarkers.end() ? CurveMarker::None : row->marker;
}

std::vector<MarkSpan> MarkSpans(CurveMarker marker, int size, bool transposed) {
    const auto* const row = std::find_if(kMarkers.begin(), kMarkers.end(),
                                         [&](const MarkerRow& r) { return r.marker == marker; });
    if (row == kMarkers.end()) return {};
    const int first = -(size / 2);
    const auto place = [&](int i) { return (2 * i + 1.0) / size - 1; };
    std::vector<MarkSpan> spans;
    for (int i = 0; i < size; ++i) {
        MarkSpan span{first + i, size, -1};
        for (int j = 0; j < size; ++j) {
            if (!row->holds(place(transposed ? j : i), place(transposed ? i : j))) continue;
            span.top = std::min(span.top, j);
            span.bottom = j;
        }
        if (span.bottom >= 0) spans.push_back({span.column, first + span.top, first + span.bottom});
    }
    return spans;
}

bool IsFullAt(int pattern, int place) {
    const auto bits = kBits[static_cast<std::size_t>(std::max(pattern, 0) % kDashPatterns)];
    return (bits >> (static_cast<unsigned>(place) % kDashPeriod) & 1U) != 0;
}

}  // namespace marisonde
