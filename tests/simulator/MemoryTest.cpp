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

/// The sample lines in what an instrument said.
std::vector<std::string> SampleLines(const std::string& text) {
    std::vector<std::string> lines;
    for (std::size_t at = 0; at < text.size();) {
        const auto end = std::min(text.find("\r\n", at), text.size());
        if (text[at] == '*' || (text[at] >= '0' && text[at] <= '9'))
            lines.push_back(text.substr(at, end - at));
        at = end + 2;
    }
    return lines;
}

TEST(Logging, WhatIsSampledIsACastAfterwards) {
    for (int model = 0; model < kModelCount; ++model) {
        Conversation talk(static_cast<Model>(model), {.baud = 115200, .startCountdown = 0, .shutter = false});
        std::string said = talk.Ask("START,0", 5s);
        said += talk.AskWithEcho("STOP\r", 500ms);
        const std::vector<std::string> sent = SampleLines(said);
        ASSERT_GT(sent.size(), 8U) << model;
        EXPECT_EQ(SampleLines(talk.Ask("DOWNLOAD,4", 20s)), sent) << model;
    }
}

TEST(Logging, ACastIsListedWithItsTimeAndLines) {
    Conversation talk(Model::Corvane4, {.startCountdown = 0});
    talk.AskWithEcho("LOG,1\r", 10s);
    talk.AskWithEcho("START,0\r", 90500ms);
    talk.AskWithEcho("STOP\r");
    // Begun 10 s after 09:15:22, at 1 to 90 s, for at first the line is busy with the echo; 1020 + 90 lines
    // of 32 bytes: 2097152 - 35520 bytes are 2013 KB.
    const std::string listing = talk.Ask("DIR");
    EXPECT_NE(listing.find("'    4  07/04/11 09:15:32   0:01:30     90\r\n"), std::string::npos) << listing;
    EXPECT_NE(listing.find("'2013 KB of 2048 KB free"), std::string::npos) << listing;
    EXPECT_EQ(talk.Value("ID", "Logged casts"), "4");
}

TEST(Logging, IsLeftOutWhenItIsNotWanted) {
    Conversation talk(Model::Corvane4, {.startCountdown = 0});
    talk.AskWithEcho("START,0,0\r", 5s);
    talk.AskWithEcho("STOP\r");
    talk.AskWithEcho("START,0\r", 5s);
    talk.instrument->Restart(talk.now);
    EXPECT_EQ(talk.Value("ID", "Logged casts"), "4");
    // A start that was taken back has recorded nothing.
    Conversation early(Model::Corvane4);
    early.AskWithEcho("START,0\r", 2s);
    early.AskWithEcho("STOP\r");
    EXPECT_EQ(early.Value("ID", "Logged casts"), "3");
}

TEST(Logging, NumbersBeginAgainOnlyWhenAllIsErased) {
    Conversation talk(Model::Delph2, {.startCountdown = 0});
    const auto record = [&] {
        talk.AskWithEcho("START\r", 3s);
        talk.AskWithEcho("STOP\r");
        return talk.Ask("DIR");
    };
    record();
    talk.Ask("DELCAST, 4");
    talk.Ask("YES");
    EXPECT_NE(record().find("'    5  "), std::string::npos);
    talk.Ask("CLEARLOG");
    talk.Ask("Y");
    EXPECT_NE(record().find("'    1  "), std::string::npos);
}

TEST(Logging, AFullMemoryEndsItAndSleepsIfSet) {
    for (const bool sleeps : {false, true}) {
        Conversation talk(Model::Corvane4, {.samplesPerSecond = 10, .baud = 57600, .startCountdown = 0});
        talk.Ask(sleeps ? "LOG,0.1,0,1" : "LOG,0.1,0,0");
        talk.instrument->Receive("START,0\r", talk.now);
        // 2 MB hold 65536 lines of 32 bytes, 1020 are used: 64516 samples take 6452 s.
        talk.now += 6440s;
        const std::string before = talk.instrument->TakeOutput(talk.now);
        EXPECT_EQ(before.find("Memory full"), std::string::npos);
        const std::string last = talk.Listen(20s);
        EXPECT_TRUE(last.ends_with(sleeps ? "!Memory full\r\nSleeping\r\n" : "!Memory full\r\n")) << sleeps;
        EXPECT_EQ(talk.instrument->Asleep(), sleeps);
        EXPECT_FALSE(talk.instrument->Sampling());
        if (!sleeps) {
            EXPECT_NE(talk.Ask("DIR").find("  64516\r\n'0 KB"), std::string::npos);
        }
    }
}

}  // namespace
}  // namespace marisonde::simulator
