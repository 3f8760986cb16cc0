#include <algorithm>
#include <ostream>
#include <set>

#include "LinkBench.h"
#include "link/CommandTable.h"

namespace marisonde {
namespace {

constexpr auto kC6 = InstTypeCode::Corvane6;
constexpr auto kLT = InstTypeCode::LTidal;
constexpr auto kD4 = InstTypeCode::Delph4;
constexpr auto kNone = InstTypeCode::Unknown;

/// One command to one model, with "OLD" waiting in the queue already.
struct Vector {
    const char* name;
    InstTypeCode type;
    const char* argument;
    const char* pending;  ///< what waits afterwards
    const char* written;  ///< what has gone out past the pacing
};
std::ostream& operator<<(std::ostream& out, const Vector& v) {
    return out << v.name << " for model " << static_cast<int>(v.type);
}

const std::vector<Vector> kVectors{
    {"DELCAST", kC6, ", 3", "OLDDELCAST, 3\r", ""},
    {"DelCast", kD4, ", 3", "OLDDelCast, 3\r", ""},
    {"storeccl", kC6, "", "OLDstoreccl\r", ""},
    {"STORECCL", kLT, "", "OLD", ""},
    {"STORECCL", kD4, "", "OLD", ""},
    {"storegcf", kC6, "x", "OLDstoregcfx\r", ""},
    {"STOREGCF", kLT, "", "OLD", ""},
    {"STOREGCF", kNone, "", "OLD", ""},
    {"FL", kC6, "9", "OLDFL\r", ""},
    {"FL", kLT, "", "OLD", ""},
    {"FL1", kC6, "2", "OLDFLfl510,2\r", ""},
    {"FL2", kC6, "0", "OLDFLfl685,0\r", ""},
    {"FL2", kD4, "0", "OLD", ""},
    {"SETGAIN", kC6, "5", "OLDgain,0,5\r", ""},
    {"SETGAIN", kLT, "5", "OLDgain5\r", ""},
    {"SETGAIN", kD4, "5", "OLD", ""},
    {"GETRAWSAMPLE", kC6, "", "OLDC\r", ""},
    {"GETRAWSAMPLE", kLT, "", "OLD\r", ""},
    {"GETRAWSAMPLE", kD4, "", "OLD", ""},
    {"CLEARSAMPLE", kC6, "", "OLDX\r", ""},
    {"CLEARSAMPLE", kLT, "", "OLD\r", ""},
    {"CLEARSAMPLE", kD4, "", "OLD", ""},
    {"GETSAMPLEPARAMS", kLT, "", "OLDDATAFORMAT\rPERIOD\rSTARTDELAY\rBURST\r", ""},
    {"GETSAMPLEPARAMS", kC6, "", "OLDLOG\r", ""},
    {"GETSAMPLEPARAMS", kD4, "", "OLDLOG\r", ""},
    {"PERIOD", kC6, "2", "OLDPERIOD,2\r", ""},
    {"Period", kD4, "2", "OLDPeriod,2\r", ""},
    {"STARTDELAY", kLT, "10", "OLDSTARTDELAY,10\r", ""},
    {"BURST", kLT, "1", "OLDBURST,1\r", ""},
    {"BURSTLENGTH", kD4, "20", "OLDBURSTLENGTH,20\r", ""},
    {"BURSTCYCLE", kD4, "30", "OLDBURSTCYCLE,30\r", ""},
    {"START", kC6, ",1", "OLDSTART,0,1\r", ""},
    {"START", kLT, ",1", "OLDSTART\r", ""},
    {"STARTNOLOG", kC6, "", "OLDSTART,0\r", ""},
    {"STARTNOLOG", kD4, "", "OLDSTART\r", ""},
    {"STOP", kC6, "", "OLDSTOP\r", ""},
    {"STOP", kLT, "", "OLDSTOP\r", ""},
    {"SETSLEEP", kC6, "", "OLDSLEEP\r", ""},
    {"DOWNLOAD", kC6, "7", "DOWNLOAD,7\r", ""},
    {"MAKEINI", kC6, "", "OLD", "MAKEINI\r"},
    {"ccl", kC6, "3", "OLD", "CCL,3\r"},
    {"gcf", kC6, "", "OLD", "GCF\r"},
    {"CCF", kC6, "8", "OLD", "CCF,8\r"},
    {"CLEARLOGCOMMAND", kC6, "", "OLDCLEARLOG\r", ""},
    {"Dir", kD4, "", "OLDDIR\r", ""},
    {"ID", kNone, "", "ID\r", ""},
    {"TIME", kC6, "1", "OLD", ""},
    {"SETDATE", kC6, "07/04/11 09:15:22", "TIME,07/04/11 09:15:22\r", ""},
    {"GETTIME", kLT, "", "OLDTIME\r", ""},
    {"SETPERIOD", kLT, " 2", "OLDPERIOD 2\r", ""},
    {"SETPERIOD", kC6, "2", "OLD", "\r\nLOG,2\r\n"},
    {"SETPERIOD", kD4, "2", "OLD", ""},
    {"SETDELAY", kLT, "5", "OLDSTARTDELAY 5\r", ""},
    {"SETDELAY", kC6, "5", "OLD", "\r\nLOG,,5\r\n"},
    {"SETDELAY", kD4, "5", "OLD", ""},
    {"\r\n", kC6, "", "\r\r", ""},
    {"dumpcfg", kLT, "", "DUMPCFG\r\n", ""},
    {"LOG", kC6, ",1,2", "LOG,1,2\r\n", ""},
    {"BAUD", kC6, "19200", "BAUD,19200\r", ""},
    {"ver", kD4, "", "OLDver\r", ""},
    {"WAKE", kC6, "", "OLDWAKE\r", ""},
    {"LOADCFG", kLT, "", "OLDLOADCFG\r", ""},
    {"power", kLT, "1", "OLDpower1\r", ""},
};

class SendCommandVectors : public LinkBench, public testing::WithParamInterface<Vector> {};

TEST_P(SendCommandVectors, PutsTheRightTextOutTheRightWay) {
    const Vector& v = GetParam();
    Use(v.type);
    window.CalData.EditChannel(6).name = "fl510";
    window.CalData.EditChannel(7).name = "fl685";
    window.PendingOutput = "OLD";
    EXPECT_TRUE(SendCommand(v.name, window, v.argument));
    EXPECT_EQ(window.PendingOutput, v.pending);
    EXPECT_EQ(line->TakeWritten(), v.written);
}
INSTANTIATE_TEST_SUITE_P(Rows, SendCommandVectors, testing::ValuesIn(kVectors));

TEST(CommandTable, EveryRowHasAVector) {
    for (const CommandRow& row : CommandTable()) {
        if (row.onlyAsleep) continue;  // SendCommand.WakesASleepingInstrument
        const bool covered = std::any_of(kVectors.begin(), kVectors.end(), [&](const Vector& v) {
            std::string upper = v.name;
            std::transform(upper.begin(), upper.end(), upper.begin(),
                           [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c; });
            return &FindCommand(upper, v.type, false) == &row;
        });
        EXPECT_TRUE(covered) << row.name << " models " << int{row.models};
    }
}

class SendCommandTest : public LinkBench {};

TEST_F(SendCommandTest, NotesTheCommandAndForgetsTheReplyBefore) {
    clock.SetDate(40123.5);
    clock.AdvanceBy(2s);
    state.TerminalText = "old";
    state.ResponseLineCount = 5;
    for (std::size_t i = 0; i < 5; ++i) state.ResponseLines[i] = "old";
    SendCommand("ver", window);
    EXPECT_EQ(state.CurrentCommand, "VER");
    EXPECT_EQ(state.TerminalText, "");
    EXPECT_EQ(state.ResponseLineCount, 0);
    EXPECT_EQ(state.LastInputTime, 2s);
    EXPECT_EQ(state.CommandTime, 2s);
    EXPECT_DOUBLE_EQ(state.CommandDate, 40123.5 + 2.0 / 86400);
    // The window's number is 2, and that entry is the one that is blanked.
    EXPECT_EQ(state.ResponseLines[0], "old");
    EXPECT_EQ(state.ResponseLines[2], "");
    EXPECT_EQ(state.ResponseLines[3], "old");
}

TEST_F(SendCommandTest, LimitsCountFromTheLastCharacterSent) {
    Use(kLT);
    clock.AdvanceBy(1s);
    SendCommand("STOP", window);
    TickFor(250ms);
    EXPECT_EQ(line->TakeWritten(), "STOP\r");
    EXPECT_EQ(state.CommandTime, 1250ms);
    EXPECT_DOUBLE_EQ(state.CommandDate, 40000 + 1.25 / 86400);
}

struct FlagCase {
    const char* command;
    bool DataWindowState::*flag;
};

TEST_F(SendCommandTest, ClearsTheFlagOfTheReplyItAwaits) {
    const std::vector<FlagCase> cases{
        {"STORECCL", &DataWindowState::GotCclReply}, {"STORECCL", &DataWindowState::GotGcfReply},
        {"STOREGCF", &DataWindowState::GotCclReply}, {"STOREGCF", &DataWindowState::GotGcfReply},
        {"FL", &DataWindowState::ParamsReplyDone},   {"FL1", &DataWindowState::ParamsReplyDone},
        {"FL2", &DataWindowState::ParamsReplyDone},  {"GETSAMPLEPARAMS", &DataWindowState::ParamsReplyDone},
        {"MAKEINI", &DataWindowState::GotIniReply},  {"CCL", &DataWindowState::GotCclReply},
        {"GCF", &DataWindowState::GotGcfReply},      {"CCF", &DataWindowState::GotCcfReply},
        {"DIR", &DataWindowState::GotDirEnd},        {"ID", &DataWindowState::GotIdReply},
        {"DUMPCFG", &DataWindowState::GotIniReply},
    };
    for (const FlagCase& c : cases) {
        state.*c.flag = true;
        SendCommand(c.command, window);
        EXPECT_FALSE(state.*c.flag) << c.command;
    }
    Use(kLT);
    state.ParamsReplyDone = true;
    SendCommand("GETSAMPLEPARAMS", window);
    EXPECT_FALSE(state.ParamsReplyDone);
}

TEST_F(SendCommandTest, ForgetsFluorescenceStatesBeforeAskingOrSetting) {
    state.FlStatus0 = state.FlStatus1 = 2;
    SendCommand("FL1", window, "1");
    EXPECT_EQ(state.FlStatus0, -1);
    EXPECT_EQ(state.FlStatus1, 2);
    state.FlStatus0 = 2;
    SendCommand("FL2", window, "1");
    EXPECT_EQ(state.FlStatus0, 2);
    EXPECT_EQ(state.FlStatus1, -1);
    SendCommand("FL", window);
    EXPECT_EQ(state.FlStatus0, -1);
}

TEST_F(SendCommandTest, StoringIsForgottenWhereTheModelCannot) {
    Use(kD4);
    EXPECT_TRUE(SendCommand("STORECCL", window));
    EXPECT_EQ(state.CurrentCommand, "");
    EXPECT_TRUE(SendCommand("STOREGCF", window));
    EXPECT_EQ(state.CurrentCommand, "");
}

TEST_F(SendCommandTest, MovesTheState) {
    SendCommand("DELCAST", window, ", 1");
    EXPECT_EQ(state.InstState, InstStateCode::Deleting);
    SendCommand("START", window);
    EXPECT_EQ(state.InstState, InstStateCode::StartSent);
    SendCommand("STOP", window);
    EXPECT_EQ(state.InstState, InstStateCode::StopSent);
}

TEST_F(SendCommandTest, WakesASleepingInstrument) {
    state.InstState = InstStateCode::Sleeping;
    window.PendingOutput = "OLD";
    SendCommand("SETSLEEP", window);
    EXPECT_EQ(window.PendingOutput, "\r\r");
}

TEST_F(SendCommandTest, ASleepingInstrumentGetsOneCharacterATick) {
    state.InstState = InstStateCode::Sleeping;
    SendCommand("ver", window);
    Tick();
    EXPECT_EQ(line->TakeWritten(), "v");
    Tick();
    EXPECT_EQ(line->TakeWritten(), "e");
}

TEST_F(SendCommandTest, RefusesToStartDuringADownload) {
    std::vector<std::string> errors;
    window.OnError = [&](std::string text) { errors.push_back(std::move(text)); };
    for (const char* const name : {"START", "STARTNOLOG"}) {
        errors.clear();
        state.TransferActive = true;
        state.InstState = InstStateCode::Downloading;
        EXPECT_TRUE(SendCommand(name, window));
        EXPECT_EQ(errors, std::vector<std::string>{"Can Not Start While Downloading"});
        EXPECT_EQ(window.PendingOutput, "");
        EXPECT_EQ(state.InstState, InstStateCode::Downloading);
    }
}

TEST_F(SendCommandTest, AsksWhetherItMayStart) {
    window.MayStart = [] { return false; };
    EXPECT_TRUE(SendCommand("START", window));
    EXPECT_EQ(window.PendingOutput, "");
    EXPECT_EQ(state.InstState, InstStateCode::Stopped);
    window.MayStart = [] { return true; };
    EXPECT_TRUE(SendCommand("START", window));
    EXPECT_EQ(window.PendingOutput, "START,0\r");
}

TEST_F(SendCommandTest, DirEmptiesTheDirectory) {
    state.DirQueue.MaxSize(4);
    state.DirQueue.Add("old");
    SendCommand("DIR", window);
    EXPECT_EQ(state.DirQueue.size(), 0);
    for (int i = 0; i < 250; ++i) state.DirQueue.Add("x");
    EXPECT_EQ(state.DirQueue.size(), 199);  // a ring of 200 holds one less
}

TEST_F(SendCommandTest, BaudTakesOnlyTheRatesOfTheInstruments) {
    for (const int rate : {4800, 9600, 19200, 38400, 57600, 115200}) {
        SendCommand("BAUD", window, std::to_string(rate));
        EXPECT_EQ(window.PendingOutput, "BAUD," + std::to_string(rate) + "\r");
        EXPECT_EQ(state.BaudRate, rate);
    }
    for (const char* const bad : {"1200", "", "fast", " , ", "-9600", "9601", "230400"}) {
        window.PendingOutput = "OLD";
        state.BaudRate = 9600;
        EXPECT_TRUE(SendCommand("BAUD", window, bad));
        EXPECT_EQ(window.PendingOutput, "OLD") << bad;
        EXPECT_EQ(state.BaudRate, 9600);
        window.PendingOutput.clear();
        Tick();
        EXPECT_EQ(line->TakeWritten(), "") << bad;
    }
}

TEST_F(SendCommandTest, BaudAcceptsLeadingBlanksAndCommas) {
    for (const char* const text : {" 19200", ",19200", " , ,19200"}) {
        state.BaudRate = 9600;
        SendCommand("BAUD", window, text);
        EXPECT_EQ(window.PendingOutput, "BAUD,19200\r") << text;
        EXPECT_EQ(state.BaudRate, 19200);
    }
}

TEST_F(SendCommandTest, WithoutConnectionTheConnectDialogComesFirst) {
    state.Connected = false;
    std::function<void()> closed;
    window.ShowConnectForm = [&](std::function<void()> whenClosed) { closed = std::move(whenClosed); };
    EXPECT_FALSE(SendCommand("STOP", window));
    ASSERT_TRUE(closed);
    EXPECT_EQ(state.CurrentCommand, "");
    closed();  // closed without a connection
    EXPECT_EQ(window.PendingOutput, "");
    state.Connected = true;
    state.CancelRequest = kCancelStop;
    closed();  // connected, but stopped
    EXPECT_EQ(window.PendingOutput, "");
    state.CancelRequest = kCancelIdle;
    closed();
    EXPECT_EQ(window.PendingOutput, "STOP\r");
    EXPECT_EQ(state.CurrentCommand, "STOP");
}

TEST_F(SendCommandTest, WithoutConnectionAndDialogNothingIsSent) {
    state.Connected = false;
    EXPECT_FALSE(SendCommand("GCF", window));
    EXPECT_EQ(line->TakeWritten(), "");
    EXPECT_EQ(state.CurrentCommand, "");
}

TEST_F(SendCommandTest, FluorescenceSettingsAreRebuiltFromTheKnownStates) {
    window.CalData.EditChannel(6).name = "fl510";
    window.CalData.EditChannel(7).name = "fl685";
    state.FlStatus0 = 2;
    state.FlStatus1 = 0;
    EXPECT_EQ(SetFlStatus(window), "flfl510,2\rflfl685,0\r");
    EXPECT_EQ(Sent(), "flfl510,2\rflfl685,0\r");
    state.FlStatus0 = -1;
    EXPECT_EQ(SetFlStatus(window), "flfl685,0\r");
    state.FlStatus1 = -1;
    EXPECT_EQ(SetFlStatus(window), "");
}

TEST_F(SendCommandTest, GainsAreSetByChannelOrAlone) {
    SetChannelGain(window, 2, 5);
    EXPECT_EQ(window.PendingOutput, "gain,3,5\r");
    window.PendingOutput.clear();
    Use(InstTypeCode::XTidal);
    SetChannelGain(window, 0, 4);
    EXPECT_EQ(window.PendingOutput, "gain4\r");
    window.PendingOutput.clear();
    Use(kD4);
    SetChannelGain(window, 0, 4);
    EXPECT_EQ(window.PendingOutput, "");
}

}  // namespace
}  // namespace marisonde
