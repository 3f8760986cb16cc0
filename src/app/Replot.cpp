// A window whose samples are put on its graph a second time, because what they are converted with has
// changed.
#include <algorithm>

#include "app/DataWindow.h"
#include "files/RawFile.h"
#include "platform/Operations.h"

namespace marisonde {

void DataWindow::ClearShownData() {
    if (Running != nullptr) Running->Cancel(kLoadOperation);
    if (Stored.IsShown()) ForgetSample();
    Stored = {};
    ++LoadSerial;
    LoadProgress.reset();
    held_.reset();
    dates_.clear();
    datesDropped_ = 0;
    plottedUnlogged_ = false;
    Plot.ClearGraph();
}

std::uint64_t DataWindow::BeginReplot() {
    if (const auto trouble = Files.FlushNow(DataFileKind::Raw)) Report(*trouble);
    const std::uint64_t length = WholeLinesLength(Files.State().rawTemporary);
    if (length > 0) held_ = Held{Link.DataLineQueue.size(), {}};
    return length;
}

void DataWindow::EndReplot() {
    if (!held_) return;
    const Held held = *std::move(held_);
    held_.reset();
    int room = 0;
    for (std::size_t i = 0; i < held.samples.size(); ++i, --room) {
        if (room == 0) {
            if (i > 0) Plot.EndTick();
            room = Plot.BeginTick(static_cast<int>(held.samples.size() - i));
        }
        PlotSample(held.samples[i].first, held.samples[i].second);
    }
    if (!held.samples.empty()) Plot.EndTick();
}

/// The tick while earlier samples are read from the log: what the log holds already comes from there.
void DataWindow::HoldTick() {
    if (!Link.State.CalReady || !converter_) return;
    for (int lines = Link.DataLineQueue.size(); lines > 0; --lines) {
        const bool logged = held_->logged > 0;
        if (logged) --held_->logged;
        if (!TakeNextSample()) return;
        DateSample();
        StoreSample();
        if (logged) continue;
        held_->samples.emplace_back(Link.State.CurrentRaw, Link.State.CurrentSample);
        if (held_->samples.size() > static_cast<std::size_t>(Plot.MaxGraphPoints)) held_->samples.pop_front();
    }
}

double DataWindow::DateWithoutClock(std::size_t index) const {
    if (dates_.empty()) return app_.clock.Now();
    const std::size_t place = index < datesDropped_ ? 0 : index - datesDropped_;
    return dates_[std::min(place, dates_.size() - 1)];
}

}  // namespace marisonde
