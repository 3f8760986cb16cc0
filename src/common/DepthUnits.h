#pragma once

namespace marisonde {

constexpr double FeetFromMeters(double meters) {
    return meters * 39.37 / 12;
}
constexpr double MetersFromFeet(double feet) {
    return feet * 12 / 39.37;
}

/// A depth in the unit that the user counts in.
constexpr double ShownDepth(double meters, bool inMeters) {
    return inMeters ? meters : FeetFromMeters(meters);
}

}  // namespace marisonde
