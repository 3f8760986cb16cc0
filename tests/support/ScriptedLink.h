#pragma once

#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

#include "common/Clock.h"
#include "link/InputLoop.h"
#include "link/InstrumentLink.h"
#include "platform/Pump.h"
#include "support/ScriptedLine.h"

namespace marisonde {

/// A window whose instrument is the test, in virtual time.
class ScriptedLink : public testing::Test {
  protected:
    /// The instrument says these lines; they are read in the next tick.
    void Say(const std::vector<std::string>& lines) {
        for (const std::string& text : lines) line->Queue(text + "\r\n");
    }

    VirtualClock clock;
    Pump pump{clock};
    ScriptedLine* line = new ScriptedLine;
    InstrumentLink window{2, clock, std::unique_ptr<SerialLine>(line)};
    DataWindowState& state = window.State;
    LineScratch scratch;
};

}  // namespace marisonde
