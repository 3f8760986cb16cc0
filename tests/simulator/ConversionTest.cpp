#include <cmath>
#include <gtest/gtest.h>
#include <set>

#include "simulator/HostSide.h"

namespace marisonde::simulator {
namespace {

using namespace std::chrono_literals;

constexpr Millis kCycle = 150s;

/// Mean and extremes of shown / true.
struct Ratio {
    double sum = 0, lowest = 1e9, highest = 0;
    int count = 0;
    void Add(double shown, double truth) {
        const double ratio = shown / truth;
        sum += ratio;
        lowest = std::min(lowest, ratio);
        highest = std::max(highest, ratio);
        ++count;
    }
    [[nodiscard]] double Mean() const { return sum / count; }
};

struct ConversionCase {
    Model model;
    LineForm form;
};

host::Shown Convert(const std::string& line, const host::Cal& cal, const ModelInfo& info) {
    switch (info.family) {
        case Family::Corvane:
            return host::ConvertCorvane(line, cal, info.channels);
        case Family::Tidal:
            return host::ConvertTidal(line, cal, info.model);
        case Family::Delph:
            return host::ConvertDelph(line, cal);
    }
    return {};
}

class Conversion : public testing::TestWithParam<ConversionCase> {};

TEST_P(Conversion, OfTheLinesGivesTheWaterBack) {
    const auto instrument =
        MakeInstrument(GetParam().model, {.form = GetParam().form, .samplesPerSecond = 2, .extraEvery = 0});
    const host::Cal cal(instrument->CalText());
    const auto lines = host::LinesOf(*instrument, kCycle);
    ASSERT_GE(lines.size(), 295U);
    std::vector<Ratio> bb(8), k(2);
    Ratio a;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const Truth truth = instrument->TruthAt(Millis{500} * static_cast<int>(i + 1));
        const host::Shown shown = Convert(lines[i], cal, instrument->Info());
        // One count is at most 0.011 m, and the noise one count. The verbose line has whole degrees.
        ASSERT_NEAR(shown.depthM, truth.depthM, 0.06) << lines[i];
        ASSERT_NEAR(shown.tempC, truth.tempC, GetParam().form == LineForm::HexVerbose ? 0.6 : 0.22)
            << lines[i];
        ASSERT_EQ(shown.bb.size(), truth.bb.size());
        for (std::size_t ch = 0; ch < truth.bb.size(); ++ch) bb[ch].Add(shown.bb[ch], truth.bb[ch]);
        ASSERT_EQ(shown.k.size(), truth.c.size());
        for (std::size_t ch = 0; ch < truth.c.size(); ++ch) k[ch].Add(shown.k[ch], truth.c[ch]);
        if (truth.a > 0) a.Add(shown.a, truth.a);
    }
    // Noise is 0.4 % of the signal; the mean of 300 samples must show no bias beyond 0.2 %.
    for (const Ratio& ratio : bb) {
        if (ratio.count == 0) continue;
        EXPECT_NEAR(ratio.Mean(), 1, 0.002);
        EXPECT_GT(ratio.lowest, 0.97);
        EXPECT_LT(ratio.highest, 1.03);
    }
    for (const Ratio& ratio : k) {
        if (ratio.count == 0) continue;
        EXPECT_NEAR(ratio.Mean(), 1, 0.004);
        EXPECT_GT(ratio.lowest, 0.85);
        EXPECT_LT(ratio.highest, 1.15);
    }
    if (a.count > 0) {
        EXPECT_NEAR(a.Mean(), 1, 0.01);
    }
}

const auto kCases = [] {
    using enum Model;
    using enum LineForm;
    return std::array{
        ConversionCase{Corvane6, Hex},        ConversionCase{Corvane6, HexHundredths},
        ConversionCase{Corvane6, HexVerbose}, ConversionCase{Corvane6, Decimal},
        ConversionCase{Corvane4, Natural},    ConversionCase{Corvane4, HexVerbose},
        ConversionCase{Corvane4, Decimal},    ConversionCase{Corvane2, Natural},
        ConversionCase{Corvane2, HexVerbose}, ConversionCase{Corvane2, Decimal},
        ConversionCase{LTidal, Natural},      ConversionCase{LTidal, Decimal},
        ConversionCase{NTidal, Natural},      ConversionCase{NTidal, DecimalShort},
        ConversionCase{XTidal, Natural},      ConversionCase{XTidal, Hex},
        ConversionCase{Fathom2, Natural},     ConversionCase{Delph2, Natural},
        ConversionCase{Delph2, DecimalShort}, ConversionCase{Delph4, Natural},
        ConversionCase{Delph6, DecimalShort},
    };
}();

INSTANTIATE_TEST_SUITE_P(All, Conversion, testing::ValuesIn(kCases));

TEST(TheWater, IsPlausibleAtEveryMomentOfACycle) {
    const auto corvane = MakeInstrument(Model::Corvane6);
    const auto tidal = MakeInstrument(Model::LTidal);
    const auto delph = MakeInstrument(Model::Delph2);
    double deepest = 0;
    for (Millis now{0}; now < kCycle; now += 500ms) {
        const Truth truth = corvane->TruthAt(now);
        deepest = std::max(deepest, truth.depthM);
        EXPECT_GE(truth.depthM, 0);
        EXPECT_GE(truth.tempC, 8);
        EXPECT_LE(truth.tempC, 18.1);
        for (std::size_t ch = 0; ch < 6; ++ch) {
            EXPECT_GT(truth.bb[ch], 0.0005);
            EXPECT_LT(truth.bb[ch], 0.02);
        }
        for (const double c : delph->TruthAt(now).c) {
            EXPECT_GT(c, 0.1);
            EXPECT_LT(c, 3);
        }
        EXPECT_GT(tidal->TruthAt(now).a, 0.01);
        EXPECT_LT(tidal->TruthAt(now).a, 1);
    }
    EXPECT_NEAR(deepest, 100, 0.2);
}

TEST(TheWater, HasAChlorophyllLayerNearThirtyMetresAndSedimentAtTheBottom) {
    const auto corvane = MakeInstrument(Model::Corvane6);
    // Fluorescence in the red, channel 7, on the way down; the bottom is reached after 90 s.
    double brightest = 0, depthOfBrightest = 0;
    for (Millis now{0}; now < 90s; now += 250ms) {
        const Truth truth = corvane->TruthAt(now);
        if (truth.bb[7] <= brightest) continue;
        brightest = truth.bb[7];
        depthOfBrightest = truth.depthM;
    }
    EXPECT_NEAR(depthOfBrightest, 30, 4);
    const Truth bottom = corvane->TruthAt(90s);
    // From blue to red: channels 2 (420), 0 (470), 3 (510), 4 (550), 5 (620), 1 (700).
    const std::array<std::size_t, 6> byWavelength{2, 0, 3, 4, 5, 1};
    for (std::size_t i = 1; i < 6; ++i) EXPECT_GT(bottom.bb[byWavelength[i - 1]], bottom.bb[byWavelength[i]]);
    EXPECT_GT(bottom.bb[4], 2 * corvane->TruthAt(60s).bb[4]);
}

TEST(TheGains, FollowTheSignal) {
    const auto instrument = MakeInstrument(Model::Corvane6, {.extraEvery = 0});
    const host::Cal cal(instrument->CalText());
    std::set<int> used;
    std::array<std::set<int>, 8> byChannel;
    for (const std::string& line : host::LinesOf(*instrument, kCycle)) {
        const auto gains = host::ConvertCorvane(line, cal, 8).gains;
        for (std::size_t ch = 0; ch < 8; ++ch) {
            used.insert(gains[ch]);
            byChannel[ch].insert(gains[ch]);
        }
    }
    EXPECT_GE(used.size(), 3U);
    EXPECT_GE(std::count_if(byChannel.begin(), byChannel.end(), [](const auto& s) { return s.size() > 1; }),
              3);
    EXPECT_GE(*used.begin(), 1);
    EXPECT_LE(*used.rbegin(), 5);
}

}  // namespace
}  // namespace marisonde::simulator
