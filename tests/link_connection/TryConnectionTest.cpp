#include "ConnectionBench.h"

namespace marisonde {
namespace {

constexpr const char* kSample = "*T0123456789ABCDEF";

TEST_F(ConnectionBench, AsksForTheIdentificationAtTheRate) {
    Begin(7, 38400);
    EXPECT_EQ(line->opened, std::vector<int>{7});
    EXPECT_EQ(line->rates, std::vector<int>{38400});
    EXPECT_GE(line->drops, 1);
    EXPECT_EQ(state.PortNumber, 7);
    EXPECT_EQ(state.BaudRate, 38400);
    EXPECT_EQ(state.CurrentCommand, "ID");
    // One character a tick, as long as nothing is known of what hears it: 5 characters.
    TickFor(250ms);
    EXPECT_EQ(sent, "\r\rID\r");
    EXPECT_EQ(statuses, std::vector<std::string>{" Searching"});
}

TEST_F(ConnectionBench, TheFirstLookTakesAllOfASecond) {
    replies["ID"] = CorvaneId();
    Begin();
    TickFor(950ms);
    EXPECT_TRUE(state.GotIdReply);
    EXPECT_FALSE(result);
    TickFor(50ms);
    ASSERT_TRUE(result);
    EXPECT_TRUE(result->Found());
    EXPECT_EQ(result->model, "Corvane-6");
    EXPECT_TRUE(state.Connected);
    EXPECT_EQ(state.InstType, InstTypeCode::Corvane6);
    EXPECT_EQ(state.InstSerial, "CV060412");
    EXPECT_EQ(state.InstConfig, "F2T1");
    EXPECT_EQ(state.InstId, "bench");
    EXPECT_EQ(state.FirmwareVersion, "0");
    EXPECT_EQ(state.CurrentCommand, "");
    EXPECT_EQ(statuses.back(), "Corvane-6 Found ");
    EXPECT_EQ(sent, "\r\rID\r");
}

struct ModelRow {
    const char* wire;
    const char* serial;
    InstTypeCode type;
};
class EveryModel : public ConnectionBench, public testing::WithParamInterface<ModelRow> {};

TEST_P(EveryModel, IsFoundByItsIdentification) {
    const ModelRow& row = GetParam();
    replies["ID"] = {"Identification:",
                     std::string("Model: ") + row.wire,
                     std::string("S/N: ") + row.serial,
                     "Config: T0",
                     "ID: x",
                     "Firmware: 1.85",
                     "Maximum depth: 500"};
    if (IsCorvaneFamily(row.type)) {
        replies["ID"].emplace_back("Clock: 07/04/11 09:15:22");
        replies["ID"].emplace_back("Logged casts: 3");
    }
    replies["VER"] = {"Firmware version 1.85"};
    Begin();
    ASSERT_TRUE(Finish());
    EXPECT_TRUE(result->Found());
    EXPECT_EQ(result->model, InstTypeName(row.type));
    EXPECT_EQ(state.InstType, row.type);
    EXPECT_EQ(state.InstSerial, row.serial);
    const bool asked = sent.find("VER\r") != std::string::npos;
    EXPECT_EQ(asked, !IsCorvaneFamily(row.type));
    EXPECT_EQ(state.FirmwareVersion, asked ? "1.85" : "0");
}
INSTANTIATE_TEST_SUITE_P(Models, EveryModel,
                         testing::Values(ModelRow{"CV6", "CV060412", InstTypeCode::Corvane6},
                                         ModelRow{"CV4", "V4060305", InstTypeCode::Corvane4},
                                         ModelRow{"CV2", "V2060211", InstTypeCode::Corvane2},
                                         ModelRow{"L-Tidal", "LT040712", InstTypeCode::LTidal},
                                         ModelRow{"N-Tidal", "NT050308", InstTypeCode::NTidal},
                                         ModelRow{"FATHOM-2", "FA070803", InstTypeCode::Fathom2},
                                         ModelRow{"DELPH-2", "D2070811", InstTypeCode::Delph2},
                                         ModelRow{"DELPH-4", "D4080102", InstTypeCode::Delph4},
                                         ModelRow{"DELPH-6", "D6080107", InstTypeCode::Delph6}));

TEST_F(ConnectionBench, TheShortIdentificationIsTheSerialAlone) {
    replies["ID"] = {"NT050308"};
    replies["VER"] = {"Firmware version 0.97"};
    Begin();
    ASSERT_TRUE(Finish());
    EXPECT_EQ(result->model, "n-Tidal");
    EXPECT_EQ(state.InstSerial, "NT050308");
    EXPECT_EQ(state.InstConfig, "");
}

// --- time limits -----------------------------------------------------------------------------------------

TEST_F(ConnectionBench, AnAnswerJustInsideThreeSecondsCounts) {
    Begin();
    TickFor(2900ms);
    Say(CorvaneId());
    TickFor(50ms);
    ASSERT_TRUE(result);
    EXPECT_TRUE(result->Found());
    EXPECT_EQ(endedAt, 2950ms);
}

TEST_F(ConnectionBench, NothingForThreeSecondsIsSilence) {
    Begin();
    TickFor(2950ms);
    EXPECT_FALSE(result);
    TickFor(50ms);
    ASSERT_TRUE(result);
    EXPECT_EQ(result->finding, Finding::Silent);
    EXPECT_FALSE(state.Connected);
    EXPECT_EQ(sent, "\r\rID\r");
}

TEST_F(ConnectionBench, TheFirmwareIsAwaitedForThreeSeconds) {
    replies["ID"] = DelphId();
    Begin();
    TickFor(3950ms);
    EXPECT_FALSE(result);
    Say({"Firmware version 1.85"});
    TickFor(50ms);
    ASSERT_TRUE(result);
    EXPECT_EQ(state.FirmwareVersion, "1.85");
    EXPECT_TRUE(result->Found());
}

TEST_F(ConnectionBench, WithoutFirmwareTheInstrumentIsConnectedAllTheSame) {
    replies["ID"] = DelphId();
    Begin();
    TickFor(3950ms);
    EXPECT_FALSE(result);
    TickFor(50ms);
    ASSERT_TRUE(result);
    EXPECT_TRUE(result->Found());
    EXPECT_EQ(state.FirmwareVersion, "0");
    EXPECT_EQ(state.CurrentCommand, "");
}

TEST_F(ConnectionBench, AFirmwareOfZeroIsNotKnown) {
    replies["ID"] = DelphId();
    replies["VER"] = {"Firmware version 0"};
    Begin();
    TickFor(3950ms);
    EXPECT_FALSE(result);
    TickFor(50ms);
    EXPECT_TRUE(result);
}

// --- the one retry ---------------------------------------------------------------------------------------

TEST_F(ConnectionBench, ASamplingInstrumentIsStoppedOnceAndAskedAgain) {
    Begin();
    for (int tick = 0; tick < 19; ++tick) {
        Say({kSample});
        Tick();
    }
    EXPECT_EQ(sent, "\r\rID\r");
    replies["ID"] = CorvaneId();
    Say({kSample});
    ASSERT_TRUE(Finish());
    EXPECT_TRUE(result->Found());
    EXPECT_EQ(sent, "\r\rID\rSTOP\r\rID\r");
}

TEST_F(ConnectionBench, TheSecondQuestionHasThreeSecondsOfItsOwn) {
    Begin();
    TickFor(950ms);
    Say({kSample});
    TickFor(50ms + 2950ms);
    EXPECT_FALSE(result);
    TickFor(50ms);
    ASSERT_TRUE(result);
    EXPECT_EQ(endedAt, 4000ms);
    EXPECT_EQ(result->finding, Finding::NoInstrument);
}

TEST_F(ConnectionBench, AnAnswerJustInsideTheSecondThreeSecondsCounts) {
    Begin();
    TickFor(950ms);
    Say({kSample});
    TickFor(50ms + 2900ms);
    EXPECT_FALSE(result);
    Say(CorvaneId());
    TickFor(50ms);
    ASSERT_TRUE(result);
    EXPECT_TRUE(result->Found());
    EXPECT_EQ(endedAt, 3950ms);
}

TEST_F(ConnectionBench, SomethingHeardAtTheVeryEndStillGetsItsQuestion) {
    Begin();
    TickFor(2900ms);
    Say({"Turning on"});
    TickFor(50ms);
    EXPECT_FALSE(result);
    replies["ID"] = CorvaneId();
    ASSERT_TRUE(Finish());
    EXPECT_TRUE(result->Found());
}

TEST_F(ConnectionBench, TheRetryIsUsedOnce) {
    Begin();
    for (int tick = 0; tick < 200 && !result; ++tick) {
        Say({kSample});
        Tick();
    }
    ASSERT_TRUE(result);
    EXPECT_EQ(result->finding, Finding::NoInstrument);
    EXPECT_EQ(sent, "\r\rID\rSTOP\r\rID\r");
    EXPECT_EQ(endedAt, 4000ms);
}

TEST_F(ConnectionBench, AnInstrumentThatWakesIsAskedAgain) {
    Begin();
    TickFor(100ms);
    Say({"Turning on"});
    TickFor(400ms);
    Say({"CV6 ready"});
    replies["ID"] = CorvaneId();
    ASSERT_TRUE(Finish());
    EXPECT_TRUE(result->Found());
}

TEST_F(ConnectionBench, NoiseIsNotAnInstrument) {
    Begin();
    line->Queue("\xf8\x80\xfe noise");
    ASSERT_TRUE(Finish());
    EXPECT_EQ(result->finding, Finding::NoInstrument);
    EXPECT_EQ(endedAt, 3000ms);
}

TEST_F(ConnectionBench, AModelWithoutAKnownNameIsToldByWhatItCallsItself) {
    for (const char* const name : {"X-Tidal", "Orca-9"}) {
        result.reset();
        replies["ID"] = DelphId();
        replies["ID"][1] = std::string("Model: ") + name;
        Begin();
        ASSERT_TRUE(Finish());
        EXPECT_EQ(result->finding, Finding::Unidentified);
        EXPECT_EQ(FindingText(*result), std::string(name) + " answers, a model that cannot be identified");
        EXPECT_FALSE(state.Connected);
    }
}

// --- failures and stops ----------------------------------------------------------------------------------

TEST_F(ConnectionBench, APortThatDoesNotOpenSaysWhy) {
    using Kind = LineError::Kind;
    const std::vector<std::pair<Kind, Finding>> rows{{Kind::Busy, Finding::Busy},
                                                     {Kind::Denied, Finding::Denied},
                                                     {Kind::NotFound, Finding::Missing},
                                                     {Kind::Gone, Finding::Missing},
                                                     {Kind::Other, Finding::CouldNotOpen}};
    for (const auto& [kind, finding] : rows) {
        result.reset();
        line->openFailsWith = {kind, "Because"};
        Begin();
        ASSERT_TRUE(result);
        EXPECT_EQ(result->finding, finding);
        EXPECT_EQ(result->error.text, "Because");
        EXPECT_FALSE(state.Connected);
        EXPECT_EQ(sent, "");
    }
}

/// Ends what connects at every tick of a connection that goes through all its waits.
class EveryMoment : public ConnectionBench, public testing::WithParamInterface<int> {
  protected:
    void RunTo(int ticks) {
        Begin();
        for (int tick = 0; tick < ticks && !result; ++tick) {
            if (tick == 10) Say({kSample});
            if (tick == 40) Say(DelphId());
            Tick();
        }
    }
};

TEST_P(EveryMoment, StopEndsItInOneTick) {
    RunTo(GetParam());
    ASSERT_FALSE(result);
    state.ConnectStage = kConnectEnded;
    Tick();
    ASSERT_TRUE(result);
    EXPECT_EQ(result->finding, Finding::Cancelled);
    EXPECT_FALSE(state.Connected);
    EXPECT_EQ(state.CurrentCommand, "");
    EXPECT_TRUE(pump.Idle());
}

TEST_P(EveryMoment, TheEndOfTheWindowEndsIt) {
    RunTo(GetParam());
    ASSERT_FALSE(result);
    operation_->Cancel();
    EXPECT_TRUE(operations.TurnUntilEnded(1));
    ASSERT_TRUE(result);
    EXPECT_EQ(result->finding, Finding::Cancelled);
    EXPECT_TRUE(pump.Idle());
}

TEST_P(EveryMoment, AVanishedDeviceEndsIt) {
    RunTo(GetParam());
    ASSERT_FALSE(result);
    line->Vanish();
    Tick();
    ASSERT_TRUE(result);
    EXPECT_EQ(result->finding, Finding::StoppedWorking);
    EXPECT_EQ(result->error.text, "No such device");
    EXPECT_FALSE(state.Connected);
}
INSTANTIATE_TEST_SUITE_P(Ticks, EveryMoment, testing::Range(0, 100));

// --- damage ----------------------------------------------------------------------------------------------

TEST_F(ConnectionBench, AnIdentificationCutAfterAnyLineIsNoInstrument) {
    const Lines whole = CorvaneId();
    for (std::size_t count = 0; count < whole.size(); ++count) {
        result.reset();
        replies["ID"] = Lines(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(count));
        Begin();
        ASSERT_TRUE(Finish());
        EXPECT_FALSE(result->Found()) << count << " lines";
        EXPECT_FALSE(state.Connected);
    }
}

TEST_F(ConnectionBench, EveryLineDoubledNeverHangs) {
    const Lines whole = DelphId();
    for (std::size_t doubled = 0; doubled < whole.size(); ++doubled) {
        result.reset();
        replies["ID"] = whole;
        replies["ID"].insert(replies["ID"].begin() + static_cast<std::ptrdiff_t>(doubled), whole[doubled]);
        Begin();
        ASSERT_TRUE(Finish());
        EXPECT_EQ(result->Found(), state.Connected);
    }
}

}  // namespace
}  // namespace marisonde
