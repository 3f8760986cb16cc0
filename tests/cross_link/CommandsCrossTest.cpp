// Every command with a reply, sent as the program sends it, to instruments that answer by themselves.
#include "CrossBench.h"

namespace marisonde {
namespace {

using sim::Model;

class Commands : public CrossBench {
  protected:
    void Connected(Model model, sim::Options options = {}) {
        options.powerOn = sim::PowerOn::Stopped;
        Plug(model, options);
        ASSERT_EQ(Connect(), Finding::Found);
    }
    bool Cleared() const { return state.CurrentCommand.empty(); }
};

TEST_F(Commands, VersionsOfAllFamilies) {
    for (const Model model : {Model::Corvane4, Model::NTidal, Model::Delph6}) {
        Connected(model, {.firmware = "1.73"});
        state.FirmwareVersion = "0";
        EXPECT_TRUE(Command("VER", "", [&] { return state.FirmwareVersion == "1.73"; }))
            << static_cast<int>(model);
    }
}

TEST_F(Commands, ParametersOfACorvaneWithAShutter) {
    Connected(Model::Corvane6);
    window.QueueOutput("LOG,2.25,3,1,1,1,4,20,120,3600\rshutter,0,1,5,CCW\r");
    TickFor(5s);
    ASSERT_TRUE(Command("GETSAMPLEPARAMS", "", [&] { return state.ParamsReplyDone && Cleared(); }));
    const SampleParams wanted{.SamplePeriod = 2.25F,
                              .StartDelay = 3,
                              .SleepOnFull = true,
                              .PowerFlag = true,
                              .WarmupTime = 4,
                              .BurstLength = 20,
                              .BurstCycle = 120,
                              .TotalDuration = 3600,
                              .BurstMode = true,
                              .ShutterEnabled = false,
                              .ShutterCloseTime = 5,
                              .ShutterDirection = false,
                              .ShutterAutoOpen = true,
                              .DataFormatHex = false};
    EXPECT_EQ(state.Params, wanted);
}

TEST_F(Commands, ParametersOfACorvaneWithoutOne) {
    Connected(Model::Corvane4);
    ASSERT_TRUE(Command("GETSAMPLEPARAMS", "", [&] { return state.ParamsReplyDone && Cleared(); }));
    EXPECT_EQ(state.Params.SamplePeriod, 0.5F);
    EXPECT_EQ(state.Params.BurstCycle, 60);
}

TEST_F(Commands, ParametersOfATidal) {
    Connected(Model::LTidal);
    SendCommand("BURST", window, "1");
    TickFor(3s);
    SendCommand("SETDELAY", window, "7");
    TickFor(3s);
    ASSERT_TRUE(Command("GETSAMPLEPARAMS", "", [&] { return state.ParamsReplyDone && Cleared(); }));
    EXPECT_TRUE(state.Params.DataFormatHex);
    EXPECT_TRUE(state.Params.BurstMode);
    EXPECT_EQ(state.Params.SamplePeriod, 0.25F);
    EXPECT_EQ(state.Params.StartDelay, 7);
    EXPECT_EQ(state.Params.BurstLength, 10);
}

TEST_F(Commands, ParametersOfADelph) {
    Connected(Model::Fathom2);
    ASSERT_TRUE(Command("GETSAMPLEPARAMS", "", [&] { return state.ParamsReplyDone && Cleared(); }));
    EXPECT_EQ(state.Params.SamplePeriod, 0.25F);
    EXPECT_EQ(state.Params.WarmupTime, 2);
    EXPECT_EQ(state.Params.BurstCycle, 60);
}

TEST_F(Commands, FluorescenceStatus) {
    Connected(Model::Corvane6);
    ASSERT_EQ(Fetch(), FetchOutcome::Arrived);  // its second fluorescence channel is known from it
    window.QueueOutput("fl510,2\r");
    TickFor(2s);
    ASSERT_TRUE(Command("FL", "", [&] { return state.ParamsReplyDone; }));
    EXPECT_EQ(state.FlStatus0, 2);
    EXPECT_EQ(state.FlStatus1, 0);
}

TEST_F(Commands, ClockIsReadAndSet) {
    Connected(Model::Delph2);
    ASSERT_TRUE(Command("SETDATE", "03/01/12 12:00:00", [&] { return state.GotTimeReply; }));
    state.GotTimeReply = false;
    ASSERT_TRUE(Command("GETTIME", "", [&] { return state.GotTimeReply; }));
    // 1 March 2012 is day 40969 since 30 December 1899; the offset is against the day of the bench, 40728.39.
    EXPECT_NEAR(state.InstClockOffset, 40969.5 - 40728.385671, 5.0 / 86400);
}

TEST_F(Commands, RateChangesOnBothSides) {
    Connected(Model::LTidal, {.baud = 4800});
    ASSERT_TRUE(Command("BAUD", "38400", [&] { return Cleared(); }));
    TickFor(1s);
    EXPECT_EQ(instrument->BaudRate(), 38400);
    state.FirmwareVersion = "0";
    EXPECT_TRUE(Command("VER", "", [&] { return state.FirmwareVersion != "0"; }));
}

TEST_F(Commands, SleepAndWake) {
    Connected(Model::Corvane2);
    EXPECT_TRUE(Command("SETSLEEP", "", [&] { return state.InstState == InstStateCode::Sleeping; }));
    EXPECT_TRUE(instrument->Asleep());
    EXPECT_TRUE(Command("SETSLEEP", "", [&] { return state.InstState == InstStateCode::Stopped; }));
    EXPECT_FALSE(instrument->Asleep());
    EXPECT_TRUE(Command("WAKE", "", [&] { return Cleared(); }));
    EXPECT_EQ(state.InstState, InstStateCode::Waking);
}

TEST_F(Commands, StartAndStopWithAShutter) {
    Connected(Model::Corvane6);
    const auto reaches = [&](InstStateCode wanted) {
        return [&, wanted] { return state.InstState == wanted; };
    };
    SendCommand("START", window);
    for (const auto wanted :
         {InstStateCode::OpeningShutter, InstStateCode::Starting, InstStateCode::Sampling})
        EXPECT_TRUE(Wait(reaches(wanted), 10s)) << static_cast<int>(wanted);
    SendCommand("STOP", window);
    for (const auto wanted : {InstStateCode::ClosingShutter, InstStateCode::Stopped})
        EXPECT_TRUE(Wait(reaches(wanted), 10s)) << static_cast<int>(wanted);
}

TEST_F(Commands, CalibrationIsStored) {
    Connected(Model::Corvane4);
    EXPECT_TRUE(Command("STORECCL", "", [&] { return state.GotCclReply && Cleared(); }));
    EXPECT_TRUE(Command("STOREGCF", "", [&] { return state.GotGcfReply && Cleared(); }));
}

TEST_F(Commands, TheWholeFileByMakeini) {
    for (const Model model : {Model::Corvane6, Model::Corvane2, Model::Delph4}) {
        Connected(model);
        window.CalData.Clear();
        window.CalData.InstType = state.InstType;
        EXPECT_TRUE(Command(
            "MAKEINI", "", [&] { return state.GotIniReply && Cleared(); }, 20s));
        EXPECT_EQ(window.CalData.Serial, instrument->Info().serial);
    }
}

TEST_F(Commands, CastsAreListedAndDeleted) {
    Connected(Model::Corvane4);
    SendCommand("DIR", window);
    TickFor(3s);
    std::vector<std::string> lines;
    while (state.DirQueue.size() > 0) lines.push_back(state.DirQueue.GetNext());
    ASSERT_EQ(lines.size(), 6U);  // behind the echo
    EXPECT_NE(lines[1].find("Duration"), std::string::npos);
    EXPECT_EQ(lines[4].substr(0, 6), "'    3");
    EXPECT_NE(lines[5].find("free"), std::string::npos);
    EXPECT_TRUE(Command("DELCAST", ", 2", [&] { return state.InstState == InstStateCode::NoData; }));
    EXPECT_NE(state.TerminalText.find("Cast 2 deleted"), std::string::npos) << state.TerminalText;
    EXPECT_TRUE(Command("DELCAST", ", 2", [&] { return state.InstState == InstStateCode::NoData; }));
}

TEST_F(Commands, MemoryIsClearedByEveryFamily) {
    for (const Model model : {Model::Corvane4, Model::LTidal, Model::Delph2}) {
        Connected(model);
        SendCommand("CLEARLOGCOMMAND", window);
        TickFor(5s);
        while (state.DirQueue.size() > 0) state.DirQueue.GetNext();
        SendCommand("DIR", window);
        TickFor(3s);
        EXPECT_EQ(state.DirQueue.size(), 3) << static_cast<int>(model);  // echo, heading and summary
    }
}

}  // namespace
}  // namespace marisonde
