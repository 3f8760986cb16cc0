#include "simulator/XmodemReceiver.h"

#include <utility>

namespace marisonde::simulator {

namespace {

using namespace std::chrono_literals;
using namespace xmodem;

constexpr char kRequest = 'C';
constexpr int kMostTries = 10;
constexpr Nanos kFirstRequest = 300ms;
constexpr Nanos kPatience = 3s;    // for a block, for its end
constexpr Nanos kGapInFrame = 1s;  // a block that stops in its midst is refused
constexpr std::size_t kHeadSize = 3;

}  // namespace

XmodemReceiver::XmodemReceiver(Nanos now) : due_(now + kFirstRequest) {}

std::string XmodemReceiver::Hear(char byte, Nanos now) {
    if (stage_ == Stage::InFrame) {
        frame_ += byte;
        due_ = now + kGapInFrame;
        return frame_.size() < kFrameSize ? "" : TakeFrame(now);
    }
    if (byte == kSoh) {
        stage_ = Stage::InFrame;
        frame_ = byte;
        due_ = now + kGapInFrame;
    } else if (byte == kCan) {
        GiveUp();
    } else if (byte == kEot && stage_ == Stage::AwaitingEnd) {
        stage_ = Stage::Over;
        return {kAck};
    }
    return {};
}

std::string XmodemReceiver::OnDue(Nanos now) {
    return Again(stage_ == Stage::Asking ? kRequest : kNak, now);
}

std::string XmodemReceiver::TakeFrame(Nanos now) {
    const std::string block = frame_.substr(kHeadSize, kFrameSize - kHeadSize - 2);
    if (std::exchange(frame_, {}) != FrameOf(block)) return Again(kNak, now);
    block_ = block;
    stage_ = Stage::AwaitingEnd;
    due_ = now + kPatience;
    return {kAck};
}

std::string XmodemReceiver::Again(char request, Nanos now) {
    if (++tries_ > kMostTries) {
        GiveUp();
        return {kCan, kCan};
    }
    if (stage_ == Stage::InFrame) stage_ = Stage::Asking;
    frame_.clear();
    due_ = now + kPatience;
    return {request};
}

void XmodemReceiver::GiveUp() {
    stage_ = Stage::Over;
    block_.clear();
}

}  // namespace marisonde::simulator
