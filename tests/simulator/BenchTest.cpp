// What the factory's bench asks of instruments.
#include "simulator/Conversation.h"

namespace marisonde::simulator {
namespace {

using namespace std::chrono_literals;

/// The first line of a reply.
std::string FirstLine(const std::string& reply) {
    return reply.substr(0, reply.find("\r\n"));
}

TEST(CorvaneBench, GivesSingleSamplesWithAllTheirCounts) {
    Conversation talk(Model::Corvane6);
    const std::string line = FirstLine(talk.Ask("C"));
    EXPECT_EQ(line.substr(0, 2), "*V");
    // The layout: 10 characters, 8 slots of 18, 8 gains, pressure, temperature, three bytes, checksum.
    EXPECT_EQ(line.size(), 10U + 8 * 18 + 8 + 4 + 2 + 3 * 2 + 2);
    EXPECT_TRUE(host::ChecksumFits(line, false));
    EXPECT_EQ(talk.Ask("X"), "Cleared\r\n");
    Conversation decimal(Model::Corvane4, {.form = LineForm::Decimal});
    EXPECT_EQ(host::Commas(FirstLine(decimal.Ask("C"))), 53);
}

TEST(CorvaneBench, HoldsTheGainOfAllChannelsOrOfOne) {
    Conversation talk(Model::Corvane4);
    const auto gains = [&] { return FirstLine(talk.Ask("C")).substr(154, 4); };
    for (const char* const step : {"1", "3", "5"}) {
        EXPECT_EQ(talk.Ask(std::string("gain,0,") + step), std::string("Gain: ") + step + "\r\n");
        EXPECT_EQ(gains(), std::string(4, *step));
    }
    EXPECT_EQ(talk.Ask("gain,2,4"), "Gain of channel 2: 4\r\n");
    EXPECT_EQ(gains(), "5455");
    for (const char* const bad : {"gain,0,0", "gain,0,6", "gain,5,1", "gain,3", "gain,,3", "gain,0,2.5"})
        EXPECT_EQ(talk.Ask(bad), "Value refused\r\n") << bad;
    EXPECT_EQ(gains(), "5455");
}

TEST(CorvaneBench, ALowGainDoesNotChangeUntilItIsReleased) {
    Conversation talk(Model::Corvane4);
    const std::string usual = FirstLine(talk.Ask("C")).substr(154, 4);
    talk.Ask("gain,0,1");
    EXPECT_EQ(FirstLine(talk.Ask("C")).substr(154, 4), "1111");
    EXPECT_EQ(talk.Ask("again,0,1"), "Automatic gain: on\r\n");
    EXPECT_EQ(FirstLine(talk.Ask("C")).substr(154, 4), usual);
    EXPECT_EQ(talk.Ask("again,0,0"), "Automatic gain: off\r\n");
    EXPECT_EQ(FirstLine(talk.Ask("C")).substr(154, 4), usual);
    talk.Ask("gain,0,1");
    talk.instrument->Restart(talk.now);
    EXPECT_EQ(FirstLine(talk.Ask("C")).substr(154, 4), usual);
}

TEST(CorvaneBench, ASignalBeyondTheConverterStaysAtItsEnd) {
    Conversation talk(Model::Corvane4);
    talk.Ask("gain,0,5");
    EXPECT_EQ(FirstLine(talk.Ask("C")).substr(10, 4), "7FFF");
}

TEST(CorvaneBench, ModeAndAveragingAreTold) {
    Conversation talk(Model::Corvane6);
    EXPECT_EQ(talk.Ask("am,0"), "Averaging: off\r\n");
    EXPECT_EQ(talk.Ask("mode,0,3"), "Mode: 3\r\n");
    EXPECT_EQ(talk.Ask("mode,2,1"), "Mode of channel 2: 1\r\n");
    EXPECT_EQ(talk.Ask("am,1"), "Averaging: on\r\n");
    EXPECT_EQ(talk.Ask("am,2"), "Value refused\r\n");
    EXPECT_EQ(talk.Ask("mode,0,4"), "Value refused\r\n");
    Conversation delph(Model::Delph2);
    for (const char* const other : {"C", "X", "gain,0,1", "again,0,1", "mode,0,1", "am,1"})
        EXPECT_EQ(delph.Ask(other), "Unknown command\r\n") << other;
}

TEST(TidalBench, AnEmptyLineIsASampleWhileTheGainIsHeld) {
    Conversation talk(Model::NTidal);
    EXPECT_EQ(talk.AskWithEcho("\r"), "\r\n");
    EXPECT_EQ(talk.Ask("gain2"), "Gain: 2\r\n");
    const std::string line = talk.AskWithEcho("\r").substr(2);
    EXPECT_EQ(line.substr(0, 2), "*C");
    EXPECT_EQ(line.substr(16, 1), "2");  // behind "*C", 8 + 2 of the time and 4 of beta
    talk.Ask("dataformat,d");
    EXPECT_EQ(host::Commas(FirstLine(talk.AskWithEcho("\r").substr(2))), 11);
    EXPECT_EQ(talk.Ask("gain0"), "Gain: automatic\r\n");
    EXPECT_EQ(talk.AskWithEcho("\r"), "\r\n");
    EXPECT_EQ(talk.Ask("gain6"), "Value refused\r\n");
    EXPECT_EQ(talk.Ask("gain"), "Value refused\r\n");
}

}  // namespace
}  // namespace marisonde::simulator
