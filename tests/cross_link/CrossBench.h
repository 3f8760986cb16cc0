#pragma once

#include <chrono>
#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "common/Settings.h"
#include "link/CalibrationFetch.h"
#include "link/Commands.h"
#include "link/Connection.h"
#include "link/HandleResponse.h"
#include "link/InputLoop.h"
#include "link/SimulatedLine.h"
#include "platform/Operations.h"
#include "platform/Pump.h"
#include "support/ShareFolder.h"

namespace marisonde {

using namespace std::chrono_literals;
namespace sim = marisonde::simulator;

/// A window's link on the cable of a simulated instrument, in virtual time.
class CrossBench : public testing::Test {
  protected:
    void Plug(sim::Model model, sim::Options options = {}) {
        auto made = sim::MakeInstrument(model, options);
        auto line = std::make_unique<SimulatedLine>(std::move(made), clock);
        instrument = &line->Instrument();
        window.UseLine(std::move(line));
        rate = options.baud;
    }
    void Tick() {
        clock.AdvanceBy(50ms);
        ProcessInput(window, scratch);
        HandleResponse(window);
        window.SendPending();
        pump.ResumeReady();
    }
    /// Ticks until `met`; false after `limit`.
    template <class Met>
    bool Wait(Met met, Millis limit) {
        for (Millis passed{0}; passed < limit && !met(); passed += 50ms) Tick();
        return met();
    }
    void TickFor(Millis time) {
        Wait([] { return false; }, time);
    }
    /// Opens the port without identifying the instrument.
    void Open() {
        ASSERT_EQ(window.OpenPort(3, rate).kind, LineError::Kind::None);
        state.InstType = static_cast<InstTypeCode>(instrument->Info().model);
        state.Connected = true;
    }
    /// Identifies the instrument as the connect dialog does.
    Finding Connect() {
        std::optional<Finding> finding;
        operations.Start("connect", [&](Operation& operation) -> QCoro::Task<> {
            const ConnectionTry look = co_await TryConnection(operation, window, 3, rate, notes);
            finding = look.finding;
        });
        Wait([&] { return finding.has_value(); }, 60s);
        return finding.value_or(Finding::CouldNotOpen);
    }
    /// Stops the instrument, which may have a shutter to close, and fetches its calibration.
    FetchOutcome Fetch() {
        window.QueueOutput("STOP\r");
        TickFor(4s);
        std::optional<FetchOutcome> outcome;
        operations.Start("fetch", [&](Operation& operation) -> QCoro::Task<> {
            outcome = co_await LoadCalFromInstrument(operation, window, request);
        });
        EXPECT_TRUE(Wait([&] { return outcome.has_value(); }, 120s));
        return outcome.value_or(FetchOutcome::Silent);
    }
    /// Sends a command and waits for `met`.
    template <class Met>
    bool Command(const std::string& name, const std::string& argument, Met met, Millis limit = 10s) {
        SendCommand(name, window, argument);
        return Wait(met, limit);
    }

    VirtualClock clock{40728.385671};  // 4 July 2011, about 09:15
    Pump pump{clock};
    InstrumentLink window{1, clock, nullptr};
    DataWindowState& state = window.State;
    LineScratch scratch;
    MapSettings settings;
    SigmaParams sigma = LoadSigmaParams(settings, ShareFolder(), ShareFolder()).params;
    PureWaterParams water = LoadPureWaterParams(settings);
    FetchRequest request{sigma, water};
    ConnectNotes notes;
    Operations operations{
        pump, [](const std::string& name, const std::string& why) { FAIL() << name << ": " << why; }};
    sim::Instrument* instrument = nullptr;
    int rate = 19200;
};

}  // namespace marisonde
