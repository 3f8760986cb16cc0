#include "simulator/Conversation.h"
#include "simulator/Tidal.h"

namespace marisonde::simulator {
namespace {

using namespace std::chrono_literals;

std::string Bytes(std::initializer_list<int> values) {
    std::string bytes;
    for (const int value : values) bytes += static_cast<char>(value);
    return bytes;
}

std::string Image(Model model, const ModelInfo& info, std::string_view config = "257") {
    return TidalCalImage(TidalCalibrationOf(model), info, config, 1305882922);
}

TEST(PackedDecimals, KeepTheMostDigits) {
    EXPECT_EQ(PackedDecimal(0), 0xF000);
    EXPECT_EQ(PackedDecimal(0.0092), 0x8398);   // 920 = 0x398, times 10 to the power 3 - 8
    EXPECT_EQ(PackedDecimal(1), 0x63E8);        // 1000 = 0x3E8, 3 - 6
    EXPECT_EQ(PackedDecimal(4095), 0x3FFF);     // 4095, 3 - 3
    EXPECT_EQ(PackedDecimal(4096), 0x219A);     // 410 = 0x19A tens
    EXPECT_EQ(PackedDecimal(4095000), 0x0FFF);  // 4095 thousands, the largest there is
    EXPECT_EQ(PackedDecimal(5e6), 0x0FFF);
    EXPECT_EQ(PackedDecimal(7.214e-6), 0xB2D1);  // 721 = 0x2D1, 3 - 11
    EXPECT_EQ(PackedDecimal(-1), 0xF000);        // as 0
}

// Worked by hand from the calibration of the l-Tidal and the serial LT040712.
TEST(TidalImages, OfTheAbsorptionMeter) {
    const std::string image = Image(Model::LTidal, InfoOf(Model::LTidal));
    ASSERT_EQ(image.size(), 128U);
    const auto at = [&](std::size_t position, std::size_t size) { return image.substr(position - 1, size); };
    // Model 0xA0 and number 12; 500 m / 20 = 25; July 2004 is month (2004 - 1999) 12 + 7 = 67.
    EXPECT_EQ(at(1, 4), Bytes({0xA0, 12, 25, 67}));
    EXPECT_EQ(at(5, 16), std::string("Simulated") + std::string(7, '\0'));
    // 20 May 2011 09:15:22: 1305882922 - 315532800 = 990350122 = 0x3B078B2A.
    EXPECT_EQ(at(21, 4), Bytes({0x2A, 0x8B, 0x07, 0x3B}));
    EXPECT_EQ(at(25, 2), Bytes({1, 1}));        // 257
    EXPECT_EQ(at(27, 2), Bytes({0x98, 0x83}));  // 0.0092, above
    EXPECT_EQ(at(29, 2), Bytes({0x20, 0x05}));  // 1312 = 0x520
    EXPECT_EQ(at(31, 2), Bytes({0xF8, 0x00}));  // 0.0124 x 20000 = 248
    EXPECT_EQ(at(33, 2), Bytes({0xFC, 0x53}));  // 21500 = 0x53FC
    EXPECT_EQ(at(35, 2), Bytes({0x0E, 0x03}));  // 0.0391 x 20000 = 782 = 0x30E
    EXPECT_EQ(at(39, 2), Bytes({0xD6, 0x51}));  // 470 + 20 x 1024 = 20950 = 0x51D6
    EXPECT_EQ(at(41, 2), Bytes({0xE8, 0x63}));  // gain 1
    EXPECT_EQ(at(49, 2), Bytes({0xE0, 0x23}));  // gain 9915: 992 = 0x3E0 tens
    EXPECT_EQ(at(51, 8), Bytes({3, 5, 9, 0, 30, 0, 212, 0}));
    EXPECT_EQ(at(59, 2), Bytes({0xD1, 0xB2}));  // 7.214e-6, above
    EXPECT_EQ(at(63, 2), Bytes({0xF0, 0x75}));  // 0.152: 1520 = 0x5F0, 3 - 7
    EXPECT_EQ(at(67, 2), Bytes({0xA7, 0x52}));  // 6.79: 679 = 0x2A7, 3 - 5
    EXPECT_EQ(at(69, 2), Bytes({0x84, 0x03}));  // 0.0009 in millionths: 900 = 0x384
    EXPECT_EQ(at(71, 2), Bytes({0xF8, 0x57}));  // 20.4: 2040 = 0x7F8, 3 - 5
    // Counts in 24 bits: 1180 = 0x00049C in 76, 75, 78 and 5213400 = 0x4F8CD8 in 77, 80, 79.
    EXPECT_EQ(at(75, 6), Bytes({0x04, 0x00, 0x4F, 0x9C, 0xD8, 0x8C}));
    EXPECT_EQ(at(83, 2), Bytes({0xD0, 0x77}));              // 0.2: 2000 = 0x7D0, 3 - 7
    EXPECT_EQ(at(85, 4), Bytes({0, 0, 0, 0}));              // no constant, no exponent of sigma
    EXPECT_EQ(at(93, 4), Bytes({0x00, 0x00, 0xB8, 0xC2}));  // -92 = -1.4375 x 2^6: 0xC2B80000
    EXPECT_EQ(at(101, 2), Bytes({0xD4, 0x33}));             // 980 thousandths: 980 = 0x3D4, 3 - 3
    EXPECT_EQ(at(103, 2), Bytes({0x3E, 0xA5}));             // 0.0001342: 1342 = 0x53E, 3 - 10
    EXPECT_EQ(at(117, 12), std::string(12, '\0'));
}

TEST(TidalImages, OfTheAttenuationMeterCarryTheExponentInMillionths) {
    const std::string image = Image(Model::NTidal, InfoOf(Model::NTidal), "258");
    // NT050308: May 2003 would be 0305; 0503 is March 2005, month 6 x 12 + 3 = 75.
    EXPECT_EQ(image.substr(0, 4), Bytes({0xC0, 8, 25, 75}));
    EXPECT_EQ(image.substr(24, 2), Bytes({1, 2}));
    // 0.138e-6 = 1.1576... x 2^-23: 0x34142EA7 has exponent 0x68 = 104 = 127 - 23.
    EXPECT_EQ(image.substr(86, 2), Bytes({0x14, 0x34}));
}

TEST(TidalImages, SerialsOfOtherStyles) {
    ModelInfo info = InfoOf(Model::LTidal);
    info.serial = "LT9901300";  // January 1999, number 300 = 256 + 44
    EXPECT_EQ(Image(Model::LTidal, info).substr(0, 4), Bytes({0xA1, 44, 25, 1}));
    info.serial = "LT0001300";  // January 2000
    EXPECT_EQ(Image(Model::LTidal, info)[3], 13);
    info.serial = "LT-42";
    EXPECT_EQ(Image(Model::LTidal, info).substr(0, 4), Bytes({0xA0, 42, 25, 0}));
}

TEST(Dump, OffersTheImageBehindTheEcho) {
    Conversation talk(Model::LTidal, {.baud = 115200});
    EXPECT_EQ(talk.AskWithEcho("DUMPCFG\r\n"), "DUMPCFG\r\n");
    const std::string frame = talk.AskWithEcho("C");
    ASSERT_EQ(frame.size(), 133U);
    EXPECT_EQ(frame.substr(0, 3), Bytes({1, 1, 0xFE}));
    EXPECT_EQ(frame.substr(3, 128), Image(Model::LTidal, InfoOf(Model::LTidal)));
    EXPECT_EQ(talk.AskWithEcho("\x06"), "\x04");
    EXPECT_EQ(talk.AskWithEcho("\x06"), "");
    EXPECT_EQ(talk.Ask("VER"), "Firmware version 1.85\r\n");
}

TEST(Dump, IsTextByOption) {
    Conversation talk(Model::NTidal, {.dumpAsText = true});
    EXPECT_EQ(talk.Ask("DUMPCFG", 10s), talk.instrument->CalText());
    Conversation always(Model::XTidal);
    EXPECT_EQ(always.Ask("DUMPCFG", 10s), always.instrument->CalText());
    Conversation corvane(Model::Corvane6);
    EXPECT_EQ(corvane.Ask("DUMPCFG"), "Unknown command\r\n");
}

TEST(Dump, GivesUpWithoutAReceiver) {
    Conversation talk(Model::LTidal);
    talk.AskWithEcho("DUMPCFG\r");
    EXPECT_EQ(talk.Listen(56s), "");
    EXPECT_EQ(talk.Listen(4s), "\x18\x18");
    EXPECT_EQ(talk.Ask("VER"), "Firmware version 1.85\r\n");
}

}  // namespace
}  // namespace marisonde::simulator
