#include <gtest/gtest.h>

#include "simulator/XmodemSender.h"

namespace marisonde::simulator {
namespace {

using namespace std::chrono_literals;

const std::string kEnd = "\x04";
const std::string kGivenUp = "\x18\x18";

std::string Block() {
    std::string block;
    for (int i = 0; i < 128; ++i) block += static_cast<char>(i);
    return block;
}

TEST(XmodemSending, TheCrcIsTheKnownOne) {
    EXPECT_EQ(CrcOf(""), 0);
    EXPECT_EQ(CrcOf("123456789"), 0x31C3);  // the published check value of this CRC
}

TEST(XmodemSending, ABlockAnEndAndNoMore) {
    XmodemSender sender(Block(), 0s);
    EXPECT_EQ(sender.Hear('\r', 1s), "");
    const std::string frame = sender.Hear('C', 2s);
    ASSERT_EQ(frame.size(), 133U);
    EXPECT_EQ(frame.substr(3, 128), Block());
    EXPECT_EQ(static_cast<unsigned char>(frame[131]) * 256 + static_cast<unsigned char>(frame[132]),
              CrcOf(Block()));
    EXPECT_EQ(sender.Hear('\x06', 3s), kEnd);
    EXPECT_FALSE(sender.Over());
    EXPECT_EQ(sender.Hear('\x06', 4s), "");
    EXPECT_TRUE(sender.Over());
}

TEST(XmodemSending, ARefusedBlockIsSentUpToTenTimes) {
    XmodemSender sender(Block(), 0s);
    const std::string frame = sender.Hear('C', 1s);
    for (int i = 0; i < 9; ++i) EXPECT_EQ(sender.Hear('\x15', 2s), frame);
    EXPECT_EQ(sender.Hear('\x15', 3s), kGivenUp);
    EXPECT_TRUE(sender.Over());
}

TEST(XmodemSending, OnlyALateRequestMeansThatTheBlockWasLost) {
    XmodemSender sender(Block(), 0s);
    const std::string frame = sender.Hear('C', 1s);
    EXPECT_EQ(sender.Hear('C', 2999ms), "");
    EXPECT_EQ(sender.Hear('C', 3s), frame);
}

TEST(XmodemSending, SilenceRepeatsTheBlockAndTheEnd) {
    XmodemSender sender(Block(), 0s);
    const std::string frame = sender.Hear('C', 1s);
    EXPECT_EQ(sender.Due(), 11s);
    EXPECT_EQ(sender.OnDue(11s), frame);
    EXPECT_EQ(sender.Hear('\x06', 12s), kEnd);
    EXPECT_EQ(sender.Due(), 22s);
    EXPECT_EQ(sender.OnDue(22s), kEnd);
    EXPECT_EQ(sender.Hear('\x15', 23s), kEnd);
}

TEST(XmodemSending, TheReceiverMayCancelAndMayNeverCome) {
    XmodemSender cancelled(Block(), 0s);
    cancelled.Hear('C', 1s);
    EXPECT_EQ(cancelled.Hear('\x18', 2s), "");
    EXPECT_TRUE(cancelled.Over());
    XmodemSender alone(Block(), 5s);
    EXPECT_EQ(alone.Due(), 65s);
    EXPECT_EQ(alone.OnDue(65s), kGivenUp);
    EXPECT_TRUE(alone.Over());
}

}  // namespace
}  // namespace marisonde::simulator
