#pragma once

#include <QAction>
#include <QToolButton>
#include <utility>

#include "app_forms/FormsFixture.h"
#include "graphs/forms/ChartPlot.h"
#include "graphs/forms/ChartView.h"

namespace marisonde {

using Range = std::pair<double, double>;

/// Windows with a graph, and what is done to it and seen of it.
class GraphFixture : public FormsFixture {
  protected:
    /// A window whose graph has the scale 0..100, 0..1 and, where it is used, 0..10.
    MainForm* Scaled(simulator::Model model = simulator::Model::Corvane6) {
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
    static ChartView& ViewOf(MainForm* form) { return *form->findChild<ChartView*>("Chart2D1"); }
    static ChartPlot& PlotOf(MainForm* form) { return dynamic_cast<ChartPlot&>(ViewOf(form).Canvas()); }
    static QAction* Item(MainForm* form, const char* name) { return form->findChild<QAction*>(name); }
    static void Choose(MainForm* form, const char* name) { Item(form, name)->trigger(); }
    static void Click(MainForm* form, const char* name) {
        QTest::mouseClick(form->findChild<QToolButton*>(name), Qt::LeftButton);
    }
    static void Activate(MainForm* form) {
        form->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(form));
    }
};

}  // namespace marisonde
