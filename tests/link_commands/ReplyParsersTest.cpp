#include <algorithm>
#include <limits>

#include "LinkBench.h"
#include "link/ReplyDamage.h"
#include "link/ReplyParsers.h"
#include "link/ReplyText.h"

namespace marisonde {
namespace {

using Lines = std::vector<std::string>;

class ReplyParsersTest : public LinkBench {
  protected:
    void Given(const Lines& lines) {
        state.ResponseLineCount = 0;
        for (const std::string& text : lines)
            state.ResponseLines[static_cast<std::size_t>(state.ResponseLineCount++)] = text;
    }
    CalibrationDataClass& cal = window.CalData;
};

// --- identification ------------------------------------------------------------------------------------

Lines LongId(const std::string& model, int linesBehind) {
    const Lines all{"ID",
                    "Identification:",
                    "Model: " + model,
                    "S/N: V4060305",
                    "Config: FT",
                    "ID: bench\tunit",
                    "Firmware: 1.85",
                    "Maximum depth: 500",
                    "Clock: 07/04/11 09:15:22",
                    "Logged casts: 3"};
    return {all.begin(), all.begin() + 2 + linesBehind};
}

struct IdCase {
    const char* wire;
    const char* full;
    int lines;
};
class IdReplies : public ReplyParsersTest, public testing::WithParamInterface<IdCase> {};

TEST_P(IdReplies, AreCompleteWithTheLinesOfTheirModel) {
    const IdCase& c = GetParam();
    for (int lines = 0; lines <= 8; ++lines) {
        state.GotIdReply = false;
        state.CurrentCommand = "ID";
        state.InstModelName.clear();
        Given(LongId(c.wire, lines));
        ParseIdReply(window);
        EXPECT_EQ(state.GotIdReply, lines >= c.lines) << lines;
        EXPECT_EQ(state.CurrentCommand.empty(), lines >= c.lines) << lines;
        if (lines < 5) {
            EXPECT_EQ(state.InstModelName, "");
        }
    }
    EXPECT_EQ(state.InstModelName, c.full);
    EXPECT_EQ(state.InstSerial, "V4060305");
    EXPECT_EQ(state.InstConfig, "FT");
    EXPECT_EQ(state.InstId, "bench");  // cut before the first control character
}
INSTANTIATE_TEST_SUITE_P(Models, IdReplies,
                         testing::Values(IdCase{"CV6", "Corvane-6", 8}, IdCase{"CV4", "Corvane-4", 8},
                                         IdCase{"CV2", "Corvane-2", 8}, IdCase{"L-Tidal", "l-Tidal", 6},
                                         IdCase{"N-Tidal", "n-Tidal", 6}, IdCase{"FATHOM-2", "Fathom-2", 6},
                                         IdCase{"DELPH-2", "Delph-2", 6}, IdCase{"DELPH-4", "Delph-4", 6},
                                         IdCase{"DELPH-6", "Delph-6", 6}));

TEST_F(ReplyParsersTest, FourLinesAreNoIdentification) {
    Given(LongId("L-Tidal", 4));
    ParseIdReply(window);
    EXPECT_FALSE(state.GotIdReply);
}

TEST_F(ReplyParsersTest, AnUnknownModelIsNotIdentified) {
    Given(LongId("XY-9", 8));
    ParseIdReply(window);
    EXPECT_FALSE(state.GotIdReply);
    EXPECT_EQ(state.InstModelName, "XY-9");
}

TEST_F(ReplyParsersTest, TheShortTidalFormIsTheSerialAlone) {
    for (const auto& [serial, model] : {std::pair{"LT040712", "l-Tidal"}, std::pair{"NT050308", "n-Tidal"}}) {
        state.GotIdReply = false;
        state.CurrentCommand = "ID";
        state.InstConfig = state.InstId = "old";
        Given({"ID", serial});
        ParseIdReply(window);
        EXPECT_TRUE(state.GotIdReply);
        EXPECT_EQ(state.CurrentCommand, "");
        EXPECT_EQ(state.InstModelName, model);
        EXPECT_EQ(state.InstSerial, serial);
        EXPECT_EQ(state.InstConfig, "");
        EXPECT_EQ(state.InstId, "");
    }
    for (const char* const other : {"LTx40712", "XT040712", "LS040712", "LT", ""}) {
        state.GotIdReply = false;
        Given({other});
        ParseIdReply(window);
        EXPECT_FALSE(state.GotIdReply) << other;
    }
}

TEST_F(ReplyParsersTest, ModelNamesOfTheWire) {
    EXPECT_EQ(ModelFromReply("Model: FATHOM-2"), "Fathom-2");
    EXPECT_EQ(ModelFromReply("model: delph-2"), "Delph-2");
    EXPECT_EQ(ModelFromReply("model: Delph-4"), "Delph-4");
    EXPECT_EQ(ModelFromReply("model: delph-6"), "Delph-6");
    EXPECT_EQ(ModelFromReply("MODEL: L-TIDAL"), "l-Tidal");
    EXPECT_EQ(ModelFromReply("model: n-tidal"), "n-Tidal");
    EXPECT_EQ(ModelFromReply("model: cv2"), "Corvane-2");
    EXPECT_EQ(ModelFromReply("model: CV4"), "Corvane-4");
    EXPECT_EQ(ModelFromReply("model: cv6"), "Corvane-6");
    EXPECT_EQ(ModelFromReply("model: XY-9"), "XY-9");
}

// --- global values -------------------------------------------------------------------------------------

TEST_F(ReplyParsersTest, GcfReadsEveryWord) {
    Given({"GCF", "Model: CV4", "S/N: V4060305", "Config: FT", "ID: bench unit", "Firmware: 1.85",
           "Maximum depth: 500", "Depth coefficient: 0.0125", "Depth offset: -312.5", "Cal temp: 18.5",
           "Cal Time: 01/03/09 17:05:00"});
    ParseGcfReply(window, cal);
    EXPECT_EQ(cal.InstType, InstTypeCode::Corvane4);
    EXPECT_EQ(cal.Serial, "V4060305");
    EXPECT_EQ(cal.Config, "FT");
    EXPECT_EQ(cal.Label, "bench unit");
    EXPECT_EQ(state.InstId, "bench unit");
    EXPECT_EQ(state.FirmwareVersion, "1.85");
    EXPECT_FLOAT_EQ(cal.MaxDepth, 500);
    EXPECT_FLOAT_EQ(cal.DepthCal, 0.0125F);
    EXPECT_FLOAT_EQ(cal.DepthOff, -312.5F);
    EXPECT_FLOAT_EQ(cal.CalTemp, 18.5F);
    // 39814 is 1 January 2009, so 3 January is 39816; 17:05 is (17*60 + 5) / 1440 of a day.
    EXPECT_DOUBLE_EQ(cal.CalTime, 39816 + 1025.0 / 1440);
}

TEST_F(ReplyParsersTest, GcfKeepsWhatDoesNotComeAndTheOldDateForABadOne) {
    cal.CalTime = 12345.5;
    cal.MaxDepth = 77;
    Given({"Cal Time: 13/40/09 17:05:00", "depth: 3"});
    ParseGcfReply(window, cal);
    EXPECT_EQ(cal.CalTime, 12345.5);
    EXPECT_EQ(cal.MaxDepth, 77);
    Given({"Cal Time: never"});
    ParseGcfReply(window, cal);
    EXPECT_EQ(cal.CalTime, 12345.5);
}

TEST_F(ReplyParsersTest, GcfReadsSecondsByTheModel) {
    cal.InstType = InstTypeCode::Corvane2;
    Given({"Cal Time: 86400"});
    ParseGcfReply(window, cal);
    EXPECT_DOUBLE_EQ(cal.CalTime, 25570);  // one day after 1 January 1970
    cal.InstType = InstTypeCode::LTidal;
    ParseGcfReply(window, cal);
    EXPECT_DOUBLE_EQ(cal.CalTime, 29222);  // one day after 1 January 1980
}

TEST_F(ReplyParsersTest, TheFirstWordOfAGcfLineDecides) {
    // "config:" stands before "id:" in the order, and "cal temp" needs no colon.
    Given({"Config: a id: b", "Cal temp 12.25 C", "Depth coefficient of depth offset: 3"});
    ParseGcfReply(window, cal);
    EXPECT_EQ(cal.Config, "a id: b");
    EXPECT_EQ(state.InstId, "");
    EXPECT_FLOAT_EQ(cal.CalTemp, 12.25F);
    EXPECT_FLOAT_EQ(cal.DepthOff, 3);
    EXPECT_FLOAT_EQ(cal.DepthCal, 0);
}

// --- channels ------------------------------------------------------------------------------------------

TEST_F(ReplyParsersTest, CclReadsAWholeChannel) {
    Given({"CCL,3", "'Channel 3 (bb488)", "' mu: 12.5", "' Rnom: 400", "' Roo: 37.013", "' kbb: 1.08",
           "' kc: 0.25", "' kSigma0: 0.99", "' kSigma1: 0.02", "' kSigma2: 0.003", "' Kt: -0.001",
           "' G1: 1: 11: 21: 31", "' G2: 10: 12: 22: 32", "' G3: 100: 13: 23: 33", "' G4: 1000: 14: 24: 34",
           "' G5: 10000: -15: 25: 35"});
    ParseCclReply(window, cal);
    const ChannelCal& ch = cal.Channel(2);
    EXPECT_EQ(ch.name, "bb488");
    EXPECT_EQ(ch.lambda, 488);
    EXPECT_DOUBLE_EQ(ch.Mu, 12.5);
    EXPECT_DOUBLE_EQ(ch.RNominal, 400);
    // The fraction of Roo is the exponential sigma, the whole number the offset.
    EXPECT_DOUBLE_EQ(ch.ROutOff, 37);
    EXPECT_NEAR(ch.SigmaExp, 0.013, 1e-9);
    EXPECT_DOUBLE_EQ(ch.beta2bb, 1.08);
    EXPECT_DOUBLE_EQ(ch.bb2c, 0.25);
    EXPECT_DOUBLE_EQ(ch.Sigma[0], 0.99);
    EXPECT_DOUBLE_EQ(ch.Sigma[1], 0.02);
    EXPECT_DOUBLE_EQ(ch.Sigma[2], 0.003);
    EXPECT_DOUBLE_EQ(ch.bTempCoeff, -0.001);
    const std::array<double, 6> gains{0, 1, 10, 100, 1000, 10000};
    for (std::size_t g = 1; g <= 5; ++g) {
        EXPECT_DOUBLE_EQ(ch.gain[g], gains[g]);
        EXPECT_EQ(ch.DarkOffset[g], g == 5 ? -15 : static_cast<int>(10 + g));
        EXPECT_EQ(ch.NomOffset[g], static_cast<int>(20 + g));
        EXPECT_EQ(ch.FlOffset[g], static_cast<int>(30 + g));
    }
    EXPECT_EQ(state.ReplyChannel, 2);
}

TEST_F(ReplyParsersTest, MuTakesTheLineOfMuRho) {
    ParseChannelValue("' muRho: 0.98", 1, cal);
    EXPECT_DOUBLE_EQ(cal.Channel(1).Mu, 0.98);
    EXPECT_DOUBLE_EQ(cal.Channel(1).MuRho, 0);
    ParseChannelValue("' kSigmaExp: 0.25", 1, cal);
    EXPECT_DOUBLE_EQ(cal.Channel(1).SigmaExp, 0.25);
}

TEST_F(ReplyParsersTest, AGainRowMayBeShortOrOutOfRange) {
    cal.EditChannel(0).NomOffset[2] = 7;
    ParseChannelValue("' G2: 9.5: 4", 0, cal);
    EXPECT_DOUBLE_EQ(cal.Channel(0).gain[2], 9.5);
    EXPECT_EQ(cal.Channel(0).DarkOffset[2], 4);
    EXPECT_EQ(cal.Channel(0).NomOffset[2], 7);
    const ChannelCal before = cal.Channel(0);
    for (const char* const bad : {"' G0: 5", "' G6: 5", "' G: 5", "' G99999999: 5", "no colon mu 3"})
        ParseChannelValue(bad, 0, cal);
    EXPECT_EQ(cal.Channel(0), before);
}

TEST_F(ReplyParsersTest, ChannelsOutsideTheArraysAreLost) {
    const CalibrationDataClass before = cal;
    for (const char* const heading : {"'Channel 0 (x)", "'Channel 14 (x)", "'Channel (x)", "'Channel",
                                      "'Channel -5 (x)", "'Channel 99999999999 (x)"}) {
        Given({heading, "' mu: 5", "' ChEx: 3", "' G1: 7"});
        ParseCclReply(window, cal);
        ParseCcfReply(window, cal);
        EXPECT_TRUE(cal == before) << heading;
    }
    ParseChannelValue("' mu: 5", -1, cal);
    ParseChannelValue("' mu: 5", kChannelSlots, cal);
    EXPECT_TRUE(cal == before);
}

TEST_F(ReplyParsersTest, AChannelWithoutAHeadingIsTheOneNamedLast) {
    state.ReplyChannel = 4;
    Given({"' mu: 3"});
    ParseCclReply(window, cal);
    EXPECT_DOUBLE_EQ(cal.Channel(4).Mu, 3);
}

TEST_F(ReplyParsersTest, ANameMayHaveParenthesesOfItsOwn) {
    Given({"'Channel 1 (bb(470))"});
    ParseCclReply(window, cal);
    EXPECT_EQ(cal.Channel(0).name, "bb(470)");
    EXPECT_EQ(cal.Channel(0).lambda, 470);
}

TEST_F(ReplyParsersTest, CcfReadsBandwidthAndVirtualChannels) {
    Given({"CCF,2", "'Channel 2 (bb532)", "' lambda: 532", "' deltaLambda: 20", "' ChEx: 1", "' ChRep: 3"});
    ParseCcfReply(window, cal);
    EXPECT_EQ(cal.Channel(1).bDeltaLambda, 20);
    EXPECT_EQ(cal.Channel(1).ChEx, 1);
    EXPECT_EQ(cal.Channel(1).ChRep, 3);
    EXPECT_EQ(cal.Channel(1).lambda, 532);
}

// --- sampling parameters -------------------------------------------------------------------------------

TEST_F(ReplyParsersTest, SampleParamsReadEveryWord) {
    state.InstConfig = "FT";
    state.CurrentCommand = "GETSAMPLEPARAMS";
    Given({"LOG", "Period: 0.5", "Start delay: 60", "Sleep on memory full: 1", "Start on power: 1",
           "Burst mode: on", "Warmup time: 5", "Burst length: 20", "Burst cycle: 30.5",
           "Total duration: 90.25", "Shutter enabled: 0", "Automatic open: 1", "Shutter close time: 2.5",
           "Data format: HEX"});
    ParseSampleParams(window);
    EXPECT_FALSE(state.ParamsReplyDone);  // a Corvane with a shutter tells its direction last
    EXPECT_EQ(state.CurrentCommand, "GETSAMPLEPARAMS");
    SampleParams expected;
    expected.SamplePeriod = 0.5F;
    expected.StartDelay = 60;
    expected.SleepOnFull = true;
    expected.PowerFlag = true;
    expected.BurstMode = true;
    expected.WarmupTime = 5;
    expected.BurstLength = 20;
    expected.BurstCycle = 30.5F;
    expected.TotalDuration = 90.25F;
    expected.ShutterEnabled = false;
    expected.ShutterAutoOpen = true;
    expected.ShutterCloseTime = 2.5F;
    expected.DataFormatHex = true;
    EXPECT_TRUE(state.Params == expected);
    Given({"Shutter direction: CW"});
    ParseSampleParams(window);
    EXPECT_TRUE(state.Params.ShutterDirection);
    EXPECT_TRUE(state.ParamsReplyDone);
    EXPECT_EQ(state.CurrentCommand, "");
}

TEST_F(ReplyParsersTest, SampleParamsInTheirOtherForms) {
    Given({"Rate: 4"});
    ParseSampleParams(window);
    EXPECT_FLOAT_EQ(state.Params.SamplePeriod, 0.25F);
    Given({"Rate: 0"});
    ParseSampleParams(window);
    EXPECT_FLOAT_EQ(state.Params.SamplePeriod, 1);
    Given({"Sample period: 3, rate: 9"});  // "period:" is looked for first
    ParseSampleParams(window);
    EXPECT_FLOAT_EQ(state.Params.SamplePeriod, 3);
    Given({"Burst duration: 12", "Burst mode: off", "Sleep on memory full: 0", "Start on power: 0",
           "Shutter direction: ccw", "Automatic open: 0", "Data format: decimal"});
    ParseSampleParams(window);
    EXPECT_EQ(state.Params.BurstLength, 12);
    EXPECT_FALSE(state.Params.BurstMode);
    EXPECT_FALSE(state.Params.SleepOnFull);
    EXPECT_FALSE(state.Params.PowerFlag);
    EXPECT_FALSE(state.Params.ShutterDirection);
    EXPECT_TRUE(state.Params.ShutterEnabled);  // enabled unless the reply says otherwise
    EXPECT_FALSE(state.Params.DataFormatHex);
    Given({"Shutter enabled: 1"});
    ParseSampleParams(window);
    EXPECT_TRUE(state.Params.ShutterEnabled);
}

struct EndCase {
    InstTypeCode type;
    const char* config;
    const char* line;
    bool done;
    bool cleared;
};

TEST_F(ReplyParsersTest, TheLineThatEndsTheReplyDependsOnTheModel) {
    const std::vector<EndCase> cases{
        {InstTypeCode::Delph4, "", "Burst cycle: 3", true, true},
        {InstTypeCode::LTidal, "", "Burst cycle: 3", true, true},
        {InstTypeCode::Corvane6, "T", "Burst cycle: 3", false, false},
        {InstTypeCode::Corvane6, "", "Burst cycle: 3", false, false},
        {InstTypeCode::Corvane6, "", "Total duration: 3", true, true},
        {InstTypeCode::Corvane6, "T0", "Total duration: 3", true, true},
        {InstTypeCode::Corvane6, "T", "Total duration: 3", false, false},
        {InstTypeCode::Corvane6, "T", "Shutter direction: cw", true, true},
        {InstTypeCode::Corvane6, "T", "Shutter state: open", true, false},
    };
    for (const EndCase& c : cases) {
        Use(c.type);
        state.InstConfig = c.config;
        state.ParamsReplyDone = false;
        state.CurrentCommand = "GETSAMPLEPARAMS";
        Given({c.line});
        ParseSampleParams(window);
        EXPECT_EQ(state.ParamsReplyDone, c.done) << c.line << " " << c.config;
        EXPECT_EQ(state.CurrentCommand.empty(), c.cleared) << c.line << " " << c.config;
    }
}

// --- calibration text ----------------------------------------------------------------------------------

class CalTextReplyTest : public LinkBench {
  protected:
    void Ask(const char* command) {
        SendCommandNow("x", window);
        Sent();
        state.CurrentCommand = command;
        state.GotIniReply = false;
        state.CalReady = false;
    }
    static Lines Filler(int count) {
        Lines lines{"[General]", "DeviceType=Corvane-6"};
        while (static_cast<int>(lines.size()) < count)
            lines.push_back("Unknown" + std::to_string(lines.size()) + "=1");
        return lines;
    }
};

TEST_F(CalTextReplyTest, AnEndMarkEndsMakeIniOnlyFromLine54On) {
    Ask("MAKEINI");
    Hear(Filler(52));
    Hear({"[End]"});
    EXPECT_FALSE(state.GotIniReply);
    EXPECT_EQ(state.CurrentCommand, "MAKEINI");
    Hear({"one more"});
    EXPECT_TRUE(state.GotIniReply);
    EXPECT_EQ(state.CurrentCommand, "");
    EXPECT_EQ(window.CalData.InstType, InstTypeCode::Corvane6);
    EXPECT_FALSE(state.CalReady);
}

TEST_F(CalTextReplyTest, AnEndMarkEndsTheFileOfTheStoreAtOnce) {
    Ask("MULTICCAL");
    Hear({"[General]", "DeviceType=Delph-4", "Serial=D4080102"});
    EXPECT_FALSE(state.CalReady);
    Hear({"[End]"});
    EXPECT_TRUE(state.CalReady);
    EXPECT_EQ(state.CurrentCommand, "");
    EXPECT_EQ(window.CalData.Serial, "D4080102");
}

TEST_F(CalTextReplyTest, TheLastSectionEndsTheReplyWhenNothingFollows) {
    for (const char* const heading : {"[Channel8]", "[Channel 8]"}) {
        for (const char* const command : {"MAKEINI", "MULTICCAL"}) {
            Ask(command);
            const bool& flag = state.CurrentCommand == "MAKEINI" ? state.GotIniReply : state.CalReady;
            Hear({"[General]", "DeviceType=Corvane-6", heading, "Name=fl685"});
            for (int i = 2; i <= 16; ++i) Say({"Unknown=1"});
            Tick();
            TickFor(2s);
            EXPECT_FALSE(flag) << command;  // 16 lines behind the heading
            Hear({"Unknown=1"});
            TickFor(450ms);
            EXPECT_FALSE(flag) << command;  // more may follow
            Tick();
            EXPECT_TRUE(flag) << command;
            EXPECT_EQ(window.CalData.Channel(7).name, "fl685");
        }
    }
}

TEST_F(CalTextReplyTest, ASectionThatGoesOnIsReadToItsEnd) {
    Ask("MULTICCAL");
    Say({"[General]", "DeviceType=Corvane-6", "[Channel 8]"});
    for (int i = 1; i <= 30; ++i) Say({"Unknown=1"});
    Tick();
    EXPECT_FALSE(state.CalReady);
    Hear({"FlOffset5=77"});
    Hear({"[End]"});
    EXPECT_TRUE(state.CalReady);
    EXPECT_EQ(window.CalData.Channel(7).FlOffset[5], 77);
}

TEST_F(CalTextReplyTest, ALongCalibrationArrivesWhole) {
    Ask("MULTICCAL");
    Say(Filler(400));
    Hear({"[Channel 2]", "Mu=2.5", "[End]"});
    EXPECT_EQ(state.ResponseLineCount, 200);
    EXPECT_TRUE(state.CalReady);
    EXPECT_DOUBLE_EQ(window.CalData.Channel(1).Mu, 2.5);
}

TEST_F(CalTextReplyTest, LinesWithoutEndAreBounded) {
    Ask("MULTICCAL");
    for (int i = 0; i < 3000; ++i) Say({"x"});
    Tick();
    EXPECT_EQ(state.CalLines.size(), kMaxCalLines);
    EXPECT_FALSE(state.CalReady);
}

// --- text helpers --------------------------------------------------------------------------------------

TEST(ReplyText, WrittenDates) {
    // 40728 is 4 July 2011 and 36526 is 1 January 2000; 36525 is the last day of 1999.
    EXPECT_EQ(WrittenDate("Time: 07/04/11"), 40728);
    EXPECT_EQ(WrittenDate("7/4/2011 6:00"), 40728.25);
    EXPECT_EQ(WrittenDate("12/31/99 12:00:00 UTC"), 36525.5);
    EXPECT_EQ(WrittenDate("01/01/100"), 36526);  // 100 + 1900
    EXPECT_FALSE(WrittenDate(""));
    EXPECT_FALSE(WrittenDate("none"));
    EXPECT_FALSE(WrittenDate("00/04/11"));
    EXPECT_FALSE(WrittenDate("02/29/11"));
    EXPECT_TRUE(WrittenDate("02/29/12"));
    EXPECT_FALSE(WrittenDate("07/04/11 09"));
    EXPECT_FALSE(WrittenDate("07/04/11 09:15:60"));
    EXPECT_FALSE(WrittenDate("99999/04/11"));
}

TEST(ReplyText, DamageShowsInCharactersThatAreNeverSent) {
    EXPECT_FALSE(LooksDamaged("Sigma1=0.997\t//not used by v2.7 and later"));
    EXPECT_FALSE(LooksDamaged("Label=Fj\xF8rd"));
    EXPECT_FALSE(LooksDamaged(""));
    EXPECT_TRUE(LooksDamaged("Gain1=1\x15"));
    EXPECT_TRUE(LooksDamaged("Gain1=1\x7F"));
    EXPECT_TRUE(LooksDamaged("Ga\xE9n1=1"));
    EXPECT_TRUE(
        LooksDamaged("[Chan\xEE"
                     "el 1]"));
}

TEST(ReplyText, NumbersThatGoWrongLookDamaged) {
    for (const char* const good :
         {"1", " -0.25", "1E+308", "1231002300 (01/3/09 17:05:00)", "0.997\t//not used", "3.5 mm",
          "01/03/09 17:05", "12,spare", "off", "", "-", "7//x", "1: 2: 3"})
        EXPECT_FALSE(NumberLooksDamaged(good)) << good;
    for (const char* const bad : {"1u5", "0.1=3", "-x", "1%5", "12.5;"})
        EXPECT_TRUE(NumberLooksDamaged(bad)) << bad;
}

TEST(ReplyText, FormsThatNoCalibrationHasLookDamaged) {
    EXPECT_FALSE(CalTextLooksDamaged(Lines{"sendcal", "[Comment]", "free: text", "[General]          //Saved",
                                           "Label=2nd unit", "// note", "kT0=0.5", "Other=thing", "[End]"}));
    EXPECT_TRUE(CalTextLooksDamaged(Lines{"[General", "Mu=1"}));
    EXPECT_TRUE(CalTextLooksDamaged(Lines{"[General]", "Mu}1"}));
    EXPECT_TRUE(CalTextLooksDamaged(Lines{"[General]", "M+=1"}));
    EXPECT_TRUE(CalTextLooksDamaged(Lines{"[General]", "Mu=1v"}));
    EXPECT_FALSE(ReplyLooksDamaged(
        Lines{"CCL,3", "'Channel 3 (bb488)", "' mu: 12.5", "' G1: 1: -2: 3:", "S/N: 12AB"}));
    EXPECT_TRUE(ReplyLooksDamaged(Lines{"' G1: 1: 2s: 3"}));
}

}  // namespace
}  // namespace marisonde
