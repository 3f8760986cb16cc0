// Calibration text of every model through load, save and load.
#include <cmath>
#include <gtest/gtest.h>
#include <string>

#include "CalFixture.h"
#include "calibration/CalImage.h"
#include "common/ConversionUtils.h"
#include "common/Numbers.h"

namespace marisonde {
namespace {

// --- load, save, load ---------------------------------------------------------------------------------

double Messy(int i) {
    return std::ldexp(std::sin(1.7 * i + 0.3), (i * 7) % 23 - 11);
}

/// Every field that some layout holds, with values that do not come out even.
Cal Filled(InstTypeCode type) {
    Cal cal;
    cal.InstType = type;
    cal.Comment = IsDelphFamily(type) ? "" : "two words";
    cal.Label = "label";
    cal.Config = "FT";
    cal.Serial = "77";
    cal.MaxDepth = 650;
    cal.CalTime = DateFromCivil(2021, 12, 31, 23, 59, 59);
    cal.ModificationTime = IsDelphFamily(type) ? 0 : DateFromCivil(2022, 1, 2, 3, 4, 5);
    int i = 0;
    const auto next = [&i] { return Messy(++i); };
    const auto next32 = [&] { return static_cast<float>(next()); };
    for (float* field :
         {&cal.CalTemp, &cal.DepthCal, &cal.DepthOff, &cal.kp1, &cal.kp2, &cal.P0, &cal.kD1, &cal.kD2}) {
        *field = next32();
    }
    cal.TP0 = 21;
    for (int ch = 0; ch < kChannelSlots; ++ch) {
        ChannelPlain& plain = cal.EditChannel(ch);
        plain.lambda = static_cast<std::int16_t>(400 + ch);
        plain.name = "bb(" + std::to_string(plain.lambda) + ")";
        plain.bDeltaLambda = 21;
        for (std::size_t g = 1; g <= 5; ++g) {
            cal.SetGain(ch, static_cast<int>(g), next());
            plain.DarkOffset[g] = static_cast<std::int16_t>(g + 1);
            plain.NomOffset[g] = static_cast<std::int16_t>(g + 2);
            plain.FlOffset[g] = static_cast<std::int16_t>(g + 3);
        }
        cal.SetMu(ch, next());
        cal.SetSigma(ch, 1, next());
        cal.SetSigma(ch, 2, next());
        cal.SetSigmaExp(ch, next());
        cal.SetRNominal(ch, 4000 + next());
        plain.beta2bb = next();
        plain.MuRho = next();
        plain.bTempCoeff = next();
    }
    for (int ch = 0; ch < 2; ++ch) {
        AttenuationPlain& plain = cal.EditAttenuation(ch);
        plain.KLambda = static_cast<std::int16_t>(600 + ch);
        plain.KDeltaLambda = 22;
        plain.TrNought = 123;
        plain.TrPure = 456789;
        plain.TrAir = 567890;
        plain.KS0 = 31;
        plain.KR0 = 32;
        plain.KDepthThresh[0] = 4321;
        for (float* field :
             {&plain.KPath, &plain.betaPure, &plain.KL, &plain.KkTauPX, &plain.KDepthCoeff[0],
              &plain.KDepthCoeff[1], &plain.KChi[0], &plain.KChi[1], &plain.KChi[2], &plain.KChi[3]}) {
            *field = next32();
        }
        plain.KTau0 = next();
        cal.SetKCalTemp(ch, next32());
        for (int k = 0; k <= 5; ++k) {
            cal.SetKTempCoeff(ch, k, next32());
            cal.SetKkT(ch, k, std::abs(next()));
            cal.SetKkTauP(ch, k, std::abs(next()));
        }
        cal.SetKP(ch, 1, next());
        cal.SetKP(ch, 2, std::abs(next()));
        cal.SetKTPW(ch, 19.3F);
    }
    return cal;
}

class EveryModel : public testing::TestWithParam<int> {};

TEST_P(EveryModel, SurvivesLoadSaveLoad) {
    Cal first;
    ASSERT_TRUE(
        first.LoadText(Filled(static_cast<InstTypeCode>(GetParam())).CalText({}), FixedModel(), {}).ok);
    Cal second;
    ASSERT_TRUE(second.LoadText(first.CalText({}), FixedModel(), {}).ok);
    EXPECT_EQ(first.InstType, static_cast<InstTypeCode>(GetParam()));
    EXPECT_EQ(second.CalText({}), first.CalText({}));
    EXPECT_EQ(second.Compare(first, CalItems::All), 0);
    for (int ch = 0; ch < kChannelSlots; ++ch) {
        EXPECT_EQ(second.Channel(ch), first.Channel(ch)) << "channel " << ch;
        const AttenuationCal& a = first.Attenuation(ch);
        const AttenuationCal& b = second.Attenuation(ch);
        EXPECT_EQ(static_cast<const AttenuationPlain&>(b), static_cast<const AttenuationPlain&>(a));
        EXPECT_EQ(b.KTempCoeff, a.KTempCoeff);
        EXPECT_EQ(b.KTempNormCoeff, a.KTempNormCoeff);
        for (int i = 0; i <= 5; ++i) {
            EXPECT_EQ(b.KkT[i], a.KkT[i]) << ch << " " << i;
            EXPECT_EQ(b.KkTauP[i], a.KkTauP[i]) << ch << " " << i;
        }
        for (int i = 1; i <= 2; ++i) EXPECT_EQ(b.KP(i), a.KP(i));
    }
}

TEST_P(EveryModel, KeepsWhatItsLayoutHolds) {
    const auto type = static_cast<InstTypeCode>(GetParam());
    const Cal filled = Filled(type);
    Cal loaded;
    ASSERT_TRUE(loaded.LoadText(filled.CalText({}), FixedModel(), {}).ok);
    EXPECT_EQ(loaded.Comment, filled.Comment);
    EXPECT_EQ(loaded.Label, filled.Label);
    EXPECT_EQ(loaded.CalTime, filled.CalTime);
    EXPECT_EQ(loaded.ModificationTime, filled.ModificationTime);
    for (int ch = 0; ch < filled.ChannelCount(); ++ch) {
        EXPECT_NEAR(loaded.Channel(ch).Mu, filled.Channel(ch).Mu, 5e-6 * std::abs(filled.Channel(ch).Mu));
        EXPECT_EQ(loaded.Channel(ch).gain[3], RoundSignificant(filled.Channel(ch).gain[3], 6));
    }
    if (IsDelphFamily(type)) {
        EXPECT_EQ(loaded.kp2, filled.kp2);
        EXPECT_EQ(loaded.Attenuation(1).KTau0, filled.Attenuation(1).KTau0);
        EXPECT_EQ(loaded.Attenuation(1).KkT[3], filled.Attenuation(1).KkT[3]);
    }
    if (IsTidalFamily(type)) {
        EXPECT_EQ(loaded.Attenuation(0).KTempCoeff, filled.Attenuation(0).KTempCoeff);
        EXPECT_EQ(loaded.Attenuation(0).KPath, filled.Attenuation(0).KPath);
    }
}

INSTANTIATE_TEST_SUITE_P(CalFile, EveryModel, testing::Range(0, 10));

}  // namespace
}  // namespace marisonde
