#include "simulator/SeenAtRate.h"

#include <cmath>
#include <cstdint>

namespace marisonde::simulator {

namespace {

constexpr int kFrameBits = 10;
constexpr double kTolerance = 0.03;

/// The level of the line over time: 1 at rest, a start bit of 0, eight bits from the lowest, a stop bit of 1.
class LineLevel {
  public:
    LineLevel(std::string_view bytes, double bitsPerReceiverBit) : bytes_(bytes), step_(bitsPerReceiverBit) {}

    /// In the middle of the receiver's bit `bit` after `start`, both in bits of the receiver.
    [[nodiscard]] bool At(double start, double bit) const {
        const auto place = static_cast<std::size_t>((start + bit) * step_);
        const std::size_t byte = place / kFrameBits;
        const std::size_t inFrame = place % kFrameBits;
        if (byte >= bytes_.size() || inFrame == kFrameBits - 1) return true;
        if (inFrame == 0) return false;
        return ((static_cast<unsigned char>(bytes_[byte]) >> (inFrame - 1)) & 1U) != 0;
    }
    [[nodiscard]] double Length() const { return static_cast<double>(bytes_.size()) * kFrameBits / step_; }

  private:
    std::string_view bytes_;
    double step_;
};

}  // namespace

std::string SeenAtRate(std::string_view bytes, int senderBaud, int receiverBaud) {
    const double ratio = static_cast<double>(senderBaud) / receiverBaud;
    if (std::abs(ratio - 1) < kTolerance) return std::string(bytes);
    const LineLevel level(bytes, ratio);
    std::string seen;
    for (double start = 0; start < level.Length();) {
        if (level.At(start, 0)) {
            start += 0.25;
            continue;
        }
        unsigned value = 0;
        for (int bit = 0; bit < 8; ++bit)
            if (level.At(start, 1.5 + bit)) value |= 1U << bit;
        seen += static_cast<char>(value);
        start += kFrameBits - 0.5;
    }
    return seen;
}

}  // namespace marisonde::simulator
