#include "simulator/BlockTransfer.h"

namespace marisonde::simulator {

std::uint16_t CrcOf(std::string_view bytes) {
    unsigned crc = 0;
    for (const char byte : bytes) {
        crc ^= static_cast<unsigned>(static_cast<unsigned char>(byte)) << 8U;
        for (int bit = 0; bit < 8; ++bit) crc = (crc & 0x8000U) != 0 ? (crc << 1U) ^ 0x1021U : crc << 1U;
        crc &= 0xFFFFU;
    }
    return static_cast<std::uint16_t>(crc);
}

std::string FrameOf(std::string_view block) {
    const unsigned crc = CrcOf(block);
    std::string frame{xmodem::kSoh, 1, static_cast<char>(0xFE)};
    frame += block;
    frame += static_cast<char>(crc >> 8U);
    frame += static_cast<char>(crc & 0xFFU);
    return frame;
}

}  // namespace marisonde::simulator
