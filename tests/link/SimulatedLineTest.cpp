#include <chrono>
#include <gtest/gtest.h>
#include <memory>
#include <string>

#include "link/SimulatedLine.h"

namespace marisonde {
namespace {

using namespace std::chrono_literals;

class SimulatedLineTest : public testing::Test {
  protected:
    static simulator::Options At19200() {
        simulator::Options options;
        options.baud = 19200;
        return options;
    }
    static std::unique_ptr<simulator::Instrument> Make(const simulator::Options& options) {
        return simulator::MakeInstrument(simulator::Model::Corvane6, options);
    }
    SimulatedLine LineOf(const simulator::Options& options) { return {Make(options), clock}; }
    /// Ticks of 50 ms; what was read in them.
    std::string Read(SimulatedLine& line, Millis length) {
        std::string read;
        for (Millis t{0}; t < length; t += 50ms) {
            clock.AdvanceBy(50ms);
            line.ReadAll(read);
        }
        return read;
    }
    /// What an instrument that is asked directly has sent by `until`.
    static std::string Twin(const simulator::Options& options, Millis until) {
        const auto twin = Make(options);
        twin->RunUntil(until);
        return twin->TakeOutput(until);
    }
    VirtualClock clock;
};

TEST_F(SimulatedLineTest, BringsExactlyWhatTheInstrumentSends) {
    SimulatedLine line = LineOf(At19200());
    ASSERT_FALSE(line.Open(1, 19200));
    const std::string read = Read(line, 20s);
    EXPECT_GT(read.size(), 100u);
    EXPECT_EQ(read, Twin(At19200(), 20s));
    EXPECT_FALSE(line.LastError());
}

TEST_F(SimulatedLineTest, AClosedPortLosesWhatIsSent) {
    SimulatedLine line = LineOf(At19200());
    EXPECT_EQ(Read(line, 10s), "");
    ASSERT_FALSE(line.Open(1, 19200));
    EXPECT_EQ(line.BytesToRead(), 0u);
    const std::string all = Twin(At19200(), 20s);
    EXPECT_EQ(Twin(At19200(), 10s) + Read(line, 10s), all);
    line.Close();
    EXPECT_FALSE(line.IsOpen());
    EXPECT_EQ(Read(line, 10s), "");
}

TEST_F(SimulatedLineTest, OnlyTheInstrumentsOwnRateIsUnderstood) {
    SimulatedLine line = LineOf(At19200());
    ASSERT_FALSE(line.Open(1, 9600));
    EXPECT_EQ(Read(line, 10s), "");
    line.Write("stop\r");
    EXPECT_EQ(Read(line, 10s), "");
    EXPECT_TRUE(line.Instrument().Sampling());
    line.SetRate(19200);
    EXPECT_NE(Read(line, 10s), "");
    line.Write("stop\r");
    Read(line, 60s);
    EXPECT_FALSE(line.Instrument().Sampling());
}

TEST_F(SimulatedLineTest, CountsAndDropsWhatHasArrived) {
    SimulatedLine line = LineOf(At19200());
    ASSERT_FALSE(line.Open(1, 19200));
    clock.AdvanceBy(10s);
    EXPECT_EQ(line.BytesToRead(), Twin(At19200(), 10s).size());
    line.DropInput();
    EXPECT_EQ(line.BytesToRead(), 0u);
    std::string read;
    line.ReadAll(read);
    EXPECT_EQ(read, "");
}

TEST_F(SimulatedLineTest, AVanishedInstrumentIsGoneAfterItsLastBytes) {
    simulator::Options options = At19200();
    options.faults.vanishAt = 10s;
    SimulatedLine line = LineOf(options);
    ASSERT_FALSE(line.Open(1, 19200));
    clock.AdvanceBy(9900ms);
    EXPECT_GT(line.BytesToRead(), 0u);
    EXPECT_FALSE(line.LastError());
    clock.AdvanceBy(10s);
    std::string read;
    line.ReadAll(read);
    EXPECT_EQ(read.substr(0, 100), Twin(At19200(), 9900ms).substr(0, 100));
    EXPECT_EQ(line.LastError().kind, LineError::Kind::Gone);
    EXPECT_FALSE(line.IsOpen());
    const std::size_t before = read.size();
    line.ReadAll(read);
    EXPECT_EQ(read.size(), before);
    EXPECT_EQ(line.Open(1, 19200).kind, LineError::Kind::NotFound);
}

}  // namespace
}  // namespace marisonde
