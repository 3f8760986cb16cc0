#include <chrono>
#include <coroutine>
#include <gtest/gtest.h>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "common/Clock.h"
#include "platform/Pump.h"

namespace marisonde {
namespace {

using namespace std::chrono_literals;

/// The smallest coroutine: its frame dies with its owner, also while it waits.
class Frame {
  public:
    struct promise_type {
        Frame get_return_object() { return Frame(std::coroutine_handle<promise_type>::from_promise(*this)); }
        std::suspend_never initial_suspend() noexcept { return {}; }
        std::suspend_always final_suspend() noexcept { return {}; }
        void return_void() {}
        void unhandled_exception() { failure = std::current_exception(); }
        std::exception_ptr failure;
    };
    explicit Frame(std::coroutine_handle<promise_type> handle) : handle_(handle) {}
    Frame(Frame&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}
    Frame& operator=(Frame&& other) noexcept {
        std::swap(handle_, other.handle_);
        return *this;
    }
    ~Frame() {
        if (handle_) handle_.destroy();
    }
    [[nodiscard]] bool Done() const { return handle_.done(); }
    [[nodiscard]] std::exception_ptr Failure() const { return handle_.promise().failure; }

  private:
    std::coroutine_handle<promise_type> handle_;
};

using Log = std::vector<std::string>;

Frame WaitFor(Pump& pump, const bool& flag, Millis limit, Log& log, std::string name) {
    const bool met = co_await pump.Until([&flag] { return flag; }, limit);
    log.push_back(name + (met ? " met" : " limit"));
}

class PumpTest : public testing::Test {
  protected:
    void Turn(Millis step) {
        clock.AdvanceBy(step);
        pump.ResumeReady();
    }
    VirtualClock clock;
    Pump pump{clock};
    bool flag = false;
    Log log;
};

TEST_F(PumpTest, AConditionThatIsTrueAlreadyDoesNotSuspend) {
    flag = true;
    const Frame frame = WaitFor(pump, flag, 3s, log, "a");
    EXPECT_TRUE(frame.Done());
    EXPECT_EQ(log, Log{"a met"});
    EXPECT_TRUE(pump.Idle());
}

TEST_F(PumpTest, ResumesInTheTurnInWhichTheConditionComesTrue) {
    const Frame frame = WaitFor(pump, flag, 3s, log, "a");
    EXPECT_EQ(pump.WaitingCount(), 1u);
    Turn(50ms);
    EXPECT_FALSE(frame.Done());
    flag = true;
    EXPECT_FALSE(frame.Done());
    Turn(50ms);
    EXPECT_TRUE(frame.Done());
    EXPECT_EQ(log, Log{"a met"});
}

TEST_F(PumpTest, TellsOfWorkAtHandAndOfNoOtherWait) {
    int told = 0;
    pump.OnWorkAtHand = [&told] { ++told; };
    const Frame patient = WaitFor(pump, flag, 1ms, log, "patient");
    EXPECT_EQ(told, 0);
    const Frame atWork = WaitFor(pump, flag, 0ms, log, "at work");
    EXPECT_EQ(told, 1);
    EXPECT_FALSE(atWork.Done());
    pump.ResumeReady();
    EXPECT_TRUE(atWork.Done());
    EXPECT_FALSE(patient.Done());
    EXPECT_EQ(told, 1);
}

TEST_F(PumpTest, TheLimitPassesAtItsMillisecondAndNotBefore) {
    const Frame frame = WaitFor(pump, flag, 60s, log, "a");
    Turn(59999ms);
    EXPECT_FALSE(frame.Done());
    Turn(1ms);
    EXPECT_EQ(log, Log{"a limit"});
}

TEST_F(PumpTest, AConditionMetInTheTurnOfTheLimitCountsAsMet) {
    const Frame frame = WaitFor(pump, flag, 1s, log, "a");
    flag = true;
    Turn(5s);
    EXPECT_EQ(log, Log{"a met"});
}

TEST_F(PumpTest, ALimitOfZeroWaitsOneTurnAndTheLongestNeverPasses) {
    const Frame zero = WaitFor(pump, flag, 0s, log, "zero");
    const Frame endless = WaitFor(pump, flag, Millis::max(), log, "endless");
    EXPECT_FALSE(zero.Done());
    Turn(0ms);
    EXPECT_EQ(log, Log{"zero limit"});
    Turn(1000h);
    EXPECT_FALSE(endless.Done());
}

TEST_F(PumpTest, ResumesInTheOrderOfWaiting) {
    const Frame a = WaitFor(pump, flag, 3s, log, "a");
    const Frame b = WaitFor(pump, flag, 1s, log, "b");
    const Frame c = WaitFor(pump, flag, 3s, log, "c");
    Turn(1s);
    flag = true;
    Turn(50ms);
    EXPECT_EQ(log, (Log{"b limit", "a met", "c met"}));
}

Frame WaitTwice(Pump& pump, Log& log) {
    co_await pump.Until([] { return false; }, 1s);
    log.push_back("first");
    co_await pump.Until([] { return false; }, 0s);
    log.push_back("second");
}

TEST_F(PumpTest, AResumedStepThatWaitsAgainIsLookedAtInTheNextTurn) {
    const Frame frame = WaitTwice(pump, log);
    Turn(10s);
    EXPECT_EQ(log, Log{"first"});
    Turn(0ms);
    EXPECT_EQ(log, (Log{"first", "second"}));
    EXPECT_TRUE(pump.Idle());
}

Frame TurnsThePump(Pump& pump, Log& log) {
    co_await pump.Until([] { return false; }, 0s);
    log.push_back(pump.Turning() ? "in turn" : "outside");
    pump.ResumeReady();
    log.push_back("end");
}

TEST_F(PumpTest, ATurnInsideATurnDoesNothing) {
    const Frame a = TurnsThePump(pump, log);
    const Frame b = WaitFor(pump, flag, 0s, log, "b");
    Turn(0ms);
    EXPECT_EQ(log, (Log{"in turn", "end", "b limit"}));
    EXPECT_FALSE(pump.Turning());
}

TEST_F(PumpTest, AFrameDestroyedWhileItWaitsIsForgotten) {
    {
        const Frame frame = WaitFor(pump, flag, 1s, log, "a");
        EXPECT_FALSE(pump.Idle());
    }
    EXPECT_TRUE(pump.Idle());
    flag = true;
    Turn(10s);
    EXPECT_EQ(log, Log{});
}

Frame DestroysTheOther(Pump& pump, std::vector<Frame>& others) {
    co_await pump.Until([] { return false; }, 0s);
    others.clear();
}

TEST_F(PumpTest, AFrameDestroyedByOneOfTheSameTurnIsNotResumed) {
    std::vector<Frame> others;
    const Frame first = DestroysTheOther(pump, others);
    others.push_back(WaitFor(pump, flag, 0s, log, "second"));
    Turn(0ms);
    EXPECT_TRUE(first.Done());
    EXPECT_EQ(log, Log{});
    EXPECT_TRUE(pump.Idle());
}

Frame AsksABadQuestion(Pump& pump) {
    int asked = 0;
    co_await pump.Until(
        [&asked]() -> bool {
            if (++asked > 1) throw std::runtime_error("bad question");
            return false;
        },
        3s);
}

TEST_F(PumpTest, AnExceptionOfAConditionReachesItsOwnCoroutineOnly) {
    const Frame bad = AsksABadQuestion(pump);
    const Frame good = WaitFor(pump, flag, 1s, log, "good");
    Turn(1s);
    EXPECT_TRUE(bad.Done());
    ASSERT_TRUE(bad.Failure());
    EXPECT_THROW(std::rethrow_exception(bad.Failure()), std::runtime_error);
    EXPECT_EQ(log, Log{"good limit"});
}

TEST_F(PumpTest, AConditionMayStartACoroutine) {
    std::vector<Frame> started;
    bool once = false;
    const auto start = [&] {
        if (!std::exchange(once, true)) return false;
        if (started.empty()) started.push_back(WaitFor(pump, flag, 0s, log, "started"));
        return true;
    };
    const auto run = [](Pump& p, std::function<bool()> met) -> Frame { co_await p.Until(met, 3s); };
    const Frame starter = run(pump, start);
    Turn(0ms);
    EXPECT_TRUE(starter.Done());
    ASSERT_EQ(started.size(), 1u);
    EXPECT_FALSE(started[0].Done());
    Turn(0ms);
    EXPECT_EQ(log, Log{"started limit"});
}

TEST_F(PumpTest, DatesThatJumpDoNotMoveLimits) {
    const Frame frame = WaitFor(pump, flag, 1s, log, "a");
    clock.SetDate(60000);
    Turn(999ms);
    EXPECT_FALSE(frame.Done());
    clock.SetDate(10);
    Turn(1ms);
    EXPECT_EQ(log, Log{"a limit"});
}

}  // namespace
}  // namespace marisonde
