#include <QAction>
#include <QLabel>
#include <QMenu>
#include <QRubberBand>
#include <QSignalSpy>
#include <QToolButton>
#include <QWheelEvent>
#include <qcustomplot.h>

#include "app_forms/FormsFixture.h"
#include "graphs/forms/ChartPlot.h"
#include "graphs/forms/ChartView.h"

namespace marisonde {
namespace {

using simulator::Model;
using Range = std::pair<double, double>;

class GraphCommandsTest : public FormsFixture {
  protected:
    /// A window whose graph has the scale 0..100, 0..1 and, where it is used, 0..10.
    MainForm* Scaled(Model model = Model::Corvane6) {
        MainForm* const form = Sampling(model);
        Set(form, AxisName::X, 0, 100);
        Set(form, AxisName::Y, 0, 1);
        Set(form, AxisName::Y2, 0, 10);
        form->Window().Plot.UpdateCurrentPlotInfo();
        ViewOf(form).RefreshNow();
        return form;
    }
    static void Set(MainForm* form, AxisName name, double min, double max) {
        SetAxisRange(form->Window().Chart, name, min, max);
    }
    static Range RangeOf(MainForm* form, AxisName name) {
        const ChartAxis& axis = form->Window().Chart.Axes(name);
        return {axis.Min(), axis.Max()};
    }
    static void ExpectRange(MainForm* form, AxisName name, double min, double max) {
        const Range range = RangeOf(form, name);
        // A pixel of the plot is less than half a hundredth of its side.
        EXPECT_NEAR(range.first, min, (max - min) * 0.02);
        EXPECT_NEAR(range.second, max, (max - min) * 0.02);
    }
    static ChartView& ViewOf(MainForm* form) { return *form->findChild<ChartView*>("Chart2D1"); }
    static ChartPlot& PlotOf(MainForm* form) { return dynamic_cast<ChartPlot&>(ViewOf(form).Canvas()); }
    static QAction* Item(MainForm* form, const char* name) { return form->findChild<QAction*>(name); }
    static void Choose(MainForm* form, const char* name) { Item(form, name)->trigger(); }
    static void Click(MainForm* form, const char* name) {
        QTest::mouseClick(form->findChild<QToolButton*>(name), Qt::LeftButton);
    }
    /// A place in the plot area by shares of its width and height, from the top left.
    static QPoint At(MainForm* form, double across, double down) {
        const QRect area = ViewOf(form).PlotArea();
        return area.topLeft() +
               QPoint(static_cast<int>(area.width() * across), static_cast<int>(area.height() * down));
    }
    static void MoveTo(MainForm* form, const QPoint& place, Qt::MouseButton held = Qt::NoButton) {
        const QPointF at(place);
        QMouseEvent move(QEvent::MouseMove, at, ViewOf(form).Canvas().mapToGlobal(at), Qt::NoButton, held,
                         Qt::NoModifier);
        QApplication::sendEvent(&ViewOf(form).Canvas(), &move);
    }
    static void Drag(MainForm* form, const QPoint& from, const QPoint& to) {
        QWidget& canvas = ViewOf(form).Canvas();
        QTest::mousePress(&canvas, Qt::LeftButton, {}, from);
        MoveTo(form, (from + to) / 2, Qt::LeftButton);
        MoveTo(form, to, Qt::LeftButton);
        EXPECT_TRUE(form->findChild<QRubberBand*>("ZoomRectangle")->isVisible());
        QTest::mouseRelease(&canvas, Qt::LeftButton, {}, to);
        EXPECT_FALSE(form->findChild<QRubberBand*>("ZoomRectangle")->isVisible());
    }
    static void Turn(MainForm* form, const QPoint& place, int notches, quint64 time) {
        const QPointF at(place);
        QWheelEvent wheel(at, ViewOf(form).Canvas().mapToGlobal(at), {}, QPoint(0, 120 * notches),
                          Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        wheel.setTimestamp(time);
        QApplication::sendEvent(&ViewOf(form).Canvas(), &wheel);
    }
    static void LeaveGraph(MainForm* form) {
        QEvent leave(QEvent::Leave);
        QApplication::sendEvent(&ViewOf(form).Canvas(), &leave);
    }
    static bool ShowsSigmaOptions(MainForm* form) {
        return form->findChild<QWidget*>("SigmaOption(0)")->isVisibleTo(form) &&
               form->findChild<QWidget*>("SigmaOption(1)")->isVisibleTo(form);
    }
    static void Activate(MainForm* form) {
        form->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(form));
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

TEST_F(GraphCommandsTest, ARectangleBecomesTheScaleInTheTimeView) {
    MainForm* const form = Scaled();
    Choose(form, "Vs_Time_menu");
    Set(form, AxisName::X, 0, 100);
    ViewOf(form).RefreshNow();
    Drag(form, At(form, 0.25, 0.25), At(form, 0.75, 0.5));
    ExpectRange(form, AxisName::X, 25, 75);
    ExpectRange(form, AxisName::Y, 0.5, 0.75);
    EXPECT_EQ(form->Window().Plot.CurrentTimeMin, RangeOf(form, AxisName::X).first);
    EXPECT_EQ(form->Window().Plot.ChartMouseDownX, At(form, 0.25, 0.25).x());
    EXPECT_EQ(form->Window().Plot.ChartMouseUpY, At(form, 0.75, 0.5).y());
    Click(form, "Previous_Button");
    EXPECT_EQ(RangeOf(form, AxisName::X), Range(0, 100));
    EXPECT_EQ(RangeOf(form, AxisName::Y), Range(0, 1));
}

TEST_F(GraphCommandsTest, ARectangleBecomesTheScaleInTheDepthView) {
    MainForm* const form = Scaled(Model::NTidal);
    // From the lower right to the upper left: any two corners will do. Depth grows downward.
    Drag(form, At(form, 0.8, 0.5), At(form, 0.2, 0.1));
    ExpectRange(form, AxisName::X, 10, 50);
    ExpectRange(form, AxisName::Y, 0.2, 0.8);
    ExpectRange(form, AxisName::Y2, 2, 8);
    Click(form, "Previous_Button");
    EXPECT_EQ(RangeOf(form, AxisName::X), Range(0, 100));
    EXPECT_EQ(RangeOf(form, AxisName::Y2), Range(0, 10));
}

TEST_F(GraphCommandsTest, AStrokeAlongOneAxisLeavesTheOther) {
    MainForm* const form = Scaled();
    Drag(form, At(form, 0.5, 0.2), At(form, 0.5, 0.6) + QPoint(3, 0));  // no hand draws straighter
    ExpectRange(form, AxisName::X, 20, 60);
    EXPECT_EQ(RangeOf(form, AxisName::Y), Range(0, 1));
}

TEST_F(GraphCommandsTest, AStrokeAlongTimeLeavesTheData) {
    MainForm* const form = Scaled();
    Choose(form, "Vs_Time_menu");
    Set(form, AxisName::X, 0, 100);
    ViewOf(form).RefreshNow();
    Drag(form, At(form, 0.2, 0.5), At(form, 0.6, 0.5) + QPoint(0, 3));
    ExpectRange(form, AxisName::X, 20, 60);
    EXPECT_EQ(RangeOf(form, AxisName::Y), Range(0, 1));
}

TEST_F(GraphCommandsTest, TheSecondPressOfADoubleClickCountsToo) {
    MainForm* const form = Scaled();
    Click(form, "Z_In_Button");
    const QPointF at(At(form, 0.5, 0.5));
    QMouseEvent press(QEvent::MouseButtonDblClick, at, ViewOf(form).Canvas().mapToGlobal(at), Qt::LeftButton,
                      Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&ViewOf(form).Canvas(), &press);
    EXPECT_EQ(form->Window().Plot.ChartMouseDownX, at.x());
    Click(form, "Previous_Button");
    EXPECT_EQ(RangeOf(form, AxisName::X), Range(25, 75));
}

TEST_F(GraphCommandsTest, ADragBeyondThePlotEndsAtItsEdge) {
    MainForm* const form = Scaled();
    Drag(form, At(form, 0.5, 0.5), {ViewOf(form).width() + 50, ViewOf(form).height() + 50});
    ExpectRange(form, AxisName::X, 50, 100);
    ExpectRange(form, AxisName::Y, 0.5, 1);
}

TEST_F(GraphCommandsTest, EscapeGivesADragUp) {
    MainForm* const form = Scaled();
    Activate(form);
    QWidget& canvas = ViewOf(form).Canvas();
    QTest::mousePress(&canvas, Qt::LeftButton, {}, At(form, 0.2, 0.2));
    MoveTo(form, At(form, 0.6, 0.6), Qt::LeftButton);
    QTest::keyClick(&ViewOf(form), Qt::Key_Escape);
    EXPECT_FALSE(form->findChild<QRubberBand*>("ZoomRectangle")->isVisible());
    QTest::mouseRelease(&canvas, Qt::LeftButton, {}, At(form, 0.6, 0.6));
    EXPECT_EQ(RangeOf(form, AxisName::X), Range(0, 100));
}

TEST_F(GraphCommandsTest, AClickMakesThePresentScaleTheStoredOne) {
    MainForm* const form = Scaled();
    Click(form, "Z_In_Button");
    QTest::mouseClick(&ViewOf(form).Canvas(), Qt::LeftButton, {}, At(form, 0.5, 0.5));
    Click(form, "Previous_Button");
    EXPECT_EQ(RangeOf(form, AxisName::X), Range(25, 75));
}

TEST_F(GraphCommandsTest, TheRightButtonLeavesTheHistory) {
    MainForm* const form = Scaled();
    Click(form, "Z_In_Button");
    QWidget& canvas = ViewOf(form).Canvas();
    QTest::mousePress(&canvas, Qt::RightButton, {}, At(form, 0.2, 0.2));
    MoveTo(form, At(form, 0.6, 0.6), Qt::RightButton);
    EXPECT_FALSE(form->findChild<QRubberBand*>("ZoomRectangle")->isVisible());
    QTest::mouseRelease(&canvas, Qt::RightButton, {}, At(form, 0.6, 0.6));
    EXPECT_EQ(form->Window().Plot.ChartMouseUpX, At(form, 0.6, 0.6).x()) << "of any button";
    EXPECT_EQ(RangeOf(form, AxisName::X), Range(25, 75));
    Click(form, "Previous_Button");
    EXPECT_EQ(RangeOf(form, AxisName::X), Range(0, 100));
}

TEST_F(GraphCommandsTest, TheReadoutFollowsThePointer) {
    MainForm* const form = Scaled();
    const auto* const text = form->findChild<QLabel*>("CoordText");
    EXPECT_FALSE(text->isVisible());
    MoveTo(form, At(form, 0.25, 0.5));
    ASSERT_TRUE(text->isVisible());
    EXPECT_EQ(text->pos(), QPoint(10, 10));
    const QStringList words = text->text().split(' ');
    ASSERT_EQ(words.size(), 4) << text->text().toStdString();
    EXPECT_NEAR(words[0].toDouble(), 50, 1);
    EXPECT_EQ(words[1], "m,");
    EXPECT_NEAR(words[2].toDouble(), 0.25, 0.01);
    EXPECT_EQ(words[3], "/m");
    EXPECT_EQ(text->size(), text->sizeHint());
    MoveTo(form, ViewOf(form).PlotArea().topLeft() - QPoint(5, 0));
    EXPECT_FALSE(text->isVisible()) << "beyond the limits";
    EXPECT_EQ(text->width(), 100);
    MoveTo(form, At(form, 0.5, 0.5));
    EXPECT_TRUE(text->isVisible());
    LeaveGraph(form);
    EXPECT_FALSE(text->isVisible());
    Choose(form, "Zoom_Out_menu");
    EXPECT_FALSE(text->isVisible()) << "the pointer is elsewhere";
}

TEST_F(GraphCommandsTest, TheReadoutHasThreeValuesWithTheSecondAxis) {
    MainForm* const form = Scaled(Model::LTidal);
    MoveTo(form, At(form, 0.75, 0.5));
    const QStringList parts = form->findChild<QLabel*>("CoordText")->text().split(", ");
    ASSERT_EQ(parts.size(), 3);
    EXPECT_NEAR(parts[2].split(' ')[0].toDouble(), 7.5, 0.1);
}

TEST_F(GraphCommandsTest, TheReadoutSpeaksOfTheViewThatIsShown) {
    MainForm* const form = Scaled();
    MoveTo(form, At(form, 0.5, 0.5));
    Choose(form, "Vs_Time_menu");
    EXPECT_TRUE(form->findChild<QLabel*>("CoordText")->text().contains(" minutes, "));
}

TEST_F(GraphCommandsTest, TheMouseDrawsNoCurves) {
    MainForm* const form = Scaled();
    Run(std::chrono::seconds(3));
    Settle();
    ViewOf(form).RefreshNow();
    const qint64 picture = PlotOf(form).Layer().Image().cacheKey();
    ASSERT_FALSE(PlotOf(form).Layer().Image().isNull());
    const QSignalSpy replots(&PlotOf(form), &QCustomPlot::afterReplot);
    for (int i = 0; i < 100; ++i) {
        MoveTo(form, At(form, i / 100.0, 0.3 + i / 300.0));
        Settle();
    }
    EXPECT_EQ(PlotOf(form).Layer().Image().cacheKey(), picture);
    EXPECT_EQ(replots.count(), 0);
}

TEST_F(GraphCommandsTest, TheWheelZoomsAboutThePointer) {
    MainForm* const form = Scaled();
    Turn(form, At(form, 0.5, 0.25), 1, 5000);
    // A notch leaves four fifths: a quarter of the depth axis lies above the pointer before and after.
    ExpectRange(form, AxisName::X, 5, 85);
    ExpectRange(form, AxisName::Y, 0.1, 0.9);
    Turn(form, At(form, 0.5, 0.25), 1, 5300);
    Turn(form, At(form, 0.5, 0.25), 1, 5600);
    Click(form, "Previous_Button");
    EXPECT_EQ(RangeOf(form, AxisName::X), Range(0, 100)) << "one turn of the wheel is one change of scale";
    ViewOf(form).RefreshNow();
    Turn(form, At(form, 0.5, 0.5), -1, 9000);
    EXPECT_LT(RangeOf(form, AxisName::X).first, 0);
    Set(form, AxisName::X, 0, 80);
    ViewOf(form).RefreshNow();
    Turn(form, At(form, 0.5, 0.5), -1, 20000);
    Click(form, "Previous_Button");
    EXPECT_EQ(RangeOf(form, AxisName::X), Range(0, 80)) << "after a pause a new movement begins";
    ViewOf(form).RefreshNow();
    const Range before = RangeOf(form, AxisName::X);
    Turn(form, QPoint(2, 2), 1, 20100);
    EXPECT_EQ(RangeOf(form, AxisName::X), before) << "not over the titles";
}

TEST_F(GraphCommandsTest, ArrowsMoveAlongTheAxes) {
    MainForm* const form = Scaled();
    Activate(form);
    ViewOf(form).setFocus();
    QTest::keyClick(&ViewOf(form), Qt::Key_Down);
    EXPECT_EQ(RangeOf(form, AxisName::X), Range(10, 110)) << "deeper";
    QTest::keyClick(&ViewOf(form), Qt::Key_Right);
    EXPECT_DOUBLE_EQ(RangeOf(form, AxisName::Y).first, 0.1);
    QTest::keyClick(&ViewOf(form), Qt::Key_Down, Qt::ControlModifier);
    EXPECT_EQ(RangeOf(form, AxisName::X), Range(10, 110)) << "with another key they mean something else";
    Choose(form, "Vs_Time_menu");
    Set(form, AxisName::X, 0, 100);
    Set(form, AxisName::Y, 0, 1);
    QTest::keyClick(&ViewOf(form), Qt::Key_Right);
    EXPECT_EQ(RangeOf(form, AxisName::X), Range(10, 110));
    QTest::keyClick(&ViewOf(form), Qt::Key_Up);
    EXPECT_DOUBLE_EQ(RangeOf(form, AxisName::Y).first, 0.1);
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
