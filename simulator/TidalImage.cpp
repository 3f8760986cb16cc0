#include <algorithm>
#include <array>
#include <bit>
#include <cmath>

#include "simulator/Dates.h"
#include "simulator/FieldText.h"
#include "simulator/Tidal.h"

namespace marisonde::simulator {

namespace {

constexpr std::size_t kImageSize = 128;
constexpr int kAbsorption = 0xA0, kAttenuation = 0xC0;
constexpr double kDepthUnitM = 20;
constexpr double kDepthScale = 20000;
constexpr int kBandUnit = 1024;  // the bandwidth stands above ten bits of wavelength

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

/// Gives the values at positions counted from 1.
class ImageReader {
  public:
    explicit ImageReader(std::string_view bytes) : bytes_(bytes) {}
    [[nodiscard]] int Byte(std::size_t pos) const { return static_cast<unsigned char>(bytes_[pos - 1]); }
    [[nodiscard]] int Word(std::size_t pos) const { return Byte(pos) + 256 * Byte(pos + 1); }
    [[nodiscard]] int SignedWord(std::size_t pos) const { return static_cast<std::int16_t>(Word(pos)); }
    [[nodiscard]] std::uint32_t Long(std::size_t pos) const {
        return static_cast<std::uint32_t>(Word(pos)) + 65536U * static_cast<std::uint32_t>(Word(pos + 2));
    }
    [[nodiscard]] double Single(std::size_t pos) const {
        return static_cast<double>(std::bit_cast<float>(Long(pos)));
    }
    [[nodiscard]] double Decimal(std::size_t pos) const {
        const int word = Word(pos);
        return (word & 0xFFF) * std::pow(10.0, 3 - (word >> 12));
    }
    [[nodiscard]] int Count(std::size_t low, std::size_t middle, std::size_t high) const {
        return Byte(low) + 256 * Byte(middle) + 65536 * Byte(high);
    }

  private:
    std::string_view bytes_;
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
    image.Word(31, std::lround(cal.depthCoeff0 * kDepthScale));
    image.Word(33, cal.depthThreshold);
    image.Word(35, std::lround(cal.depthCoeff1 * kDepthScale));
}

std::int64_t Band(double lambdaNm, double bandNm) {
    return std::lround(lambdaNm) + kBandUnit * std::lround(bandNm);
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

std::string Digits(int value, std::size_t width) {
    const std::string text = std::to_string(value);
    return std::string(width - std::min(width, text.size()), '0') + text;
}

/// The letters of the model, year and month, the number.
std::string SerialIn(const ImageReader& image, Model model) {
    const int months = image.Byte(4);
    const int year = (months + 11) / 12 + 98;
    const int month = (months + 11) % 12 + 1;
    const int number = image.Byte(1) % 16 * 256 + image.Byte(2);
    return std::string(InfoOf(model).serial.substr(0, 2)) + Digits(year % 100 * 100 + month, 4) +
           Digits(number, 2);
}

void ReadGeneral(const ImageReader& image, Model model, TidalImageContent& content) {
    TidalCalibration& cal = content.cal;
    content.serial = SerialIn(image, model);
    content.calibratedAt = kFrom1970To1980 + static_cast<std::int64_t>(image.Long(21));
    content.config = std::to_string(image.Byte(25) * 256 + image.Byte(26));
    cal.maxDepthM = image.Byte(3) * kDepthUnitM;
    cal.depthCal = image.Decimal(27);
    cal.depthOff = image.SignedWord(29);
    cal.depthCoeff0 = image.SignedWord(31) / kDepthScale;
    cal.depthThreshold = image.Word(33);
    cal.depthCoeff1 = image.SignedWord(35) / kDepthScale;
}

/// The two halves of what Band() makes.
int LambdaOf(int word) {
    return word % kBandUnit;
}
int BandOf(int word) {
    return word / kBandUnit;
}

void ReadScattering(const ImageReader& image, TidalImageContent& content) {
    TidalCalibration& cal = content.cal;
    cal.lambdaNm = LambdaOf(image.Word(39));
    cal.bandNm = BandOf(image.Word(39));
    for (std::size_t i = 0; i < cal.gains.size(); ++i) cal.gains[i] = image.Decimal(41 + 2 * i);
    cal.dark[0] = image.Byte(51);
    cal.dark[1] = image.Byte(52);
    for (std::size_t i = 2; i < cal.dark.size(); ++i) cal.dark[i] = image.SignedWord(49 + 2 * i);
    cal.Mu = image.Decimal(59);
    content.sigma0 = image.Decimal(61);
    cal.sigma.linear = image.Decimal(63);
    cal.sigma.square = image.Decimal(65);
    cal.beta2bb = image.Decimal(67);
    cal.tempCoeff = image.SignedWord(69) / 1e6;
    cal.calTemp = image.Decimal(71);
}

void ReadAttenuation(const ImageReader& image, TidalCalibration& cal) {
    constexpr double kLargestAbsorption = 100;
    cal.kLambdaNm = LambdaOf(image.Word(73));
    cal.kBandNm = BandOf(image.Word(73));
    cal.dark24 = image.Count(78, 75, 76);
    cal.pure24 = image.Count(79, 80, 77);
    cal.kCalTemp = image.Decimal(81);
    cal.pathM = image.Decimal(83);
    cal.sigma.exponent = image.Single(85) * 1e6;
    for (std::size_t i = 0; i < cal.chi.size(); ++i) cal.chi[i] = image.Single(85 + 4 * i);
    // A small value is the absorption of pure water, which this place held before.
    if (image.Decimal(101) > kLargestAbsorption) cal.MuRho = image.Decimal(101) / 1000;
    cal.betaPure = image.Decimal(103);
    for (std::size_t i = 0; i < cal.kTempCoeff.size(); ++i) cal.kTempCoeff[i] = image.Single(105 + 4 * i);
}

/// The mark of the model; an x-Tidal has none of its own and takes any.
bool IsOfModel(int mark, Model model) {
    return model == Model::XTidal || mark == (model == Model::LTidal ? kAbsorption : kAttenuation);
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

bool ReadTidalImage(std::string_view image, Model model, TidalImageContent& content) {
    if (image.size() != kImageSize) return false;
    const ImageReader reader(image);
    if (!IsOfModel(reader.Byte(1) & 0xF0, model)) return false;
    ReadGeneral(reader, model, content);
    ReadScattering(reader, content);
    ReadAttenuation(reader, content.cal);
    return true;
}

}  // namespace marisonde::simulator
