#include "link/InputLoop.h"

#include <algorithm>
#include <array>

#include "common/ConversionUtils.h"
#include "decode/Decoders.h"
#include "decode/LineKind.h"
#include "decode/TextMessages.h"
#include "link/BinaryInput.h"
#include "link/BoundedText.h"
#include "link/InstrumentLink.h"

namespace marisonde {

namespace {

/// What is done with a data line of each kind; kinds without a row go to the terminal only.
struct KindAction {
    LineKind kind;
    bool queued;  ///< to DataLineQueue
    bool timed;   ///< moves LastDataTime
    bool countsInTransfer;
};

constexpr std::array kActions{
    KindAction{LineKind::CorvaneHex, true, false, true},
    KindAction{LineKind::CorvaneHexHundredths, true, false, true},
    KindAction{LineKind::CorvaneHousekeeping, false, true, false},
    KindAction{LineKind::CorvaneVerboseHex, true, true, false},
    KindAction{LineKind::LTidalHex, true, false, true},
    KindAction{LineKind::NTidalHex, true, false, true},
    KindAction{LineKind::TidalExtraHex, false, true, false},
    KindAction{LineKind::TidalShort, true, false, true},
    KindAction{LineKind::TidalFull, true, true, true},
    KindAction{LineKind::CorvaneVerbose, true, true, false},
    KindAction{LineKind::DelphFull, true, true, true},
    KindAction{LineKind::Delph, true, false, true},
};

/// An instrument that does not send its image echoes each request for it; were that an answer, the wait for
/// one would never end.
bool IsEchoOfRequest(const DataWindowState& state, std::string_view chunk) {
    return state.DumpActive && !state.BinaryReceiver.SomethingCame &&
           chunk.find_first_not_of('C') == std::string_view::npos;
}

void TakeChunk(InstrumentLink& window, std::string_view chunk) {
    DataWindowState& state = window.State;
    if (!chunk.empty()) {
        if (!IsEchoOfRequest(state, chunk)) state.LastInputTime = window.Time().Steady();
        state.DataArrived = true;
        AppendBounded(state.TerminalText, chunk, InputBuffer::kMaxPartial);
        if (window.OnChunk) window.OnChunk(chunk);
    }
    state.InputText.Append(chunk);
}

/// What instruments write behind the last line of a cast; older firmware has the second form.
constexpr std::array<std::string_view, 2> kEndsOfCast{"end of cast", "'done"};

/// Each mark counts once, when its last character comes: it may wait for its line end while the next cast
/// begins.
void WatchForEndOfCast(DataWindowState& state, std::size_t added) {
    if (!state.TransferActive) return;
    const std::string_view text = state.InputText.Text();
    for (const std::string_view mark : kEndsOfCast) {
        const std::size_t fresh = std::min(text.size(), added + mark.size() - 1);
        if (HoldsIgnoringCase(text.substr(text.size() - fresh), mark)) state.TransferEnded = true;
    }
}

/// InputBusy holds on for one tick after the text has been used up.
void UpdateInputBusy(DataWindowState& state, LineScratch& scratch) {
    if (!state.InputText.empty()) {
        scratch.inputIdleCount = 1;
        state.InputBusy = true;
    } else if (--scratch.inputIdleCount < 0) {
        scratch.inputIdleCount = -1;
        state.InputBusy = false;
    }
}

void ReadMessages(InstrumentLink& window, std::string_view line) {
    DataWindowState& state = window.State;
    if (IsMessageForUser(line, state.CurrentCommand, state.LastMessage)) {
        state.LastMessage = line;
        if (window.OnInstrumentMessage)
            window.OnInstrumentMessage(InstrumentMessageText(line, state.InstSerial));
        return;
    }
    const TextMessage message = ReadTextLine(line, state.TransferActive);
    if (message.state) state.InstState = *message.state;
    if (message.startsInSeconds) state.StartsInSeconds = *message.startsInSeconds;
}

void KeepResponse(DataWindowState& state, std::string_view line) {
    if (line.empty() || state.CurrentCommand.empty()) return;
    if (CarriesCalText(state) && state.CalLines.size() < kMaxCalLines) state.CalLines.emplace_back(line);
    if (state.ResponseLineCount >= kMaxResponseLines) return;
    state.ResponseLines[static_cast<std::size_t>(state.ResponseLineCount++)] = line;
}

void HandleLine(InstrumentLink& window, const std::string& line) {
    DataWindowState& state = window.State;
    state.LastLine = line;
    ReadMessages(window, line);
    AddLineToQueues(window, line);
    state.LineSeen = true;
    KeepResponse(state, line);
}

}  // namespace

std::string InstrumentMessageText(std::string_view line, std::string_view serial) {
    line.remove_prefix(std::min<std::size_t>(1, line.size()));
    return std::string(line) + ": " + std::string(serial);
}

void ProcessInput(InstrumentLink& window, LineScratch& scratch) {
    scratch.chunk.clear();
    window.Line().ReadAll(scratch.chunk);
    TakeChunk(window, scratch.chunk);
    DataWindowState& state = window.State;
    WatchForEndOfCast(state, scratch.chunk.size());
    if (TakeBinary(window, scratch.chunk)) return;
    UpdateInputBusy(state, scratch);
    bool completed = false;
    while (state.InputText.NextLine(scratch.line)) {
        completed = true;
        HandleLine(window, scratch.line);
    }
    if (completed) return;
    if (const auto partial = ReadPartialText(state.InputText.Text())) state.InstState = *partial;
}

void AddLineToQueues(InstrumentLink& window, std::string_view line) {
    DataWindowState& state = window.State;
    const LineKind kind = ClassifyLine(line);
    window.TermQueue.Add(line);
    ++state.Counted.lines;
    if (kind == LineKind::Other && line.size() > 1 && line[0] == '*' && !LineChecksumOk(line))
        ++state.Counted.badChecksums;
    const auto* const action = std::find_if(kActions.begin(), kActions.end(),
                                            [&](const KindAction& row) { return row.kind == kind; });
    if (action == kActions.end()) return;
    if (action->timed) state.LastDataTime = window.Time().Steady();
    if (kind == LineKind::CorvaneHousekeeping) DecodeHousekeeping(line, state.LastHousekeeping);
    if (action->queued) window.DataLineQueue.Add(line);
    if (action->countsInTransfer && state.TransferActive) ++state.TransferLineCount;
    state.TerminalText.clear();
}

}  // namespace marisonde
