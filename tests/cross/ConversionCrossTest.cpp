// The program's decoder and converter against the simulated instruments, which share no code with them: what
// is shown must be what the water was.
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "calibration/CalImage.h"
#include "calibration/Converter.h"
#include "common/Settings.h"
#include "decode/Decoders.h"
#include "simulator/Instrument.h"
#include "simulator/Tidal.h"
#include "support/ShareFolder.h"

namespace marisonde {
namespace {

using namespace std::chrono_literals;
namespace sim = marisonde::simulator;

constexpr sim::Millis kCycle = 150s;  // one way down and up
constexpr sim::Millis kPeriod = 500ms;

/// Mean and extremes of shown / true of one value.
struct Ratio {
    double sum = 0, lowest = 1e9, highest = -1e9;
    int count = 0;
    void Add(double shown, double truth) {
        sum += shown / truth;
        lowest = std::min(lowest, shown / truth);
        highest = std::max(highest, shown / truth);
        ++count;
    }
};

/// What one cycle showed, by channel.
struct Comparison {
    std::vector<Ratio> bb = std::vector<Ratio>(kChannelSlots);
    std::vector<Ratio> k = std::vector<Ratio>(kChannelSlots);
    Ratio a;
    int samples = 0;
};

struct Case {
    sim::Model model;
    sim::LineForm form;
};

class Crossing : public testing::TestWithParam<Case> {
  protected:
    Crossing() : sigma_(LoadSigmaParams(settings_, ShareFolder(), ShareFolder()).params) {}

    std::unique_ptr<sim::Instrument> Make() const {
        return sim::MakeInstrument(GetParam().model,
                                   {.form = GetParam().form, .samplesPerSecond = 2, .extraEvery = 0});
    }
    void Load(const std::string& text, CalibrationDataClass& cal) const {
        const CalFileResult result = cal.LoadText(text, sigma_, water_);
        ASSERT_TRUE(result.ok);
        ASSERT_EQ(static_cast<int>(cal.InstType), static_cast<int>(GetParam().model));
    }

    /// Reads every line of one cycle and compares depth and temperature; the rest is summed up.
    void Run(sim::Instrument& instrument, const CalibrationDataClass& cal, Comparison& comparison) const {
        const Converter converter(cal, sigma_, water_);
        RawSample raw;
        CalibratedSample shown;
        std::string text;
        for (sim::Millis now{0}; now <= kCycle; now += 50ms) {
            text += instrument.TakeOutput(now);
            const auto end = text.find("\r\n");
            if (end == std::string::npos) continue;
            const std::string line = text.substr(0, end);
            text.erase(0, end + 2);
            ++comparison.samples;
            ASSERT_TRUE(ParseRawLine(line, cal.InstType, raw)) << line;
            ASSERT_TRUE(converter.Apply(raw, shown)) << line;
            Compare(shown, instrument.TruthAt(kPeriod * comparison.samples), comparison);
        }
    }

    static void Compare(const CalibratedSample& shown, const sim::Truth& truth, Comparison& comparison) {
        // One count is at most 0.011 m, and the noise one count. The verbose line has whole degrees.
        const bool wholeDegrees = GetParam().form == sim::LineForm::HexVerbose;
        EXPECT_NEAR(shown.Depth, truth.depthM, 0.06);
        EXPECT_NEAR(shown.Temp, truth.tempC, wholeDegrees ? 0.6 : 0.22);
        for (std::size_t ch = 0; ch < truth.bb.size(); ++ch) {
            EXPECT_TRUE(shown.Valid[ch]) << ch;
            comparison.bb[ch].Add(shown.bb[ch], truth.bb[ch]);
        }
        for (std::size_t ch = 0; ch < truth.c.size(); ++ch)
            comparison.k[ch].Add(static_cast<double>(shown.k[ch]), truth.c[ch]);
        if (truth.a > 0) comparison.a.Add(static_cast<double>(shown.a), truth.a);
    }

    static void ExpectTrue(const Comparison& comparison) {
        EXPECT_GE(comparison.samples, 295);
        for (const auto* ratios : {&comparison.bb, &comparison.k})
            for (std::size_t ch = 0; ch < ratios->size(); ++ch) ExpectTrue((*ratios)[ch], ch);
        ExpectTrue(comparison.a, 0);
    }
    static void ExpectTrue(const Ratio& ratio, std::size_t channel) {
        if (ratio.count == 0) return;
        EXPECT_NEAR(ratio.sum / ratio.count, 1, 0.01) << "channel " << channel;
        EXPECT_GT(ratio.lowest, 0.85) << "channel " << channel;
        EXPECT_LT(ratio.highest, 1.15) << "channel " << channel;
    }

    MapSettings settings_;
    SigmaParams sigma_;
    PureWaterParams water_ = LoadPureWaterParams(settings_);
};

TEST_P(Crossing, FromTheCalibrationFile) {
    const auto instrument = Make();
    ASSERT_NE(instrument, nullptr);
    CalibrationDataClass cal;
    ASSERT_NO_FATAL_FAILURE(Load(instrument->CalText(), cal));
    Comparison comparison;
    ASSERT_NO_FATAL_FAILURE(Run(*instrument, cal, comparison));
    ExpectTrue(comparison);
}

std::vector<Case> AllModelsAndForms() {
    using enum sim::LineForm;
    std::vector<Case> cases;
    for (int model = 0; model < sim::kModelCount; ++model)
        for (const auto form : {Natural, Hex, HexHundredths, HexVerbose, Decimal, DecimalTimed, DecimalShort,
                                DecimalShortTimed})
            if (sim::OffersForm(static_cast<sim::Model>(model), form))
                cases.push_back({static_cast<sim::Model>(model), form});
    return cases;
}

std::string NameOf(const testing::TestParamInfo<Case>& info) {
    std::string name(sim::InfoOf(info.param.model).name);
    std::erase(name, '-');
    return name + "Form" + std::to_string(static_cast<int>(info.param.form));
}

INSTANTIATE_TEST_SUITE_P(EveryModelAndForm, Crossing, testing::ValuesIn(AllModelsAndForms()), NameOf);

class ImageCrossing : public Crossing {};

TEST_P(ImageCrossing, FromTheImageThatTheInstrumentHolds) {
    const auto instrument = Make();
    CalibrationDataClass cal;
    const sim::ModelInfo& info = sim::InfoOf(GetParam().model);
    ASSERT_TRUE(ReadCalImageBytes(
        sim::TidalCalImage(sim::TidalCalibrationOf(info.model), info, info.config, 1305882922), cal));
    cal.CheckAndUpdateAll(sigma_, water_);
    EXPECT_EQ(cal.Serial, info.serial);
    EXPECT_EQ(cal.Config, info.config);
    EXPECT_EQ(cal.Label, "Simulated");
    Comparison comparison;
    ASSERT_NO_FATAL_FAILURE(Run(*instrument, cal, comparison));
    ExpectTrue(comparison);
}

INSTANTIATE_TEST_SUITE_P(Tidals, ImageCrossing,
                         testing::Values(Case{sim::Model::LTidal, sim::LineForm::Natural},
                                         Case{sim::Model::LTidal, sim::LineForm::Decimal},
                                         Case{sim::Model::NTidal, sim::LineForm::Natural},
                                         Case{sim::Model::NTidal, sim::LineForm::Decimal}),
                         NameOf);

}  // namespace
}  // namespace marisonde
