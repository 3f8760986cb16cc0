// What mouse, wheel and arrow keys do to a graph, and what the pointer reads from it.
#include <QLabel>
#include <QRubberBand>
#include <QSignalSpy>
#include <QWheelEvent>
#include <qcustomplot.h>

#include "app_forms/GraphFixture.h"

namespace marisonde {
namespace {

using simulator::Model;

class GraphPointerTest : public GraphFixture {
  protected:
    static void ExpectRange(MainForm* form, AxisName name, double min, double max) {
        const Range range = RangeOf(form, name);
        // A pixel of the plot is less than half a hundredth of its side.
        EXPECT_NEAR(range.first, min, (max - min) * 0.02);
        EXPECT_NEAR(range.second, max, (max - min) * 0.02);
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
};

TEST_F(GraphPointerTest, ARectangleBecomesTheScaleInTheTimeView) {
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

TEST_F(GraphPointerTest, ARectangleBecomesTheScaleInTheDepthView) {
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

TEST_F(GraphPointerTest, AStrokeAlongOneAxisLeavesTheOther) {
    MainForm* const form = Scaled();
    Drag(form, At(form, 0.5, 0.2), At(form, 0.5, 0.6) + QPoint(3, 0));  // no hand draws straighter
    ExpectRange(form, AxisName::X, 20, 60);
    EXPECT_EQ(RangeOf(form, AxisName::Y), Range(0, 1));
}

TEST_F(GraphPointerTest, AStrokeAlongTimeLeavesTheData) {
    MainForm* const form = Scaled();
    Choose(form, "Vs_Time_menu");
    Set(form, AxisName::X, 0, 100);
    ViewOf(form).RefreshNow();
    Drag(form, At(form, 0.2, 0.5), At(form, 0.6, 0.5) + QPoint(0, 3));
    ExpectRange(form, AxisName::X, 20, 60);
    EXPECT_EQ(RangeOf(form, AxisName::Y), Range(0, 1));
}

TEST_F(GraphPointerTest, TheSecondPressOfADoubleClickCountsToo) {
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

TEST_F(GraphPointerTest, ADragBeyondThePlotEndsAtItsEdge) {
    MainForm* const form = Scaled();
    Drag(form, At(form, 0.5, 0.5), {ViewOf(form).width() + 50, ViewOf(form).height() + 50});
    ExpectRange(form, AxisName::X, 50, 100);
    ExpectRange(form, AxisName::Y, 0.5, 1);
}

TEST_F(GraphPointerTest, EscapeGivesADragUp) {
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

TEST_F(GraphPointerTest, AClickMakesThePresentScaleTheStoredOne) {
    MainForm* const form = Scaled();
    Click(form, "Z_In_Button");
    QTest::mouseClick(&ViewOf(form).Canvas(), Qt::LeftButton, {}, At(form, 0.5, 0.5));
    Click(form, "Previous_Button");
    EXPECT_EQ(RangeOf(form, AxisName::X), Range(25, 75));
}

TEST_F(GraphPointerTest, TheRightButtonLeavesTheHistory) {
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

TEST_F(GraphPointerTest, TheReadoutFollowsThePointer) {
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

TEST_F(GraphPointerTest, TheReadoutHasThreeValuesWithTheSecondAxis) {
    MainForm* const form = Scaled(Model::LTidal);
    MoveTo(form, At(form, 0.75, 0.5));
    const QStringList parts = form->findChild<QLabel*>("CoordText")->text().split(", ");
    ASSERT_EQ(parts.size(), 3);
    EXPECT_NEAR(parts[2].split(' ')[0].toDouble(), 7.5, 0.1);
}

TEST_F(GraphPointerTest, TheReadoutSpeaksOfTheViewThatIsShown) {
    MainForm* const form = Scaled();
    MoveTo(form, At(form, 0.5, 0.5));
    Choose(form, "Vs_Time_menu");
    EXPECT_TRUE(form->findChild<QLabel*>("CoordText")->text().contains(" minutes, "));
}

TEST_F(GraphPointerTest, TheMouseDrawsNoCurves) {
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

TEST_F(GraphPointerTest, TheWheelZoomsAboutThePointer) {
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

TEST_F(GraphPointerTest, ArrowsMoveAlongTheAxes) {
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

}  // namespace
}  // namespace marisonde
