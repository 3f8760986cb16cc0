#include <QCheckBox>
#include <QRadioButton>
#include <QToolButton>

#include "app/forms/ChannelPanel.h"
#include "app_forms/FormsFixture.h"

namespace marisonde {
namespace {

using simulator::Model;

class ChannelPanelTest : public FormsFixture {
  protected:
    template <class Widget>
    static Widget* Of(const MainForm* form, const char* array, int index) {
        return form->findChild<Widget*>(QString("%1(%2)").arg(array).arg(index));
    }
    static SeriesDisplay Display(MainForm* form, int group, int series) {
        return form->Window().Chart.ChartGroups(group).Display(series);
    }
};

TEST_F(ChannelPanelTest, TheCheckTurnsTheCurveOffAndOn) {
    MainForm* const form = Sampling();
    Run(std::chrono::seconds(2));
    auto* const check = Of<QCheckBox>(form, "ChannelOnOff_Check", 2);
    EXPECT_TRUE(check->isChecked());
    QTest::mouseClick(check, Qt::LeftButton);
    EXPECT_EQ(Display(form, 1, 3), SeriesDisplay::Kept);
    const std::string before = Text(form, "DataBox(2)");
    Run(std::chrono::seconds(3));
    EXPECT_NE(Text(form, "DataBox(2)"), before) << "its value is shown all the same";
    form->InstrumentChanged();
    EXPECT_FALSE(check->isChecked()) << "the panel shows what the graph does";
    QTest::keyClick(check, Qt::Key_Space);
    EXPECT_EQ(Display(form, 1, 3), SeriesDisplay::Drawn);
}

TEST_F(ChannelPanelTest, ReadoutsOfADelphCountFromOne) {
    MainForm* const form = Sampling(Model::Delph2);
    QTest::mouseClick(Of<QCheckBox>(form, "ChannelOnOff_Check", 1), Qt::LeftButton);
    EXPECT_EQ(Display(form, 1, 1), SeriesDisplay::Kept);
    EXPECT_EQ(Display(form, 1, 2), SeriesDisplay::Drawn);
}

TEST_F(ChannelPanelTest, ARowOpensAndCloses) {
    MainForm* const form = Sampling();
    Run(std::chrono::seconds(3));
    auto* const frame = Of<QWidget>(form, "Channel_Frame", 0);
    auto* const below = Of<QWidget>(form, "Channel_Frame", 1);
    auto* const open = Of<QToolButton>(form, "Channel_Open", 0);
    auto* const close = Of<QToolButton>(form, "Close_Channel", 0);
    const int height = frame->height();
    const int place = below->y();
    EXPECT_TRUE(open->isVisible());
    EXPECT_FALSE(close->isVisible());
    QTest::mouseClick(open, Qt::LeftButton);
    Settle();
    EXPECT_FALSE(open->isVisible());
    EXPECT_TRUE(close->isVisible());
    EXPECT_GT(frame->height(), height);
    EXPECT_EQ(below->y() - place, frame->height() - height) << "the rows below move";
    const DataWindow& window = form->Window();
    EXPECT_EQ(Text(form, "Channel_Counts(0)"), std::to_string(window.Link.State.CurrentRaw.Snorm[0]));
    EXPECT_EQ(Text(form, "Channel_Gain(0)"), std::to_string(window.Link.State.CurrentRaw.Gain[0]));
    EXPECT_LE(std::stod(Text(form, "Channel_Min(0)")), std::stod(Text(form, "Channel_Max(0)")));
    QTest::mouseClick(close, Qt::LeftButton);
    Settle();
    EXPECT_EQ(frame->height(), height);
    EXPECT_EQ(below->y(), place);
}

TEST_F(ChannelPanelTest, AnOpenRowFollowsTheSamples) {
    MainForm* const form = Sampling();
    Run(std::chrono::seconds(2));
    QTest::mouseClick(Of<QToolButton>(form, "Channel_Open", 1), Qt::LeftButton);
    Run(std::chrono::seconds(5));
    EXPECT_EQ(Text(form, "Channel_Counts(1)").find_first_not_of("0123456789"), std::string::npos);
    // Refreshed once a second: what stands there is at most a second old.
    form->Window().Link.ClosePort();
    Run(std::chrono::seconds(1));
    EXPECT_EQ(Text(form, "Channel_Counts(1)"), std::to_string(form->Window().Link.State.CurrentRaw.Snorm[1]));
}

TEST_F(ChannelPanelTest, SigmaOptionsChooseTheForm) {
    app.prefs.Sigma = true;
    MainForm* const form = Sampling();
    auto* const none = Of<QRadioButton>(form, "SigmaOption", 0);
    auto* const corrected = Of<QRadioButton>(form, "SigmaOption", 1);
    EXPECT_EQ(none->text(), "No Sigma");
    EXPECT_EQ(corrected->text(), "Sigma Correct");
    EXPECT_TRUE(corrected->isVisible());
    EXPECT_TRUE(corrected->isChecked());
    QTest::mouseClick(none, Qt::LeftButton);
    EXPECT_EQ(form->Window().Plot.SigmaOption, SigmaChoice::NoSigma);
    EXPECT_FALSE(app.prefs.Sigma);
    Run(std::chrono::seconds(3));
    const DataWindowState& state = form->Window().Link.State;
    EXPECT_NEAR(std::stod(Text(form, "DataBox(0)")), state.CurrentSample.bbUncorr[0], 0.0000101);
}

TEST_F(ChannelPanelTest, SigmaOptionsAreShownWhereThereAreTwoForms) {
    EXPECT_FALSE(Of<QRadioButton>(Sampling(Model::Delph4), "SigmaOption", 0)->isVisible());
    EXPECT_TRUE(Of<QRadioButton>(Sampling(Model::NTidal), "SigmaOption", 0)->isVisible());
}

TEST_F(ChannelPanelTest, EveryControlCanBeReadAloud) {
    const MainForm* const form = Sampling();
    for (int channel = 0; channel < 6; ++channel) {
        EXPECT_FALSE(Of<QWidget>(form, "ChannelOnOff_Check", channel)->accessibleName().isEmpty());
        EXPECT_FALSE(Of<QWidget>(form, "Channel_Open", channel)->accessibleName().isEmpty());
        EXPECT_FALSE(Of<QWidget>(form, "Close_Channel", channel)->accessibleName().isEmpty());
        EXPECT_FALSE(Of<QWidget>(form, "Channel_Counts", channel)->accessibleName().isEmpty());
    }
    EXPECT_EQ(Of<QWidget>(form, "ChannelOnOff_Check", 0)->accessibleName(), "Draw bb470");
}

}  // namespace
}  // namespace marisonde
