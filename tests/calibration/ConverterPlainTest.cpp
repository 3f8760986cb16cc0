// The prepared converter against the formulas written down step by step.
#include <bit>
#include <cstring>
#include <gtest/gtest.h>

#include "calibration/Converter.h"
#include "calibration/PlainFormula.h"
#include "calibration/RandomCalibration.h"

namespace marisonde {
namespace {

template <class T>
bool SameBits(const T& a, const T& b) {
    return std::memcmp(&a, &b, sizeof(T)) == 0;
}

class PreparedAgainstPlain : public testing::TestWithParam<int> {};

TEST_P(PreparedAgainstPlain, EqualBitForBit) {
    constexpr int kCalibrations = 200;
    constexpr int kSamples = 20;
    RandomCalibration random(4711U + static_cast<unsigned>(GetParam()));
    for (int c = 0; c < kCalibrations; ++c) {
        const SigmaParams sigma = random.Sigma();
        const PureWaterParams water = random.Water();
        const auto cal = random.Calibration(static_cast<InstTypeCode>(GetParam()), sigma, water);
        const Converter converter(cal, sigma, water);
        CalibratedSample prepared;
        CalibratedSample plain;
        for (int s = 0; s < kSamples; ++s) {
            RawSample raw = random.Sample();
            RawSample rawForPlain = raw;
            ASSERT_TRUE(converter.Apply(raw, prepared));
            ASSERT_TRUE(PlainConvert(rawForPlain, cal, sigma, water, plain));
            ASSERT_EQ(raw.Snorm, rawForPlain.Snorm);
            ASSERT_EQ(prepared, plain);
            ASSERT_TRUE(SameBits(prepared.bb, plain.bb) && SameBits(prepared.bbUncorr, plain.bbUncorr) &&
                        SameBits(prepared.beta, plain.beta) &&
                        SameBits(prepared.betaUncorr, plain.betaUncorr) &&
                        SameBits(prepared.Sigma, plain.Sigma) && SameBits(prepared.k, plain.k) &&
                        SameBits(prepared.Time, plain.Time) && SameBits(prepared.a, plain.a) &&
                        SameBits(prepared.K, plain.K));
        }
    }
}

INSTANTIATE_TEST_SUITE_P(AllModels, PreparedAgainstPlain, testing::Range(0, 10));

// Compilers have dropped the rounding of neighbouring values to 32 bits; the build must not let them.
[[gnu::noinline]] void RoundTwo(double* out, const double* in) {
    out[0] = static_cast<float>(in[0]);
    out[1] = static_cast<float>(in[1]);
}

TEST(Build, KeepsRoundingsTo32Bits) {
    const double in[2] = {0.1, 0.2};
    double out[2] = {0, 0};
    RoundTwo(out, in);
    // The nearest 32-bit values, by their bits 0x3DCCCCCD and 0x3E4CCCCD.
    EXPECT_EQ(out[0], 0.100000001490116119384765625);
    EXPECT_EQ(out[1], 0.20000000298023223876953125);
}

[[gnu::noinline]] double MultiplyAdd(double a, double b, double c) {
    return a * b + c;
}

TEST(Build, DoesNotFuseMultiplyAndAdd) {
    // (1 + 2^-30)^2 is 1 + 2^-29 + 2^-60; the product rounds the last term away before the subtraction.
    const double a = 1 + std::ldexp(1, -30);
    EXPECT_EQ(MultiplyAdd(a, a, -(1 + std::ldexp(1, -29))), 0);
}

}  // namespace
}  // namespace marisonde
