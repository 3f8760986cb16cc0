#include <gtest/gtest.h>
#include <optional>

#include "app/FileDialogs.h"
#include "platform/Operations.h"
#include "support/ScriptedDialogs.h"
#include "support/TestFolder.h"

namespace marisonde {
namespace {

using Rows = std::vector<std::pair<std::string, std::string>>;

Rows RowsOf(std::span<const FileFilter> filters) {
    Rows rows;
    for (const FileFilter& filter : filters) rows.emplace_back(filter.name, filter.pattern);
    return rows;
}

TEST(FileFilters, OfTheSaveDialogs) {
    EXPECT_EQ(RowsOf(SaveFilters(SaveSource::RawData)),
              (Rows{{"Raw and Calibrated Data (*.raw, *.dat)", "*.raw;*.dat"},
                    {"Raw Data Only (*.raw)", "*.raw"},
                    {"Calibrated Data Only (*.dat)", "*.dat"}}));
    EXPECT_EQ(RowsOf(SaveFilters(SaveSource::LiveData)), (Rows{{"Calibrated Data (*.dat)", "*.dat"}}));
    EXPECT_EQ(RowsOf(SaveFilters(SaveSource::Calibration)), (Rows{{"Calibration File (*.cal)", "*.cal"}}));
    EXPECT_EQ(RowsOf(SaveFilters(SaveSource::Graphics)),
              (Rows{{"Bitmap (*.bmp)", "*.bmp"},
                    {"Standard Windows Metafile (*.wmf)", "*.wmf"},
                    {"Enhanced Windows Metafile (*.emf)", "*.emf"},
                    {"High Quality JPEG (*.jpg)", "*.jpg"},
                    {"Med Quality JPEG (*.jpg)", "*.jpg"},
                    {"Low Quality/Compact JPEG (*.jpg)", "*.jpg"}}));
}

TEST(FileFilters, OfTheOpenDialogs) {
    EXPECT_EQ(RowsOf(AllFilters()), (Rows{{"Calibration File (*.cal)", "*.cal"},
                                          {"Old Calibration File (*.ini)", "*.ini"},
                                          {"All Files (*.*)", "*.*"},
                                          {"Raw or Calibrated Data (*.raw, *.dat)", "*.raw;*.dat"},
                                          {"Raw Data File (*.raw)", "*.raw"},
                                          {"Calibrated Data File (*.dat)", "*.dat"},
                                          {"Comma-separated Values File (*.csv)", "*.csv"}}));
    EXPECT_EQ(RowsOf(CalFilters()).front().first, "Calibration File (*.cal)");
    EXPECT_EQ(RowsOf(TableFilters()),
              (Rows{{"Comma-separated Values File (*.csv)", "*.csv"}, {"All Files (*.*)", "*.*"}}));
    EXPECT_EQ(RowsOf(DataFilters()).front().first, "Raw or Calibrated Data (*.raw, *.dat)");
}

TEST(FileFilters, GiveTheExtensionThatANameLacks) {
    const std::vector<std::pair<SaveSource, std::vector<std::string>>> cases{
        {SaveSource::RawData, {"raw", "raw", "dat"}},
        {SaveSource::LiveData, {"dat"}},
        {SaveSource::Calibration, {"cal"}},
        {SaveSource::Graphics, {"bmp", "wmf", "emf", "jpg", "jpg", "jpg"}},
    };
    for (const auto& [source, extensions] : cases)
        for (std::size_t i = 0; i < extensions.size(); ++i) {
            EXPECT_EQ(WithExtension("/d.x/cast", SaveFilters(source)[i]), "/d.x/cast." + extensions[i]);
            EXPECT_EQ(WithExtension("/d.x/cast.txt", SaveFilters(source)[i]), "/d.x/cast.txt");
        }
    EXPECT_EQ(WithExtension("cast.", SaveFilters(SaveSource::RawData)[0]), "cast.raw");
    EXPECT_EQ(WithExtension("cast", AllFilters()[2]), "cast");
    EXPECT_EQ(WithExtension("", SaveFilters(SaveSource::RawData)[0]), "");
}

class FileDialogs : public testing::Test {
  protected:
    FileDialogs()
        : pump(clock), operations(pump, [](const std::string&, const std::string& why) { FAIL() << why; }) {}

    std::optional<SaveFileAnswer> Save(SaveSource source, DataFilesToSave there = {true, true}) {
        std::optional<SaveFileAnswer> result;
        operations.Start("Save", [&](Operation& operation) -> QCoro::Task<> {
            std::string proposed = "/proposed";
            const SaveFileAnswer answer =
                co_await SaveFileDialog(operation, dialogs, settings, source, proposed, there);
            result = answer;
        });
        for (int turn = 0; turn < 20 && !result; ++turn) pump.ResumeReady();
        return result;
    }
    std::string Path(const std::string& name) const { return (folder / name).string(); }
    void Exists(const std::string& name) const { TestFolder::Write(folder / name, "kept"); }

    TestFolder folder;
    MapSettings settings;
    VirtualClock clock{40735};
    Pump pump;
    ScriptedDialogs dialogs;
    Operations operations;
};

TEST_F(FileDialogs, SavingProposesAndKeepsTheTypeThatWasChosenLast) {
    dialogs.chosen = {{Path("cast"), 1}, {Path("other"), 2}};
    auto answer = Save(SaveSource::RawData);
    ASSERT_TRUE(answer);
    EXPECT_EQ(dialogs.filesAsked[0].title, "Save As");
    EXPECT_EQ(dialogs.filesAsked[0].path, "/proposed");
    EXPECT_EQ(dialogs.filesAsked[0].filter, 0);
    EXPECT_EQ(answer->path, Path("cast.raw"));
    EXPECT_TRUE(answer->files.raw);
    EXPECT_FALSE(answer->files.dat);
    EXPECT_EQ(settings.GetSetting("App", "SaveRawType", "-"), "2");
    answer = Save(SaveSource::RawData);
    ASSERT_TRUE(answer);
    EXPECT_EQ(dialogs.filesAsked[1].filter, 1);
    EXPECT_FALSE(answer->files.raw);
    EXPECT_TRUE(answer->files.dat);
    EXPECT_EQ(settings.GetSetting("App", "SaveRawType", "-"), "3");
    EXPECT_TRUE(dialogs.asked.empty());
}

TEST_F(FileDialogs, AStoredTypeThatDoesNotExistIsTheNearest) {
    settings.SaveSetting("App", "SaveRawType", "77");
    Save(SaveSource::RawData);
    settings.SaveSetting("App", "SaveRawType", "nonsense");
    Save(SaveSource::RawData);
    EXPECT_EQ(dialogs.filesAsked[0].filter, 2);
    EXPECT_EQ(dialogs.filesAsked[1].filter, 0);
}

TEST_F(FileDialogs, OneExistingFileIsAskedAbout) {
    Exists("cast.raw");
    dialogs.chosen = {{Path("cast"), 0}};
    dialogs.answers = {Choice::First};
    const auto answer = Save(SaveSource::RawData);
    ASSERT_TRUE(answer);
    ASSERT_EQ(dialogs.asked.size(), 1U);
    EXPECT_EQ(dialogs.asked[0].message, Path("cast.raw") + " already exists.  Replace it?");
    EXPECT_EQ(dialogs.asked[0].first + "|" + dialogs.asked[0].second + "|" + dialogs.asked[0].third,
              "Yes|No|");
    EXPECT_EQ(answer->path, Path("cast.raw"));
}

TEST_F(FileDialogs, TwoExistingFilesAreAskedAboutTogether) {
    Exists("cast.raw");
    Exists("cast.dat");
    dialogs.chosen = {{Path("cast.raw"), 0}, {Path("new"), 0}};
    dialogs.answers = {Choice::Second};
    const auto answer = Save(SaveSource::RawData);
    ASSERT_EQ(dialogs.asked.size(), 1U);
    EXPECT_EQ(dialogs.asked[0].message,
              Path("cast.raw") + " and " + Path("cast.dat") + " already exist.  Replace them?");
    // "No" leads back to the dialog, where the refused name stands.
    ASSERT_EQ(dialogs.filesAsked.size(), 2U);
    EXPECT_EQ(dialogs.filesAsked[1].path, Path("cast.raw"));
    ASSERT_TRUE(answer);
    EXPECT_EQ(answer->path, Path("new.raw"));
}

TEST_F(FileDialogs, FilesThatWillNotBeWrittenAreNotAskedAbout) {
    Exists("cast.dat");
    dialogs.chosen = {{Path("cast"), 1}, {Path("cast"), 0}};
    EXPECT_TRUE(Save(SaveSource::RawData));
    EXPECT_TRUE(Save(SaveSource::RawData, {true, false}));
    EXPECT_TRUE(dialogs.asked.empty());
}

TEST_F(FileDialogs, ATypeThatTheWindowDoesNotHoldIsSaid) {
    dialogs.chosen = {{Path("cast"), 2}, {"", 0}};
    const auto answer = Save(SaveSource::RawData, {true, false});
    EXPECT_EQ(dialogs.notices, std::vector<std::string>{"This window holds no data of that type."});
    ASSERT_TRUE(answer);
    EXPECT_EQ(answer->path, "");
}

TEST_F(FileDialogs, CalibrationsAndPicturesAskAboutTheirOwnFile) {
    Exists("a.cal");
    Exists("graph.jpg");
    dialogs.chosen = {{Path("a"), 0}, {Path("graph"), 4}};
    dialogs.answers = {Choice::First, Choice::First};
    EXPECT_EQ(Save(SaveSource::Calibration)->path, Path("a.cal"));
    EXPECT_EQ(Save(SaveSource::Graphics)->filter, 4);
    ASSERT_EQ(dialogs.asked.size(), 2U);
    EXPECT_EQ(dialogs.asked[1].message, Path("graph.jpg") + " already exists.  Replace it?");
}

TEST_F(FileDialogs, AnUnknownSourceIsANotice) {
    const auto answer = Save(static_cast<SaveSource>(9));
    EXPECT_EQ(dialogs.notices,
              std::vector<std::string>{"Notify Venmark: unknown source type in SaveFileDialog (9)."});
    ASSERT_TRUE(answer);
    EXPECT_EQ(answer->path, "");
}

TEST_F(FileDialogs, OpeningDataOffersDataFiles) {
    dialogs.chosen = {{"/d/CAST.RMU", 3}};
    std::string opened;
    operations.Start("Open", [&](Operation& operation) -> QCoro::Task<> {
        std::string start = "/d";
        opened = co_await OpenDataDialog(operation, dialogs, start);
    });
    EXPECT_EQ(opened, "/d/CAST.RMU");
    EXPECT_EQ(dialogs.filesAsked[0].title, "Select Data File");
    EXPECT_EQ(dialogs.filesAsked[0].path, "/d");
    EXPECT_EQ(dialogs.filesAsked[0].filters.size(), 4U);
    EXPECT_EQ(dialogs.filesAsked[0].filters[0].name, "Raw or Calibrated Data (*.raw, *.dat)");
}

TEST_F(FileDialogs, AMissingFileIsLookedForWithTheUsersHelp) {
    std::string found = "unasked";
    const auto look = [&] {
        operations.Start("Find", [&](Operation& operation) -> QCoro::Task<> {
            std::string name = "/d/aStar.csv";
            found = co_await FindFileDialog(operation, dialogs, name);
        });
    };
    dialogs.answers = {Choice::Second, Choice::First};
    look();
    EXPECT_EQ(found, "");
    EXPECT_EQ(
        dialogs.asked[0].message,
        "The file /d/aStar.csv could not be found in the specified path.  Would you like to help find it?");
    EXPECT_EQ(dialogs.asked[0].first + "|" + dialogs.asked[0].second + "|" + dialogs.asked[0].third,
              "Yes|No|");
    EXPECT_TRUE(dialogs.filesAsked.empty());
    dialogs.chosen = {{"/e/aStar.csv", 0}};
    look();
    EXPECT_EQ(found, "/e/aStar.csv");
    EXPECT_EQ(dialogs.filesAsked[0].title, "Select File");
}

}  // namespace
}  // namespace marisonde
