#pragma once

#include <cstdint>

#include "common/Question.h"
#include "files/SampleReader.h"

namespace marisonde {

/// Where the samples of a file go: the points of a window.
class SampleSink {
  public:
    virtual ~SampleSink() = default;
    /// Forgets everything: a further group begins.
    virtual void Clear() = 0;
    /// About so many samples will be in the group that was begun, as far as the file's size tells.
    virtual void Expect(int /*samples*/) {}
    virtual void Append(const RawSample& raw, const CalibratedSample& sample) = 0;
};

/// How often, in lines, a load looks after the rest of the program.
inline constexpr int kRawLinesPerService = 300;
inline constexpr int kDatLinesPerService = 2000;

/// Loads a file in groups of at most as many samples as a window may hold.
class GroupLoad {
  public:
    enum class Step {
        Working,    ///< call again
        GroupFull,  ///< there are more samples than the group holds: NextGroup, or leave it at that
        Done,       ///< the end of the file
        Failed,     ///< the reader's Error tells why; what was read stays
    };

    /// `reader` is open. `maxPoints` is at least 1. Both objects outlive the load.
    GroupLoad(SampleReader& reader, SampleSink& sink, int maxPoints)
        : reader_(reader), sink_(sink), maxPoints_(maxPoints) {}

    /// Reads at most `lines` lines.
    Step Run(int lines);
    /// Empties the sink and begins the next group with the sample that did not fit.
    void NextGroup();
    /// Samples in the sink.
    [[nodiscard]] int Points() const { return points_; }

  private:
    void Append();
    void TellExpected();

    SampleReader& reader_;
    SampleSink& sink_;
    int maxPoints_;
    int points_ = 0;
    std::uint64_t begin_ = 0;  ///< place in the file of the group
    bool told_ = false;        ///< the sink knows how large the group will be
    bool full_ = false;        ///< the reader's sample waits for the next group
};

/// Asked when a group is full. The second button stops. `raw`: of a raw file.
Question NextGroupQuestion(int points, bool raw);

}  // namespace marisonde
