#include "app/forms/TermulatorForm.h"

#include <QCloseEvent>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QRadioButton>
#include <QSplitter>
#include <QSplitterHandle>
#include <QStatusBar>
#include <QVBoxLayout>
#include <array>

#include "app/WindowTitle.h"
#include "app/forms/ColumnHeadings.h"
#include "app/forms/FormHelpers.h"
#include "app/forms/TerminalBoxView.h"
#include "common/ConversionUtils.h"
#include "common/Numbers.h"

namespace marisonde {

namespace {

constexpr QRect kDesign{240, 240, 760, 520};
constexpr QSize kMinimumSize{420, 260};
constexpr int kLeastResponse = 32;  ///< the divider stays so far below the top of the replies, pixels
constexpr int kLeastData = 35;      ///< and so far above the bottom of the form
constexpr std::array<const char*, 5> kReadouts{"Status_Box", "ElapsedPanel", "DepthPanel", "TemperaturePanel",
                                               "VoltagePanel"};

}  // namespace

TermulatorForm::TermulatorForm(DataWindow& window, Operations& operations, QWidget& main)
    : QMainWindow(&main), window_(window), operations_(operations), main_(main), dialogs_(this) {
    setObjectName("TermulatorForm");
    setMinimumSize(kMinimumSize);
    MakeBoxes();
    divider_ = new QSplitter(Qt::Vertical, this);
    divider_->setChildrenCollapsible(false);
    divider_->addWidget(MakeUpperPart());
    divider_->addWidget(MakeLowerPart());
    divider_->setStretchFactor(0, 1);
    divider_->setStretchFactor(1, 1);
    divider_->handle(1)->setObjectName("DividerPicture");
    divider_->handle(1)->setToolTip("Drag to share the room between replies and data");
    setCentralWidget(divider_);
    // From what is typed to what comes of it.
    const QList<QWidget*> order{command_, response_, ascii_, numerical_, data_};
    OrderTabs(order);
    MakeMenus();
    MakeStatusBar();
    for (QWidget* typedInto : order) typedInto->installEventFilter(this);
    RestorePlace();
    Refresh();
}

void TermulatorForm::MakeBoxes() {
    response_ = new TerminalBoxView(this);
    response_->setObjectName("Response_Box");
    response_->setAccessibleName("Replies of the instrument");
    response_->setPlaceholderText("What the instrument answers appears here.");
    response_->setMinimumHeight(kLeastResponse);
    data_ = new TerminalBoxView(this);
    data_->setObjectName("Data_Box");
    data_->setAccessibleName("Data lines");
    data_->setPlaceholderText("Data lines appear here.");
    data_->setLineWrapMode(QPlainTextEdit::NoWrap);
    data_->setMinimumHeight(0);
    headings_ = new ColumnHeadings(*data_, this);
    headings_->setObjectName("Headings");
    command_ = new QLineEdit(this);
    command_->setObjectName("Command_Box");
    command_->setAccessibleName("Command to the instrument");
    command_->setPlaceholderText("Type a command: each key goes to the instrument at once, Enter ends it");
    command_->setToolTip("Up and Down recall earlier commands");
    command_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    command_->setReadOnly(true);
    ascii_ = new QRadioButton("&ASCII lines", this);
    ascii_->setObjectName("ASCII_Option");
    ascii_->setToolTip("Data lines as the instrument sends them");
    numerical_ = new QRadioButton("Ca&librated values", this);
    numerical_->setObjectName("Numerical");
    numerical_->setToolTip("Time, counts, gains, calibrated values, depth and temperature of each sample");
    connect(numerical_, &QRadioButton::toggled, this, [this](bool on) { window_.Terminal.Numerical = on; });
}

QWidget* TermulatorForm::MakeUpperPart() {
    auto* part = new QWidget(this);
    auto* column = new QVBoxLayout(part);
    column->setContentsMargins(8, 8, 8, 4);
    column->setSpacing(6);
    column->addWidget(response_, 1);
    auto* row = new QHBoxLayout;
    auto* label = new QLabel("&Command", part);
    label->setBuddy(command_);
    row->addWidget(label);
    row->addWidget(command_, 1);
    column->addLayout(row);
    return part;
}

QWidget* TermulatorForm::MakeLowerPart() {
    auto* part = new QWidget(this);
    part->setMinimumHeight(kLeastData);
    options_ = new QWidget(part);
    options_->setObjectName("Frame1");
    options_->setAccessibleName("Form of the data lines");
    auto* row = new QHBoxLayout(options_);
    row->setContentsMargins(0, 0, 0, 4);
    row->setSpacing(16);
    row->addWidget(new QLabel("Data as", options_));
    row->addWidget(ascii_);
    row->addWidget(numerical_);
    row->addStretch();
    auto* column = new QVBoxLayout(part);
    column->setContentsMargins(8, 4, 8, 4);
    column->setSpacing(2);
    column->addWidget(options_);
    column->addWidget(headings_);
    column->addWidget(data_, 1);
    return part;
}

void TermulatorForm::MakeStatusBar() {
    QStatusBar* bar = statusBar();
    bar->setObjectName("StatusBar");
    bar->setContentsMargins(8, 0, 4, 0);
    for (const char* name : kReadouts) {
        const auto* const main = main_.findChild<QLabel*>(name);
        if (main == nullptr) continue;
        auto* own = new QLabel(bar);
        own->setObjectName(name);
        own->setAccessibleName(main->accessibleName());
        own->setToolTip(main->toolTip());
        own->setTextFormat(Qt::PlainText);
        // Of a fixed width it repaints itself alone.
        if (main->minimumWidth() > 0) own->setFixedWidth(main->minimumWidth());
        bar->addWidget(own);
        readouts_.push_back({main, own});
    }
}

void TermulatorForm::ShowForm() {
    setWindowState(windowState() & ~Qt::WindowMinimized);
    show();
    Refresh();
    raise();
    activateWindow();
    command_->setFocus();
}

void TermulatorForm::Refresh() {
    if (!isVisible()) return;
    response_->Follow(window_.Terminal.Response_Box());
    data_->Follow(window_.Terminal.Data_Box());
    headings_->SetHeadings(window_.Terminal.Headings());
    ShowTyped();
    options_->setVisible(window_.Terminal.OffersNumerical());
    const QString title = FromText(TerminalTitle(window_));
    if (windowTitle() != title) setWindowTitle(title);
    for (const Twin& twin : readouts_)
        if (twin.own->text() != twin.main->text()) twin.own->setText(twin.main->text());
    if (instrumentOfMain_ && instrument_->title() != instrumentOfMain_->title())
        instrument_->setTitle(instrumentOfMain_->title());
}

void TermulatorForm::ShowTyped() {
    const std::string& typed = window_.Terminal.Command_Box().Text();
    const QString text = QString::fromLatin1(typed.data(), static_cast<qsizetype>(typed.size()));
    if (command_->text() == text) return;
    command_->setText(text);
    command_->end(false);
}

void TermulatorForm::SavePlace() const {
    Settings& settings = window_.App().settings;
    SaveFormGeometry(settings, *this);
    settings.SaveSetting("TermulatorForm", "Divider", std::to_string(divider_->sizes().value(0)));
    settings.SaveSetting("TermulatorForm", "Numerical", window_.Terminal.Numerical ? "True" : "False");
}

void TermulatorForm::RestorePlace() {
    const Settings& settings = window_.App().settings;
    RestoreFormGeometry(settings, *this, "TermulatorForm", kDesign);
    const int upper = ToInt32(Val(settings.GetSetting("TermulatorForm", "Divider", "0")));
    if (upper > 0) divider_->setSizes({upper, std::max(1, height() - upper)});
    const bool numerical = FlagFromText(settings.GetSetting("TermulatorForm", "Numerical", "False"));
    (numerical ? numerical_ : ascii_)->setChecked(true);
}

void TermulatorForm::closeEvent(QCloseEvent* event) {
    SavePlace();
    event->accept();
}

}  // namespace marisonde
