#include "app/ParameterChange.h"
#include "app/WindowFixture.h"
#include "decode/Lines.h"

namespace marisonde {
namespace {

using simulator::Model;

const std::string kLine = lines::WithChecksum(lines::kSample) + "\r\n";

class ParameterChangeTest : public WindowFixture {
  protected:
    /// The same line once more, and the bb that it gives before any sigma.
    double BbOf(DataWindow& window) {
        port->Queue(kLine);
        Run(window, 2 * kTick);
        return window.Link.State.CurrentSample.bbUncorr[0];
    }
    static PureWaterParams NoWater(float chi) {
        PureWaterParams params;
        params.Choice = PureWaterChoice::NoPure;
        params.beta0 = params.bb0 = 0;
        params.chi = chi;
        return params;
    }
    SigmaParams Detritus() const {
        SigmaParams params = app.sigma;
        params.C = 0;
        params.ad400 = 0.0625;
        params.gammad = 0;  // so that a is 0.0625 at all wavelengths
        params.bbTildeValue = 0.02;
        return params;
    }
};

TEST_F(ParameterChangeTest, PureWaterIsKeptAndActsOnTheNextSample) {
    const auto window = Scripted(Model::Corvane6);
    TakePureWaterParams(app, NoWater(1));
    const double once = BbOf(*window);
    ASSERT_NE(once, 0);
    TakePureWaterParams(app, NoWater(2));
    EXPECT_NEAR(BbOf(*window) / once, 2, 1e-6);
    EXPECT_EQ(app.pureWater, NoWater(2));
    EXPECT_EQ(LoadPureWaterParams(settings), NoWater(2));
    EXPECT_EQ(settings.GetSetting("bbPrefs", "NoPure", ""), "TRUE");
    EXPECT_EQ(settings.GetSetting("bbPrefs", "MorelFresh", ""), "FALSE");
}

TEST_F(ParameterChangeTest, SigmaParametersReachTheCalibrationOfEveryWindow) {
    const auto first = Scripted(Model::Corvane6);
    const auto second = Scripted(Model::NTidal);
    TakeSigmaParams(app, Detritus());
    for (const DataWindow* window : {first.get(), second.get()}) {
        EXPECT_EQ(window->Link.CalData.Channel(0).a, 0.0625);
        EXPECT_EQ(window->Link.CalData.Channel(0).bbTilde, 0.02);
    }
    EXPECT_EQ(settings.GetSetting("Sigma", "ad400", ""), "0.0625");
    EXPECT_EQ(settings.GetSetting("Sigma", "bTilde", ""), "0.02");
    EXPECT_EQ(LoadSigmaParams(settings, folder.Path(), ShareFolder()).params, app.sigma);
    EXPECT_TRUE(dialogs.errors.empty());
}

TEST_F(ParameterChangeTest, TheOlderFormRenewsSigmaAlone) {
    const auto window = Scripted(Model::Corvane6);
    CalibrationDataClass& cal = window->Link.CalData;
    const double a = cal.Channel(0).a;
    cal.SetSigmaExp(0, 0);
    cal.SetSigma(0, 1, 1);
    cal.SetSigma(0, 2, 0);
    SigmaParams older = Detritus();
    older.includePurewater = true;
    TakeSigmaParams(app, older);
    EXPECT_EQ(cal.Channel(0).a, a);
    EXPECT_NE(a, 0.0625);
    // 1 - K0, where K0 = 1.6 bbw + aw at 470 nm: bbw = (525 / 470)^4.32 x 8.9936E-4 = 0.0014506, aw = 0.0106:
    // 1 - 0.0129210 = 0.987
    ASSERT_EQ(cal.Channel(0).lambda, 470);
    EXPECT_EQ(cal.Channel(0).Sigma[0], 0.987);
}

TEST_F(ParameterChangeTest, ATableWithoutAValueIsTold) {
    const auto window = Scripted(Model::Corvane6);
    SigmaParams params = app.sigma;
    params.aStarValue = kSentinel;
    params.aStarFile = (folder / "gone.csv").string();
    LoadSigmaTables(params);
    const double a = window->Link.CalData.Channel(0).a;
    TakeSigmaParams(app, params);
    ASSERT_EQ(dialogs.errors.size(), 1U);
    EXPECT_EQ(dialogs.errors[0],
              "A value needed for adjustment of 470 nm backscattering values could not be loaded from " +
                  params.aStarFile +
                  ".  See 'Sigma Parameters' under the File menu to select a different file.");
    EXPECT_EQ(window->Link.CalData.Channel(0).a, a);
}

TEST_F(ParameterChangeTest, AWindowWithoutCalibrationIsPassedOver) {
    DataWindow empty(app, dialogs, std::make_unique<ScriptedLine>());
    TakeSigmaParams(app, Detritus());
    TakePureWaterParams(app, NoWater(1));
    Run(empty, 2 * kTick);
    EXPECT_FALSE(empty.Link.State.CalReady);
    EXPECT_TRUE(dialogs.errors.empty());
}

TEST_F(ParameterChangeTest, AFileKeepsTheColumnsThatItsHeaderNames) {
    const auto window = Scripted(Model::Corvane6);
    port->Queue(kLine);
    Run(*window, 2 * kTick);
    PureWaterParams withBetas = app.pureWater;
    withBetas.WriteBetaColumns = true;
    TakePureWaterParams(app, withBetas);
    port->Queue(kLine);
    Run(*window, 2 * kTick);
    ASSERT_FALSE(window->Files.SaveCopy(DataFileKind::Dat, folder / "a.dat"));
    const std::string data = BehindHeader(TestFolder::Read(folder / "a.dat"), "[Data]");
    const auto end = data.find("\r\n");
    ASSERT_NE(end, std::string::npos);
    const std::string first = data.substr(0, end);
    EXPECT_EQ(std::count(first.begin(), first.end(), ','),
              (std::count(data.begin(), data.end(), ',') - std::count(first.begin(), first.end(), ',')));
}

}  // namespace
}  // namespace marisonde
