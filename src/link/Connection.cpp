#include "link/Connection.h"

#include <algorithm>
#include <span>

#include "common/InstTypes.h"
#include "common/Numbers.h"
#include "link/Commands.h"
#include "link/ReplyParsers.h"
#include "link/ReplyText.h"

namespace marisonde {

namespace {

struct FindingWord {
    Finding finding;
    std::string_view word;
};
constexpr std::array kFindingWords{
    FindingWord{Finding::Found, "found"},
    FindingWord{Finding::Silent, "silent"},
    FindingWord{Finding::NoInstrument, "heard something that is not an instrument"},
    FindingWord{Finding::Unidentified, "answers, a model that cannot be identified"},
    FindingWord{Finding::Busy, "busy, another program or window uses it"},
    FindingWord{Finding::Denied, "permission denied"},
    FindingWord{Finding::Missing, "the device is not there"},
    FindingWord{Finding::CouldNotOpen, "could not be opened"},
    FindingWord{Finding::StoppedWorking, "stopped working"},
    FindingWord{Finding::Cancelled, "stopped"},
};

Finding FindingOf(const LineError& error) {
    switch (error.kind) {
        case LineError::Kind::Busy:
            return Finding::Busy;
        case LineError::Kind::Denied:
            return Finding::Denied;
        case LineError::Kind::NotFound:
        case LineError::Kind::Gone:
            return Finding::Missing;
        default:
            return Finding::CouldNotOpen;
    }
}

void Note(const ConnectNotes& notes, const std::string& status) {
    if (notes.onStatus) notes.onStatus(status);
}

void ForgetInstrument(DataWindowState& state) {
    state.Connected = false;
    state.InstState = InstStateCode::NoConnection;
    state.GotIdReply = state.GotCclReply = state.GotCcfReply = state.GotGcfReply = false;
    state.GotIniReply = state.GotTimeReply = state.ParamsReplyDone = false;
}

void AwaitId(DataWindowState& state, std::size_t blankLine) {
    state.InstState = InstStateCode::NoConnection;
    state.GotIdReply = false;
    state.CurrentCommand = "ID";
    state.ResponseLineCount = 0;
    state.ResponseLines[blankLine].clear();
    state.TerminalText.clear();
}

void AskId(InstrumentLink& window, int baud) {
    window.State.BaudRate = baud;
    window.State.InputText.Clear();
    window.State.DataArrived = false;
    window.PendingOutput = "\r\rID\r";
    AwaitId(window.State, static_cast<std::size_t>(window.Index()));
}

/// What was heard is not the answer: the instrument woke up, or it samples. It must be stopped to listen.
void StopAndAskId(InstrumentLink& window) {
    AwaitId(window.State, 0);
    window.QueueOutput("STOP\r\rID\r");
}

bool VersionKnown(const DataWindowState& state) {
    return Val(state.FirmwareVersion) != 0;
}

/// Takes over what the identification said, and asks those for their firmware that tell it apart.
QCoro::Task<> TakeIdentity(Operation& operation, InstrumentLink& window) {
    DataWindowState& state = window.State;
    state.Connected = true;
    state.InstType = InstTypeFromName(state.InstModelName);
    state.FirmwareVersion = "0";
    // The others tell it with their calibration; nothing would come to wait for.
    if (!IsCorvaneFamily(state.InstType)) {
        SendCommandNow("VER", window);
        const auto over = [&] {
            return VersionKnown(state) || ConnectStopped(operation, window) || window.LineBroken();
        };
        co_await operation.Until(over, kVersionAnswer);
    }
    state.CurrentCommand.clear();
}

/// The two looks at an open port: true when the identification has come.
QCoro::Task<bool> AwaitIdentity(Operation& operation, InstrumentLink& window) {
    DataWindowState& state = window.State;
    const auto ended = [&] { return ConnectStopped(operation, window) || window.LineBroken(); };
    co_await operation.Until(ended, kIdFirstLook);
    if (ended()) co_return false;
    const auto heard = [&] {
        return state.GotIdReply || state.InstState != InstStateCode::NoConnection || ended();
    };
    co_await operation.Until(heard, kIdAnswer - kIdFirstLook);
    if (ended() || state.GotIdReply) co_return state.GotIdReply && !ended();
    if (state.InstState == InstStateCode::NoConnection) co_return false;
    StopAndAskId(window);
    const auto answered = [&] { return state.GotIdReply || ended(); };
    co_await operation.Until(answered, kIdAnswer);
    co_return state.GotIdReply && !ended();
}

/// What an instrument calls its model in an identification that fits none of those known; empty without one.
std::string UnknownModel(DataWindowState& state) {
    const std::span<std::string> lines = ReplyLines(state);
    const auto heading = std::find_if(lines.begin(), lines.end(),
                                      [](const std::string& line) { return Holds(line, "Identification:"); });
    if (lines.end() - heading < 2) return {};
    const InstTypeCode type = InstTypeFromName(ModelFromReply(*(heading + 1)));
    const bool named = type < InstTypeCode::Unknown && type != InstTypeCode::XTidal;
    return named ? std::string() : std::string(TextBehind(*(heading + 1), ": "));
}

ConnectionTry EndWithout(const Operation& operation, InstrumentLink& window, ConnectionTry look) {
    window.State.Connected = false;
    window.State.CurrentCommand.clear();
    if (ConnectStopped(operation, window)) {
        look.finding = Finding::Cancelled;
    } else if (window.LineBroken()) {
        look.finding = Finding::StoppedWorking;
        look.error = window.Line().LastError();
    } else {
        look.model = UnknownModel(window.State);
        look.finding = !look.model.empty()        ? Finding::Unidentified
                       : window.State.DataArrived ? Finding::NoInstrument
                                                  : Finding::Silent;
    }
    return look;
}

/// The look itself, without telling anybody.
QCoro::Task<ConnectionTry> LookAt(Operation& operation, InstrumentLink& window, int port, int baud,
                                  const ConnectNotes& notes) {
    ConnectionTry look{port, baud, Finding::Silent, {}, {}};
    ForgetInstrument(window.State);
    Note(notes, " Searching");
    window.State.PortNumber = static_cast<std::int16_t>(port);
    look.error = window.OpenPort(port, baud);
    if (look.error) {
        look.finding = FindingOf(look.error);
        co_return look;
    }
    AskId(window, baud);
    const bool answered = co_await AwaitIdentity(operation, window);
    if (!answered) co_return EndWithout(operation, window, look);
    Note(notes, window.State.InstModelName + " Found ");
    co_await TakeIdentity(operation, window);
    if (ConnectStopped(operation, window) || window.LineBroken())
        co_return EndWithout(operation, window, look);
    look.finding = Finding::Found;
    look.model = window.State.InstModelName;
    co_return look;
}

}  // namespace

std::string FindingText(const ConnectionTry& look) {
    const auto* const row =
        std::find_if(kFindingWords.begin(), kFindingWords.end(),
                     [&](const FindingWord& word) { return word.finding == look.finding; });
    std::string text(row->word);
    if (!look.model.empty()) text = look.model + " " + text;
    if (look.finding == Finding::CouldNotOpen && look.error) text += ": " + look.error.text;
    return text;
}

bool ConnectStopped(const Operation& operation, InstrumentLink& window) {
    if (operation.Cancelled()) window.State.ConnectStage = kConnectEnded;
    return window.State.ConnectStage == kConnectEnded;
}

QCoro::Task<ConnectionTry> TryConnection(Operation& operation, InstrumentLink& window, int port, int baud,
                                         const ConnectNotes& notes) {
    const ConnectionTry look = co_await LookAt(operation, window, port, baud, notes);
    if (notes.onLook) notes.onLook(look);
    co_return look;
}

QCoro::Task<ConnectionTry> SearchPorts(Operation& operation, InstrumentLink& window,
                                       const std::vector<PortEntry>& ports, const ConnectNotes& notes) {
    ConnectionTry look;
    for (const PortEntry& entry : ports) {
        for (const int baud : kSearchRates) {
            look = co_await TryConnection(operation, window, entry.number, baud, notes);
            if (look.Found()) Note(notes, look.model + " found");
            if (look.Found() || ConnectStopped(operation, window)) co_return look;
        }
    }
    co_return look;
}

}  // namespace marisonde
