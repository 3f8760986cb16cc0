#include "simulator/FaultLayer.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace marisonde::simulator {

namespace {

constexpr auto kNever = std::numeric_limits<std::uint64_t>::max();
constexpr std::uint64_t kLongestBabble = 40;

std::uint64_t NextEvent(Random& random, unsigned oneIn) {
    return oneIn == 0 ? kNever : random.Gap(oneIn);
}

}  // namespace

FaultLayer::FaultLayer(const FaultOptions& options, std::uint64_t seed)
    : options_(options),
      damage_(seed ^ 0x6661756c74ULL),
      pieces_(seed ^ 0x706965636573ULL),
      untilFlip_(NextEvent(damage_, options.flipOneIn)),
      untilDrop_(NextEvent(damage_, options.dropOneIn)),
      untilBabble_(NextEvent(damage_, options.babbleOneIn)) {}

void FaultLayer::Damage(char byte, std::string& out) {
    if (options_.babbleOneIn != 0 && --untilBabble_ == 0) {
        for (auto left = 1 + damage_.Below(kLongestBabble); left > 0; --left)
            out += static_cast<char>(damage_.Below(256));
        untilBabble_ = damage_.Gap(options_.babbleOneIn);
    }
    if (options_.flipOneIn != 0 && --untilFlip_ == 0) {
        byte = static_cast<char>(static_cast<unsigned char>(byte) ^ (1U << damage_.Below(8)));
        untilFlip_ = damage_.Gap(options_.flipOneIn);
    }
    if (options_.dropOneIn != 0 && --untilDrop_ == 0) {
        untilDrop_ = damage_.Gap(options_.dropOneIn);
        return;
    }
    out += byte;
}

bool FaultLayer::Vanished(Millis now) const {
    return options_.vanishAt && now >= *options_.vanishAt;
}

bool FaultLayer::Stalled(Millis now) const {
    if (options_.stallEvery.count() <= 0) return false;
    return now % options_.stallEvery >= options_.stallEvery - options_.stallFor;
}

std::size_t FaultLayer::PieceSize() {
    switch (pieces_.Below(4)) {
        case 0:
            return 0;
        case 1:
            return std::min<std::size_t>(held_.size(), 1 + pieces_.Below(7));
        case 2:
            return pieces_.Below(held_.size() + 1);
        default:
            return held_.size();
    }
}

std::string FaultLayer::Pass(std::string_view bytes, Millis now) {
    if (Vanished(now)) {
        held_.clear();
        return {};
    }
    for (const char byte : bytes) Damage(byte, held_);
    if (Stalled(now)) return {};
    if (!options_.splitWrites) return std::exchange(held_, {});
    const std::size_t size = PieceSize();
    std::string piece = held_.substr(0, size);
    held_.erase(0, size);
    return piece;
}

}  // namespace marisonde::simulator
