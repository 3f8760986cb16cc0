#include <bit>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <gtest/gtest.h>
#include <string>

#include "CalFixture.h"
#include "calibration/CalImage.h"
#include "common/ConversionUtils.h"
#include "support/TestFolder.h"

namespace marisonde {
namespace {

namespace fs = std::filesystem;

/// 128 bytes, written by position from 1 as the layout of the instruments' memory counts.
class ImageBytes {
  public:
    ImageBytes& Byte(std::size_t pos, int value) {
        bytes_[pos - 1] = static_cast<char>(value);
        return *this;
    }
    ImageBytes& Word(std::size_t pos, int value) {
        return Byte(pos, value & 0xFF).Byte(pos + 1, (value >> 8) & 0xFF);
    }
    ImageBytes& Single(std::size_t pos, float value) {
        const auto bits = std::bit_cast<std::uint32_t>(value);
        return Word(pos, static_cast<int>(bits & 0xFFFF)).Word(pos + 2, static_cast<int>(bits >> 16));
    }
    ImageBytes& Text(std::size_t pos, std::string_view text) {
        std::memcpy(bytes_.data() + pos - 1, text.data(), text.size());
        return *this;
    }
    [[nodiscard]] const std::string& str() const { return bytes_; }

  private:
    std::string bytes_ = std::string(kCalImageSize, '\0');
};

ImageBytes Full() {
    ImageBytes image;
    image.Byte(1, 0xA1).Byte(2, 0x02).Byte(3, 25).Byte(4, 13).Text(5, "keel").Word(21, 0x5180).Word(23, 1);
    image.Byte(25, 1)
        .Byte(26, 2)
        .Word(27, 0x3123)
        .Word(29, 0xFFFE)
        .Word(31, 20000)
        .Word(33, 0xFFFF)
        .Word(35, 0xD8F0);
    image.Word(39, 20 * 1024 + 532);
    for (std::size_t g = 0; g < 5; ++g) image.Word(41 + 2 * g, 0x4000 + 10 * (static_cast<int>(g) + 1));
    image.Byte(51, 200)
        .Byte(52, 201)
        .Word(53, 3)
        .Word(55, 4)
        .Word(57, 0xFFFB)
        .Word(59, 0x6123)
        .Word(61, 0x3001);
    image.Word(63, 0x3002).Word(65, 0x3003).Word(67, 0x400B).Word(69, 1500).Word(71, 0x40B9);
    image.Word(73, 10 * 1024 + 660).Byte(75, 2).Byte(76, 1).Byte(78, 3).Byte(77, 4).Byte(79, 5).Byte(80, 6);
    image.Word(81, 0x3011).Word(83, 0x5019).Single(85, 0.25F).Single(89, 1).Single(93, 2).Single(97, 3);
    image.Word(101, 0x33D4).Word(103, 0x6001);
    for (std::size_t i = 0; i < 6; ++i) image.Single(105 + 4 * i, static_cast<float>(i) + 0.5F);
    return image;
}

CalibrationDataClass Read(const ImageBytes& image) {
    CalibrationDataClass cal;
    EXPECT_TRUE(ReadCalImageBytes(image.str(), cal));
    return cal;
}

TEST(CalImage, PackedDecimals) {
    EXPECT_EQ(Dec16(0x3123), 291);
    EXPECT_EQ(Dec16(0x1123), 29100);
    EXPECT_EQ(Dec16(0x0001), 1000);
    EXPECT_EQ(Dec16(0x6123), 0.291);
    EXPECT_EQ(Dec16(0xF001), 1e-12);
    EXPECT_EQ(Dec16(0xF000), 0);
}

TEST(CalImage, General) {
    const auto cal = Read(Full());
    EXPECT_EQ(cal.InstType, InstTypeCode::LTidal);
    EXPECT_EQ(cal.Serial, "LT0001258");  // month 13 is 0001; 1 x 256 + 2
    EXPECT_EQ(cal.MaxDepth, 500);
    EXPECT_EQ(cal.Label, "keel");
    EXPECT_EQ(cal.CalTime, 29222);  // 0x15180 is 86400 seconds
    EXPECT_EQ(cal.Config, "258");
    EXPECT_EQ(cal.DepthCal, 291);
    EXPECT_EQ(cal.DepthOff, -2);
    EXPECT_EQ(cal.CalTemp, 18.5F);  // 185 / 10
}

TEST(CalImage, Scattering) {
    const auto cal = Read(Full());
    const ChannelCal& channel = cal.Channel(0);
    EXPECT_EQ(channel.lambda, 532);
    EXPECT_EQ(channel.bDeltaLambda, 20);
    EXPECT_EQ(channel.gain, (std::array<double, 6>{0, 1, 2, 3, 4, 5}));
    EXPECT_EQ(channel.DarkOffset, (GainOffsets{0, 200, 201, 3, 4, -5}));
    EXPECT_EQ(channel.Mu, 0.291);
    EXPECT_EQ(channel.Sigma, (std::array<double, 3>{1, 2, 3}));
    EXPECT_EQ(channel.SigmaExp, 250000);  // 0.25 x 1000000
    EXPECT_EQ(channel.beta2bb, 1.1);
    EXPECT_EQ(channel.bTempCoeff, 0.0015);
    EXPECT_EQ(channel.MuRho, 0.98);  // 980 / 1000
}

TEST(CalImage, Attenuation) {
    const auto cal = Read(Full());
    const AttenuationCal& beam = cal.Attenuation(0);
    EXPECT_EQ(beam.KDepthCoeff[0], 1);
    EXPECT_EQ(beam.KDepthThresh[0], 65535);
    EXPECT_EQ(beam.KDepthCoeff[1], -0.5F);  // 0xD8F0 is -10000
    EXPECT_EQ(beam.KLambda, 660);
    EXPECT_EQ(beam.KDeltaLambda, 10);
    EXPECT_EQ(beam.TrNought, 2 * 256 + 65536 + 3);
    EXPECT_EQ(beam.TrPure, 6 * 256 + 5 + 4 * 65536);
    EXPECT_EQ(beam.KCalTemp, 17);
    EXPECT_EQ(beam.KPath, 0.25F);  // 25 / 100
    EXPECT_EQ(beam.KChi, (std::array<float, 5>{0.25F, 1, 2, 3, 0}));
    EXPECT_EQ(beam.aPure, 0);
    EXPECT_EQ(beam.betaPure, 0.001F);
    EXPECT_EQ(beam.KTempCoeff, (std::array<float, 7>{0.5F, 1.5F, 2.5F, 3.5F, 4.5F, 5.5F, 0}));
    // 0.5 + 1.5 x 17 + 2.5 x 289 + 3.5 x 4913 + 4.5 x 83521 + 5.5 x 1419857
    EXPECT_EQ(beam.KTempNormCoeff, 8203002);
}

TEST(CalImage, SmallSharedFieldIsAnAbsorption) {
    const auto cal = Read(Full().Word(101, 0x3064));  // 100 is not above 100
    EXPECT_EQ(cal.Attenuation(0).aPure, 100);
    EXPECT_EQ(cal.Channel(0).MuRho, 0.98);
    EXPECT_EQ(Read(Full().Word(101, 0x3065)).Channel(0).MuRho, 0.101);
}

TEST(CalImage, ModelsAndSerialNumbers) {
    EXPECT_EQ(Read(Full().Byte(1, 0xC0).Byte(2, 7).Byte(4, 1)).Serial, "NT990107");
    const auto other = Read(Full().Byte(1, 0xB0).Byte(2, 12));
    EXPECT_EQ(other.InstType, InstTypeCode::Unknown);
    EXPECT_EQ(other.Serial, "000112");
    EXPECT_EQ(Read(Full().Byte(4, 12)).Serial, "LT9912258");  // December 1999
    EXPECT_EQ(Read(Full().Byte(4, 0)).Serial, "LT9812258");
}

TEST(CalImage, ChannelNames) {
    EXPECT_EQ(Read(Full()).Channel(0).name, "bb(532)");
    EXPECT_EQ(Read(Full()).Channel(1).name, "a(660)");
    EXPECT_EQ(Read(Full().Byte(1, 0xC0)).Channel(1).name, "c(660)");
    EXPECT_EQ(Read(Full()).Channel(2).name, "k(660)");
}

TEST(CalImage, OnlyTidalImagesAreTold) {
    EXPECT_TRUE(IsCalImage(Full().str()));
    EXPECT_TRUE(IsCalImage(Full().Byte(1, 0xCF).str()));
    EXPECT_FALSE(IsCalImage(Full().Byte(1, 0xB0).str()));
    EXPECT_FALSE(IsCalImage(Full().str() + "x"));
    EXPECT_FALSE(IsCalImage(std::string(128, ' ')));
    CalibrationDataClass cal;
    EXPECT_FALSE(ReadCalImageBytes("short", cal));
    EXPECT_EQ(cal, CalibrationDataClass());
}

TEST(CalImage, FilesOf128Bytes) {
    const TestFolder folder;
    const fs::path path = folder / "image.cal";
    TestFolder::Write(path, Full().str());
    const SigmaParams params = FixedModel();
    CalibrationDataClass direct;
    EXPECT_TRUE(ReadCalImage(path, direct, params, {}).ok);
    EXPECT_NE(direct.Channel(0).a, 0);
    CalibrationDataClass loaded;
    EXPECT_TRUE(loaded.LoadSourceFile(path, params, {}).ok);
    EXPECT_EQ(loaded.SourceFile(), path.string());
    EXPECT_EQ(loaded.CalText({}), direct.CalText({}));
    EXPECT_EQ(GetCalFileType(path).type, InstTypeCode::LTidal);
    EXPECT_EQ(GetCalFileType(path).serial, "LT0001258");

    // 128 characters of ordinary text are text.
    std::string text = "[General]\r\nSerial=CV4-1\r\n";
    text.resize(kCalImageSize, '/');
    TestFolder::Write(path, text);
    EXPECT_TRUE(loaded.LoadSourceFile(path, params, {}).ok);
    EXPECT_EQ(loaded.InstType, InstTypeCode::Corvane4);
    fs::remove(path);
    EXPECT_EQ(ReadCalImage(path, direct, params, {}).error,
              "Error opening calibration file '" + path.string() +
                  "': No such file or directory (2).  Calibration data not valid.");
}

}  // namespace
}  // namespace marisonde
