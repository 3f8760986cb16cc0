#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "link/SerialLine.h"

namespace marisonde {

/// A serial line whose other end is the test: what will be read is queued, what was written is kept, and the
/// line fails when told to.
class ScriptedLine final : public SerialLine {
  public:
    // --- the instrument's end
    void Queue(std::string_view bytes) { waiting_ += bytes; }
    /// Everything written since the last call.
    std::string TakeWritten() { return std::exchange(written_, {}); }
    /// The cable is pulled: what waits is lost, nothing is taken any more until the next Open.
    void Vanish() { Fail({LineError::Kind::Gone, "No such device"}); }
    void Fail(LineError error) {
        error_ = std::move(error);
        open_ = open_ && error_.kind != LineError::Kind::Gone;
        if (!open_) waiting_.clear();
    }
    LineError openFailsWith;      ///< while of a kind, Open fails with it
    bool readsFail = false;       ///< ReadAll appends nothing and keeps what waits
    std::size_t stuckOutput = 0;  ///< bytes that BytesToWrite tells
    std::vector<int> opened;      ///< port numbers of all calls of Open
    std::vector<int> rates;       ///< rates given to Open and SetRate, in order
    std::vector<bool> breaks;     ///< every SetBreak
    int drops = 0;                ///< calls of DropInput

    // --- the program's end
    LineError Open(int port, int baud) override {
        Close();
        opened.push_back(port);
        rates.push_back(baud);
        error_ = openFailsWith;
        open_ = !openFailsWith;
        return error_;
    }
    void Close() override { open_ = false; }
    [[nodiscard]] bool IsOpen() const override { return open_; }
    void SetRate(int baud) override { rates.push_back(baud); }
    void ReadAll(std::string& out) override {
        if (open_ && !readsFail) out += std::exchange(waiting_, {});
    }
    void Write(std::string_view bytes) override {
        if (open_) written_ += bytes;
    }
    [[nodiscard]] std::size_t BytesToWrite() const override { return open_ ? stuckOutput : 0; }
    [[nodiscard]] std::size_t BytesToRead() const override { return open_ ? waiting_.size() : 0; }
    void DropInput() override {
        ++drops;
        waiting_.clear();
    }
    void SetBreak(bool on) override { breaks.push_back(on); }
    [[nodiscard]] LineError LastError() const override { return error_; }

  private:
    bool open_ = false;
    std::string waiting_;
    std::string written_;
    LineError error_;
};

}  // namespace marisonde
