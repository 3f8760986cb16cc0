#include <algorithm>

#include "decode/Decoders.h"
#include "decode/HexFields.h"

namespace marisonde {

namespace {

using detail::HexField;
using detail::HexLine;
using detail::SlotField;

/// "*H".
struct HousekeepingLayout {
    HexField time{3, 8};
    SlotField word1{11, 4, 14};
    SlotField word2{15, 4, 14};
    SlotField word3{19, 4, 14};
    SlotField word4{23, 2, 14};
    HexField voltageA{123, 2};
    HexField voltageB{125, 2};
    HexField status3{127, 2};
    HexField status4{129, 4};
    std::size_t length = 134;
};

constexpr HousekeepingLayout kLayout{};

std::int32_t Signed8(std::uint32_t value) {
    const auto byte = static_cast<std::int32_t>(value);
    return byte > 127 ? byte - 256 : byte;
}

float Tenths(std::uint32_t value) {
    return static_cast<float>(value / 10.0);
}

}  // namespace

bool DecodeHousekeeping(std::string_view line, HousekeepingBlock& block) {
    if (ClassifyLine(line) != LineKind::CorvaneHousekeeping) return false;
    const HexLine<kLayout.length> hex(line);
    block.Time = hex.Value<kLayout.time>();
    for (std::size_t slot = 0; slot < block.Words.size(); ++slot) {
        auto& words = block.Words[slot];
        words[0] = static_cast<std::int32_t>(hex.Value<kLayout.word1>(slot));
        words[1] = static_cast<std::int32_t>(hex.Value<kLayout.word2>(slot));
        words[2] = static_cast<std::int32_t>(hex.Value<kLayout.word3>(slot));
        words[3] = Signed8(hex.Value<kLayout.word4>(slot));
    }
    block.VoltageA = Tenths(hex.Value<kLayout.voltageA>());
    block.VoltageB = Tenths(hex.Value<kLayout.voltageB>());
    block.Status3 = static_cast<float>(hex.Value<kLayout.status3>());
    block.Status4 = static_cast<float>(hex.Value<kLayout.status4>());
    return true;
}

bool DecodeVoltageOnly(std::string_view line, RawSample& sample) {
    HousekeepingBlock block;
    if (!DecodeHousekeeping(line, block)) return false;
    sample.Voltage = std::max(block.VoltageA, block.VoltageB);
    return true;
}

}  // namespace marisonde
