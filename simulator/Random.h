#pragma once

#include <cmath>
#include <cstdint>
#include <random>

namespace marisonde::simulator {

/// Numbers that depend on the seed alone, on every platform: the distributions of the standard library do
/// not.
class Random {
  public:
    explicit Random(std::uint64_t seed) : engine_(seed) {}

    /// 0 <= value < 1.
    double Unit() { return static_cast<double>(engine_() >> 11U) * 0x1p-53; }
    /// 0 <= value < limit, limit > 0.
    std::uint64_t Below(std::uint64_t limit) { return engine_() % limit; }
    /// Mean 0, standard deviation 1 (Box and Muller 1958).
    double Normal() {
        if (hasSpare_) {
            hasSpare_ = false;
            return spare_;
        }
        const double radius = std::sqrt(-2 * std::log(1 - Unit()));
        const double angle = 2 * 3.14159265358979324 * Unit();
        spare_ = radius * std::sin(angle);
        hasSpare_ = true;
        return radius * std::cos(angle);
    }
    /// Bytes until the next event that hits one byte in `oneIn` on average; at least 1.
    std::uint64_t Gap(unsigned oneIn) {
        if (oneIn <= 1) return 1;
        return 1 + static_cast<std::uint64_t>(std::log(1 - Unit()) / std::log1p(-1.0 / oneIn));
    }

  private:
    std::mt19937_64 engine_;
    double spare_ = 0;
    bool hasSpare_ = false;
};

}  // namespace marisonde::simulator
