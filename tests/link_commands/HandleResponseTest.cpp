#include <algorithm>
#include <set>

#include "LinkBench.h"

namespace marisonde {
namespace {

class HandleResponseTest : public LinkBench {
  protected:
    void Ask(std::string_view command, std::string_view argument = "") {
        SendCommand(command, window, argument);
        Sent();
    }
    [[nodiscard]] bool Over() const { return state.CurrentCommand.empty(); }
};

TEST(ReplyTable, HasEveryCommandWhoseReplyIsKnownOnce) {
    const std::set<std::string_view> expected{
        "MULTICCAL", "DELCAST", "FL",   "WAKE",    "STORECCL", "STOREGCF", "GETSAMPLEPARAMS", "ID",
        "GCF",       "VER",     "CCL",  "CCF",     "MAKEINI",  "DIR",      "CLEARLOGCOMMAND", "GETTIME",
        "SETTIME",   "SETDATE", "BAUD", "DUMPCFG", "DOWNLOAD", "SLEEP",    "ECHOON",          "ECHOOFF",
        "\r\n"};
    std::set<std::string_view> found;
    for (const ReplyRule& rule : ReplyTable()) EXPECT_TRUE(found.insert(rule.command).second) << rule.command;
    EXPECT_EQ(found, expected);
}

TEST_F(HandleResponseTest, WithoutACommandLinesAreNotCollected) {
    Hear({"Firmware version 1.85", "..OK"});
    EXPECT_EQ(state.ResponseLineCount, 0);
    EXPECT_EQ(state.FirmwareVersion, "0");
}

TEST_F(HandleResponseTest, CommandsWithoutAReplyStayAsTheyAre) {
    for (const char* const name : {"DOWNLOAD", "SLEEP", "ECHOON", "ECHOOFF", "\r\n", "SOMETHING"}) {
        Ask(name);
        const std::string before = state.CurrentCommand;
        Hear({"..OK", "ready", "[End]"});
        EXPECT_EQ(state.CurrentCommand, before);
        EXPECT_EQ(Sent(), "");
    }
}

TEST_F(HandleResponseTest, AtMost200LinesAreKept) {
    Ask("ECHOON");
    for (int i = 0; i < 230; ++i) Say({"line " + std::to_string(i)});
    Tick();
    EXPECT_EQ(state.ResponseLineCount, 200);
    EXPECT_EQ(state.ResponseLines[199], "line 199");
}

TEST_F(HandleResponseTest, EmptyLinesAreNotKept) {
    Ask("ECHOON");
    Hear({"", "a", "", "b"});
    EXPECT_EQ(state.ResponseLineCount, 2);
    EXPECT_EQ(state.ResponseLines[1], "b");
}

TEST_F(HandleResponseTest, DelCastEndsWithTheCast) {
    for (const char* const reply : {"Cast 3 DELETED", "No cast 3"}) {
        Ask("DELCAST", ", 3");
        Hear({"DELCAST, 3"});
        EXPECT_EQ(state.InstState, InstStateCode::Deleting);
        EXPECT_FALSE(Over());
        Hear({reply});
        EXPECT_EQ(state.InstState, InstStateCode::NoData);
        EXPECT_TRUE(Over());
    }
}

TEST_F(HandleResponseTest, DelCastAnswersThePromptOnce) {
    Ask("DELCAST", ", 3");
    Hear({"Type YES to delete cast 3"});
    EXPECT_EQ(line->TakeWritten(), "YES\r");
    EXPECT_EQ(state.ResponseLines[0], "");
    EXPECT_FALSE(Over());
    Hear({"YES"});
    EXPECT_EQ(line->TakeWritten(), "");
    Hear({"cast deleted"});
    EXPECT_TRUE(Over());
}

TEST_F(HandleResponseTest, FlOfOneChannelEndsWithTheFirstStatus) {
    window.CalData.EditChannel(7).lambda = 99;
    Ask("FL");
    Hear({"FL", "FL status: 2"});
    EXPECT_EQ(state.FlStatus0, 2);
    EXPECT_EQ(state.FlStatus1, -1);
    EXPECT_TRUE(state.ParamsReplyDone);
    EXPECT_TRUE(Over());
}

TEST_F(HandleResponseTest, FlOfTwoChannelsWaitsForTheSecondStatus) {
    window.CalData.EditChannel(7).lambda = 100;
    Ask("FL");
    Hear({"FL", "FL status: 2"});
    EXPECT_EQ(state.FlStatus0, 2);
    EXPECT_FALSE(state.ParamsReplyDone);
    Hear({"FL status: 1"});
    EXPECT_EQ(state.FlStatus1, 1);
    EXPECT_TRUE(state.ParamsReplyDone);
    EXPECT_TRUE(Over());
}

TEST_F(HandleResponseTest, EveryWordOfWakingUpIsKnown) {
    for (const char* const reply : {"instrument READY", "Woke up", "wak", "CV2", "cv6 V1.85", "cv4"}) {
        Ask("WAKE");
        Hear({"xyz"});
        EXPECT_FALSE(Over());
        Hear({reply});
        EXPECT_TRUE(Over()) << reply;
        EXPECT_EQ(state.InstState, InstStateCode::Waking) << reply;
    }
}

TEST_F(HandleResponseTest, StoringEndsWithItsOk) {
    Ask("STORECCL");
    Hear({"storeccl", "Storing channel data"});
    EXPECT_FALSE(state.GotCclReply);
    Hear({"Storing channel data..OK"});
    EXPECT_TRUE(state.GotCclReply);
    EXPECT_FALSE(state.GotGcfReply);
    EXPECT_TRUE(Over());
    Ask("STOREGCF");
    EXPECT_FALSE(state.GotCclReply);
    Hear({"Storing..OK"});
    EXPECT_TRUE(state.GotGcfReply);
    EXPECT_TRUE(Over());
}

TEST_F(HandleResponseTest, GcfEndsWithTheCalibrationTime) {
    Ask("GCF");
    Hear({"GCF", "S/N: CV060412", "Cal temp: 18.5"});
    EXPECT_FALSE(state.GotGcfReply);
    Hear({"Cal Time: 01/03/09 17:05:00"});
    EXPECT_TRUE(state.GotGcfReply);
    EXPECT_TRUE(Over());
    EXPECT_EQ(window.CalData.Serial, "CV060412");
    EXPECT_FLOAT_EQ(window.CalData.CalTemp, 18.5F);
}

TEST_F(HandleResponseTest, VerKeepsTheNumberAndStays) {
    Ask("VER");
    Hear({"VER", "FIRMWARE version 1.85"});
    EXPECT_EQ(state.FirmwareVersion, "1.85");
    EXPECT_EQ(state.CurrentCommand, "VER");
}

TEST_F(HandleResponseTest, CclEndsWithTheFifthGain) {
    Ask("CCL", "3");
    Hear({"'Channel 3 (bb488)", "' mu: 1.5"});
    EXPECT_FALSE(state.GotCclReply);
    Hear({"' G5: 900: 3: 2: 1"});
    EXPECT_TRUE(state.GotCclReply);
    EXPECT_TRUE(Over());
    EXPECT_DOUBLE_EQ(window.CalData.Channel(2).Mu, 1.5);
}

TEST_F(HandleResponseTest, CcfEndsWithTheReportChannel) {
    Ask("CCF", "2");
    Hear({"'Channel 2 (bb532)", "' ChEx: 1"});
    EXPECT_FALSE(state.GotCcfReply);
    Hear({"' ChRep: 3"});
    EXPECT_TRUE(state.GotCcfReply);
    EXPECT_TRUE(Over());
    EXPECT_EQ(window.CalData.Channel(1).ChEx, 1);
    EXPECT_EQ(window.CalData.Channel(1).ChRep, 3);
}

TEST_F(HandleResponseTest, ClearLogAnswersThePromptAndAsksForTheDirectory) {
    Ask("CLEARLOGCOMMAND");
    line->Queue("CLEARLOG\r\nAll will be lost. Type YES to Erase: ");  // a prompt has no line end
    Tick();
    EXPECT_EQ(Sent(), "YES\rDIR\r");
    EXPECT_EQ(state.CurrentCommand, "DIR");
    Ask("CLEARLOGCOMMAND");
    Hear({"Type yes to erase"});
    EXPECT_EQ(Sent(), "YES\rDIR\r");
}

TEST_F(HandleResponseTest, ClearLogOfADelphKnowsTheShortPrompt) {
    Ask("CLEARLOGCOMMAND");
    line->Queue("Erase memory? ");
    Tick();
    EXPECT_EQ(Sent(), "");  // a Corvane asks in more words
    Use(InstTypeCode::Delph2);
    state.InputText.Clear();
    Ask("CLEARLOGCOMMAND");
    line->Queue("Erase memory? ");
    Tick();
    EXPECT_EQ(Sent(), "YES\rDIR\r");
    state.InputText.Clear();
    Ask("CLEARLOGCOMMAND");
    Hear({"Type yes to erase"});
    EXPECT_EQ(Sent(), "YES\rDIR\r");
}

TEST_F(HandleResponseTest, DirMovesItsLinesUntilTheDialogHasSeenTheEnd) {
    Ask("DIR");
    for (int i = 0; i < 150; ++i) Say({"' cast " + std::to_string(i)});
    Tick();
    for (int i = 150; i < 198; ++i) Say({"' cast " + std::to_string(i)});
    Tick();
    EXPECT_EQ(state.DirQueue.size(), 198);
    EXPECT_EQ(state.ResponseLineCount, 0);
    EXPECT_FALSE(Over());
    state.GotDirEnd = true;
    Hear({"' 12 of 99 free"});
    EXPECT_TRUE(Over());
    EXPECT_EQ(state.DirQueue.GetNext(), "' cast 0");
}

// 11 July... the instrument writes month first: 07/04/11 is 4 July 2011. Days from 30 December 1899:
// 40544 is 1 January 2011; January to June 2011 have 31+28+31+30+31+30 = 181 days, so 1 July is 40725 and
// 4 July is 40728. 09:15:22 is (9*3600 + 15*60 + 22) / 86400 = 33322 / 86400.
constexpr double kInstrumentDate = 40728 + 33322.0 / 86400;

TEST_F(HandleResponseTest, TheClockReplyGivesTheOffset) {
    for (const char* const command : {"GETTIME", "SETTIME"}) {
        clock.SetDate(40728.25);
        Ask(command);
        EXPECT_FALSE(state.GotTimeReply);
        Hear({"TIME", "Time: 07/04/11 09:15:22"});
        EXPECT_TRUE(state.GotTimeReply) << command;
        EXPECT_TRUE(Over());
        EXPECT_DOUBLE_EQ(state.InstClockOffset, kInstrumentDate - 40728.25);
        state.GotTimeReply = false;
    }
}

TEST_F(HandleResponseTest, TheEchoOfASetClockIsNotItsReply) {
    Ask("SETDATE", "07/04/11 09:00:00");
    Hear({"TIME,07/04/11 09:00:00"});
    EXPECT_FALSE(state.GotTimeReply);
    EXPECT_FALSE(Over());
    Hear({"Time: 07/04/11 09:15:22"});
    EXPECT_TRUE(state.GotTimeReply);
    EXPECT_DOUBLE_EQ(state.InstClockOffset, kInstrumentDate - state.CommandDate);
}

TEST_F(HandleResponseTest, TheLastClockLineCounts) {
    Ask("GETTIME");
    Hear({"Time: 01/01/05 00:00:00", "Time: 07/04/11 09:15:22", "note: none"});
    EXPECT_DOUBLE_EQ(state.InstClockOffset, kInstrumentDate - state.CommandDate);
}

TEST_F(HandleResponseTest, ABadClockReplyIsPassedOver) {
    for (const char* const bad :
         {"Time: 13/04/11 09:15:22", "Time: 02/30/11 09:15:22", "Time: 07/04/11 24:00:00",
          "Time: 07/04/11 09:60:00", "Time: a/b/c d:e", "Time: 07/04 09:15"}) {
        state.InstClockOffset = 5;
        Ask("GETTIME");
        Hear({bad});
        EXPECT_FALSE(Over()) << bad;
        EXPECT_EQ(state.InstClockOffset, 5) << bad;
    }
    Hear({"Time: 07/04/11 09:15:22"});
    EXPECT_TRUE(Over());
}

TEST_F(HandleResponseTest, ThePortChangesItsRateOnlyBehindTheCommand) {
    std::vector<int> saved;
    window.OnRateChanged = [&](int baud) { saved.push_back(baud); };
    line->rates.clear();
    SendCommand("BAUD", window, "19200");  // 11 characters, ten a tick
    Tick();
    Tick();
    EXPECT_EQ(line->TakeWritten(), "BAUD,19200\r");
    EXPECT_TRUE(line->rates.empty());
    line->stuckOutput = 3;  // still in the port's own buffer
    Tick();
    EXPECT_TRUE(line->rates.empty());
    line->stuckOutput = 0;
    Tick();
    EXPECT_EQ(line->rates, std::vector<int>{19200});
    EXPECT_EQ(saved, std::vector<int>{19200});
    EXPECT_EQ(line->TakeWritten(), "\r");
    EXPECT_TRUE(Over());
}

}  // namespace
}  // namespace marisonde
