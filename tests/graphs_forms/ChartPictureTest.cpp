#include <QImage>
#include <QPixmap>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <random>

#include "graphs/LivePlot.h"
#include "graphs/forms/ChartView.h"

namespace marisonde {
namespace {

constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

/// A window's graph that is fed with random samples, and the picture of it after each step.
class Feed {
  public:
    Feed(InstTypeCode model, bool depth, unsigned seed) : random_(seed) {
        if (depth) plot.VsDepthCommand();
        plot.SetupChartForInstrument(model);
        plot.MaxGraphPoints = 1000;
        ShowSeries(view);
    }
    static void ShowSeries(ChartView& shown) {
        const QColor colors[] = {Qt::red, Qt::blue, Qt::darkGreen, Qt::magenta, Qt::darkCyan, Qt::black};
        ChartLook look;
        look.markerSize = 6;
        shown.SetLook(look);
        // Strokes of every pattern, and markers of every shape.
        const auto style = [&](const char* name, int s) {
            return ChartView::SeriesStyle{QString(name).arg(s), colors[s % 6], s,
                                          static_cast<CurveMarker>(s % kCurveMarkers)};
        };
        for (int s = 1; s <= 8; ++s) {
            shown.SetSeriesStyle(1, s, style("c%1", s));
            shown.SetSeriesStyle(2, s, style("d%1", s + 3));
        }
        shown.resize(360, 280);
        shown.show();
        shown.RefreshNow();
    }

    /// One tick of up to `most` samples; some of them fail in one way or another.
    void Tick(int most) {
        const int lines = plot.BeginTick(Number(0, most));
        for (int i = 0; i < lines; ++i) {
            if (Chance(0.01)) {
                plot.AbandonTick();
                return;
            }
            plot.AddSample(raw_, NextSample());
        }
        plot.EndTick();
    }

    bool Chance(double p) { return std::uniform_real_distribution<double>(0, 1)(random_) < p; }
    int Number(int low, int high) { return std::uniform_int_distribution<int>(low, high)(random_); }
    double Noise() { return std::normal_distribution<double>(0, 1)(random_); }

    Chart2D chart;
    LivePlot plot{chart};
    ChartView view{chart};

  private:
    CalibratedSample NextSample() {
        ++count_;
        raw_.Gain[0] = static_cast<std::int16_t>(Chance(0.05) ? 6 : 3);
        sample_.Time = 40000 + count_ / 1440.0 / 8 - (Chance(0.01) ? 0.01 : 0);
        sample_.Depth = static_cast<float>(30 + 40 * std::sin(count_ * 0.01) + 0.4 * Noise());
        for (std::size_t i = 0; i < 8; ++i) {
            sample_.Valid[i] = !Chance(0.03);
            sample_.bb[i] = Value(0.003 + 0.001 * static_cast<double>(i), 0.0006);
            sample_.bbUncorr[i] = Value(0.003, 0.001);
            sample_.k[i] = static_cast<float>(Value(0.05 + 0.01 * static_cast<double>(i), 0.006));
        }
        sample_.a = static_cast<float>(Value(0.04, 0.01));
        return sample_;
    }
    double Value(double middle, double spread) {
        if (Chance(0.004)) return kNaN;
        if (Chance(0.002)) return 1e308;
        if (Chance(0.002)) return Chance(0.5) ? kInf : -kInf;
        if (Chance(0.01)) return middle + 20 * spread * Noise();
        return middle + spread * Noise();
    }

    std::mt19937 random_;
    int count_ = 0;
    RawSample raw_;
    CalibratedSample sample_;
};

QImage PictureOf(ChartView& view) {
    return view.grab().toImage();
}

/// The first pixel that differs, for the message.
testing::AssertionResult Equal(const QImage& a, const QImage& b) {
    if (a.size() != b.size()) return testing::AssertionFailure() << "sizes differ";
    for (int y = 0; y < a.height(); ++y)
        for (int x = 0; x < a.width(); ++x)
            if (a.pixel(x, y) != b.pixel(x, y))
                return testing::AssertionFailure() << "pixel " << x << "," << y << ": " << std::hex
                                                   << a.pixel(x, y) << " and " << b.pixel(x, y);
    return testing::AssertionSuccess();
}

struct Course {
    InstTypeCode model;
    bool depth;
};

class ChartPicture : public testing::TestWithParam<Course> {};

TEST_P(ChartPicture, AppendedPointsGiveTheSamePixelsAsAFullRedraw) {
    for (unsigned seed = 1; seed <= 3; ++seed) {
        Feed feed(GetParam().model, GetParam().depth, seed);
        for (int step = 0; step < 150; ++step) {
            feed.Tick(step % 10 == 0 ? 300 : 12);
            if (feed.Chance(0.03)) feed.chart.Axes(AxisName::X).SetMax(feed.Number(20, 300));
            if (feed.Chance(0.03)) feed.chart.Axes(AxisName::Y).SetMax(feed.Number(1, 40) / 1000.0);
            if (feed.Chance(0.02)) feed.chart.Axes(AxisName::Y2).SetMin(-feed.Number(0, 40) / 100.0);
            if (feed.Chance(0.01)) feed.plot.ClearGraph();
            if (feed.Chance(0.01)) feed.chart.ChartGroups(1).SetDisplay(2, SeriesDisplay::Kept);
            if (!feed.Chance(0.5)) continue;  // several ticks between two pictures
            feed.view.RefreshNow();
            if (feed.chart.IsBatched() || !feed.Chance(0.4)) continue;
            const QImage appended = PictureOf(feed.view);
            feed.view.RedrawNow();
            ASSERT_TRUE(Equal(appended, PictureOf(feed.view))) << "seed " << seed << " step " << step;
        }
    }
}

TEST_P(ChartPicture, ASecondViewOfTheSamePointsLooksTheSame) {
    Feed feed(GetParam().model, GetParam().depth, 9);
    for (int step = 0; step < 60; ++step) {
        feed.Tick(20);
        feed.view.RefreshNow();
    }
    while (feed.chart.IsBatched()) feed.Tick(20);
    feed.view.RefreshNow();
    const QImage grown = PictureOf(feed.view);
    ChartView fresh(feed.chart);
    Feed::ShowSeries(fresh);
    EXPECT_TRUE(Equal(grown, PictureOf(fresh)));
}

INSTANTIATE_TEST_SUITE_P(
    Models, ChartPicture,
    testing::Values(Course{InstTypeCode::Corvane6, false}, Course{InstTypeCode::Corvane6, true},
                    Course{InstTypeCode::LTidal, false}, Course{InstTypeCode::LTidal, true},
                    Course{InstTypeCode::Delph4, false}, Course{InstTypeCode::Delph4, true}));

TEST(ChartPictures, ViewChangeAndBackGivesTheSamePicture) {
    Feed feed(InstTypeCode::LTidal, false, 4);
    for (int step = 0; step < 30; ++step) feed.Tick(20);
    while (feed.chart.IsBatched()) feed.Tick(5);
    feed.plot.VsDepthCommand();
    feed.plot.VsTimeCommand();
    feed.view.RefreshNow();
    const QImage before = PictureOf(feed.view);
    feed.plot.VsDepthCommand();
    feed.view.RefreshNow();
    EXPECT_FALSE(Equal(before, PictureOf(feed.view)));
    feed.plot.VsTimeCommand();
    feed.view.RefreshNow();
    EXPECT_TRUE(Equal(before, PictureOf(feed.view)));
}

}  // namespace
}  // namespace marisonde
