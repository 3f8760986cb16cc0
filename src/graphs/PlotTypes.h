#pragma once

#include <cstdint>
#include <string_view>

namespace marisonde {

/// What an axis or a series shows. The numbers are the window's own codes; others have no title.
namespace PlotType {
inline constexpr std::int32_t None = 0;
inline constexpr std::int32_t BbUncorrected = 1;
inline constexpr std::int32_t BbCorrected = 2;
inline constexpr std::int32_t Fluorescence = 5;
inline constexpr std::int32_t NormalizedSignal = 6;
inline constexpr std::int32_t Attenuation = 7;
inline constexpr std::int32_t AttenuationAndAbsorption = 12;
inline constexpr std::int32_t DepthMeters = 13;
inline constexpr std::int32_t DepthFeet = 14;
inline constexpr std::int32_t Pressure = 15;
inline constexpr std::int32_t Distance = 16;
inline constexpr std::int32_t Angle = 17;
inline constexpr std::int32_t Wavelength = 18;
inline constexpr std::int32_t ElapsedTime = 19;
inline constexpr std::int32_t Temperature = 20;
}  // namespace PlotType

/// Title of an axis; "Unknown data type" for a code without one.
std::string_view AxisTitleForType(std::int32_t code);

}  // namespace marisonde
