#include <functional>

#include "FetchBench.h"
#include "link/LinkWaits.h"

namespace marisonde {
namespace {

class LinkWaits : public FetchBench {
  protected:
    void Run(std::function<QCoro::Task<bool>(Operation&)> wait) {
        result.reset();
        operations.Start("wait", [this, wait](Operation& operation) -> QCoro::Task<> {
            result = co_await wait(operation);
        });
    }
    std::optional<bool> result;
};

TEST_F(LinkWaits, TheFluorescenceStateIsAwaited10Seconds) {
    const auto ask = [this](Operation& operation) { return RequestFlStatus(operation, window); };
    Run(ask);
    TurnFor(9950ms);
    EXPECT_FALSE(result);
    Turn();
    EXPECT_EQ(result, false);
    Run(ask);
    TurnFor(9900ms);
    Say({"FL status: 2"});
    Turn();
    EXPECT_EQ(result, true);
    EXPECT_EQ(state.FlStatus0, 2);
}

TEST_F(LinkWaits, TheFluorescenceStateIsAskedOfConnectedCorvanesOnly) {
    const auto ask = [this](Operation& operation) { return RequestFlStatus(operation, window); };
    Use(InstTypeCode::Delph4);
    Run(ask);
    EXPECT_EQ(result, false);
    Use(InstTypeCode::Corvane4);
    state.Connected = false;
    Run(ask);
    EXPECT_EQ(result, false);
    EXPECT_EQ(Sent(), "");
    state.Connected = true;
    Run(ask);
    operations.CancelAll();
    Turn();
    EXPECT_EQ(result, false);
}

TEST_F(LinkWaits, OutputIsAwaitedInThePortToo) {
    const auto wait = [this](Operation& operation) { return WaitForOutput(operation, window); };
    Run(wait);
    EXPECT_EQ(result, true);
    window.QueueOutput("0123456789ABC");
    line->stuckOutput = 1;
    Run(wait);
    TickFor(10min, 1s);  // no limit of its own
    EXPECT_FALSE(result);
    line->stuckOutput = 0;
    Tick();
    EXPECT_EQ(result, true);
    line->stuckOutput = 1;
    Run(wait);
    line->Vanish();
    Tick();
    EXPECT_EQ(result, false);
}

TEST_F(LinkWaits, ACommandOfAnOperationWaitsForTheConnectDialog) {
    const auto send = [this](Operation& operation) {
        return SendCommandConnected(operation, window, "ver", "");
    };
    Run(send);
    EXPECT_EQ(result, true);
    EXPECT_EQ(Sent(), "ver\r");
    state.Connected = false;
    Run(send);
    EXPECT_EQ(result, false);  // nobody can connect
    std::function<void()> closed;
    window.ShowConnectForm = [&](std::function<void()> whenClosed) { closed = std::move(whenClosed); };
    Run(send);
    Tick();
    EXPECT_FALSE(result);
    state.Connected = true;
    closed();
    Tick();
    EXPECT_EQ(result, true);
    EXPECT_EQ(Sent(), "ver\r");
    state.Connected = false;
    Run(send);
    closed();
    Tick();
    EXPECT_EQ(result, false);
    EXPECT_EQ(Sent(), "");
}

TEST_F(LinkWaits, TheGainModeIsCycledSlowlyThenFaster) {
    const auto cycle = [this](Operation& operation) { return SetRawMode(operation, window, true, 1); };
    Run(cycle);
    TickFor(950ms);
    EXPECT_EQ(line->TakeWritten(), "am,0\rmode,0,3\r");
    TickFor(100ms);
    EXPECT_EQ(line->TakeWritten(), "am,1\r");
    TickFor(950ms);
    EXPECT_EQ(line->TakeWritten(), "");
    TickFor(500ms);
    EXPECT_EQ(line->TakeWritten(), "am,0\rmode,0,3\r");
    TickFor(100ms);
    EXPECT_EQ(line->TakeWritten(), "am,1\r");
    TickFor(800ms);
    EXPECT_FALSE(result);
    TickFor(150ms);
    EXPECT_EQ(result, true);
    Use(InstTypeCode::LTidal);
    Run(cycle);
    EXPECT_EQ(result, false);
    EXPECT_EQ(Sent(), "");
}

TEST_F(LinkWaits, CyclingTheGainModeCanBeStopped) {
    const auto cycle = [this](Operation& operation) { return SetRawMode(operation, window, false, 3); };
    Run(cycle);
    TickFor(1100ms);
    EXPECT_EQ(line->TakeWritten(), "am,0\rmode,0,1\ram,1\r");
    operations.CancelAll();
    Tick();
    EXPECT_EQ(result, false);
}

/// How a wait ends before what it waits for has come.
enum class Ending { Cancelled, WindowClosed, CablePulled };

TEST_F(LinkWaits, EachEndsWithinATickAtAnyMoment) {
    struct Wait {
        const char* name;
        std::function<QCoro::Task<bool>(Operation&)> begin;
        bool needsLine;
    };
    const std::vector<Wait> waits{
        {"FL", [this](Operation& operation) { return RequestFlStatus(operation, window); }, true},
        {"output", [this](Operation& operation) { return WaitForOutput(operation, window); }, true},
        {"mode", [this](Operation& operation) { return SetRawMode(operation, window, true, 3); }, true},
        {"connect",
         [this](Operation& operation) { return SendCommandConnected(operation, window, "VER", ""); }, false},
    };
    std::function<void()> closed;
    window.ShowConnectForm = [&](std::function<void()> whenClosed) { closed = std::move(whenClosed); };
    for (const Wait& wait : waits)
        for (const Ending ending : {Ending::Cancelled, Ending::WindowClosed, Ending::CablePulled})
            for (const int ticks : {0, 1, 5, 30}) {
                if (ending == Ending::CablePulled && !wait.needsLine) continue;
                line->Open(3, 9600);
                line->stuckOutput = 1;
                state.Connected = wait.needsLine;
                auto owner = std::make_unique<Operations>(
                    pump, [this](const std::string& name, const std::string& why) {
                        failures.push_back(name + why);
                    });
                result.reset();
                owner->Start("wait", [this, &wait](Operation& operation) -> QCoro::Task<> {
                    result = co_await wait.begin(operation);
                });
                for (int i = 0; i < ticks; ++i) Tick();
                ASSERT_FALSE(result) << wait.name << ticks;
                if (ending == Ending::Cancelled) owner->CancelAll();
                if (ending == Ending::WindowClosed) owner.reset();
                if (ending == Ending::CablePulled) line->Vanish();
                if (ending != Ending::WindowClosed) Tick();
                EXPECT_EQ(result, false) << wait.name << ticks;
                EXPECT_TRUE(pump.Idle()) << wait.name << ticks;
                if (closed) closed();  // the dialog may close behind the operation that opened it
            }
    EXPECT_EQ(failures, Lines{});
}

}  // namespace
}  // namespace marisonde
