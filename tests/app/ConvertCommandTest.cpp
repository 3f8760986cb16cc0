#include <gtest/gtest.h>

#include "app/BatchConversion.h"
#include "app/ConvertCommand.h"
#include "calibration/CalibrationDataClass.h"
#include "common/ConversionUtils.h"
#include "decode/Lines.h"
#include "simulator/Instrument.h"
#include "support/ShareFolder.h"
#include "support/TestFolder.h"

namespace marisonde {
namespace {

namespace fs = std::filesystem;
using namespace lines;

const std::string kLine = WithChecksum(kSample) + "\r\n";

class ConvertCommandTest : public testing::Test {
  protected:
    ConvertCommandTest() {
        console.out = [this](std::string_view text) { out += text; };
        console.error = [this](std::string_view text) { error += text; };
        settings = LoadConvertSettings(stored, folder.Path(), ShareFolder(), 40000);
        TestFolder::Write(Cal(), simulator::MakeInstrument(simulator::Model::Corvane6)->CalText());
        TestFolder::Write(Raw(), kLine);
    }
    [[nodiscard]] fs::path Cal() const { return folder / "instrument.cal"; }
    [[nodiscard]] fs::path Raw() const { return folder / "cast.raw"; }
    [[nodiscard]] std::string Pair() const { return Raw().string() + ";" + Cal().string(); }
    int Convert(std::vector<std::string> arguments) {
        out.clear();
        error.clear();
        arguments.insert(arguments.begin(), "convert");
        const CommandLine line = ParseCommandLine(arguments);
        EXPECT_EQ(line.mode, CommandLine::Mode::ConvertFiles) << line.message;
        return ConvertFiles(line, settings, console);
    }
    [[nodiscard]] bool Has(const char* name) const { return fs::exists(folder / name); }
    [[nodiscard]] std::size_t FilesThere() const { return TestFolder::Names(folder.Path()).size(); }

    TestFolder folder;
    MapSettings stored;
    ConvertSettings settings;
    Console console;
    std::string out;
    std::string error;
};

TEST_F(ConvertCommandTest, APairIsConvertedWithoutAWord) {
    EXPECT_EQ(ConvertPair(Pair(), settings, console), 0);
    EXPECT_EQ(out + error, "");
    const std::string text = TestFolder::Read(folder / "cast.dat");
    EXPECT_NE(text.find("CalSource=" + Cal().string() + "\r\n"), std::string::npos);
    EXPECT_NE(text.find("\r\n[Data]\r\n39817.50361111111,"), std::string::npos);
}

TEST_F(ConvertCommandTest, QuotesAndBlanksAroundTheNames) {
    fs::rename(Raw(), folder / "my cast.raw");
    const std::string pair = " \"" + (folder / "my cast.raw").string() + "\" ; \"" + Cal().string() + "\" ";
    EXPECT_EQ(ConvertPair(pair, settings, console), 0);
    EXPECT_TRUE(Has("my cast.dat"));
}

TEST_F(ConvertCommandTest, AMissingFileEndsItSilently) {
    const std::string missing = (folder / "nothing").string();
    for (const std::string& pair :
         {missing + ";" + Cal().string(), Raw().string() + ";" + missing, Raw().string() + ";",
          ";" + Cal().string(), missing, std::string(";"), std::string()}) {
        EXPECT_NE(ConvertPair(pair, settings, console), 0) << pair;
    }
    EXPECT_EQ(out + error, "");
    EXPECT_EQ(FilesThere(), 2U);
}

TEST_F(ConvertCommandTest, ACalibrationThatIsNoneIsTold) {
    TestFolder::Write(Cal(), "words\r\n");
    EXPECT_NE(ConvertPair(Pair(), settings, console), 0);
    EXPECT_EQ(error,
              "marisonde: Cannot proceed, because the specified calibration file does not exist or is of an "
              "unknown type.\n");
    EXPECT_EQ(FilesThere(), 2U);
}

TEST_F(ConvertCommandTest, ADataFileAloneUsesTheCalibrationUsedLast) {
    EXPECT_NE(ConvertPair(Raw().string(), settings, console), 0);
    settings.calFile = (folder / "gone.cal").string();
    EXPECT_NE(ConvertPair(Raw().string(), settings, console), 0);
    EXPECT_EQ(FilesThere(), 2U);
    stored.SaveSetting("App", "CalFile", Cal().string());
    settings = LoadConvertSettings(stored, folder.Path(), ShareFolder(), 40000);
    EXPECT_EQ(ConvertPair(Raw().string(), settings, console), 0);
    EXPECT_TRUE(Has("cast.dat"));
    EXPECT_EQ(out + error, "");
}

TEST_F(ConvertCommandTest, APairOverwritesButNeverItsSource) {
    TestFolder::Write(folder / "cast.dat", "older");
    EXPECT_EQ(ConvertPair(Pair(), settings, console), 0);
    const std::string written = TestFolder::Read(folder / "cast.dat");
    EXPECT_NE(written, "older");
    EXPECT_EQ(ConvertPair((folder / "cast.dat").string() + ";" + Cal().string(), settings, console), 1);
    EXPECT_EQ(error, "marisonde: Error opening " + (folder / "cast.dat").string() +
                         ": it is a calibrated file, not a raw one\n");
    EXPECT_EQ(TestFolder::Read(folder / "cast.dat"), written);
}

TEST_F(ConvertCommandTest, TheUsersHeaderAndTheDateStandInTheFile) {
    stored.SaveSetting("App", "UserHeader", "Leg 2");
    settings =
        LoadConvertSettings(stored, folder.Path(), ShareFolder(), DateFromCivil(2011, 7, 4, 9, 15, 22));
    EXPECT_EQ(ConvertPair(Pair(), settings, console), 0);
    const std::string text = TestFolder::Read(folder / "cast.dat");
    EXPECT_TRUE(text.starts_with("[UserHeader]\r\nLeg 2\r\n[Header]\r\n"));
    EXPECT_NE(text.find("CreationDate=07/04/11 09:15:22\r\n"), std::string::npos);
}

TEST_F(ConvertCommandTest, ASummaryOfEachFile) {
    std::string damaged = kLine;
    damaged[15] = 'x';
    TestFolder::Write(folder / "two.raw",
                      kLine + WithChecksum(kHousekeeping) + "\r\n" + damaged + "words\r\n");
    EXPECT_EQ(Convert({"--cal", Cal().string(), Raw().string(), (folder / "two.raw").string()}), 0);
    EXPECT_EQ(error, "");
    EXPECT_EQ(out,
              Raw().string() + ": 1 line, 1 sample -> " + (folder / "cast.dat").string() + "\n" +
                  (folder / "two.raw").string() +
                  ": 4 lines, 1 sample, 1 housekeeping, 2 lines passed over: 1 bad checksum, 1 text -> " +
                  (folder / "two.dat").string() + "\n");
}

TEST_F(ConvertCommandTest, AFailedFileIsReportedAndTheOthersGoOn) {
    const std::string missing = (folder / "nothing.raw").string();
    EXPECT_EQ(Convert({"--cal", Cal().string(), missing, Raw().string()}), 1);
    EXPECT_EQ(error, "marisonde: Error opening " + missing + ": No such file or directory\n");
    EXPECT_TRUE(Has("cast.dat"));
    EXPECT_NE(out, "");
}

TEST_F(ConvertCommandTest, FilesThatAreThereAreReplacedOnlyWhenAsked) {
    TestFolder::Write(folder / "cast.dat", "older");
    EXPECT_EQ(Convert({"--cal", Cal().string(), Raw().string()}), 1);
    EXPECT_EQ(error,
              "marisonde: " + (folder / "cast.dat").string() + " exists already; --overwrite replaces it.\n");
    EXPECT_EQ(TestFolder::Read(folder / "cast.dat"), "older");
    EXPECT_EQ(Convert({"--overwrite", "--cal", Cal().string(), Raw().string()}), 0);
    EXPECT_NE(TestFolder::Read(folder / "cast.dat"), "older");
}

TEST_F(ConvertCommandTest, AnotherFolderTakesEachNameOnce) {
    TestFolder::Write(folder / "one/cast.raw", kLine);
    TestFolder::Write(folder / "two/cast.raw", kLine + kLine);
    fs::create_directory(folder / "out");
    EXPECT_EQ(Convert({"--cal", Cal().string(), "--overwrite", "--out", (folder / "out").string(),
                       (folder / "one/cast.raw").string(), (folder / "two/cast.raw").string()}),
              1);
    EXPECT_EQ(error, "marisonde: Error opening " + (folder / "out/cast.dat").string() +
                         ": another of the files has just been written there\n");
    EXPECT_EQ(TestFolder::Names(folder / "out"), std::set<std::string>{"cast.dat"});
    EXPECT_EQ(Convert({"--cal", Cal().string(), "--out", (folder / "missing").string(), Raw().string()}), 1);
}

TEST_F(ConvertCommandTest, TwoNamesOfOneFileAreWrittenOnce) {
    TestFolder::Write(folder / "one/cast.raw", kLine);
    TestFolder::Write(folder / "two/CAST.raw", kLine + kLine);
    fs::create_directory(folder / "out");
    fs::create_symlink("cast.dat", folder / "out/CAST.dat");  // as disks do that do not tell cases apart
    EXPECT_EQ(Convert({"--cal", Cal().string(), "--overwrite", "--out", (folder / "out").string(),
                       (folder / "one/cast.raw").string(), (folder / "two/CAST.raw").string()}),
              1);
    EXPECT_EQ(error, "marisonde: Error opening " + (folder / "out/CAST.dat").string() +
                         ": another of the files has just been written there\n");
    EXPECT_NE(out.find("1 line, 1 sample"), std::string::npos) << out;
}

TEST_F(ConvertCommandTest, AFileThatFailedLeavesItsPlaceToTheNext) {
    TestFolder::Write(folder / "two/cast.raw", kLine + kLine);
    fs::create_directory(folder / "out");
    TestFolder::Write(folder / "out/cast.dat", "older");
    EXPECT_EQ(Convert({"--cal", Cal().string(), "--overwrite", "--out", (folder / "out").string(),
                       (folder / "one/cast.raw").string(), (folder / "two/cast.raw").string()}),
              1);
    EXPECT_EQ(error, "marisonde: Error opening " + (folder / "one/cast.raw").string() +
                         ": No such file or directory\n");
    EXPECT_EQ(out, (folder / "two/cast.raw").string() + ": 2 lines, 2 samples -> " +
                       (folder / "out/cast.dat").string() + "\n");
}

TEST_F(ConvertCommandTest, RawNumbersNeedNoCalibration) {
    EXPECT_EQ(Convert({"--to", "dec", "--housekeeping", Raw().string()}), 0);
    EXPECT_TRUE(TestFolder::Read(folder / "cast.dec").starts_with("Time,Pressure,Snorm1,SigOff1,"));
    EXPECT_EQ(error, "");
}

TEST_F(ConvertCommandTest, WithoutAUsableCalibrationNothingIsDone) {
    EXPECT_EQ(Convert({Raw().string()}), 1);
    EXPECT_EQ(error, "marisonde: Cannot proceed, because no calibration file is specified.\n");
    TestFolder::Write(folder / "other.cal", "words\r\n");
    for (const char* name : {"other.cal", "nothing.cal"}) {
        EXPECT_EQ(Convert({"--cal", (folder / name).string(), Raw().string()}), 1);
        EXPECT_EQ(
            error,
            "marisonde: Cannot proceed, because the specified calibration file does not exist or is of an "
            "unknown type.\n");
    }
    EXPECT_FALSE(Has("cast.dat"));
}

TEST_F(ConvertCommandTest, ACalibrationOfAnotherModelIsWarnedAbout) {
    TestFolder::Write(Raw(),
                      "[Header]\r\nFileType=raw\r\nDeviceType=Delph-4\r\n[EndHeader]\r\n" + kDelph + "\r\n");
    const std::string warning = "marisonde: warning: " + Raw().string() +
                                " was recorded by a Delph-4, but the calibration is that of a Corvane-6.\n";
    EXPECT_EQ(Convert({"--cal", Cal().string(), Raw().string()}), 0);
    EXPECT_EQ(error, warning);
    error.clear();
    EXPECT_EQ(ConvertPair(Pair(), settings, console), 0);
    EXPECT_EQ(error, warning);
    error.clear();
    settings.calFile = Cal().string();
    EXPECT_EQ(ConvertPair(Raw().string(), settings, console), 0);
    EXPECT_EQ(error, warning) << "whoever names no calibration has not chosen this one";
}

TEST_F(ConvertCommandTest, ProgressIsForTerminalsOnlyAndLeavesNothingBehind) {
    std::string text;
    for (int i = 0; i < 2000; ++i) text += kLine;
    TestFolder::Write(Raw(), text);
    EXPECT_EQ(Convert({"--cal", Cal().string(), Raw().string()}), 0);
    EXPECT_EQ(error, "");
    console.showProgress = true;
    EXPECT_EQ(Convert({"--overwrite", "--cal", Cal().string(), Raw().string()}), 0);
    // 300 of 2000 lines: 15 %. At most ten pictures a second; what stood there is blanked at the end.
    const std::string first = "\r" + Raw().string() + ": 15 %";
    EXPECT_TRUE(error.starts_with(first)) << error;
    EXPECT_TRUE(error.ends_with(std::string(first.size() - 1, ' ') + "\r")) << error;
}

TEST_F(ConvertCommandTest, AnInterruptedRunLeavesNoHalfOfAFile) {
    std::string text;
    for (int i = 0; i < 1000; ++i) text += kLine;
    TestFolder::Write(Raw(), text);
    console.interrupted = [] { return true; };
    EXPECT_EQ(Convert({"--cal", Cal().string(), Raw().string(), Raw().string()}), 130);
    EXPECT_EQ(out, "");
    EXPECT_EQ(FilesThere(), 2U);
}

TEST_F(ConvertCommandTest, MissingTablesAndWhatIsMissedInThemAreTold) {
    stored.SaveSetting("Sigma", "aStar", "nowhere.csv");
    settings = LoadConvertSettings(stored, folder.Path(), folder.Path(), 40000);
    CalibrationDataClass cal;
    const CalFileResult loaded = cal.LoadSourceFile(Cal(), settings.sigma, settings.water);
    ASSERT_FALSE(loaded.messages.empty());
    std::string told =
        "marisonde: Files needed for sigma correction were not found.  Please check the parameter "
        "settings.\n";
    for (const std::string& message : loaded.messages) told += "marisonde: " + message + "\n";
    EXPECT_EQ(Convert({"--cal", Cal().string(), Raw().string()}), 0);
    EXPECT_EQ(error, told);
    error.clear();
    EXPECT_EQ(ConvertPair(Pair(), settings, console), 0);
    EXPECT_EQ(error, told);
    EXPECT_EQ(Convert({"--to", "dec", Raw().string()}), 0);
    EXPECT_EQ(error, "") << "raw numbers need no tables";
}

TEST_F(ConvertCommandTest, TheCalibrationUsedLastServesWhereNoneIsNamed) {
    settings.calFile = Cal().string();
    EXPECT_EQ(Convert({Raw().string()}), 0);
    EXPECT_NE(TestFolder::Read(folder / "cast.dat").find("CalSource=" + Cal().string() + "\r\n"),
              std::string::npos);
    settings.calFile = (folder / "gone.cal").string();
    EXPECT_EQ(Convert({"--overwrite", Raw().string()}), 1);
    EXPECT_EQ(Convert({"--to", "dec", Raw().string()}), 0) << "raw numbers need none";
}

TEST_F(ConvertCommandTest, RawNumbersAreThoseOfTheirHeadersModel) {
    TestFolder::Write(Raw(), "[Header]\r\nFileType=raw\r\nDeviceType=Corvane-6\r\n[EndHeader]\r\n" + kLine);
    const fs::path other = folder / "other.cal";
    TestFolder::Write(other, simulator::MakeInstrument(simulator::Model::Delph2)->CalText());
    EXPECT_EQ(Convert({"--to", "dec", "--cal", other.string(), Raw().string()}), 0);
    EXPECT_EQ(error, "") << "the calibration converts nothing here";
    EXPECT_TRUE(TestFolder::Read(folder / "cast.dec").starts_with("Time,Pressure,Snorm1,"));
}

TEST(BatchConversionTest, WhatTheFormRefusesInItsOrder) {
    TestFolder folder;
    TestFolder::Write(folder / "good.cal", simulator::MakeInstrument(simulator::Model::Delph2)->CalText());
    ProcessFilesChoice choice;
    choice.sourceFolder = folder / "nothing";
    choice.datFolder = folder / "nothing";
    EXPECT_EQ(WhyNotProcess(choice), "Cannot proceed, because the source directory does not exists.");
    choice.sourceFolder = folder.Path();
    EXPECT_EQ(WhyNotProcess(choice), "Cannot proceed, because the desination directory does not exists.");
    choice.saveToSource = true;
    EXPECT_EQ(WhyNotProcess(choice), "Cannot proceed, because no calibration file is specified.");
    choice.calFile = folder / "bad.cal";
    EXPECT_EQ(
        WhyNotProcess(choice),
        "Cannot proceed, because the specified calibration file does not exist or is of an unknown type.");
    choice.calFile = folder / "good.cal";
    EXPECT_EQ(WhyNotProcess(choice),
              "You must select some files from the list to specify those you wish to process.");
    choice.selected = {"a.raw"};
    EXPECT_EQ(WhyNotProcess(choice), "");
    choice.calFile.clear();
    choice.decimal = true;
    EXPECT_EQ(WhyNotProcess(choice), "");
}

TEST(BatchConversionTest, QuestionBeforeFilesAreReplaced) {
    TestFolder folder;
    TestFolder::Write(folder / "out/a.dat", "");
    TestFolder::Write(folder / "out/c.dat", "");
    TestFolder::Write(folder / "b.dec", "");
    ProcessFilesChoice choice;
    choice.sourceFolder = folder.Path();
    choice.datFolder = folder / "out";
    choice.selected = {"a.raw", "b.raw", "c.raw"};
    EXPECT_EQ(CountExisting(RequestOf(choice)), 2);
    choice.saveToSource = true;
    choice.decimal = true;
    EXPECT_EQ(CountExisting(RequestOf(choice)), 1);
    const Question question = OverwriteQuestion(2, 3);
    EXPECT_EQ(
        question.message,
        "2 of the 3 files you selected will overwrite existing data files. Do you wish to overwrite them?");
    EXPECT_EQ(question.first + "|" + question.second + "|" + question.third, "Overwrite|Cancel|");
    EXPECT_EQ(BatchTitle(false), "Saving Calibrated Data");
    EXPECT_EQ(BatchTitle(true), "Saving Decimal Data");
}

}  // namespace
}  // namespace marisonde
