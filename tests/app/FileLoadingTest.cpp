#include <gtest/gtest.h>
#include <optional>

#include "app/FileLoading.h"
#include "files/DatFileReader.h"
#include "platform/Operations.h"
#include "support/ScriptedDialogs.h"
#include "support/TestFolder.h"

namespace marisonde {
namespace {

using End = LoadResult::End;

class Times final : public SampleSink {
  public:
    void Clear() override { values.clear(); }
    void Append(const RawSample& /*raw*/, const CalibratedSample& sample) override {
        values.push_back(sample.Time);
    }
    std::vector<double> values;
};

class FileLoadingTest : public testing::Test {
  protected:
    FileLoadingTest()
        : pump(clock), operations(pump, [](const std::string&, const std::string& why) { FAIL() << why; }) {}

    std::filesystem::path FileOf(int samples) {
        std::string text = "[Header]\r\nDeviceType=x-Tidal\r\n[Data]\r\n";
        for (int i = 1; i <= samples; ++i) text += std::to_string(i) + ",0,\r\n";
        TestFolder::Write(folder / "cast.dat", text);
        return folder / "cast.dat";
    }
    void Start(const std::filesystem::path& path, int maxPoints) {
        host.maxPoints = maxPoints;
        operations.Start("Load", [this, path](Operation& operation) -> QCoro::Task<> {
            const LoadResult loaded = co_await LoadFile(operation, reader, false, path, sink, host);
            result = loaded;
        });
    }
    void Turn(int turns) {
        for (int i = 0; i < turns && !result; ++i) {
            clock.AdvanceBy(Millis(50));
            pump.ResumeReady();
        }
    }

    TestFolder folder;
    VirtualClock clock;
    ScriptedDialogs dialogs;
    Pump pump;
    DatFileReader reader;
    Times sink;
    std::vector<std::uint64_t> progress;
    LoadHost host{clock, dialogs, 0, [this](const ReadProgress& at) { progress.push_back(at.done); }};
    std::optional<LoadResult> result;
    Operations operations;
};

TEST_F(FileLoadingTest, AFileThatFitsIsLoadedWithoutAQuestion) {
    sink.values = {99};
    Start(FileOf(10), 10);
    ASSERT_TRUE(result);
    EXPECT_EQ(result->end, End::Complete);
    EXPECT_EQ(result->points, 10);
    EXPECT_EQ(sink.values.size(), 10U);
    EXPECT_TRUE(dialogs.asked.empty());
    EXPECT_EQ(LoadSummary(*result), "10 points");
}

TEST_F(FileLoadingTest, ALongFileLetsTheProgramLiveMeanwhile) {
    // A slice has at most 200 services of 2000 lines.
    Start(FileOf(500000), 1000000);
    EXPECT_FALSE(result);
    EXPECT_EQ(sink.values.size(), 400000U);
    Turn(1);
    ASSERT_TRUE(result);
    EXPECT_EQ(result->points, 500000);
    ASSERT_EQ(progress.size(), 2U);
    EXPECT_EQ(progress.back(), std::filesystem::file_size(folder / "cast.dat"));
}

TEST_F(FileLoadingTest, StopShowsTheGroupThatWasRead) {
    dialogs.answers = {Choice::Second};
    Start(FileOf(25), 10);
    Turn(1);
    ASSERT_TRUE(result);
    EXPECT_EQ(result->end, End::Stopped);
    EXPECT_EQ(sink.values.front(), 1);
    EXPECT_EQ(sink.values.size(), 10U);
    ASSERT_EQ(dialogs.asked.size(), 1U);
    EXPECT_EQ(dialogs.asked[0].message, NextGroupQuestion(10, false).message);
}

TEST_F(FileLoadingTest, NextGoesOnUntilTheLastGroup) {
    dialogs.answers = {Choice::First, Choice::First};
    Start(FileOf(25), 10);
    Turn(5);
    ASSERT_TRUE(result);
    EXPECT_EQ(result->end, End::Complete);
    EXPECT_EQ(sink.values, (std::vector<double>{21, 22, 23, 24, 25}));
    EXPECT_EQ(result->counts.samples, 25U);
}

TEST_F(FileLoadingTest, CancelEndsItInASliceAndAtTheQuestion) {
    Start(FileOf(500000), 1000000);
    operations.CancelAll();
    Turn(1);
    ASSERT_TRUE(result);
    EXPECT_EQ(result->end, End::Cancelled);
    EXPECT_EQ(result->points, 400000);

    result.reset();
    Start(FileOf(25), 10);
    EXPECT_FALSE(result);
    operations.CancelAll();
    Turn(2);
    ASSERT_TRUE(result);
    EXPECT_EQ(result->end, End::Cancelled);
    EXPECT_EQ(sink.values.size(), 10U);
}

TEST_F(FileLoadingTest, AFileThatCannotBeOpenedChangesNothing) {
    sink.values = {99};
    Start(folder / "nothing.dat", 10);
    ASSERT_TRUE(result);
    EXPECT_EQ(result->end, End::NotOpened);
    EXPECT_EQ(sink.values.size(), 1U);
    EXPECT_EQ(dialogs.errors, std::vector<std::string>{"Error opening " + (folder / "nothing.dat").string() +
                                                       ": No such file or directory."});
}

TEST_F(FileLoadingTest, DamagedLinesAreTold) {
    TestFolder::Write(folder / "cast.dat", "[Header]\r\nDeviceType=x-Tidal\r\n[Data]\r\n1,2,\r\nwords\r\n");
    Start(folder / "cast.dat", 10);
    ASSERT_TRUE(result);
    EXPECT_EQ(LoadSummary(*result), "1 point, 1 line passed over: 1 text");
}

}  // namespace
}  // namespace marisonde
