#pragma once

#include <string>

#include "simulator/BlockTransfer.h"

namespace marisonde::simulator {

/// The receiving side for one block of 128 bytes: asks with "C" every 3 s, acknowledges a block that came
/// whole and refuses others, and waits for EOT. Gives up after ten times in vain, and when the sender
/// cancels.
class XmodemReceiver final : public BlockTransfer {
  public:
    explicit XmodemReceiver(Nanos now);

    std::string Hear(char byte, Nanos now) override;
    std::string OnDue(Nanos now) override;
    [[nodiscard]] Nanos Due() const override { return due_; }
    [[nodiscard]] bool Over() const override { return stage_ == Stage::Over; }
    /// The block; empty unless it came whole and its sender has ended the transfer.
    [[nodiscard]] const std::string& Block() const { return block_; }

  private:
    enum class Stage { Asking, InFrame, AwaitingEnd, Over };

    std::string TakeFrame(Nanos now);
    std::string Again(char request, Nanos now);
    void GiveUp();

    std::string frame_, block_;
    Stage stage_ = Stage::Asking;
    Nanos due_;
    int tries_ = 0;
};

}  // namespace marisonde::simulator
