#pragma once

#include <chrono>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "link/Connection.h"
#include "link/HandleResponse.h"
#include "support/ScriptedLink.h"

namespace marisonde {

using namespace std::chrono_literals;
using Lines = std::vector<std::string>;

/// What a Corvane-6 says to ID; the firmware is not among what connecting reads.
inline Lines CorvaneId() {
    return {"Identification:", "Model: CV6",     "S/N: CV060412",      "Config: F2T1",
            "ID: bench",       "Firmware: 1.85", "Maximum depth: 500", "Clock: 07/04/11 09:15:22",
            "Logged casts: 3"};
}
inline Lines DelphId() {
    return {"Identification:", "Model: DELPH-4", "S/N: D4080102",     "Config: ",
            "ID: bench",       "Firmware: 1.85", "Maximum depth: 500"};
}

/// A window that connects to a scripted instrument, in virtual time.
class ConnectionBench : public ScriptedLink {
  protected:
    void Begin(int port = 3, int baud = 9600) {
        operations.Start("Connect", [this, port, baud](Operation& operation) -> QCoro::Task<> {
            operation_ = &operation;
            const ConnectionTry look = co_await TryConnection(operation, window, port, baud, notes);
            result = look;
            endedAt = clock.Steady() - begun;
        });
    }

    /// One tick of the window, then the operations that wait.
    void Tick() {
        clock.AdvanceBy(50ms);
        if (line->IsOpen()) {
            ProcessInput(window, scratch);
            HandleResponse(window);
            window.SendPending();
        }
        const std::string written = line->TakeWritten();
        sent += written;
        heardCommand += written;
        AnswerCommands();
        pump.ResumeReady();
    }
    void TickFor(Millis time) {
        for (Millis passed{0}; passed < time && !result; passed += 50ms) Tick();
    }
    /// Runs to the end; false when there is none within a minute.
    bool Finish() {
        TickFor(60s);
        return result.has_value();
    }

    std::map<std::string, Lines> replies;  ///< by command line, without its CR
    std::string sent;                      ///< everything written
    std::optional<ConnectionTry> result;
    Millis endedAt{0};

    Millis begun = clock.Steady();
    std::vector<std::string> statuses;
    std::vector<ConnectionTry> looks;
    ConnectNotes notes{[this](const std::string& text) { statuses.push_back(text); },
                       [this](const ConnectionTry& look) { looks.push_back(look); }};
    Operation* operation_ = nullptr;
    Operations operations{pump, [](const std::string&, const std::string& why) { FAIL() << why; }};

  private:
    void AnswerCommands() {
        for (std::size_t end = heardCommand.find('\r'); end != std::string::npos;
             end = heardCommand.find('\r')) {
            const auto reply = replies.find(heardCommand.substr(0, end));
            heardCommand.erase(0, end + 1);
            if (reply != replies.end()) Say(reply->second);
        }
    }
    std::string heardCommand;
};

}  // namespace marisonde
