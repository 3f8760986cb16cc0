#pragma once

namespace marisonde {

/// Depth for users who count in feet.
constexpr double FeetFromMeters(double meters) {
    return meters * 39.37 / 12;
}

}  // namespace marisonde
