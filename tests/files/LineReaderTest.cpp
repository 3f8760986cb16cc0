#include <algorithm>
#include <cerrno>
#include <random>
#include <string>
#include <vector>
#ifdef __linux__
#include <sys/stat.h>
#endif

#include "files/LineReader.h"
#include "support/FileFixture.h"

namespace marisonde {
namespace {

class LineReaderTest : public FileFixture {
  protected:
    std::vector<std::string> LinesOf(const std::string& text) {
        LineReader reader;
        EXPECT_FALSE(reader.Open(Write("lines", text)));
        std::vector<std::string> lines;
        std::string_view line;
        while (reader.Next(line)) lines.emplace_back(line);
        EXPECT_FALSE(reader.Error());
        EXPECT_EQ(reader.Progress().done, text.size());
        EXPECT_EQ(reader.Progress().size, text.size());
        return lines;
    }
};

using Lines = std::vector<std::string>;

/// Files of all kinds of pieces, short and longer than the reader's block: lines of values are the lines, and
/// their ends are their commas.
TEST_F(LineReaderTest, LinesOfValuesAreTheSameLines) {
    std::mt19937 random(6);
    const Lines pieces{"\r\n",
                       "\r",
                       "\n",
                       ",",
                       "1.5,",
                       "-1.234568E-03,",
                       "45244.925937500003,",
                       "\t",
                       "words",
                       std::string(1, '\0'),
                       std::string(100, 'x'),
                       std::string(70, ',')};
    for (int run = 0; run < 60; ++run) {
        std::string text;
        const std::size_t size = run < 50 ? random() % 1500 : LineReader::kBlock - 30 + random() % 60;
        while (text.size() < size) text += pieces[random() % pieces.size()];
        if (run % 10 == 9) text += std::string(LineReader::kLongestLine + random() % 100, ',') + "\n1,2";
        const Lines expected = LinesOf(text);
        LineReader reader;
        ASSERT_FALSE(reader.Open(Write("lines", text)));
        FieldEnds ends;
        std::string_view line;
        for (const std::string& each : expected) {
            ASSERT_TRUE(reader.Next(line, ends));
            ASSERT_EQ(line, each);
            const auto commas = static_cast<std::size_t>(std::count(each.begin(), each.end(), ','));
            ASSERT_EQ(ends.Count(), commas);
            std::size_t place = 0;
            for (std::size_t i = 0; i < std::min(commas, FieldEnds::kMostPlaces); ++i, ++place) {
                place = each.find(',', place);
                ASSERT_EQ(ends.At(i), place);
            }
            ASSERT_GE(ends.Readable(), line.size());
        }
        EXPECT_FALSE(reader.Next(line, ends));
        EXPECT_EQ(reader.Progress().done, text.size());
    }
}

TEST_F(LineReaderTest, EveryKindOfLineEnd) {
    EXPECT_EQ(LinesOf("a\r\nb\rc\nd"), (Lines{"a", "b", "c", "d"}));
    EXPECT_EQ(LinesOf("a\r\n\r\nb\r\n"), (Lines{"a", "", "b"}));
    EXPECT_EQ(LinesOf("a\n\nb\n"), (Lines{"a", "", "b"}));
    EXPECT_EQ(LinesOf("a\r\rb\r"), (Lines{"a", "", "b"}));
    EXPECT_EQ(LinesOf("\n"), Lines{""});
}

TEST_F(LineReaderTest, ReadsNoFurtherThanItIsTold) {
    std::string text;
    while (text.size() < LineReader::kBlock) text += "abcdefg\r";
    LineReader reader;
    ASSERT_FALSE(reader.Open(Write("lines", text + "abc\rdef\r"), LineReader::kBlock + 4));
    std::size_t count = 0;
    std::string last;
    std::string_view line;
    for (; reader.Next(line); ++count) last = line;
    EXPECT_EQ(count, LineReader::kBlock / 8 + 1);
    EXPECT_EQ(last, "abc");
    EXPECT_EQ(reader.Progress().size, LineReader::kBlock + 4);
    EXPECT_EQ(reader.Progress().done, LineReader::kBlock + 4);
}

TEST_F(LineReaderTest, AFileWithoutBytesHasNoLines) {
    EXPECT_EQ(LinesOf(""), Lines{});
}

TEST_F(LineReaderTest, AnyByteButTheLineEndsBelongsToALine) {
    const std::string bytes("a\0b\x1A\xFF\x80", 6);
    EXPECT_EQ(LinesOf(bytes + "\r\n" + bytes), (Lines{bytes, bytes}));
}

/// A line end is moved over the end of the first block byte by byte: pieces do not matter.
TEST_F(LineReaderTest, BlocksDoNotMatter) {
    for (const std::string end : {"\r\n", "\r", "\n"}) {
        for (std::size_t length = LineReader::kBlock - 3; length < LineReader::kBlock + 3; ++length) {
            std::string text;
            Lines expected;
            while (text.size() + 100 < length) {
                expected.push_back("line " + std::to_string(text.size()));
                text += expected.back() + end;
            }
            expected.push_back(std::string(length - text.size(), 'x'));
            text += expected.back() + end;
            expected.emplace_back("last");
            ASSERT_EQ(LinesOf(text + "last" + end), expected) << length;
        }
    }
}

TEST_F(LineReaderTest, OfALineTooLongForAnyInstrumentTheBeginningIsGiven) {
    for (const std::size_t length :
         {LineReader::kLongestLine + 1, LineReader::kBlock, LineReader::kBlock * 4 + 5}) {
        LineReader reader;
        ASSERT_FALSE(reader.Open(Write("lines", "first\r\n" + std::string(length, 'y') + "\r\nbehind\r\n")));
        std::string_view line;
        ASSERT_TRUE(reader.Next(line));
        EXPECT_FALSE(reader.LineWasCut());
        ASSERT_TRUE(reader.Next(line));
        EXPECT_TRUE(reader.LineWasCut());
        EXPECT_EQ(line, std::string(LineReader::kLongestLine, 'y'));
        ASSERT_TRUE(reader.Next(line));
        EXPECT_FALSE(reader.LineWasCut());
        EXPECT_EQ(line, "behind");
        EXPECT_FALSE(reader.Next(line));
    }
}

TEST_F(LineReaderTest, TheLongestLineIsGivenWhole) {
    const std::string longest(LineReader::kLongestLine, 'z');
    EXPECT_EQ(LinesOf(longest + "\r\n" + longest + "\n" + longest), (Lines{longest, longest, longest}));
}

TEST_F(LineReaderTest, WhatIsSkippedIsNotGiven) {
    LineReader reader;
    ASSERT_FALSE(reader.Open(Write("lines", "head\r\nbody\r\n")));
    EXPECT_EQ(reader.Ahead(), "head\r\nbody\r\n");
    reader.Skip(6);
    std::string_view line;
    ASSERT_TRUE(reader.Next(line));
    EXPECT_EQ(line, "body");
}

TEST_F(LineReaderTest, AMissingFileGivesTheSystemsReason) {
    LineReader reader;
    EXPECT_EQ(reader.Open(In("nothing")).code, ENOENT);
    std::string_view line;
    EXPECT_FALSE(reader.Next(line));
}

TEST_F(LineReaderTest, AFileThatGrowsIsReadAsFarAsItsEndWasSeen) {
    const auto path = Write("growing", "one\r\n");
    LineReader reader;
    ASSERT_FALSE(reader.Open(path));
    std::string_view line;
    ASSERT_TRUE(reader.Next(line));
    EXPECT_EQ(line, "one");
    EXPECT_EQ(reader.Progress().size, 5U);
    std::ofstream(path, std::ios::binary | std::ios::app) << "two\r\n";
    // The end had been seen before: a recording that goes on does not hold a reader up for ever.
    EXPECT_FALSE(reader.Next(line));
}

#ifdef __linux__
TEST_F(LineReaderTest, AFolderIsNoFile) {
    LineReader reader;
    EXPECT_EQ(reader.Open(Folder()).code, EISDIR);
}

TEST_F(LineReaderTest, AReadThatFailsIsNotTakenForTheEnd) {
    LineReader reader;
    // The first page of a process is never mapped: the file opens, and reading it fails.
    EXPECT_EQ(reader.Open("/proc/self/mem").code, EIO);
}
#endif

#ifdef __linux__
TEST_F(LineReaderTest, PipesAndDevicesAreNoFiles) {
    LineReader reader;
    ASSERT_EQ(reader.Open("/dev/null").text, "it is a pipe or a device, not a file");
    // Nobody writes into it: to open it would be to wait.
    ASSERT_EQ(mkfifo(In("pipe").c_str(), 0600), 0);
    EXPECT_EQ(reader.Open(In("pipe")).text, "it is a pipe or a device, not a file");
    std::string_view line;
    EXPECT_FALSE(reader.Next(line));
}
#endif

}  // namespace
}  // namespace marisonde
