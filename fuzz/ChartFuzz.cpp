#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <string_view>
#include <vector>

#include "common/Numbers.h"
#include "graphs/Chart2D.h"
#include "graphs/SeriesRaster.h"

// The picture of a curve depends on its points alone: drawn at once, in pieces, or by its single segments,
// the same pixels are covered, and the box that a piece reports holds every pixel that it changed.
//
// Input: the first byte gives the line width and the length of the pieces, the rest is text, one number to a
// field, by turns X and Y. A field without a number is a gap.
namespace {

using namespace marisonde;

constexpr int kWidth = 40;
constexpr int kHeight = 30;

double NumberOf(std::string_view field) {
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    if (field == "inf") return kInfinity;
    if (field == "-inf") return -kInfinity;
    if (field.find_first_of("0123456789") == std::string_view::npos)
        return std::numeric_limits<double>::quiet_NaN();
    return Val(field);
}

int FillFrom(std::string_view text, ChartGroup& group) {
    int count = 0;
    for (bool isX = true; !text.empty() && count < group.NumPoints(); isX = !isX) {
        const std::size_t end = std::min(text.find_first_of(" ,\r\n"), text.size());
        const double value = NumberOf(text.substr(0, end));
        if (isX)
            group.SetX(++count, value);
        else
            group.SetY(1, count, value);
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return count;
}

std::vector<std::uint8_t> Pixels(const SeriesRaster& raster) {
    std::vector<std::uint8_t> all;
    for (int x = 0; x < kWidth; ++x) all.insert(all.end(), raster.Column(x).begin(), raster.Column(x).end());
    return all;
}

void CheckBox(const std::vector<std::uint8_t>& before, const std::vector<std::uint8_t>& after, PixelBox box) {
    for (int x = 0; x < kWidth; ++x) {
        for (int y = 0; y < kHeight; ++y) {
            const auto i = static_cast<std::size_t>(x * kHeight + y);
            const bool inside = x >= box.x0 && x <= box.x1 && y >= box.y0 && y <= box.y1;
            if (before[i] != after[i] && !inside) std::abort();
        }
    }
}

std::vector<std::uint8_t> InPieces(const ChartGroup& group, int count, int length, int lineWidth) {
    const PixelScale x(0, 40, kWidth, false);
    const PixelScale y(0, 30, kHeight, true);
    SeriesRaster raster;
    raster.Reset(kWidth, kHeight, lineWidth);
    for (int drawn = 0; drawn < count;) {
        const int next = std::min(drawn + length, count);
        const auto before = Pixels(raster);
        const PixelBox box = raster.Draw(group, drawn, next, x, y, 1);
        CheckBox(before, Pixels(raster), box);
        drawn = next;
    }
    return Pixels(raster);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 2) return 0;
    const int lineWidth = 1 + data[0] % 4;
    const int length = 1 + data[0] / 4;
    Chart2D chart;
    ChartGroup& group = chart.ChartGroups(1);
    group.SetNumSeries(1);
    const int count = FillFrom({reinterpret_cast<const char*>(data) + 1, size - 1}, group);
    const auto whole = InPieces(group, count, std::max(count, 1), lineWidth);
    if (whole != InPieces(group, count, length, lineWidth)) std::abort();
    if (whole != InPieces(group, count, 1, lineWidth)) std::abort();
    return 0;
}
