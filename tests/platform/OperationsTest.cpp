#include <chrono>
#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "common/Clock.h"
#include "platform/Operations.h"

namespace marisonde {
namespace {

using namespace std::chrono_literals;
using Log = std::vector<std::string>;

bool Never() {
    return false;
}

/// Three steps of a second each; says how it ended, also when its frame dies unended.
QCoro::Task<> ThreeSteps(Operation& operation, Log& log) {
    struct Farewell {
        Log& log;
        ~Farewell() { log.push_back("closed"); }
    } farewell{log};
    for (int step = 1; step <= 3; ++step) {
        co_await operation.Until(Never, 1s);
        if (operation.Cancelled()) {
            log.push_back("cancelled at " + std::to_string(step));
            co_return;
        }
        log.push_back("step " + std::to_string(step));
    }
}

class OperationsTest : public testing::Test {
  protected:
    OperationsTest() {
        operations.emplace(pump, [this](const std::string& name, const std::string& reason) {
            failures.push_back(name + ": " + reason);
        });
    }
    void StartThreeSteps(std::string name) {
        operations->Start(std::move(name),
                          [this](Operation& operation) { return ThreeSteps(operation, log); });
    }
    void Turn(Millis step) {
        clock.AdvanceBy(step);
        pump.ResumeReady();
    }
    VirtualClock clock;
    Pump pump{clock};
    Log log;
    Log failures;
    std::optional<Operations> operations;
};

TEST_F(OperationsTest, RunsToItsEndAndIsForgotten) {
    StartThreeSteps("wake");
    EXPECT_TRUE(operations->Running("wake"));
    EXPECT_FALSE(operations->Running("connect"));
    for (int i = 0; i < 3; ++i) Turn(1s);
    EXPECT_EQ(log, (Log{"step 1", "step 2", "step 3", "closed"}));
    EXPECT_EQ(operations->Count(), 0u);
    EXPECT_TRUE(pump.Idle());
    EXPECT_EQ(failures, Log{});
}

TEST_F(OperationsTest, OneThatNeverWaitsEndsInsideStart) {
    operations->Start("quick", [this](Operation& operation) -> QCoro::Task<> {
        log.push_back(operation.Name());
        co_return;
    });
    EXPECT_EQ(log, Log{"quick"});
    EXPECT_EQ(operations->Count(), 0u);
}

TEST_F(OperationsTest, ACapturingLambdaLivesAsLongAsItsCoroutine) {
    auto text = std::make_shared<std::string>("kept");
    const std::weak_ptr<std::string> watch = text;
    operations->Start("lambda", [this, text = std::move(text)](Operation& operation) -> QCoro::Task<> {
        co_await operation.Until(Never, 1s);
        log.push_back(*text);
    });
    Turn(1s);
    EXPECT_EQ(log, Log{"kept"});
    EXPECT_TRUE(watch.expired());
}

TEST_F(OperationsTest, CancelEndsAWaitInTheNextTurn) {
    StartThreeSteps("a");
    Turn(1s);
    operations->CancelAll();
    EXPECT_EQ(log, Log{"step 1"});
    pump.ResumeReady();
    EXPECT_EQ(log, (Log{"step 1", "cancelled at 2", "closed"}));
    EXPECT_EQ(operations->Count(), 0u);
}

TEST_F(OperationsTest, DestroyingTheOwnerEndsWhatRuns) {
    StartThreeSteps("a");
    StartThreeSteps("b");
    operations.reset();
    EXPECT_EQ(log, (Log{"cancelled at 1", "closed", "cancelled at 1", "closed"}));
    EXPECT_TRUE(pump.Idle());
    EXPECT_EQ(failures, Log{});
}

TEST_F(OperationsTest, ExceptionsBeforeAndAfterTheFirstWaitAreReported) {
    operations->Start("at once", [](Operation&) -> QCoro::Task<> {
        throw std::runtime_error("no port");
        co_return;
    });
    EXPECT_EQ(failures, Log{"at once: no port"});
    operations->Start("later", [](Operation& operation) -> QCoro::Task<> {
        co_await operation.Until(Never, 1s);
        throw 7;
    });
    Turn(1s);
    EXPECT_EQ(failures, (Log{"at once: no port", "later: unknown reason"}));
    EXPECT_EQ(operations->Count(), 0u);
}

QCoro::Task<int> Inner(Operation& operation) {
    co_await operation.Until(Never, 1s);
    co_return 42;
}

TEST_F(OperationsTest, ProceduresMayAwaitProcedures) {
    operations->Start("outer", [this](Operation& operation) -> QCoro::Task<> {
        const int answer = co_await Inner(operation);
        log.push_back(std::to_string(answer));
    });
    EXPECT_EQ(log, Log{});
    Turn(1s);
    EXPECT_EQ(log, Log{"42"});
}

TEST_F(OperationsTest, AFailureReportMayStartTheNextOperation) {
    std::optional<Operations> second;
    second.emplace(pump, [this, &second](const std::string& name, const std::string&) {
        log.push_back(name);
        second->Start("repair", [this](Operation&) -> QCoro::Task<> {
            log.push_back("repaired");
            co_return;
        });
    });
    second->Start("broken", [](Operation&) -> QCoro::Task<> {
        throw std::runtime_error("broken");
        co_return;
    });
    EXPECT_EQ(log, (Log{"broken", "repaired"}));
    EXPECT_EQ(second->Count(), 0u);
}

TEST_F(OperationsTest, OneThatWillNotEndIsReportedAndOutlivesItsOwnerSafely) {
    bool stop = false;
    operations->Start("stubborn", [this, &stop](Operation&) -> QCoro::Task<> {
        co_await pump.Until([&stop] { return stop; }, 1h);
        log.push_back("ended at last");
    });
    operations.reset();
    EXPECT_EQ(failures, Log{"stubborn: did not end when it was cancelled"});
    stop = true;
    pump.ResumeReady();
    EXPECT_EQ(log, Log{"ended at last"});
    EXPECT_TRUE(pump.Idle());
}

TEST_F(OperationsTest, AnOperationOfAnotherOwnerCanEndThemAll) {
    StartThreeSteps("a");
    Operations program(pump, nullptr);
    program.Start("exit", [this](Operation& operation) -> QCoro::Task<> {
        operations->CancelAll();
        co_await operation.NextTurn();
        log.push_back("window closed");
        operations.reset();
    });
    pump.ResumeReady();
    EXPECT_EQ(log, (Log{"cancelled at 1", "closed", "window closed"}));
    EXPECT_EQ(failures, Log{});
    EXPECT_FALSE(operations.has_value());
}

TEST_F(OperationsTest, WorkAtHandGoesOnWithTheNextTurnUntilItIsCancelled) {
    int asked = 0;
    pump.OnWorkAtHand = [&asked] { ++asked; };
    operations->Start("work", [this](Operation& operation) -> QCoro::Task<> {
        for (int slice = 1; slice <= 4; ++slice) {
            log.push_back("slice " + std::to_string(slice));
            co_await operation.NextTurn();
        }
    });
    EXPECT_EQ(log, Log{"slice 1"});
    pump.ResumeReady();
    EXPECT_EQ(log, (Log{"slice 1", "slice 2"}));
    EXPECT_EQ(asked, 2);
    operations->CancelAll();
    pump.ResumeReady();
    EXPECT_EQ(log, (Log{"slice 1", "slice 2", "slice 3", "slice 4"}));
    EXPECT_EQ(operations->Count(), 0u);
    EXPECT_EQ(asked, 2);
}

TEST_F(OperationsTest, AWaitWithoutALimitEndsOnlyByItsConditionOrCancel) {
    bool answered = false;
    for (const char* name : {"question", "other question"})
        operations->Start(name, [this, name, &answered](Operation& operation) -> QCoro::Task<> {
            const bool first = operation.Name() == "question";
            const auto met = [&] { return first && answered; };
            co_await operation.Until(met);
            log.push_back(name + std::string(operation.Cancelled() ? " cancelled" : " answered"));
        });
    Turn(std::chrono::hours(24 * 3650));
    EXPECT_EQ(log, Log{});
    answered = true;
    Turn(1s);
    EXPECT_EQ(log, Log{"question answered"});
    operations->CancelAll();
    Turn(1s);
    EXPECT_EQ(log, (Log{"question answered", "other question cancelled"}));
}

TEST_F(OperationsTest, WhatIsRunningIsNotStartedTwice) {
    const auto start = [this](const char* name) {
        operations->StartUnlessRunning(name,
                                       [this](Operation& operation) { return ThreeSteps(operation, log); });
    };
    start("a");
    start("a");
    EXPECT_EQ(operations->Count(), 1u);
    start("b");
    EXPECT_EQ(operations->Count(), 2u);
    operations->Cancel("a");
    pump.ResumeReady();
    EXPECT_EQ(log, (Log{"cancelled at 1", "closed"}));
    start("a");
    EXPECT_EQ(operations->Count(), 2u);
}

TEST_F(OperationsTest, SixOperationsEndInAnyOrder) {
    for (int i = 0; i < 6; ++i)
        operations->Start(std::to_string(i), [this, i](Operation& operation) -> QCoro::Task<> {
            co_await operation.Until(Never, Millis(1000 * (6 - i)));
            log.push_back(operation.Name());
        });
    for (int i = 0; i < 6; ++i) Turn(1s);
    EXPECT_EQ(log, (Log{"5", "4", "3", "2", "1", "0"}));
}

}  // namespace
}  // namespace marisonde
