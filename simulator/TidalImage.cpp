#include <algorithm>
#include <array>
#include <bit>
#include <cmath>

#include "simulator/FieldText.h"
#include "simulator/Tidal.h"

namespace marisonde::simulator {

namespace {

constexpr std::size_t kImageSize = 128;
constexpr std::int64_t kFrom1970To1980 = 315532800;  // ten years with two leap days

/// Puts values at positions counted from 1.
class Image {
  public:
    void Byte(std::size_t pos, std::int64_t value) { bytes_[pos - 1] = static_cast<char>(value & 0xFF); }
    void Word(std::size_t pos, std::int64_t value) {
        Byte(pos, value);
        Byte(pos + 1, value >> 8);
    }
    void Long(std::size_t pos, std::int64_t value) {
        Word(pos, value);
        Word(pos + 2, value >> 16);
    }
    void Single(std::size_t pos, double value) {
        Long(pos, std::bit_cast<std::uint32_t>(static_cast<float>(value)));
    }
    void Decimal(std::size_t pos, double value) { Word(pos, PackedDecimal(value)); }
    void Text(std::size_t pos, std::size_t length, std::string_view text) {
        for (std::size_t i = 0; i < std::min(length, text.size()); ++i) bytes_[pos - 1 + i] = text[i];
    }
    [[nodiscard]] std::string Take() const { return {bytes_.begin(), bytes_.end()}; }

  private:
    std::array<char, kImageSize> bytes_{};
};

/// A number of digits; 0 for other text.
int WholeNumber(std::string_view digits) {
    return static_cast<int>(std::clamp(NumberFrom(digits).value_or(0), 0.0, 1e6));
}

/// The part of a serial behind its two letters: year and month of production, and the number.
struct SerialParts {
    int months = 0;  ///< since December 1998
    int number = 0;
};

SerialParts PartsOf(std::string_view serial) {
    constexpr std::size_t kDatePlace = 2, kNumberPlace = 6;
    SerialParts parts;
    const bool dated = serial.size() > kNumberPlace;
    const auto digits = serial.substr(std::min(dated ? kNumberPlace : kDatePlace + 1, serial.size()));
    parts.number = WholeNumber(digits);
    if (!dated) return parts;
    const int date = WholeNumber(serial.substr(kDatePlace, 4));
    const int year = date / 100 + (date >= 9900 ? 1900 : 2000);
    parts.months = (year - 1999) * 12 + date % 100;
    return parts;
}

void PutGeneral(Image& image, const TidalCalibration& cal, const ModelInfo& info, std::string_view config,
                std::int64_t calibratedAt) {
    constexpr int kAbsorption = 0xA0, kAttenuation = 0xC0;
    constexpr double kDepthUnitM = 20;
    const SerialParts serial = PartsOf(info.serial);
    image.Byte(1, (info.model == Model::LTidal ? kAbsorption : kAttenuation) + serial.number / 256);
    image.Byte(2, serial.number);
    image.Byte(3, std::lround(cal.maxDepthM / kDepthUnitM));
    image.Byte(4, serial.months);
    image.Text(5, 16, kLabel);
    image.Long(21, calibratedAt - kFrom1970To1980);
    const int configured = WholeNumber(config);
    image.Byte(25, configured / 256);
    image.Byte(26, configured);
    image.Decimal(27, cal.depthCal);
    image.Word(29, std::lround(cal.depthOff));
    constexpr double kDepthScale = 20000;
    image.Word(31, std::lround(cal.depthCoeff0 * kDepthScale));
    image.Word(33, cal.depthThreshold);
    image.Word(35, std::lround(cal.depthCoeff1 * kDepthScale));
}

std::int64_t Band(double lambdaNm, double bandNm) {
    return std::lround(lambdaNm) + 1024 * std::lround(bandNm);
}

void PutScattering(Image& image, const TidalCalibration& cal) {
    image.Word(39, Band(cal.lambdaNm, cal.bandNm));
    for (std::size_t i = 0; i < cal.gains.size(); ++i) image.Decimal(41 + 2 * i, cal.gains[i]);
    image.Byte(51, cal.dark[0]);
    image.Byte(52, cal.dark[1]);
    for (std::size_t i = 2; i < cal.dark.size(); ++i) image.Word(49 + 2 * i, cal.dark[i]);
    image.Decimal(59, cal.Mu);
    image.Decimal(61, OldSigma(cal.lambdaNm, cal.sigma));
    image.Decimal(63, cal.sigma.linear);
    image.Decimal(65, cal.sigma.square);
    image.Decimal(67, cal.beta2bb);
    image.Word(69, std::lround(cal.tempCoeff * 1e6));
    image.Decimal(71, cal.calTemp);
}

/// A count of 24 bits; its bytes lie where the converter has them.
void PutCount(Image& image, std::int64_t count, std::size_t low, std::size_t middle, std::size_t high) {
    image.Byte(low, count);
    image.Byte(middle, count >> 8);
    image.Byte(high, count >> 16);
}

void PutAttenuation(Image& image, const TidalCalibration& cal) {
    image.Word(73, Band(cal.kLambdaNm, cal.kBandNm));
    PutCount(image, cal.dark24, 78, 75, 76);
    PutCount(image, cal.pure24, 79, 80, 77);
    image.Decimal(81, cal.kCalTemp);
    image.Decimal(83, cal.pathM);
    // The constant of the attenuation by beta is nil; in millionths its place holds the exponent of sigma.
    image.Single(85, cal.chi[0] != 0 ? cal.chi[0] : cal.sigma.exponent / 1e6);
    for (std::size_t i = 1; i < cal.chi.size(); ++i) image.Single(85 + 4 * i, cal.chi[i]);
    image.Decimal(101, cal.MuRho * 1000);
    image.Decimal(103, cal.betaPure);
    for (std::size_t i = 0; i < cal.kTempCoeff.size(); ++i) image.Single(105 + 4 * i, cal.kTempCoeff[i]);
}

}  // namespace

std::uint16_t PackedDecimal(double value) {
    constexpr int kLargest = 0xFFF;
    // The smallest power that holds the value keeps most of its digits.
    for (int field = 15; field >= 0; --field) {
        const double mantissa = std::round(std::max(value, 0.0) * std::pow(10.0, field - 3));
        if (mantissa <= kLargest) return static_cast<std::uint16_t>(field << 12 | static_cast<int>(mantissa));
    }
    return kLargest;
}

std::string TidalCalImage(const TidalCalibration& cal, const ModelInfo& info, std::string_view config,
                          std::int64_t calibratedAt) {
    Image image;
    PutGeneral(image, cal, info, config, calibratedAt);
    PutScattering(image, cal);
    PutAttenuation(image, cal);
    return image.Take();
}

}  // namespace marisonde::simulator
