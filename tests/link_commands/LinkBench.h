#pragma once

#include <chrono>
#include <string>
#include <string_view>
#include <vector>

#include "link/Commands.h"
#include "link/HandleResponse.h"
#include "platform/Operations.h"
#include "support/ScriptedLink.h"

namespace marisonde {

using namespace std::chrono_literals;

/// A connected window.
class LinkBench : public ScriptedLink {
  protected:
    LinkBench() { Use(InstTypeCode::Corvane6); }

    void Use(InstTypeCode type) {
        window.State.InstType = type;
        window.State.InstState = InstStateCode::Stopped;
        window.State.Connected = true;
        if (!line->IsOpen()) window.OpenPort(3, 9600);
    }

    /// One tick of the window, then the operations that wait.
    void Tick(Millis step = 50ms) {
        clock.AdvanceBy(step);
        ProcessInput(window, scratch);
        HandleResponse(window);
        window.SendPending();
        pump.ResumeReady();
    }
    void TickFor(Millis time, Millis step = 50ms) {
        for (Millis passed{0}; passed < time; passed += step) Tick(step);
    }
    void Hear(const std::vector<std::string>& lines) {
        Say(lines);
        Tick();
    }
    /// What the program has put out, once everything queued has gone.
    std::string Sent() {
        for (int i = 0; i < 2000 && !window.PendingOutput.empty(); ++i) window.SendPending();
        return line->TakeWritten();
    }
};

}  // namespace marisonde
