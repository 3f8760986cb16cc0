// What each line of calibration text does, and the text of each layout.
#include <functional>
#include <gtest/gtest.h>
#include <string>

#include "CalFixture.h"
#include "calibration/CalImage.h"
#include "calibration/CalLine.h"
#include "common/ConversionUtils.h"

namespace marisonde {
namespace {

Cal Parsed(std::string_view text) {
    Cal cal;
    CalSection section;
    while (!text.empty()) cal.ParseLineIntoCalClass(TakeCalLine(text), section);
    return cal;
}

Cal Loaded(std::string_view text) {
    Cal cal;
    EXPECT_TRUE(cal.LoadText(text, FixedModel(), {}).ok);
    return cal;
}

TEST(CalLine, KeyAndValue) {
    std::string section = "before";
    const auto split = [&](std::string_view line) { return SplitCalLine(line, section); };
    EXPECT_EQ(split("Gain3=1e3 // x").key, "Gain3");
    EXPECT_EQ(split("Gain3=1e3 // x").value, "1e3");
    EXPECT_EQ(split("Sigma1=0.997\t//not used by v2.7 and later").value, "0.997");
    EXPECT_EQ(split("Serial=CV6-123, spare").value, "CV6-123");
    EXPECT_EQ(split("Label=  a/b  ").value, "a/b");
    EXPECT_EQ(split("Label=end/").value, "end/");
    EXPECT_EQ(split("Label=a=b").value, "a=b");
    EXPECT_EQ(split(" Label =x").key, " Label ");
    EXPECT_EQ(split("no equals sign").key, "");
    EXPECT_EQ(split("").key, "");
    EXPECT_EQ(section, "before");
}

TEST(CalLine, Sections) {
    std::string section;
    EXPECT_EQ(SplitCalLine("[Channel 2]", section).key, "");
    EXPECT_EQ(section, "Channel 2");
    EXPECT_EQ(SplitCalLine("Label=a[b]=c", section).key, "");
    EXPECT_EQ(section, "b");
    (void)SplitCalLine("[open", section);
    EXPECT_EQ(section, "");
    (void)SplitCalLine("x]y[z", section);
    EXPECT_EQ(section, "");
    (void)SplitCalLine("[General]          //Saved by Marisonde 2.85", section);
    EXPECT_EQ(section, "General");
}

TEST(CalLine, AnyLineEnd) {
    std::string_view text = "a\r\nb\nc\rd";
    for (const char* line : {"a", "b", "c", "d"}) EXPECT_EQ(TakeCalLine(text), line);
    EXPECT_TRUE(text.empty());
}

// --- reading: every key -------------------------------------------------------------------------------

struct KeyCase {
    std::string text;
    std::function<bool(const Cal&)> check;
};
std::ostream& operator<<(std::ostream& out, const KeyCase& row) {
    return out << row.text;
}

class EveryCalKey : public testing::TestWithParam<KeyCase> {};

TEST_P(EveryCalKey, IsRead) {
    EXPECT_TRUE(GetParam().check(Parsed(GetParam().text)));
}

// Keys are compared letter by letter; nothing may happen for another case or a blank before "=".
TEST_P(EveryCalKey, IsExact) {
    std::string text = GetParam().text;
    const std::size_t key = text.rfind('\n') + 1;
    const std::size_t equals = text.find('=', key);
    text.insert(equals, " ");
    EXPECT_EQ(Parsed(text), Parsed(text.substr(0, key)));
}

#define OBJECT(text, condition)                      \
    KeyCase {                                        \
        text, [](const Cal& c) { return condition; } \
    }

INSTANTIATE_TEST_SUITE_P(
    Object, EveryCalKey,
    testing::Values(OBJECT("Label=my unit", c.Label == "my unit"),
                    OBJECT("DeviceType=delph-4", c.InstType == InstTypeCode::Delph4),
                    OBJECT("DeviceType=unknown", c.InstType == InstTypeCode::Unknown),
                    OBJECT("Serial=CV6-123", c.Serial == "CV6-123" && c.InstType == InstTypeCode::Corvane6),
                    OBJECT("Config=FT", c.Config == "FT"), OBJECT("MaxDepth=500", c.MaxDepth == 500),
                    OBJECT("DepthCal=0.0125", c.DepthCal == 0.0125F), OBJECT("DepthOff=-3", c.DepthOff == -3),
                    OBJECT("CalTime=86400", c.CalTime == 29222),
                    OBJECT("ModificationTime=03/04/05 12:00:00", c.ModificationTime == 38415.5),
                    OBJECT("[General]\nCalTemp=18.5", c.CalTemp == 18.5F),
                    OBJECT("[Scattering]\nCalTemp=18.5", c.CalTemp == 18.5F),
                    OBJECT("[Attenuation]\nCalTemp=17", c.Attenuation(0).KCalTemp == 17 && c.CalTemp == 0),
                    OBJECT("kp1=0.5", c.kp1 == 0.5F), OBJECT("kp2=0.25", c.kp2 == 0.25F),
                    OBJECT("P0=12.5", c.P0 == 12.5F), OBJECT("TP0=20.5", c.TP0 == 20),
                    OBJECT("kD1=2", c.kD1 == 2), OBJECT("kD2=3", c.kD2 == 3)));

#define CHANNEL3(text, condition)                  \
    KeyCase {                                      \
        "[Channel 3]\n" text, [](const Cal& cal) { \
            const auto& c = cal.Channel(2);        \
            return condition;                      \
        }                                          \
    }

INSTANTIATE_TEST_SUITE_P(
    Channel, EveryCalKey,
    testing::Values(
        CHANNEL3("Name=bb(470)", c.name == "bb(470)" && c.lambda == 470),
        CHANNEL3("Lambda=532", c.lambda == 532), CHANNEL3("DeltaLambda=20", c.bDeltaLambda == 20),
        CHANNEL3("Gain1=2", c.gain[1] == 2), CHANNEL3("Gain2=2", c.gain[2] == 2),
        CHANNEL3("Gain3=1.23456789", c.gain[3] == 1.234568), CHANNEL3("Gain4=2", c.gain[4] == 2),
        CHANNEL3("Gain5=2", c.gain[5] == 2), CHANNEL3("Mu=0.5", c.Mu == 0.5),
        CHANNEL3("MuRho=0.98", c.MuRho == 0.98), CHANNEL3("Sigma1=4", c.Sigma[0] == 4),
        CHANNEL3("Sigma2=4", c.Sigma[1] == 4), CHANNEL3("Sigma3=4", c.Sigma[2] == 4),
        CHANNEL3("SigmaExp=0.25", c.SigmaExp == 0.25 && c.UseSigmaExp),
        CHANNEL3("ROutOff=1024.25", c.ROutOff == 1024 && c.SigmaExp == 0.25),
        CHANNEL3("RNominal=4000", c.RNominal == 4000), CHANNEL3("ChiBb=1.1", c.beta2bb == 1.1),
        CHANNEL3("Beta2Bb=1.1", c.beta2bb == 1.1), CHANNEL3("Bb2c=50", c.bb2c == 50),
        CHANNEL3("TempCoeff=0.001", c.bTempCoeff == 0.001), CHANNEL3("Offset1=2", c.DarkOffset[1] == 2),
        CHANNEL3("Offset2=2", c.DarkOffset[2] == 2), CHANNEL3("Offset3=2.5", c.DarkOffset[3] == 2),
        CHANNEL3("Offset4=3.5", c.DarkOffset[4] == 4), CHANNEL3("Offset5=2", c.DarkOffset[5] == 2),
        CHANNEL3("NomOffset1=2", c.NomOffset[1] == 2), CHANNEL3("NomOffset2=2", c.NomOffset[2] == 2),
        CHANNEL3("NomOffset3=2", c.NomOffset[3] == 2), CHANNEL3("NomOffset4=2", c.NomOffset[4] == 2),
        CHANNEL3("NomOffset5=2", c.NomOffset[5] == 2), CHANNEL3("FlOffset1=2", c.FlOffset[1] == 2),
        CHANNEL3("FlOffset2=2", c.FlOffset[2] == 2), CHANNEL3("FlOffset3=2", c.FlOffset[3] == 2),
        CHANNEL3("FlOffset4=2", c.FlOffset[4] == 2), CHANNEL3("FlOffset5=-2", c.FlOffset[5] == -2)));

#define BEAM2(text, condition)                         \
    KeyCase {                                          \
        "[Attenuation 2]\n" text, [](const Cal& cal) { \
            const auto& c = cal.Attenuation(1);        \
            return condition;                          \
        }                                              \
    }

INSTANTIATE_TEST_SUITE_P(
    Attenuation, EveryCalKey,
    testing::Values(BEAM2("Lambda=660",
                          c.KLambda == 660 && cal.Channel(1).lambda == 660 && cal.Channel(2).lambda == 660),
                    BEAM2("DeltaLambda=20", c.KDeltaLambda == 20 && cal.Channel(1).bDeltaLambda == 0),
                    BEAM2("TempCoeff0=2", c.KTempCoeff[0] == 2), BEAM2("TempCoeff1=2", c.KTempCoeff[1] == 2),
                    BEAM2("TempCoeff2=2", c.KTempCoeff[2] == 2), BEAM2("TempCoeff3=2", c.KTempCoeff[3] == 2),
                    BEAM2("TempCoeff4=2", c.KTempCoeff[4] == 2), BEAM2("TempCoeff5=2", c.KTempCoeff[5] == 2),
                    BEAM2("TrNought=100", c.TrNought == 100), BEAM2("TrPure=70000", c.TrPure == 70000),
                    BEAM2("TrAir=80000", c.TrAir == 80000), BEAM2("Path=0.25", c.KPath == 0.25F),
                    BEAM2("aPure=0.5", c.aPure == 0.5F), BEAM2("BetaPure=0.5", c.betaPure == 0.5F),
                    BEAM2("Chi0=2", c.KChi[0] == 2), BEAM2("Chi1=2", c.KChi[1] == 2),
                    BEAM2("Chi2=2", c.KChi[2] == 2), BEAM2("Chi3=2", c.KChi[3] == 2),
                    BEAM2("KDepthCoeff0=2", c.KDepthCoeff[0] == 2),
                    BEAM2("KDepthCoeff1=2", c.KDepthCoeff[1] == 2),
                    BEAM2("KDepthThreshold=2000", c.KDepthThresh[0] == 2000), BEAM2("L=0.2", c.KL == 0.2F),
                    BEAM2("S0=11", c.KS0 == 11), BEAM2("R0=12", c.KR0 == 12),
                    BEAM2("kT0=4", c.KkT.Norm() == 4 && c.KkT[0] == 1), BEAM2("kT1=4", c.KkT[1] == 4),
                    BEAM2("kT2=4", c.KkT[2] == 4), BEAM2("kT3=4", c.KkT[3] == 4),
                    BEAM2("kT4=4", c.KkT[4] == 4), BEAM2("kT5=4", c.KkT[5] == 4), BEAM2("P1=7", c.KP(1) == 7),
                    BEAM2("P2=8", c.KP(2) == 8), BEAM2("kTauPX=0.5", c.KkTauPX == 0.5F),
                    BEAM2("kTauP0=4", c.KkTauP.Norm() == 4), BEAM2("kTauP1=4", c.KkTauP[1] == 4),
                    BEAM2("kTauP2=4", c.KkTauP[2] == 4), BEAM2("kTauP3=4", c.KkTauP[3] == 4),
                    BEAM2("kTauP4=4", c.KkTauP[4] == 4), BEAM2("kTauP5=4", c.KkTauP[5] == 4),
                    BEAM2("Tau0=0.9", c.KTau0 == 0.9), BEAM2("TPW=20", c.KTPW == 20)));

TEST(CalText, SerialMarksAnywhereTheLastInTheListWins) {
    struct Row {
        const char* serial;
        InstTypeCode type;
    };
    for (const auto& [serial, type] :
         {Row{"CV6-1", InstTypeCode::Corvane6}, Row{"CV4-1", InstTypeCode::Corvane4},
          Row{"CV2-1", InstTypeCode::Corvane2}, Row{"LT-1", InstTypeCode::LTidal},
          Row{"NT-1", InstTypeCode::NTidal}, Row{"N2-5", InstTypeCode::Delph2},
          Row{"D2-5", InstTypeCode::Delph2}, Row{"D4-5", InstTypeCode::Delph4},
          Row{"D6-5", InstTypeCode::Delph6}, Row{"D6LT", InstTypeCode::Delph6},
          Row{"cv6", InstTypeCode::Unknown}, Row{"77", InstTypeCode::Unknown}}) {
        EXPECT_EQ(Parsed(std::string("Serial=") + serial).InstType, type) << serial;
    }
}

TEST(CalText, UnknownModelNameIsOutOfRange) {
    EXPECT_EQ(Parsed("DeviceType=Toaster").InstType, InstTypeCode::NoSuchName);
}

TEST(CalText, ChannelNumbers) {
    EXPECT_EQ(Parsed("[Channel 1]\nMu=2").Channel(0).Mu, 2);
    EXPECT_EQ(Parsed("[Channel 9]\nMu=2").Channel(8).Mu, 2);
    EXPECT_EQ(Parsed("[Channel 10]\nMu=2"), Cal());  // its last character alone says channel 0
    EXPECT_EQ(Parsed("[Channel]\nMu=2"), Cal());
    EXPECT_EQ(Parsed("[Scattering]\nMu=2").Channel(0).Mu, 2);
    EXPECT_EQ(Parsed("[Attenuation]\nTrPure=2").Attenuation(0).TrPure, 2);
    EXPECT_EQ(Parsed("[Attenuation 12]\nTrPure=2").Attenuation(11).TrPure, 2);
    EXPECT_EQ(Parsed("[Attenuation 99]\nTrPure=2"), Cal());
    // A section that says nothing keeps the channel before it.
    EXPECT_EQ(Parsed("[Channel 3]\n[Notes]\nMu=2").Channel(2).Mu, 2);
    // Keys of the object are read in any section.
    EXPECT_EQ(Parsed("[Channel 10]\nDepthCal=2").DepthCal, 2);
}

TEST(CalText, CalTempOfOtherSectionsIsIgnored) {
    for (const char* section : {"Channel 1", "Attenuation 1", "Depth", "general"}) {
        EXPECT_EQ(Parsed(std::string("[") + section + "]\nCalTemp=5"), Cal()) << section;
    }
}

TEST(CalText, NumberOfAName) {
    struct Row {
        const char* name;
        int lambda;
    };
    for (const auto& [name, lambda] : {Row{"bb470", 470}, Row{"fl(685)", 685}, Row{"2.5", 2},
                                       Row{"bb(470) 2", 470}, Row{"x", 0}, Row{"a-.6", -1}, Row{"3.5", 4}}) {
        EXPECT_EQ(Parsed(std::string("[Channel 1]\nName=") + name).Channel(0).lambda, lambda) << name;
    }
}

TEST(CalText, CommentLinesAreJoined) {
    const Cal cal = Parsed("[Comment]\r\nfirst, \r\nLabel=second\r\n[General]\r\nLabel=x\r\n");
    EXPECT_EQ(cal.Comment, "first, Label=second");
    EXPECT_EQ(cal.Label, "x");
}

TEST(CalText, DatesInWords) {
    // 4 March 2005 is day 38415; 17:05:00 on 3 January 2009, day 39816, is 61500 s into the day.
    EXPECT_EQ(Parsed("CalTime=03/04/05").CalTime, 38415);
    EXPECT_DOUBLE_EQ(Parsed("CalTime=1231002300 (01/3/09 17:05:00)").CalTime, 39816 + 61500 / 86400.0);
    EXPECT_DOUBLE_EQ(Parsed("CalTime=0 (12/31/99 23:59)").CalTime, DateFromCivil(1999, 12, 31, 23, 59));
}

TEST(CalText, DatesInSecondsCountFromTheFamilysEpoch) {
    EXPECT_EQ(Parsed("DeviceType=Corvane-4\nCalTime=86400").CalTime, 25570);
    EXPECT_EQ(Parsed("DeviceType=n-Tidal\nCalTime=86400").CalTime, 29222);
    EXPECT_EQ(Parsed("DeviceType=Delph-2\nCalTime=86400").CalTime, 29222);
}

TEST(CalText, NumbersBeyondTheirField) {
    EXPECT_EQ(Parsed("[Channel 1]\nLambda=1e9").Channel(0).lambda, 32767);
    EXPECT_EQ(Parsed("[Channel 1]\nOffset1=-99999").Channel(0).DarkOffset[1], -32768);
    EXPECT_EQ(Parsed("[Channel 1]\nMu=1e999").Channel(0).Mu, 0);
    EXPECT_EQ(Parsed("[Channel 1]\nMu=1E+308").Channel(0).Mu, kSentinel);
    EXPECT_EQ(Parsed("MaxDepth=1E+308").MaxDepth, kSentinelF);
    EXPECT_EQ(Parsed("MaxDepth=-1e300").MaxDepth, kSentinelF);
    EXPECT_EQ(Parsed("[Channel 1]\nMu=none").Channel(0).Mu, 0);
}

// --- what a load adds ---------------------------------------------------------------------------------

TEST(CalLoad, WithoutAnyModelItIsACorvane6) {
    EXPECT_EQ(Loaded("[General]\r\nSerial=77\r\n[End]\r\n").InstType, InstTypeCode::Corvane6);
    EXPECT_EQ(Loaded("").InstType, InstTypeCode::Corvane6);
    EXPECT_EQ(Loaded("[General]\r\nSerial=N2-5\r\n").InstType, InstTypeCode::Delph2);
}

TEST(CalText, UnknownKeysAndSectionsArePassedOver) {
    const Cal plain = Loaded("[General]\r\nSerial=NT-1\r\n[Scattering]\r\nMu=2\r\n[End]\r\n");
    const Cal noisy = Loaded(
        "[General]\r\nColour=red\r\nSerial=NT-1\r\n[Whatever]\r\n=5\r\nno key at all\r\n\r\n"
        "[Scattering]\r\nmu=3\r\nMu=2\r\nGain6=7\r\nSigma4=7\r\nkT9=7\r\n[End]\r\n");
    EXPECT_EQ(noisy, plain);
    EXPECT_EQ(plain.Channel(0).Mu, 2);
}

TEST(CalLoad, LeavesNothingChanged) {
    EXPECT_EQ(Loaded("[Channel 1]\nRNominal=4000\n").ChangedItems, 0);
}

TEST(CalLoad, ForgetsWhatWasThereBefore) {
    Cal cal;
    cal.Comment = "old";
    cal.EditChannel(4).MuRho = 9;
    (void)cal.LoadText("[General]\nSerial=CV4-1\n", FixedModel(), {});
    EXPECT_EQ(cal.Comment, "");
    EXPECT_EQ(cal.Channel(4).MuRho, 0);
}

TEST(CalLoad, ChannelNamesOfTheTidalModels) {
    constexpr std::string_view kSections = "\n[Scattering]\nLambda=532\n[Attenuation]\nLambda=660\n";
    const Cal lTidal = Loaded("Serial=LT-1" + std::string(kSections));
    EXPECT_EQ(lTidal.Channel(0).name, "bb(532)");
    EXPECT_EQ(lTidal.Channel(1).name, "a(660)");
    EXPECT_EQ(lTidal.Channel(2).name, "k(660)");
    const Cal nTidal = Loaded("Serial=NT-1" + std::string(kSections));
    EXPECT_EQ(nTidal.Channel(1).name, "c(660)");
    EXPECT_EQ(Loaded("DeviceType=x-Tidal" + std::string(kSections)).Channel(1).name, "");
}

std::string WithLambdas(std::string_view serial, const std::array<int, 8>& lambdas) {
    std::string text = "Serial=" + std::string(serial) + "\n";
    for (int ch = 0; ch < 8; ++ch) {
        text += "[Channel " + std::to_string(ch + 1) + "]\nName=bb(" +
                std::to_string(lambdas[static_cast<std::size_t>(ch)]) + ")\n";
    }
    return text;
}

std::array<int, 16> Sharing(const Cal& cal) {
    std::array<int, 16> sharing{};
    for (int ch = 0; ch < 8; ++ch) {
        sharing[static_cast<std::size_t>(ch)] = cal.Channel(ch).ChEx;
        sharing[static_cast<std::size_t>(ch) + 8] = cal.Channel(ch).ChRep;
    }
    return sharing;
}

TEST(CalLoad, EqualWavelengthsMeanSharedReceivers) {
    // Channels 2 and 8 equal, 4 and 7 too.
    EXPECT_EQ(Sharing(Loaded(WithLambdas("CV6-1", {420, 442, 470, 510, 590, 700, 510, 442}))),
              (std::array<int, 16>{0, 1, 0, 3, 0, 0, 4, 2, 0, 8, 0, 7, 0, 0, 0, 0}));
    // Only channels 2 and 8.
    EXPECT_EQ(Sharing(Loaded(WithLambdas("CV6-1", {420, 442, 470, 510, 590, 700, 511, 442}))),
              (std::array<int, 16>{0, 1, 0, 3, 0, 0, 0, 2, 0, 8, 0, 0, 0, 0, 0, 0}));
    // Channels 2 and 7.
    EXPECT_EQ(Sharing(Loaded(WithLambdas("CV6-1", {420, 442, 470, 510, 590, 700, 442, 510}))),
              (std::array<int, 16>{0, 1, 0, 0, 0, 0, 2, 0, 0, 7, 0, 0, 0, 0, 0, 0}));
    // None, and another model.
    EXPECT_EQ(Sharing(Loaded(WithLambdas("CV6-1", {420, 442, 470, 510, 590, 700, 671, 680}))),
              (std::array<int, 16>{}));
    EXPECT_EQ(Sharing(Loaded(WithLambdas("CV4-1", {420, 442, 470, 510, 590, 700, 510, 442}))),
              (std::array<int, 16>{}));
}

}  // namespace
}  // namespace marisonde
