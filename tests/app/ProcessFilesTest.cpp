#include <gtest/gtest.h>
#include <map>
#include <optional>

#include "app/ProcessFiles.h"
#include "decode/Lines.h"
#include "platform/Operations.h"
#include "simulator/Instrument.h"
#include "support/ScriptedDialogs.h"
#include "support/TestFolder.h"

namespace marisonde {
namespace {

using Outcome = ConversionResult::Outcome;
const std::string kLine = lines::WithChecksum(lines::kSample) + "\r\n";

class ProcessFilesTest : public testing::Test {
  protected:
    ProcessFilesTest()
        : pump(clock), operations(pump, [](const std::string&, const std::string& why) { FAIL() << why; }) {
        sigma.aStarValue = 0.05;
        TestFolder::Write(folder / "x.cal", simulator::MakeInstrument(simulator::Model::Corvane6)->CalText());
        choice.sourceFolder = folder / "in";
        choice.datFolder = folder / "out";
        choice.calFile = folder / "x.cal";
        for (const char* name : {"a.raw", "b.raw", "c.raw"}) {
            choice.selected.emplace_back(name);
            TestFolder::Write(folder / "in" / name, kLine);
        }
        std::filesystem::create_directory(folder / "out");
        host.fileDone = [this](std::size_t file, const ConversionResult& result) {
            done[file] = result.outcome;
        };
        host.progress = [this](const BatchProgress& at) { progress.push_back(at); };
        host.stop = [this] { return stopBefore >= 0 && done.size() >= static_cast<std::size_t>(stopBefore); };
    }
    void Start() {
        operations.Start("Process", [this](Operation& operation) -> QCoro::Task<> {
            const bool all = co_await ProcessFiles(operation, choice, stamp, sigma, water, host);
            result = all;
        });
    }
    void Turn(int turns) {
        for (int i = 0; i < turns && !result; ++i) {
            clock.AdvanceBy(Millis(50));
            pump.ResumeReady();
        }
    }
    std::set<std::string> Out() { return TestFolder::Names(folder / "out"); }
    /// A file that needs two slices: 200 steps of 300 lines are one.
    void WriteLong(const char* name) {
        std::string text;
        for (int i = 0; i < 70000; ++i) text += kLine;
        TestFolder::Write(folder / "in" / name, text);
    }

    TestFolder folder;
    VirtualClock clock;
    ScriptedDialogs dialogs;
    Pump pump;
    SigmaParams sigma;
    PureWaterParams water = DefaultPureWaterParams();
    ProcessFilesChoice choice;
    HeaderStamp stamp;
    std::map<std::size_t, Outcome> done;
    std::vector<BatchProgress> progress;
    int stopBefore = -1;
    BatchHost host{clock, dialogs, {}, {}, {}};
    std::optional<bool> result;
    Operations operations;
};

TEST_F(ProcessFilesTest, EveryFileBecomesOneBesideOrApart) {
    Start();
    Turn(5);
    EXPECT_EQ(result, true);
    EXPECT_EQ(Out(), (std::set<std::string>{"a.dat", "b.dat", "c.dat"}));
    EXPECT_EQ(done, (std::map<std::size_t, Outcome>{
                        {0, Outcome::Written}, {1, Outcome::Written}, {2, Outcome::Written}}));
    EXPECT_TRUE(dialogs.asked.empty());
    choice.saveToSource = choice.decimal = true;
    choice.calFile.clear();
    result.reset();
    Start();
    Turn(5);
    EXPECT_EQ(TestFolder::Names(folder / "in"),
              (std::set<std::string>{"a.raw", "b.raw", "c.raw", "a.dec", "b.dec", "c.dec"}));
}

/// The form keeps the name of a calibration while it converts into raw numbers; that file may be gone.
TEST_F(ProcessFilesTest, RawNumbersAskForNoCalibration) {
    choice.decimal = true;
    choice.calFile = folder / "gone.cal";
    Start();
    Turn(5);
    EXPECT_EQ(result, true);
    EXPECT_EQ(Out(), (std::set<std::string>{"a.dec", "b.dec", "c.dec"}));
    EXPECT_TRUE(dialogs.errors.empty());
}

TEST_F(ProcessFilesTest, AllFilesAreConvertedWithTheParametersOfTheBegin) {
    WriteLong("a.raw");
    sigma.C = 0.25;
    water.gammaLambda = 4.5F;
    Start();
    ASSERT_FALSE(result);
    sigma.C = 0.5;
    water.gammaLambda = 4.25F;
    Turn(5);
    EXPECT_EQ(result, true);
    const std::string text = TestFolder::Read(folder / "out/c.dat");
    EXPECT_NE(text.find("\r\nC=0.25\r\n"), std::string::npos);
    EXPECT_NE(text.find("\r\ngammaLambda=4.5\r\n"), std::string::npos);
}

TEST_F(ProcessFilesTest, WhatStandsAgainstItIsShownAndNothingIsDone) {
    choice.selected.clear();
    Start();
    Turn(1);
    EXPECT_EQ(result, false);
    EXPECT_EQ(dialogs.notices,
              std::vector<std::string>{
                  "You must select some files from the list to specify those you wish to process."});
    EXPECT_TRUE(Out().empty());
}

TEST_F(ProcessFilesTest, WhatTheCalibrationMissesIsToldOnce) {
    sigma.aStarValue = kSentinel;  // a table, and none is there
    CalibrationDataClass cal;
    const std::vector<std::string> missing = cal.LoadSourceFile(choice.calFile, sigma, water).messages;
    ASSERT_FALSE(missing.empty());
    Start();
    Turn(5);
    EXPECT_EQ(dialogs.errors, missing);
    EXPECT_EQ(result, true);
}

TEST_F(ProcessFilesTest, CancelOfTheQuestionStopsBeforeAnyWork) {
    TestFolder::Write(folder / "out/b.dat", "older");
    dialogs.answers = {Choice::Second};
    Start();
    Turn(2);
    EXPECT_EQ(result, false);
    EXPECT_EQ(
        dialogs.asked.at(0).message,
        "1 of the 3 files you selected will overwrite existing data files. Do you wish to overwrite them?");
    EXPECT_EQ(Out(), std::set<std::string>{"b.dat"});
    EXPECT_EQ(TestFolder::Read(folder / "out/b.dat"), "older");
}

TEST_F(ProcessFilesTest, OverwriteReplaces) {
    TestFolder::Write(folder / "out/b.dat", "older");
    dialogs.answers = {Choice::First};
    Start();
    Turn(2);
    EXPECT_EQ(result, true);
    EXPECT_NE(TestFolder::Read(folder / "out/b.dat"), "older");
}

TEST_F(ProcessFilesTest, AFailedFileIsReportedAndTheOthersGoOn) {
    std::filesystem::remove(folder / "in/b.raw");
    Start();
    Turn(5);
    EXPECT_EQ(result, true);
    EXPECT_EQ(Out(), (std::set<std::string>{"a.dat", "c.dat"}));
    EXPECT_EQ(done[1], Outcome::Failed);
    EXPECT_EQ(dialogs.errors, std::vector<std::string>{"Error opening " + (folder / "in/b.raw").string() +
                                                       ": No such file or directory"});
}

TEST_F(ProcessFilesTest, StopFinishesTheFileAtWork) {
    WriteLong("a.raw");
    stopBefore = 1;
    Start();
    EXPECT_FALSE(result);
    Turn(5);
    EXPECT_EQ(result, false);
    EXPECT_EQ(Out(), std::set<std::string>{"a.dat"});
    EXPECT_EQ(done[0], Outcome::Written);
}

TEST_F(ProcessFilesTest, TheProgramLivesOnMeanwhileAndAClosedFormLeavesNoHalfOfAFile) {
    WriteLong("b.raw");
    Start();
    EXPECT_FALSE(result);
    // The start of a, the start of b, and b after its first slice of 60000 lines of 62 bytes.
    ASSERT_EQ(progress.size(), 3U);
    EXPECT_EQ(progress[2].file, 1U);
    EXPECT_EQ(progress[2].files, 3U);
    EXPECT_EQ(progress[2].within.done, 60000U * 62);
    operations.CancelAll();
    Turn(2);
    EXPECT_EQ(result, false);
    EXPECT_EQ(Out(), std::set<std::string>{"a.dat"});
    EXPECT_EQ(done.size(), 1U);
}

}  // namespace
}  // namespace marisonde
