#include "link/Xmodem.h"

namespace marisonde {

namespace {

constexpr char kSoh = 1;
constexpr char kEot = 4;
constexpr char kAck = 6;
constexpr char kNak = 21;
constexpr char kAsk = 'C';

void Ask(XmodemState& state, Millis now, std::string& reply) {
    reply += kAsk;
    state.LastAsked = now;
}

/// Line ends, echoes and noise may stand before a frame; a frame cannot begin with them.
void DropUntilHeader(XmodemState& state) {
    state.ReceiveText.erase(0, state.ReceiveText.find(kSoh));
    if (state.ReceiveText.empty() || state.SomethingCame) return;
    state.SomethingCame = true;
    state.Retries = kXmodemRetries;
}

void WaitHeader(XmodemState& state) {
    --state.Retries;
    DropUntilHeader(state);
    if (!state.ReceiveText.empty()) state.Retries = kXmodemRetries;
    state.BinaryActive = XmodemStage::Collect;
}

void TakeFrame(XmodemState& state, std::string& reply) {
    const std::string_view frame = state.ReceiveText;
    const std::string_view data = frame.substr(3, kXmodemBlock);
    const auto high = static_cast<std::uint8_t>(frame[kXmodemFrame - 2]);
    const auto low = static_cast<std::uint8_t>(frame[kXmodemFrame - 1]);
    if (XmodemCrc(data) == high * 256 + low) {
        state.BlockText = data;
        state.BlockReady = true;
        reply += kAck;
    } else {
        reply += kNak;
    }
    state.ReceiveText.clear();
    state.BinaryActive = XmodemStage::Acknowledged;
}

void RunOutOfRetries(XmodemState& state, std::string& reply) {
    reply += kNak;
    state.ReceiveText.clear();
    state.Retries = kXmodemRetries;
}

void Collect(XmodemState& state, Millis now, std::string& reply) {
    DropUntilHeader(state);
    // A refusal before the first frame would make senders fall back to blocks without CRC.
    if (!state.SomethingCame) {
        if (now - state.LastAsked >= kXmodemAskAgain) Ask(state, now, reply);
        return;
    }
    --state.Retries;
    if (state.ReceiveText.size() == kXmodemFrame) {
        TakeFrame(state, reply);
    } else if (state.Retries <= 0) {
        RunOutOfRetries(state, reply);
    }
}

void AfterBlock(XmodemState& state, std::string& reply) {
    const std::size_t next = state.ReceiveText.find_first_of(std::string_view("\x01\x04", 2));
    state.ReceiveText.erase(0, next);
    if (state.ReceiveText.empty()) return;
    if (state.ReceiveText[0] == kEot) {
        state.BinaryActive = XmodemStage::Idle;
        state.ReceiveText.clear();
        reply += kAck;
        return;
    }
    ++state.BlockNumber;
    state.Retries = kXmodemRetries;
    state.BinaryActive = XmodemStage::Collect;
}

}  // namespace

std::uint16_t XmodemCrc(std::uint16_t crc, std::uint8_t byte) {
    crc = static_cast<std::uint16_t>(crc ^ (byte << 8));
    for (int bit = 0; bit < 8; ++bit) {
        const bool carry = crc > 32767;
        crc = static_cast<std::uint16_t>(crc << 1);
        if (carry) crc ^= 0x1021;
    }
    return crc;
}

std::uint16_t XmodemCrc(std::string_view bytes) {
    std::uint16_t crc = 0;
    for (const char c : bytes) crc = XmodemCrc(crc, static_cast<std::uint8_t>(c));
    return crc;
}

void XmodemStart(XmodemState& state) {
    state = XmodemState{};
    state.BinaryActive = XmodemStage::Start;
}

void XmodemReceive(XmodemState& state, std::string_view chunk, Millis now, std::string& reply) {
    if (state.BinaryActive == XmodemStage::Idle) return;
    state.ReceiveText += chunk;
    if (state.BinaryActive == XmodemStage::Start) {
        state.BlockNumber = 1;
        state.Retries = kXmodemRetries;
        state.BinaryActive = XmodemStage::WaitHeader;
        Ask(state, now, reply);
        return;
    }
    if (state.BinaryActive == XmodemStage::Acknowledged) AfterBlock(state, reply);
    if (state.BinaryActive == XmodemStage::WaitHeader) WaitHeader(state);
    if (state.BinaryActive == XmodemStage::Collect) Collect(state, now, reply);
}

}  // namespace marisonde
