#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "simulator/OutputLine.h"

namespace marisonde::simulator {

/// CRC-16 with the polynomial 0x1021 and the initial value 0, as XMODEM-CRC has it.
std::uint16_t CrcOf(std::string_view bytes);
/// A block of 128 bytes as it goes over the line: its head as the first block, the bytes, the CRC.
std::string FrameOf(std::string_view block);

/// The bytes of the protocol.
namespace xmodem {
inline constexpr char kSoh = 1;
inline constexpr char kEot = 4;
inline constexpr char kAck = 6;
inline constexpr char kNak = 21;
inline constexpr char kCan = 24;
inline constexpr std::size_t kFrameSize = 133;
}  // namespace xmodem

/// One side of a transfer of one block by XMODEM-CRC.
class BlockTransfer {
  public:
    virtual ~BlockTransfer() = default;
    /// What is to be sent in answer to one byte of the other side.
    virtual std::string Hear(char byte, Nanos now) = 0;
    /// What is to be sent because Due() has come.
    virtual std::string OnDue(Nanos now) = 0;
    [[nodiscard]] virtual Nanos Due() const = 0;
    [[nodiscard]] virtual bool Over() const = 0;
};

}  // namespace marisonde::simulator
