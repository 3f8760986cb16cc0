#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace marisonde::detail {

/// The powers of ten that a double holds exactly, 10^0 to 10^22.
inline constexpr std::array<double, 23> kExactPowers{1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                                     1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                                     1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
inline constexpr int kLastExactPower = 22;

/// 10^0 to 10^17.
inline constexpr auto kWholePowers = [] {
    std::array<std::uint64_t, 18> powers{1};
    for (std::size_t i = 1; i < powers.size(); ++i) powers[i] = powers[i - 1] * 10;
    return powers;
}();

}  // namespace marisonde::detail
