#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "graphs/Chart2D.h"
#include "graphs/SeriesRaster.h"

namespace marisonde {
namespace {

using Lines = std::vector<std::string>;

Lines PictureOf(CurveMarker marker, int size, bool transposed = false) {
    Lines lines(static_cast<std::size_t>(size), std::string(static_cast<std::size_t>(size), '.'));
    for (const MarkSpan& span : MarkSpans(marker, size, transposed))
        for (int y = span.top; y <= span.bottom; ++y)
            lines.at(static_cast<std::size_t>(y + size / 2))
                .at(static_cast<std::size_t>(span.column + size / 2)) = 'x';
    return lines;
}

TEST(CurveMarks, NamesAreThoseOfTheSettings) {
    EXPECT_EQ(MarkerFromName("Circle"), CurveMarker::Circle);
    EXPECT_EQ(MarkerFromName("Square"), CurveMarker::Square);
    EXPECT_EQ(MarkerFromName("Triangle"), CurveMarker::Triangle);
    EXPECT_EQ(MarkerFromName("Cross"), CurveMarker::Cross);
    for (const char* other : {"", "circle", "Star"}) EXPECT_EQ(MarkerFromName(other), CurveMarker::None);
}

TEST(CurveMarks, ShapesAreWhatTheyAreCalled) {
    EXPECT_EQ(PictureOf(CurveMarker::Square, 3), (Lines{"xxx", "xxx", "xxx"}));
    EXPECT_EQ(PictureOf(CurveMarker::Circle, 5), (Lines{".xxx.", "xxxxx", "xxxxx", "xxxxx", ".xxx."}));
    EXPECT_EQ(PictureOf(CurveMarker::Cross, 5), (Lines{"..x..", "..x..", "xxxxx", "..x..", "..x.."}));
    EXPECT_EQ(PictureOf(CurveMarker::Triangle, 5), (Lines{"..x..", "..x..", ".xxx.", ".xxx.", "xxxxx"}));
}

TEST(CurveMarks, AChartOnItsSideGetsTheSameShapeToSee) {
    const Lines upright = PictureOf(CurveMarker::Triangle, 7);
    const Lines turned = PictureOf(CurveMarker::Triangle, 7, true);
    for (std::size_t y = 0; y < 7; ++y)
        for (std::size_t x = 0; x < 7; ++x) EXPECT_EQ(turned[x][y], upright[y][x]);
}

TEST(CurveMarks, NothingWithoutShapeOrSize) {
    EXPECT_TRUE(MarkSpans(CurveMarker::None, 9, false).empty());
    EXPECT_TRUE(MarkSpans(CurveMarker::Circle, 0, false).empty());
}

TEST(CurveMarks, EachPatternIsItsOwnAndFirstIsSolid) {
    std::vector<std::string> seen;
    for (int pattern = 0; pattern < kDashPatterns; ++pattern) {
        std::string strokes;
        for (int place = 0; place < kDashPeriod; ++place) strokes += IsFullAt(pattern, place) ? '-' : ' ';
        for (const std::string& other : seen) EXPECT_NE(strokes, other);
        seen.push_back(strokes);
        EXPECT_EQ(IsFullAt(pattern, 3), IsFullAt(pattern, 3 + kDashPeriod));
        EXPECT_EQ(IsFullAt(pattern, 9), IsFullAt(pattern + kDashPatterns, 9));
    }
    EXPECT_EQ(seen[0], std::string(kDashPeriod, '-'));
    EXPECT_EQ(seen[1].substr(0, 16), "----------      ");
}

class MarkedRaster : public testing::Test {
  protected:
    MarkedRaster() { group.SetNumSeries(2); }
    void Reset(SeriesRaster& raster) {
        raster.Reset(200, 60, 1);
        SeriesRaster::Markers markers{};
        markers[1] = CurveMarker::Cross;
        markers[2] = CurveMarker::Circle;
        raster.SetMarkers(markers, 7, false);
    }
    void Draw(SeriesRaster& raster, int from, int to) {
        raster.Draw(group, from, to, PixelScale(0, 200, 200, false), PixelScale(0, 60, 60, true), 1);
    }
    void Append(double x, double y1, double y2) {
        const int point = group.LastPoint() + (started ? 1 : 0);
        started = true;
        group.SetX(point, x);
        group.SetY(1, point, y1);
        group.SetY(2, point, y2);
        group.SetLastPoint(point);
    }
    Chart2D chart;
    ChartGroup& group = chart.ChartGroups(1);
    bool started = false;
};

TEST_F(MarkedRaster, MarkersStandAtPointsWithRoomBetweenThem) {
    for (int x = 0; x < 100; x += 10) Append(x + 0.5, 30.5, 10.5);
    SeriesRaster raster;
    Reset(raster);
    Draw(raster, 1, group.LastPoint());
    // Twice the size of 7 are 14 pixels: of points 10 pixels apart every second has a cross, 7 pixels high.
    for (int x = 0; x <= 80; x += 10) {
        const auto column = raster.Column(x);
        const bool marked = column[29 - 3] == 1 && column[29 + 3] == 1;
        EXPECT_EQ(marked, x % 20 == 0) << x;
    }
}

TEST_F(MarkedRaster, PiecesGiveTheSamePictureAsTheWhole) {
    std::mt19937 random(5);
    std::uniform_real_distribution<double> share(0, 1);
    SeriesRaster grown;
    Reset(grown);
    int drawn = 0;
    double x = 20;
    for (int i = 0; i < 900; ++i) {
        x += (share(random) - 0.45) * 3;  // goes back at times, as a profile does
        const auto value = [&] {
            return share(random) < 0.1 ? std::numeric_limits<double>::quiet_NaN() : 60 * share(random);
        };
        Append(share(random) < 0.02 ? std::numeric_limits<double>::quiet_NaN() : x, value(), value());
        if (share(random) < 0.6) continue;
        Draw(grown, drawn, group.LastPoint());
        drawn = group.LastPoint();
        if (share(random) < 0.9) continue;
        SeriesRaster whole;
        Reset(whole);
        Draw(whole, 1, group.LastPoint());
        for (int column = 0; column < 200; ++column)
            ASSERT_TRUE(std::equal(whole.Column(column).begin(), whole.Column(column).end(),
                                   grown.Column(column).begin()))
                << "column " << column << " after " << drawn;
    }
}

}  // namespace
}  // namespace marisonde
