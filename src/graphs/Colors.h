#pragma once

#include <cstdint>
#include <span>

namespace marisonde {

/// A colour as it stands in settings: red + 256 * green + 65536 * blue.
using PackedColor = std::uint32_t;

constexpr int RedOf(PackedColor color) {
    return static_cast<int>(color & 0xFF);
}
constexpr int GreenOf(PackedColor color) {
    return static_cast<int>((color >> 8) & 0xFF);
}
constexpr int BlueOf(PackedColor color) {
    return static_cast<int>((color >> 16) & 0xFF);
}

/// How the eye sees light of a wavelength in nm, in linear ramps between the pure hues; darker toward the
/// ends of the visible range. 0, or any wavelength out of sight, gives a very dark violet or red.
PackedColor WavelengthToColor(double wavelength, double gamma);

/// The wavelength in nm that colours a channel: the number in its caption from 301 on, otherwise the
/// calibrated one above 300, otherwise 0.
double WavelengthOfChannel(double captionNumber, double calibratedWavelength);

/// The automatic colour of a channel, counted from 0, given the wavelengths of all: that of its wavelength,
/// darkened once for each earlier channel that already has it. 0 (black) for a channel outside.
PackedColor ColorForChannel(std::span<const double> wavelengths, int channel);

/// Gives the channels 0 to 7 that are marked in `automatic` their automatic colour; the others keep theirs.
void AutoColorChannels(std::span<const double> wavelengths, std::span<const bool> automatic,
                       std::span<PackedColor> colors);

}  // namespace marisonde
