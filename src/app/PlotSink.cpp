#include "app/PlotSink.h"

#include <algorithm>

#include "app/DataWindow.h"

namespace marisonde {

void PlotSink::Clear() {
    Show();
    window_.Plot.ClearGraph();
    points_ = 0;
}

void PlotSink::Expect(int samples) {
    window_.Plot.ExpectPoints(samples);
}

void PlotSink::Append(const RawSample& raw, const CalibratedSample& sample) {
    constexpr int kBatch = 1000;
    if (room_ == 0) {
        Show();
        // A batch that could pass the limit would make room by dropping the oldest points.
        room_ = window_.Plot.BeginTick(std::min(kBatch, maxPoints_ - points_));
        open_ = true;
    }
    lastRaw_ = &raw;
    last_ = &sample;
    if (sample.Time == 0 && DateWithoutClock) {
        dated_ = sample;
        dated_.Time = DateWithoutClock(sample);
        last_ = &dated_;
    }
    window_.Plot.AddSample(raw, *last_);
    ++points_;
    --room_;
}

void PlotSink::Show() {
    if (!open_) return;
    window_.Plot.EndTick();
    open_ = false;
    room_ = 0;
    if (newest_ == NewestSample::Stays) return;
    window_.Link.State.CurrentRaw = *lastRaw_;
    window_.Link.State.CurrentSample = *last_;
    window_.Link.State.HasSample = true;
}

}  // namespace marisonde
