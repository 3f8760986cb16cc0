#include <QAction>
#include <QLabel>
#include <QMenu>
#include <QSignalSpy>
#include <QToolButton>
#include <qcustomplot.h>

#include "app_forms/GraphFixture.h"

namespace marisonde {
namespace {

using simulator::Model;

class GraphCommandsTest : public GraphFixture {
  protected:
    static bool ShowsSigmaOptions(MainForm* form) {
        return form->findChild<QWidget*>("SigmaOption(0)")->isVisibleTo(form) &&
               form->findChild<QWidget*>("SigmaOption(1)")->isVisibleTo(form);
    }
    static QPalette Dark() {
        QPalette dark(QColor(45, 45, 48));
        dark.setColor(QPalette::Base, QColor(20, 20, 20));
        return dark;
    }
};

TEST_F(GraphCommandsTest, MenuAndButtonsHaveTheirNames) {
    MainForm* const form = Empty();
    EXPECT_NE(form->findChild<QMenu*>("Graph_menu"), nullptr);
    for (const char* name : {"Vs_Time_menu", "Vs_Depth_menu", "Vs_Channel_menu", "View_All_menu",
                             "Zoom_In_menu", "Zoom_Out_menu", "Previous_menu", "Meters_menu", "Feet_menu"})
        EXPECT_NE(Item(form, name), nullptr) << name;
    for (const char* name : {"Full_Button", "Z_In_Button", "Z_Out_Button", "Previous_Button"}) {
        const auto* const button = form->findChild<QToolButton*>(name);
        ASSERT_NE(button, nullptr) << name;
        EXPECT_FALSE(button->icon().isNull()) << name;
        EXPECT_FALSE(button->toolTip().isEmpty()) << name;
        EXPECT_FALSE(button->accessibleName().isEmpty()) << name;
    }
}

TEST_F(GraphCommandsTest, TipsOfButtonsNameTheirKeys) {
    MainForm* const form = Sampling();
    Choose(form, "Vs_Time_menu");
    Choose(form, "Vs_Depth_menu");
    for (const auto& [name, key] : {std::pair{"Vs_Time_Button", "(T)"}, std::pair{"Full_Button", "(Ctrl+0)"},
                                    std::pair{"Load_Button", "(Ctrl+O)"}, std::pair{"Connect_Button", "(F2)"},
                                    std::pair{"Termulator_Button", "(F6)"}}) {
        const auto* const button = form->findChild<QToolButton*>(name);
        ASSERT_NE(button, nullptr) << name;
        EXPECT_TRUE(button->toolTip().endsWith(key)) << qPrintable(button->toolTip());
        EXPECT_EQ(button->focusPolicy(), Qt::TabFocus) << name;
    }
}

TEST_F(GraphCommandsTest, AWindowOpensInTheViewLastSeenAndMarksIt) {
    MainForm* const form = Sampling();
    EXPECT_TRUE(Item(form, "Vs_Depth_menu")->isChecked()) << "with nothing stored";
    EXPECT_FALSE(Item(form, "Vs_Time_menu")->isChecked());
    EXPECT_EQ(form->Window().Plot.View(), PlotView::Vs_Depth);
    Choose(form, "Vs_Time_menu");
    EXPECT_TRUE(Item(form, "Vs_Time_menu")->isChecked());
    EXPECT_FALSE(Item(form, "Vs_Depth_menu")->isChecked());
    EXPECT_EQ(PlotOf(form).xAxis->label(), "Elapsed Time (minutes)");
    EXPECT_EQ(Sampling()->Window().Plot.View(), PlotView::Vs_Time);
}

TEST_F(GraphCommandsTest, ChoosingTheViewInForceRedrawsNothing) {
    MainForm* const form = Scaled();
    const auto points = form->Window().Chart.PointsRevision();
    const QSignalSpy replots(&PlotOf(form), &QCustomPlot::afterReplot);
    Choose(form, "Vs_Depth_menu");
    EXPECT_TRUE(Item(form, "Vs_Depth_menu")->isChecked()) << "still";
    EXPECT_EQ(form->Window().Chart.PointsRevision(), points);
    EXPECT_EQ(replots.count(), 0);
}

TEST_F(GraphCommandsTest, LettersChangeTheView) {
    MainForm* const form = Sampling();
    Activate(form);
    QTest::keyClick(form, Qt::Key_T);
    EXPECT_EQ(form->Window().Plot.View(), PlotView::Vs_Time);
    QTest::keyClick(form, Qt::Key_D);
    EXPECT_EQ(form->Window().Plot.View(), PlotView::Vs_Depth);
}

TEST_F(GraphCommandsTest, ButtonsChangeTheScale) {
    MainForm* const form = Scaled();
    Click(form, "Z_In_Button");
    EXPECT_EQ(RangeOf(form, AxisName::X), Range(25, 75));
    EXPECT_EQ(RangeOf(form, AxisName::Y), Range(0.25, 0.75));
    EXPECT_EQ(PlotOf(form).yAxis->range().lower, 25) << "is shown at once";
    Click(form, "Z_Out_Button");
    EXPECT_EQ(RangeOf(form, AxisName::X), Range(0, 100));
    Click(form, "Previous_Button");
    EXPECT_EQ(RangeOf(form, AxisName::X), Range(25, 75));
    Click(form, "Previous_Button");
    EXPECT_EQ(RangeOf(form, AxisName::X), Range(25, 75));
    Run(std::chrono::seconds(2));
    Click(form, "Full_Button");
    EXPECT_LT(RangeOf(form, AxisName::Y).second, 0.01) << "backscattering of the simulated water";
}

TEST_F(GraphCommandsTest, KeysChangeTheScale) {
    MainForm* const form = Scaled();
    Activate(form);
    QTest::keyClick(form, Qt::Key_Plus, Qt::ControlModifier);
    EXPECT_EQ(RangeOf(form, AxisName::X), Range(25, 75));
    QTest::keyClick(form, Qt::Key_Minus, Qt::ControlModifier);
    EXPECT_EQ(RangeOf(form, AxisName::X), Range(0, 100));
    QTest::keyClick(form, Qt::Key_Backspace);
    EXPECT_EQ(RangeOf(form, AxisName::X), Range(25, 75));
    QTest::keyClick(form, Qt::Key_Minus, Qt::ControlModifier);
    QTest::keyClick(form, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(RangeOf(form, AxisName::X), Range(25, 75));
    QTest::keyClick(form, Qt::Key_0, Qt::ControlModifier);
    EXPECT_EQ(RangeOf(form, AxisName::X), Range(0, 1)) << "there are no data yet";
    QTest::keyClick(form, Qt::Key_Equal, Qt::ControlModifier);
    EXPECT_EQ(RangeOf(form, AxisName::X), Range(0.25, 0.75)) << "plus without shift";
}

TEST_F(GraphCommandsTest, ThePointerWaitsWhileTheGraphIsMade) {
    MainForm* const form = Scaled();
    int waited = 0;
    QObject::connect(&ViewOf(form), &ChartView::AxesShown, form, [&] {
        const QCursor* const cursor = QGuiApplication::overrideCursor();
        waited += cursor != nullptr && cursor->shape() == Qt::WaitCursor;
    });
    for (const char* command :
         {"Vs_Time_menu", "Vs_Depth_menu", "Zoom_In_menu", "Zoom_Out_menu", "View_All_menu", "Previous_menu"})
        Choose(form, command);
    EXPECT_EQ(waited, 6);
    EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
}

TEST_F(GraphCommandsTest, ModelsWithoutSpectrumSaySo) {
    MainForm* const form = Sampling(Model::LTidal);
    Run(kTick);
    ASSERT_TRUE(Item(form, "Vs_Channel_menu")->isEnabled());
    Choose(form, "Vs_Channel_menu");
    EXPECT_EQ(Message(form, "ErrorForm"), "No spectral data available to display.");
}

TEST_F(GraphCommandsTest, TheSpectrumIsNotOfferedBeforeItCanBeShown) {
    MainForm* const form = Sampling(Model::Corvane4);
    Run(kTick);
    EXPECT_FALSE(Item(form, "Vs_Channel_menu")->isEnabled());
    EXPECT_FALSE(Item(form, "Vs_Channel_menu")->toolTip().isEmpty());
}

TEST_F(GraphCommandsTest, UnitsOfDepth) {
    MainForm* const form = Scaled();
    EXPECT_TRUE(Item(form, "Meters_menu")->isChecked());
    Choose(form, "Feet_menu");
    EXPECT_TRUE(Item(form, "Feet_menu")->isChecked());
    EXPECT_FALSE(Item(form, "Meters_menu")->isChecked());
    EXPECT_EQ(PlotOf(form).yAxis->label(), "Depth (ft)");
    EXPECT_NEAR(RangeOf(form, AxisName::X).second, 328.083, 0.001);  // 3937 / 12
    Run(std::chrono::seconds(1));
    EXPECT_NE(Text(form, "DepthPanel").find(" ft"), std::string::npos);
    Choose(form, "Meters_menu");
    EXPECT_EQ(PlotOf(form).yAxis->label(), "Depth (m)");
    EXPECT_NEAR(RangeOf(form, AxisName::X).second, 100, 1e-9);
}

TEST_F(GraphCommandsTest, SigmaOptionsAreForValuesOfTwoForms) {
    MainForm* const empty = Empty();
    MainForm* const corvane = Sampling();
    EXPECT_TRUE(ShowsSigmaOptions(corvane));
    MainForm* const delph = Sampling(Model::Delph2);
    EXPECT_FALSE(ShowsSigmaOptions(delph));
    empty->Window().Plot.SetupChartForInstrument(InstTypeCode::Corvane4);
    empty->InstrumentChanged();
    EXPECT_FALSE(ShowsSigmaOptions(empty)) << "without a calibration there are no values";
    for (const char* view : {"Vs_Time_menu", "Vs_Depth_menu"}) {
        for (MainForm* form : {corvane, delph, empty}) Choose(form, view);
        EXPECT_TRUE(ShowsSigmaOptions(corvane)) << view;
        EXPECT_FALSE(ShowsSigmaOptions(delph)) << view;
        EXPECT_FALSE(ShowsSigmaOptions(empty)) << view;
    }
}

TEST_F(GraphCommandsTest, TidalTitlesDifferByOneBlank) {
    MainForm* const form = Scaled(Model::LTidal);
    EXPECT_TRUE(form->Window().Chart.Axes(AxisName::Y2).Visible());
    Choose(form, "Vs_Time_menu");
    EXPECT_EQ(PlotOf(form).yAxis2->label(), "Attenuation Coefficient (/m)");
    Choose(form, "Vs_Depth_menu");
    EXPECT_EQ(PlotOf(form).xAxis->label(), "Attenuation Coefficient(/m)");
    EXPECT_EQ(PlotOf(form).xAxis2->label(), "Backscattering Coefficient (/m)");
}

TEST_F(GraphCommandsTest, DefaultsOfTheUserAreShown) {
    settings.SaveSetting("GraphDefaults", "LineSize", "3");
    settings.SaveSetting("GraphDefaults", "GridOn", "0");
    settings.SaveSetting("GraphDefaults", "GraphExtColor", "&H00FFFF");  // yellow
    settings.SaveSetting("GraphDefaults", "DataColor0", "255");          // red
    settings.SaveSetting("GraphDefaults", "Marker1", "Square");
    settings.SaveSetting("GraphDefaults", "MarkerSize", "9");
    settings.SaveSetting("GraphDefaults", "DepthMax", "40");
    MainForm* const form = Sampling();
    ViewOf(form).RefreshNow();
    EXPECT_EQ(PlotOf(form).GeometryAt(1).lineWidth, 3);
    EXPECT_FALSE(PlotOf(form).xAxis2->grid()->visible());
    EXPECT_EQ(ViewOf(form).grab().toImage().pixel(3, 3), QColor(Qt::yellow).rgb());
    EXPECT_EQ(ViewOf(form).SampleOf(1, 1).color, QColor(Qt::red));
    EXPECT_EQ(ViewOf(form).SampleOf(1, 2).marker, CurveMarker::Square);
    EXPECT_EQ(PlotOf(form).yAxis->range().upper, 40);
}

TEST_F(GraphCommandsTest, AFirstRunIsWhiteWithABlackGrid) {
    MainForm* const form = Empty();
    ViewOf(form).RefreshNow();
    EXPECT_EQ(ViewOf(form).grab().toImage().pixelColor(3, 3), QColor(Qt::white));
    EXPECT_TRUE(PlotOf(form).xAxis2->grid()->visible());
    EXPECT_EQ(PlotOf(form).xAxis2->grid()->pen().color().rgb() & 0xFFFFFFU, 0U);
    EXPECT_EQ(RangeOf(form, AxisName::Y), Range(0, 0.01));
    EXPECT_EQ(RangeOf(form, AxisName::Y2), Range(0, 0.1));
}

TEST_F(GraphCommandsTest, AThemeThatTurnsDarkIsFollowedAtOnce) {
    MainForm* const form = Sampling();
    const QColor before = ViewOf(form).SampleOf(1, 3).color;
    form->setPalette(Dark());
    Settle();
    ViewOf(form).RefreshNow();
    EXPECT_EQ(ViewOf(form).grab().toImage().pixelColor(3, 3), QColor(20, 20, 20));
    const QColor after = ViewOf(form).SampleOf(1, 3).color;
    EXPECT_NE(after, before) << "violet is too dark for it";
    EXPECT_GE(ContrastOf(after, QColor(20, 20, 20)), 3);
    EXPECT_EQ(form->findChild<QWidget*>("Color_sel(2)")->palette().color(QPalette::Window), after);
}

TEST_F(GraphCommandsTest, TheGraphCanBeReadAloud) {
    MainForm* const form = Scaled(Model::LTidal);
    EXPECT_FALSE(ViewOf(form).accessibleName().isEmpty());
    Choose(form, "Vs_Time_menu");
    EXPECT_EQ(ViewOf(form).accessibleDescription(),
              "Backscattering Coefficient (/m) and Attenuation Coefficient (/m) against Elapsed Time "
              "(minutes)");
    EXPECT_TRUE(ViewOf(form).focusPolicy() & Qt::TabFocus);
}

}  // namespace
}  // namespace marisonde
