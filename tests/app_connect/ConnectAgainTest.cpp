#include "ConnectFixture.h"
#include "app/ConnectAgain.h"

namespace marisonde {
namespace {

/// A connected Delph-4 whose cable is pulled.
class PulledCable : public ConnectFixture {
  protected:
    void Connected() {
        talker = &Teach(Model::Delph4);
        Open();
        window->OnLineLost = [this] {
            operations->Start("ConnectAgain", [this](Operation& operation) -> QCoro::Task<> {
                co_await ConnectAgain(operation, *window);
            });
        };
        connector->SelectBaud(19200);
        ASSERT_TRUE(ConnectAndFinish());
        window->OpenDataFiles("raw", true);
        ASSERT_TRUE(State().Connected);
        talker->heard.clear();
    }
    void Pull() {
        talker->gone = true;
        TickFor(5s);
    }
    void PlugIn() {
        talker->gone = false;
        talker->waiting.clear();
    }
    Talker* talker = nullptr;
};

TEST_F(PulledCable, IsToldOnceAndKeepsTheFilesOpen) {
    Connected();
    Pull();
    ASSERT_EQ(dialogs.errors.size(), 1u);
    EXPECT_EQ(dialogs.errors[0],
              "Port 3 has stopped working: No such device.  The data received so far are kept.  Check the "
              "cable.");
    TickFor(10min);
    EXPECT_EQ(dialogs.errors.size(), 1u);
    EXPECT_TRUE(window->Files.AnyOpen());
    EXPECT_FALSE(State().Connected);
    // Looking for the device does not mean opening it.
    EXPECT_EQ(talker->openedPorts.size(), 2u);
}

TEST_F(PulledCable, TheSameInstrumentGoesOn) {
    Connected();
    Pull();
    PlugIn();
    ASSERT_TRUE(Finish());
    EXPECT_TRUE(State().Connected);
    EXPECT_EQ(State().PortNumber, 3);
    EXPECT_EQ(talker->heard.find("\r\rID\r"), 0u);
    EXPECT_EQ(talker->heard.find("START"), std::string::npos) << "it did not sample before";
    EXPECT_EQ(dialogs.errors.size(), 1u);
    EXPECT_TRUE(State().CalReady);
}

TEST_F(PulledCable, WhatSampledSamplesAgain) {
    Connected();
    State().InstState = InstStateCode::Sampling;
    Pull();
    PlugIn();
    talker->sampling = true;
    for (int tick = 0; tick < 400 && operations->Count() > 0; ++tick) {
        if (talker->sampling) talker->Say(Lines{"*T0011"});
        Tick();
    }
    EXPECT_TRUE(State().Connected);
    TickFor(1s);
    EXPECT_NE(talker->heard.find("STOP\r\rID\r"), std::string::npos);
    EXPECT_TRUE(talker->heard.ends_with("START\r"));
    EXPECT_EQ(State().InstState, InstStateCode::StartSent);
}

TEST_F(PulledCable, AnotherInstrumentIsNotTakenForIt) {
    Connected();
    Pull();
    talker->replies["ID"][2] = "S/N: D4080199";
    PlugIn();
    ASSERT_TRUE(Finish());
    EXPECT_FALSE(State().Connected);
    EXPECT_FALSE(window->Link.Line().IsOpen());
    ASSERT_EQ(dialogs.errors.size(), 2u);
    EXPECT_EQ(
        dialogs.errors[1],
        "Another instrument (D4080199) answers on port 3 in place of D4080102.  The connection is closed.  "
        "Use Connect to work with it.");
    EXPECT_TRUE(window->Files.AnyOpen());
}

TEST_F(PulledCable, AnInstrumentThatIsStillSilentIsAskedAgain) {
    Connected();
    Pull();
    const auto id = talker->replies["ID"];
    talker->replies.erase("ID");
    PlugIn();
    TickFor(20s);
    EXPECT_FALSE(State().Connected);
    EXPECT_EQ(dialogs.errors.size(), 1u);
    talker->replies["ID"] = id;
    ASSERT_TRUE(Finish());
    EXPECT_TRUE(State().Connected);
}

TEST_F(PulledCable, AnUnidentifiedOneIsOpenedAsItWas) {
    Connected();
    State().InstSerial.clear();
    Pull();
    PlugIn();
    ASSERT_TRUE(Finish());
    EXPECT_TRUE(State().Connected);
    EXPECT_EQ(talker->heard, "");
}

TEST_F(PulledCable, TheConnectDialogEndsTheWait) {
    Connected();
    Pull();
    ASSERT_EQ(operations->Count(), 1u);
    connector->Form_Load();
    Tick();
    EXPECT_EQ(operations->Count(), 0u);
    EXPECT_TRUE(pump.Idle());
}

TEST_F(PulledCable, TheEndOfTheWindowEndsItInEveryWait) {
    for (int ticks = 0; ticks < 200; ticks += 3) {
        dialogs.errors.clear();
        operations = MakeOperations();
        window.reset();
        Connected();
        talker->replies.erase("ID");
        talker->gone = true;
        Tick();
        for (int tick = 0; tick < ticks; ++tick) {
            if (tick == 30) PlugIn();
            Tick();
        }
        ASSERT_EQ(operations->Count(), 1u);
        operations.reset();
        EXPECT_TRUE(pump.Idle()) << ticks;
        EXPECT_FALSE(window->Link.Line().IsOpen()) << ticks;
    }
}

TEST_F(PulledCable, PulledAgainIsToldAgain) {
    Connected();
    Pull();
    PlugIn();
    ASSERT_TRUE(Finish());
    Pull();
    EXPECT_EQ(dialogs.errors.size(), 2u);
    PlugIn();
    ASSERT_TRUE(Finish());
    EXPECT_TRUE(State().Connected);
}

}  // namespace
}  // namespace marisonde
