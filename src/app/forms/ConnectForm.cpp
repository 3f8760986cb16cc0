#include "app/forms/ConnectForm.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>
#include <utility>

#include "app/forms/FormHelpers.h"

namespace marisonde {

namespace {

constexpr int kMaxSearchLines = 1000;

QComboBox* MakeList(QWidget* parent, const char* name, const char* meaning) {
    auto* list = new QComboBox(parent);
    list->setObjectName(name);
    list->setAccessibleName(meaning);
    return list;
}

QPushButton* MakeButton(QWidget* parent, const char* name, const char* caption) {
    auto* button = new QPushButton(caption, parent);
    button->setObjectName(name);
    button->setAccessibleName(QString(caption).remove('&').trimmed());
    button->setAutoDefault(false);
    return button;
}

/// Chooses the row that carries `value`, or none.
void Choose(QComboBox* list, int value) {
    list->setCurrentIndex(list->findData(value));
}

}  // namespace

ConnectForm::ConnectForm(Connector& connector, Operations& operations, Settings& settings, QWidget* parent)
    : QDialog(parent), connector_(connector), operations_(operations), settings_(settings) {
    setObjectName("ConnectForm");
    setWindowTitle("Connect to Instrument");
    setSizeGripEnabled(true);
    MakeInputs();
    MakeButtons();
    LayOut();
    FillLists();
    connector_.OnChanged = [this] { Refresh(); };
    connector_.OnFocusOk = [this] { ok_->setFocus(); };
    connector_.OnBeep = [] { QApplication::beep(); };
    RestoreFormGeometry(settings_, *this);
}

void ConnectForm::MakeInputs() {
    commPort_ = MakeList(this, "CommPort_Box", "Serial port");
    commPort_->setMinimumContentsLength(36);
    commPort_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    baud_ = MakeList(this, "BAUD_box", "Baud rate");
    instrument_ = MakeList(this, "Instrument_Box", "Instrument model");
    uploadCal_ = new QCheckBox("&Load Calibration From Instrument", this);
    uploadCal_->setObjectName("UploadCal_Check");
    noQuery_ = new QCheckBox("&Open port without identifying instrument", this);
    noQuery_->setObjectName("NoQueryCheck");
    searchList_ = new QPlainTextEdit(this);
    searchList_->setObjectName("SearchList");
    searchList_->setAccessibleName("What was found at each port and rate");
    searchList_->setReadOnly(true);
    searchList_->setTabChangesFocus(true);
    searchList_->setMaximumBlockCount(kMaxSearchLines);
    searchList_->setPlaceholderText("What is found at each port and rate appears here.");
    searchList_->setMinimumHeight(searchList_->fontMetrics().lineSpacing() * 6);
    status_ = new QLabel(this);
    status_->setObjectName("StatusBox");
    status_->setAccessibleName("State of the connection");
    status_->setTextFormat(Qt::PlainText);
    status_->setFrameStyle(QFrame::StyledPanel | QFrame::Sunken);
    connect(commPort_, &QComboBox::activated, this,
            [this] { connector_.SelectPort(commPort_->currentData().toInt()); });
    connect(baud_, &QComboBox::activated, this,
            [this] { connector_.SelectBaud(baud_->currentData().toInt()); });
    connect(instrument_, &QComboBox::activated, this, [this] {
        connector_.SelectInstrument(static_cast<InstTypeCode>(instrument_->currentData().toInt()));
    });
    connect(uploadCal_, &QCheckBox::clicked, this, [this](bool on) { connector_.CheckUploadCal(on); });
    connect(noQuery_, &QCheckBox::clicked, this, [this](bool on) { connector_.CheckNoQuery(on); });
}

void ConnectForm::MakeButtons() {
    ok_ = MakeButton(this, "OK", " &Connect");
    autoDetect_ = MakeButton(this, "AutoDetect", "&Search");
    cancel_ = MakeButton(this, "Cancel", "Cancel");
    ok_->setDefault(true);
    uploadCal_->setToolTip("Otherwise the calibration file that is loaded is used");
    noQuery_->setToolTip("For instruments that do not say what they are: choose the model above");
    instrument_->setToolTip("Found by itself, unless the port is opened without identifying the instrument");
    autoDetect_->setToolTip("Look for an instrument at all ports and rates");
    connect(ok_, &QPushButton::clicked, this, &ConnectForm::PressOk);
    connect(autoDetect_, &QPushButton::clicked, this, &ConnectForm::PressAutoDetect);
    connect(cancel_, &QPushButton::clicked, this, [this] { connector_.Cancel_Click(); });
}

void ConnectForm::LayOut() {
    auto* inputs = new QFormLayout;
    inputs->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    inputs->addRow("Com &Port", commPort_);
    inputs->addRow("&Baud Rate", baud_);
    inputs->addRow("&Instrument", instrument_);
    inputs->addRow(uploadCal_);
    inputs->addRow(noQuery_);
    auto* buttons = new QVBoxLayout;
    for (QPushButton* button : {ok_, autoDetect_, cancel_}) buttons->addWidget(button);
    buttons->addStretch();
    auto* top = new QHBoxLayout;
    top->setSpacing(20);
    top->addLayout(inputs, 1);
    top->addLayout(buttons);
    auto* all = new QVBoxLayout(this);
    all->setContentsMargins(20, 18, 20, 16);
    all->setSpacing(14);
    all->addLayout(top);
    all->addWidget(searchList_, 1);
    all->addWidget(status_);
    OrderTabs({commPort_, baud_, instrument_, uploadCal_, noQuery_, ok_, autoDetect_, cancel_, searchList_});
}

void ConnectForm::FillLists() {
    for (const int rate : kInstrumentRates) baud_->addItem(QString::number(rate), rate);
    for (int code = 0; code < kInstTypeCount; ++code) {
        const std::string_view name = InstTypeName(static_cast<InstTypeCode>(code));
        if (name == InstTypeName(InstTypeCode::Unknown)) break;
        instrument_->addItem(FromText(std::string(name)), code);
    }
}

void ConnectForm::Show(std::function<void()> whenClosed) {
    whenClosed_ = std::move(whenClosed);
    searchList_->clear();
    connector_.Form_Load();
    connector_.Visible = true;
    open();
    ok_->setFocus();
}

void ConnectForm::PressOk() {
    operations_.StartUnlessRunning("Connect", [this](Operation& operation) -> QCoro::Task<> {
        co_await connector_.OK_Click(operation);
    });
}

void ConnectForm::PressAutoDetect() {
    operations_.StartUnlessRunning("Connect", [this](Operation& operation) -> QCoro::Task<> {
        co_await connector_.AutoDetect_Click(operation);
    });
}

void ConnectForm::TakeAway() {
    operations_.Cancel("Connect");
    connector_.Form_Unload();
}

void ConnectForm::reject() {
    connector_.Cancel_Click();
}

void ConnectForm::Refresh() {
    const ConnectControls& shown = connector_.Controls();
    if (!shown.Open) {
        Hide();
        return;
    }
    RefreshPorts();
    Choose(commPort_, shown.Port);
    Choose(baud_, shown.Baud);
    Choose(instrument_, static_cast<int>(shown.Instrument_Box));
    uploadCal_->setChecked(shown.UploadCal_Check);
    noQuery_->setChecked(shown.NoQueryCheck);
    for (QWidget* input : std::initializer_list<QWidget*>{commPort_, baud_, instrument_, uploadCal_, noQuery_,
                                                          ok_, autoDetect_})
        input->setEnabled(shown.Enabled);
    if (!shown.Enabled && !cancel_->hasFocus()) cancel_->setFocus();
    cancel_->setText(FromText(shown.CancelCaption));
    status_->setText(FromText(shown.StatusBox));
    RefreshSearchList();
}

void ConnectForm::RefreshPorts() {
    const std::vector<PortRow>& rows = connector_.Controls().CommPort_Box;
    if (rows == shownPorts_) return;
    shownPorts_ = rows;
    commPort_->clear();
    for (const PortRow& row : rows) {
        commPort_->addItem(FromText(row.text), row.number);
        commPort_->setItemData(commPort_->count() - 1, FromText(row.text), Qt::ToolTipRole);
    }
}

/// Lines are only added while a search runs; a new attempt begins an empty list.
void ConnectForm::RefreshSearchList() {
    const std::vector<std::string>& lines = connector_.Controls().SearchList;
    const QString text = searchList_->toPlainText();
    const auto shown = static_cast<std::size_t>(text.isEmpty() ? 0 : text.count('\n') + 1);
    if (lines.size() < shown) searchList_->clear();
    for (std::size_t i = lines.size() < shown ? 0 : shown; i < lines.size(); ++i)
        searchList_->appendPlainText(FromText(lines[i]));
}

void ConnectForm::Hide() {
    connector_.Visible = false;
    if (isVisible()) {
        SaveFormGeometry(settings_, *this);
        done(QDialog::Accepted);
    }
    if (const auto whenClosed = std::exchange(whenClosed_, nullptr)) whenClosed();
}

}  // namespace marisonde
