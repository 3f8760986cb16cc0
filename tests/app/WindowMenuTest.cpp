#include "app/WindowFixture.h"
#include "app/WindowMenu.h"
#include "app/WindowTitle.h"

namespace marisonde {
namespace {

using simulator::Model;

class WindowTitleTest : public WindowFixture {
  protected:
    static void Named(DataWindow& window, bool dat, const std::string& path) {
        window.OpenDataFiles("raw", dat, path);
    }
};

TEST_F(WindowTitleTest, WithoutFileItTellsTheConnection) {
    const auto window = Scripted(Model::Corvane6);
    window->Files.CloseDataFiles(false);
    EXPECT_EQ(window->Title(), " Port 1 - Marisonde");
    window->Link.State.InstSerial = "CV6120345";
    EXPECT_EQ(window->Title(), "CV6120345 - Marisonde");
    EXPECT_EQ(TerminalTitle(*window), "CV6120345 Terminal - Marisonde");
    window->Link.ClosePort();
    EXPECT_EQ(window->Title(), "No connection - Marisonde");
    EXPECT_EQ(TerminalTitle(*window), "No connection Terminal - Marisonde");
}

TEST_F(WindowTitleTest, UnnamedFilesAreCounted) {
    const auto first = Scripted(Model::Corvane6);
    const auto second = Scripted(Model::Corvane6);
    EXPECT_EQ(first->Title(), "untitled1 - Marisonde");
    EXPECT_EQ(second->Title(), "untitled2 - Marisonde");
    first->OpenDataFiles("raw", false);
    EXPECT_EQ(first->Title(), "untitled3 - Marisonde");
}

TEST_F(WindowTitleTest, NamedFilesStandWithoutTheirFolder) {
    const auto window = Scripted(Model::Corvane6);
    Named(*window, false, (folder / "bay.raw").string());
    EXPECT_EQ(window->Title(), "bay.raw - Marisonde");
    Named(*window, true, (folder / "bay.raw").string());
    EXPECT_EQ(window->Title(), "bay (bay.raw, bay.dat) - Marisonde");
}

TEST_F(WindowTitleTest, TheProgramsNameIsCutOff) {
    EXPECT_EQ(CutCaption("bay.raw - Marisonde"), "bay.raw");
    EXPECT_EQ(CutCaption("bay.raw Terminal - Marisonde"), "bay.raw Terminal");
    EXPECT_EQ(CutCaption("Spectrum"), "Spectrum");
    EXPECT_EQ(CutCaption(""), "");
}

class WindowMenuTest : public WindowFixture {
  protected:
    DataWindow& Add() {
        windows.push_back(std::make_unique<DataWindow>(app, dialogs, std::make_unique<ScriptedLine>()));
        DataWindow& window = *windows.back();
        window.OnShow = [this, index = window.Index()] { shown += "window" + std::to_string(index) + " "; };
        return window;
    }
    void AddChild(DataWindow& window, const std::string& tag, const std::string& caption) {
        window.Children.push_back({tag, [caption] { return caption; }, [this] { return open; },
                                   [this, tag] { shown += tag + " "; }});
    }
    static std::vector<std::string> Texts(const std::vector<WindowMenuEntry>& entries) {
        std::vector<std::string> texts;
        for (const WindowMenuEntry& entry : entries)
            texts.push_back(std::to_string(entry.window) + (entry.checked ? "*" : ":") + entry.text + "|" +
                            entry.tag);
        return texts;
    }

    std::vector<std::unique_ptr<DataWindow>> windows;
    std::string shown;
    bool open = true;
};

TEST_F(WindowMenuTest, SixWindowsStandInTheOrderOfTheirSlots) {
    for (int i = 0; i < kMaxWindows; ++i) Add();
    std::vector<std::string> expected;
    for (int i = 0; i < kMaxWindows; ++i)
        expected.push_back(std::to_string(i) + (i == 4 ? "*" : ":") + "No connection|");
    EXPECT_EQ(Texts(BuildWindowMenu(app, 4)), expected);
    windows.erase(windows.begin() + 2);
    EXPECT_EQ(BuildWindowMenu(app, 4).size(), 5U);
    EXPECT_EQ(BuildWindowMenu(app, 4)[2].window, 3);
}

TEST_F(WindowMenuTest, OpenChildrenStandBelowTheirWindow) {
    DataWindow& first = Add();
    Add();
    AddChild(first, "Term", "No connection Terminal - Marisonde");
    AddChild(first, "Cal", "Calibration");
    AddChild(first, "Spec", "Spectrum");
    const std::vector<std::string> expected{"0*No connection|", "0:   Calibration|Cal", "0:   Spectrum|Spec",
                                            "0:   No connection Terminal|Term", "1:No connection|"};
    EXPECT_EQ(Texts(BuildWindowMenu(app, 0)), expected);
    open = false;
    EXPECT_EQ(BuildWindowMenu(app, 0).size(), 2U);
}

TEST_F(WindowMenuTest, SelectingShowsTheWindowOrTheChildOfTheTag) {
    DataWindow& first = Add();
    Add();
    AddChild(first, "Term", "Terminal");
    const auto entries = BuildWindowMenu(app, 0);
    ASSERT_EQ(entries.size(), 3U);
    for (const WindowMenuEntry& entry : entries) SelectWindowFromWindowsMenu(app, entry);
    EXPECT_EQ(shown, "window0 Term window1 ");
    open = false;
    windows.pop_back();
    shown.clear();
    SelectWindowFromWindowsMenu(app, entries[1]);
    SelectWindowFromWindowsMenu(app, entries[2]);
    EXPECT_EQ(shown, "") << "what has closed is not shown";
}

TEST_F(WindowMenuTest, EntriesBeyondAHundredAreNotMade) {
    DataWindow& first = Add();
    for (int i = 0; i < 150; ++i) AddChild(first, "Term", "Terminal");
    EXPECT_EQ(BuildWindowMenu(app, 0).size(), 100U);
}

}  // namespace
}  // namespace marisonde
