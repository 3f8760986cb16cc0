#pragma once

#include <string>
#include <string_view>

#include "link/DataWindowState.h"

namespace marisonde {

/// Whose data the open files of a window hold. A cable may be pulled and plugged into another instrument, or
/// a search may pass others: what these send never gets into the files. It waits until there are others.
class RecordedInstrument {
  public:
    /// Who sends at the moment, as far as `state` knows.
    enum class Sender {
        Same,    ///< the instrument of the files, or one that cannot be told from it
        Unsure,  ///< the window connects, and nobody has been identified yet
        Other,
    };

    /// The files were opened for the instrument of `state`.
    void Opened(const DataWindowState& state);
    [[nodiscard]] Sender SenderIn(const DataWindowState& state) const;

    /// Model and serial of the instrument of the files, as far as they are known.
    [[nodiscard]] std::string Name() const;

    /// What belongs into the raw file now: the chunk, behind what was kept back while nobody was identified;
    /// nothing when it is another instrument's or nobody knows. Valid until the next call.
    std::string_view Pass(std::string_view chunk, const DataWindowState& state);
    /// Something is kept back that may belong into the file.
    [[nodiscard]] bool Holds() const { return !held_.empty(); }
    /// Hands out what the other instrument has sent since it was identified, and just before.
    [[nodiscard]] std::string TakeOthers();

  private:
    void Hold(std::string_view chunk, const DataWindowState& state);

    std::string model_, serial_;  ///< empty: not known
    std::string held_, passed_;
    std::string others_;               ///< of the other instrument
    int heldPort_ = 0, heldRate_ = 0;  ///< where held_ came from
};

}  // namespace marisonde
