#include <filesystem>
#include <gtest/gtest.h>

#include "optics/EnforceLimits.h"
#include "optics/SigmaParamsEntry.h"
#include "support/ShareFolder.h"

namespace marisonde {
namespace {

const std::filesystem::path kShare(ShareFolder());
const SigmaTablePaths kTables{(kShare / "aStar.csv").string(), (kShare / "aw.csv").string()};

SigmaParamsEntry Defaults(bool older = false) {
    SigmaParamsEntry entry;
    entry.older = older;
    EnterDefaults(entry, SigmaPage::Corvane, kTables);
    EnterDefaults(entry, SigmaPage::NTidal, kTables);
    return entry;
}

TEST(SigmaParamsEntry, DefaultsOfTheFirstPage) {
    SigmaParamsEntry entry;
    entry[SigmaBox::p] = "0.3";
    entry.cUseCV = true;
    EnterDefaults(entry, SigmaPage::Corvane, kTables);
    EXPECT_EQ(entry[SigmaBox::ad400], "0.01");
    EXPECT_EQ(entry[SigmaBox::aStar], kTables.aStar);
    EXPECT_EQ(entry[SigmaBox::bTilde], "0.015");
    EXPECT_EQ(entry[SigmaBox::c], "0.1");
    EXPECT_EQ(entry[SigmaBox::gammad], "0.011");
    EXPECT_EQ(entry[SigmaBox::gammaY], "0.014");
    EXPECT_EQ(entry[SigmaBox::aw], "");
    EXPECT_EQ(entry[SigmaBox::p], "0.3");
    EXPECT_TRUE(entry.cUseCV);
}

TEST(SigmaParamsEntry, DefaultsOfTheSecondPage) {
    SigmaParamsEntry entry;
    entry[SigmaBox::c] = "7";
    entry.cUseCV = true;
    EnterDefaults(entry, SigmaPage::NTidal, kTables);
    EXPECT_EQ(entry[SigmaBox::p], "0.6");
    EXPECT_FALSE(entry.cUseCV);
    EXPECT_EQ(entry[SigmaBox::c], "7");
    EXPECT_EQ(entry[SigmaBox::aStar], "");
}

TEST(SigmaParamsEntry, TheOlderFormFillsInTheTableOfWater) {
    EXPECT_EQ(Defaults(true)[SigmaBox::aw], kTables.aw);
}

TEST(SigmaParamsEntry, ShowsTheParametersInUse) {
    SigmaParams params;
    params.aStarFile = "/data/a b.csv";
    params.bbTildeValue = 0.0125;
    params.C = 2;
    params.ad400 = 0.5;
    params.gammad = 0.25;
    params.gammay = 0.125;
    params.p = 0.75;
    params.cUseCV = true;
    const SigmaParamsEntry entry = EntryOf(params, kTables);
    EXPECT_EQ(entry[SigmaBox::aStar], "/data/a b.csv");
    EXPECT_EQ(entry[SigmaBox::bTilde], "0.0125");
    EXPECT_EQ(entry[SigmaBox::c], "2");
    EXPECT_EQ(entry[SigmaBox::ad400], "0.5");
    EXPECT_EQ(entry[SigmaBox::gammad], "0.25");
    EXPECT_EQ(entry[SigmaBox::gammaY], "0.125");
    EXPECT_EQ(entry[SigmaBox::p], "0.75");
    EXPECT_TRUE(entry.cUseCV);
    EXPECT_FALSE(entry.older);
    EXPECT_EQ(ParamsOf(entry, {}), params);
}

TEST(SigmaParamsEntry, AFileGivesItsTableAndANumberEmptiesTheFile) {
    SigmaParamsEntry entry = Defaults();
    entry[SigmaBox::bTilde] = kTables.aStar;
    SigmaParams before;
    before.includePurewater = true;
    const SigmaParams files = ParamsOf(entry, before);
    EXPECT_TRUE(files.includePurewater);
    EXPECT_EQ(files.aStarValue, kSentinel);
    EXPECT_EQ(files.aStarFile, kTables.aStar);
    EXPECT_EQ(files.aStarTable.Lookup(470), 0.87F);
    EXPECT_EQ(files.bbTildeTable.Lookup(470), 0.87F);
    entry[SigmaBox::aStar] = "0.5";
    const SigmaParams number = ParamsOf(entry, files);
    EXPECT_EQ(number.aStarValue, 0.5);
    EXPECT_EQ(number.aStarFile, "");
    EXPECT_EQ(number.aStarTable, SpectralTable());
}

struct Wrong {
    SigmaBox box;
    std::vector<std::string> wrong;
    std::vector<std::string> right;
    std::string message;
};
const std::string kFile = "Please enter either a valid file name or a numeric value between ";
const std::string kNumber = "Please enter a numeric value between ";
/// In the order in which the boxes are checked.
const std::vector<Wrong> kWrong{
    {SigmaBox::bTilde,
     {"0.0049", "0.041", "", "x", "/no/such/file.csv", "0,015", "/"},
     {"0.005", "0.04", kTables.aStar},
     kFile + "0.005 and 0.04 for the backscatter probability."},
    {SigmaBox::aw,
     {"0.0049", "10.1", "", "no.csv"},
     {"0.005", "10", kTables.aw},
     kFile + "0.005 and 10 for the pure-water absorption."},
    {SigmaBox::aStar,
     {"0.0049", "1.01", "", "no.csv"},
     {"0.005", "1", kTables.aStar},
     kFile + "0.005 and 1 for the chlorophyll-specific absorption."},
    {SigmaBox::c,
     {"-0.1", "1000001", "", "much", kTables.aStar},
     {"0", "1000000"},
     kNumber + "0 and 1000000 for the chlorophyll concentration."},
    {SigmaBox::ad400, {"-1", "1-2"}, {"0"}, kNumber + "0 and 1000 for the detritus absorption at 400 nm."},
    {SigmaBox::gammad, {"-1", "1.1"}, {"0"}, kNumber + "0 and 1 for the detritus slope."},
    {SigmaBox::gammaY, {"-1", "1.1"}, {"0"}, kNumber + "0 and 1 for the yellow substance slope."},
    {SigmaBox::p, {"-1", "", "11"}, {"0", "1"}, kNumber + "0 and 10 for the share of the attenuation."},
};

TEST(ValidateParams, TellsWhatEachBoxTakes) {
    for (const Wrong& row : kWrong) {
        SigmaParamsEntry entry = Defaults(true);
        EXPECT_FALSE(ValidateParams(entry));
        for (const std::string& text : row.wrong) {
            entry[row.box] = text;
            const auto found = ValidateParams(entry);
            ASSERT_TRUE(found) << row.message << " " << text;
            EXPECT_EQ(found->box, row.box) << text;
            EXPECT_EQ(found->message, row.message) << text;
        }
        for (const std::string& text : row.right) {
            entry[row.box] = text;
            EXPECT_FALSE(ValidateParams(entry)) << row.message << " " << text;
        }
    }
}

TEST(ValidateParams, StopsAtTheFirst) {
    SigmaParamsEntry entry = Defaults(true);
    for (auto row = kWrong.rbegin(); row != kWrong.rend(); ++row) {
        entry[row->box] = row->wrong.front();
        EXPECT_EQ(ValidateParams(entry)->box, row->box);
    }
}

TEST(ValidateParams, TheNewFormHasNoBoxForWater) {
    SigmaParamsEntry entry = Defaults();
    entry[SigmaBox::aw] = "not shown";
    EXPECT_FALSE(ValidateParams(entry));
}

TEST(ValidateParams, TheShareIsIdleBesideTheModel) {
    SigmaParamsEntry entry = Defaults();
    entry[SigmaBox::p] = "x";
    entry.cUseCV = true;
    EXPECT_FALSE(ValidateParams(entry)) << "a box that cannot be mended must not hold the form";
    SigmaParams before;
    before.p = 0.75;
    EXPECT_EQ(ParamsOf(entry, before).p, 0.75);
    entry[SigmaBox::p] = "0.5";
    EXPECT_EQ(ParamsOf(entry, before).p, 0.5);
}

SigmaParamsEntry Plain(bool older) {
    SigmaParamsEntry entry = Defaults(older);
    entry[SigmaBox::aStar] = "0.5";
    entry[SigmaBox::c] = "1";
    return entry;
}

TEST(CalculateSigmaModel, NewForm) {
    // 0.06 x 0.5 x 1 x 1.2 + 0.01 exp(-0.011 x 40) = 0.036 + 0.006440 = 0.042440
    const SigmaModelTexts model = CalculateSigmaModel(Plain(false), "440");
    EXPECT_EQ(model.a, " 0.042");
    EXPECT_EQ(model.bbTilde, " 0.015");
}

TEST(CalculateSigmaModel, OlderFormAddsTheWaterOfItsBox) {
    SigmaParamsEntry entry = Plain(true);
    // Water at 440 nm by the table: 0.00635. (0.03 + 0.00635) x 1.2 + 0.006440 = 0.050060
    EXPECT_EQ(CalculateSigmaModel(entry, "440").a, " 0.0501");
    entry[SigmaBox::aw] = "0.01";  // (0.03 + 0.01) x 1.2 + 0.006440 = 0.054440
    EXPECT_EQ(CalculateSigmaModel(entry, "440").a, " 0.0544");
    EXPECT_EQ(CalculateSigmaModel(entry, "440").bbTilde, " 0.0150");
}

TEST(CalculateSigmaModel, TellsWhereATableHasNothing) {
    for (const bool older : {false, true}) {
        SigmaParamsEntry entry = Plain(older);
        entry[SigmaBox::bTilde] = "/no/such.csv";
        EXPECT_EQ(CalculateSigmaModel(entry, "440").bbTilde, " -----");
        EXPECT_NE(CalculateSigmaModel(entry, "440").a, " -----");
        entry[SigmaBox::aStar] = "/no/such.csv";
        EXPECT_EQ(CalculateSigmaModel(entry, "440").a, " -----");
    }
    SigmaParamsEntry entry = Plain(true);
    entry[SigmaBox::aw] = "/no/such.csv";
    EXPECT_EQ(CalculateSigmaModel(entry, "440").a, " -----");
}

TEST(CalculateSigmaModel, NeedsItsNumbers) {
    for (const SigmaBox box : {SigmaBox::c, SigmaBox::ad400, SigmaBox::gammad, SigmaBox::gammaY}) {
        for (const char* text : {"", "0,5", "-1"}) {
            SigmaParamsEntry entry = Plain(false);
            entry[box] = text;
            EXPECT_EQ(CalculateSigmaModel(entry, "440").a, " -----") << text;
            EXPECT_EQ(CalculateSigmaModel(entry, "440").bbTilde, " 0.015") << text;
        }
    }
    SigmaParamsEntry entry = Plain(false);
    entry[SigmaBox::p] = "";
    EXPECT_EQ(CalculateSigmaModel(entry, "440").a, " 0.042") << "the share is not part of the model";
}

TEST(CalculateSigmaModel, NeedsAWavelength) {
    for (const char* text : {"", "blue", "0", "-440", "440 nm"}) {
        EXPECT_EQ(CalculateSigmaModel(Plain(false), text).a, " -----") << text;
        EXPECT_EQ(CalculateSigmaModel(Plain(false), text).bbTilde, " -----") << text;
    }
}

}  // namespace
}  // namespace marisonde
