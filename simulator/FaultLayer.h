#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "simulator/Options.h"
#include "simulator/Random.h"

namespace marisonde::simulator {

/// A bad cable around a byte stream. Which bytes are flipped, dropped or preceded by babble depends on the
/// seed and on their place in the stream, not on how the stream is cut into calls.
class FaultLayer {
  public:
    FaultLayer(const FaultOptions& options, std::uint64_t seed);

    /// What arrives at `now` of bytes sent since the last call, with what was held back before.
    std::string Pass(std::string_view bytes, Millis now);
    [[nodiscard]] bool Vanished(Millis now) const;

  private:
    void Damage(char byte, std::string& out);
    [[nodiscard]] bool Stalled(Millis now) const;
    [[nodiscard]] std::size_t PieceSize();

    FaultOptions options_;
    Random damage_;
    Random pieces_;
    std::uint64_t untilFlip_;
    std::uint64_t untilDrop_;
    std::uint64_t untilBabble_;
    std::string held_;
};

}  // namespace marisonde::simulator
