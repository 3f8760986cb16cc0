#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "common/Clock.h"

namespace marisonde {

inline constexpr std::size_t kXmodemBlock = 128;
inline constexpr std::size_t kXmodemFrame = 3 + kXmodemBlock + 2;  ///< header, data, CRC
/// Calls without progress after which a block is asked for again; 5 s at one call a tick.
inline constexpr std::int16_t kXmodemRetries = 100;
/// How often the first block is asked for while nothing has come.
inline constexpr Millis kXmodemAskAgain{3000};

enum class XmodemStage : std::int16_t { Idle = 0, Start = 1, WaitHeader = 2, Collect = 3, Acknowledged = 4 };

/// One binary transfer from an instrument (XMODEM with CRC, blocks of 128 bytes).
struct XmodemState {
    std::int32_t BlockNumber = 0;
    XmodemStage BinaryActive = XmodemStage::Idle;
    std::string ReceiveText;  ///< bytes of the frame that is arriving
    std::string BlockText;    ///< data of the newest good block; also the bytes of a LOADCFG exchange
    std::int16_t Retries = 0;
    bool BlockReady = false;
    bool SomethingCame = false;  ///< a frame has begun since the start
    Millis LastAsked{0};
};

/// CRC-16 with polynomial 0x1021, most significant bit first, of one byte after `crc`; starts from 0.
std::uint16_t XmodemCrc(std::uint16_t crc, std::uint8_t byte);
std::uint16_t XmodemCrc(std::string_view bytes);

/// Arms the receiver; the next call of XmodemReceive asks the sender to begin.
void XmodemStart(XmodemState& state);
/// One step with what has arrived since the last one (possibly nothing), once a tick. Bytes to be sent back
/// are appended to `reply`. A block whose CRC does not match is asked for again and leaves BlockText as it
/// was.
void XmodemReceive(XmodemState& state, std::string_view chunk, Millis now, std::string& reply);

}  // namespace marisonde
