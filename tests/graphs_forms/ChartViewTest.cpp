#include <QApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <qcustomplot.h>

#include "graphs/LivePlot.h"
#include "graphs/forms/ChartLook.h"
#include "graphs/forms/ChartTicker.h"
#include "graphs/forms/ChartView.h"

namespace marisonde {
namespace {

class ChartViewTest : public testing::Test {
  protected:
    void SetUp() override {
        plot.SetupChartForInstrument(InstTypeCode::Delph2);
        view.SetSeriesStyle(1, "c(470)", Qt::blue);
        view.resize(500, 400);
        view.show();
        view.RefreshNow();
    }
    void Append(float value) {
        const int lines = plot.BeginTick(1);
        for (int i = 0; i < lines; ++i) {
            CalibratedSample sample;
            sample.Time = 40000 + minutes_++ / 1440.0;
            sample.Depth = 10;
            sample.k[0] = value;
            plot.AddSample({}, sample);
        }
        plot.EndTick();
    }
    int Pixels(QRgb color) {
        const QImage picture = view.grab().toImage();
        int count = 0;
        for (int y = 0; y < picture.height(); ++y)
            for (int x = 0; x < picture.width(); ++x) count += picture.pixel(x, y) == color;
        return count;
    }
    QCustomPlot& Plot() { return *view.findChild<QCustomPlot*>(); }

    Chart2D chart;
    LivePlot plot{chart};
    ChartView view{chart};
    int minutes_ = 0;
};

TEST_F(ChartViewTest, HasItsNames) {
    EXPECT_EQ(view.objectName(), "Chart2D1");
    EXPECT_FALSE(view.accessibleName().isEmpty());
}

TEST_F(ChartViewTest, ShowsPointsInTheColourOfTheSeries) {
    const int legend = Pixels(QColor(Qt::blue).rgb());
    EXPECT_GT(legend, 0);
    for (int i = 0; i < 50; ++i) Append(0.005F);
    view.RefreshNow();
    // 49 of 100 minutes across a plot of somewhat below 500 pixels.
    EXPECT_GT(Pixels(QColor(Qt::blue).rgb()), legend + 150);
}

TEST_F(ChartViewTest, DrawsByItselfWithinABlinkAndNotAtOnce) {
    Append(0.005F);
    Append(0.005F);
    view.RefreshNow();
    const int before = Pixels(QColor(Qt::blue).rgb());
    for (int i = 0; i < 50; ++i) Append(0.005F);
    EXPECT_EQ(Pixels(QColor(Qt::blue).rgb()), before);
    QElapsedTimer time;
    for (time.start(); time.elapsed() < 5000 && Pixels(QColor(Qt::blue).rgb()) <= before + 50;)
        QApplication::processEvents(QEventLoop::WaitForMoreEvents, 100);
    EXPECT_GT(Pixels(QColor(Qt::blue).rgb()), before + 50);
}

TEST_F(ChartViewTest, KeepsItsPictureDuringABatch) {
    for (int i = 0; i < 20; ++i) Append(0.005F);
    view.RefreshNow();
    const QImage before = view.grab().toImage();
    chart.SetIsBatched(true);
    chart.ChartGroups(1).SetDisplay(1, SeriesDisplay::Kept);
    chart.Axes(AxisName::X).SetMax(7);
    view.RefreshNow();
    EXPECT_EQ(before, view.grab().toImage());
    EXPECT_EQ(Plot().xAxis->range().upper, 100);
    chart.SetIsBatched(false);
    view.RefreshNow();
    EXPECT_EQ(Plot().xAxis->range().upper, 7);
}

TEST_F(ChartViewTest, ChangeBeforeABatchIsShownAfterIt) {
    chart.Axes(AxisName::X).SetMax(7);  // the view is marked
    chart.SetIsBatched(true);
    QElapsedTimer time;
    for (time.start(); time.elapsed() < 120;) QApplication::processEvents(QEventLoop::AllEvents, 20);
    EXPECT_EQ(Plot().xAxis->range().upper, 100);
    chart.SetIsBatched(false);
    for (time.start(); time.elapsed() < 5000 && Plot().xAxis->range().upper != 7;)
        QApplication::processEvents(QEventLoop::WaitForMoreEvents, 100);
    EXPECT_EQ(Plot().xAxis->range().upper, 7);
}

TEST_F(ChartViewTest, AxesShowLimitsAndTitles) {
    EXPECT_EQ(Plot().xAxis->label(), "Elapsed Time (minutes)");
    EXPECT_EQ(Plot().yAxis->label(), "Attenuation (/m)");
    EXPECT_EQ(Plot().yAxis->range().upper, 0.01);
    EXPECT_FALSE(Plot().yAxis2->tickLabels());
}

TEST_F(ChartViewTest, DepthRunsDownTheScreen) {
    plot.VsDepthCommand();
    view.RefreshNow();
    EXPECT_EQ(Plot().yAxis->label(), "Depth (m)");
    EXPECT_TRUE(Plot().yAxis->rangeReversed());
    EXPECT_EQ(Plot().xAxis2->label(), "Attenuation Coefficient (/m)");
    const QRect area = Plot().axisRect()->rect();
    const QPointF top = view.PixelToData(1, area.topLeft());
    const QPointF bottom = view.PixelToData(1, area.bottomRight());
    EXPECT_LT(top.x(), bottom.x());
    EXPECT_NEAR(top.x(), 0, 0.5);
    EXPECT_NEAR(bottom.x(), 100, 0.5);
    EXPECT_NEAR(bottom.y(), 0.01, 1e-4);
}

TEST_F(ChartViewTest, PixelsBecomeValuesOfBothGroups) {
    plot.SetupChartForInstrument(InstTypeCode::NTidal);
    view.RefreshNow();
    const QRect area = Plot().axisRect()->rect();
    const QPointF first = view.PixelToData(1, area.topRight());
    const QPointF second = view.PixelToData(2, area.topRight());
    EXPECT_NEAR(first.x(), 100, 0.5);
    EXPECT_NEAR(first.y(), 0.01, 1e-4);
    EXPECT_NEAR(second.y(), 0.1, 1e-3);
}

TEST_F(ChartViewTest, NewSizeShowsTheSamePoints) {
    for (int i = 0; i < 30; ++i) Append(0.005F);
    view.RefreshNow();
    view.resize(700, 300);
    QApplication::processEvents();
    const QImage resized = view.grab().toImage();
    view.RedrawNow();
    EXPECT_EQ(resized, view.grab().toImage());
}

TEST_F(ChartViewTest, PictureHasTheSizeAskedForAndHoldsTheCurves) {
    for (int i = 0; i < 80; ++i) Append(0.005F);
    view.RefreshNow();
    const QImage picture = view.RenderPixmap({600, 400}, 2).toImage();
    EXPECT_EQ(picture.size(), QSize(1200, 800));
    int blue = 0;
    for (int y = 0; y < 600; ++y)
        for (int x = 0; x < 1200; ++x) blue += picture.pixel(x, y) == QColor(Qt::blue).rgb();
    EXPECT_GT(blue, 1000);  // 79 of 100 minutes, two pixels high
    QTemporaryDir folder;
    EXPECT_TRUE(view.SavePng(folder.filePath("graph.png"), {300, 200}));
    EXPECT_EQ(QImage(folder.filePath("graph.png")).size(), QSize(300, 200));
    EXPECT_FALSE(view.SavePng(folder.filePath("none/graph.png"), {300, 200}));
}

TEST_F(ChartViewTest, FollowsTheThemeOfTheWindow) {
    QPalette dark(QColor(45, 45, 48));
    dark.setColor(QPalette::Base, QColor(20, 20, 20));
    view.setPalette(dark);
    view.RefreshNow();
    EXPECT_EQ(view.grab().toImage().pixel(2, 2), QColor(20, 20, 20).rgb());
    ChartLook look;
    look.background = QColor(Qt::yellow);
    view.SetLook(look);
    view.RefreshNow();
    EXPECT_EQ(view.grab().toImage().pixel(2, 2), QColor(Qt::yellow).rgb());
}

TEST_F(ChartViewTest, WhiteAndBlackOfNobodysChoiceFollowTheTheme) {
    view.SetLook(LookOf(GraphLook()));
    view.RefreshNow();
    EXPECT_EQ(view.grab().toImage().pixel(2, 2), QColor(Qt::white).rgb());
    QPalette dark(QColor(45, 45, 48));
    dark.setColor(QPalette::Base, QColor(20, 20, 20));
    view.setPalette(dark);
    view.RefreshNow();
    EXPECT_EQ(view.grab().toImage().pixel(2, 2), QColor(20, 20, 20).rgb());
    GraphLook chosen;
    chosen.GraphExtColor = 0x0000FF;  // red
    view.SetLook(LookOf(chosen));
    view.RefreshNow();
    EXPECT_EQ(view.grab().toImage().pixel(2, 2), QColor(Qt::red).rgb());
}

TEST_F(ChartViewTest, CurvesHaveStrokesOfTheirPattern) {
    view.SetSeriesStyle(1, 1, {"c(470)", Qt::blue, 1});
    for (int i = 0; i < 100; ++i) Append(0.005F);
    view.RefreshNow();
    const QRect area = view.PlotArea();
    const QImage picture = view.grab().toImage();
    const CurveSample sample = view.SampleOf(1, 1);
    EXPECT_EQ(sample.color, QColor(Qt::blue));
    EXPECT_EQ(sample.pattern, 1);
    // Somewhere in each column of the first two periods stands the curve: ten pixels full, six faint. The
    // first column belongs to the axis.
    for (int x = 1; x < 64; ++x) {
        const QRgb expected = x % 16 < 10 ? sample.color.rgb() : sample.faint.rgb();
        bool found = false;
        for (int y = area.top(); y <= area.bottom(); ++y)
            found = found || picture.pixel(area.left() + x, y) == expected;
        EXPECT_TRUE(found) << x;
    }
}

TEST_F(ChartViewTest, TheLegendNamesTheCurvesThatAreDrawn) {
    view.SetSeriesStyle(1, 2, {"c(700)", Qt::red});
    view.RefreshNow();
    EXPECT_EQ(Plot().legend->itemCount(), 2);
    chart.ChartGroups(1).SetDisplay(1, SeriesDisplay::Kept);
    view.RefreshNow();
    EXPECT_EQ(Plot().legend->itemCount(), 1);
    chart.ChartGroups(1).SetDisplay(2, SeriesDisplay::Kept);
    view.RefreshNow();
    EXPECT_FALSE(Plot().legend->visible());
    chart.ChartGroups(1).SetDisplay(1, SeriesDisplay::Drawn);
    view.RefreshNow();
    EXPECT_EQ(Plot().legend->itemCount(), 1);
    EXPECT_TRUE(Plot().legend->visible());
}

TEST_F(ChartViewTest, MarkersAreShownOnceTheyAreWiderThanTheLine) {
    view.SetSeriesStyle(1, 1, {"c(470)", Qt::blue, 0, CurveMarker::Square});
    EXPECT_EQ(view.SampleOf(1, 1).marker, CurveMarker::None);
    for (int i = 0; i < 100; ++i) Append(0.005F);
    view.RefreshNow();
    const int line = Pixels(QColor(Qt::blue).rgb());
    ChartLook look;
    look.markerSize = 7;
    view.SetLook(look);
    view.RefreshNow();
    EXPECT_EQ(view.SampleOf(1, 1).marker, CurveMarker::Square);
    // A square of 49 pixels at least every 20 of more than 300 pixels; the line has 7 of each already.
    EXPECT_GT(Pixels(QColor(Qt::blue).rgb()), line + 15 * 42);
}

TEST_F(ChartViewTest, OneColourAskedForTwiceIsShownInTwoShades) {
    view.SetSeriesStyle(1, 1, {"a", Qt::yellow});
    view.SetSeriesStyle(1, 2, {"b", QColor(178, 178, 0)});
    const QColor first = view.SampleOf(1, 1).color;
    const QColor second = view.SampleOf(1, 2).color;
    EXPECT_GE(ContrastOf(first, Qt::white), 3);
    EXPECT_GE(ContrastOf(second, Qt::white), 3);
    EXPECT_GE(std::abs(first.red() - second.red()), 40);
    EXPECT_EQ(view.SampleOf(2, 9), CurveSample()) << "no style, nothing to show";
}

TEST(ChartLook, BetweenItsStrokesACurveIsFaintButSeen) {
    for (const QColor& background : {QColor(Qt::white), QColor(20, 20, 20)})
        for (const QColor& asked : {QColor(Qt::yellow), QColor(0, 0, 255), QColor(178, 0, 0)}) {
            const QColor full = ReadableOn(asked, background);
            const QColor faint = FaintOn(full, background);
            EXPECT_GE(ContrastOf(faint, background), 1.6) << asked.name().toStdString();
            EXPECT_GE(ContrastOf(full, faint), 1.3) << asked.name().toStdString();
        }
}

TEST(ChartLook, SizesAreHeldToWhatCanBeDrawn) {
    GraphLook look;
    look.LineSize = -3;
    look.MarkerSize = 100000;
    look.GridStyle = 9;
    look.GridOn = false;
    const ChartLook chart = LookOf(look);
    EXPECT_EQ(chart.lineSize, 1);
    EXPECT_EQ(chart.markerSize, 40);
    EXPECT_EQ(chart.gridStyle, 2);
    EXPECT_FALSE(chart.gridOn);
    EXPECT_EQ(ColorOf(0x010203), QColor(3, 2, 1));
}

TEST(ChartLook, CurvesStandOutFromTheirBackground) {
    // White on black is 21 to 1 by definition.
    EXPECT_NEAR(ContrastOf(Qt::white, Qt::black), 21, 1e-9);
    EXPECT_EQ(ReadableOn(Qt::red, Qt::white), QColor(Qt::red));
    for (const QColor& color : {QColor(Qt::yellow), QColor(Qt::black), QColor(0, 0, 255), QColor(31, 0, 31)})
        for (const QColor& background : {QColor(Qt::white), QColor(20, 20, 20)})
            EXPECT_GE(ContrastOf(ReadableOn(color, background), background), 3.0)
                << color.name().toStdString();
}

TEST(ShownRange, IsFitForTheLibraryWhateverTheLimits) {
    for (const auto& [min, max] : {std::pair{0.0, 1.0},
                                   {5.0, 5.0},
                                   {0.0, 0.0},
                                   {9.0, 2.0},
                                   {-1e308, 1e308},
                                   {1e308, 1e308},
                                   {0.0, 5e-324},
                                   {1e9, 1e9 + 1e-9},
                                   {1e-300, 1e20}}) {
        const AxisRange range = ShownRange(min, max);
        EXPECT_TRUE(QCPRange::validRange(range.min, range.max)) << min << " " << max;
        EXPECT_LT(range.min, range.max);
    }
    EXPECT_EQ(ShownRange(0, 1).max, 1);
}

TEST_F(ChartViewTest, AnyLimitsCanBeShown) {
    for (int i = 0; i < 30; ++i) Append(0.005F);
    for (const auto& [min, max] :
         {std::pair{5.0, 5.0}, {-1e308, 1e308}, {1e308, 1.1e308}, {3.0, -3.0}, {0.0, 5e-324}}) {
        chart.Axes(AxisName::Y).SetMin(min);
        chart.Axes(AxisName::Y).SetMax(max);
        chart.Axes(AxisName::X).SetMin(min);
        chart.Axes(AxisName::X).SetMax(max);
        view.RefreshNow();
        EXPECT_FALSE(view.grab().isNull());
    }
}

}  // namespace
}  // namespace marisonde
