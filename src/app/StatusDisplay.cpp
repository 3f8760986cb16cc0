#include "app/StatusDisplay.h"

#include <algorithm>
#include <array>

namespace marisonde {

namespace {

struct StateWordRow {
    InstStateCode state;
    std::string_view word;
};
constexpr std::array kStateWords{
    StateWordRow{InstStateCode::Unknown, "unknown"},
    StateWordRow{InstStateCode::NoConnection, "No Connection"},
    StateWordRow{InstStateCode::Starting, "Starting:"},
    StateWordRow{InstStateCode::Sampling, "Sampling"},
    StateWordRow{InstStateCode::Stopped, "Stopped"},
    StateWordRow{InstStateCode::Sleeping, "Sleeping"},
    StateWordRow{InstStateCode::Waking, "Waking"},
    StateWordRow{InstStateCode::Downloading, "Downloading"},
    StateWordRow{InstStateCode::Pending, "Pending"},
    StateWordRow{InstStateCode::StopSent, "Pending"},
    StateWordRow{InstStateCode::StartSent, "Pending"},
    StateWordRow{InstStateCode::NoData, "No Data"},
    StateWordRow{InstStateCode::OpeningShutter, "Open Shutter"},
    StateWordRow{InstStateCode::ClosingShutter, "Close Shutter"},
    StateWordRow{InstStateCode::Deleting, "Deleting"},
};

// One item may stand in the menu and on the tool bar: a button that shares its item's rule has no row.
constexpr std::array kItemRules{
    // needs the port, while asleep, in a download
    ItemRule{"Disconnect_menu", true, true, true},
    ItemRule{"Start_Stop_menu", true, false, false},
    ItemRule{"Sleep_menu", true, true, false},
    ItemRule{"Transfer_menu", true, false, false},
    ItemRule{"SamplingOptionsMenu", true, false, false},
    ItemRule{"Date_Time_menu", true, false, false},
    ItemRule{"Reset_menu", true, false, false},
    ItemRule{"Baud_menu", true, true, false},
    ItemRule{"Terminal_menu", true, true, false},
    // The workbench can also be used, in part, without an instrument.
    ItemRule{"DoCalMenu", false, true, false},
};

/// What a time-out decides about the state that is shown.
enum class TimeOut { Hold, Show };

bool IsSilentByNature(InstStateCode state) {
    return state == InstStateCode::NoConnection || state == InstStateCode::Sleeping;
}

TimeOut ApplyTimeOuts(DataWindowState& state, Millis now) {
    const Millis silentAt = state.LastInputTime + kNoDataTime;
    const bool stopping = state.PrevInstState == InstStateCode::StopSent;
    const bool starting = state.PrevInstState == InstStateCode::StartSent;
    if (stopping && state.InstState == InstStateCode::Sampling)
        return now < state.CommandTime + kStopHold ? TimeOut::Hold : TimeOut::Show;
    if (starting &&
        (state.InstState == InstStateCode::StartSent || state.InstState == InstStateCode::Stopped)) {
        if (now < silentAt) return TimeOut::Hold;
        state.InstState = InstStateCode::NoData;
        return TimeOut::Show;
    }
    if (!IsSilentByNature(state.InstState) && now > silentAt) state.InstState = InstStateCode::NoData;
    return TimeOut::Show;
}

bool ShutterMoves(InstStateCode state) {
    return state == InstStateCode::OpeningShutter || state == InstStateCode::ClosingShutter;
}

}  // namespace

std::string StateWord(InstStateCode state, int startsInSeconds) {
    const auto* const row = std::find_if(kStateWords.begin(), kStateWords.end(),
                                         [&](const StateWordRow& r) { return r.state == state; });
    std::string word(row == kStateWords.end() ? "unknown" : row->word);
    if (state == InstStateCode::Starting) word += " " + std::to_string(startsInSeconds) + " s";
    return word;
}

bool UpdateStatusDisplay(InstrumentLink& window, bool force) {
    DataWindowState& state = window.State;
    if (ApplyTimeOuts(state, window.Time().Steady()) == TimeOut::Hold) return false;
    // A countdown changes its number, not its state.
    const bool countsDown = state.InstState == InstStateCode::Starting;
    if (!force && state.InstState == state.PrevInstState && !countsDown) return false;
    state.PrevInstState = state.InstState;
    return true;
}

StatusFacts StatusFactsOf(const InstrumentLink& window) {
    const DataWindowState& state = window.State;
    return {state.PrevInstState, window.Line().IsOpen(), state.Connected, state.InstType};
}

std::span<const ItemRule> ItemRules() {
    return kItemRules;
}

bool ItemEnabled(const ItemRule& rule, const StatusFacts& facts) {
    if (rule.needsPort && !facts.portOpen) return false;
    if (facts.state == InstStateCode::Sleeping) return rule.whileAsleep;
    if (facts.state == InstStateCode::Downloading) return rule.inDownload;
    return true;
}

bool OffersStop(InstStateCode state) {
    switch (state) {
        case InstStateCode::Starting:
        case InstStateCode::Sampling:
        case InstStateCode::Pending:
        case InstStateCode::StopSent:
        case InstStateCode::StartSent:
        case InstStateCode::OpeningShutter:  // on the way to sampling, as closing is on the way to rest
            return true;
        default:
            return false;
    }
}

std::string_view StartStopCaption(InstStateCode state) {
    return OffersStop(state) ? "&Stop" : "&Start";
}

std::string_view SleepCaption(InstStateCode state) {
    return state == InstStateCode::Sleeping ? "&Wake" : "S&leep";
}

std::string StartButtonCaption(InstStateCode state) {
    if (ShutterMoves(state)) return StateWord(state, 0);
    return OffersStop(state) ? "Stop" : "Start";
}

std::string InstrumentMenuCaption(const StatusFacts& facts) {
    if (!facts.connected || facts.model == InstTypeCode::Unknown) return "&Instrument";
    return std::string(InstTypeName(facts.model)) + "&";
}

bool NeedsComputerAwake(const InstrumentLink& window, bool recorded) {
    if (!window.Line().IsOpen()) return false;
    switch (window.State.InstState) {
        case InstStateCode::Starting:
        case InstStateCode::Sampling:
        case InstStateCode::Downloading:
            return true;
        case InstStateCode::NoData:
            return recorded || window.State.TransferActive;
        default:
            return window.State.TransferActive;
    }
}

}  // namespace marisonde
