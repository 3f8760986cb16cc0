#include "link/Commands.h"

#include <array>
#include <utility>

#include "common/ConversionUtils.h"
#include "common/Numbers.h"
#include "link/CommandTable.h"

namespace marisonde {

namespace {

// Channels of the two fluorescence receivers of a Corvane, from 0.
constexpr int kFl1 = 6;
constexpr int kFl2 = 7;

std::string WireText(std::string_view pattern, std::string_view name, std::string_view argument,
                     const CalibrationDataClass& cal) {
    const std::array<std::pair<std::string_view, std::string_view>, 4> fields{{
        {"{name}", name},
        {"{arg}", argument},
        {"{fl1}", cal.Channel(kFl1).name},
        {"{fl2}", cal.Channel(kFl2).name},
    }};
    std::string text;
    while (!pattern.empty()) {
        std::size_t used = 1;
        std::string_view added = pattern.substr(0, 1);
        for (const auto& [field, value] : fields) {
            if (!pattern.starts_with(field)) continue;
            used = field.size();
            added = value;
        }
        text += added;
        pattern.remove_prefix(used);
    }
    return text;
}

void NoteCommand(InstrumentLink& window, std::string_view name) {
    DataWindowState& state = window.State;
    state.CurrentCommand = UpperCase(name);
    state.TerminalText.clear();
    state.ResponseLineCount = 0;
    // The entry of the window's own number, whatever that line was: kept as instruments and users know it.
    if (window.Index() >= 0 && window.Index() <= kMaxResponseLines)
        state.ResponseLines[static_cast<std::size_t>(window.Index())].clear();
    state.CalLines.clear();
    state.SentText.clear();
    state.LastInputTime = window.Time().Steady();
    state.CommandTime = window.Time().Steady();
    state.CommandDate = window.Time().Now();
}

void PutOut(InstrumentLink& window, CommandWay way, const std::string& text) {
    switch (way) {
        case CommandWay::None:
            return;
        case CommandWay::Queue:
            window.QueueOutput(text);
            return;
        case CommandWay::Replace:
            window.PendingOutput = text;
            return;
        case CommandWay::Direct:
            window.Line().Write(text);
            return;
    }
}

std::string_view WithoutLineEnds(std::string_view text) {
    while (!text.empty() && (text.front() == '\r' || text.front() == '\n')) text.remove_prefix(1);
    return text.substr(0, text.find_first_of("\r\n"));
}

}  // namespace

void SendCommandNow(std::string_view name, InstrumentLink& window, std::string_view argument) {
    NoteCommand(window, name);
    DataWindowState& state = window.State;
    const bool asleep = state.InstState == InstStateCode::Sleeping;
    const CommandRow& row = FindCommand(state.CurrentCommand, state.InstType, asleep);
    std::string tidied(argument);
    if (row.prepare && !row.prepare(window, tidied)) return;
    const std::string text = WireText(row.wire, name, tidied, window.CalData);
    state.SentText = WithoutLineEnds(text);
    PutOut(window, row.way, text);
    if (window.OnStatus) window.OnStatus();
}

bool SendCommand(std::string_view name, InstrumentLink& window, std::string_view argument) {
    if (window.State.Connected) {
        SendCommandNow(name, window, argument);
        return true;
    }
    if (!window.ShowConnectForm) return false;
    window.ShowConnectForm([&window, command = std::string(name), text = std::string(argument)] {
        const DataWindowState& state = window.State;
        if (state.Connected && state.CancelRequest != kCancelStop) SendCommandNow(command, window, text);
    });
    return false;
}

std::string SetFlStatus(InstrumentLink& window) {
    const std::array<std::pair<int, std::int16_t>, 2> channels{
        {{kFl1, window.State.FlStatus0}, {kFl2, window.State.FlStatus1}}};
    std::string text;
    for (const auto& [channel, status] : channels)
        if (status >= 0)
            text += "fl" + window.CalData.Channel(channel).name + "," + std::to_string(status) + "\r";
    window.QueueOutput(text);
    return text;
}

void SetChannelGain(InstrumentLink& window, int channel, int gain) {
    const InstTypeCode type = window.State.InstType;
    if (IsCorvaneFamily(type))
        window.QueueOutput("gain," + std::to_string(channel + 1) + "," + std::to_string(gain) + "\r");
    if (IsTidalFamily(type)) window.QueueOutput("gain" + std::to_string(gain) + "\r");
}

bool OutputDone(const InstrumentLink& window) {
    return window.PendingOutput.empty() && window.Line().BytesToWrite() == 0;
}

}  // namespace marisonde
