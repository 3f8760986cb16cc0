#include "simulator/XmodemSender.h"

namespace marisonde::simulator {

namespace {

using namespace std::chrono_literals;
using namespace xmodem;

constexpr int kMostTries = 10;
constexpr Nanos kPatienceForReceiver = 60s;
constexpr Nanos kPatienceForAnswer = 10s;
// A receiver that has not heard the block goes on asking; one that has may have asked just before.
constexpr Nanos kStaleRequest = 2s;

}  // namespace

XmodemSender::XmodemSender(std::string_view block, Nanos now)
    : frame_(FrameOf(block)), due_(now + kPatienceForReceiver) {}

std::string XmodemSender::Hear(char byte, Nanos now) {
    if (byte == kCan) stage_ = Stage::Over;
    switch (stage_) {
        case Stage::AwaitingReceiver:
            return byte == 'C' ? SendBlock(now) : "";
        case Stage::BlockSent:
            if (byte == kAck) {
                tries_ = 0;
                return SendEnd(now);
            }
            if (byte == kNak || (byte == 'C' && now - sentAt_ >= kStaleRequest)) return SendBlock(now);
            return "";
        case Stage::EndSent:
            if (byte == kNak) return SendEnd(now);
            if (byte == kAck) stage_ = Stage::Over;
            return "";
        case Stage::Over:
            break;
    }
    return "";
}

std::string XmodemSender::OnDue(Nanos now) {
    switch (stage_) {
        case Stage::BlockSent:
            return SendBlock(now);
        case Stage::EndSent:
            return SendEnd(now);
        case Stage::AwaitingReceiver:
        case Stage::Over:
            break;
    }
    return GiveUp();
}

std::string XmodemSender::SendBlock(Nanos now) {
    if (++tries_ > kMostTries) return GiveUp();
    stage_ = Stage::BlockSent;
    sentAt_ = now;
    due_ = now + kPatienceForAnswer;
    return frame_;
}

std::string XmodemSender::SendEnd(Nanos now) {
    if (++tries_ > kMostTries) return GiveUp();
    stage_ = Stage::EndSent;
    due_ = now + kPatienceForAnswer;
    return {kEot};
}

std::string XmodemSender::GiveUp() {
    stage_ = Stage::Over;
    return {kCan, kCan};
}

}  // namespace marisonde::simulator
