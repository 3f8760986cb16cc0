#include <chrono>
#include <gtest/gtest.h>
#include <string>

#include "link/Xmodem.h"

namespace marisonde {
namespace {

using namespace std::chrono_literals;

class XmodemTest : public testing::Test {
  protected:
    /// One call, 50 ms after the one before; gives what is sent back.
    std::string Step(std::string_view chunk = "") {
        now += 50ms;
        std::string reply;
        XmodemReceive(state, chunk, now, reply);
        return reply;
    }
    void Start() {
        XmodemStart(state);
        EXPECT_EQ(Step(), "C");
    }
    static std::string Data(char fill = 'x') { return std::string(kXmodemBlock, fill); }
    static std::string Frame(const std::string& data, char number = 1) {
        const int crc = XmodemCrc(data);
        return std::string{'\x01', number, static_cast<char>(255 - number)} + data +
               static_cast<char>(crc / 256) + static_cast<char>(crc % 256);
    }
    XmodemState state;
    Millis now{0};
};

TEST(XmodemCrc, HasItsPublishedCheckValues) {
    // The CRC with polynomial 0x1021 and start 0 of "123456789" is 0x31C3 (the usual check value).
    EXPECT_EQ(XmodemCrc("123456789"), 0x31C3);
    EXPECT_EQ(XmodemCrc(""), 0);
    // One byte 1: the bit reaches the top after seven doublings (256 * 128 = 32768), and the eighth turns it
    // into the polynomial itself.
    EXPECT_EQ(XmodemCrc(0, 1), 0x1021);
    // A block followed by its CRC, high byte first, leaves 0.
    EXPECT_EQ(XmodemCrc("123456789\x31\xC3"), 0);
}

TEST_F(XmodemTest, AGoodBlockIsKeptAndAcknowledged) {
    Start();
    EXPECT_EQ(Step(Frame(Data())), "\x06");
    EXPECT_TRUE(state.BlockReady);
    EXPECT_EQ(state.BlockText, Data());
    EXPECT_EQ(state.BinaryActive, XmodemStage::Acknowledged);
    EXPECT_EQ(Step("\x04"), "\x06");
    EXPECT_EQ(state.BinaryActive, XmodemStage::Idle);
    EXPECT_EQ(Step("more"), "");
}

TEST_F(XmodemTest, ABlockThatComesTooSlowlyIsAskedForAgain) {
    Start();
    const std::string frame = Frame(Data('\x04'));
    // One byte a call is slower than the retries allow: the block is refused in call 100 and has to come
    // again.
    for (std::size_t i = 0; i < frame.size(); ++i)
        EXPECT_EQ(Step(frame.substr(i, 1)), i == 99 ? "\x15" : "") << i;
    EXPECT_FALSE(state.BlockReady);
    EXPECT_EQ(Step(frame), "\x06");
}

TEST_F(XmodemTest, PiecesWithinTheRetriesMakeABlock) {
    Start();
    const std::string frame = Frame(Data());
    for (std::size_t i = 0; i < frame.size() - 7; i += 7) EXPECT_EQ(Step(frame.substr(i, 7)), "");
    EXPECT_EQ(Step(frame.substr(frame.size() - 7)), "\x06");
}

TEST_F(XmodemTest, ABlockOf132BytesWaitsUntilTheRetriesRunOut) {
    Start();
    EXPECT_EQ(Step(), "");
    EXPECT_EQ(Step(Frame(Data()).substr(0, 132)), "");  // call 1 of 100
    for (int call = 2; call <= 99; ++call) EXPECT_EQ(Step(), "") << call;
    EXPECT_EQ(Step(), "\x15");
    EXPECT_FALSE(state.BlockReady);
    EXPECT_EQ(Step(Frame(Data())), "\x06");  // sent again
}

TEST_F(XmodemTest, The133rdByteMayComeInTheLastCall) {
    Start();
    EXPECT_EQ(Step(), "");
    EXPECT_EQ(Step(Frame(Data()).substr(0, 132)), "");
    for (int call = 2; call <= 99; ++call) EXPECT_EQ(Step(), "") << call;
    EXPECT_EQ(Step(Frame(Data()).substr(132)), "\x06");
}

TEST_F(XmodemTest, ABlockThatIsTooLongIsRefused) {
    Start();
    EXPECT_EQ(Step(), "");
    EXPECT_EQ(Step(Frame(Data()) + "?"), "");
    for (int call = 2; call <= 99; ++call) EXPECT_EQ(Step(), "") << call;
    EXPECT_EQ(Step(), "\x15");
}

TEST_F(XmodemTest, AWrongCrcIsRefusedAndTheBlockBeforeStays) {
    Start();
    EXPECT_EQ(Step(Frame(Data('a'))), "\x06");
    std::string bad = Frame(Data('b'), 2);
    bad[50] ^= 1;
    EXPECT_EQ(Step(bad), "\x15");
    EXPECT_EQ(state.BlockText, Data('a'));
    EXPECT_EQ(Step(Frame(Data('b'), 2)), "\x06");
    EXPECT_EQ(state.BlockText, Data('b'));
    EXPECT_EQ(state.BlockNumber, 3);
}

TEST_F(XmodemTest, EverySingleFlippedBitOfDataOrCrcIsRefused) {
    const std::string good = Frame(Data('\x5A'));
    for (std::size_t bit = 3 * 8; bit < good.size() * 8; ++bit) {
        Start();
        std::string bad = good;
        bad[bit / 8] = static_cast<char>(bad[bit / 8] ^ (1 << bit % 8));
        EXPECT_EQ(Step(bad), "\x15") << bit;
        EXPECT_FALSE(state.BlockReady);
    }
}

TEST_F(XmodemTest, LineEndsAndNoiseBeforeABlockAreSkipped) {
    Start();
    EXPECT_EQ(Step("\n"), "");
    EXPECT_EQ(Step("C\r\n" + Frame(Data())), "\x06");
}

TEST_F(XmodemTest, TheFirstBlockIsAskedForEveryThreeSeconds) {
    Start();
    const Millis asked = now;
    for (int i = 0; i < 4; ++i) {
        std::string reply;
        while (reply.empty() && now - asked < 20s) reply = Step();
        EXPECT_EQ(reply, "C");
        EXPECT_EQ(now - asked, (i + 1) * 3s);
    }
    EXPECT_EQ(Step("\x01"), "");
    for (Millis end = now + 4900ms; now < end;) EXPECT_EQ(Step(), "");  // now a block has begun
}

TEST_F(XmodemTest, OtherBytesBehindABlockWait) {
    Start();
    Step(Frame(Data()));
    EXPECT_EQ(Step("xyz"), "");
    EXPECT_EQ(state.BinaryActive, XmodemStage::Acknowledged);
    EXPECT_EQ(Step("x\x04"), "\x06");
    EXPECT_EQ(state.BinaryActive, XmodemStage::Idle);
}

TEST_F(XmodemTest, NothingIsTakenWhileIdle) {
    EXPECT_EQ(Step(Frame(Data())), "");
    EXPECT_TRUE(state.ReceiveText.empty());
}

}  // namespace
}  // namespace marisonde
