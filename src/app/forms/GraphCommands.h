#pragma once

#include <QObject>

class QAction;
class QMenuBar;
class QToolBar;

namespace marisonde {

class ChartView;
class DataWindow;
class MainForm;

/// The commands of one data window that concern its graph: views, scale, unit of depth, and how its curves
/// look.
class GraphCommands final : public QObject {
    Q_OBJECT

  public:
    /// Gives the graph the user's defaults. Both outlive the commands.
    GraphCommands(MainForm& form, ChartView& chart);

    void MakeMenu(QMenuBar* bar);
    void MakeToolBar(QToolBar* bar);
    /// Check marks, and what is enabled. Once a tick.
    void Update();
    /// Names, colours and look of the curves, for the channels that the window has now.
    void ShowCurves();

  private:
    [[nodiscard]] DataWindow& Window();
    QAction* Command(const char* name, const QString& text, const QString& tip, void (GraphCommands::*run)());
    void VsTime();
    void VsDepth();
    void VsChannel();
    void ShowAll();
    void ZoomIn();
    void ZoomOut();
    void Previous();
    void Meters();
    void Feet();
    /// Runs a command of the graph under the hourglass, up to the new picture.
    template <class Run>
    void Perform(Run run);

    MainForm& form_;
    ChartView& chart_;
    QAction* vsTime_;
    QAction* vsDepth_;
    QAction* vsChannel_;
    QAction* showAll_;
    QAction* zoomIn_;
    QAction* zoomOut_;
    QAction* previous_;
    QAction* meters_;
    QAction* feet_;
};

}  // namespace marisonde
