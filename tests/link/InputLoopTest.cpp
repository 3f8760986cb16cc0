#include <array>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

#include "common/Clock.h"
#include "link/InputLoop.h"
#include "link/InstrumentLink.h"
#include "support/Checksum.h"
#include "support/ScriptedLine.h"

namespace marisonde {
namespace {

/// A Corvane line with all counts 0: 8 digits of time, 32 of counts, 8 gains, pressure, temperature, error.
std::string SampleLine(const std::string& time = "4E11860A") {
    return WithChecksum("*D" + time + std::string(32, '0') + "11111111" + "0000" + "32" + "00");
}

std::string Repeat(const std::string& text, int times) {
    std::string all;
    for (int i = 0; i < times; ++i) all += text;
    return all;
}

std::string Commas(int count) {
    return "1" + Repeat(",1", count);
}

class InputLoopTest : public testing::Test {
  protected:
    InputLoopTest() : port_(new ScriptedLine), link_(2, clock_, std::unique_ptr<SerialLine>(port_)) {
        port_->Open(1, 19200);
        link_.OnChunk = [this](std::string_view chunk) { log_ += chunk; };
        link_.OnInstrumentMessage = [this](std::string text) { messages_.push_back(std::move(text)); };
        clock_.AdvanceBy(Millis(1000));
    }

    void Hear(std::string_view bytes) {
        port_->Queue(bytes);
        ProcessInput(link_, scratch_);
    }

    DataWindowState& State() { return link_.State; }

    VirtualClock clock_;
    ScriptedLine* port_;
    InstrumentLink link_;
    LineScratch scratch_;
    std::string log_;
    std::vector<std::string> messages_;
};

TEST_F(InputLoopTest, LineSplitOverTwoTicksIsJoined) {
    const std::string line = SampleLine();
    Hear(line.substr(0, 20));
    EXPECT_EQ(link_.DataLineQueue.size(), 0);
    EXPECT_EQ(State().InputText.Text(), line.substr(0, 20));
    EXPECT_EQ(State().InstState, InstStateCode::NoConnection);
    Hear(line.substr(20) + "\r");
    EXPECT_EQ(link_.DataLineQueue.GetNext(), line);
    EXPECT_EQ(State().InstState, InstStateCode::Sampling);
    EXPECT_TRUE(State().InputText.empty());
}

TEST_F(InputLoopTest, LineFeedBehindACarriageReturnIsDropped) {
    Hear("one\r");
    Hear("\ntwo\r\nthree\r\n");
    EXPECT_EQ(link_.TermQueue.GetNext(), "one");
    EXPECT_EQ(link_.TermQueue.GetNext(), "two");
    EXPECT_EQ(link_.TermQueue.GetNext(), "three");
    EXPECT_EQ(State().LastLine, "three");
}

TEST_F(InputLoopTest, OneLineFeedIsDroppedHoweverTheTextComes) {
    for (const char* piece : {"a\r", "\n", "\n", "b\r"}) Hear(piece);
    EXPECT_EQ(link_.TermQueue.GetNext(), "a");
    EXPECT_EQ(link_.TermQueue.GetNext(), "\nb");
    Hear("c\r\n\nd\r");
    EXPECT_EQ(link_.TermQueue.GetNext(), "c");
    EXPECT_EQ(link_.TermQueue.GetNext(), "\nd");
}

TEST_F(InputLoopTest, EveryByteGoesToTheLogAsItCame) {
    const std::string bytes = std::string("\0\xff*D\r\n\n\r", 8) + "rest";
    Hear(bytes.substr(0, 3));
    Hear(bytes.substr(3));
    EXPECT_EQ(log_, bytes);
}

TEST_F(InputLoopTest, ShutterMessagesCountBeforeTheirLineEnd) {
    Hear("Opening shutter");
    EXPECT_EQ(State().InstState, InstStateCode::OpeningShutter);
    Hear("..do");
    EXPECT_EQ(State().InstState, InstStateCode::OpeningShutter);
    Hear("ne");
    EXPECT_EQ(State().InstState, InstStateCode::OpeningShutter)
        << "the partial text still holds the first message, which wins";
    Hear("\r\nClosing shutter");
    // The complete line was read in this call, so the partial text waits for the next.
    EXPECT_EQ(State().InstState, InstStateCode::Stopped);
    Hear("");
    EXPECT_EQ(State().InstState, InstStateCode::ClosingShutter);
}

TEST_F(InputLoopTest, OtherPartialTextDoesNothing) {
    Hear("Sleeping");
    EXPECT_EQ(State().InstState, InstStateCode::NoConnection);
    Hear("\r");
    EXPECT_EQ(State().InstState, InstStateCode::Sleeping);
}

TEST_F(InputLoopTest, StartingKeepsItsSeconds) {
    Hear("Starting in 5\r\n");
    EXPECT_EQ(State().InstState, InstStateCode::Starting);
    EXPECT_EQ(State().StartsInSeconds, 5);
}

TEST_F(InputLoopTest, BadChecksumShowsInTheTerminalAndIsCounted) {
    std::string line = SampleLine();
    line.back() = line.back() == '0' ? '1' : '0';
    Hear(line + "\r" + SampleLine() + "\r");
    EXPECT_EQ(link_.TermQueue.size(), 2);
    EXPECT_EQ(link_.DataLineQueue.size(), 1);
    EXPECT_EQ(State().Counted.badChecksums, 1);
    EXPECT_EQ(State().Counted.lines, 2);
}

TEST_F(InputLoopTest, UnknownStarLineWithGoodChecksumIsNoChecksumFault) {
    Hear(WithChecksum("*Z0000") + "\r");
    EXPECT_EQ(State().Counted.badChecksums, 0);
    EXPECT_EQ(link_.DataLineQueue.size(), 0);
}

TEST_F(InputLoopTest, ReplyLinesAreKeptForTheWaitingCommandUpToTheirLimit) {
    State().CurrentCommand = "ID";
    Hear("\r\n" + Repeat("x\r", 205));
    EXPECT_EQ(State().ResponseLineCount, 200);
    EXPECT_EQ(State().ResponseLines[0], "x");
    EXPECT_EQ(State().ResponseLines[199], "x");
    EXPECT_TRUE(State().ResponseLines[200].empty());
}

TEST_F(InputLoopTest, WithoutACommandNoReplyIsKept) {
    Hear("hello\r");
    EXPECT_EQ(State().ResponseLineCount, 0);
    EXPECT_TRUE(State().LineSeen);
}

TEST_F(InputLoopTest, TerminalTextCollectsRepliesAndDropsThemAtData) {
    Hear("some reply\r\n");
    EXPECT_EQ(State().TerminalText, "some reply\r\n");
    Hear(SampleLine() + "\r");
    EXPECT_TRUE(State().TerminalText.empty());
}

TEST_F(InputLoopTest, InputBusyLastsOneTickLongerThanTheText) {
    Hear("abc");
    EXPECT_TRUE(State().InputBusy);
    State().InputText.Clear();
    Hear("");
    EXPECT_TRUE(State().InputBusy);
    Hear("");
    EXPECT_FALSE(State().InputBusy);
    EXPECT_EQ(scratch_.inputIdleCount, -1);
}

TEST_F(InputLoopTest, TimeOfInputMovesOnlyWithBytes) {
    Hear("abc\r");
    EXPECT_EQ(State().LastInputTime, Millis(1000));
    EXPECT_TRUE(State().DataArrived);
    clock_.AdvanceBy(Millis(500));
    Hear("");
    EXPECT_EQ(State().LastInputTime, Millis(1000));
}

TEST_F(InputLoopTest, FailedReadIsAnEmptyChunk) {
    port_->readsFail = true;
    Hear("abc\r");
    EXPECT_TRUE(log_.empty());
    EXPECT_FALSE(State().DataArrived);
}

TEST_F(InputLoopTest, MessageForTheUserIsShownWithTheSerial) {
    State().InstSerial = "CV060412";
    Hear("!Memory is full\r");
    ASSERT_EQ(messages_.size(), 1U);
    EXPECT_EQ(messages_[0], "Memory is full: CV060412");
}

TEST_F(InputLoopTest, MessageForTheUserChangesNoState) {
    State().InstState = InstStateCode::Sampling;
    Hear("!Logging stopped, memory full\r");
    EXPECT_EQ(messages_.size(), 1U);
    EXPECT_EQ(State().InstState, InstStateCode::Sampling);
}

TEST_F(InputLoopTest, MessageForTheUserIsALineLikeAnyOther) {
    State().CurrentCommand = "START";
    Hear("!Memory is full\r");
    EXPECT_EQ(link_.TermQueue.GetNext(), "!Memory is full");
    EXPECT_EQ(State().ResponseLines[0], "!Memory is full");
    EXPECT_TRUE(State().LineSeen);
}

TEST_F(InputLoopTest, DamagedDataLineMeansSamplingAllTheSame) {
    Hear("*D4E11\r");
    EXPECT_EQ(State().InstState, InstStateCode::Sampling);
    State().TransferActive = true;
    Hear("*\r");
    EXPECT_EQ(State().InstState, InstStateCode::Downloading);
}

TEST_F(InputLoopTest, MessageThatIsNotShownMayStillTellTheState) {
    // "transfer complete" keeps it from the user, "stopped" tells the state.
    Hear("!Stopped, transfer complete\r");
    EXPECT_TRUE(messages_.empty());
    EXPECT_EQ(State().InstState, InstStateCode::Stopped);
}

TEST_F(InputLoopTest, ReplyThatIsCollectedWholeIsNotCutIntoLines) {
    State().CurrentCommand = "LOADCFG";
    Hear("one\rtw");
    Hear("o\r");
    EXPECT_EQ(State().BinaryReceiver.BlockText, "one\rtwo\r");
    EXPECT_TRUE(State().InputText.empty());
    EXPECT_EQ(link_.TermQueue.size(), 0);
    EXPECT_EQ(State().ResponseLineCount, 0);
    EXPECT_EQ(log_, "one\rtwo\r");
}

TEST_F(InputLoopTest, ErasePromptAndTransferEndAreNoMessages) {
    State().CurrentCommand = "CLEARLOGCOMMAND";
    Hear("!Type YES to erase\r!Transfer complete\r");
    EXPECT_TRUE(messages_.empty());
}

TEST_F(InputLoopTest, AbortDuringADownloadShowsStoppedUntilTheNextDataLine) {
    State().TransferActive = true;
    Hear("Start aborted\r");
    EXPECT_EQ(State().InstState, InstStateCode::Stopped);
    EXPECT_TRUE(State().TransferActive);
    Hear(SampleLine() + "\r");
    EXPECT_EQ(State().InstState, InstStateCode::Downloading);
}

TEST_F(InputLoopTest, EndOfCastIsFoundInTheText) {
    State().TransferActive = true;
    Hear("End of ca");
    EXPECT_FALSE(State().TransferEnded);
    Hear("st");
    EXPECT_TRUE(State().TransferEnded);
}

TEST_F(InputLoopTest, EndOfCastIsFoundHoweverTheTextComes) {
    State().TransferActive = true;
    for (const std::string text : {"1,2\r\nEnd of Cast\r\n", "1,2\r\n'done\r\n"}) {
        for (std::size_t cut = 0; cut <= text.size(); ++cut) {
            State().TransferEnded = false;
            Hear(text.substr(0, cut));
            Hear(text.substr(cut));
            EXPECT_TRUE(State().TransferEnded) << text << cut;
        }
    }
}

TEST_F(InputLoopTest, EndOfCastInTheWordsOfOlderFirmware) {
    State().TransferActive = true;
    Hear("0,'Do");
    EXPECT_FALSE(State().TransferEnded);
    Hear("NE");
    EXPECT_TRUE(State().TransferEnded);
}

TEST_F(InputLoopTest, EndOfCastMeansNothingOutsideATransfer) {
    Hear("End of cast\r\n'done\r\n");
    EXPECT_FALSE(State().TransferEnded);
}

TEST_F(InputLoopTest, EndOfOneCastIsNotTheEndOfTheNext) {
    State().TransferActive = true;
    Hear(SampleLine() + "\r\nEnd of cast");
    ASSERT_TRUE(State().TransferEnded);
    State().TransferEnded = false;  // the next cast is asked for
    Hear("\r\n");
    Hear("");
    EXPECT_FALSE(State().TransferEnded);
    Hear(SampleLine() + "\r\nEnd of cast\r\n");
    EXPECT_TRUE(State().TransferEnded);
}

TEST_F(InputLoopTest, EndlessTextStaysBoundedAndTheStreamRecovers) {
    for (int i = 0; i < 100; ++i) Hear(std::string(10000, 'x'));
    EXPECT_EQ(State().InputText.Text().size(), InputBuffer::kMaxPartial);
    EXPECT_LE(State().TerminalText.size(), InputBuffer::kMaxPartial);
    EXPECT_EQ(log_.size(), 1000000U);
    Hear("\r" + SampleLine() + "\r");
    EXPECT_EQ(link_.DataLineQueue.size(), 1);
}

/// What each kind of line does on its way: a line of that kind, and where it goes.
struct KindRow {
    const char* what;
    std::string line;
    bool queued;
    bool timed;
    bool countsInTransfer;
    bool endsReplyText;
};

std::vector<KindRow> KindRows() {
    const std::string zeros(200, '0');
    return {
        {"*D", SampleLine(), true, false, true, true},
        {"*T", WithChecksum("*T" + zeros.substr(0, 58)), true, false, true, true},
        {"*H", WithChecksum("*H" + zeros.substr(0, 130)), false, true, false, true},
        {"*V", WithChecksum("*V" + zeros.substr(0, 172)), true, true, false, true},
        {"*A", WithChecksum("*A" + zeros.substr(0, 28)), true, false, true, true},
        {"*C", WithChecksum("*C" + zeros.substr(0, 28)), true, false, true, true},
        {"*I", WithChecksum("*I" + zeros.substr(0, 18)), false, true, false, true},
        {"5 commas", Commas(5), true, false, true, true},
        {"11 commas", Commas(11), true, true, true, true},
        {"12 commas", Commas(12), true, true, true, true},
        {"6 commas", Commas(6), false, false, false, false},
        {"13 commas", Commas(13), false, false, false, false},
        {"53 commas", Commas(53), true, true, false, true},
        {"54 commas", Commas(54), false, false, false, false},
        {"15 commas", Commas(15), true, true, true, true},
        {"19 commas", Commas(19), false, false, false, false},
        {"21 commas", Commas(21), false, false, false, false},
        {"8 commas", Commas(8), true, false, true, true},
        {"16 commas", Commas(16), false, false, false, false},
        {"text", "hello", false, false, false, false},
    };
}

TEST_F(InputLoopTest, EachKindOfLineGoesWhereItsRowSays) {
    for (const KindRow& row : KindRows()) {
        SCOPED_TRACE(row.what);
        link_.DataLineQueue.Clear();
        link_.TermQueue.Clear();
        State().TerminalText = "reply";
        State().LastDataTime = Millis(0);
        State().TransferActive = true;
        State().TransferLineCount = 0;
        AddLineToQueues(link_, row.line);
        EXPECT_EQ(link_.TermQueue.size(), 1);
        EXPECT_EQ(link_.DataLineQueue.size(), row.queued ? 1 : 0);
        EXPECT_EQ(State().LastDataTime, row.timed ? Millis(1000) : Millis(0));
        EXPECT_EQ(State().TransferLineCount, row.countsInTransfer ? 1 : 0);
        EXPECT_EQ(State().TerminalText.empty(), row.endsReplyText);
    }
}

TEST_F(InputLoopTest, HousekeepingIsDecodedAtOnce) {
    // Voltage byte A at position 123: hexadecimal 7B is 123, tenths of a volt.
    std::string body = "*H" + std::string(130, '0');
    body.replace(122, 2, "7B");
    AddLineToQueues(link_, WithChecksum(body));
    EXPECT_FLOAT_EQ(State().LastHousekeeping.VoltageA, 12.3F);
}

TEST_F(InputLoopTest, PiecesDoNotMatter) {
    const std::string bytes = "Turning on\r\n" + SampleLine() + "\r\n\r\n" + Commas(5) + "\rtail";
    const auto linesOf = [&](std::size_t chunk) {
        auto* port = new ScriptedLine;
        InstrumentLink link(1, clock_, std::unique_ptr<SerialLine>(port));
        port->Open(1, 19200);
        for (std::size_t i = 0; i < bytes.size(); i += chunk) {
            port->Queue(bytes.substr(i, chunk));
            ProcessInput(link, scratch_);
        }
        std::vector<std::string> lines;
        while (link.TermQueue.size() > 0) lines.push_back(link.TermQueue.GetNext());
        lines.emplace_back(link.State.InputText.Text());
        return lines;
    };
    const auto whole = linesOf(bytes.size());
    EXPECT_EQ(linesOf(1), whole);
    EXPECT_EQ(linesOf(7), whole);
    EXPECT_EQ(whole.size(), 5U);
}

// --- paced output -----------------------------------------------------------------------------------

TEST_F(InputLoopTest, SleepingInstrumentGetsOneCharacterPerTick) {
    State().InstType = InstTypeCode::Corvane6;
    State().InstState = InstStateCode::Sleeping;
    link_.QueueOutput("ID\r");
    for (const char* expected : {"I", "D", "\r", ""}) {
        link_.SendPending();
        EXPECT_EQ(port_->TakeWritten(), expected);
    }
}

TEST_F(InputLoopTest, OutputIsPacedByModelAndFirmware) {
    struct Row {
        InstTypeCode type;
        const char* firmware;
        std::size_t perTick;
    };
    const std::array rows{Row{InstTypeCode::Corvane2, "0", 10}, Row{InstTypeCode::LTidal, "2", 1},
                          Row{InstTypeCode::Delph4, "1.01", 1}, Row{InstTypeCode::Delph4, "1.02", 20},
                          Row{InstTypeCode::Unknown, "0", 1}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.firmware);
        State().InstType = row.type;
        State().FirmwareVersion = row.firmware;
        link_.PendingOutput.clear();
        link_.QueueOutput(std::string(25, 'x'));
        link_.SendPending();
        EXPECT_EQ(port_->TakeWritten().size(), row.perTick);
    }
}

TEST_F(InputLoopTest, TimeLimitsCountFromTheLastCharacterSent) {
    State().InstType = InstTypeCode::Corvane6;
    link_.QueueOutput("STOP 45678 12");
    clock_.AdvanceBy(Millis(50));
    link_.SendPending();
    EXPECT_EQ(State().CommandTime, Millis(0));
    clock_.AdvanceBy(Millis(50));
    link_.SendPending();
    EXPECT_EQ(State().CommandTime, Millis(1100));
}

TEST_F(InputLoopTest, WhatOneInstrumentSaidIsNotTakenForTheNext) {
    Hear(SampleLine() + "\r" + "*D4E11");
    ASSERT_EQ(link_.DataLineQueue.size(), 1);
    link_.OpenPort(2, 19200);
    EXPECT_EQ(link_.DataLineQueue.size(), 0);
    Hear(SampleLine("4E11860B") + "\r");
    EXPECT_EQ(link_.DataLineQueue.GetNext(), SampleLine("4E11860B")) << "not joined to the torn line before";
}

TEST_F(InputLoopTest, PortThatDoesNotOpenTakesNothingAway) {
    Hear(SampleLine() + "\r");
    port_->openFailsWith = {LineError::Kind::Busy, "Device is in use"};
    EXPECT_EQ(link_.OpenPort(2, 19200).kind, LineError::Kind::Busy);
    EXPECT_EQ(link_.DataLineQueue.size(), 1);
}

TEST_F(InputLoopTest, ClosingThePortShowsNoConnection) {
    State().Connected = true;
    State().PortNumber = 3;
    State().InstState = InstStateCode::Sampling;
    link_.ClosePort();
    EXPECT_FALSE(port_->IsOpen());
    EXPECT_FALSE(State().Connected);
    EXPECT_EQ(State().PortNumber, 0);
    EXPECT_EQ(State().InstState, InstStateCode::NoConnection);
    EXPECT_EQ(State().PrevInstState, InstStateCode::Unknown);
}

}  // namespace
}  // namespace marisonde
