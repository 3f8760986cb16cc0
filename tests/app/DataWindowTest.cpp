#include <algorithm>
#include <cerrno>
#include <sstream>

#include "app/DataWindow.h"
#include "app/WindowFixture.h"
#include "link/Commands.h"
#include "support/Checksum.h"

namespace marisonde {
namespace {

using simulator::Model;

class DataWindowTest : public WindowFixture {
  protected:
    std::string RawText(const DataWindow& window) {
        return TestFolder::Read(window.Files.State().rawTemporary);
    }
    std::string DatText(const DataWindow& window) {
        return TestFolder::Read(window.Files.State().datTemporary);
    }

    /// One "*T" line of the Corvane-6, as its simulated instrument sends it.
    std::string SampleLine() {
        simulator::Options options;
        options.extraEvery = 0;
        const auto instrument = simulator::MakeInstrument(Model::Corvane6, options);
        instrument->RunUntil(Millis(3000));
        const std::string text = instrument->TakeOutput(Millis(6000));
        return text.substr(0, text.find('\r'));
    }
    /// A "*D" line with the same count in each slot.
    static std::string PlainLine(const std::string& time) {
        return WithChecksum("*D" + time + std::string(32, '1') + "11111111" + "0000" + "32" + "00");
    }
    static void QueueLines(DataWindow& window, const std::string& line, int count) {
        for (int i = 0; i < count; ++i) window.Link.DataLineQueue.Add(line);
    }
    void QueueLines(DataWindow& window, int count) { QueueLines(window, SampleLine(), count); }
};

long CountLines(const std::string& text) {
    return std::count(text.begin(), text.end(), '\n');
}

class EveryModel : public DataWindowTest, public testing::WithParamInterface<int> {};

TEST_P(EveryModel, SamplesBecomeValuesCurvesAndFiles) {
    const auto model = static_cast<Model>(GetParam());
    const auto window = Simulated(model, {});
    Run(*window, std::chrono::seconds(60));
    const DataWindowState& state = window->Link.State;
    EXPECT_EQ(state.InstState, InstStateCode::Sampling);
    EXPECT_GT(state.Counted.samples, 20);
    EXPECT_EQ(state.Counted.badChecksums, 0);
    EXPECT_EQ(window->Chart.ChartGroups(1).LastPoint(), state.Counted.samples);
    window->Files.FlushIfDue(clock.Steady() + std::chrono::seconds(1));
    EXPECT_EQ(CountLines(BehindHeader(DatText(*window), "[Data]")), state.Counted.samples);
    EXPECT_TRUE(dialogs.errors.empty()) << dialogs.errors.front();
}

TEST_P(EveryModel, RawLogHoldsEveryByteOfAnHour) {
    const auto model = static_cast<Model>(GetParam());
    const auto window = Simulated(model, {});
    const auto twin = simulator::MakeInstrument(model);
    std::string sent;
    for (int second = 0; second < 3600; ++second) {
        for (int tick = 0; tick < 20; ++tick) {
            clock.AdvanceBy(kTick);
            window->Tick();
        }
        const Millis now = std::chrono::seconds(second + 1);
        twin->RunUntil(now);
        sent += twin->TakeOutput(now);
    }
    window->Files.FlushIfDue(clock.Steady() + std::chrono::seconds(1));
    const std::string logged = BehindHeader(RawText(*window), "[EndHeader]");
    ASSERT_GT(sent.size(), 30000U);
    EXPECT_EQ(logged.size(), sent.size());
    EXPECT_TRUE(logged == sent);
}

INSTANTIATE_TEST_SUITE_P(Models, EveryModel, testing::Range(0, 10));

TEST_F(DataWindowTest, ShowsTheWaterThatTheInstrumentIsIn) {
    const auto window = Simulated(Model::Corvane6, {});
    auto& line = dynamic_cast<SimulatedLine&>(window->Link.Line());
    Run(*window, std::chrono::seconds(40));
    const simulator::Truth truth = line.Instrument().TruthAt(std::chrono::seconds(40));
    const CalibratedSample& sample = window->Link.State.CurrentSample;
    EXPECT_NEAR(sample.Depth, truth.depthM, 2.5) << "the newest line is up to a second old";
    EXPECT_NEAR(sample.Temp, truth.tempC, 0.5);
    for (std::size_t channel = 0; channel < 6; ++channel) {
        EXPECT_TRUE(sample.Valid[channel]);
        EXPECT_NEAR(sample.bb[channel], truth.bb[channel], 0.15 * truth.bb[channel] + 2e-4) << channel;
        EXPECT_FALSE(window->Plot.Readouts().DataBox[channel].View().empty());
    }
}

TEST_F(DataWindowTest, ReadoutsCutTheValueOfTheNewestSample) {
    const auto window = Simulated(Model::Corvane6, {});
    Run(*window, std::chrono::seconds(10));
    // 0.0012345 shows as 0.00123: whole part of value x 100000, divided by 100000.
    const double value = window->Link.State.CurrentSample.bb[0];
    const double shown = std::stod(std::string(window->Plot.Readouts().DataBox[0].View()));
    EXPECT_LE(shown, value);
    EXPECT_LT(value - shown, 1.0001e-5);
}

TEST_F(DataWindowTest, BadChecksumAddsNoPoint) {
    const auto window = Scripted(Model::Corvane6);
    std::string line = SampleLine();
    line.back() = line.back() == '0' ? '1' : '0';
    port->Queue(line + "\r");
    Run(*window, kTick);
    EXPECT_EQ(window->Link.State.Counted.samples, 0);
    EXPECT_EQ(window->Plot.PlotIndex(), 1);
    EXPECT_EQ(window->Link.State.Counted.badChecksums, 1);
}

TEST_F(DataWindowTest, AFifthOfTheArraysIsTakenPerTick) {
    const auto window = Scripted(Model::Corvane6);
    window->Link.DataLineQueue.MaxSize(3000);
    QueueLines(*window, 2000);
    Run(*window, kTick);
    EXPECT_EQ(window->Link.DataLineQueue.size(), 1800) << "a fifth of 1000 places";
}

TEST_F(DataWindowTest, QueueOfFiveHundredIsDrainedInOneTick) {
    const auto window = Scripted(Model::Corvane6);
    window->Link.DataLineQueue.MaxSize(3000);
    while (window->Chart.ChartGroups(1).NumPoints() < 3000) {
        QueueLines(*window, 200);
        Run(*window, kTick);
    }
    QueueLines(*window, 500);
    Run(*window, kTick);
    EXPECT_EQ(window->Link.DataLineQueue.size(), 0);
}

TEST_F(DataWindowTest, FirstBadDecodeEndsTheTickAndTheRestWaits) {
    const auto window = Scripted(Model::Corvane6);
    QueueLines(*window, 2);
    window->Link.DataLineQueue.Add("not a data line");
    QueueLines(*window, 3);
    Run(*window, kTick);
    EXPECT_EQ(window->Link.State.Counted.samples, 2);
    EXPECT_EQ(window->Link.DataLineQueue.size(), 3);
    Run(*window, kTick);
    EXPECT_EQ(window->Link.State.Counted.samples, 5);
    EXPECT_EQ(window->Link.DataLineQueue.size(), 0);
}

TEST_F(DataWindowTest, WithoutACalibrationLinesWait) {
    const auto window = Scripted(Model::Corvane6);
    window->Link.State.CalReady = false;
    QueueLines(*window, 3);
    Run(*window, kTick);
    EXPECT_EQ(window->Link.DataLineQueue.size(), 3);
}

TEST_F(DataWindowTest, SleepingInstrumentHearsOneCharacterPerTick) {
    const auto window = Scripted(Model::Corvane6);
    port->Queue("Sleeping\r\n");
    Run(*window, kTick);
    window->Link.QueueOutput("ID\r");
    for (const char* expected : {"I", "D", "\r", ""}) {
        Run(*window, kTick);
        EXPECT_EQ(port->TakeWritten(), expected);
    }
}

TEST_F(DataWindowTest, WithoutAPortNothingGoesOutAndWhatWaitsIsShown) {
    const auto window = Scripted(Model::Corvane6);
    window->Link.Line().Close();
    window->Link.QueueOutput("ID\r");
    QueueLines(*window, 2);
    Run(*window, kTick);
    EXPECT_EQ(window->Link.PendingOutput, "ID\r");
    EXPECT_EQ(window->Link.State.Counted.samples, 2);
}

TEST_F(DataWindowTest, TransferGoesToTheFileAndNotToTheGraph) {
    const auto window = Scripted(Model::Corvane6);
    QueueLines(*window, 1);
    Run(*window, kTick);
    const std::string shown(window->Plot.Readouts().DataBox[0].View());
    ASSERT_FALSE(shown.empty());
    window->Link.State.TransferActive = true;
    const std::string other = PlainLine("4E11860A");
    QueueLines(*window, other, 4);
    window->Link.DataLineQueue.Add("not a data line");
    QueueLines(*window, other, 1);
    Run(*window, kTick);
    EXPECT_EQ(window->Link.DataLineQueue.size(), 0) << "a line without a sample ends no tick";
    Run(*window, std::chrono::seconds(1));
    EXPECT_EQ(window->Plot.PlotIndex(), 2) << "the one that came before";
    EXPECT_EQ(window->Plot.Readouts().DataBox[0].View(), shown);
    EXPECT_EQ(CountLines(BehindHeader(DatText(*window), "[Data]")), 6);
    window->Link.State.TransferActive = false;
    QueueLines(*window, other, 1);
    Run(*window, kTick);
    EXPECT_NE(window->Plot.Readouts().DataBox[0].View(), shown)
        << "a live sample of the same line would show";
}

TEST_F(DataWindowTest, TransferWithoutACalibratedFileEmptiesTheQueue) {
    const auto window = Scripted(Model::Corvane6);
    window->Files.CloseDataFiles(false);
    window->Link.State.TransferActive = true;
    QueueLines(*window, 4);
    Run(*window, kTick);
    EXPECT_EQ(window->Link.DataLineQueue.size(), 0);
    EXPECT_EQ(window->Link.State.Counted.samples, 0);
}

TEST_F(DataWindowTest, SampleWithoutAClockTakesTheComputersTime) {
    const auto window = Scripted(Model::Corvane6);
    port->Queue(PlainLine("00000000") + "\r");
    Run(*window, kTick);
    EXPECT_EQ(window->Link.State.Counted.samples, 1);
    EXPECT_DOUBLE_EQ(window->Link.State.CurrentSample.Time, clock.Now());
    EXPECT_DOUBLE_EQ(window->Plot.PlotStartTime(), clock.Now());
}

TEST_F(DataWindowTest, ComputersClockMayJump) {
    const auto window = Scripted(Model::Corvane6);
    port->Queue("Stopped\r");
    Run(*window, kTick);
    clock.SetDate(30000);
    Run(*window, kTick);
    EXPECT_EQ(window->StatusText(), "Stopped") << "time limits do not follow the date";
}

TEST_F(DataWindowTest, PulledCableIsReportedOnceAndKeepsTheData) {
    const auto window = Scripted(Model::Corvane6);
    port->Queue(SampleLine() + "\r");
    Run(*window, std::chrono::seconds(1));
    port->Vanish();
    Run(*window, std::chrono::seconds(5));
    ASSERT_EQ(dialogs.errors.size(), 1U);
    EXPECT_NE(dialogs.errors[0].find("No such device"), std::string::npos);
    EXPECT_TRUE(window->Files.AnyOpen());
    EXPECT_EQ(CountLines(BehindHeader(DatText(*window), "[Data]")), 1);
}

TEST_F(DataWindowTest, DataReachTheDiskWithinASecond) {
    const auto window = Scripted(Model::Corvane6);
    port->Queue(SampleLine() + "\r");
    Run(*window, std::chrono::seconds(1));
    EXPECT_EQ(BehindHeader(RawText(*window), "[EndHeader]"), SampleLine() + "\r");
    EXPECT_EQ(CountLines(BehindHeader(DatText(*window), "[Data]")), 1);
}

TEST_F(DataWindowTest, FullDiskIsReportedOnceWhileLiveDataGoOn) {
    const auto window = Scripted(Model::Corvane6, [] { return std::make_unique<FailingOutputFile>(3000); });
    for (int i = 0; i < 300; ++i) {
        port->Queue(SampleLine() + "\r");
        Run(*window, kTick);
    }
    EXPECT_EQ(window->Link.State.Counted.samples, 300);
    EXPECT_EQ(window->Plot.PlotIndex(), 301);
    ASSERT_EQ(dialogs.errors.size(), 2U) << "the raw and the calibrated file, once each";
    for (const std::string& error : dialogs.errors)
        EXPECT_NE(error.find(std::generic_category().message(ENOSPC)), std::string::npos) << error;
}

TEST_F(DataWindowTest, StartingAgainKeepsWhatAFullDiskHasEnded) {
    const auto window = Scripted(Model::Corvane6, [] { return std::make_unique<FailingOutputFile>(3000); });
    // The files are in memory; these stand in their places.
    const auto raw = window->Files.State().rawTemporary;
    TestFolder::Write(raw, "an hour of data");
    for (int i = 0; i < 300; ++i) {
        port->Queue(SampleLine() + "\r");
        Run(*window, kTick);
    }
    ASSERT_FALSE(window->Files.AnyOpen());
    dialogs.errors.clear();
    SendCommandNow("START", window->Link);
    EXPECT_EQ(window->Link.PendingOutput, "START,0\r") << "it is shown all the same";
    EXPECT_EQ(TestFolder::Read(raw), "an hour of data");
    EXPECT_FALSE(window->Files.AnyOpen());
    EXPECT_TRUE(window->Files.HasUnsavedData());
    EXPECT_EQ(dialogs.errors,
              std::vector<std::string>{
                  "What the instrument sends from now on is shown but not recorded, because data recorded "
                  "before are not saved yet:\n" +
                  raw.string() + "\n" + window->Files.State().datTemporary.string() +
                  "\nSave them, then start the instrument again."});
}

TEST_F(DataWindowTest, StartingOpensFilesUnlessNoneAreWanted) {
    const auto window = Scripted(Model::Corvane6);
    window->Files.CloseDataFiles(false);
    SendCommandNow("STARTNOLOG", window->Link);
    EXPECT_FALSE(window->Files.AnyOpen());
    SendCommandNow("START", window->Link);
    EXPECT_TRUE(window->Files.IsOpen(DataFileKind::Raw));
    EXPECT_TRUE(window->Files.IsOpen(DataFileKind::Dat));
    const std::string rawBefore = RawText(*window);
    window->Files.WriteRaw("line\r", clock.Steady());
    SendCommandNow("START", window->Link);
    window->Files.FlushIfDue(clock.Steady() + std::chrono::seconds(1));
    EXPECT_EQ(RawText(*window), rawBefore + "line\r") << "files that are open go on";
}

TEST_F(DataWindowTest, SigmaOptionIsThatOfTheLastRun) {
    {
        const DataWindow window(app, dialogs, std::make_unique<ScriptedLine>());
        EXPECT_EQ(window.Plot.SigmaOption, SigmaChoice::SigmaCorrect);
    }
    app.prefs.Sigma = false;
    const auto window = Scripted(Model::Corvane6);
    EXPECT_EQ(window->Plot.SigmaOption, SigmaChoice::NoSigma);
    EXPECT_EQ(window->Plot.ChartContents(0, 1), PlotType::BbUncorrected);
}

TEST_F(DataWindowTest, ProposedNameIsSerialAndTimeWithoutAnExtension) {
    const auto window = Scripted(Model::Corvane6);
    // 40735.385671 is 11 July 2011; 0.385671 * 86400 = 33321.97 seconds, shown as 09:15:22.
    window->Link.CalData.Serial = "CV6/97.12";
    EXPECT_EQ(window->DefaultFileName(), "CV6_97_12 2011-07-11 091522");
    window->Link.CalData.Serial.clear();
    EXPECT_EQ(window->DefaultFileName(), "Corvane-6 2011-07-11 091522");
}

TEST_F(DataWindowTest, RemovedFolderIsReportedWhileLiveDataGoOn) {
    const auto window = Scripted(Model::Corvane6);
    std::filesystem::remove_all(folder.Path());
    for (int i = 0; i < 40; ++i) {
        port->Queue(SampleLine() + "\r");
        Run(*window, kTick);
    }
    EXPECT_EQ(window->Link.State.Counted.samples, 40);
    EXPECT_EQ(dialogs.errors.size(), 2U);
}

TEST_F(DataWindowTest, CalibrationOfAnotherModelIsNotUsed) {
    auto line = std::make_unique<ScriptedLine>();
    port = line.get();
    DataWindow window(app, dialogs, std::move(line));
    const auto path = folder / "other.cal";
    TestFolder::Write(path, simulator::MakeInstrument(Model::Delph4)->CalText());
    EXPECT_TRUE(window.LoadCalIntoWindow(path.string()));
    EXPECT_EQ(window.OpenWithoutQuery(3, 19200, InstTypeCode::Corvane6), "");
    ASSERT_EQ(dialogs.errors.size(), 1U);
    EXPECT_EQ(
        dialogs.errors[0],
        "The current calibration file type (Delph-4) does not match the detected instrument (Corvane-6).  "
        "Use the Select Calibration File command under the File menu to load a suitable calibration.");
    EXPECT_FALSE(window.Link.State.CalReady);
}

TEST_F(DataWindowTest, DataWithoutAFittingCalibrationDoNotCarryItsSerialNumber) {
    DataWindow window(app, dialogs, std::make_unique<ScriptedLine>());
    const auto path = folder / "other.cal";
    TestFolder::Write(path, simulator::MakeInstrument(Model::Delph4)->CalText());
    ASSERT_TRUE(window.LoadCalIntoWindow(path.string()));
    ASSERT_FALSE(window.Link.CalData.Serial.empty());
    ASSERT_EQ(window.OpenWithoutQuery(3, 19200, InstTypeCode::Corvane6), "");
    window.OpenDataFiles("raw", window.Link.State.CalReady);
    EXPECT_NE(RawText(window).find("DeviceType=Corvane-6\r\nDataSource=Corvane-6\r\nCalSource=Corvane-6\r\n"
                                   "Serial=\r\nConfig=\r\n[EndHeader]\r\n"),
              std::string::npos)
        << RawText(window);
    EXPECT_EQ(window.DefaultFileName(), "Corvane-6 2011-07-11 091522");
}

TEST_F(DataWindowTest, AnotherModelBeginsWithAFreshSample) {
    const auto window = Scripted(Model::Corvane6);
    port->Queue(SampleLine() + "\r");
    Run(*window, kTick);
    CalibratedSample& sample = window->Link.State.CurrentSample;
    ASSERT_TRUE(sample.Valid[5]);
    const auto path = folder / "small.cal";
    TestFolder::Write(path, simulator::MakeInstrument(Model::Corvane2)->CalText());
    ASSERT_TRUE(window->LoadCalIntoWindow(path.string()));
    EXPECT_FALSE(window->Link.State.HasSample);
    port->Queue(SampleLine() + "\r");
    Run(*window, kTick);
    EXPECT_TRUE(sample.Valid[0]);
    EXPECT_FALSE(sample.Valid[5]);
    // Series 6 carries the depth of a Corvane-2; on a Corvane-6 it is the sixth channel's.
    const ChartGroup& group = window->Chart.ChartGroups(1);
    ASSERT_EQ(group.NumSeries(), 6);
    EXPECT_EQ(group.Y(6, group.LastPoint()), static_cast<double>(sample.Depth));
}

TEST_F(DataWindowTest, ANewCalibrationOfTheSameModelKeepsTheSampleOnView) {
    const auto window = Scripted(Model::Corvane6);
    port->Queue(SampleLine() + "\r");
    Run(*window, kTick);
    ASSERT_TRUE(window->LoadCalIntoWindow((folder / "window0.cal").string()));
    EXPECT_TRUE(window->Link.State.HasSample);
}

TEST_F(DataWindowTest, PortThatCannotBeOpenedSaysWhy) {
    auto line = std::make_unique<ScriptedLine>();
    line->openFailsWith = {LineError::Kind::Busy, "Device is in use"};
    DataWindow window(app, dialogs, std::move(line));
    EXPECT_EQ(window.OpenWithoutQuery(3, 19200, InstTypeCode::Corvane6),
              "Port 3 can not be opened. Device is in use.");
    EXPECT_FALSE(window.Link.State.Connected);
}

TEST_F(DataWindowTest, APortThatCannotBeOpenedEndsTheConnectionBefore) {
    const auto window = Scripted(Model::Corvane6);
    window->Link.QueueOutput("DELCAST,3\r");
    window->Link.State.CurrentCommand = "DELCAST";
    port->openFailsWith = {LineError::Kind::Busy, "Device is in use"};
    EXPECT_NE(window->OpenWithoutQuery(4, 19200, InstTypeCode::Delph4), "");
    EXPECT_FALSE(window->Link.State.Connected);
    EXPECT_EQ(window->Link.State.PortNumber, 0);
    Run(*window, std::chrono::seconds(1));
    EXPECT_TRUE(dialogs.errors.empty()) << "the line before was closed, not lost";
    // What waited for the instrument before is not for the next one.
    port->openFailsWith = {};
    port->TakeWritten();
    EXPECT_EQ(window->OpenWithoutQuery(4, 19200, InstTypeCode::Corvane6), "");
    Run(*window, std::chrono::seconds(1));
    EXPECT_EQ(port->TakeWritten(), "");
    EXPECT_EQ(window->Link.State.CurrentCommand, "");
}

TEST_F(DataWindowTest, MissingCalibrationFileIsSaid) {
    DataWindow window(app, dialogs, std::make_unique<ScriptedLine>());
    EXPECT_FALSE(window.LoadCalIntoWindow("/nowhere/at/all.cal"));
    ASSERT_EQ(dialogs.errors.size(), 1U);
    EXPECT_EQ(dialogs.errors[0], "Could not find '/nowhere/at/all.cal'");
}

TEST_F(DataWindowTest, WindowsTakeTheLowestFreeSlot) {
    const auto make = [this] {
        return std::make_unique<DataWindow>(app, dialogs, std::make_unique<ScriptedLine>());
    };
    std::vector<std::unique_ptr<DataWindow>> windows;
    for (int i = 0; i < kMaxWindows; ++i) {
        EXPECT_EQ(app.FirstFreeWindow(), i);
        windows.push_back(make());
    }
    EXPECT_EQ(app.FirstFreeWindow(), kMaxWindows);
    windows[2].reset();
    EXPECT_FALSE(app.WindowInUse(2));
    EXPECT_EQ(app.FirstFreeWindow(), 2);
}

/// Six instruments at full rate on bad cables: one byte in a thousand has a flipped bit.
TEST_F(DataWindowTest, SixBadCablesLoseNothingAndCountNoBadLine) {
    constexpr std::array models{Model::Corvane6, Model::Corvane4, Model::Corvane2,
                                Model::LTidal,   Model::NTidal,   Model::Corvane6};
    std::vector<std::unique_ptr<DataWindow>> windows;
    std::vector<std::unique_ptr<simulator::Instrument>> twins;
    for (std::size_t i = 0; i < models.size(); ++i) {
        simulator::Options options;
        options.baud = 115200;
        options.samplesPerSecond = 190;
        options.seed = i + 1;
        options.faults.flipOneIn = 1000;
        windows.push_back(Simulated(models[i], options));
        twins.push_back(simulator::MakeInstrument(models[i], options));
    }
    std::vector<std::string> sent(models.size());
    for (int tick = 1; tick <= 10 * 60 * 20; ++tick) {
        clock.AdvanceBy(kTick);
        for (std::size_t i = 0; i < models.size(); ++i) {
            windows[i]->Tick();
            twins[i]->RunUntil(clock.Steady());
            sent[i] += twins[i]->TakeOutput(clock.Steady());
        }
    }
    for (std::size_t i = 0; i < models.size(); ++i) {
        SCOPED_TRACE(i);
        windows[i]->Files.FlushIfDue(clock.Steady() + std::chrono::seconds(1));
        EXPECT_TRUE(BehindHeader(RawText(*windows[i]), "[EndHeader]") == sent[i]);
        std::istringstream text(sent[i]);
        std::int64_t good = 0;
        for (std::string line; std::getline(text, line, '\r');) {
            if (!line.empty() && line[0] == '\n') line.erase(0, 1);
            const bool sample = line.size() > 1 && std::string("DTVAC").find(line[1]) != std::string::npos;
            if (ChecksumHolds(line) && sample) ++good;
        }
        const DataWindowState::Counts& counted = windows[i]->Link.State.Counted;
        EXPECT_GT(good, 60000);
        EXPECT_LE(counted.samples, good);
        EXPECT_GE(counted.samples + windows[i]->Link.DataLineQueue.size(), good - 1);
        EXPECT_GT(counted.badChecksums, 1000);
    }
}

}  // namespace
}  // namespace marisonde
