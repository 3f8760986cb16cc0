#pragma once

#include <gtest/gtest.h>

#include "graphs/LivePlot.h"

namespace marisonde {

/// A chart with its plot, and samples that need only what a test says about them.
class PlotTest : public testing::Test {
  protected:
    static constexpr double kStart = 40000;  ///< date of the first sample
    static constexpr double kMinute = 1.0 / 1440;

    static CalibratedSample SampleAt(double minutes, float depth = 10) {
        CalibratedSample sample;
        sample.Time = kStart + minutes * kMinute;
        sample.Depth = depth;
        return sample;
    }
    /// A sample of a Corvane channel with both forms of backscattering.
    static CalibratedSample Scatter(double minutes, int channel, double bb, double bbUncorr) {
        CalibratedSample sample = SampleAt(minutes);
        const auto i = static_cast<std::size_t>(channel);
        sample.Valid[i] = true;
        sample.bb[i] = bb;
        sample.bbUncorr[i] = bbUncorr;
        return sample;
    }
    void Plot(const CalibratedSample& sample, const RawSample& raw = {}) {
        ASSERT_EQ(plot.BeginTick(1), 1);
        plot.AddSample(raw, sample);
        plot.EndTick();
    }
    /// Plots `count` samples a minute apart, one tick for as many as a tick takes.
    void PlotMany(int count) {
        for (int done = 0; done < count;) {
            const int lines = plot.BeginTick(count - done);
            for (int i = 0; i < lines; ++i) plot.AddSample({}, SampleAt(done + i));
            plot.EndTick();
            done += lines;
        }
    }
    ChartAxis& X() { return chart.Axes(AxisName::X); }
    ChartAxis& Y() { return chart.Axes(AxisName::Y); }
    ChartAxis& Y2() { return chart.Axes(AxisName::Y2); }

    Chart2D chart;
    LivePlot plot{chart};
    ChartGroup& primary = chart.ChartGroups(1);
    ChartGroup& secondary = chart.ChartGroups(2);
};

}  // namespace marisonde
