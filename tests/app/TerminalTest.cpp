#include "WindowFixture.h"

namespace marisonde {
namespace {

using simulator::Model;

class TerminalTest : public WindowFixture {
  protected:
    std::unique_ptr<DataWindow> Stopped(Model model) {
        simulator::Options options;
        options.powerOn = simulator::PowerOn::Stopped;
        return Simulated(model, options);
    }
    /// Types a line at the speed of a user, one key every two ticks.
    void Type(DataWindow& window, const std::string& keys) {
        for (const char key : keys) {
            EXPECT_TRUE(window.Terminal.KeyPress(key));
            Run(window, 2 * kTick);
        }
    }
    static std::string Replies(const DataWindow& window) { return window.Terminal.Response_Box().Text(); }
    static std::string Data(const DataWindow& window) { return window.Terminal.Data_Box().Text(); }
    static std::string LastDataLine(const DataWindow& window) {
        const std::string text = Data(window);
        if (text.size() < 3) return "";
        const std::size_t begin = text.rfind('\n', text.size() - 3);
        return text.substr(begin + 1, text.size() - begin - 3);
    }
};

TEST_F(TerminalTest, TypedCommandIsEchoedAndAnswered) {
    const auto window = Stopped(Model::Corvane4);
    Run(*window, std::chrono::seconds(1));
    window->Terminal.ResponseClear();
    Type(*window, "VE");
    EXPECT_EQ(Replies(*window), "VE");
    Type(*window, "R\r");
    Run(*window, std::chrono::seconds(1));
    EXPECT_TRUE(Replies(*window).starts_with("VER\r\n")) << Replies(*window);
    EXPECT_NE(Replies(*window).find("1.85"), std::string::npos);
    EXPECT_EQ(window->Link.State.FirmwareVersion, "1.85") << "the reply counts as the program's own";
}

TEST_F(TerminalTest, ATypedCommandCanBeCorrected) {
    const auto window = Stopped(Model::Corvane4);
    Run(*window, std::chrono::seconds(1));
    window->Terminal.ResponseClear();
    Type(*window, "VEX\b");
    EXPECT_EQ(Replies(*window), "VE");
    EXPECT_EQ(window->Terminal.Command_Box().Text(), "VE");
    Type(*window, "R\r");
    Run(*window, std::chrono::seconds(1));
    EXPECT_TRUE(Replies(*window).starts_with("VER\r\nFirmware version 1.85\r")) << Replies(*window);
    EXPECT_EQ(window->Link.State.FirmwareVersion, "1.85");
}

TEST_F(TerminalTest, TypedDirFillsTheDirectoryQueue) {
    const auto window = Stopped(Model::Corvane4);
    window->Link.State.GotDirEnd = true;
    Type(*window, "dir\r");
    Run(*window, std::chrono::seconds(5));
    EXPECT_GT(window->Link.State.DirQueue.size(), 0);
}

TEST_F(TerminalTest, CarriageReturnWakesASleepingInstrument) {
    const auto window = Stopped(Model::Corvane4);
    Type(*window, "SLEEP\r");
    Run(*window, std::chrono::seconds(3));
    ASSERT_EQ(window->Link.State.InstState, InstStateCode::Sleeping);
    Type(*window, "\r");
    Run(*window, std::chrono::seconds(5));
    EXPECT_NE(window->Link.State.InstState, InstStateCode::Sleeping);
    EXPECT_NE(Replies(*window).find("Turning on"), std::string::npos) << Replies(*window);
}

TEST_F(TerminalTest, StopTypedIntoRunningDataStops) {
    const auto window = Simulated(Model::NTidal, {});
    Run(*window, std::chrono::seconds(3));
    EXPECT_NE(Data(*window), "");
    Type(*window, "STOP\r");
    Run(*window, std::chrono::seconds(3));
    EXPECT_EQ(window->Link.State.InstState, InstStateCode::Stopped);
    EXPECT_NE(Replies(*window).find("topped"), std::string::npos) << Replies(*window);
}

TEST_F(TerminalTest, DataAreKeptApartAsTheyCame) {
    for (int code = 0; code < 10; ++code) {
        const auto window = Simulated(static_cast<Model>(code), {});
        Run(*window, std::chrono::seconds(20));
        EXPECT_GT(window->Link.State.Counted.samples, 0);
        EXPECT_NE(Data(*window).find(window->Link.State.LastLine), std::string::npos) << "model " << code;
        EXPECT_EQ(Replies(*window).find('*'), std::string::npos) << Replies(*window);
        EXPECT_LE(Data(*window).size(), Termulator::kMaxData);
    }
}

TEST_F(TerminalTest, ValuesAreThoseOfTheWindow) {
    const auto corvane = Simulated(Model::Corvane2, {});
    corvane->Terminal.Numerical = true;
    Run(*corvane, std::chrono::seconds(5));
    const CalibratedSample& c = corvane->Link.State.CurrentSample;
    // Time 19, three counts of 6, three gains of 2, then values of 11.
    const std::string line = LastDataLine(*corvane);
    ASSERT_GT(line.size(), 43U + 44U) << line;
    EXPECT_EQ(line.substr(43, 11), PadRight(FixedText(c.bb[0], 5), 11));
    EXPECT_EQ(line.substr(54, 11), PadRight(FixedText(c.bb[1], 5), 11));
    EXPECT_EQ(line.substr(76, 11), PadRight(FixedText(c.Depth, 2), 11));
    EXPECT_EQ(line.substr(87), FixedText(c.Temp, 2));

    corvane->Plot.SigmaOption = SigmaChoice::NoSigma;
    Run(*corvane, std::chrono::seconds(2));
    EXPECT_EQ(LastDataLine(*corvane).substr(43, 11),
              PadRight(FixedText(corvane->Link.State.CurrentSample.bbUncorr[0], 5), 11));

    const auto tidal = Simulated(Model::LTidal, {});
    tidal->Terminal.Numerical = true;
    Run(*tidal, std::chrono::seconds(5));
    EXPECT_TRUE(
        LastDataLine(*tidal).starts_with("a = " + FixedText(tidal->Link.State.CurrentSample.a, 5) + " "))
        << LastDataLine(*tidal);
}

TEST_F(TerminalTest, HeadingsComeWithTheValuesAndGoWithThem) {
    const auto window = Simulated(Model::Corvane2, {});
    Run(*window, std::chrono::seconds(5));
    EXPECT_EQ(window->Terminal.Headings(), "");
    window->Terminal.Numerical = true;
    window->Terminal.DataClear();
    Run(*window, std::chrono::seconds(5));
    const std::string headings = window->Terminal.Headings();
    EXPECT_NE(headings.find(window->Link.CalData.Channel(1).name), std::string::npos) << headings;
    EXPECT_NE(headings.find("Depth, m"), std::string::npos);
    // Saved text is read without the form.
    const std::string saved = window->Terminal.TextToSave();
    const std::size_t end = headings.find('\n');
    EXPECT_NE(saved.find(headings.substr(0, end) + "\r\n" + headings.substr(end + 1) + "\r\n" +
                         Data(*window).substr(0, 10)),
              std::string::npos)
        << saved;
    window->Terminal.Numerical = false;
    Run(*window, kTick);
    EXPECT_EQ(window->Terminal.Headings(), "");
}

TEST_F(TerminalTest, WithoutACalibrationLinesStayAsTheyCame) {
    const auto window = Simulated(Model::Corvane2, {});
    window->Terminal.Numerical = true;
    window->Link.State.CalReady = false;
    Run(*window, std::chrono::seconds(5));
    EXPECT_EQ(LastDataLine(*window), window->Link.State.LastLine);
}

TEST_F(TerminalTest, BeamSensorsShowTheirLines) {
    const auto window = Simulated(Model::Delph4, {});
    window->Terminal.Numerical = true;
    Run(*window, std::chrono::seconds(5));
    EXPECT_EQ(LastDataLine(*window), window->Link.State.LastLine);
}

TEST_F(TerminalTest, ALostPortTakesNoKeysAndKeepsTheText) {
    const auto window = Scripted(Model::Corvane4);
    port->Queue("ready\r\n");
    Run(*window, kTick);
    port->Vanish();
    Run(*window, kTick);
    EXPECT_FALSE(window->Terminal.KeyPress('I'));
    EXPECT_EQ(Replies(*window), "ready\r");
}

TEST_F(TerminalTest, TypingRacesNoCommandOfAnotherWindow) {
    const auto first = Stopped(Model::Corvane4);
    const auto second = Stopped(Model::Delph4);
    Type(*first, "VER");
    EXPECT_EQ(second->Terminal.Command_Box().Text(), "");
    Run(*second, kTick);
    EXPECT_EQ(Replies(*second).find("VER"), std::string::npos);
}

}  // namespace
}  // namespace marisonde
