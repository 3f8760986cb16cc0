#pragma once

#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "link/SerialLine.h"

namespace marisonde {

using Lines = std::vector<std::string>;

/// An instrument that answers by a list, at its own rate, and keeps quiet otherwise. Outlives the line that
/// talks to it, as instruments do.
struct Talker {
    int baud = 19200;
    std::map<std::string, Lines> replies;  ///< by command line
    std::string heard;                     ///< every byte
    std::string waiting;                   ///< for the program to read
    std::string told;                      ///< every byte ever said while the port was open
    LineError openFailsWith;
    bool gone = false;
    bool asleep = false;    ///< wakes on the first byte, which is lost
    bool sampling = false;  ///< answers only after STOP
    std::vector<int> openedPorts;
    std::vector<int> openedRates;
    bool open = false;
    int openBaud = 0;

    void Say(const std::string& bytes) {
        if (!open || openBaud != baud) return;
        waiting += bytes;
    }
    void Say(const Lines& lines) {
        for (const std::string& line : lines) Say(line + "\r\n");
    }
    void Hear(char c) {
        heard += c;
        if (asleep) {
            asleep = false;
            Say(Lines{"Turning on"});
            return;
        }
        if (c != '\r') {
            line_ += c;
            return;
        }
        const std::string command = std::exchange(line_, {});
        if (command == "STOP") {
            sampling = false;
            Say(Lines{"Stopped"});
        }
        const auto reply = replies.find(command);
        if (!sampling && reply != replies.end()) Say(reply->second);
    }

  private:
    std::string line_;
};

class TalkingLine final : public SerialLine {
  public:
    explicit TalkingLine(Talker& talker) : talker_(talker) {}
    ~TalkingLine() override { Close(); }

    LineError Open(int port, int baud) override {
        Close();
        talker_.openedPorts.push_back(port);
        talker_.openedRates.push_back(baud);
        error_ = talker_.openFailsWith;
        if (talker_.gone) error_ = {LineError::Kind::NotFound, "No such file or directory"};
        if (!error_ && talker_.open) error_ = {LineError::Kind::Busy, "Device or resource busy"};
        if (error_) return error_;
        open_ = talker_.open = true;
        talker_.openBaud = baud;
        return {};
    }
    void Close() override {
        if (open_) talker_.open = false;
        open_ = false;
        error_ = {};
    }
    [[nodiscard]] bool IsOpen() const override { return open_; }
    void SetRate(int baud) override { talker_.openBaud = baud; }
    void ReadAll(std::string& out) override {
        if (talker_.gone && open_) {
            Close();
            error_ = {LineError::Kind::Gone, "No such device"};
        }
        if (!open_) return;
        talker_.told += talker_.waiting;
        out += std::exchange(talker_.waiting, {});
    }
    void Write(std::string_view bytes) override {
        if (!open_ || talker_.openBaud != talker_.baud) return;
        for (const char c : bytes) talker_.Hear(c);
    }
    [[nodiscard]] std::size_t BytesToWrite() const override { return 0; }
    [[nodiscard]] std::size_t BytesToRead() const override { return talker_.waiting.size(); }
    void DropInput() override { talker_.waiting.clear(); }
    void SetBreak(bool) override {}
    [[nodiscard]] LineError LastError() const override { return error_; }

  private:
    Talker& talker_;
    bool open_ = false;
    LineError error_;
};

}  // namespace marisonde
