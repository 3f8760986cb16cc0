#include "graphs/Colors.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <vector>

#include "common/Numbers.h"

namespace marisonde {

namespace {

constexpr double kChannelGamma = 0.8;
constexpr double kDarker = 0.7;
constexpr std::size_t kColoredChannels = 8;

/// Red, green and blue at a wavelength; between two rows each runs in a straight line.
struct Hue {
    double wavelength;
    double red, green, blue;
};
constexpr std::array kHues{Hue{440, 0, 0, 1}, Hue{490, 0, 1, 1}, Hue{510, 0, 1, 0}, Hue{580, 1, 1, 0},
                           Hue{645, 1, 0, 0}};

/// Red, green, blue below 380 nm stand at magenta; from there to 440 nm red fades in proportion.
Hue HueAt(double w) {
    if (w < 380) return {w, 1, 0, 1};
    if (w < 440) return {w, (440 - w) / 60, 0, 1};
    for (std::size_t i = 1; i < kHues.size(); ++i) {
        const Hue& low = kHues[i - 1];
        const Hue& high = kHues[i];
        if (w >= high.wavelength) continue;
        const double width = high.wavelength - low.wavelength;
        const auto between = [&](double a, double b) {
            return a == b ? a : b > a ? (w - low.wavelength) / width : (high.wavelength - w) / width;
        };
        return {w, between(low.red, high.red), between(low.green, high.green), between(low.blue, high.blue)};
    }
    return {w, 1, 0, 0};
}

/// The eye's answer falls off outside 420 to 700 nm; from 367 and 807 nm on it is held, so that the colour of
/// an invisible wavelength can still be told from black.
double Intensity(double w) {
    const double held = std::clamp(w, 367.0, 807.0);
    if (held < 420) return 0.3 + 0.7 * (held - 380) / (420 - 380);
    if (held > 700) return 0.3 + 0.7 * (780 - held) / (780 - 700);
    return 1;
}

PackedColor Pack(int red, int green, int blue) {
    return static_cast<PackedColor>(red) + 256U * static_cast<PackedColor>(green) +
           65536U * static_cast<PackedColor>(blue);
}

PackedColor Darkened(PackedColor color) {
    const auto darker = [](int byte) { return static_cast<int>(byte * kDarker); };
    return Pack(darker(RedOf(color)), darker(GreenOf(color)), darker(BlueOf(color)));
}

}  // namespace

PackedColor WavelengthToColor(double wavelength, double gamma) {
    const Hue hue = HueAt(wavelength);
    const double intensity = Intensity(wavelength);
    const auto byte = [&](double part) { return ToInt32(255 * std::pow(part * intensity, gamma)); };
    return Pack(byte(hue.red), byte(hue.green), byte(hue.blue));
}

double WavelengthOfChannel(double captionNumber, double calibratedWavelength) {
    if (captionNumber >= 301) return captionNumber;
    return calibratedWavelength > 300 ? calibratedWavelength : 0;
}

PackedColor ColorForChannel(std::span<const double> wavelengths, int channel) {
    if (channel < 0 || static_cast<std::size_t>(channel) >= wavelengths.size()) return 0;
    // Each colour rests on those of all channels before it: worked out upward once instead of downward anew.
    std::vector<PackedColor> colors;
    for (const double wavelength : wavelengths.first(static_cast<std::size_t>(channel) + 1)) {
        PackedColor color = WavelengthToColor(wavelength, kChannelGamma);
        for (const PackedColor earlier : colors)
            if (earlier == color) color = Darkened(color);
        colors.push_back(color);
    }
    return colors.back();
}

void AutoColorChannels(std::span<const double> wavelengths, std::span<const bool> automatic,
                       std::span<PackedColor> colors) {
    const std::size_t count =
        std::min({wavelengths.size(), automatic.size(), colors.size(), kColoredChannels});
    for (std::size_t channel = 0; channel < count; ++channel)
        if (automatic[channel]) colors[channel] = ColorForChannel(wavelengths, static_cast<int>(channel));
}

}  // namespace marisonde
