#include <gtest/gtest.h>

#include "common/StringQueue.h"

namespace marisonde {
namespace {

TEST(StringQueue, HoldsOneLessThanItsCapacityAndLosesTheOldest) {
    StringQueue queue(3);
    queue.Add("a");
    queue.Add("b");
    EXPECT_EQ(queue.size(), 2);
    queue.Add("c");
    EXPECT_EQ(queue.size(), 2);
    EXPECT_EQ(queue.GetNext(), "b");
    EXPECT_EQ(queue.GetNext(), "c");
    EXPECT_EQ(queue.size(), 0);
}

TEST(StringQueue, EmptyQueueGivesTheEmptyText) {
    StringQueue queue;
    EXPECT_EQ(queue.GetNext(), "");
    std::string text = "old";
    EXPECT_FALSE(queue.GetNext(text));
    EXPECT_EQ(text, "");
}

TEST(StringQueue, DefaultHoldsNine) {
    StringQueue queue;
    for (int i = 0; i < 25; ++i) queue.Add(std::to_string(i));
    EXPECT_EQ(queue.size(), 9);
    EXPECT_EQ(queue.GetNext(), "16");
}

TEST(StringQueue, AnEmptyTextIsAnEntry) {
    StringQueue queue;
    queue.Add("");
    EXPECT_EQ(queue.size(), 1);
    std::string text = "old";
    EXPECT_TRUE(queue.GetNext(text));
    EXPECT_EQ(text, "");
}

TEST(StringQueue, RedimensioningAndClearingEmptyIt) {
    StringQueue queue(5);
    queue.Add("a");
    queue.MaxSize(3);
    EXPECT_EQ(queue.size(), 0);
    queue.Add("b");
    queue.Clear();
    EXPECT_EQ(queue.size(), 0);
    EXPECT_EQ(queue.GetNext(), "");
    queue.MaxSize(-4);  // held at 2: one entry
    queue.Add("c");
    queue.Add("d");
    EXPECT_EQ(queue.GetNext(), "d");
}

TEST(StringQueue, StaysInOrderRoundTheRing) {
    StringQueue queue(4);
    std::string text;
    for (int i = 0; i < 100; ++i) {
        queue.Add(std::to_string(i));
        queue.Add(std::to_string(-i));
        ASSERT_TRUE(queue.GetNext(text));
        EXPECT_EQ(text, std::to_string(i));
        ASSERT_TRUE(queue.GetNext(text));
        EXPECT_EQ(text, std::to_string(-i));
    }
}

}  // namespace
}  // namespace marisonde
