#include "app/forms/PreferencesForm.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include "app/forms/FormHelpers.h"
#include "app/forms/ParameterControls.h"

namespace marisonde {

namespace {

constexpr std::array kConnectCaptions{"Do &not connect", "&Restore previous connection",
                                      "&Search for instruments"};

QCheckBox* MakeCheck(QWidget* parent, const char* name, const char* caption) {
    auto* check = new QCheckBox(caption, parent);
    check->setObjectName(name);
    check->setAccessibleName(QString(caption).remove('&'));
    return check;
}

}  // namespace

PreferencesForm::PreferencesForm(AppContext& app, QWidget* parent)
    : QDialog(parent), app_(app), dialogs_(this) {
    setObjectName("Preferences");
    setWindowTitle("Preferences");
    setSizeGripEnabled(true);
    MakeControls();
    LayOut();
    // Without a place of its own the form opens in the middle of its window.
    if (!app_.settings.GetSetting("Preferences", "Left").empty()) RestoreFormGeometry(app_.settings, *this);
}

void PreferencesForm::MakeControls() {
    for (std::size_t i = 0; i < connectOption_.size(); ++i) {
        auto* option = new QRadioButton(kConnectCaptions.at(i), this);
        option->setObjectName(QString("ConnectOption(%1)").arg(i));
        option->setAccessibleName(QString(kConnectCaptions.at(i)).remove('&'));
        connectOption_.at(i) = option;
    }
    recallLastCal_ = MakeCheck(this, "RecallLastCalCheck", "&Load the last calibration file");
    fileNameOnDetect_ =
        MakeCheck(this, "FileNameOnDetect_Check", "&Ask for file names when files are created");
    orca_ = MakeCheck(this, "ORCACheck", "Estimate &visibility (Orca)");
    header_ = ParameterBox(this, "Header_text", "Your text at the head of each data file", 44);
    header_->setPlaceholderText("For example ship, cruise and station");
    maxGraphPoints_ = ParameterBox(this, "MaxGraphPointsBox", "Most points of a graph", 10);
}

void PreferencesForm::LayOut() {
    auto* start = new QGroupBox("When the program starts", this);
    auto* atStart = new QVBoxLayout(start);
    for (QRadioButton* option : connectOption_) atStart->addWidget(option);
    atStart->addSpacing(6);
    atStart->addWidget(recallLastCal_);
    auto* files = new QGroupBox("Data files", this);
    auto* inFiles = new QGridLayout(files);
    inFiles->addWidget(fileNameOnDetect_, 0, 0, 1, 3);
    AddParameterRow(inFiles, "&Header text", header_, "");
    auto* graphs = new QGroupBox("Graphs", this);
    auto* inGraphs = new QGridLayout(graphs);
    AddParameterRow(inGraphs, "&Most points", maxGraphPoints_,
                    QString("%1 to %2; the oldest make room").arg(kMinGraphPoints).arg(kMaxGraphPoints));
    inGraphs->addWidget(orca_, inGraphs->rowCount(), 0, 1, 3);
    inGraphs->setColumnStretch(2, 1);
    auto* ok = ParameterButton(this, "OKButton", "OK");
    auto* cancel = ParameterButton(this, "CancelButton", "Cancel");
    ok->setDefault(true);
    connect(ok, &QPushButton::clicked, this, &PreferencesForm::OKButton_Click);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(ok);
    buttons->addWidget(cancel);
    auto* all = new QVBoxLayout(this);
    all->setContentsMargins(20, 18, 20, 16);
    all->setSpacing(12);
    for (QWidget* group : {start, files, graphs}) all->addWidget(group);
    all->addStretch();
    all->addLayout(buttons);
}

void PreferencesForm::Show() {
    if (!isVisible()) FillIn();
    open();
    raise();
}

void PreferencesForm::FillIn() {
    const PreferencesEntry entry = marisonde::EntryOf(app_.prefs);
    for (std::size_t i = 0; i < connectOption_.size(); ++i)
        connectOption_.at(i)->setChecked(static_cast<int>(i) == entry.ConnectOption);
    fileNameOnDetect_->setChecked(entry.FileNameOnDetect);
    header_->setText(FromText(entry.HeaderText));
    recallLastCal_->setChecked(entry.RecallLastCal);
    maxGraphPoints_->setText(FromText(entry.MaxGraphPoints));
    orca_->setChecked(entry.ORCA);
}

PreferencesEntry PreferencesForm::Entry() const {
    PreferencesEntry entry = marisonde::EntryOf(app_.prefs);
    for (std::size_t i = 0; i < connectOption_.size(); ++i)
        if (connectOption_.at(i)->isChecked()) entry.ConnectOption = static_cast<std::int32_t>(i);
    entry.FileNameOnDetect = fileNameOnDetect_->isChecked();
    entry.HeaderText = header_->text().toStdString();
    entry.RecallLastCal = recallLastCal_->isChecked();
    entry.MaxGraphPoints = maxGraphPoints_->text().toStdString();
    entry.ORCA = orca_->isChecked();
    return entry;
}

void PreferencesForm::OKButton_Click() {
    const PreferencesEntry entry = Entry();
    const std::string wrong = ValidatePreferences(entry);
    if (!wrong.empty()) {
        maxGraphPoints_->setFocus();
        maxGraphPoints_->selectAll();
        dialogs_.ShowError(wrong);
        return;
    }
    TakePreferences(app_, entry);
    accept();
}

void PreferencesForm::done(int result) {
    SaveFormGeometry(app_.settings, *this);
    QDialog::done(result);
}

}  // namespace marisonde
