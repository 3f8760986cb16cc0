#include <algorithm>
#include <gtest/gtest.h>
#include <memory>
#include <random>
#include <utility>

#include "link/InputLoop.h"
#include "operations/Termulator.h"
#include "support/Checksum.h"
#include "support/ScriptedLine.h"

namespace marisonde {
namespace {

std::string Commas(int count) {
    std::string line = "1";
    for (int i = 0; i < count; ++i) line += ",2";
    return line;
}

class TermulatorTest : public testing::Test {
  protected:
    TermulatorTest() : link(0, clock, MakeLine()), terminal(link) {
        link.OpenPort(1, 19200);
        link.State.InstType = InstTypeCode::Corvane6;
    }
    std::unique_ptr<SerialLine> MakeLine() {
        auto line = std::make_unique<ScriptedLine>();
        port = line.get();
        return line;
    }
    /// One tick in which these bytes arrive.
    void Arrive(std::string_view bytes) {
        port->Queue(bytes);
        ProcessInput(link, scratch);
        terminal.UpdateTerm(nullptr, {});
    }
    void Type(std::string_view keys) {
        for (const char key : keys) EXPECT_TRUE(terminal.KeyPress(key));
    }
    const std::string& Replies() const { return terminal.Response_Box().Text(); }
    const std::string& Data() const { return terminal.Data_Box().Text(); }

    VirtualClock clock{40735.385671};
    ScriptedLine* port = nullptr;
    InstrumentLink link;
    LineScratch scratch;
    Termulator terminal;
};

// --- keys

TEST_F(TermulatorTest, WithoutAPortAKeyIsDropped) {
    link.ClosePort();
    EXPECT_FALSE(terminal.KeyPress('I'));
    EXPECT_FALSE(terminal.KeyPress('\r'));
    EXPECT_FALSE(terminal.Paste("ID"));
    EXPECT_EQ(terminal.Command_Box().Text(), "");
    EXPECT_EQ(link.PendingOutput, "");
    EXPECT_EQ(link.State.CurrentCommand, "");
    EXPECT_EQ(std::string(Termulator::kNotConnected),
              "No commands can be sent because no connection is active. "
              "Use the Connect command to open a connection");
}

TEST_F(TermulatorTest, KeysGoToThePortAtOnce) {
    link.PendingOutput = "STOP\r";
    Type("di");
    EXPECT_EQ(terminal.Command_Box().Text(), "di");
    EXPECT_EQ(port->TakeWritten(), "di");
    EXPECT_EQ(link.PendingOutput, "STOP\r");
    EXPECT_EQ(Replies(), "") << "the instrument echoes, not the program";
}

TEST_F(TermulatorTest, EnterMakesTheLineTheCommandWhoseReplyIsAwaited) {
    link.State.TerminalText = "old";
    link.State.ResponseLineCount = 3;
    Type("dir\r");
    EXPECT_EQ(link.State.CurrentCommand, "DIR");
    EXPECT_EQ(link.State.TerminalText, "");
    EXPECT_EQ(link.State.ResponseLineCount, 0);
    EXPECT_EQ(link.PendingOutput, "\r");
    EXPECT_EQ(port->TakeWritten(), "dir");
    EXPECT_EQ(terminal.Command_Box().Text(), "");
}

TEST_F(TermulatorTest, EnterWithAnEmptyLineSendsTheCarriageReturn) {
    link.State.CurrentCommand = "DIR";
    link.PendingOutput = "what waits";
    Type("\r");
    EXPECT_EQ(link.State.CurrentCommand, "");
    EXPECT_EQ(link.PendingOutput, "\r");
    link.SendPending();
    EXPECT_EQ(port->TakeWritten(), "\r");
}

TEST_F(TermulatorTest, ARecalledLineIsPacedAndKeptInOrder) {
    Type("GETCONFIGURATION\r");
    while (!link.PendingOutput.empty()) link.SendPending();
    port->TakeWritten();
    terminal.OlderLine();
    EXPECT_EQ(terminal.Command_Box().Text(), "GETCONFIGURATION");
    EXPECT_EQ(port->TakeWritten(), "") << "nothing goes out before the user goes on";
    Type(",1");
    link.SendPending();
    EXPECT_EQ(port->TakeWritten(), "GETCONFIGU") << "ten characters a tick";
    Type("2\r");
    EXPECT_EQ(link.State.CurrentCommand, "GETCONFIGURATION,12");
    while (!link.PendingOutput.empty()) link.SendPending();
    EXPECT_EQ(port->TakeWritten(), "RATION,12\r");
    terminal.NewerLine();
    EXPECT_EQ(terminal.Command_Box().Text(), "");
}

TEST_F(TermulatorTest, APastedLineWaitsForEnter) {
    EXPECT_TRUE(terminal.Paste("VER\nDIR"));
    EXPECT_EQ(terminal.Command_Box().Text(), "VER");
    EXPECT_EQ(port->TakeWritten(), "");
    Type("\r");
    EXPECT_EQ(link.PendingOutput, "VER\r");
    EXPECT_EQ(link.State.CurrentCommand, "VER");
}

TEST_F(TermulatorTest, WhatIsStartedByHandIsRecordedToo) {
    int asked = 0;
    link.MayStart = [&] {
        ++asked;
        return true;
    };
    for (const char* line : {"STARTDELAY,5\r", "STOP\r", "\r", "RESTART\r", "STARTNOLOG\r"}) Type(line);
    EXPECT_EQ(asked, 0);
    for (const char* line : {"start\r", "START,0\r", "START 1\r", "START0\r"}) Type(line);
    EXPECT_EQ(asked, 4);
}

// --- the box of replies

TEST_F(TermulatorTest, ResponseAddFollowsTheLastLine) {
    terminal.ResponseAdd("abc");
    EXPECT_EQ(terminal.LastLineStart(), 0U);
    terminal.ResponseAdd("d\re\rfg");
    EXPECT_EQ(Replies(), "abcd\re\rfg");
    EXPECT_EQ(terminal.LastLineStart(), 7U);
    terminal.ResponseClearLastLine();
    EXPECT_EQ(Replies(), "abcd\re\r");
    terminal.ResponseClear();
    EXPECT_EQ(Replies(), "");
    EXPECT_EQ(terminal.LastLineStart(), 0U);
}

TEST_F(TermulatorTest, ClearLastLineWithoutALineEndLeavesTheBoxAlone) {
    terminal.ResponseAdd("one line");
    terminal.ResponseClearLastLine();
    EXPECT_EQ(Replies(), "one line");
}

TEST_F(TermulatorTest, RepliesLoseTheirFirstFifthWhenTheyAreTooLong) {
    terminal.ResponseAdd(std::string(20000, 'a') + "\r");
    terminal.ResponseAdd(std::string(12766, 'b'));
    EXPECT_EQ(Replies().size(), 32767U);
    terminal.ResponseAdd("c");
    // 32768 / 5 = 6553
    EXPECT_EQ(Replies().size(), 32768U - 6553U);
    EXPECT_EQ(Replies().back(), 'c');
    EXPECT_EQ(terminal.LastLineStart(), 20001U - 6553U);
    EXPECT_EQ(Replies()[terminal.LastLineStart() - 1], '\r');
    terminal.ResponseAdd(std::string(200000, 'd'));
    EXPECT_LE(Replies().size(), Termulator::kMaxResponse);
    EXPECT_EQ(terminal.LastLineStart(), 0U);
}

TEST_F(TermulatorTest, ADataLineAloneInTheRepliesGoes) {
    for (const char* end : {"", "\r", "\r\n"}) {
        terminal.ResponseAdd(WithChecksum("*I4B10000000010000000") + end);
        terminal.ResponseRemoveDataLines();
        EXPECT_EQ(Replies(), "");
    }
    terminal.ResponseAdd(Commas(5));
    terminal.ResponseRemoveDataLines();
    EXPECT_EQ(Replies(), "");
}

TEST_F(TermulatorTest, ADataLineAtTheEndOfTheRepliesIsCutBackAndWrittenOver) {
    terminal.ResponseAdd("ready\r\n" + Commas(11) + "\r");
    terminal.ResponseRemoveDataLines();
    EXPECT_EQ(Replies(), "ready\r\n" + Commas(11));
    terminal.ResponseClearLastLine();
    EXPECT_EQ(Replies(), "ready\r");
}

TEST_F(TermulatorTest, TextStaysInTheReplies) {
    for (const char* text : {"ready", "ready\r", "ready\rsteady\r", "\r", ""}) {
        terminal.ResponseClear();
        terminal.ResponseAdd(text);
        terminal.ResponseRemoveDataLines();
        EXPECT_EQ(Replies(), text);
    }
}

// --- the box of data

TEST_F(TermulatorTest, TheDataBoxKeepsTheNewest) {
    terminal.AddLineToDataBox(std::string(4000, 'a'));
    terminal.AddLineToDataBox(std::string(999, 'b'));
    EXPECT_EQ(Data().size(), 4999U);
    terminal.AddLineToDataBox("c");
    EXPECT_EQ(Data(), std::string(3999, 'a') + std::string(999, 'b') + "c");
    terminal.AddLineToDataBox(std::string(4500, 'd'));
    EXPECT_EQ(Data(), std::string(498, 'b') + "c" + std::string(4500, 'd'));
    terminal.DataClear();
    EXPECT_EQ(Data(), "");
}

TEST_F(TermulatorTest, ATextLongerThanTheDataBoxLeavesItsEnd) {
    terminal.AddLineToDataBox("before");
    std::string text;
    for (int i = 0; text.size() < 6000; ++i) text += std::to_string(i) + " ";
    text.resize(6000);
    terminal.AddLineToDataBox(text);
    EXPECT_EQ(Data(), text.substr(1000));
}

// --- what arrives

TEST_F(TermulatorTest, RepliesAreShownLineByLine) {
    Arrive("Firmware 1.85\r\nready\r\n");
    EXPECT_EQ(Replies(), "Firmware 1.85\r\nready\r");
    EXPECT_EQ(link.State.TerminalText, "");
    Arrive("\r\nmore\r\n");
    EXPECT_EQ(Replies(), "Firmware 1.85\r\nready\r\n\r\nmore\r") << "empty lines are part of replies";
}

TEST_F(TermulatorTest, ALineInPiecesGrowsInPlace) {
    Arrive("ec");
    EXPECT_EQ(Replies(), "ec");
    Arrive("ho");
    EXPECT_EQ(Replies(), "echo");
    Arrive("\r\nYes to er");
    EXPECT_EQ(Replies(), "echo\r\nYes to er");
    EXPECT_EQ(link.State.TerminalText, "echo\r\nYes to er");
    Arrive("ase?\r\n");
    EXPECT_EQ(Replies(), "echo\r\nYes to erase?\r");
    Arrive("");
    EXPECT_EQ(Replies(), "echo\r\nYes to erase?\r");
}

TEST_F(TermulatorTest, ABackspaceOfTheEchoIsCarriedOut) {
    Arrive("ready\r\nVEX");
    EXPECT_EQ(Replies(), "ready\r\nVEX");
    Arrive("\b \b");
    EXPECT_EQ(Replies(), "ready\r\nVE");
    Arrive("\b \b\b \b\b \b");
    EXPECT_EQ(Replies(), "ready\r") << "no further than to the beginning of its line";
    Arrive("ID\b");
    EXPECT_EQ(Replies(), "ready\r\nI");
    Arrive(" \bX\b \bD\r\nModel\r\n");
    EXPECT_EQ(Replies(), "ready\r\nID\r\nModel\r");
}

TEST_F(TermulatorTest, DataOfEveryKindGoToTheDataBox) {
    std::vector<std::string> lines;
    for (const char letter : {'D', 'T', 'H', 'V', 'A', 'C', 'I'})
        lines.push_back(WithChecksum(std::string("*") + letter + std::string(180, '0')));
    for (const int commas : {5, 6, 8, 11, 12, 13, 15, 16, 19, 21, 53, 54}) lines.push_back(Commas(commas));
    for (const bool numerical : {false, true}) {
        terminal.Numerical = numerical;  // without a calibration there are no values
        for (const std::string& line : lines) {
            terminal.DataClear();
            Arrive("a reply\r\n" + line + "\r\n");
            EXPECT_EQ(Data(), line + "\r\n");
        }
    }
    const auto end = static_cast<std::ptrdiff_t>(std::count(Replies().begin(), Replies().end(), '\r'));
    EXPECT_EQ(end, static_cast<std::ptrdiff_t>(2 * lines.size())) << "one reply each";
    EXPECT_EQ(Replies().find_first_of("*,0123456789"), std::string::npos);
}

TEST_F(TermulatorTest, ADataLineWithABadChecksumIsShownAsText) {
    std::string bad = WithChecksum("*D" + std::string(56, '0'));
    bad[5] = '7';
    Arrive(bad + "\r\n");
    EXPECT_EQ(Replies(), bad + "\r");
    EXPECT_EQ(Data(), "");
}

TEST_F(TermulatorTest, DataLinesInPiecesDoNotFlickerThroughTheReplies) {
    const std::vector<std::string> lines{WithChecksum("*D" + std::string(56, '0')), Commas(53)};
    for (const std::string& line : lines) {
        for (const char c : line + "\r\n") {
            Arrive(std::string(1, c));
            // A number may be the echo of a key until its first comma.
            EXPECT_TRUE(Replies().empty() || Replies() == "1") << Replies();
        }
    }
    EXPECT_EQ(Replies(), "");
    EXPECT_EQ(Data(), lines[0] + "\r\n" + lines[1] + "\r\n");
}

TEST_F(TermulatorTest, WhileAnInstrumentSamplesNumbersAreData) {
    link.State.InstState = InstStateCode::Sampling;
    Arrive("123456");
    EXPECT_EQ(Replies(), "");
    link.State.InstState = InstStateCode::Stopped;
    Arrive("");
    EXPECT_EQ(Replies(), "123456");
}

TEST_F(TermulatorTest, TheSupplyIsToldByItsKinds) {
    // Volts: byte A 4B, 75 tenths; byte B 50, 80 tenths; the larger one.
    Arrive(WithChecksum("*H" + std::string(120, '0') + "4B50" + "000000") + "\r\n");
    EXPECT_EQ(link.State.SupplyVoltage, 8.0F);
    Arrive(WithChecksum("*I7B000000000000000000") + "\r\n");  // 123 tenths
    EXPECT_EQ(link.State.SupplyVoltage, 12.3F);
}

TEST_F(TermulatorTest, NoiseWithoutLineEndsIsToldByItsBeginning) {
    const std::string noise(200000, '#');
    Arrive(noise);
    EXPECT_EQ(Replies(), std::string(4096, '#'));
    Arrive(noise);
    EXPECT_EQ(Replies(), std::string(4096, '#'));
    Arrive("\r\n");
    EXPECT_LE(Replies().size(), Termulator::kMaxResponse);
}

TEST_F(TermulatorTest, AThousandLinesInOneTickAreAllTaken) {
    std::string chunk;
    for (int i = 0; i < 999; ++i) chunk += "line " + std::to_string(i) + "\r\n";
    Arrive(chunk);
    EXPECT_EQ(link.TermQueue.size(), 0);
    EXPECT_TRUE(Replies().starts_with("line 0\r\nline 1\r\n")) << Replies().substr(0, 40);
    EXPECT_TRUE(Replies().ends_with("\r\nline 998\r"));
}

/// What instruments send, whole, damaged and in the middle of each other.
std::string Babble(std::mt19937& random, std::size_t length) {
    const std::vector<std::string> pieces{"ready\r\n",
                                          "\r",
                                          "\n",
                                          "Yes to erase?",
                                          "stopped\r\n",
                                          "sleeping\r\n",
                                          "*",
                                          "1,2,3",
                                          ",",
                                          "12345",
                                          Commas(5) + "\r\n",
                                          Commas(11) + "\r\n",
                                          Commas(54) + "\r",
                                          "\b \b",
                                          std::string(1, '\0'),
                                          "\xff\xfe",
                                          WithChecksum("*D" + std::string(56, '0')) + "\r\n",
                                          WithChecksum("*H" + std::string(130, '1')) + "\r"};
    std::string text;
    while (text.size() < length) text += pieces[random() % pieces.size()];
    return text;
}

TEST_F(TermulatorTest, PiecesDoNotMatter) {
    std::mt19937 random(85);
    for (int round = 0; round < 200; ++round) {
        const std::string text = Babble(random, 2000);
        std::vector<std::string> results;
        for (const std::size_t piece : {std::size_t{1}, std::size_t{7}, std::size_t{400}, text.size()}) {
            terminal.ResponseClear();
            terminal.DataClear();
            link.State.InputText.Clear();
            link.State.InstState = InstStateCode::Stopped;
            for (std::size_t i = 0; i < text.size(); i += piece)
                Arrive(std::string_view(text).substr(i, piece));
            results.push_back(Replies() + "|" + Data());
        }
        for (const std::string& result : results) ASSERT_EQ(result, results.front()) << "round " << round;
    }
}

TEST_F(TermulatorTest, WhateverComesTheBoxesStayBounded) {
    std::mt19937 random(27);
    for (int tick = 0; tick < 3000; ++tick) {
        Arrive(Babble(random, 1 + random() % 3000));
        if (random() % 4 == 0) terminal.KeyPress(static_cast<char>(random() % 256));
        if (random() % 50 == 0) terminal.ResponseClear();
        link.PendingOutput.clear();
        ASSERT_LE(Replies().size(), Termulator::kMaxResponse);
        ASSERT_LE(Data().size(), Termulator::kMaxData);
        ASSERT_LE(terminal.LastLineStart(), Replies().size());
        if (terminal.LastLineStart() > 0) {
            ASSERT_EQ(Replies()[terminal.LastLineStart() - 1], '\r');
        }
    }
}

TEST_F(TermulatorTest, BothBoxesAreSaved) {
    EXPECT_EQ(terminal.TextToSave(), "");
    Arrive("ready\r\n");
    EXPECT_EQ(terminal.TextToSave(), "ready\r\n");
    Arrive(Commas(5) + "\r\nask?");
    EXPECT_EQ(terminal.TextToSave(), "ready\r\nask?\r\n\r\n" + Commas(5) + "\r\n");
    terminal.ResponseClear();
    EXPECT_EQ(terminal.TextToSave(), Commas(5) + "\r\n");
}

TEST_F(TermulatorTest, TheChoiceOfValuesIsHiddenForBeamSensors) {
    for (int code = 0; code < kInstTypeCount; ++code) {
        link.State.InstType = static_cast<InstTypeCode>(code);
        EXPECT_EQ(terminal.OffersNumerical(), code < 6 || code == 10) << code;
    }
}

}  // namespace
}  // namespace marisonde
