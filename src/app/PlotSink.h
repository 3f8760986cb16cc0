#pragma once

#include <functional>

#include "files/GroupLoad.h"

namespace marisonde {

class DataWindow;

/// Puts stored samples into the graph of a window as a tick does with live ones.
class PlotSink final : public SampleSink {
  public:
    /// Whether the window's newest sample follows what is read, or stays the instrument's.
    enum class NewestSample { Follows, Stays };
    /// Never holds more than `maxPoints`. The window outlives it, and the samples appended live to the next
    /// Show.
    PlotSink(DataWindow& window, int maxPoints, NewestSample newest)
        : window_(window), maxPoints_(maxPoints), newest_(newest) {}

    /// Called with each sample whose line has no clock, to give it its date.
    std::function<double(const CalibratedSample&)> DateWithoutClock;

    void Clear() override;
    void Expect(int samples) override;
    void Append(const RawSample& raw, const CalibratedSample& sample) override;
    /// Shows what was appended since the last call. To be called before the program goes on to other things.
    void Show();

  private:
    DataWindow& window_;
    int maxPoints_;
    NewestSample newest_;
    int points_ = 0;
    int room_ = 0;  ///< samples that the batch at hand still takes
    bool open_ = false;
    const RawSample* lastRaw_ = nullptr;  ///< the reader's own: a copy of each would cost as much as decoding
    const CalibratedSample* last_ = nullptr;
    CalibratedSample dated_;
};

}  // namespace marisonde
