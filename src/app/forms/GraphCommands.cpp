#include "app/forms/GraphCommands.h"

#include <QAction>
#include <QActionGroup>
#include <QMenuBar>
#include <QToolBar>
#include <array>

#include "app/GraphSetup.h"
#include "app/PlottedChannels.h"
#include "app/forms/FormHelpers.h"
#include "app/forms/Hourglass.h"
#include "app/forms/MainForm.h"
#include "app/forms/ToolIcons.h"
#include "graphs/forms/ChartPointer.h"
#include "graphs/forms/ChartView.h"

namespace marisonde {

namespace {

/// One of each of these has a check mark.
void MakeChoice(QObject* parent, std::initializer_list<QAction*> actions) {
    auto* const group = new QActionGroup(parent);
    // A view that is in none of the items, as that of visibility, leaves all of them without a mark.
    group->setExclusionPolicy(QActionGroup::ExclusionPolicy::ExclusiveOptional);
    for (QAction* action : actions) {
        action->setCheckable(true);
        group->addAction(action);
    }
}

}  // namespace

GraphCommands::GraphCommands(MainForm& form, ChartView& chart)
    : QObject(&form),
      form_(form),
      chart_(chart),
      vsTime_(Command("Vs_Time_menu", "Versus &Time", "Plot against the time since the first sample",
                      &GraphCommands::VsTime)),
      vsDepth_(Command("Vs_Depth_menu", "Versus &Depth", "Plot as a profile, depth growing downward",
                       &GraphCommands::VsDepth)),
      vsChannel_(Command("Vs_Channel_menu", "Versus &Channel", "", &GraphCommands::VsChannel)),
      showAll_(Command("View_All_menu", "Show &All", "Show all the data", &GraphCommands::ShowAll)),
      zoomIn_(
          Command("Zoom_In_menu", "Zoom &In", "Halve each axis about its centre", &GraphCommands::ZoomIn)),
      zoomOut_(Command("Zoom_Out_menu", "Zoom &Out", "Double each axis about its centre",
                       &GraphCommands::ZoomOut)),
      previous_(Command("Previous_menu", "&Previous Scale",
                        "Go back to the scale before the last zoom or drag", &GraphCommands::Previous)),
      meters_(Command("Meters_menu", "Depth in &Metres", "Show depth in metres", &GraphCommands::Meters)),
      feet_(Command("Feet_menu", "Depth in &Feet", "Show depth in feet", &GraphCommands::Feet)) {
    vsTime_->setShortcut(Qt::Key_T);
    vsDepth_->setShortcut(Qt::Key_D);
    showAll_->setShortcut(Qt::CTRL | Qt::Key_0);
    zoomIn_->setShortcuts({QKeySequence(Qt::CTRL | Qt::Key_Plus), QKeySequence(Qt::CTRL | Qt::Key_Equal)});
    zoomOut_->setShortcut(Qt::CTRL | Qt::Key_Minus);
    previous_->setShortcuts({QKeySequence(Qt::Key_Backspace), QKeySequence(Qt::CTRL | Qt::Key_Z)});
    MakeChoice(this, {vsTime_, vsDepth_});
    MakeChoice(this, {meters_, feet_});
    vsTime_->setIcon(MakeToolIcon(ToolIcon::VsTime));
    vsDepth_->setIcon(MakeToolIcon(ToolIcon::VsDepth));
    showAll_->setIcon(MakeToolIcon(ToolIcon::Full));
    zoomIn_->setIcon(MakeToolIcon(ToolIcon::ZoomIn));
    zoomOut_->setIcon(MakeToolIcon(ToolIcon::ZoomOut));
    previous_->setIcon(MakeToolIcon(ToolIcon::Previous));
    new ChartPointer(Window().Plot, Window().Chart, chart_);
    // Beside the graph, too, curves are shown in colours that suit the theme.
    connect(&chart_, &ChartView::ColorsChanged, &form_, &MainForm::InstrumentChanged, Qt::QueuedConnection);
    LoadGraphDefaults(Window());
}

DataWindow& GraphCommands::Window() {
    return form_.Window();
}

QAction* GraphCommands::Command(const char* name, const QString& text, const QString& tip,
                                void (GraphCommands::*run)()) {
    auto* const action = new QAction(text, this);
    action->setObjectName(name);
    action->setToolTip(tip);
    connect(action, &QAction::triggered, this, run);
    return action;
}

void GraphCommands::MakeMenu(QMenuBar* bar) {
    QMenu* const menu = bar->addMenu("&Graph");
    menu->setObjectName("Graph_menu");
    menu->setToolTipsVisible(true);
    menu->addActions({vsTime_, vsDepth_, vsChannel_});
    menu->addSeparator();
    menu->addActions({showAll_, zoomIn_, zoomOut_, previous_});
    menu->addSeparator();
    menu->addActions({meters_, feet_});
}

void GraphCommands::MakeToolBar(QToolBar* bar) {
    bar->setObjectName("GraphToolbar");
    bar->setWindowTitle("Graph");
    bar->setMovable(false);
    bar->setToolButtonStyle(Qt::ToolButtonIconOnly);
    const std::array buttons{std::pair{showAll_, "Full_Button"},   std::pair{zoomIn_, "Z_In_Button"},
                             std::pair{zoomOut_, "Z_Out_Button"},  std::pair{previous_, "Previous_Button"},
                             std::pair{vsTime_, "Vs_Time_Button"}, std::pair{vsDepth_, "Vs_Depth_Button"}};
    for (const auto& [action, name] : buttons) {
        if (action == vsTime_) bar->addSeparator();
        AddToolButton(bar, action, name);
    }
}

void GraphCommands::Update() {
    const LivePlot& plot = Window().Plot;
    vsTime_->setChecked(plot.View() == PlotView::Vs_Time);
    vsDepth_->setChecked(plot.View() == PlotView::Vs_Depth);
    meters_->setChecked(plot.DepthInMeters());
    feet_->setChecked(!plot.DepthInMeters());
    const bool spectral = NoSpectrumText(plot.Model()).empty();
    if (vsChannel_->isEnabled() == !spectral) return;
    vsChannel_->setEnabled(!spectral);
    vsChannel_->setToolTip(spectral ? "The spectrum window is not part of this version yet"
                                    : "Show the channels of one sample as a spectrum");
}

void GraphCommands::ShowCurves() {
    std::map<std::pair<int, int>, ChartView::SeriesStyle> styles;
    for (const PlottedChannel& channel : PlottedChannels(Window().Plot, Window().Link.CalData))
        if (channel.calibrated)
            styles[{channel.group, channel.series}] = {FromText(channel.name), ColorOf(channel.color),
                                                       channel.number, MarkerFromName(channel.marker)};
    chart_.SetLook(LookOf(Window().Plot.Look));
    chart_.SetSeriesStyles(std::move(styles));
}

template <class Run>
void GraphCommands::Perform(Run run) {
    const Hourglass hourglass;
    run();
    chart_.RefreshNow();
    Update();
}

void GraphCommands::VsTime() {
    Perform([&] { VsTimeCommand(Window()); });
}

void GraphCommands::VsDepth() {
    Perform([&] { VsDepthCommand(Window()); });
}

void GraphCommands::VsChannel() {
    const std::string reason = NoSpectrumText(Window().Plot.Model());
    if (!reason.empty()) form_.Ask().ShowError(reason);
}

void GraphCommands::ShowAll() {
    Perform([&] { Window().Plot.AutoScaleCommand(); });
}

void GraphCommands::ZoomIn() {
    Perform([&] { Window().Plot.Z_In_Button_Click(); });
}

void GraphCommands::ZoomOut() {
    Perform([&] { Window().Plot.Z_Out_Button_Click(); });
}

void GraphCommands::Previous() {
    Perform([&] { Window().Plot.Previous_Button_Click(); });
}

void GraphCommands::Meters() {
    Perform([&] { Window().Plot.ChangeDepthUnitsAndLimits(true); });
}

void GraphCommands::Feet() {
    Perform([&] { Window().Plot.ChangeDepthUnitsAndLimits(false); });
}

}  // namespace marisonde
