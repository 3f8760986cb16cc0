#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "simulator/OutputLine.h"

namespace marisonde::simulator {

/// CRC-16 with the polynomial 0x1021 and the initial value 0, as XMODEM-CRC has it.
std::uint16_t CrcOf(std::string_view bytes);

/// The sending side of XMODEM-CRC for one block of 128 bytes: waits for the receiver's "C", sends the block
/// until it is acknowledged and ends with EOT. Gives up after 60 s without "C", after 10 refusals, and when
/// the receiver cancels.
class XmodemSender {
  public:
    /// `block` has 128 bytes.
    XmodemSender(std::string_view block, Nanos now);

    /// What is to be sent in answer to one byte of the receiver.
    std::string Hear(char byte, Nanos now);
    /// What is to be sent because Due() has come.
    std::string OnDue(Nanos now);
    [[nodiscard]] Nanos Due() const { return due_; }
    [[nodiscard]] bool Over() const { return stage_ == Stage::Over; }

  private:
    enum class Stage { AwaitingReceiver, BlockSent, EndSent, Over };

    std::string SendBlock(Nanos now);
    std::string SendEnd(Nanos now);
    std::string GiveUp();

    std::string frame_;
    Stage stage_ = Stage::AwaitingReceiver;
    Nanos due_;
    Nanos sentAt_{0};
    int tries_ = 0;
};

}  // namespace marisonde::simulator
