#include <string>
#include <vector>

#include "decode/Lines.h"
#include "files/DatFileReader.h"
#include "files/GroupLoad.h"
#include "files/RawFileReader.h"
#include "support/FileFixture.h"

namespace marisonde {
namespace {

using Step = GroupLoad::Step;

/// Keeps the times of what it was given.
class KeepTimes final : public SampleSink {
  public:
    void Clear() override { times.clear(); }
    void Append(const RawSample& /*raw*/, const CalibratedSample& sample) override {
        times.push_back(sample.Time);
    }
    void Expect(int samples) override { expected.push_back(samples); }
    std::vector<double> times;
    std::vector<int> expected;
};

class GroupLoadTest : public FileFixture {
  protected:
    /// A calibrated file of `samples` samples, at the times 1, 2, 3, ...
    void Open(int samples, const std::string& behind = "") {
        std::string text = "[Header]\r\nDeviceType=x-Tidal\r\n[Data]\r\n";
        for (int i = 1; i <= samples; ++i) text += std::to_string(i) + ",0,\r\n";
        ASSERT_FALSE(reader.Open(Write("cast.dat", text + behind)));
    }
    DatFileReader reader;
    KeepTimes sink;
};

TEST_F(GroupLoadTest, AFileThatJustFitsLoadsWithoutAQuestion) {
    Open(5, "words\r\n");
    GroupLoad load(reader, sink, 5);
    EXPECT_EQ(load.Run(100), Step::Done);
    EXPECT_EQ(sink.times, (std::vector<double>{1, 2, 3, 4, 5}));
    EXPECT_EQ(load.Points(), 5);
}

TEST_F(GroupLoadTest, OneSampleMoreFillsTheGroup) {
    Open(6);
    GroupLoad load(reader, sink, 5);
    EXPECT_EQ(load.Run(100), Step::GroupFull);
    EXPECT_EQ(load.Run(100), Step::GroupFull);
    EXPECT_EQ(sink.times, (std::vector<double>{1, 2, 3, 4, 5}));
    load.NextGroup();
    EXPECT_EQ(load.Points(), 1);
    EXPECT_EQ(load.Run(100), Step::Done);
    EXPECT_EQ(sink.times, std::vector<double>{6});
}

TEST_F(GroupLoadTest, OnlyTheLastGroupRemainsAndNoSampleIsLost) {
    Open(23);
    GroupLoad load(reader, sink, 5);
    std::vector<double> all;
    Step step = Step::Working;
    while ((step = load.Run(3)) != Step::Done) {
        if (step != Step::GroupFull) continue;
        EXPECT_EQ(load.Points(), 5);
        all.insert(all.end(), sink.times.begin(), sink.times.end());
        load.NextGroup();
    }
    EXPECT_EQ(sink.times, (std::vector<double>{21, 22, 23}));
    all.insert(all.end(), sink.times.begin(), sink.times.end());
    ASSERT_EQ(all.size(), 23U);
    for (std::size_t i = 0; i < all.size(); ++i) EXPECT_EQ(all[i], static_cast<double>(i + 1));
}

TEST_F(GroupLoadTest, TheSizeOfTheFileTellsAboutHowManySamplesWillCome) {
    // Lines of equal length behind a header that is none of them.
    std::string text = "[Header]\r\nDeviceType=x-Tidal\r\n[Data]\r\n";
    for (int i = 1000; i < 2000; ++i) text += std::to_string(i) + ",0,\r\n";
    ASSERT_FALSE(reader.Open(Write("cast.dat", text)));
    GroupLoad load(reader, sink, 800);
    load.NextGroup();
    ASSERT_EQ(load.Run(100), Step::Working);
    EXPECT_EQ(sink.expected, std::vector<int>{800});  // no more than a group holds
    while (load.Run(100) == Step::Working) {
    }
    load.NextGroup();
    ASSERT_EQ(load.Run(99), Step::Working);
    ASSERT_EQ(sink.expected.size(), 2U);  // once in each group
    EXPECT_NEAR(sink.expected[1], 200, 4);
    EXPECT_EQ(load.Run(1000), Step::Done);
    EXPECT_EQ(sink.expected.size(), 2U);
    EXPECT_EQ(load.Points(), 200);
}

TEST_F(GroupLoadTest, NothingIsExpectedBehindTheEndOfAFile) {
    Open(3);
    GroupLoad load(reader, sink, 100);
    load.NextGroup();
    EXPECT_EQ(load.Run(3), Step::Working);
    EXPECT_EQ(load.Run(3), Step::Done);
    EXPECT_TRUE(sink.expected.empty());
}

TEST_F(GroupLoadTest, AStepReadsNoMoreLinesThanAsked) {
    Open(7);
    GroupLoad load(reader, sink, 100);
    EXPECT_EQ(load.Run(3), Step::Working);
    EXPECT_EQ(sink.times.size(), 3U);
    EXPECT_EQ(load.Run(4), Step::Working);
    EXPECT_EQ(load.Run(1), Step::Done);
}

TEST_F(GroupLoadTest, LinesWithoutASampleDoNotCount) {
    const std::string line = lines::WithChecksum(lines::kSample) + "\r\n";
    RawFileReader raw(InstTypeCode::Corvane6);
    ASSERT_FALSE(raw.Open(Write("cast.raw", line + "words\r\n" + line + "words\r\n")));
    GroupLoad load(raw, sink, 2);
    EXPECT_EQ(load.Run(100), Step::Done);
    EXPECT_EQ(load.Points(), 2);
}

TEST(NextGroupQuestionTest, TextsAndButtons) {
    const Question raw = NextGroupQuestion(50000, true);
    EXPECT_EQ(
        raw.message,
        "This file contains more points than can be displayed at one time. Would you like to stop now and "
        "display this group of 50000 points, or load then next group?");
    EXPECT_EQ(raw.first + "|" + raw.second + "|" + raw.third, "Next|Stop|");
    const Question dat = NextGroupQuestion(1000, false);
    EXPECT_EQ(
        dat.message,
        "This file contains more points than can be displayed at one time. Would you like to stop now and "
        "display this group of 1000 points, or load the next group?");
    EXPECT_EQ(dat.first + "|" + dat.second, "Next|Stop");
}

}  // namespace
}  // namespace marisonde
