#include <gtest/gtest.h>

#include "operations/TypedLine.h"

namespace marisonde {
namespace {

std::string TypeAll(TypedLine& line, std::string_view keys) {
    std::string out;
    for (const char key : keys) out += line.Type(key);
    return out;
}

TEST(TypedLineTest, EachKeyGoesOutAsItIsTyped) {
    TypedLine line;
    EXPECT_EQ(line.Type('I'), "I");
    EXPECT_EQ(line.Type('D'), "D");
    EXPECT_EQ(line.Text(), "ID");
    EXPECT_EQ(line.Enter(), "");
    EXPECT_EQ(line.Text(), "");
}

TEST(TypedLineTest, BackspaceTakesBackAndGoesOut) {
    TypedLine line;
    TypeAll(line, "IDX");
    EXPECT_EQ(line.Type('\b'), "\b");
    EXPECT_EQ(line.Text(), "ID");
    TypeAll(line, "\b\b");
    EXPECT_EQ(line.Type('\b'), "\b") << "the instrument may have more than is shown";
    EXPECT_EQ(line.Text(), "");
}

TEST(TypedLineTest, KeysThatCannotBeSeenOnlyGoOut) {
    TypedLine line;
    EXPECT_EQ(TypeAll(line, "A\x1b\x07"), "A\x1b\x07");
    EXPECT_EQ(line.Text(), "A");
    EXPECT_EQ(line.Type('\xe9'), "\xe9");
    EXPECT_EQ(line.Text(), "A\xe9");
}

TEST(TypedLineTest, InterruptDropsTheLine) {
    TypedLine line;
    TypeAll(line, "STO");
    EXPECT_EQ(line.Type('\x03'), "\x03");
    EXPECT_EQ(line.Text(), "");
    EXPECT_EQ(TypeAll(line, "ID"), "ID");
}

TEST(TypedLineTest, ArrowsRecallAndTheInstrumentGetsItAtTheEndOfTheLine) {
    TypedLine line;
    for (const char* text : {"VER", "DIR", "DIR", "TIME"}) {
        TypeAll(line, text);
        line.Enter();
    }
    line.Older();
    EXPECT_EQ(line.Text(), "TIME");
    line.Older();
    EXPECT_EQ(line.Text(), "DIR") << "a line typed twice is kept once";
    line.Older();
    line.Older();
    EXPECT_EQ(line.Text(), "VER") << "the oldest stays";
    line.Newer();
    EXPECT_EQ(line.Text(), "DIR");
    EXPECT_EQ(line.Enter(), "DIR");
    line.Older();
    EXPECT_EQ(line.Text(), "DIR");
}

TEST(TypedLineTest, TypingBehindARecalledLineSendsItFirst) {
    TypedLine line;
    TypeAll(line, "BAUD,9600");
    line.Enter();
    line.Older();
    EXPECT_EQ(line.Type('0'), "BAUD,96000");
    EXPECT_EQ(line.Type('1'), "1");
    EXPECT_EQ(line.Enter(), "");
}

TEST(TypedLineTest, ARecalledLineReplacesWhatTheInstrumentHas) {
    TypedLine line;
    TypeAll(line, "DIR");
    line.Enter();
    TypeAll(line, "DXY");
    line.Older();
    EXPECT_EQ(line.Text(), "DIR");
    EXPECT_EQ(line.Enter(), "\b\bIR");
}

TEST(TypedLineTest, TheLineBegunComesBack) {
    TypedLine line;
    TypeAll(line, "ID");
    line.Enter();
    TypeAll(line, "VE");
    line.Older();
    line.Newer();
    line.Newer();
    EXPECT_EQ(line.Text(), "VE");
    EXPECT_EQ(line.Type('R'), "R") << "the instrument has the rest";
}

TEST(TypedLineTest, PastedTextEndsAtItsFirstLineEnd) {
    TypedLine line;
    line.Paste("LOG,1\x01,2\r\nERASE\r\n");
    EXPECT_EQ(line.Text(), "LOG,1,2");
    EXPECT_EQ(line.Enter(), "LOG,1,2");
}

TEST(TypedLineTest, HistoryIsBounded) {
    TypedLine line;
    for (std::size_t i = 0; i < TypedLine::kMaxHistory + 20; ++i) {
        TypeAll(line, std::to_string(i));
        line.Enter();
    }
    for (std::size_t i = 0; i < 2 * TypedLine::kMaxHistory; ++i) line.Older();
    EXPECT_EQ(line.Text(), "20");
    TypedLine empty;
    empty.Older();
    empty.Newer();
    EXPECT_EQ(empty.Enter(), "");
    empty.Older();
    EXPECT_EQ(empty.Text(), "") << "empty lines are not kept";
}

}  // namespace
}  // namespace marisonde
