#include "app/FilesFixture.h"
#include "app/LoadStored.h"
#include "app/ParameterChange.h"
#include "app/Recalculate.h"
#include "app/RecentFiles.h"

namespace marisonde {
namespace {

using simulator::Model;

class RecalculateTest : public FilesFixture {
  protected:
    DataWindow& Showing(const Cast& cast, Model model, bool calibrated) {
        DataWindow& window = WithCal(model);
        StartLoad(window, {calibrated ? cast.dat : cast.raw, calibrated ? "dat" : "raw",
                           static_cast<InstTypeCode>(model), ""});
        Settle();
        return window;
    }
    /// The windows follow the parameters.
    void Follow() {
        const PureWaterParams water = app.pureWater;
        TakePureWaterParams(app, water);
    }
    /// Another water: every corrected value changes.
    void ChangeWater() {
        app.pureWater.beta0 *= 2;
        app.pureWater.bb0 *= 2;
        app.sigma.C = 3;
    }
};

TEST_F(RecalculateTest, CalibratedFileStaysAsItIs) {
    const Cast cast = Record(Model::Corvane6, "cast");
    DataWindow& window = Showing(cast, Model::Corvane6, true);
    const auto shown = PointsOf(window);
    ChangeWater();
    Follow();
    Settle();
    EXPECT_EQ(window.StatusLine,
              "Data in 'cast.dat' will not be recalculated because they were read from a "
              "calibrated file.  ");
    EXPECT_EQ(PointsOf(window), shown);
}

TEST_F(RecalculateTest, RawFileIsShownAsIfOpenedWithTheNewValues) {
    const Cast cast = Record(Model::Corvane6, "cast");
    DataWindow& window = Showing(cast, Model::Corvane6, false);
    const auto before = PointsOf(window);
    ChangeWater();
    Follow();
    Settle();
    const auto after = PointsOf(window);
    EXPECT_NE(after, before);
    EXPECT_EQ(after, PointsOf(Showing(cast, Model::Corvane6, false)));
}

TEST_F(RecalculateTest, TheOtherFormOfTheValuesIsThatOfTheFileOpenedWithIt) {
    const Cast cast = Record(Model::Corvane6, "cast");
    for (const bool calibrated : {false, true}) {
        DataWindow& window = Showing(cast, Model::Corvane6, calibrated);
        const auto corrected = PointsOf(window);
        ASSERT_TRUE(window.Plot.SetSigmaOption(SigmaChoice::NoSigma));
        ReplotWindow(window);
        Settle();
        const auto uncorrected = PointsOf(window);
        EXPECT_NE(uncorrected, corrected);
        EXPECT_EQ(uncorrected.size(), corrected.size());
        ASSERT_TRUE(window.Plot.SetSigmaOption(SigmaChoice::SigmaCorrect));
        ReplotWindow(window);
        Settle();
        EXPECT_EQ(PointsOf(window), corrected);
    }
}

TEST_F(RecalculateTest, TheSameGroupIsShownWithoutAsking) {
    const std::string raw = RawOf(2500);
    DataWindow& window = WithCal(Model::Corvane6);
    window.Plot.MaxGraphPoints = 1000;
    dialogs.answers = {Choice::First, Choice::Second};
    StartLoad(window, {raw, "raw", InstTypeCode::Corvane6, ""});
    Settle();
    ASSERT_EQ(Asked().size(), 2U);
    ASSERT_EQ(window.Stored.group, 1);
    const auto before = PointsOf(window);
    Follow();
    Settle();
    EXPECT_EQ(Asked().size(), 2U);
    EXPECT_EQ(PointsOf(window), before);
}

TEST_F(RecalculateTest, IsNoOpening) {
    const Cast first = Record(Model::Corvane6, "first");
    const Cast second = Record(Model::Corvane6, "second");
    DataWindow& window = Showing(first, Model::Corvane6, false);
    Showing(second, Model::Corvane6, false);
    RecalculateWindow(window);
    Settle();
    EXPECT_EQ(RecentFiles(settings), (std::vector<std::string>{second.raw, first.raw}));
}

TEST_F(RecalculateTest, EveryWindowIsBroughtUpToDate) {
    const Cast cast = Record(Model::Corvane6, "cast");
    DataWindow& first = Showing(cast, Model::Corvane6, false);
    DataWindow& second = Showing(cast, Model::Corvane6, false);
    const auto before = PointsOf(first);
    ChangeWater();
    Follow();
    Settle();
    EXPECT_NE(PointsOf(first), before);
    EXPECT_EQ(PointsOf(second), PointsOf(first));
}

class LiveRecalculateTest : public RecalculateTest,
                            public testing::WithParamInterface<std::pair<Model, simulator::LineForm>> {};

/// The graph of a live window, whose values change in the middle of a run, is that of a window which had the
/// new values all along. Ticks go on while the log is read.
TEST_P(LiveRecalculateTest, EqualsARunWithTheNewValues) {
    const auto& [model, form] = GetParam();
    simulator::Options options;
    options.form = form;
    const PureWaterParams oldWater = app.pureWater;
    const SigmaParams oldSigma = app.sigma;
    ChangeWater();
    const double start = clock.Now();
    auto expected = Simulated(model, options);
    Run(*expected, std::chrono::seconds(90));
    const auto wanted = PointsOf(*expected);
    const auto samples = expected->Link.State.Counted.samples;
    expected.reset();

    app.pureWater = oldWater;
    app.sigma = oldSigma;
    clock.SetDate(start);
    DataWindow& window = Keep(Simulated(model, options));
    Run(window, std::chrono::seconds(60));
    ASSERT_TRUE(window.Files.AnyOpen());
    ChangeWater();
    Follow();
    EXPECT_EQ(window.StatusLine,
              "Data in 'untitled2' are being saved to a file.  Data that have already been "
              "saved to the file cannot be recalculated until the file is closed and "
              "reopened for reading.");
    for (int i = 0; i < 600; ++i) Tick();
    EXPECT_FALSE(AnythingRuns());
    EXPECT_EQ(window.Link.State.Counted.samples, samples);
    const auto shown = PointsOf(window);
    ASSERT_EQ(shown.size(), wanted.size());
    ASSERT_EQ(shown[0].size(), wanted[0].size());
    // Dates of samples without a clock are those of the computer, which no second run repeats to the bit.
    for (std::size_t i = 0; i < wanted[0].size(); ++i) ASSERT_NEAR(shown[0][i], wanted[0][i], 1e-7) << i;
    for (std::size_t series = 1; series < wanted.size(); ++series)
        EXPECT_EQ(shown[series], wanted[series]) << series;
}

INSTANTIATE_TEST_SUITE_P(Models, LiveRecalculateTest,
                         testing::Values(std::pair{Model::Corvane6, simulator::LineForm::Natural},
                                         std::pair{Model::Corvane6, simulator::LineForm::Decimal},
                                         std::pair{Model::LTidal, simulator::LineForm::Natural},
                                         std::pair{Model::NTidal, simulator::LineForm::DecimalShort},
                                         std::pair{Model::Delph6, simulator::LineForm::Natural}));

TEST_F(RecalculateTest, SamplesThatCameWithoutALogStay) {
    DataWindow& window = Keep(Simulated(Model::Corvane6, {}));
    window.Files.CloseDataFiles(false);
    Run(window, std::chrono::seconds(20));
    const auto shown = PointsOf(window);
    ASSERT_GT(window.Plot.PlotIndex(), 5);
    ChangeWater();
    Follow();
    EXPECT_EQ(PointsOf(window), shown);
    EXPECT_NE(window.StatusLine.find("will not be recalculated because they were not recorded."),
              std::string::npos);
}

TEST_F(RecalculateTest, AnEmptyWindowSaysNothing) {
    DataWindow& window = Empty();
    Follow();
    Settle();
    EXPECT_EQ(window.StatusLine, "");
    EXPECT_TRUE(dialogs.errors.empty());
}

TEST_F(RecalculateTest, ASecondChangeDuringTheFirstWins) {
    const Cast cast = Record(Model::Corvane6, "cast");
    DataWindow& window = Showing(cast, Model::Corvane6, false);
    ChangeWater();
    Follow();
    app.sigma.C = 0.5;
    Follow();
    Settle();
    EXPECT_FALSE(window.LoadProgress);
    EXPECT_EQ(PointsOf(window), PointsOf(Showing(cast, Model::Corvane6, false)));
}

}  // namespace
}  // namespace marisonde
