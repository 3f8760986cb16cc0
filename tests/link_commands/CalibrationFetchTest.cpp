#include <filesystem>
#include <fstream>
#include <iterator>
#include <tuple>

#include "FetchBench.h"

namespace marisonde {
namespace {

// --- file store ----------------------------------------------------------------------------------------

TEST_F(FetchBench, TheFileStoreGivesItsWholeFile) {
    Use(InstTypeCode::Delph4);
    state.FirmwareVersion = "1.85";
    replies["sendcal"] = DelphFile();
    std::vector<std::pair<std::string, std::string>> progress;
    request.onProgress = [&](const std::string& title, const std::string& text) {
        progress.emplace_back(title, text);
    };
    window.CalData.Label = "of another instrument";
    Begin(LoadCalMultiC);
    EXPECT_EQ(state.CurrentCommand, "MULTICCAL");
    EXPECT_EQ(window.CalData.Label, "");
    ASSERT_TRUE(Finish());
    EXPECT_EQ(outcome, FetchOutcome::Arrived);
    EXPECT_EQ(window.CalData.InstType, InstTypeCode::Delph4);
    EXPECT_EQ(window.CalData.Serial, "D4080102");
    EXPECT_EQ(window.CalData.Attenuation(0).KLambda, 532);
    ASSERT_EQ(progress.size(), 1u);
    EXPECT_EQ(progress[0].first, " Loading Calibration");
    EXPECT_EQ(progress[0].second, "Loading calibration");
    ExpectTidy();
}

TEST_F(FetchBench, ACalibrationOf260LinesArrivesWhole) {
    Use(InstTypeCode::Corvane6);
    Lines file{"[General]", "DeviceType=Corvane-6", "Serial=CV060412"};
    for (int n = 1; n <= 8; ++n) {
        file.push_back("[Channel " + std::to_string(n) + "]");
        for (int k = 1; k <= 29; ++k) file.push_back("Spare" + std::to_string(k) + "=1");
        file.push_back("FlOffset5=" + std::to_string(100 + n));
    }
    file.emplace_back("[End]");
    replies["sendcal"] = file;
    Begin(LoadCalMultiC);
    ASSERT_TRUE(Finish());
    EXPECT_EQ(outcome, FetchOutcome::Arrived);
    for (int n = 1; n <= 8; ++n) EXPECT_EQ(window.CalData.Channel(n - 1).FlOffset[5], 100 + n);
    ExpectTidy();
}

TEST_F(FetchBench, AFileOfAnotherFamilyIsNotTaken) {
    Use(InstTypeCode::Delph4);
    replies["sendcal"] = TidalFile();
    Begin(LoadCalMultiC);
    ASSERT_TRUE(Finish());
    EXPECT_EQ(outcome, FetchOutcome::Damaged);
    ExpectTidy();
}

TEST_F(FetchBench, AFileWithImpossibleCharactersIsNotTaken) {
    Use(InstTypeCode::Delph4);
    replies["sendcal"] = DelphFile();
    replies["sendcal"][7] = "L=0.2\x15";
    Begin(LoadCalMultiC);
    ASSERT_TRUE(Finish());
    EXPECT_EQ(outcome, FetchOutcome::Damaged);
    ExpectTidy();
}

// --- channel by channel --------------------------------------------------------------------------------

TEST_F(FetchBench, ACorvane6GivesEightChannelsAndItsVirtualOnesAreInferred) {
    UseCorvane6();
    Lines texts;
    request.onProgress = [&](const std::string&, const std::string& text) { texts.push_back(text); };
    Begin(LoadCalGcfCcl);
    ASSERT_TRUE(Finish());
    EXPECT_EQ(outcome, FetchOutcome::Arrived);
    EXPECT_EQ(commands,
              (Lines{"GCF", "CCL,1", "CCL,2", "CCL,3", "CCL,4", "CCL,5", "CCL,6", "CCL,7", "CCL,8"}));
    EXPECT_EQ(texts[0], "Checking global data");
    EXPECT_EQ(texts[1], " Loading channel 1");
    EXPECT_EQ(texts[8], " Loading channel 8");
    EXPECT_EQ(window.CalData.Channel(7).name, "fl510");
    EXPECT_EQ(window.CalData.Channel(7).DarkOffset[5], 11);
    // bb510 and fl510 (channels 2 and 8) share a wavelength, and so do bb685 and fl685 (4 and 7).
    EXPECT_EQ(window.CalData.Channel(1).ChEx, 1);
    EXPECT_EQ(window.CalData.Channel(1).ChRep, 8);
    EXPECT_EQ(window.CalData.Channel(7).ChEx, 2);
    EXPECT_EQ(window.CalData.Channel(3).ChEx, 3);
    EXPECT_EQ(window.CalData.Channel(3).ChRep, 7);
    EXPECT_EQ(window.CalData.Channel(6).ChEx, 4);
    EXPECT_EQ(window.CalData.ChangedItems, 0);
    ExpectTidy();
}

TEST_F(FetchBench, TheSmallerCorvanesAreAskedForTheirFactorsToo) {
    for (const auto& [type, wire, count] :
         {std::tuple{InstTypeCode::Corvane4, "CV4", 4}, std::tuple{InstTypeCode::Corvane2, "CV2", 3}}) {
        Use(type);
        commands.clear();
        replies.clear();
        replies["GCF"] = {std::string("Model: ") + wire, "Cal Time: 01/03/09 17:05:00"};
        Lines expected{"GCF"};
        for (int n = 1; n <= count; ++n) {
            const std::string number = std::to_string(n);
            replies["CCL," + number] = Channel(n, "bb532");
            replies["CCF," + number] = {"'Channel " + number + " (bb532)", "' deltaLambda: 2" + number,
                                        "' ChEx: 0", "' ChRep: 0"};
            expected.push_back("CCL," + number);
            expected.push_back("CCF," + number);
        }
        Begin(LoadCalGcfCcl);
        ASSERT_TRUE(Finish());
        EXPECT_EQ(outcome, FetchOutcome::Arrived);
        EXPECT_EQ(commands, expected);
        EXPECT_EQ(window.CalData.Channel(count - 1).bDeltaLambda, 20 + count);
        ExpectTidy();
    }
}

TEST_F(FetchBench, AnotherModelOfTheFamilyIsNotTaken) {
    UseCorvane6();
    replies["GCF"][0] = "Model: CV4";
    Begin(LoadCalGcfCcl);
    ASSERT_TRUE(Finish());
    EXPECT_EQ(outcome, FetchOutcome::Damaged);
    ExpectTidy();
}

TEST_F(FetchBench, AReplyAboutAnotherChannelIsNotTaken) {
    UseCorvane6();
    replies["CCL,5"][0] = "'Channel 4 (bb550)";
    Begin(LoadCalGcfCcl);
    ASSERT_TRUE(Finish());
    EXPECT_EQ(outcome, FetchOutcome::Damaged);
    ExpectTidy();
}

TEST_F(FetchBench, WithoutAnAnswerToGcfTheFileStoreIsAskedAfter5Seconds) {
    Use(InstTypeCode::Corvane6);
    replies["sendcal"] = {"[General]", "DeviceType=Corvane-6", "Serial=CV060412", "[End]"};
    Begin(LoadCalGcfCcl);
    TurnFor(4950ms);
    EXPECT_EQ(commands, Lines{"GCF"});
    EXPECT_EQ(state.CurrentCommand, "GCF");
    Turn();
    EXPECT_EQ(state.CurrentCommand, "MULTICCAL");
    ASSERT_TRUE(Finish());
    EXPECT_EQ(outcome, FetchOutcome::Arrived);
    EXPECT_EQ(commands, (Lines{"GCF", "sendcal"}));
    ExpectTidy();
}

TEST_F(FetchBench, AnAnswerToGcfInTheLastTickOf5SecondsCounts) {
    UseCorvane6();
    const Lines answer = std::exchange(replies["GCF"], {});
    Begin(LoadCalGcfCcl);
    TurnFor(4900ms);
    Say(answer);
    Turn();
    EXPECT_TRUE(state.GotGcfReply);
    ASSERT_TRUE(Finish());
    EXPECT_EQ(outcome, FetchOutcome::Arrived);
}

TEST_F(FetchBench, ACalibrationReadForComparisonLeavesTheWindowAlone) {
    UseCorvane6();
    state.CalReady = true;
    window.CalData.Label = "mine";
    const CalibrationDataClass mine = window.CalData;
    CalibrationDataClass other;
    request.target = &other;
    request.comparing = true;
    Lines texts;
    request.onProgress = [&](const std::string&, const std::string& text) { texts.push_back(text); };
    Begin(LoadCalGcfCcl);
    ASSERT_TRUE(Finish());
    EXPECT_EQ(outcome, FetchOutcome::Arrived);
    EXPECT_EQ(texts[1], " Checking channel 1");
    EXPECT_EQ(other.Serial, "CV060412");
    EXPECT_EQ(other.Channel(0).name, "bb420");
    EXPECT_TRUE(window.CalData == mine);
    EXPECT_TRUE(state.CalReady);
    EXPECT_EQ(window.ReplyCalData, nullptr);
}

// --- Tidal dump ----------------------------------------------------------------------------------------

TEST_F(FetchBench, ATidalGivesItsImage) {
    UseXmodem(Image());
    window.TemporaryFolder = std::filesystem::temp_directory_path();
    Begin(LoadCalDump);
    ASSERT_TRUE(Finish());
    EXPECT_EQ(outcome, FetchOutcome::Arrived);
    EXPECT_EQ(window.CalData.InstType, InstTypeCode::LTidal);
    EXPECT_EQ(window.CalData.Serial, "LT060407");
    EXPECT_FLOAT_EQ(window.CalData.MaxDepth, 40);
    ExpectTidy();
    EXPECT_EQ(Sent(), "\x06power1\r");  // the end of the transfer is acknowledged before
    std::ifstream file(window.TemporaryFolder / "temp.bin", std::ios::binary);
    EXPECT_EQ((std::string{std::istreambuf_iterator<char>(file), {}}), Image());
    file.close();
    std::filesystem::remove(window.TemporaryFolder / "temp.bin");
}

TEST_F(FetchBench, AnImageThatCannotBeKeptIsUsedAllTheSame) {
    UseXmodem(Image());
    window.TemporaryFolder = "/no/such/folder";
    Lines errors;
    window.OnError = [&](std::string text) { errors.push_back(std::move(text)); };
    Begin(LoadCalDump);
    ASSERT_TRUE(Finish());
    EXPECT_EQ(outcome, FetchOutcome::Arrived);
    EXPECT_EQ(errors.size(), 1u);
}

TEST_F(FetchBench, AnImageOfNoKnownModelIsNotTaken) {
    std::string image = Image();
    image[0] = '\xB0';
    UseXmodem(image);
    Begin(LoadCalDump);
    ASSERT_TRUE(Finish());
    EXPECT_EQ(outcome, FetchOutcome::Damaged);
    ExpectTidy();
}

TEST_F(FetchBench, ATidalMayAnswerWithTextAfterItsEcho) {
    Use(InstTypeCode::LTidal);
    replies["DUMPCFG"] = TidalFile();
    Begin(LoadCalDump);
    ASSERT_TRUE(Finish());
    EXPECT_EQ(outcome, FetchOutcome::Arrived);
    EXPECT_DOUBLE_EQ(window.CalData.Channel(0).Mu, 3.5);
    EXPECT_EQ(window.CalData.Channel(0).name, "bb(660)");
    EXPECT_EQ(window.CalData.Channel(1).name, "a(510)");
    ExpectTidy();
}

TEST_F(FetchBench, ATidalMayAnswerWithTextLater) {
    Use(InstTypeCode::LTidal);
    replies["DUMPCFG"] = {};
    Begin(LoadCalDump);
    TurnFor(4s);
    ASSERT_TRUE(state.DumpActive);
    for (const std::string& text : TidalFile()) {  // in pieces that do not keep to lines
        line->Queue(text.substr(0, 3));
        Turn();
        line->Queue(text.substr(3) + "\r\n");
        Turn();
    }
    ASSERT_TRUE(Finish());
    EXPECT_EQ(outcome, FetchOutcome::Arrived);
    EXPECT_DOUBLE_EQ(window.CalData.Channel(0).Mu, 3.5);
    EXPECT_EQ(window.CalData.Serial, "LT040712");
    ExpectTidy();
}

TEST_F(FetchBench, TheImageIsAskedForEvery3SecondsUntilSilenceEndsIt) {
    Use(InstTypeCode::LTidal);
    replies["DUMPCFG"] = {};
    Begin(LoadCalDump);
    std::vector<Millis> asked;
    for (int i = 0; i < 400 && !outcome; ++i) {
        Turn();
        const std::string written = line->TakeWritten();
        if (written == "C" && state.DumpActive) asked.push_back(clock.Steady());
        line->Write(written);
    }
    EXPECT_EQ(outcome, FetchOutcome::Silent);
    ASSERT_EQ(asked.size(), 4u);  // at once, and after 3, 6 and 9 s
    for (std::size_t i = 1; i < asked.size(); ++i) EXPECT_EQ(asked[i] - asked[i - 1], 3s);
    ExpectTidy();
}

}  // namespace
}  // namespace marisonde
