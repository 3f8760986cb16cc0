#include "ConnectionBench.h"

namespace marisonde {
namespace {

class SearchBench : public ConnectionBench {
  protected:
    void Search(std::vector<PortEntry> ports) {
        ports_ = std::move(ports);
        operations.Start("Search", [this](Operation& operation) -> QCoro::Task<> {
            operation_ = &operation;
            const ConnectionTry look = co_await SearchPorts(operation, window, ports_, notes);
            result = look;
        });
    }
    static PortEntry At(int number) { return {number, "/dev/tty" + std::to_string(number), "", ""}; }

    std::vector<PortEntry> ports_;
};

TEST_F(SearchBench, TriesEveryPortAtTheRatesInTheirOrder) {
    Search({At(2), At(9)});
    ASSERT_TRUE(Finish());
    EXPECT_EQ(line->opened, (std::vector<int>{2, 2, 2, 2, 2, 9, 9, 9, 9, 9}));
    EXPECT_EQ(line->rates,
              (std::vector<int>{19200, 9600, 38400, 57600, 4800, 19200, 9600, 38400, 57600, 4800}));
    EXPECT_EQ(looks.size(), 10u);
    EXPECT_FALSE(result->Found());
    // 3 s of silence for each of the 10 looks.
    EXPECT_EQ(clock.Steady() - begun, 30s);
}

TEST_F(SearchBench, EndsWithTheFirstInstrument) {
    Search({At(2), At(9)});
    TickFor(3s);
    replies["ID"] = CorvaneId();
    ASSERT_TRUE(Finish());
    EXPECT_TRUE(result->Found());
    EXPECT_EQ(line->rates, (std::vector<int>{19200, 9600}));
    EXPECT_EQ(state.BaudRate, 9600);
    EXPECT_EQ(statuses.back(), "Corvane-6 found");
    EXPECT_EQ(FindingText(looks[0]), "silent");
    EXPECT_EQ(FindingText(looks[1]), "Corvane-6 found");
}

TEST_F(SearchBench, StopEndsItWithinOneTickWhereverItIs) {
    for (int ticks = 0; ticks < 600; ticks += 7) {
        result.reset();
        state.ConnectStage = kConnecting;
        Search({At(1), At(2)});
        for (int tick = 0; tick < ticks && !result; ++tick) Tick();
        ASSERT_FALSE(result) << ticks;
        const std::size_t opened = line->opened.size();
        state.ConnectStage = kConnectEnded;
        Tick();
        ASSERT_TRUE(result) << ticks;
        EXPECT_EQ(result->finding, Finding::Cancelled);
        EXPECT_EQ(line->opened.size(), opened) << "nothing is opened any more";
    }
}

TEST_F(SearchBench, WithoutPortsNothingIsFound) {
    Search({});
    ASSERT_TRUE(result);
    EXPECT_FALSE(result->Found());
}

TEST_F(SearchBench, SaysWhatItMetAtEachPort) {
    line->openFailsWith = {LineError::Kind::Denied, "Permission denied"};
    Search({At(4)});
    ASSERT_TRUE(result);
    ASSERT_EQ(looks.size(), 5u);
    for (const ConnectionTry& look : looks) EXPECT_EQ(FindingText(look), "permission denied");
}

}  // namespace
}  // namespace marisonde
