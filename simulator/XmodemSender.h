#pragma once

#include <string>
#include <string_view>

#include "simulator/BlockTransfer.h"

namespace marisonde::simulator {

/// The sending side of XMODEM-CRC for one block of 128 bytes: waits for the receiver's "C", sends the block
/// until it is acknowledged and ends with EOT. Gives up after 60 s without "C", after 10 refusals, and when
/// the receiver cancels.
class XmodemSender final : public BlockTransfer {
  public:
    /// `block` has 128 bytes.
    XmodemSender(std::string_view block, Nanos now);

    std::string Hear(char byte, Nanos now) override;
    std::string OnDue(Nanos now) override;
    [[nodiscard]] Nanos Due() const override { return due_; }
    [[nodiscard]] bool Over() const override { return stage_ == Stage::Over; }

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
