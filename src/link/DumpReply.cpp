#include "link/DumpReply.h"

#include <fstream>
#include <string>

#include "calibration/CalImage.h"
#include "link/BinaryInput.h"
#include "link/ReplyParsers.h"
#include "link/ReplyText.h"
#include "link/Xmodem.h"

namespace marisonde {

namespace {

// Steps of DataWindowState::DumpStage.
constexpr int kAwaitEcho = 0;
constexpr int kReceiving = 1;
constexpr int kLoaded = 2;
constexpr int kOver = 3;

/// Lines behind the echo, or the beginning of one, mean that text comes instead of the image.
bool TextFollows(DataWindowState& state, std::size_t echo) {
    const auto lines = ReplyLines(state);
    for (std::size_t i = echo + 1; i < lines.size(); ++i)
        if (!Holds(lines[i], "DUMPCFG") && BeginsAsText(lines[i])) return true;
    return BeginsAsText(state.InputText.Text());
}

void BeginText(DataWindowState& state, std::size_t echo) {
    const auto lines = ReplyLines(state);
    state.DumpIsText = true;
    for (std::size_t i = echo + 1; i < lines.size(); ++i) state.CalLines.push_back(lines[i]);
}

void AwaitEcho(InstrumentLink& window) {
    DataWindowState& state = window.State;
    if (state.BinaryReceiver.BinaryActive != XmodemStage::Idle) return;
    const auto lines = ReplyLines(state);
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (!Holds(lines[i], "DUMPCFG")) continue;
        state.DumpStage = kReceiving;
        if (TextFollows(state, i)) return BeginText(state, i);
        XmodemStart(state.BinaryReceiver);
        state.DumpActive = true;
        return;
    }
}

void KeepImage(InstrumentLink& window, const std::string& image) {
    if (window.TemporaryFolder.empty()) return;
    const auto path = window.TemporaryFolder / "temp.bin";
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file << image;
    file.close();
    // The calibration itself is here; only the copy for later inspection is missing.
    if (!file && window.OnError)
        window.OnError("The calibration image could not be kept in '" + path.string() + "'.");
}

void Receive(InstrumentLink& window) {
    DataWindowState& state = window.State;
    XmodemState& receiver = state.BinaryReceiver;
    if (state.DumpIsText) {
        if (!ParseDumpText(window)) return;
        EndDump(state);
        return;
    }
    if (!receiver.BlockReady || receiver.BinaryActive != XmodemStage::Idle) return;
    KeepImage(window, receiver.BlockText);
    ReadCalImageBytes(receiver.BlockText, window.ReplyCal());
    state.GotIniReply = true;
    receiver.BlockReady = false;
    state.DumpStage = kLoaded;
    state.DumpActive = false;
}

}  // namespace

void HandleDump(InstrumentLink& window) {
    DataWindowState& state = window.State;
    switch (state.DumpStage) {
        case kAwaitEcho:
            return AwaitEcho(window);
        case kReceiving:
            return Receive(window);
        case kLoaded:
            state.DumpStage = kOver;
            return;
        default:
            break;
    }
    state.CurrentCommand.clear();
    state.DumpStage = kAwaitEcho;
}

}  // namespace marisonde
