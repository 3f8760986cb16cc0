#include <cerrno>
#include <cstring>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>

#include "app/TerminalText.h"
#include "platform/Operations.h"
#include "support/ScriptedDialogs.h"
#include "support/TestFolder.h"

namespace marisonde {
namespace {

class TerminalTextTest : public testing::Test {
  protected:
    void Save(const std::string& text) {
        operations.Start("Save", [&](Operation& operation) -> QCoro::Task<> {
            const std::string proposed = (folder / "proposed.txt").string();
            co_await SaveTerminalText(operation, dialogs, text, proposed);
        });
        pump.ResumeReady();
        EXPECT_EQ(operations.Count(), 0U);
    }
    static std::string Content(const std::filesystem::path& path) {
        std::ostringstream text;
        text << std::ifstream(path, std::ios::binary).rdbuf();
        return text.str();
    }
    TestFolder folder;
    VirtualClock clock{40735};
    Pump pump{clock};
    ScriptedDialogs dialogs;
    Operations operations{pump, [](const std::string&, const std::string& reason) { FAIL() << reason; }};
};

TEST_F(TerminalTextTest, TheTextIsWrittenAsItIs) {
    dialogs.saveBase = (folder / "talk").string();
    Save("ready\r\n");
    EXPECT_EQ(Content(folder / "talk.txt"), "ready\r\n");
    ASSERT_EQ(dialogs.filesAsked.size(), 1U);
    EXPECT_EQ(dialogs.filesAsked[0].title, "Save Terminal Text");
    EXPECT_EQ(dialogs.proposedBases[0], (folder / "proposed.txt").string());
    EXPECT_TRUE(dialogs.errors.empty());
}

TEST_F(TerminalTextTest, CancelWritesNothing) {
    Save("ready\r\n");
    EXPECT_TRUE(std::filesystem::is_empty(folder.Path()));
}

TEST_F(TerminalTextTest, AFileThatExistsIsReplacedOnlyOnYes) {
    TestFolder::Write(folder / "old.txt", "old");
    dialogs.chosen = {{(folder / "old.txt").string(), 0}, {(folder / "new.txt").string(), 0}};
    dialogs.answers = {Choice::Second};
    Save("text");
    EXPECT_EQ(Content(folder / "old.txt"), "old");
    EXPECT_EQ(Content(folder / "new.txt"), "text") << "it asks again";
    dialogs.chosen = {{(folder / "old.txt").string(), 0}};
    dialogs.answers = {Choice::First};
    Save("text");
    EXPECT_EQ(Content(folder / "old.txt"), "text");
}

TEST_F(TerminalTextTest, AFolderThatIsGoneIsTold) {
    const std::string path = (folder / "gone" / "talk.txt").string();
    dialogs.saveBase = path;
    Save("text");
    ASSERT_EQ(dialogs.errors.size(), 1U);
    EXPECT_EQ(dialogs.errors[0],
              "The text could not be saved as " + path + ": " + std::string(std::strerror(ENOENT)) + ".");
}

}  // namespace
}  // namespace marisonde
