#include "link/BinaryInput.h"

#include "link/BoundedText.h"
#include "link/InstrumentLink.h"
#include "link/Xmodem.h"

namespace marisonde {

namespace {

bool TurnsOutToBeText(const XmodemState& receiver, std::string_view chunk) {
    const bool nothingYet = receiver.BinaryActive != XmodemStage::Acknowledged && !receiver.SomethingCame;
    // The echo of the request may come twice.
    return nothingYet && BeginsAsText(chunk) && chunk.find("DUMPCFG") == std::string_view::npos;
}

}  // namespace

bool BeginsAsText(std::string_view bytes) {
    for (const char c : bytes) {
        if (c == '\x01') return false;
        if (c > ' ' && c <= '~' && c != 'C') return true;
    }
    return false;
}

bool CarriesCalText(const DataWindowState& state) {
    const std::string& command = state.CurrentCommand;
    return command == "MULTICCAL" || command == "MAKEINI" || (command == "DUMPCFG" && state.DumpIsText);
}

void EndDump(DataWindowState& state) {
    state.DumpStage = 0;
    state.DumpActive = false;
    state.DumpIsText = false;
    state.BinaryReceiver.BinaryActive = XmodemStage::Idle;
    state.BinaryReceiver.ReceiveText.clear();
    state.BinaryReceiver.BlockReady = false;
}

bool TakeBinary(InstrumentLink& window, std::string_view chunk) {
    DataWindowState& state = window.State;
    XmodemState& receiver = state.BinaryReceiver;
    if (state.DumpActive && receiver.BinaryActive != XmodemStage::Idle) {
        if (TurnsOutToBeText(receiver, chunk)) {
            EndDump(state);
            state.DumpStage = 1;
            state.DumpIsText = true;
            return false;
        }
        std::string reply;
        XmodemReceive(receiver, chunk, window.Time().Steady(), reply);
        if (!reply.empty()) window.Line().Write(reply);
        // The receiver has its own copy; bytes of a block must never be read as lines later.
        state.InputText.Clear();
        return true;
    }
    if (state.CurrentCommand == "LOADCFG") {
        AppendBounded(receiver.BlockText, chunk, InputBuffer::kMaxPartial);
        state.InputText.Clear();
        return true;
    }
    return false;
}

}  // namespace marisonde
