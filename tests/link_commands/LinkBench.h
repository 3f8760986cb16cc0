#pragma once

#include <chrono>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "common/Clock.h"
#include "link/Commands.h"
#include "link/HandleResponse.h"
#include "link/InputLoop.h"
#include "link/InstrumentLink.h"
#include "platform/Operations.h"
#include "platform/Pump.h"
#include "support/ScriptedLine.h"

namespace marisonde {

using namespace std::chrono_literals;

/// A connected window whose instrument is the test, in virtual time.
class LinkBench : public testing::Test {
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
    /// The instrument says these lines; they are read in the next tick.
    void Say(const std::vector<std::string>& lines) {
        for (const std::string& text : lines) line->Queue(text + "\r\n");
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

    VirtualClock clock;
    Pump pump{clock};
    ScriptedLine* line = new ScriptedLine;
    InstrumentLink window{2, clock, std::unique_ptr<SerialLine>(line)};
    DataWindowState& state = window.State;
    LineScratch scratch;
};

}  // namespace marisonde
