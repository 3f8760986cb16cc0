#include "app/FilesFixture.h"
#include "app/SaveCal.h"

namespace marisonde {
namespace {

using simulator::Model;
namespace fs = std::filesystem;

class SaveCalTest : public FilesFixture {
  protected:
    /// Saves under the name that the dialog answers; empty: it is cancelled. nullopt: it still waits.
    std::optional<bool> SaveAs(DataWindow& window, const std::string& path) {
        dialogs.chosen = {{path, 0}};
        std::optional<bool> saved;
        Do(window, [&](Operation& operation) -> QCoro::Task<> {
            const bool done = co_await SaveCalFileAs(operation, window);
            saved = done;
        });
        return saved;
    }
    std::string Proposed() const { return dialogs.filesAsked.empty() ? "" : dialogs.filesAsked.back().path; }
};

TEST_F(SaveCalTest, TheFileItCameFromIsProposed) {
    DataWindow& window = WithCal(Model::Corvane6);
    EXPECT_EQ(SaveAs(window, ""), false);
    EXPECT_EQ(Proposed(), CalOf(Model::Corvane6));
}

TEST_F(SaveCalTest, WithoutAFileTheSerialNumberIsProposedInTheFolderOfCalibrations) {
    DataWindow& window = WithCal(Model::Corvane6);
    app.prefs.OpenCalPath = "/cals/";
    window.Link.CalData.NoteSource("[multiple sources]");
    window.Link.CalData.Serial = "CV970312";
    EXPECT_EQ(SaveAs(window, ""), false);
    EXPECT_EQ(Proposed(), "/cals/CV970312.cal");
    window.Link.CalData.Serial.clear();
    EXPECT_EQ(SaveAs(window, ""), false);
    EXPECT_EQ(Proposed(), "/cals/Corvane-6.cal");
}

TEST_F(SaveCalTest, TheSavedFileIsTheOneToLoadNextTime) {
    DataWindow& window = WithCal(Model::Corvane6);
    window.Link.CalData.ChangedItems = CalItems::Mu;
    const std::string path = (folder / "kept.cal").string();
    EXPECT_EQ(SaveAs(window, path), true);
    EXPECT_TRUE(fs::exists(path));
    EXPECT_EQ(window.Link.CalData.SourceFile(), path);
    EXPECT_EQ(window.Link.CalData.ChangedItems, 0);
    EXPECT_EQ(app.prefs.CalFile, path);
}

TEST_F(SaveCalTest, AFailedSaveIsToldAndChangesNothing) {
    DataWindow& window = WithCal(Model::Corvane6);
    window.Link.CalData.ChangedItems = CalItems::Mu;
    const std::string before = app.prefs.CalFile;
    const std::string path = (folder / "no folder" / "x.cal").string();
    EXPECT_EQ(SaveAs(window, path), false);
    EXPECT_EQ(dialogs.errors,
              std::vector<std::string>{"Error writing file: No such file or directory.\r" + path});
    EXPECT_EQ(window.Link.CalData.SourceFile(), CalOf(Model::Corvane6));
    EXPECT_EQ(window.Link.CalData.ChangedItems, CalItems::Mu);
    EXPECT_EQ(app.prefs.CalFile, before);
}

TEST_F(SaveCalTest, ACancelledSaveChangesNothing) {
    DataWindow& window = WithCal(Model::Corvane6);
    window.Link.CalData.ChangedItems = CalItems::Mu;
    EXPECT_EQ(SaveAs(window, ""), false);
    EXPECT_EQ(window.Link.CalData.ChangedItems, CalItems::Mu);
    EXPECT_EQ(app.prefs.CalFile, CalOf(Model::Corvane6));
    EXPECT_TRUE(dialogs.errors.empty());
}

}  // namespace
}  // namespace marisonde
