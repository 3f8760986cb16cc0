#include <gtest/gtest.h>
#include <limits>

#include "common/Numbers.h"
#include "operations/TerminalLines.h"

namespace marisonde {
namespace {

constexpr double kNow = 40735.385671;  // 11 July 2011, 09:15:21.97

TEST(PadRightTest, FillsWithBlanksAndCutsNothing) {
    EXPECT_EQ(PadRight("12", 6), "12    ");
    EXPECT_EQ(PadRight("", 2), "  ");
    EXPECT_EQ(PadRight("123456", 6), "123456");
    EXPECT_EQ(PadRight("1234567", 6), "1234567");
    EXPECT_EQ(PadRight("", 0), "");
}

/// A sample of a Corvane-2: two backscatter channels and a fluorescence channel.
class CorvaneLineTest : public testing::Test {
  protected:
    CorvaneLineTest() {
        sample.Time = kNow;
        sample.Depth = 12.5F;
        sample.Temp = 14.25F;
        for (std::size_t ch = 0; ch < 3; ++ch) {
            raw.Snorm[ch] = std::array{1234, 40, 65535}[ch];
            raw.Sig[ch] = std::array{2001, 2002, 2003}[ch];
            raw.Ref[ch] = std::array{31001, 31002, 31003}[ch];
            raw.Gain[ch] = std::array<std::int16_t, 3>{1, 2, 11}[ch];
            sample.bb[ch] = std::array{0.00123, 0.2, 1.5}[ch];
            sample.bbUncorr[ch] = std::array{0.00111, 0.19, 1.5}[ch];
        }
        sample.Valid[0] = sample.Valid[1] = true;
    }
    std::string Line(LineKind kind, const TerminalView& view = {}) const {
        return TerminalLine(kind, InstTypeCode::Corvane2, raw, sample, view);
    }
    RawSample raw;
    CalibratedSample sample;
};

const std::string kTime = "07/11/11 09:15:22  ";  // 19 characters

TEST_F(CorvaneLineTest, TimeCountsGainsAndValuesStandInColumns) {
    for (const LineKind kind : {LineKind::CorvaneHex, LineKind::CorvaneHexHundredths})
        EXPECT_EQ(Line(kind), kTime + "1234  40    65535 " + "1 2 3 " +
                                  "0.00123    0.20000    No Data    12.50      14.25");
}

TEST_F(CorvaneLineTest, VerboseLinesHaveSignalAndReference) {
    for (const LineKind kind :
         {LineKind::CorvaneVerboseHex, LineKind::CorvaneVerbose, LineKind::CorvaneVerboseTimed})
        EXPECT_EQ(Line(kind), kTime + "2001  31001 2002  31002 2003  31003 " + "1 2 3 " +
                                  "0.00123    0.20000    No Data    12.50      14.25");
}

TEST_F(CorvaneLineTest, ShowsTheBackscatteringThatTheWindowShows) {
    EXPECT_NE(Line(LineKind::CorvaneHex, {false, true}).find("0.00111    0.19000"), std::string::npos);
}

TEST_F(CorvaneLineTest, DepthInFeet) {
    // 12.5 x 39.37 / 12 = 41.0104
    EXPECT_NE(Line(LineKind::CorvaneHex, {true, false}).find(" 41.01 "), std::string::npos);
}

TEST_F(CorvaneLineTest, AValueThatFailedIsNoNumber) {
    sample.bb[0] = kSentinel;
    sample.Depth = std::numeric_limits<float>::quiet_NaN();
    EXPECT_EQ(Line(LineKind::CorvaneHex),
              kTime + "1234  40    65535 " + "1 2 3 " + "---        0.20000    No Data    ---        14.25");
}

TEST_F(CorvaneLineTest, EachModelHasItsChannels) {
    const auto length = [&](InstTypeCode model) {
        return TerminalLine(LineKind::CorvaneHex, model, raw, sample, {}).find("14.25");
    };
    // Time 19, six for each count, two for each gain, eleven for each value and the depth.
    EXPECT_EQ(length(InstTypeCode::Corvane2), 19U + 3 * 19 + 11);
    EXPECT_EQ(length(InstTypeCode::Corvane4), 19U + 4 * 19 + 11);
    EXPECT_EQ(length(InstTypeCode::Corvane6), 19U + 8 * 19 + 11);
}

TEST_F(CorvaneLineTest, HeadingsStandOverTheirColumns) {
    CalibrationDataClass cal;
    cal.InstType = InstTypeCode::Corvane2;
    for (int ch = 0; ch < 2; ++ch)
        cal.EditChannel(ch).name = std::array<std::string, 2>{"bb(470)", "a name that is too long"}.at(ch);
    EXPECT_EQ(
        TerminalHeadings(LineKind::CorvaneHex, InstTypeCode::Corvane2, cal, {}),
        "                   Counts            Gains Sigma-corrected, 1/m  Fluorescence\n"
        "Date and time      1     2     3     1 2 3 bb(470)    a name tha Channel 3  Depth, m   Temp, C");
    EXPECT_EQ(
        TerminalHeadings(LineKind::CorvaneVerbose, InstTypeCode::Corvane2, cal, {false, false}),
        "                   Signal and reference                Gains Not corrected, 1/m    Fluorescence\n"
        "Date and time      S1    R1    S2    R2    S3    R3    1 2 3 "
        "bb(470)    a name tha Channel 3  Depth, ft  Temp, C");
}

TEST_F(CorvaneLineTest, EachValueBeginsUnderItsHeading) {
    const CalibrationDataClass cal;
    for (const LineKind kind : {LineKind::CorvaneHexHundredths, LineKind::CorvaneVerboseTimed})
        for (const InstTypeCode model :
             {InstTypeCode::Corvane2, InstTypeCode::Corvane4, InstTypeCode::Corvane6}) {
            const std::string headings = TerminalHeadings(kind, model, cal, {});
            const std::string columns = headings.substr(headings.find('\n') + 1);
            const std::string line = TerminalLine(kind, model, raw, sample, {});
            EXPECT_EQ(columns.find("Channel 1"), line.find("0.00123"));
            EXPECT_EQ(columns.find("Channel 2"), line.find("0.20000"));
            EXPECT_EQ(columns.find("Depth"), line.find("12.50"));
            EXPECT_EQ(columns.find("Temp"), line.find("14.25"));
        }
}

TEST(TerminalHeadingsTest, ModelsWhoseLinesNameTheirValuesHaveNone) {
    for (const InstTypeCode model : {InstTypeCode::LTidal, InstTypeCode::NTidal, InstTypeCode::XTidal,
                                     InstTypeCode::Fathom2, InstTypeCode::Delph6, InstTypeCode::Unknown})
        EXPECT_EQ(TerminalHeadings(LineKind::TidalShort, model, {}, {}), "");
}

class TidalLineTest : public testing::Test {
  protected:
    TidalLineTest() {
        sample.a = 0.125F;
        sample.bb[0] = 0.0021;
        sample.bbUncorr[0] = 0.002;
        sample.beta[0] = 0.00025;
        sample.betaUncorr[0] = 0.00024;
        sample.Depth = 3;
        sample.K = 0.5F;
        sample.TransNorm = 123456.5F;
    }
    CalibratedSample sample;
};

TEST_F(TidalLineTest, LTidalNamesItsValues) {
    for (const LineKind kind : {LineKind::LTidalHex, LineKind::TidalShort, LineKind::TidalFull})
        EXPECT_EQ(TerminalLine(kind, InstTypeCode::LTidal, {}, sample, {}),
                  "a = 0.12500         bb = 0.00210        Beta140 = 0.0002500 Depth = 3.00        "
                  "K = 0.50000         TrT = 123456.5");
}

TEST_F(TidalLineTest, AbsorptionIsOfTheLTidalAlone) {
    for (const InstTypeCode model : {InstTypeCode::NTidal, InstTypeCode::XTidal})
        EXPECT_EQ(TerminalLine(LineKind::NTidalHex, model, {}, sample, {false, true}),
                  "bb = 0.00200        Beta140 = 0.0002400 Depth = 3.00        "
                  "K = 0.50000         TrT = 123456.5");
}

TEST_F(TidalLineTest, OtherModelsHaveNone) {
    for (const InstTypeCode model : {InstTypeCode::Fathom2, InstTypeCode::Delph2, InstTypeCode::Delph4,
                                     InstTypeCode::Delph6, InstTypeCode::Unknown})
        EXPECT_EQ(TerminalLine(LineKind::DelphFull, model, {}, sample, {}), "");
}

}  // namespace
}  // namespace marisonde
