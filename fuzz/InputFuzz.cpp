// The road of bytes from the port into lines and queues. Pieces do not matter; every byte reaches the raw log
// as it came; what waits stays bounded; no line with a bad checksum is queued as data.
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "Property.h"
#include "common/Clock.h"
#include "decode/LineKind.h"
#include "link/InputLoop.h"
#include "link/InstrumentLink.h"
#include "support/ScriptedLine.h"

namespace {

using namespace marisonde;

struct Heard {
    std::string log;
    std::vector<std::string> lines;
    std::string rest;
    bool operator==(const Heard&) const = default;
};

Heard Hear(std::string_view bytes, std::size_t piece) {
    const VirtualClock clock;
    auto port = std::make_unique<ScriptedLine>();
    ScriptedLine& instrument = *port;
    InstrumentLink link(0, clock, std::move(port));
    instrument.Open(1, 19200);
    Heard heard;
    link.OnChunk = [&heard](std::string_view chunk) { heard.log += chunk; };
    LineScratch scratch;
    for (std::size_t i = 0; i < bytes.size(); i += piece) {
        instrument.Queue(bytes.substr(i, piece));
        ProcessInput(link, scratch);
        Require(link.State.InputText.Text().size() <= InputBuffer::kMaxPartial + piece);
        while (link.TermQueue.size() > 0) heard.lines.push_back(link.TermQueue.GetNext());
        while (link.DataLineQueue.size() > 0) {
            const std::string line = link.DataLineQueue.GetNext();
            Require(line.empty() || line[0] != '*' || LineChecksumOk(line));
        }
    }
    heard.rest = link.State.InputText.Text();
    return heard;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 2) return 0;
    const std::string_view bytes(reinterpret_cast<const char*>(data) + 1, size - 1);
    const Heard whole = Hear(bytes, 900);  // the queues hold 999 lines
    Require(whole.log == bytes);
    Require(Hear(bytes, 1 + data[0] % 16) == whole);
    return 0;
}
