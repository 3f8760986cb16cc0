// Identifying simulated instruments in every state, and fetching their calibration by every route.
#include "CrossBench.h"
#include "calibration/Converter.h"
#include "decode/Decoders.h"

namespace marisonde {
namespace {

class EveryModel : public CrossBench, public testing::WithParamInterface<int> {
  protected:
    [[nodiscard]] static sim::Model Model() { return static_cast<sim::Model>(GetParam()); }
    void ExpectFound(sim::Options options) {
        Plug(Model(), options);
        // Hosts have no name for an x-Tidal; its port is opened without identifying it.
        if (Model() == sim::Model::XTidal) {
            EXPECT_EQ(Connect(), Finding::Unidentified);
            return Open();
        }
        EXPECT_EQ(Connect(), Finding::Found);
        EXPECT_EQ(static_cast<int>(state.InstType), GetParam());
        EXPECT_EQ(state.InstSerial, instrument->Info().serial);
    }
    /// Samples for one cycle and compares what is shown with the truth, channel by channel.
    void ExpectTruth() {
        const Converter converter(window.CalData, sigma, water);
        RawSample raw;
        CalibratedSample shown;
        std::vector<double> sums(kChannelSlots + 2);
        int samples = 0;
        SendCommand("START", window);
        ASSERT_TRUE(Wait([&] { return instrument->Sampling(); }, 30s));
        window.DataLineQueue.Clear();
        for (int tick = 0; tick < 3000; ++tick) {
            Tick();
            while (window.DataLineQueue.size() > 0) {
                if (!ParseRawLine(window.DataLineQueue.GetNext(), window.CalData.InstType, raw)) continue;
                ASSERT_TRUE(converter.Apply(raw, shown));
                // The line took a while; the water moves at most 0.1 m meanwhile.
                const sim::Truth truth = instrument->TruthAt(clock.Steady() - 75ms);
                ASSERT_NEAR(shown.Depth, truth.depthM, 0.35);
                Add(sums, shown, truth);
                ++samples;
            }
        }
        ASSERT_GT(samples, 290);
        for (const double sum : sums) {
            if (sum != 0) {
                EXPECT_NEAR(sum / samples, 1, 0.01);
            }
        }
    }
    static void Add(std::vector<double>& sums, const CalibratedSample& shown, const sim::Truth& truth) {
        for (std::size_t ch = 0; ch < truth.bb.size(); ++ch) sums[ch] += shown.bb[ch] / truth.bb[ch];
        for (std::size_t ch = 0; ch < truth.c.size(); ++ch)
            sums[kChannelSlots + ch] += static_cast<double>(shown.k[ch]) / truth.c[ch];
    }
};

INSTANTIATE_TEST_SUITE_P(Models, EveryModel, testing::Range(0, sim::kModelCount));

TEST_P(EveryModel, IsFoundAwake) {
    ExpectFound({.powerOn = sim::PowerOn::Stopped});
}

TEST_P(EveryModel, IsFoundAsleep) {
    ExpectFound({.powerOn = sim::PowerOn::Sleeping});
}

TEST_P(EveryModel, IsFoundSampling) {
    ExpectFound({.powerOn = sim::PowerOn::Sampling});
}

TEST_P(EveryModel, IsFoundWhenItAnswersSlowly) {
    ExpectFound({.powerOn = sim::PowerOn::Stopped, .replies = {.delay = 500ms}});
}

TEST_P(EveryModel, BringsItsCalibrationAndShowsTheWater) {
    ExpectFound({.powerOn = sim::PowerOn::Stopped});
    ASSERT_EQ(Fetch(), FetchOutcome::Arrived);
    EXPECT_TRUE(state.CalReady);
    EXPECT_EQ(window.CalData.Serial, instrument->Info().serial);
    ExpectTruth();
}

TEST_P(EveryModel, ByItsOtherRoute) {
    ExpectFound({.powerOn = sim::PowerOn::Stopped, .calStore = sim::CalStore::File, .dumpAsText = true});
    ASSERT_EQ(Fetch(), FetchOutcome::Arrived);
    EXPECT_EQ(window.CalData.Serial, instrument->Info().serial);
    ExpectTruth();
}

TEST_P(EveryModel, OldFirmwareGivesTheSame) {
    ExpectFound({.powerOn = sim::PowerOn::Stopped, .firmware = "1.01", .calStore = sim::CalStore::Channels});
    ASSERT_EQ(Fetch(), FetchOutcome::Arrived);
    ExpectTruth();
}

TEST_P(EveryModel, AMuteOneIsNotFound) {
    Plug(Model(), {.replies = {.mute = true}});
    EXPECT_EQ(Connect(), Finding::Silent);
}

class CutReplies : public CrossBench, public testing::WithParamInterface<std::pair<sim::Model, bool>> {};

INSTANTIATE_TEST_SUITE_P(Routes, CutReplies,
                         testing::Values(std::pair{sim::Model::Corvane2, false},
                                         std::pair{sim::Model::Delph4, false},
                                         std::pair{sim::Model::LTidal, true}));

TEST_P(CutReplies, NeverGiveACalibration) {
    const auto [model, asText] = GetParam();
    const std::string whole = sim::MakeInstrument(model)->CalText();
    const auto lines = static_cast<int>(std::count(whole.begin(), whole.end(), '\n'));
    for (int cut = 0; cut < lines; cut += cut < 20 ? 1 : 7) {
        sim::Options options{.powerOn = sim::PowerOn::Stopped, .dumpAsText = asText};
        options.replies.cutAfterLines = cut;
        Plug(model, options);
        Open();
        const FetchOutcome outcome = Fetch();
        // The channels of a Corvane-2 have 16 lines each, and the file is not asked for once GCF was
        // answered.
        const bool channelsAreWhole = model == sim::Model::Corvane2 && cut >= 16;
        EXPECT_EQ(outcome == FetchOutcome::Arrived, channelsAreWhole) << cut;
        EXPECT_EQ(state.CalReady, channelsAreWhole) << cut;
    }
}

TEST_P(CutReplies, DoubledLinesGiveTheSameOrNothing) {
    const auto [model, asText] = GetParam();
    sim::Options options{.powerOn = sim::PowerOn::Stopped, .dumpAsText = asText};
    options.replies.doubledLines = true;
    Plug(model, options);
    Open();
    const bool arrived = Fetch() == FetchOutcome::Arrived;
    EXPECT_EQ(state.CalReady, arrived);
    if (!arrived) return;
    CalibrationDataClass expected;
    ASSERT_TRUE(expected.LoadText(instrument->CalText(), sigma, water).ok);
    EXPECT_EQ(window.CalData.Serial, expected.Serial);
    EXPECT_EQ(window.CalData.InstType, expected.InstType);
}

}  // namespace
}  // namespace marisonde
