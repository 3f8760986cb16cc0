#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <optional>
#include <ostream>

#include "LinkBench.h"
#include "link/CalibrationFetch.h"
#include "link/Xmodem.h"

namespace marisonde {

std::ostream& operator<<(std::ostream& out, FetchOutcome outcome) {
    constexpr std::array kNames{"Arrived", "Silent", "Cancelled", "BrokenLine", "Damaged"};
    return out << kNames[static_cast<std::size_t>(outcome)];
}

namespace {

using Lines = std::vector<std::string>;
using Fetch = QCoro::Task<FetchOutcome> (*)(Operation&, InstrumentLink&, FetchRequest);

/// An instrument that answers by a list, and echoes what it hears.
class FetchBench : public LinkBench {
  protected:
    /// Reads what the program has sent and answers each complete command.
    void Answer() {
        for (const char c : line->TakeWritten()) {
            if (xmodem && c == 'C' && heard.empty()) {
                line->Queue(frame);
                continue;
            }
            if (xmodem && c == '\x06') line->Queue(std::exchange(endOfTransfer, {}));
            if (c != '\r') {
                if (c > ' ') heard += c;
                continue;
            }
            commands.push_back(std::exchange(heard, {}));
            const auto reply = replies.find(commands.back());
            if (reply == replies.end()) continue;
            Speak(commands.back());
            for (const std::string& text : reply->second) Speak(text);
        }
    }
    void Speak(const std::string& text) {
        if (spoken++ >= mute) return;
        line->Queue(text + "\r\n");
        if (twice) line->Queue(text + "\r\n");
    }
    void Turn(Millis step = 50ms) {
        Answer();
        Tick(step);
    }
    void TurnFor(Millis time) {
        for (Millis passed{0}; passed < time; passed += 50ms) Turn();
    }
    /// Turns until the fetch is over; false after a minute.
    bool Finish() {
        for (int i = 0; i < 1200 && !outcome; ++i) Turn();
        return outcome.has_value();
    }
    /// What was sent in a run before is not answered in the next.
    void Forget() {
        heard.clear();
        line->TakeWritten();
    }
    void Begin(Fetch fetch) {
        outcome.reset();
        Forget();
        operations.Start("fetch", [this, fetch](Operation& operation) -> QCoro::Task<> {
            outcome = co_await fetch(operation, window, request);
        });
    }
    /// What every end of a fetch leaves behind.
    void ExpectTidy() {
        EXPECT_TRUE(pump.Idle());
        EXPECT_EQ(state.CurrentCommand, "");
        EXPECT_EQ(state.DumpStage, 0);
        EXPECT_FALSE(state.DumpActive);
        EXPECT_EQ(state.BinaryReceiver.BinaryActive, XmodemStage::Idle);
        EXPECT_EQ(window.ReplyCalData, nullptr);
        EXPECT_EQ(state.CalReady, outcome == FetchOutcome::Arrived);
        if (outcome != FetchOutcome::Arrived) {
            EXPECT_TRUE(window.CalData == CalibrationDataClass());
        }
    }
    void UseCorvane6() {
        Use(InstTypeCode::Corvane6);
        replies["GCF"] = {"Model: CV6", "S/N: CV060412", "Cal temp: 18.5", "Cal Time: 01/03/09 17:05:00"};
        const std::array<const char*, 8> names{"bb420", "bb510", "bb470", "bb685",
                                               "bb550", "bb700", "fl685", "fl510"};
        for (int n = 1; n <= 8; ++n)
            replies["CCL," + std::to_string(n)] = Channel(n, names[static_cast<std::size_t>(n - 1)]);
    }
    static Lines Channel(int n, const std::string& name) {
        const std::string heading =
            std::string("'Channel ").append(std::to_string(n)).append(" (").append(name).append(")");
        return {heading, "' mu: 1.5", "' G1: 1: 10: 20: 30", "' G5: 10000: 11: 21: 31"};
    }
    static Lines DelphFile() {
        return {"[General]          //Saved by Marisonde 2.85",
                "DeviceType=Delph-4",
                "Serial=D4080102",
                "",
                "[Attenuation 1]",
                "Name=c(532)",
                "Lambda=532",
                "L=0.25",
                "[End]"};
    }
    static Lines TidalFile() {
        return {"[General]", "DeviceType=l-Tidal", "Serial=LT040712", "[Scattering]", "Lambda=660",
                "Mu=3.5",    "[Attenuation]",      "Lambda=510",      "[End]"};
    }
    /// The image of an l-Tidal: serial number 7 of April 2006, 40 m.
    static std::string Image() {
        std::string image(128, '\0');
        image[0] = '\xA0';
        image[1] = 7;
        image[2] = 2;  // times 20
        image[3] =
            88;  // month 88: year floor(99 / 12) + 98 = 106, month 99 mod 12 + 1 = 4, code 10604 less 10000
        image.replace(4, 4, "unit");
        return image;
    }
    void UseXmodem(const std::string& image) {
        Use(InstTypeCode::LTidal);
        xmodem = true;
        replies["DUMPCFG"] = {};
        const int crc = XmodemCrc(image);
        frame = std::string("\x01\x01\xFE", 3) + image + static_cast<char>(crc / 256) +
                static_cast<char>(crc % 256);
        endOfTransfer = "\x04";
    }

    SigmaParams sigma;
    PureWaterParams water;
    FetchRequest request{sigma, water};
    std::vector<std::string> failures;
    Operations operations{pump, [this](const std::string& name, const std::string& why) {
                              failures.push_back(name + ": " + why);
                          }};
    std::optional<FetchOutcome> outcome;
    std::map<std::string, Lines> replies;
    Lines commands;
    std::string heard;
    int mute = 1000000;  ///< lines after which nothing is said any more
    int spoken = 0;
    bool twice = false;
    bool xmodem = false;
    std::string frame;
    std::string endOfTransfer;
};

// --- file store ----------------------------------------------------------------------------------------

TEST_F(FetchBench, TheFileStoreGivesItsWholeFile) {
    Use(InstTypeCode::Delph4);
    state.FirmwareVersion = "1.85";
    replies["sendcal"] = DelphFile();
    std::vector<std::pair<std::string, std::string>> progress;
    request.onProgress = [&](const std::string& title, const std::string& text) {
        progress.emplace_back(title, text);
    };
    window.CalData.Label = "of another instrument";
    Begin(LoadCalMultiC);
    EXPECT_EQ(state.CurrentCommand, "MULTICCAL");
    EXPECT_EQ(window.CalData.Label, "");
    ASSERT_TRUE(Finish());
    EXPECT_EQ(outcome, FetchOutcome::Arrived);
    EXPECT_EQ(window.CalData.InstType, InstTypeCode::Delph4);
    EXPECT_EQ(window.CalData.Serial, "D4080102");
    EXPECT_EQ(window.CalData.Attenuation(0).KLambda, 532);
    ASSERT_EQ(progress.size(), 1u);
    EXPECT_EQ(progress[0].first, " Loading Calibration");
    EXPECT_EQ(progress[0].second, "Loading calibration");
    ExpectTidy();
}

TEST_F(FetchBench, ACalibrationOf260LinesArrivesWhole) {
    Use(InstTypeCode::Corvane6);
    Lines file{"[General]", "DeviceType=Corvane-6", "Serial=CV060412"};
    for (int n = 1; n <= 8; ++n) {
        file.push_back("[Channel " + std::to_string(n) + "]");
        for (int k = 1; k <= 29; ++k) file.push_back("Spare" + std::to_string(k) + "=1");
        file.push_back("FlOffset5=" + std::to_string(100 + n));
    }
    file.emplace_back("[End]");
    replies["sendcal"] = file;
    Begin(LoadCalMultiC);
    ASSERT_TRUE(Finish());
    EXPECT_EQ(outcome, FetchOutcome::Arrived);
    for (int n = 1; n <= 8; ++n) EXPECT_EQ(window.CalData.Channel(n - 1).FlOffset[5], 100 + n);
    ExpectTidy();
}

TEST_F(FetchBench, AFileOfAnotherFamilyIsNotTaken) {
    Use(InstTypeCode::Delph4);
    replies["sendcal"] = TidalFile();
    Begin(LoadCalMultiC);
    ASSERT_TRUE(Finish());
    EXPECT_EQ(outcome, FetchOutcome::Damaged);
    ExpectTidy();
}

TEST_F(FetchBench, AFileWithImpossibleCharactersIsNotTaken) {
    Use(InstTypeCode::Delph4);
    replies["sendcal"] = DelphFile();
    replies["sendcal"][7] = "L=0.2\x15";
    Begin(LoadCalMultiC);
    ASSERT_TRUE(Finish());
    EXPECT_EQ(outcome, FetchOutcome::Damaged);
    ExpectTidy();
}

// --- channel by channel --------------------------------------------------------------------------------

TEST_F(FetchBench, ACorvane6GivesEightChannelsAndItsVirtualOnesAreInferred) {
    UseCorvane6();
    Lines texts;
    request.onProgress = [&](const std::string&, const std::string& text) { texts.push_back(text); };
    Begin(LoadCalGcfCcl);
    ASSERT_TRUE(Finish());
    EXPECT_EQ(outcome, FetchOutcome::Arrived);
    EXPECT_EQ(commands,
              (Lines{"GCF", "CCL,1", "CCL,2", "CCL,3", "CCL,4", "CCL,5", "CCL,6", "CCL,7", "CCL,8"}));
    EXPECT_EQ(texts[0], "Checking global data");
    EXPECT_EQ(texts[1], " Loading channel 1");
    EXPECT_EQ(texts[8], " Loading channel 8");
    EXPECT_EQ(window.CalData.Channel(7).name, "fl510");
    EXPECT_EQ(window.CalData.Channel(7).DarkOffset[5], 11);
    // bb510 and fl510 (channels 2 and 8) share a wavelength, and so do bb685 and fl685 (4 and 7).
    EXPECT_EQ(window.CalData.Channel(1).ChEx, 1);
    EXPECT_EQ(window.CalData.Channel(1).ChRep, 8);
    EXPECT_EQ(window.CalData.Channel(7).ChEx, 2);
    EXPECT_EQ(window.CalData.Channel(3).ChEx, 3);
    EXPECT_EQ(window.CalData.Channel(3).ChRep, 7);
    EXPECT_EQ(window.CalData.Channel(6).ChEx, 4);
    EXPECT_EQ(window.CalData.ChangedItems, 0);
    ExpectTidy();
}

TEST_F(FetchBench, TheSmallerCorvanesAreAskedForTheirFactorsToo) {
    for (const auto& [type, wire, count] :
         {std::tuple{InstTypeCode::Corvane4, "CV4", 4}, std::tuple{InstTypeCode::Corvane2, "CV2", 3}}) {
        Use(type);
        commands.clear();
        replies.clear();
        replies["GCF"] = {std::string("Model: ") + wire, "Cal Time: 01/03/09 17:05:00"};
        Lines expected{"GCF"};
        for (int n = 1; n <= count; ++n) {
            const std::string number = std::to_string(n);
            replies["CCL," + number] = Channel(n, "bb532");
            replies["CCF," + number] = {"'Channel " + number + " (bb532)", "' deltaLambda: 2" + number,
                                        "' ChEx: 0", "' ChRep: 0"};
            expected.push_back("CCL," + number);
            expected.push_back("CCF," + number);
        }
        Begin(LoadCalGcfCcl);
        ASSERT_TRUE(Finish());
        EXPECT_EQ(outcome, FetchOutcome::Arrived);
        EXPECT_EQ(commands, expected);
        EXPECT_EQ(window.CalData.Channel(count - 1).bDeltaLambda, 20 + count);
        ExpectTidy();
    }
}

TEST_F(FetchBench, AnotherModelOfTheFamilyIsNotTaken) {
    UseCorvane6();
    replies["GCF"][0] = "Model: CV4";
    Begin(LoadCalGcfCcl);
    ASSERT_TRUE(Finish());
    EXPECT_EQ(outcome, FetchOutcome::Damaged);
    ExpectTidy();
}

TEST_F(FetchBench, AReplyAboutAnotherChannelIsNotTaken) {
    UseCorvane6();
    replies["CCL,5"][0] = "'Channel 4 (bb550)";
    Begin(LoadCalGcfCcl);
    ASSERT_TRUE(Finish());
    EXPECT_EQ(outcome, FetchOutcome::Damaged);
    ExpectTidy();
}

TEST_F(FetchBench, WithoutAnAnswerToGcfTheFileStoreIsAskedAfter5Seconds) {
    Use(InstTypeCode::Corvane6);
    replies["sendcal"] = {"[General]", "DeviceType=Corvane-6", "Serial=CV060412", "[End]"};
    Begin(LoadCalGcfCcl);
    TurnFor(4950ms);
    EXPECT_EQ(commands, Lines{"GCF"});
    EXPECT_EQ(state.CurrentCommand, "GCF");
    Turn();
    EXPECT_EQ(state.CurrentCommand, "MULTICCAL");
    ASSERT_TRUE(Finish());
    EXPECT_EQ(outcome, FetchOutcome::Arrived);
    EXPECT_EQ(commands, (Lines{"GCF", "sendcal"}));
    ExpectTidy();
}

TEST_F(FetchBench, AnAnswerToGcfInTheLastTickOf5SecondsCounts) {
    UseCorvane6();
    const Lines answer = std::exchange(replies["GCF"], {});
    Begin(LoadCalGcfCcl);
    TurnFor(4900ms);
    Say(answer);
    Turn();
    EXPECT_TRUE(state.GotGcfReply);
    ASSERT_TRUE(Finish());
    EXPECT_EQ(outcome, FetchOutcome::Arrived);
}

TEST_F(FetchBench, ACalibrationReadForComparisonLeavesTheWindowAlone) {
    UseCorvane6();
    state.CalReady = true;
    window.CalData.Label = "mine";
    const CalibrationDataClass mine = window.CalData;
    CalibrationDataClass other;
    request.target = &other;
    request.comparing = true;
    Lines texts;
    request.onProgress = [&](const std::string&, const std::string& text) { texts.push_back(text); };
    Begin(LoadCalGcfCcl);
    ASSERT_TRUE(Finish());
    EXPECT_EQ(outcome, FetchOutcome::Arrived);
    EXPECT_EQ(texts[1], " Checking channel 1");
    EXPECT_EQ(other.Serial, "CV060412");
    EXPECT_EQ(other.Channel(0).name, "bb420");
    EXPECT_TRUE(window.CalData == mine);
    EXPECT_TRUE(state.CalReady);
    EXPECT_EQ(window.ReplyCalData, nullptr);
}

// --- Tidal dump ----------------------------------------------------------------------------------------

TEST_F(FetchBench, ATidalGivesItsImage) {
    UseXmodem(Image());
    window.TemporaryFolder = std::filesystem::temp_directory_path();
    Begin(LoadCalDump);
    ASSERT_TRUE(Finish());
    EXPECT_EQ(outcome, FetchOutcome::Arrived);
    EXPECT_EQ(window.CalData.InstType, InstTypeCode::LTidal);
    EXPECT_EQ(window.CalData.Serial, "LT060407");
    EXPECT_FLOAT_EQ(window.CalData.MaxDepth, 40);
    ExpectTidy();
    EXPECT_EQ(Sent(), "\x06power1\r");  // the end of the transfer is acknowledged before
    std::ifstream file(window.TemporaryFolder / "temp.bin", std::ios::binary);
    EXPECT_EQ((std::string{std::istreambuf_iterator<char>(file), {}}), Image());
    file.close();
    std::filesystem::remove(window.TemporaryFolder / "temp.bin");
}

TEST_F(FetchBench, AnImageThatCannotBeKeptIsUsedAllTheSame) {
    UseXmodem(Image());
    window.TemporaryFolder = "/no/such/folder";
    Lines errors;
    window.OnError = [&](std::string text) { errors.push_back(std::move(text)); };
    Begin(LoadCalDump);
    ASSERT_TRUE(Finish());
    EXPECT_EQ(outcome, FetchOutcome::Arrived);
    EXPECT_EQ(errors.size(), 1u);
}

TEST_F(FetchBench, AnImageOfNoKnownModelIsNotTaken) {
    std::string image = Image();
    image[0] = '\xB0';
    UseXmodem(image);
    Begin(LoadCalDump);
    ASSERT_TRUE(Finish());
    EXPECT_EQ(outcome, FetchOutcome::Damaged);
    ExpectTidy();
}

TEST_F(FetchBench, ATidalMayAnswerWithTextAfterItsEcho) {
    Use(InstTypeCode::LTidal);
    replies["DUMPCFG"] = TidalFile();
    Begin(LoadCalDump);
    ASSERT_TRUE(Finish());
    EXPECT_EQ(outcome, FetchOutcome::Arrived);
    EXPECT_DOUBLE_EQ(window.CalData.Channel(0).Mu, 3.5);
    EXPECT_EQ(window.CalData.Channel(0).name, "bb(660)");
    EXPECT_EQ(window.CalData.Channel(1).name, "a(510)");
    ExpectTidy();
}

TEST_F(FetchBench, ATidalMayAnswerWithTextLater) {
    Use(InstTypeCode::LTidal);
    replies["DUMPCFG"] = {};
    Begin(LoadCalDump);
    TurnFor(4s);
    ASSERT_TRUE(state.DumpActive);
    for (const std::string& text : TidalFile()) {  // in pieces that do not keep to lines
        line->Queue(text.substr(0, 3));
        Turn();
        line->Queue(text.substr(3) + "\r\n");
        Turn();
    }
    ASSERT_TRUE(Finish());
    EXPECT_EQ(outcome, FetchOutcome::Arrived);
    EXPECT_DOUBLE_EQ(window.CalData.Channel(0).Mu, 3.5);
    EXPECT_EQ(window.CalData.Serial, "LT040712");
    ExpectTidy();
}

TEST_F(FetchBench, TheImageIsAskedForEvery3SecondsUntilSilenceEndsIt) {
    Use(InstTypeCode::LTidal);
    replies["DUMPCFG"] = {};
    Begin(LoadCalDump);
    std::vector<Millis> asked;
    for (int i = 0; i < 400 && !outcome; ++i) {
        Turn();
        const std::string written = line->TakeWritten();
        if (written == "C" && state.DumpActive) asked.push_back(clock.Steady());
        line->Write(written);
    }
    EXPECT_EQ(outcome, FetchOutcome::Silent);
    ASSERT_EQ(asked.size(), 4u);  // at once, and after 3, 6 and 9 s
    for (std::size_t i = 1; i < asked.size(); ++i) EXPECT_EQ(asked[i] - asked[i - 1], 3s);
    ExpectTidy();
}

// --- every route, every way to end ---------------------------------------------------------------------

struct Route {
    const char* name;
    Fetch fetch;
    void (*prepare)(FetchBench& bench);
};
std::ostream& operator<<(std::ostream& out, const Route& route) {
    return out << route.name;
}

class Routes : public FetchBench, public testing::WithParamInterface<Route> {
  public:
    static void Store(FetchBench& bench) {
        auto& self = static_cast<Routes&>(bench);
        self.Use(InstTypeCode::Delph4);
        self.replies["sendcal"] = DelphFile();
    }
    static void Channels(FetchBench& bench) { static_cast<Routes&>(bench).UseCorvane6(); }
    static void Image(FetchBench& bench) { static_cast<Routes&>(bench).UseXmodem(FetchBench::Image()); }
    static void Text(FetchBench& bench) {
        auto& self = static_cast<Routes&>(bench);
        self.Use(InstTypeCode::LTidal);
        self.replies["DUMPCFG"] = TidalFile();
    }

  protected:
    Routes() { GetParam().prepare(*this); }
};

TEST_P(Routes, BelongsToTheFamily) {
    Begin(LoadCalFromInstrument);
    ASSERT_TRUE(Finish());
    EXPECT_EQ(outcome, FetchOutcome::Arrived);
    EXPECT_TRUE(state.CalReady);
}

TEST_P(Routes, AMuteInstrumentEndsItAfter10Seconds) {
    mute = 0;
    xmodem = false;
    Begin(LoadCalFromInstrument);
    const Millis begin = clock.Steady();
    ASSERT_TRUE(Finish());
    EXPECT_EQ(outcome, FetchOutcome::Silent);
    // A Corvane is first given the 5 s for its other route.
    EXPECT_EQ(clock.Steady() - begin, IsCorvaneFamily(state.InstType) ? 15s : 10s);
    ExpectTidy();
}

TEST_P(Routes, AByteBefore10SecondsKeepsItWaiting) {
    mute = 0;
    xmodem = false;
    Begin(GetParam().fetch);
    if (IsCorvaneFamily(state.InstType)) TurnFor(5s);
    TurnFor(9900ms);
    line->Queue("\n");
    TurnFor(9950ms);
    EXPECT_FALSE(outcome);
    TurnFor(150ms);
    EXPECT_EQ(outcome, FetchOutcome::Silent);
}

TEST_P(Routes, CutAfterAnyLineItNeverArrives) {
    int lines = 0;
    {
        Begin(GetParam().fetch);
        ASSERT_TRUE(Finish());
        lines = spoken;
    }
    for (int cut = 0; cut < lines; ++cut) {
        GetParam().prepare(*this);
        commands.clear();
        spoken = 0;
        mute = cut;
        if (xmodem) frame.clear();
        Begin(GetParam().fetch);
        ASSERT_TRUE(Finish()) << cut;
        EXPECT_EQ(outcome, FetchOutcome::Silent) << cut;
        ExpectTidy();
    }
}

TEST_P(Routes, DoubledLinesDoNoHarm) {
    Begin(GetParam().fetch);
    ASSERT_TRUE(Finish());
    const CalibrationDataClass once = window.CalData;
    GetParam().prepare(*this);
    twice = true;
    Begin(GetParam().fetch);
    ASSERT_TRUE(Finish());
    EXPECT_EQ(outcome, FetchOutcome::Arrived);
    EXPECT_TRUE(window.CalData == once);
}

TEST_P(Routes, CanBeStoppedAtAnyTick) {
    for (int how = 0; how < 3; ++how) {
        for (int ticks = 0; ticks < 40; ++ticks) {
            GetParam().prepare(*this);
            line->Open(3, 9600);
            Sent();
            state.ConnectStage = kConnecting;
            Begin(GetParam().fetch);
            for (int i = 0; i < ticks && !outcome; ++i) Turn();
            if (outcome) break;
            if (how == 0) state.ConnectStage = kConnectEnded;
            if (how == 1) operations.CancelAll();
            // What had come before the cable was pulled still counts.
            const bool whole = how == 2 && !state.CalLines.empty() && state.CalLines.back() == "[End]";
            if (how == 2) line->Vanish();
            Turn();
            ASSERT_TRUE(outcome) << ticks;
            const FetchOutcome broken = whole ? FetchOutcome::Arrived : FetchOutcome::BrokenLine;
            EXPECT_EQ(outcome, how == 2 ? broken : FetchOutcome::Cancelled) << ticks;
            ExpectTidy();
        }
    }
}

TEST_P(Routes, ClosingTheWindowEndsIt) {
    for (int ticks = 0; ticks < 10; ++ticks) {
        GetParam().prepare(*this);
        auto owner = std::make_unique<Operations>(
            pump,
            [this](const std::string& name, const std::string& why) { failures.push_back(name + why); });
        outcome.reset();
        Forget();
        owner->Start("fetch", [this](Operation& operation) -> QCoro::Task<> {
            outcome = co_await GetParam().fetch(operation, window, request);
        });
        for (int i = 0; i < ticks && !outcome; ++i) Turn();
        if (outcome) break;
        owner.reset();
        EXPECT_EQ(outcome, FetchOutcome::Cancelled);
        EXPECT_EQ(failures, Lines{});
        ExpectTidy();
    }
}

TEST_P(Routes, AStopFromBeforeEndsItAtOnce) {
    state.ConnectStage = kConnectEnded;
    Begin(GetParam().fetch);
    EXPECT_EQ(outcome, FetchOutcome::Cancelled);
    ExpectTidy();
}

INSTANTIATE_TEST_SUITE_P(All, Routes,
                         testing::Values(Route{"store", LoadCalMultiC, Routes::Store},
                                         Route{"channels", LoadCalGcfCcl, Routes::Channels},
                                         Route{"image", LoadCalDump, Routes::Image},
                                         Route{"text", LoadCalDump, Routes::Text}));

// --- smaller waits -------------------------------------------------------------------------------------

class LinkWaits : public FetchBench {
  protected:
    void Run(std::function<QCoro::Task<bool>(Operation&)> wait) {
        result.reset();
        operations.Start("wait", [this, wait](Operation& operation) -> QCoro::Task<> {
            result = co_await wait(operation);
        });
    }
    std::optional<bool> result;
};

TEST_F(LinkWaits, TheFluorescenceStateIsAwaited10Seconds) {
    const auto ask = [this](Operation& operation) { return RequestFlStatus(operation, window); };
    Run(ask);
    TurnFor(9950ms);
    EXPECT_FALSE(result);
    Turn();
    EXPECT_EQ(result, false);
    Run(ask);
    TurnFor(9900ms);
    Say({"FL status: 2"});
    Turn();
    EXPECT_EQ(result, true);
    EXPECT_EQ(state.FlStatus0, 2);
}

TEST_F(LinkWaits, TheFluorescenceStateIsAskedOfConnectedCorvanesOnly) {
    const auto ask = [this](Operation& operation) { return RequestFlStatus(operation, window); };
    Use(InstTypeCode::Delph4);
    Run(ask);
    EXPECT_EQ(result, false);
    Use(InstTypeCode::Corvane4);
    state.Connected = false;
    Run(ask);
    EXPECT_EQ(result, false);
    EXPECT_EQ(Sent(), "");
    state.Connected = true;
    Run(ask);
    operations.CancelAll();
    Turn();
    EXPECT_EQ(result, false);
}

TEST_F(LinkWaits, OutputIsAwaitedInThePortToo) {
    const auto wait = [this](Operation& operation) { return WaitForOutput(operation, window); };
    Run(wait);
    EXPECT_EQ(result, true);
    window.QueueOutput("0123456789ABC");
    line->stuckOutput = 1;
    Run(wait);
    TickFor(10min, 1s);  // no limit of its own
    EXPECT_FALSE(result);
    line->stuckOutput = 0;
    Tick();
    EXPECT_EQ(result, true);
    line->stuckOutput = 1;
    Run(wait);
    line->Vanish();
    Tick();
    EXPECT_EQ(result, false);
}

TEST_F(LinkWaits, ACommandOfAnOperationWaitsForTheConnectDialog) {
    const auto send = [this](Operation& operation) {
        return SendCommandConnected(operation, window, "ver", "");
    };
    Run(send);
    EXPECT_EQ(result, true);
    EXPECT_EQ(Sent(), "ver\r");
    state.Connected = false;
    Run(send);
    EXPECT_EQ(result, false);  // nobody can connect
    std::function<void()> closed;
    window.ShowConnectForm = [&](std::function<void()> whenClosed) { closed = std::move(whenClosed); };
    Run(send);
    Tick();
    EXPECT_FALSE(result);
    state.Connected = true;
    closed();
    Tick();
    EXPECT_EQ(result, true);
    EXPECT_EQ(Sent(), "ver\r");
    state.Connected = false;
    Run(send);
    closed();
    Tick();
    EXPECT_EQ(result, false);
    EXPECT_EQ(Sent(), "");
}

}  // namespace
}  // namespace marisonde
