#include "ConnectFixture.h"
#include "app/ConnectAgain.h"
#include "link/Commands.h"

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
    /// What the raw file holds, as far as it is written.
    std::string RawFile() const { return TestFolder::Read(window->Files.State().rawTemporary); }
    /// Lets the talker say a line as soon as its port is open again.
    void SayOnceOpen(const std::string& line) {
        for (int tick = 0; tick < 100 && !talker->open; ++tick) Tick();
        Tick();
        talker->Say(Lines{line});
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
        "Another instrument (Delph-4 D4080199) answers on port 3 in place of Delph-4 D4080102.  The "
        "connection is closed.  Use Connect to work with it.  The data of D4080102 are kept, and nothing was "
        "added to them.");
    EXPECT_TRUE(window->Files.AnyOpen());
    EXPECT_EQ(State().InstModelName, "Delph-4");
    EXPECT_EQ(State().InstSerial, "D4080102");
}

TEST_F(PulledCable, NothingOfAnotherModelGetsIntoTheFiles) {
    Connected();
    talker->Say(Lines{"100.00,1,2,3,4,5,6,7,8"});
    TickFor(1s);
    Pull();
    const std::string before = RawFile();
    EXPECT_NE(before.find("100.00,1,2,3,4,5,6,7,8\r\n"), std::string::npos);
    TeachModel(*talker, Model::Fathom2);
    PlugIn();
    SayOnceOpen("200.00,1,2,3,4,5,6,7,8");
    ASSERT_TRUE(Finish());
    TickFor(1s);
    EXPECT_EQ(RawFile(), before);
    ASSERT_EQ(dialogs.errors.size(), 2u);
    EXPECT_EQ(dialogs.errors[1].substr(0, 45), "Another instrument (Fathom-2 FA070803) answer");
}

/// The cable of an instrument with unsaved data ends in another one, which the user connects.
class AnotherInstrument : public PulledCable {
  protected:
    void ConnectAnother() {
        Connected();
        talker->Say(Lines{"100.00,1,2,3,4,5,6,7,8"});
        TickFor(1s);
        Pull();
        TeachModel(*talker, Model::Fathom2);
        PlugIn();
        ASSERT_TRUE(Finish());
        connector->Form_Load();
        connector->SelectBaud(19200);
        ASSERT_TRUE(ConnectAndFinish());
        ASSERT_TRUE(State().Connected);
        dialogs.errors.clear();
    }
    [[nodiscard]] std::string KeptRaw() const {
        for (const std::string& name : TestFolder::Names(app.safePlaces.best))
            if (name.ends_with(" 0.raw")) return (app.safePlaces.best / name).string();
        return "";
    }
    void ExpectTwoRecordings(const std::string& line) {
        ASSERT_EQ(dialogs.errors.size(), 1u);
        const std::string kept = KeptRaw();
        const std::string keptDat = kept.substr(0, kept.size() - 3) + "dat";
        EXPECT_EQ(dialogs.errors[0], "The data of Delph-4 D4080102 were not saved yet.  They are kept in\n" +
                                         kept + "\n" + keptDat +
                                         "\nWhat Fathom-2 FA070803 sends is recorded in new files.");
        const std::string before = TestFolder::Read(kept);
        EXPECT_NE(before.find("100.00,1,2,3,4,5,6,7,8\r\n"), std::string::npos);
        EXPECT_EQ(before.find(line), std::string::npos);
        const std::string after = RawFile();
        EXPECT_NE(after.find("DeviceType=Fathom-2\r\n"), std::string::npos);
        EXPECT_NE(after.find(line + "\r\n"), std::string::npos);
        EXPECT_EQ(after.find("100.00,1"), std::string::npos);
    }
};

TEST_F(AnotherInstrument, GetsNewFilesWhenItIsStarted) {
    ConnectAnother();
    EXPECT_EQ(KeptRaw(), "") << "nothing moves as long as the other one is silent";
    SendCommand("START", window->Link);
    talker->Say(Lines{"300.00,1,2,3,4,5,6,7,8"});
    TickFor(1s);
    ExpectTwoRecordings("300.00,1,2,3,4,5,6,7,8");
}

TEST_F(AnotherInstrument, GetsNewFilesWhenItIsSamplingAlready) {
    ConnectAnother();
    talker->Say(Lines{"300.00,1,2,3,4,5,6,7,8"});
    TickFor(1s);
    ExpectTwoRecordings("300.00,1,2,3,4,5,6,7,8");
}

TEST_F(AnotherInstrument, GetsNewFilesInPlaceOfSavedOnes) {
    ConnectAnother();
    ASSERT_FALSE(window->Files.SaveCopy(DataFileKind::Raw, folder / "first.raw"));
    ASSERT_FALSE(window->Files.SaveCopy(DataFileKind::Dat, folder / "first.dat"));
    talker->Say(Lines{"300.00,1,2,3,4,5,6,7,8"});
    TickFor(1s);
    EXPECT_TRUE(dialogs.errors.empty());
    EXPECT_EQ(KeptRaw(), "");
    EXPECT_NE(TestFolder::Read(folder / "first.raw").find("100.00,1,2,3,4,5,6,7,8\r\n"), std::string::npos);
    EXPECT_NE(RawFile().find("300.00,1,2,3,4,5,6,7,8\r\n"), std::string::npos);
}

TEST_F(AnotherInstrument, WaitsForTheUserWhereNothingCanBeKept) {
    ConnectAnother();
    TestFolder::Write(folder / "file", "no folder");
    app.safePlaces = {folder / "file" / "best", folder / "file" / "second"};
    const std::string before = RawFile();
    talker->Say(Lines{"300.00,1,2,3,4,5,6,7,8", "301.00,1,2,3,4,5,6,7,8"});
    TickFor(1s);
    ASSERT_EQ(dialogs.errors.size(), 1u) << "told once";
    EXPECT_EQ(dialogs.errors[0],
              "What the instrument sends from now on is shown but not recorded, because data recorded before "
              "are not saved yet:\n" +
                  window->WhereDataAre() + "\nSave them, then start the instrument again.");
    EXPECT_EQ(RawFile(), before);

    ASSERT_FALSE(window->Files.SaveCopy(DataFileKind::Raw, folder / "first.raw"));
    ASSERT_FALSE(window->Files.SaveCopy(DataFileKind::Dat, folder / "first.dat"));
    SendCommand("START", window->Link);
    talker->Say(Lines{"400.00,1,2,3,4,5,6,7,8"});
    TickFor(1s);
    EXPECT_EQ(dialogs.errors.size(), 1u);
    EXPECT_NE(RawFile().find("400.00,1,2,3,4,5,6,7,8\r\n"), std::string::npos);
}

TEST_F(PulledCable, WhatTheSameInstrumentSaysBeforeItIsKnownIsRecordedToo) {
    Connected();
    Pull();
    PlugIn();
    SayOnceOpen("150.00,1,2,3,4,5,6,7,8");
    TickFor(500ms);
    EXPECT_EQ(RawFile().find("150.00"), std::string::npos);
    ASSERT_TRUE(Finish());
    TickFor(1s);
    EXPECT_TRUE(State().Connected);
    EXPECT_NE(RawFile().find("150.00,1,2,3,4,5,6,7,8\r\n"), std::string::npos);
}

TEST_F(PulledCable, ASearchPastOtherInstrumentsLeavesTheFilesAlone) {
    Connected();
    const std::string before = RawFile();
    Talker& other = ports.Add(1);
    app.prefs.Port = 1;  // where a search begins
    connector->Form_Load();
    PressSearch();
    for (int tick = 0; tick < 100; ++tick) {
        other.waiting += "*T00112233\r\n";
        Tick();
    }
    connector->Cancel_Click();
    ASSERT_TRUE(Finish());
    TickFor(1s);
    EXPECT_EQ(RawFile(), before);
}

TEST_F(PulledCable, AnAdapterUnderAnotherNumberIsKnownByItsSerial) {
    Connected();
    Pull();
    Talker& elsewhere = ports.Add(5);
    TeachModel(elsewhere, Model::Delph4);
    ASSERT_TRUE(Finish());
    EXPECT_TRUE(State().Connected);
    EXPECT_EQ(State().PortNumber, 5);
    EXPECT_EQ(dialogs.errors.size(), 1u);
}

TEST_F(PulledCable, AHubMayBringAdaptersBackUnderEachOthersNumbers) {
    Connected();
    Pull();
    TeachModel(ports.Add(5), Model::Delph4);
    talker->replies["ID"][2] = "S/N: D4080199";
    ports.serials[3] = "B7";
    PlugIn();
    ASSERT_TRUE(Finish());
    EXPECT_TRUE(State().Connected);
    EXPECT_EQ(State().PortNumber, 5);
    EXPECT_EQ(talker->heard, "") << "another instrument is not disturbed";
    EXPECT_EQ(dialogs.errors.size(), 1u);
}

TEST_F(PulledCable, AnotherAdapterOnItsNumberIsNotTried) {
    Connected();
    Pull();
    ports.serials[3] = "B7";
    PlugIn();
    TickFor(1min);
    EXPECT_FALSE(State().Connected);
    EXPECT_EQ(talker->heard, "");
    ports.serials[3] = "A5";
    ASSERT_TRUE(Finish());
    EXPECT_TRUE(State().Connected);
}

TEST_F(PulledCable, AdaptersWithoutSerialAreKnownByTheirNumber) {
    ports.serials[3] = "";
    Connected();
    Pull();
    ports.serials[5] = "";
    TeachModel(ports.Add(5), Model::Delph4);
    TickFor(1min);
    EXPECT_FALSE(State().Connected);
    EXPECT_EQ(ports.talkers[5]->heard, "");
    PlugIn();
    ASSERT_TRUE(Finish());
    EXPECT_TRUE(State().Connected);
    EXPECT_EQ(State().PortNumber, 3);
}

TEST_F(PulledCable, TheDeviceIsLookedForEverySecond) {
    Connected();
    talker->gone = true;
    Tick();  // told, and looked for at once
    ASSERT_EQ(dialogs.errors.size(), 1u);
    PlugIn();
    const std::size_t opened = talker->openedPorts.size();
    TickFor(950ms);
    EXPECT_EQ(talker->openedPorts.size(), opened);
    Tick();
    EXPECT_EQ(talker->openedPorts.size(), opened + 1);
}

TEST_F(PulledCable, ASilentInstrumentIsLeftAloneFor5Seconds) {
    Connected();
    talker->replies.erase("ID");
    talker->gone = true;
    Tick();
    PlugIn();
    TickFor(1s);
    const std::size_t opened = talker->openedPorts.size();
    // 3 s of silence, and then the pause.
    TickFor(3s + 4950ms);
    EXPECT_EQ(talker->openedPorts.size(), opened);
    Tick();
    EXPECT_EQ(talker->openedPorts.size(), opened + 1);
}

TEST_F(PulledCable, OtherAdaptersAreNotTried) {
    for (const bool twins : {false, true}) {
        dialogs.errors.clear();
        operations = MakeOperations();
        window.reset();
        ports.talkers.clear();
        Connected();
        Pull();
        for (const int port : {5, 6}) {
            TeachModel(ports.Add(port), Model::Delph4);
            ports.serials[port] = twins ? "A5" : "B" + std::to_string(port);
        }
        TickFor(1min);
        EXPECT_FALSE(State().Connected) << twins;
        EXPECT_EQ(ports.talkers[5]->heard, "") << twins;
        EXPECT_EQ(ports.talkers[6]->heard, "") << twins;
    }
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
