#include <array>

#include "simulator/Conversation.h"
#include "simulator/Random.h"

namespace marisonde::simulator {
namespace {

using namespace std::chrono_literals;

struct IdentityCase {
    Model model;
    std::string code, serial, config, depth;
};

class Identity : public testing::TestWithParam<IdentityCase> {};

TEST_P(Identity, IsToldInLinesOfTheirOrder) {
    const IdentityCase& wanted = GetParam();
    Conversation talk(wanted.model);
    std::vector<std::string> lines{"Identification:",
                                   "Model: " + wanted.code,
                                   "S/N: " + wanted.serial,
                                   "Config: " + wanted.config,
                                   "ID: Simulated",
                                   "Firmware: 1.85",
                                   "Maximum depth: " + wanted.depth};
    if (InfoOf(wanted.model).family == Family::Corvane) {
        lines.emplace_back("Clock: 07/04/11 09:15:22");
        lines.emplace_back("Logged casts: 3");
    }
    EXPECT_EQ(talk.Ask("ID"), Lines(lines));
}

INSTANTIATE_TEST_SUITE_P(EveryModel, Identity,
                         testing::Values(IdentityCase{Model::Corvane6, "CV6", "CV060412", "6F2T1", "500"},
                                         IdentityCase{Model::Corvane4, "CV4", "V4060305", "4T0", "600"},
                                         IdentityCase{Model::Corvane2, "CV2", "V2060211", "2F1T0", "300"},
                                         IdentityCase{Model::LTidal, "L-Tidal", "LT040712", "257", "500"},
                                         IdentityCase{Model::NTidal, "N-Tidal", "NT050308", "258", "500"},
                                         IdentityCase{Model::XTidal, "X-Tidal", "XT050919", "259", "500"},
                                         IdentityCase{Model::Fathom2, "FATHOM-2", "FA070803", "2", "300"},
                                         IdentityCase{Model::Delph2, "DELPH-2", "D2070811", "2", "500"},
                                         IdentityCase{Model::Delph4, "DELPH-4", "D4080102", "4", "500"},
                                         IdentityCase{Model::Delph6, "DELPH-6", "D6080107", "6", "500"}));

TEST(IdentityOptions, OldTidalFirmwareSaysItsSerialAlone) {
    Conversation talk(Model::LTidal, {.shortId = true});
    EXPECT_EQ(talk.Ask("ID"), "LT040712\r\n");
    Conversation corvane(Model::Corvane2, {.shortId = true});
    EXPECT_EQ(corvane.Value("ID", "S/N"), "V2060211");  // only Tidals have had it
}

TEST(IdentityOptions, FirmwareSerialAndConfigAreAsAsked) {
    const Options options{.firmware = "1.01", .serial = "CV6-123", .config = "6"};
    Conversation talk(Model::Corvane6, options);
    EXPECT_EQ(talk.Ask("VER"), "Firmware version 1.01\r\n");
    EXPECT_EQ(talk.Value("ID", "Firmware"), "1.01");
    EXPECT_EQ(talk.Value("ID", "S/N"), "CV6-123");
    EXPECT_EQ(talk.Value("ID", "Config"), "6");
    EXPECT_EQ(talk.Value("GCF", "S/N"), "CV6-123");
    EXPECT_EQ(talk.Value("GCF", "Config"), "6");
    EXPECT_TRUE(talk.instrument->HasShutter());  // the text lacks the letter, not the instrument its shutter
    const host::Cal cal(talk.instrument->CalText());
    EXPECT_EQ(cal.Text("General", "Serial"), "CV6-123");
    EXPECT_EQ(cal.Text("General", "Config"), "6");
}

TEST(IdentityOptions, TheCalibrationMayBelongToAnotherInstrument) {
    Conversation talk(Model::Delph4, {.calSerial = "D4080199"});
    EXPECT_EQ(talk.Value("ID", "S/N"), "D4080102");
    EXPECT_EQ(host::Cal(talk.Ask("sendcal")).Text("General", "Serial"), "D4080199");
}

TEST(Version, IsToldByAllModels) {
    for (int model = 0; model < kModelCount; ++model) {
        Conversation talk(static_cast<Model>(model));
        EXPECT_EQ(talk.Ask("ver"), "Firmware version 1.85\r\n");
    }
}

TEST(Waking, AnAwakeInstrumentSaysThatItIs) {
    Conversation talk(Model::Corvane4);
    EXPECT_EQ(talk.Ask("WAKE"), "CV4 ready\r\n");
}

TEST(Refusals, OfValuesAndUnknownWords) {
    Conversation talk(Model::Corvane4);
    EXPECT_EQ(talk.Ask("BAUD,1200"), "Value refused\r\n");
    EXPECT_EQ(talk.Ask("PERIOD,2"), "Unknown command\r\n");  // a Corvane has LOG
    EXPECT_EQ(talk.Ask("FL"), "Unknown command\r\n");        // and this one no fluorescence
    EXPECT_EQ(talk.Ask("IDENTIFY"), "Unknown command\r\n");  // no name followed by a letter
}

TEST(Echo, GoesOffAndOn) {
    Conversation talk(Model::Delph2);
    EXPECT_EQ(talk.Ask("ECHOOFF"), "");
    EXPECT_EQ(talk.AskWithEcho("VER\r"), "Firmware version 1.85\r\n");
    EXPECT_EQ(talk.AskWithEcho("ECHOON\r"), "");
    EXPECT_EQ(talk.Ask("VER"), "Firmware version 1.85\r\n");
}

TEST(Echo, ABackspaceTakesACharacterOffTheLineAndTheScreen) {
    for (const std::string rubOut : {"\b", "\x7f"}) {
        Conversation talk(Model::Delph2);
        EXPECT_EQ(talk.AskWithEcho(rubOut), "") << "an empty line has nothing to lose";
        EXPECT_EQ(talk.AskWithEcho("VEX" + rubOut), "VEX\b \b");
        EXPECT_EQ(talk.AskWithEcho("R\r"), "R\r\nFirmware version 1.85\r\n");
        talk.AskWithEcho("ECHOOFF\r");
        EXPECT_EQ(talk.AskWithEcho("I" + rubOut + rubOut + "VER\r"), "Firmware version 1.85\r\n");
    }
}

TEST(Echo, EachCharacterComesBackAsItIsTyped) {
    Conversation talk(Model::Delph2);
    EXPECT_EQ(talk.AskWithEcho("V", 20ms), "V");
    EXPECT_EQ(talk.AskWithEcho("ER", 20ms), "ER");
    EXPECT_EQ(talk.AskWithEcho("\r\n", 3s), "\r\nFirmware version 1.85\r\n");
}

TEST(Sampling, HearsNothingButStop) {
    Conversation talk(Model::NTidal, {.samplesPerSecond = 1});
    talk.Ask("START", 6s);
    ASSERT_TRUE(talk.instrument->Sampling());
    const std::string heard = talk.AskWithEcho("ID\rBAUD,9600\rSLEEP\r");
    EXPECT_EQ(heard.find("Ident"), std::string::npos);
    EXPECT_EQ(heard.find("ID"), std::string::npos);
    EXPECT_TRUE(talk.instrument->Sampling());
    EXPECT_TRUE(talk.AskWithEcho("STOP\r").ends_with("\r\nStopped\r\n"));
    EXPECT_FALSE(talk.instrument->Sampling());
}

TEST(ClockCommand, TellsAndSetsTheTime) {
    Conversation talk(Model::Corvane6);
    EXPECT_EQ(talk.Ask("TIME", 2s), "Time: 07/04/11 09:15:22\r\n");
    talk.Listen(58s);
    EXPECT_EQ(talk.Ask("TIME", 1s), "Time: 07/04/11 09:16:22\r\n");
    // Hosts may put a blank behind it.
    EXPECT_EQ(talk.Ask("TIME,02/29/12 23:59:58 ", 1s), "Time: 02/29/12 23:59:58\r\n");
    EXPECT_EQ(talk.Ask("TIME", 1s), "Time: 02/29/12 23:59:59\r\n");
    EXPECT_EQ(talk.Ask("TIME", 1s), "Time: 03/01/12 00:00:00\r\n");
    for (const char* const bad : {"TIME,02/29/11 10:00:00", "TIME,02/28/11 24:00:00", "TIME,yesterday",
                                  "TIME,02/28/11 10:00:00,1", "TIME,1/2/3"})
        EXPECT_EQ(talk.Ask(bad, 1s), "Value refused\r\n") << bad;
    EXPECT_EQ(talk.Ask("TIME", 1s), "Time: 03/01/12 00:00:06\r\n");
}

TEST(ClockCommand, DatesTheSamples) {
    Conversation talk(Model::Corvane2, {.form = LineForm::Hex, .samplesPerSecond = 1});
    talk.Ask("TIME,01/01/80 00:00:00", 500ms);
    const std::string lines = talk.Ask("START,0", 7s);
    // 315532800 s from 1970 to 1980, and 5 s of countdown behind half a second: 0x12CEA600 + 5.
    EXPECT_NE(lines.find("*D12CEA605"), std::string::npos) << lines;
}

TEST(RateCommand, TheAnswerComesAtTheOldRateAndAllElseAtTheNew) {
    Conversation talk(Model::LTidal, {.baud = 4800});
    talk.instrument->Receive("BAUD,9600\r", 0ms);
    // 11 bytes of echo and 17 of answer with CR LF, 480 a second: 58.3 ms.
    EXPECT_EQ(talk.instrument->TakeOutput(50ms), "BAUD,9600\r\nBaud rate: 96");
    EXPECT_EQ(talk.instrument->BaudRate(), 4800);
    EXPECT_EQ(talk.instrument->TakeOutput(60ms), "00\r\n");
    EXPECT_EQ(talk.instrument->SentRate(), 4800);
    EXPECT_EQ(talk.instrument->BaudRate(), 9600);
    talk.instrument->Receive("VER\r", 100ms);
    EXPECT_EQ(talk.instrument->TakeOutput(130ms), "VER\r\nFirmware version 1.85\r\n");
    EXPECT_EQ(talk.instrument->SentRate(), 9600);
}

TEST(RateCommand, BytesOfTwoRatesNeverComeTogether) {
    Conversation talk(Model::LTidal, {.baud = 4800});
    talk.instrument->Receive("BAUD 115200\r", 0ms);
    talk.instrument->Receive("VER\r", 200ms);
    EXPECT_EQ(talk.instrument->TakeOutput(1s), "BAUD 115200\r\nBaud rate: 115200\r\n");
    EXPECT_EQ(talk.instrument->SentRate(), 4800);
    EXPECT_EQ(talk.instrument->TakeOutput(1s), "VER\r\nFirmware version 1.85\r\n");
    EXPECT_EQ(talk.instrument->SentRate(), 115200);
}

TEST(RateCommand, KnowsSixRates) {
    for (const char* const rate : {"4800", "9600", "19200", "38400", "57600", "115200"}) {
        Conversation talk(Model::Corvane6);
        EXPECT_EQ(talk.Ask(std::string("BAUD,") + rate), std::string("Baud rate: ") + rate + "\r\n");
        EXPECT_EQ(std::to_string(talk.instrument->BaudRate()), rate);
    }
    Conversation talk(Model::Corvane6);
    EXPECT_EQ(talk.Ask("BAUD"), "Baud rate: 19200\r\n");
    for (const char* const bad : {"BAUD,1200", "BAUD,fast", "BAUD,19201"})
        EXPECT_EQ(talk.Ask(bad), "Value refused\r\n");
}

TEST(OddReplies, ASlowInstrumentAnswersLaterAndListensAfterwards) {
    Conversation talk(Model::Delph2, {.replies = {.delay = 2s}});
    talk.instrument->Receive("VER\rTIME\r", 0ms);
    EXPECT_EQ(talk.Listen(1900ms), "VER\r\n");
    EXPECT_EQ(talk.Listen(1900ms), "Firmware version 1.85\r\nTIME\r\n");
    EXPECT_EQ(talk.Listen(2s), "Time: 07/04/11 09:15:26\r\n");
}

TEST(OddReplies, ASlowInstrumentSamplesOnUntilItStops) {
    Conversation talk(Model::Delph2,
                      {.samplesPerSecond = 0.8, .startCountdown = 0, .replies = {.delay = 3s}});
    talk.Ask("START", 8s);
    talk.AskWithEcho("STOP\r", 10s);
    EXPECT_FALSE(talk.instrument->Sampling());
    // It starts 3 s after it was told to and stops at 11 s: at 3, 4.25, 5.5, 6.75, 8, 9.25 and 10.5 s.
    EXPECT_EQ(talk.instrument->SampleCount(), 7);
}

TEST(OddReplies, AMuteInstrumentSaysNothingAtAll) {
    Conversation talk(Model::Delph2, {.replies = {.mute = true}});
    EXPECT_EQ(talk.AskWithEcho("ID\rSTART\r", 60s), "");
}

TEST(OddReplies, OneCommandMayStayUnanswered) {
    Conversation talk(Model::Corvane6, {.replies = {.silentTo = "GCF"}});
    EXPECT_EQ(talk.Ask("gcf"), "");
    EXPECT_EQ(talk.Ask("VER"), "Firmware version 1.85\r\n");
}

TEST(OddReplies, AnswersAreCutAtAnyLine) {
    Conversation whole(Model::Corvane6);
    const std::string full = whole.Ask("ID");
    std::size_t end = 0;
    for (int lines = 0; lines <= 9; ++lines) {
        Conversation talk(Model::Corvane6, {.replies = {.cutAfterLines = lines}});
        EXPECT_EQ(talk.Ask("ID"), full.substr(0, end)) << lines;
        EXPECT_EQ(talk.Ask("VER").empty(), lines == 0);  // each answer is counted by itself
        end = full.find("\r\n", end) + 2;
    }
}

TEST(Babble, OfAnyBytesLeavesAnInstrumentThatCanBeTalkedTo) {
    constexpr std::array<std::string_view, 12> kWords{"ccl,",     "GCF,*",    "cof,1,",  "LOG,",
                                                      "fl",       "TIME,",    "DUMPCFG", "DOWNLOAD,1",
                                                      "shutter,", "CLEARLOG", "PERIOD",  "DELCAST,"};
    for (int model = 0; model < kModelCount; ++model) {
        Conversation talk(static_cast<Model>(model));
        Random random(static_cast<std::uint64_t>(model) + 1);
        for (int i = 0; i < 3000; ++i) {
            std::string line(kWords[random.Below(kWords.size())]);
            for (auto more = random.Below(30); more > 0; --more)
                line += random.Below(3) == 0 ? static_cast<char>(random.Below(256))
                                             : "0123456789,-.E"[random.Below(14)];
            talk.AskWithEcho(line + "\r", 50ms);
        }
        talk.AskWithEcho("\x18\x18\x03\r", 200s);
        talk.AskWithEcho("STOP\r", 10s);
        talk.AskWithEcho("ECHOON\r", 10s);
        EXPECT_EQ(talk.Ask("VER"), "Firmware version 1.85\r\n") << model;
    }
}

TEST(OddReplies, LinesComeTwice) {
    Conversation talk(Model::LTidal, {.replies = {.doubledLines = true}});
    EXPECT_EQ(talk.Ask("VER"), "Firmware version 1.85\r\nFirmware version 1.85\r\n");
}

}  // namespace
}  // namespace marisonde::simulator
