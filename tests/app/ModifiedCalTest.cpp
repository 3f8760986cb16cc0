#include "app/OpenFileFixture.h"

namespace marisonde {
namespace {

using simulator::Model;
namespace fs = std::filesystem;

class ModifiedCalTest : public OpenFileFixture {
  protected:
    ModifiedCalTest() : cast(Record(Model::Corvane6, "cast")) {}
    /// A window that holds a file and an edited calibration.
    DataWindow& Edited() {
        DataWindow& window = WithCal(Model::Corvane6);
        OpenByMenu(window, cast.raw);
        window.Link.CalData.SetMu(0, 12345);
        window.Link.CalData.ChangedItems = CalItems::Mu;
        return window;
    }
    Cast cast;
};

constexpr const char* kModified =
    "You have modified the calibration data associated with this window.  To open a new window with the "
    "modified calibration you must first save the changes.  Save the changes now?";

TEST_F(ModifiedCalTest, CancelOpensNothing) {
    DataWindow& window = Edited();
    dialogs.answers = {Choice::Third};
    OpenByMenu(window, cast.raw);
    EXPECT_EQ(Asked(), std::vector<std::string>{kModified});
    EXPECT_EQ(Buttons(0), "Save As...|Don'tSave|Cancel");
    EXPECT_EQ(held.size(), 1U);
}

TEST_F(ModifiedCalTest, SavedChangesGoToTheNewWindow) {
    DataWindow& window = Edited();
    dialogs.answers = {Choice::First};
    dialogs.saveBase = (folder / "edited.cal").string();
    OpenByMenu(window, cast.raw);
    ASSERT_EQ(held.size(), 2U);
    EXPECT_EQ(held[1].window->Link.CalData.Channel(0).Mu, 12345);
    EXPECT_EQ(window.Link.CalData.ChangedItems, 0);
    EXPECT_TRUE(fs::exists(folder / "edited.cal"));
}

TEST_F(ModifiedCalTest, CancelledSaveOpensNothing) {
    DataWindow& window = Edited();
    dialogs.answers = {Choice::First};
    dialogs.saveBase = "";
    OpenByMenu(window, cast.raw);
    EXPECT_EQ(held.size(), 1U);
    EXPECT_EQ(window.Link.CalData.ChangedItems, CalItems::Mu);
}

TEST_F(ModifiedCalTest, UnsavedChangesStayInTheirWindow) {
    DataWindow& window = Edited();
    dialogs.answers = {Choice::Second};
    OpenByMenu(window, cast.raw);
    EXPECT_EQ(dialogs.notices, std::vector<std::string>{"The new window will be opened with the unmodified "
                                                        "version of " +
                                                        CalOf(Model::Corvane6)});
    ASSERT_EQ(held.size(), 2U);
    EXPECT_NE(held[1].window->Link.CalData.Channel(0).Mu, 12345);
    EXPECT_EQ(held[1].window->Link.CalData.ChangedItems, 0);
    EXPECT_EQ(window.Link.CalData.Channel(0).Mu, 12345);
}

TEST_F(ModifiedCalTest, InAFreshWindowChangesMayBeSavedFirst) {
    DataWindow& window = WithCal(Model::Corvane6);
    window.Link.CalData.ChangedItems = CalItems::Comment;
    dialogs.answers = {Choice::Third};
    OpenByMenu(window, cast.raw);
    EXPECT_EQ(Asked(), std::vector<std::string>{"The current calibration data have changed. Save changes to "
                                                "the file before closing?"});
    EXPECT_EQ(Buttons(0), "Save As...|Don't Save|Cancel");
    EXPECT_FALSE(window.Stored.IsShown());
    dialogs.answers = {Choice::First};
    dialogs.saveBase = (folder / "kept.cal").string();
    OpenByMenu(window, cast.raw);
    EXPECT_TRUE(fs::exists(folder / "kept.cal"));
    EXPECT_EQ(window.Stored.path, cast.raw);
}

TEST_F(ModifiedCalTest, ChangesNobodyWantsAreNotSaved) {
    DataWindow& window = WithCal(Model::Corvane6);
    window.Link.CalData.ChangedItems = CalItems::Comment;
    dialogs.answers = {Choice::Second};
    OpenByMenu(window, cast.raw);
    EXPECT_EQ(window.Stored.path, cast.raw);
}

}  // namespace
}  // namespace marisonde
