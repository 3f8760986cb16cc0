#include <cmath>
#include <gtest/gtest.h>

#include "optics/PureWaterEntry.h"

namespace marisonde {
namespace {

constexpr std::array kWaterBoxes{PureWaterBox::lambda0, PureWaterBox::beta0, PureWaterBox::bb0,
                                 PureWaterBox::gammaLambda};

PureWaterParams Own() {
    PureWaterParams params;
    params.Choice = PureWaterChoice::Custom;
    params.lambda0 = 600;
    params.beta0 = 0.00012345F;
    params.bb0 = 0.0009876F;
    params.gammaLambda = 4;
    params.chi = 1.1F;
    return params;
}

void ExpectTexts(const PureWaterEntry& entry, const std::array<std::string, 5>& texts) {
    for (std::size_t i = 0; i < texts.size(); ++i)
        EXPECT_EQ(entry.Text(static_cast<PureWaterBox>(i)), texts[i]) << i;
}

/// Fresh: 0.000112 x (1 + 0.835 cos^2 140) = 0.000112 x 1.4899981 = 1.668798E-04, and 0.000112 x 8.03 =
/// 8.9936E-04; salt with 0.000146: 2.175397E-04 and 1.17238E-03; the means 1.922098E-04 and 1.03587E-03.
struct Model {
    PureWaterChoice choice;
    const char* beta0;
    const char* bb0;
    double beta;
    double bb;
};
constexpr std::array kModels{
    Model{PureWaterChoice::MorelFresh, "1.67E-04", "8.99E-04", 1.668798e-4, 8.9936e-4},
    Model{PureWaterChoice::MorelSalt, "2.18E-04", "1.17E-03", 2.175397e-4, 1.17238e-3},
    Model{PureWaterChoice::VenmarkRecommended, "1.92E-04", "1.04E-03", 1.922098e-4, 1.03587e-3},
};

TEST(PureWaterEntry, AModelFillsTheBoxesAndLocksThem) {
    for (const Model& model : kModels) {
        PureWaterEntry entry(Own());
        entry.Choose(model.choice);
        EXPECT_EQ(entry.Choice(), model.choice);
        ExpectTexts(entry, {"525", model.beta0, model.bb0, "4.32", "1.1"});
        for (const PureWaterBox box : kWaterBoxes) {
            EXPECT_TRUE(entry.Locked(box));
            const std::string before = entry.Text(box);
            entry.SetText(box, "17");
            EXPECT_EQ(entry.Text(box), before);
        }
        EXPECT_FALSE(entry.Locked(PureWaterBox::chi));
    }
}

TEST(PureWaterEntry, LockedBoxesKeepTheValueBehindTheirDigits) {
    for (const Model& model : kModels) {
        PureWaterEntry entry(Own());
        entry.Choose(model.choice);
        EXPECT_FALSE(entry.Validate());
        const PureWaterParams params = entry.Params();
        EXPECT_EQ(params.Choice, model.choice);
        EXPECT_EQ(params.lambda0, 525);
        EXPECT_EQ(params.gammaLambda, 4.32F);
        // Seven digits of the model, far more than the three shown.
        EXPECT_NEAR(params.beta0 / model.beta, 1, 1e-6);
        EXPECT_NEAR(params.bb0 / model.bb, 1, 1e-6);
    }
}

TEST(PureWaterEntry, TheChoiceOfAModelHasItsOwnBetaToBb) {
    PureWaterEntry entry(Own());
    entry.Choose(PureWaterChoice::MorelFresh);
    PureWaterParams params = entry.Params();
    // At the reference wavelength: (beta - beta0) x 1.1 x 6.2832 + bb0.
    EXPECT_NEAR(BetaToBb(params, 0.001, 525, 7), (0.001 - 1.668798e-4) * 6.91152 + 8.9936e-4, 1e-8);
}

TEST(PureWaterEntry, NoWaterIsNothing) {
    PureWaterEntry entry(Own());
    entry.Choose(PureWaterChoice::NoPure);
    ExpectTexts(entry, {"600", "0", "0", "4", "1.1"});
    EXPECT_TRUE(entry.Locked(PureWaterBox::beta0));
    EXPECT_TRUE(entry.Locked(PureWaterBox::bb0));
    EXPECT_EQ(entry.Params().beta0, 0);
    EXPECT_EQ(entry.Params().bb0, 0);
    EXPECT_EQ(entry.Params().Choice, PureWaterChoice::NoPure);
}

TEST(PureWaterEntry, CustomUnlocksAndShowsWhatIsKept) {
    PureWaterEntry entry(Own());
    ExpectTexts(entry, {"600", "1.2345E-04", "0.0009876", "4", "1.1"});
    entry.Choose(PureWaterChoice::MorelSalt);
    const PureWaterParams salt = entry.Params();
    entry.Choose(PureWaterChoice::Custom);
    for (const PureWaterBox box : kWaterBoxes) EXPECT_FALSE(entry.Locked(box));
    PureWaterParams custom = salt;
    custom.Choice = PureWaterChoice::Custom;
    EXPECT_EQ(entry.Params(), custom);
    entry.SetText(PureWaterBox::beta0, "2E-4");
    EXPECT_EQ(entry.Params().beta0, 0.0002F);
    EXPECT_EQ(entry.Params().bb0, salt.bb0);
}

TEST(PureWaterEntry, ShowsWhatIsInUseUntilSomethingIsChosen) {
    // A new user's fresh water is half of the model's: 8.34399E-05 and 4.4968E-04.
    const PureWaterParams before = DefaultPureWaterParams();
    const PureWaterEntry entry(before);
    ExpectTexts(entry, {"525", "8.34E-05", "4.50E-04", "4.32", "1.08"});
    EXPECT_EQ(entry.Params(), before);
}

TEST(PureWaterEntry, ChiOfTheCalibrationLocksChi) {
    PureWaterEntry entry(Own());
    entry.SetText(PureWaterBox::chi, "no number");
    EXPECT_TRUE(entry.Validate());
    entry.Choose(PureWaterChoice::MorelFresh);
    EXPECT_EQ(entry.Text(PureWaterBox::chi), "no number");
    entry.SetUseCalChi(true);
    EXPECT_TRUE(entry.Locked(PureWaterBox::chi));
    EXPECT_FALSE(entry.Validate());
    EXPECT_TRUE(entry.Params().UseCalChi);
    EXPECT_EQ(entry.Params().chi, 1.1F);
}

TEST(PureWaterEntry, BetaColumns) {
    PureWaterEntry entry(Own());
    EXPECT_FALSE(entry.Params().WriteBetaColumns);
    entry.SetWriteBetaColumns(true);
    EXPECT_TRUE(entry.WriteBetaColumns());
    EXPECT_TRUE(entry.Params().WriteBetaColumns);
}

TEST(PureWaterEntry, TellsWhatEachBoxTakes) {
    struct Row {
        PureWaterBox box;
        std::vector<const char*> wrong;
        const char* message;
    };
    const std::vector<Row> rows{
        {PureWaterBox::lambda0,
         {"", "0", "-525", "blue", "2001"},
         "200 and 2000 for the reference wavelength."},
        {PureWaterBox::beta0, {"", "-1E-4", "1.1", "1,0"}, "0 and 1 for the beta of water."},
        {PureWaterBox::bb0, {"", "-1E-4", "1.1"}, "0 and 1 for the bb of water."},
        {PureWaterBox::gammaLambda, {"", "-1", "21"}, "0 and 20 for the spectral exponent."},
        {PureWaterBox::chi, {"", "0", "10.1", "chi"}, "0.1 and 10 for the chi factor."},
    };
    for (const Row& row : rows)
        for (const char* text : row.wrong) {
            PureWaterEntry entry(Own());
            EXPECT_FALSE(entry.Validate());
            entry.SetText(row.box, text);
            const auto wrong = entry.Validate();
            ASSERT_TRUE(wrong) << row.message << text;
            EXPECT_EQ(wrong->box, row.box);
            EXPECT_EQ(wrong->message, std::string("Please enter a numeric value between ") + row.message);
        }
}

}  // namespace
}  // namespace marisonde
