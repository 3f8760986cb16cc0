#include "app/forms/StatusPanels.h"

#include <QDesktopServices>
#include <QEvent>
#include <QLabel>
#include <QStatusBar>
#include <QUrl>
#include <algorithm>
#include <cmath>

#include "app/DataWindow.h"
#include "app/forms/FormHelpers.h"
#include "common/DepthUnits.h"
#include "common/Numbers.h"
#include "platform/Paths.h"

namespace marisonde {

namespace {

constexpr int kPadding = 12;  ///< pixels beside the text of a panel
/// No panel has room for the digits of more; what arithmetic could not give lies beyond, too.
constexpr double kMostShown = 1e30;

int RoomFor(const QLabel* label, const QString& text) {
    return label->fontMetrics().horizontalAdvance(text) + kPadding;
}

/// A label of the status bar, as wide as the longest text that it usually shows.
QLabel* Panel(QStatusBar* bar, const char* name, const QString& meaning, const QString& longest) {
    auto* label = new QLabel(bar);
    label->setObjectName(name);
    label->setAccessibleName(meaning);
    label->setToolTip(meaning);
    label->setTextFormat(Qt::PlainText);
    label->setFixedWidth(RoomFor(label, longest));
    bar->addWidget(label);
    return label;
}

void SetText(QLabel* label, const QString& text) {
    if (label->text() == text) return;
    label->setText(text);
    // Only what outgrows its room, as counts do in the course of days, lays the bar out again.
    if (const int room = RoomFor(label, text); room > label->minimumWidth()) label->setFixedWidth(room);
}

QString WithUnit(double value, int decimals, const char* unit) {
    if (!(std::abs(value) < kMostShown)) return "---";
    return QString::fromStdString(FixedText(value, decimals)) + " " + unit;
}

const QString kNotRecordedTip =
    "The samples on the graph are in no file.\n"
    "Use New File, or start the instrument from this window, to record what it sends.";

/// What becomes of the data, before the folder of their files when they have some.
QString WhatOfFiles(const DataWindow& window, bool haveFiles) {
    if (window.Stored.IsShown()) return "Data from ";
    if (haveFiles) return window.Files.AnyOpen() ? "Recording in " : "Recorded in ";
    return window.CanReplot() ? QString() : QString("Not recorded");
}

}  // namespace

StatusPanels::StatusPanels(QStatusBar* bar)
    : QObject(bar),
      bar_(bar),
      state_(Panel(bar, "Status_Box", "State of the instrument", "Starting: 00000 s")),
      elapsed_(Panel(bar, "ElapsedPanel", "Time since the first sample", "00000.0 min")),
      depth_(Panel(bar, "DepthPanel", "Depth", "-0000.00 m")),
      temperature_(Panel(bar, "TemperaturePanel", "Water temperature", "-00.00 C")),
      voltage_(Panel(bar, "VoltagePanel", "Supply of the instrument", "00.0 V")),
      counts_(Panel(bar, "CountsPanel", "Lines received, samples in them, and lines with a bad checksum",
                    "000000 lines, 000000 samples, 000 bad")),
      files_(new QLabel(bar)) {
    bar->setObjectName("StatusBar");
    bar->setContentsMargins(8, 0, 4, 0);
    state_->setAutoFillBackground(true);
    state_->setMargin(3);
    files_->setObjectName("DataPath");
    files_->setAccessibleName("Where the data are recorded");
    files_->setTextFormat(Qt::RichText);
    files_->setTextInteractionFlags(Qt::LinksAccessibleByMouse | Qt::LinksAccessibleByKeyboard);
    files_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    // It takes what the readouts leave and never makes the window wider.
    files_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    files_->installEventFilter(this);
    connect(files_, &QLabel::linkActivated, this,
            [](const QString& link) { QDesktopServices::openUrl(QUrl(link)); });
    bar->addPermanentWidget(files_, 1);
}

void StatusPanels::Show(const DataWindow& window) {
    ShowState(window);
    ShowReadouts(window);
    ShowCounts(window);
    ShowFiles(window);
}

/// The colour only repeats what the word says: with an instrument the box stands out.
void StatusPanels::ShowState(const DataWindow& window) {
    SetText(state_, FromText(window.StatusText()));
    const bool open = window.Link.Line().IsOpen();
    const bool model = window.Link.State.InstType != InstTypeCode::Unknown;
    const QPalette::ColorRole role = !open   ? QPalette::Window
                                     : model ? QPalette::Highlight
                                             : QPalette::ToolTipBase;
    if (state_->backgroundRole() == role) return;
    state_->setBackgroundRole(role);
    state_->setForegroundRole(!open   ? QPalette::WindowText
                              : model ? QPalette::HighlightedText
                                      : QPalette::ToolTipText);
}

void StatusPanels::ShowReadouts(const DataWindow& window) {
    const std::string_view elapsed = window.Plot.Readouts().Elapsed.View();
    SetText(elapsed_, elapsed.empty()
                          ? QString("---")
                          : QString::fromLatin1(elapsed.data(), static_cast<qsizetype>(elapsed.size())));
    const DataWindowState& state = window.Link.State;
    const CalibratedSample& sample = state.CurrentSample;
    const bool metres = window.Plot.DepthInMeters();
    const double depth = ShownDepth(sample.Depth, metres);
    const QString none("---");
    SetText(depth_, state.HasSample ? WithUnit(depth, 2, metres ? "m" : "ft") : none);
    SetText(temperature_, window.HasTemperature() ? WithUnit(sample.Temp, 2, "C") : none);
    SetText(voltage_, state.SupplyVoltage ? WithUnit(*state.SupplyVoltage, 1, "V") : none);
}

void StatusPanels::ShowCounts(const DataWindow& window) {
    const DataWindowState::Counts& counted = window.Link.State.Counted;
    SetText(counts_, QString("%1 lines, %2 samples, %3 bad")
                         .arg(counted.lines)
                         .arg(counted.samples)
                         .arg(counted.badChecksums));
}

void StatusPanels::ShowFiles(const DataWindow& window) {
    const QString where = FromText(window.WhereDataAre());
    const QString what = WhatOfFiles(window, !where.isEmpty());
    const QString tip = where.isEmpty() && !what.isEmpty() ? kNotRecordedTip : where;
    if (files_->toolTip() == tip && whatOfFiles_ == what) return;
    files_->setToolTip(tip);
    folder_ =
        where.isEmpty() ? QString() : TextFromPath(PathFromText(where.section('\n', 0, 0)).parent_path());
    whatOfFiles_ = what;
    FitFiles();
}

/// The middle of a long folder is the least telling.
void StatusPanels::FitFiles() {
    if (folder_.isEmpty()) {
        files_->setText(whatOfFiles_);
        return;
    }
    const QFontMetrics metrics = files_->fontMetrics();
    const int room = files_->width() - metrics.horizontalAdvance(whatOfFiles_) - 4;
    const QString folder = metrics.elidedText(folder_, Qt::ElideMiddle, std::max(room, 0));
    const QString link = QUrl::fromLocalFile(folder_).toString().toHtmlEscaped();
    const QString text = folder.size() > 3 ? whatOfFiles_ + folder : whatOfFiles_.section(' ', 0, 0);
    files_->setText(QString("<a href=\"%1\">%2</a>").arg(link, text.toHtmlEscaped()));
}

bool StatusPanels::eventFilter(QObject* watched, QEvent* event) {
    if (watched == files_ && event->type() == QEvent::Resize) FitFiles();
    return QObject::eventFilter(watched, event);
}

}  // namespace marisonde
