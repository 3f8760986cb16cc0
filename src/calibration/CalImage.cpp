#include "calibration/CalImage.h"

#include <algorithm>
#include <array>
#include <bit>

#include "common/ConversionUtils.h"
#include "common/FileBytes.h"

namespace marisonde {

namespace {

constexpr unsigned kModelMask = 0xF0;
constexpr unsigned kLTidalMark = 0xA0;
constexpr unsigned kNTidalMark = 0xC0;
constexpr unsigned kLambdaBits = 10;

/// Values by position, from 1, of an image; multi-byte values have their low byte first.
class Image {
  public:
    explicit Image(std::string_view bytes) : bytes_(bytes) {}
    [[nodiscard]] int Byte(std::size_t pos) const { return static_cast<unsigned char>(bytes_[pos - 1]); }
    [[nodiscard]] std::uint16_t Bits16(std::size_t pos) const {
        return static_cast<std::uint16_t>(Byte(pos) + 256 * Byte(pos + 1));
    }
    [[nodiscard]] std::int16_t Word(std::size_t pos) const { return static_cast<std::int16_t>(Bits16(pos)); }
    [[nodiscard]] std::uint32_t Bits32(std::size_t pos) const {
        return static_cast<std::uint32_t>(Bits16(pos)) | (static_cast<std::uint32_t>(Bits16(pos + 2)) << 16U);
    }
    [[nodiscard]] double Decimal(std::size_t pos) const { return Dec16(Bits16(pos)); }
    [[nodiscard]] float Decimal32(std::size_t pos) const { return static_cast<float>(Decimal(pos)); }
    [[nodiscard]] float Single(std::size_t pos) const { return std::bit_cast<float>(Bits32(pos)); }
    [[nodiscard]] std::string Text(std::size_t pos, std::size_t length) const {
        return std::string(Trim(CutAtNul(bytes_.substr(pos - 1, length))));
    }
    [[nodiscard]] std::int16_t Lambda(std::size_t pos) const {
        return static_cast<std::int16_t>(Bits16(pos) & ((1U << kLambdaBits) - 1));
    }
    [[nodiscard]] std::int16_t DeltaLambda(std::size_t pos) const {
        return static_cast<std::int16_t>(Bits16(pos) >> kLambdaBits);
    }

  private:
    std::string_view bytes_;
};

InstTypeCode ModelOf(const Image& image) {
    const unsigned mark = static_cast<unsigned>(image.Byte(1)) & kModelMask;
    if (mark == kLTidalMark) return InstTypeCode::LTidal;
    return mark == kNTidalMark ? InstTypeCode::NTidal : InstTypeCode::Unknown;
}

/// Year and month of production as a number, YYMM.
int DateCode(int month) {
    const int code = ((month + 11) / 12 + 98) * 100 + (month + 11) % 12 + 1;
    return code > 10000 ? code - 10000 : code;
}

std::string SerialOf(const Image& image) {
    const InstTypeCode model = ModelOf(image);
    std::string serial = model == InstTypeCode::LTidal ? "LT" : model == InstTypeCode::NTidal ? "NT" : "";
    const std::string code = std::to_string(DateCode(image.Byte(4)));
    serial.append(4 - std::min<std::size_t>(code.size(), 4), '0').append(code);
    const int number = (image.Byte(1) & 0x0F) * 256 + image.Byte(2);
    return serial.append(number < 10 ? "0" : "").append(std::to_string(number));
}

void ReadGeneral(const Image& image, CalibrationDataClass& cal) {
    constexpr double kSecondsPerDay = 86400;
    cal.InstType = ModelOf(image);
    cal.Serial = SerialOf(image);
    cal.MaxDepth = static_cast<float>(image.Byte(3) * 20);
    cal.Label = image.Text(5, 16);
    cal.CalTime = kDay1980 + image.Bits32(21) / kSecondsPerDay;
    cal.Config = std::to_string(image.Byte(25) * 256 + image.Byte(26));
    cal.DepthCal = image.Decimal32(27);
    cal.DepthOff = image.Word(29);
    cal.CalTemp = image.Decimal32(71);
}

void ReadScattering(const Image& image, CalibrationDataClass& cal) {
    ChannelPlain& plain = cal.EditChannel(0);
    plain.lambda = image.Lambda(39);
    plain.bDeltaLambda = image.DeltaLambda(39);
    for (int g = 1; g <= 5; ++g) cal.SetGain(0, g, image.Decimal(39 + 2 * static_cast<std::size_t>(g)));
    plain.DarkOffset = {0,
                        static_cast<std::int16_t>(image.Byte(51)),
                        static_cast<std::int16_t>(image.Byte(52)),
                        image.Word(53),
                        image.Word(55),
                        image.Word(57)};
    cal.SetMu(0, image.Decimal(59));
    for (int i = 0; i < 3; ++i) cal.SetSigma(0, i, image.Decimal(61 + 2 * static_cast<std::size_t>(i)));
    plain.beta2bb = image.Decimal(67);
    plain.bTempCoeff = image.Word(69) / 1000000.0;
    cal.SetSigmaExp(0, static_cast<double>(image.Single(85)) * 1000000);
}

void ReadAttenuation(const Image& image, CalibrationDataClass& cal) {
    constexpr double kDepthScale = 20000;
    AttenuationPlain& plain = cal.EditAttenuation(0);
    plain.KDepthCoeff[0] = static_cast<float>(image.Word(31) / kDepthScale);
    plain.KDepthThresh[0] = image.Bits16(33);
    plain.KDepthCoeff[1] = static_cast<float>(image.Word(35) / kDepthScale);
    plain.KLambda = image.Lambda(73);
    plain.KDeltaLambda = image.DeltaLambda(73);
    plain.TrNought = image.Byte(75) * 256 + image.Byte(76) * 65536 + image.Byte(78);
    plain.TrPure = image.Byte(80) * 256 + image.Byte(79) + image.Byte(77) * 65536;
    plain.KPath = image.Decimal32(83);
    for (std::size_t i = 0; i < 4; ++i) plain.KChi[i] = image.Single(85 + 4 * i);
    plain.betaPure = image.Decimal32(103);
    cal.SetKCalTemp(0, image.Decimal32(81));
    for (int i = 0; i <= 5; ++i) cal.SetKTempCoeff(0, i, image.Single(105 + 4 * static_cast<std::size_t>(i)));
    // One field serves two purposes: a reflectance in thousandths is above 100, an absorption never is.
    constexpr double kUsualRho = 0.98;
    const double shared = image.Decimal(101);
    const bool isRho = shared > 100;
    plain.aPure = isRho ? 0 : static_cast<float>(shared);
    cal.EditChannel(0).MuRho = isRho ? shared / 1000 : kUsualRho;
}

}  // namespace

bool IsCalImage(std::string_view bytes) {
    return bytes.size() == kCalImageSize && ModelOf(Image(bytes)) != InstTypeCode::Unknown;
}

double Dec16(std::uint16_t word) {
    constexpr std::array kPowers{1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9, 1e10, 1e11, 1e12};
    const unsigned exponent = word >> 12U;
    const double mantissa = word & 0x0FFFU;
    return exponent <= 3 ? mantissa * kPowers[3 - exponent] : mantissa / kPowers[exponent - 3];
}

CalFileType CalImageType(std::string_view image) {
    return {ModelOf(Image(image)), SerialOf(Image(image)), ""};
}

bool ReadCalImageBytes(std::string_view image, CalibrationDataClass& calibration) {
    if (image.size() != kCalImageSize) return false;
    const std::string source = calibration.SourceFile();
    calibration.Clear();
    calibration.NoteSource(source);
    ReadGeneral(Image(image), calibration);
    ReadScattering(Image(image), calibration);
    ReadAttenuation(Image(image), calibration);
    calibration.NameTidalChannels();
    return true;
}

CalFileResult ReadCalImage(const std::filesystem::path& path, CalibrationDataClass& calibration,
                           const SigmaParams& params, const PureWaterParams& water) {
    std::error_code error;
    const auto bytes = ReadFileBytes(path, error);
    if (!bytes || !ReadCalImageBytes(*bytes, calibration)) {
        const std::string reason =
            bytes ? "not " + std::to_string(kCalImageSize) + " bytes long" : error.message();
        return {false,
                "Error opening calibration file '" + path.string() + "': " + reason + " (" +
                    std::to_string(error.value()) + ").  Calibration data not valid.",
                {}};
    }
    return {true, "", calibration.CheckAndUpdateAll(params, water)};
}

}  // namespace marisonde
