// Any bytes as the reply to any command. Nothing may crash, what is kept stays bounded, and a calibration
// changes only once its reply has been found complete.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string_view>

#include "common/Clock.h"
#include "link/Commands.h"
#include "link/HandleResponse.h"
#include "link/InputLoop.h"
#include "link/InstrumentLink.h"
#include "support/ScriptedLine.h"

namespace {

using namespace marisonde;

struct Bench {
    VirtualClock clock;
    ScriptedLine* line = new ScriptedLine;
    InstrumentLink window{0, clock, std::unique_ptr<SerialLine>(line)};
    LineScratch scratch;

    void Tick(Millis step) {
        clock.AdvanceBy(step);
        ProcessInput(window, scratch);
        HandleResponse(window);
        window.SendPending();
    }
};

bool AnyCalibrationReply(const DataWindowState& state) {
    return state.GotGcfReply || state.GotCclReply || state.GotCcfReply || state.GotIniReply || state.CalReady;
}

void Check(const Bench& bench) {
    const DataWindowState& state = bench.window.State;
    if (state.ResponseLineCount < 0 || state.ResponseLineCount > kMaxResponseLines) std::abort();
    if (state.CalLines.size() > kMaxCalLines) std::abort();
    if (state.InputText.Text().size() > InputBuffer::kMaxPartial) std::abort();
    if (state.DirQueue.size() >= kDirQueueSize) std::abort();
    static const CalibrationDataClass kUntouched;
    if (!AnyCalibrationReply(state) && !(bench.window.CalData == kUntouched)) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr std::size_t kSteering = 3;
    if (size < kSteering) return 0;
    Bench bench;
    InstrumentLink& window = bench.window;
    window.OpenPort(1, 9600);
    window.State.Connected = true;
    window.State.InstType = static_cast<InstTypeCode>(data[1] % (kInstTypeCount + 1));
    window.State.InstConfig = (data[1] & 0x80) != 0 ? "FT" : "";
    const auto replies = ReplyTable();
    const std::string_view command = replies[data[0] % replies.size()].command;
    SendCommandNow(command, window, "1");
    window.State.CurrentCommand = command;
    const std::size_t chunk = 1 + data[2];
    std::string_view rest(reinterpret_cast<const char*>(data) + kSteering, size - kSteering);
    while (!rest.empty()) {
        bench.line->Queue(rest.substr(0, chunk));
        rest.remove_prefix(std::min(chunk, rest.size()));
        bench.Tick(Millis(50));
        Check(bench);
    }
    for (int i = 0; i < 4; ++i) bench.Tick(Millis(600));
    Check(bench);
    return 0;
}
