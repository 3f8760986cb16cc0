#include <gtest/gtest.h>
#include <string>

#include "decode/TextMessages.h"

namespace marisonde {
namespace {

using State = std::optional<InstStateCode>;
using enum InstStateCode;

TEST(ReadTextLine, EachRule) {
    const std::pair<std::string_view, State> rows[] = {
        {"Starting in 30 seconds", Starting},
        {"Sampling starts in 5", Starting},
        {"Sleeping", Sleeping},
        {"Sleeping 30", Sleeping},
        {"Sampling STOPPED", Stopped},
        {"Aborted by user", Stopped},
        {"Woke up", Stopped},
        {"Ready", Stopped},
        {"Turning on", Waking},
        {"Erasing..Done", Stopped},
        {"Opening Shutter", OpeningShutter},
        {"closing shutter", ClosingShutter},
        {"1,2,3,4,5,6", Sampling},
        {"1,2,3,4,5", std::nullopt},
        {"-1,2,3,4,5,6", std::nullopt},
        {"*D", Sampling},
        {"*", Sampling},
        {"Erasing..Don", std::nullopt},
        {"Corvane-6", std::nullopt},
        {"", std::nullopt},
    };
    for (const auto& [line, state] : rows) {
        EXPECT_EQ(ReadTextLine(line, false).state, state) << line;
        const State inTransfer = state == Sampling ? State(Downloading) : state;
        EXPECT_EQ(ReadTextLine(line, true).state, inTransfer) << line;
        EXPECT_FALSE(IsMessageForUser(line, "", "")) << line;
    }
}

TEST(ReadTextLine, TheEarlierRuleDecides) {
    const std::pair<std::string_view, State> rows[] = {
        {"stopped, starts in 10", Starting}, {"stopped and sleeping", Sleeping},
        {"woke, turning on", Stopped},       {"opening shutter ..done", Stopped},
        {"turning on, ready", Stopped},      {"closing shutter, opening shutter", OpeningShutter},
        {"turning on ..done", Waking},       {"1,2,3,4,5,ready", Stopped},
    };
    for (const auto& [line, state] : rows) EXPECT_EQ(ReadTextLine(line, false).state, state) << line;
}

TEST(ReadTextLine, SecondsUntilTheStart) {
    EXPECT_EQ(ReadTextLine("Starting in 30 seconds", false).startsInSeconds, 30);
    EXPECT_EQ(ReadTextLine("Starting in -.5s", false).startsInSeconds, 0);  // -0.5 to the even neighbour
    EXPECT_EQ(ReadTextLine("starts in 99999", false).startsInSeconds, 32767);
    EXPECT_EQ(ReadTextLine("starting in a moment", false).startsInSeconds, 0);
    EXPECT_EQ(ReadTextLine("Sleeping 30", false).startsInSeconds, std::nullopt);
}

TEST(ReadTextLine, MessagesCarryAStateForWhenTheyAreNotShown) {
    EXPECT_EQ(ReadTextLine("!Stopped: transfer complete", false).state, Stopped);
}

TEST(ReadTextLine, AnyBytes) {
    EXPECT_EQ(ReadTextLine(std::string("\0\xFFready", 7), false).state, Stopped);
    EXPECT_EQ(ReadTextLine(std::string(70000, 's'), false).state, std::nullopt);
}

TEST(ReadPartialText, OnlyWhatComesWithoutALineEnd) {
    const std::pair<std::string_view, State> rows[] = {
        {"Opening shutter", OpeningShutter},
        {"Closing Shutter", ClosingShutter},
        {"erasing..done", Stopped},
        {"erasing..do", std::nullopt},
        {"opening shutter..done", OpeningShutter},
        {"..done closing shutter", ClosingShutter},
        {"ready", std::nullopt},
        {"*D", std::nullopt},
        {"", std::nullopt},
    };
    for (const auto& [text, state] : rows) EXPECT_EQ(ReadPartialText(text), state) << text;
}

TEST(IsMessageForUser, BeginsWithABangAndIsNoPrompt) {
    EXPECT_TRUE(IsMessageForUser("!Shutter jammed", "", ""));
    EXPECT_FALSE(IsMessageForUser("Shutter jammed!", "", ""));
    EXPECT_FALSE(IsMessageForUser("", "", ""));
    EXPECT_FALSE(IsMessageForUser("!Type YES to erase", "CLEARLOGCOMMAND", ""));
    EXPECT_TRUE(IsMessageForUser("!Type YES to erase", "DIR", ""));
    EXPECT_TRUE(IsMessageForUser("!Other", "CLEARLOGCOMMAND", ""));
    EXPECT_FALSE(IsMessageForUser("!Transfer Complete", "", ""));
    EXPECT_FALSE(IsMessageForUser("!Shutter jammed", "", "Transfer complete."));
    EXPECT_TRUE(IsMessageForUser("!Shutter jammed", "", "!Shutter jammed"));
}

}  // namespace
}  // namespace marisonde
