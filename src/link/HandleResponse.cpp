#include "link/HandleResponse.h"

#include <algorithm>
#include <array>
#include <string>

#include "common/ConversionUtils.h"
#include "common/Numbers.h"
#include "link/Commands.h"
#include "link/DumpReply.h"
#include "link/ReplyParsers.h"
#include "link/ReplyText.h"

namespace marisonde {

namespace {

bool AnyLineHolds(DataWindowState& state, std::string_view word) {
    const auto lines = ReplyLines(state);
    return std::any_of(lines.begin(), lines.end(),
                       [&](const std::string& line) { return Holds(line, word); });
}

void HandleDelCast(InstrumentLink& window) {
    DataWindowState& state = window.State;
    bool deleted = false;
    bool asked = false;
    for (std::string& line : ReplyLines(state)) {
        if (HoldsIgnoringCase(line, "no cast") || HoldsIgnoringCase(line, "deleted")) deleted = true;
        if (!HoldsIgnoringCase(line, "yes to delete")) continue;
        window.QueueOutput("YES\r");
        line.clear();
        asked = true;
    }
    if (!deleted) return;
    state.InstState = InstStateCode::NoData;
    // While a question is open the reply is not over.
    if (!asked) state.CurrentCommand.clear();
}

void HandleFl(InstrumentLink& window) {
    constexpr int kFirstWithChannel = 100;  // nm; a lower wavelength means that the slot is not fitted
    constexpr int kSecondSlot = 7;
    DataWindowState& state = window.State;
    const bool second = window.CalData.Channel(kSecondSlot).lambda >= kFirstWithChannel;
    int found = 0;
    for (const std::string& line : ReplyLines(state)) {
        if (!Holds(line, " status")) continue;
        (found == 0 ? state.FlStatus0 : state.FlStatus1) = ToInt16(FirstNumber(line));
        if (++found < (second ? 2 : 1)) continue;
        state.ParamsReplyDone = true;
        state.CurrentCommand.clear();
        return;
    }
}

void HandleWake(InstrumentLink& window) {
    constexpr std::array<std::string_view, 6> kWords{"ready", "woke", "wak", "cv2", "cv6", "cv4"};
    for (const std::string& line : ReplyLines(window.State)) {
        const bool awake = std::any_of(kWords.begin(), kWords.end(),
                                       [&](std::string_view word) { return HoldsIgnoringCase(line, word); });
        if (!awake) continue;
        window.State.InstState = InstStateCode::Waking;
        window.State.CurrentCommand.clear();
        return;
    }
}

template <bool DataWindowState::*Flag>
void HandleStored(InstrumentLink& window) {
    if (!AnyLineHolds(window.State, "..OK")) return;
    window.State.*Flag = true;
    window.State.CurrentCommand.clear();
}

/// A part of the calibration is complete with the line that holds `last`.
template <auto Parse, bool DataWindowState::*Flag>
void HandleCalPart(InstrumentLink& window, std::string_view last) {
    if (!AnyLineHolds(window.State, last)) return;
    Parse(window, window.ReplyCal());
    window.State.*Flag = true;
    window.State.CurrentCommand.clear();
}

void HandleGcf(InstrumentLink& window) {
    HandleCalPart<ParseGcfReply, &DataWindowState::GotGcfReply>(window, "Cal Time:");
}

void HandleCcl(InstrumentLink& window) {
    HandleCalPart<ParseCclReply, &DataWindowState::GotCclReply>(window, "' G5");
}

void HandleCcf(InstrumentLink& window) {
    HandleCalPart<ParseCcfReply, &DataWindowState::GotCcfReply>(window, "' ChRep");
}

void HandleVer(InstrumentLink& window) {
    for (const std::string& line : ReplyLines(window.State)) {
        if (!HoldsIgnoringCase(line, "firmware")) continue;
        window.State.FirmwareVersion = NumberText(FirstNumber(line));
        return;
    }
}

void HandleClearLog(InstrumentLink& window) {
    DataWindowState& state = window.State;
    constexpr std::string_view kQuestion = "yes to erase";
    const std::string_view partial = IsDelphFamily(state.InstType) ? std::string_view("erase") : kQuestion;
    const auto lines = ReplyLines(state);
    const bool asked = HoldsIgnoringCase(state.InputText.Text(), partial) ||
                       std::any_of(lines.begin(), lines.end(), [&](const std::string& line) {
                           return HoldsIgnoringCase(line, kQuestion);
                       });
    if (!asked) return;
    window.QueueOutput("YES\r");
    SendCommand("DIR", window);
}

void HandleDir(InstrumentLink& window) {
    DataWindowState& state = window.State;
    for (const std::string& line : ReplyLines(state)) state.DirQueue.Add(line);
    state.ResponseLineCount = 0;
    if (state.GotDirEnd) state.CurrentCommand.clear();
}

/// The command itself as the instrument sends it back, possibly behind what it had begun to say.
bool IsEcho(std::string_view line, std::string_view sent) {
    const std::string upper = UpperCase(Trim(line));
    return !sent.empty() && upper.ends_with(UpperCase(Trim(sent)));
}

void HandleTime(InstrumentLink& window) {
    DataWindowState& state = window.State;
    const auto lines = ReplyLines(state);
    const auto last = std::find_if(lines.rbegin(), lines.rend(), [&](const std::string& line) {
        return Holds(line, ":") && Holds(line, "/") && !IsEcho(line, state.SentText);
    });
    if (last == lines.rend()) return;
    const auto date = WrittenDate(*last);
    if (!date) return;
    state.InstClockOffset = *date - state.CommandDate;
    state.GotTimeReply = true;
    state.CurrentCommand.clear();
}

void HandleBaud(InstrumentLink& window) {
    // The instrument goes to the new rate behind the command, so every byte of it must be out before the port
    // does.
    if (!OutputDone(window)) return;
    window.Line().SetRate(window.State.BaudRate);
    if (window.OnRateChanged) window.OnRateChanged(window.State.BaudRate);
    window.QueueOutput("\r");
    window.State.CurrentCommand.clear();
}

void ExpectNothing(InstrumentLink& /*window*/) {}

constexpr std::array kReplies{
    ReplyRule{"MULTICCAL", ParseMultiCal},
    ReplyRule{"DELCAST", HandleDelCast},
    ReplyRule{"FL", HandleFl},
    ReplyRule{"WAKE", HandleWake},
    ReplyRule{"STORECCL", HandleStored<&DataWindowState::GotCclReply>},
    ReplyRule{"STOREGCF", HandleStored<&DataWindowState::GotGcfReply>},
    ReplyRule{"GETSAMPLEPARAMS", ParseSampleParams},
    ReplyRule{"ID", ParseIdReply},
    ReplyRule{"GCF", HandleGcf},
    ReplyRule{"VER", HandleVer},
    ReplyRule{"CCL", HandleCcl},
    ReplyRule{"CCF", HandleCcf},
    ReplyRule{"MAKEINI", ParseIniReply},
    ReplyRule{"CLEARLOGCOMMAND", HandleClearLog},
    ReplyRule{"DIR", HandleDir},
    ReplyRule{"GETTIME", HandleTime},
    ReplyRule{"SETTIME", HandleTime},
    ReplyRule{"SETDATE", HandleTime},
    ReplyRule{"DOWNLOAD", ExpectNothing},
    ReplyRule{"SLEEP", ExpectNothing},
    ReplyRule{"ECHOON", ExpectNothing},
    ReplyRule{"ECHOOFF", ExpectNothing},
    ReplyRule{"BAUD", HandleBaud},
    ReplyRule{"DUMPCFG", HandleDump},
    ReplyRule{"\r\n", ExpectNothing},
};

}  // namespace

std::span<const ReplyRule> ReplyTable() {
    return kReplies;
}

void HandleResponse(InstrumentLink& window) {
    const std::string& command = window.State.CurrentCommand;
    if (command.empty()) return;
    const auto* const rule = std::find_if(kReplies.begin(), kReplies.end(),
                                          [&](const ReplyRule& row) { return row.command == command; });
    if (rule != kReplies.end()) rule->handle(window);
}

}  // namespace marisonde
