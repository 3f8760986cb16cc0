#pragma once

#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/HostSide.h"

namespace marisonde::simulator {

/// Somebody at a terminal: types lines and reads what comes, at a fast rate, with the clock running on.
class Conversation {
  public:
    explicit Conversation(Model model, Options options = {}) {
        options.powerOn = options.powerOn == PowerOn::Sampling ? PowerOn::Stopped : options.powerOn;
        options.extraEvery = 0;
        instrument = MakeInstrument(model, options);
    }
    /// Types a line with CR and gives all that comes within `time`, the echo left out.
    std::string Ask(const std::string& line, Millis time = Millis{3000}) {
        const std::string all = AskWithEcho(line + "\r", time);
        const std::string echo = line + "\r\n";
        return all.starts_with(echo) ? all.substr(echo.size()) : "no echo: " + all;
    }
    std::string AskWithEcho(std::string_view bytes, Millis time = Millis{3000}) {
        instrument->Receive(bytes, now);
        return Listen(time);
    }
    std::string Listen(Millis time) {
        std::string text;
        for (const Millis end = now + time; now < end;) {
            now += Millis{10};
            text += instrument->TakeOutput(now);
        }
        return text;
    }
    /// What follows `label` and ": " in the answer to `line`.
    std::string Value(const std::string& line, const std::string& label) {
        const std::string text = "\r\n" + Ask(line);
        const auto begin = text.find("\r\n" + label + ": ");
        if (begin == std::string::npos) return "no " + label;
        const auto from = begin + label.size() + 4;
        return text.substr(from, text.find("\r\n", from) - from);
    }

    std::unique_ptr<Instrument> instrument;
    Millis now{0};
};

/// Lines joined with CR LF behind each.
inline std::string Lines(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines) text += line + "\r\n";
    return text;
}

}  // namespace marisonde::simulator
