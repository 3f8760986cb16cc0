// Calibrations that hosts store: as a file, as an image. What is fetched afterwards is what was stored.
#include "simulator/Conversation.h"
#include "simulator/Tidal.h"

namespace marisonde::simulator {
namespace {

using namespace std::chrono_literals;

const std::string kFile = Lines({"[General]", "DeviceType=Delph-2", "Serial=D2070811", "[End]"});

/// Types a file as hosts do: each line behind a CR, the character 3 at the end.
std::string Capture(Conversation& talk, const std::vector<std::string>& lines) {
    std::string text = talk.AskWithEcho("\rcapture tmp.tmp");
    for (const std::string& line : lines) text += talk.AskWithEcho("\r" + line, 300ms);
    return text + talk.AskWithEcho("\x03");
}

const std::vector<std::string> kLines{"[General]", "DeviceType=Delph-2", "", "Serial=D2070811", "[End]"};

TEST(FileStore, ACapturedFileTakesThePlaceOfTheCalibration) {
    Conversation talk(Model::Delph2);
    EXPECT_TRUE(Capture(talk, kLines).ends_with("[End]\r\n4 lines captured\r\n"));
    EXPECT_NE(talk.Ask("sendcal"), kFile);
    EXPECT_EQ(talk.AskWithEcho("\r\\ del cal.cal\r"), "\r\n\\ del cal.cal\r\nDone\r\n");
    EXPECT_EQ(talk.Ask("\\ ren tmp.tmp cal.cal"), "Done\r\n");
    EXPECT_EQ(talk.Ask("sendcal"), kFile);
    EXPECT_EQ(talk.Ask("MAKEINI"), kFile);
    talk.instrument->Restart(talk.now);
    EXPECT_EQ(talk.Ask("SENDCAL"), kFile);
}

TEST(FileStore, LinesMayEndInCrOrBeginWithIt) {
    Conversation talk(Model::Corvane6);
    talk.Ask("capture TMP.tmp");
    for (const std::string& line : kLines) talk.Ask(line, 300ms);
    EXPECT_EQ(talk.AskWithEcho("\x03"), "\r\n4 lines captured\r\n");
    talk.Ask("\\ del cal.cal");
    talk.Ask("\\ ren tmp.tmp CAL.CAL");
    EXPECT_EQ(talk.Ask("sendcal"), kFile);
}

TEST(FileStore, AnInterruptedCaptureLeavesTheCalibration) {
    Conversation talk(Model::Delph4);
    const std::string before = talk.Ask("sendcal", 10s);
    Capture(talk, {"[General]", "DeviceType=Del"});
    EXPECT_EQ(talk.Ask("sendcal", 10s), before);
    // Nor does a file that is still being typed when power goes off.
    talk.Ask("capture cal.cal");
    talk.Ask("[General]");
    talk.instrument->Restart(talk.now);
    EXPECT_EQ(talk.Ask("sendcal", 10s), before);
}

TEST(FileStore, NeedsAFreeNameAndAFile) {
    Conversation talk(Model::Delph2);
    Capture(talk, kLines);
    EXPECT_EQ(talk.Ask("\\ ren tmp.tmp cal.cal"), "File not found\r\n");  // cal.cal is still there
    EXPECT_EQ(talk.Ask("\\ del cal.cal"), "Done\r\n");
    EXPECT_EQ(talk.Ask("sendcal"), "File not found\r\n");
    EXPECT_EQ(talk.Ask("\\ del other.cal"), "File not found\r\n");
    EXPECT_EQ(talk.Ask("\\ format"), "Unknown command\r\n");
    EXPECT_EQ(talk.Ask("capture"), "Value refused\r\n");
    Conversation tidal(Model::LTidal);
    EXPECT_EQ(tidal.Ask("capture tmp.tmp"), "Unknown command\r\n");
    Conversation old(Model::Corvane4, {.calStore = CalStore::Channels});
    EXPECT_EQ(old.Ask("\\ del cal.cal"), "Unknown command\r\n");
}

TEST(FileStore, StoredChannelsAreInTheFileAgain) {
    Conversation talk(Model::Corvane2);
    Capture(talk, kLines);
    talk.Ask("\\ del cal.cal");
    talk.Ask("\\ ren tmp.tmp cal.cal");
    EXPECT_EQ(talk.Ask("sendcal"), kFile);
    talk.Ask("ccl,1,0.5");
    talk.Ask("STORECCL");
    EXPECT_NE(talk.Ask("sendcal", 10s).find("Mu=0.5\r\n"), std::string::npos);
}

/// The image of an n-Tidal with another Mu and serial than its own: NT030102.
std::string OtherImage(Model model = Model::NTidal) {
    TidalCalibration cal = TidalCalibrationOf(model);
    cal.Mu = 3.25e-5;
    cal.sigma.exponent = 0.15;
    ModelInfo info = InfoOf(model);
    info.serial = model == Model::LTidal ? "LT030102" : "NT030102";
    return TidalCalImage(cal, info, "300", 1305882922);
}

/// LOADCFG up to the first "C".
std::string BeginLoad(Conversation& talk) {
    return talk.AskWithEcho("LOADCFG\r", 1s);
}

TEST(ImageStore, ABlockIsAcknowledgedSavedAndGivenBack) {
    Conversation talk(Model::NTidal);
    EXPECT_EQ(BeginLoad(talk), "LOADCFG\r\nC");
    EXPECT_EQ(talk.AskWithEcho(FrameOf(OtherImage()), 500ms), "\x06");
    EXPECT_EQ(talk.AskWithEcho("\x04"),
              "\x06"
              "Data saved\r\n");
    for (int time = 0; time < 2; ++time) {
        EXPECT_EQ(talk.AskWithEcho("DUMPCFG\r", 200ms), "DUMPCFG\r\n");
        EXPECT_EQ(talk.AskWithEcho("C", 500ms), FrameOf(OtherImage()));
        EXPECT_EQ(talk.AskWithEcho("\x06", 500ms), "\x04");
        EXPECT_EQ(talk.AskWithEcho("\x06", 500ms), "");
        talk.instrument->Restart(talk.now);
    }
    const std::string text = talk.instrument->CalText();
    for (const char* const line :
         {"Serial=NT030102\r\n", "Config=300\r\n", "Mu=3.25E-05\r\n", "SigmaExp=0.15\r\n"})
        EXPECT_NE(text.find(line), std::string::npos) << line;
}

TEST(ImageStore, AnImageHoldsWhatItsTextSays) {
    for (const Model model : {Model::LTidal, Model::NTidal}) {
        TidalImageContent content{TidalCalibrationOf(model), std::string(InfoOf(model).serial), "257",
                                  1305882922};
        const std::string text = TidalCalText(content, InfoOf(model));
        TidalImageContent read = content;
        read.serial = read.config = "";
        read.cal.Mu = read.cal.pathM = 0;
        read.cal.kTempCoeff = {};
        ASSERT_TRUE(
            ReadTidalImage(TidalCalImage(content.cal, InfoOf(model), "257", 1305882922), model, read));
        EXPECT_EQ(read.serial, content.serial);
        EXPECT_EQ(read.config, "257");
        EXPECT_EQ(read.calibratedAt, 1305882922);
        EXPECT_EQ(read.cal.dark, content.cal.dark);
        EXPECT_EQ(read.cal.dark24, content.cal.dark24);
        EXPECT_EQ(read.cal.pure24, content.cal.pure24);
        EXPECT_EQ(read.cal.depthThreshold, content.cal.depthThreshold);
        EXPECT_EQ(read.cal.kLambdaNm, content.cal.kLambdaNm);
        // Packed decimals hold 12 bits.
        EXPECT_NEAR(read.cal.Mu / content.cal.Mu, 1, 1e-3);
        EXPECT_NEAR(read.cal.gains[4] / content.cal.gains[4], 1, 1e-3);
        EXPECT_NEAR(read.cal.pathM, content.cal.pathM, 1e-9);
        EXPECT_NEAR(read.cal.depthCoeff1, content.cal.depthCoeff1, 1.0 / 20000);
        for (std::size_t i = 0; i < 6; ++i)
            EXPECT_EQ(static_cast<float>(read.cal.kTempCoeff[i]),
                      static_cast<float>(content.cal.kTempCoeff[i]));
    }
}

TEST(ImageStore, ADamagedBlockIsRefusedAndMayComeAgain) {
    Conversation talk(Model::NTidal);
    BeginLoad(talk);
    std::string spoiled = FrameOf(OtherImage());
    spoiled[60] = static_cast<char>(spoiled[60] ^ 4);
    EXPECT_EQ(talk.AskWithEcho(spoiled, 500ms), "\x15");
    EXPECT_EQ(talk.AskWithEcho(FrameOf(OtherImage()), 500ms), "\x06");
    // An acknowledgement that was lost on its way.
    EXPECT_EQ(talk.AskWithEcho(FrameOf(OtherImage()), 500ms), "\x06");
    EXPECT_EQ(talk.AskWithEcho("\x04"),
              "\x06"
              "Data saved\r\n");
}

TEST(ImageStore, ABlockThatStopsInItsMidstIsRefused) {
    Conversation talk(Model::NTidal);
    BeginLoad(talk);
    EXPECT_EQ(talk.AskWithEcho(FrameOf(OtherImage()).substr(0, 132), 900ms), "");
    EXPECT_EQ(talk.Listen(500ms), "\x15");
}

TEST(ImageStore, AnImageOfAnotherModelIsNotSaved) {
    Conversation talk(Model::LTidal);
    const std::string before = talk.instrument->CalText();
    BeginLoad(talk);
    talk.AskWithEcho(FrameOf(OtherImage(Model::NTidal)), 500ms);
    EXPECT_EQ(talk.AskWithEcho("\x04"),
              "\x06"
              "Data not saved\r\n");
    EXPECT_EQ(talk.instrument->CalText(), before);
}

TEST(ImageStore, NothingIsSavedWhenNoBlockComesOrTheHostCancels) {
    Conversation talk(Model::NTidal);
    BeginLoad(talk);
    // The first request and nine more, 3 s apart.
    EXPECT_EQ(talk.Listen(29s), std::string(9, 'C'));
    EXPECT_EQ(talk.Listen(5s),
              "\x18\x18"
              "Data not saved\r\n");
    BeginLoad(talk);
    EXPECT_EQ(talk.AskWithEcho("\x18"), "Data not saved\r\n");
    EXPECT_EQ(talk.Ask("VER"), "Firmware version 1.85\r\n");
    Conversation corvane(Model::Corvane6);
    EXPECT_EQ(corvane.Ask("LOADCFG"), "Unknown command\r\n");
}

TEST(ImageStore, AnXTidalTellsItAsText) {
    Conversation talk(Model::XTidal);
    BeginLoad(talk);
    talk.AskWithEcho(FrameOf(OtherImage()), 500ms);
    EXPECT_EQ(talk.AskWithEcho("\x04"),
              "\x06"
              "Data saved\r\n");
    EXPECT_NE(talk.Ask("DUMPCFG", 10s).find("Mu=3.25E-05\r\n"), std::string::npos);
}

}  // namespace
}  // namespace marisonde::simulator
