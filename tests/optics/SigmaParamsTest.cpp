#include <cmath>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <limits>

#include "optics/SigmaParams.h"
#include "support/ShareFolder.h"
#include "support/TestFolder.h"

namespace marisonde {
namespace {

namespace fs = std::filesystem;
constexpr float kNoValue = std::numeric_limits<float>::infinity();

TEST(SpectralTable, RowsAreExactAndBetweenThemItIsLinear) {
    const auto table = SpectralTable::Parse("400,1\r\n410,3\r\n420,4\r\n");
    EXPECT_EQ(table.Lookup(400), 1);
    EXPECT_EQ(table.Lookup(410), 3);
    EXPECT_EQ(table.Lookup(420), 4);
    EXPECT_EQ(table.Lookup(405), 2);
    EXPECT_EQ(table.Lookup(418), 3.8F);  // 3 + 0.8 x 1
}

TEST(SpectralTable, IsNotExtrapolated) {
    const auto table = SpectralTable::Parse("400,1\n410,3\n");
    EXPECT_EQ(table.Lookup(0), 1);
    EXPECT_EQ(table.Lookup(399.9), 1);
    EXPECT_EQ(table.Lookup(410.1), 3);
    EXPECT_EQ(table.Lookup(5000), 3);
}

TEST(SpectralTable, TwoGoodLinesAreNeeded) {
    for (const char* text : {"", "400,1", "400,1\n", "400;1\n410,3\n", "400,1\n410\n",
                             "nm,value\n400,1\n410,3\n", ",\n,\n", "400,\n410,3\n"}) {
        EXPECT_EQ(SpectralTable::Parse(text).Lookup(405), kNoValue) << text;
    }
}

TEST(SpectralTable, ALineThatIsNoRowEndsWhatCanBeRead) {
    const auto table = SpectralTable::Parse("400,1\n410,3\nend of data\n420,4\n");
    EXPECT_EQ(table.Lookup(405), 2);
    EXPECT_EQ(table.Lookup(410), 3);
    EXPECT_EQ(table.Lookup(411), kNoValue);
}

TEST(SpectralTable, BlankLinesAreNoRows) {
    EXPECT_EQ(SpectralTable::Parse("\n400,1\n\n410,3\n\n").Lookup(500), 3);
}

TEST(SpectralTable, MissingFile) {
    EXPECT_EQ(TableLookup("no such file.csv", 440), kNoValue);
}

TEST(SpectralTable, ShippedTables) {
    const fs::path share(ShareFolder());
    EXPECT_EQ(TableLookup(share / "aStar.csv", 440), 1);
    EXPECT_EQ(TableLookup(share / "aStar.csv", 470), 0.87F);
    EXPECT_EQ(TableLookup(share / "aStar.csv", 900), 0.215F);
    EXPECT_EQ(TableLookup(share / "aw.csv", 380), 0.01137F);
    EXPECT_EQ(TableLookup(share / "aw.csv", 730), 2);
}

SigmaParams WithFixedValues() {
    SigmaParams params;
    params.aStarValue = 0.5;
    params.C = 1;
    return params;
}

TEST(SigmaModel, YellowSubstanceFactorAt440) {
    SigmaParams params = WithFixedValues();
    params.ad400 = 0;
    // exp(0) is 1: 0.06 x 0.5 x 1 x 1.2.
    EXPECT_EQ(SigmaA(params, 440, false), 0.036F);
}

TEST(SigmaModel, DetritusAt400) {
    SigmaParams params = WithFixedValues();
    params.C = 0;
    params.ad400 = 0.0625;
    EXPECT_EQ(SigmaA(params, 400, false), 0.0625F);
}

TEST(SigmaModel, WaterIsAddedBeforeTheYellowFactor) {
    SigmaParams params = WithFixedValues();
    params.ad400 = 0;
    // Water at 440 nm 0.00635: (0.03 + 0.00635) x 1.2 = 0.04362.
    EXPECT_FLOAT_EQ(*SigmaA(params, 440, true), 0.04362F);
}

TEST(SigmaModel, UsualParametersWithTheShippedTable) {
    SigmaParams params;
    params.aStarFile = (fs::path(ShareFolder()) / "aStar.csv").string();
    LoadSigmaTables(params);
    // 0.1^0.65 = 0.2238721.
    // 470 nm: 0.06 x 0.87 x 0.2238721 = 0.01168612; x (1 + 0.2 exp(-0.42) = 1.131409) = 0.01322179;
    //   + 0.01 exp(-0.77) = 0.004630131: 0.01785192.
    EXPECT_NEAR(*SigmaA(params, 470, false), 0.01785192, 2e-8);
    // 532 nm: a* 0.474 + 0.2 x (0.416 - 0.474) = 0.4624; 0.06 x 0.4624 x 0.2238721 = 0.006211108;
    //   x (1 + 0.2 exp(-1.288) = 1.055164) = 0.006553740; + 0.01 exp(-1.452) = 0.002341015: 0.008894755.
    EXPECT_NEAR(*SigmaA(params, 532, false), 0.008894755, 2e-8);
    EXPECT_EQ(SigmaBbTilde(params, 532), 0.015);
}

TEST(SigmaModel, MissingTablesSayWhatTheyWereNeededFor) {
    SigmaParams params;
    params.aStarFile = "gone.csv";
    params.bbTildeValue = kSentinel;
    params.bbTildeFile = "lost.csv";
    LoadSigmaTables(params);
    EXPECT_FALSE(SigmaA(params, 470, false));
    EXPECT_FALSE(SigmaBbTilde(params, 470));
    EXPECT_EQ(
        MissingAStarText(params, 470),
        "A value needed for adjustment of 470 nm backscattering values could not be loaded from gone.csv.  "
        "See 'Sigma Parameters' under the File menu to select a different file.");
    EXPECT_EQ(MissingBbTildeText(params, 532),
              "A value needed for sigma-correction of 532 nm backscattering values could not be loaded from "
              "lost.csv.  "
              "See 'Sigma Parameters' under the File menu to select a different file.");
}

/// A program folder and a data folder, gone at the end of the test.
class SigmaSettings : public testing::Test {
  protected:
    SigmaSettings() {
        fs::create_directories(program_);
        fs::create_directories(data_);
    }

    static void WriteTable(const fs::path& path) { std::ofstream(path) << "400,2\n500,4\n"; }
    [[nodiscard]] SigmaParamsLoad Load() const { return LoadSigmaParams(settings_, program_, data_); }

    TestFolder root_;
    fs::path program_ = root_ / "program";
    fs::path data_ = root_ / "data";
    MapSettings settings_;
};

TEST_F(SigmaSettings, DefaultsOfANewUser) {
    WriteTable(program_ / "aStar.csv");
    const auto load = Load();
    EXPECT_EQ(load.missingFiles, 0);
    EXPECT_EQ(load.params.aStarValue, kSentinel);
    EXPECT_EQ(load.params.aStarFile, (program_ / "aStar.csv").string());
    EXPECT_EQ(load.params.bbTildeValue, 0.015);
    EXPECT_EQ(load.params.bbTildeFile, "");
    EXPECT_EQ(load.params.ad400, 0.01);
    EXPECT_EQ(load.params.C, 0.1);
    EXPECT_EQ(load.params.gammad, 0.011);
    EXPECT_EQ(load.params.gammay, 0.014);
    EXPECT_EQ(load.params.p, 0.6);
    EXPECT_FALSE(load.params.includePurewater);
    EXPECT_FALSE(load.params.cUseCV);
    EXPECT_EQ(load.params.aStarTable.Lookup(450), 3);
}

TEST_F(SigmaSettings, TheDataFolderHelpsOut) {
    WriteTable(data_ / "aStar.csv");
    const auto load = Load();
    EXPECT_EQ(load.missingFiles, 0);
    EXPECT_EQ(load.params.aStarFile, (data_ / "aStar.csv").string());
    EXPECT_EQ(load.params.aStarTable.Lookup(450), 3);
}

TEST_F(SigmaSettings, MissingFilesAreCountedAndTheSettingIsKept) {
    settings_.SaveSetting("Sigma", "aStar", "/nowhere/mine.csv");
    settings_.SaveSetting("Sigma", "bTilde", "/nowhere/bt.csv");
    const auto load = Load();
    EXPECT_EQ(load.missingFiles, 2);
    EXPECT_EQ(load.params.aStarFile, "/nowhere/mine.csv");
    EXPECT_EQ(load.params.bbTildeFile, "/nowhere/bt.csv");
    EXPECT_EQ(load.params.bbTildeValue, kSentinel);
}

TEST_F(SigmaSettings, NumbersAreFixedValues) {
    settings_.SaveSetting("Sigma", "aStar", "0.05");
    settings_.SaveSetting("Sigma", "bTilde", " 2e-2 ");
    const auto load = Load();
    EXPECT_EQ(load.missingFiles, 0);
    EXPECT_EQ(load.params.aStarValue, 0.05);
    EXPECT_EQ(load.params.aStarFile, "");
    EXPECT_EQ(load.params.bbTildeValue, 0.02);
}

TEST_F(SigmaSettings, FlagsAreReadInAnyCase) {
    settings_.SaveSetting("Sigma", "includePurewater", "true");
    settings_.SaveSetting("Sigma", "cUseCV", "TRUE");
    EXPECT_TRUE(Load().params.includePurewater);
    EXPECT_TRUE(Load().params.cUseCV);
}

TEST_F(SigmaSettings, WhatIsSavedComesBack) {
    WriteTable(program_ / "mine.csv");
    SigmaParams params;
    params.aStarFile = (program_ / "mine.csv").string();
    params.bbTildeValue = 0.0125;
    params.gammay = 0.015;
    params.gammad = 0.012;
    params.C = 0.7;
    params.ad400 = 0.02;
    params.p = 0.55;
    params.cUseCV = true;
    params.includePurewater = true;
    LoadSigmaTables(params);
    SaveSigmaParams(settings_, params);
    EXPECT_EQ(settings_.GetSetting("Sigma", "cUseCV", ""), "TRUE");
    EXPECT_EQ(settings_.GetSetting("Sigma", "bTilde", ""), "0.0125");
    EXPECT_EQ(Load().params, params);
}

}  // namespace
}  // namespace marisonde
