#include "simulator/Conversation.h"

namespace marisonde::simulator {
namespace {

using namespace std::chrono_literals;

TEST(Memory, ListsItsCasts) {
    Conversation talk(Model::Corvane4);
    // 2048 KB less 32 bytes for each of 1020 lines: 2097152 - 32640 = 2064512, 2016 KB.
    EXPECT_EQ(
        talk.Ask("DIR"),
        Lines({"' Cast  Start              Duration  Lines", "'    1  06/30/11 09:15:22   0:02:30    300",
               "'    2  07/01/11 09:15:22   0:05:00    600", "'    3  07/03/11 09:15:22   0:01:00    120",
               "'2016 KB of 2048 KB free"}));
}

TEST(Memory, ACastIsTheSameEachTimeItIsSent) {
    for (int model = 0; model < kModelCount; ++model) {
        Conversation talk(static_cast<Model>(model), {.baud = 115200});
        const std::string first = talk.Ask("DOWNLOAD,3", 60s);
        EXPECT_EQ(std::count(first.begin(), first.end(), '\n'), 121) << model;
        EXPECT_TRUE(first.ends_with("\r\nEnd of cast 3\r\n"));
        EXPECT_EQ(talk.Ask("DOWNLOAD,3", 60s), first);
        EXPECT_NE(talk.Ask("DOWNLOAD,1", 60s).substr(0, 500), first.substr(0, 500));
    }
}

TEST(Memory, LinesAreDatedByTheCast) {
    Conversation talk(Model::Corvane4, {.form = LineForm::Hex});
    // 3 July 2011 09:15:22 is 1309770922 - 86400 = 1309684522 = 0x4E10332A; the first line half a second
    // later.
    EXPECT_EQ(talk.Ask("DOWNLOAD,3", 60s).substr(0, 10), "*D4E10332A");
}

TEST(Memory, NothingIsEchoedDuringADownloadAndStopEndsIt) {
    Conversation talk(Model::Corvane4);
    talk.instrument->Receive("DOWNLOAD,2\r", 0ms);
    const std::string begun = talk.Listen(2s);
    EXPECT_NE(begun.find("*T"), std::string::npos);
    const std::string rest = talk.AskWithEcho("ID\rSTOP\r");
    EXPECT_EQ(rest.find("ID"), std::string::npos);
    EXPECT_TRUE(rest.ends_with("Stopped\r\n"));
    EXPECT_EQ(talk.Ask("VER"), "Firmware version 1.85\r\n");
    Conversation delph(Model::Delph2);
    delph.instrument->Receive("DOWNLOAD,2\r", 0ms);
    delph.Listen(2s);
    EXPECT_TRUE(delph.AskWithEcho("\x03\r").ends_with("Stopped\r\n\r\n"));
}

TEST(Memory, OldFirmwareEndsACastInItsOwnWord) {
    Conversation talk(Model::Delph2, {.firmware = "1.01"});
    EXPECT_TRUE(talk.Ask("DOWNLOAD,3", 60s).ends_with("\r\n'done\r\n"));
}

TEST(Memory, DeletesACastWhenItIsSure) {
    Conversation talk(Model::Corvane4);
    EXPECT_EQ(talk.Ask("DELCAST, 2"), "Enter YES to delete cast 2\r\n");
    EXPECT_EQ(talk.Ask("no"), "Nothing changed\r\n");
    EXPECT_EQ(talk.Value("ID", "Logged casts"), "3");
    talk.Ask("DELCAST, 2");
    EXPECT_EQ(talk.Ask("YES"), "Cast 2 deleted\r\n");
    EXPECT_EQ(talk.Value("ID", "Logged casts"), "2");
    EXPECT_EQ(talk.Ask("DELCAST, 2"), "No cast 2\r\n");
    EXPECT_EQ(talk.Ask("DOWNLOAD,2"), "No cast 2\r\n");
}

TEST(Memory, ErasesAllWhenItIsSure) {
    Conversation talk(Model::Corvane4);
    EXPECT_EQ(talk.Ask("CLEARLOG"), "!Enter YES to erase all casts\r\n");
    EXPECT_EQ(talk.Ask("YES"), "Memory cleared\r\n");
    EXPECT_EQ(talk.Value("ID", "Logged casts"), "0");
    Conversation delph(Model::Delph4);
    EXPECT_EQ(delph.Ask("CLEARLOG"), "Erase memory (Y/N)? ");
    EXPECT_EQ(delph.Ask("Y"), "Memory cleared\r\n");
    EXPECT_EQ(delph.Ask("DIR"),
              Lines({"' Cast  Start              Duration  Lines", "'2048 KB of 2048 KB free"}));
}

}  // namespace
}  // namespace marisonde::simulator
