// Any bytes to the block receiver. A block is taken only when its data stand in the stream with their right
// check sum behind them, and a good frame that comes in one piece is always taken.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "link/Xmodem.h"

namespace {

using namespace marisonde;

/// The remainder of the data times x^16 by long division, bit by bit: another way to the same check sum.
std::string DividedCheck(std::string_view bytes) {
    std::uint32_t remainder = 0;
    const std::string padded = std::string(bytes) + std::string(2, '\0');
    for (const char c : padded) {
        for (int bit = 7; bit >= 0; --bit) {
            remainder = remainder * 2 + ((static_cast<unsigned char>(c) >> bit) & 1);
            if (remainder >= 0x10000) remainder ^= 0x11021;
        }
    }
    return {static_cast<char>(remainder / 256), static_cast<char>(remainder % 256)};
}

void Step(XmodemState& state, std::string_view chunk, Millis& now) {
    std::string reply;
    now += Millis(50);
    XmodemReceive(state, chunk, now, reply);
    for (const char c : reply)
        if (c != 'C' && c != '\x06' && c != '\x15') std::abort();
}

void AnyStream(std::string_view bytes, std::size_t chunk) {
    XmodemState state;
    Millis now{0};
    XmodemStart(state);
    for (std::size_t at = 0; at < bytes.size(); at += chunk) {
        Step(state, bytes.substr(at, chunk), now);
        if (!state.BlockReady) continue;
        if (state.BlockText.size() != kXmodemBlock) std::abort();
        if (bytes.find(state.BlockText + DividedCheck(state.BlockText)) == std::string_view::npos)
            std::abort();
    }
}

void GoodFrame(std::string data, std::string_view noise) {
    data.resize(kXmodemBlock, '\x1A');
    XmodemState state;
    Millis now{0};
    XmodemStart(state);
    Step(state, "", now);
    std::string before(noise);
    std::erase(before, '\x01');
    Step(state, before, now);
    Step(state, std::string("\x01\x01\xFE", 3) + data + DividedCheck(data), now);
    if (!state.BlockReady || state.BlockText != data) std::abort();
    Step(state, "\x04", now);
    if (state.BinaryActive != XmodemStage::Idle) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 1) return 0;
    const std::string_view bytes(reinterpret_cast<const char*>(data) + 1, size - 1);
    AnyStream(bytes, 1 + data[0]);
    GoodFrame(std::string(bytes.substr(0, kXmodemBlock)), bytes.substr(bytes.size() / 2));
    return 0;
}
