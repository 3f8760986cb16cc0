#include "app/forms/PreferencesForm.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLineEdit>
#include <QRadioButton>
#include <QVBoxLayout>

#include "app/forms/FormHelpers.h"
#include "app/forms/ParameterControls.h"
#include "graphs/LivePlot.h"

namespace marisonde {

namespace {

constexpr std::array kConnectCaptions{"Do &not connect", "&Restore previous connection",
                                      "&Search for instruments"};

}  // namespace

PreferencesForm::PreferencesForm(AppContext& app, QWidget* parent)
    : ParameterForm(app, parent, "Preferences", "Preferences") {
    MakeControls();
    LayOut({LayStart(), LayFiles(), LayGraphs()});
}

void PreferencesForm::MakeControls() {
    for (std::size_t i = 0; i < connectOption_.size(); ++i)
        connectOption_.at(i) =
            NamedButton<QRadioButton>(this, QString("ConnectOption(%1)").arg(i), kConnectCaptions.at(i));
    recallLastCal_ = NamedButton<QCheckBox>(this, "RecallLastCalCheck", "&Load the last calibration file");
    fileNameOnDetect_ =
        NamedButton<QCheckBox>(this, "FileNameOnDetect_Check", "&Ask for file names when files are created");
    header_ = ParameterBox(this, "Header_text", "Your text at the head of each data file", 44);
    header_->setPlaceholderText("For example ship, cruise and station");
    maxGraphPoints_ = ParameterBox(this, "MaxGraphPointsBox", "Most points of a graph", 10);
    orca_ = NamedButton<QCheckBox>(this, "ORCACheck", "Estimate &visibility (Orca)");
}

QWidget* PreferencesForm::LayStart() {
    auto* group = new QGroupBox("When the program starts", this);
    auto* column = new QVBoxLayout(group);
    for (QRadioButton* option : connectOption_) column->addWidget(option);
    column->addSpacing(6);
    column->addWidget(recallLastCal_);
    return group;
}

QWidget* PreferencesForm::LayFiles() {
    auto* group = new QGroupBox("Data files", this);
    auto* grid = new QGridLayout(group);
    grid->addWidget(fileNameOnDetect_, 0, 0, 1, 3);
    AddParameterRow(grid, "&Header text", header_, "");
    return group;
}

QWidget* PreferencesForm::LayGraphs() {
    auto* group = new QGroupBox("Graphs", this);
    auto* grid = new QGridLayout(group);
    AddParameterRow(grid, "&Most points", maxGraphPoints_,
                    QString("%1 to %2; the oldest make room").arg(kLeastGraphPoints).arg(kMostGraphPoints));
    grid->addWidget(orca_, grid->rowCount(), 0, 1, 3);
    grid->setColumnStretch(2, 1);
    return group;
}

void PreferencesForm::FillIn() {
    const PreferencesEntry entry = EntryOf(App().prefs);
    for (std::size_t i = 0; i < connectOption_.size(); ++i)
        connectOption_.at(i)->setChecked(static_cast<int>(i) == entry.ConnectOption);
    fileNameOnDetect_->setChecked(entry.FileNameOnDetect);
    header_->setText(FromText(entry.HeaderText));
    recallLastCal_->setChecked(entry.RecallLastCal);
    maxGraphPoints_->setText(FromText(entry.MaxGraphPoints));
    orca_->setChecked(entry.ORCA);
}

PreferencesEntry PreferencesForm::Entry() {
    PreferencesEntry entry = EntryOf(App().prefs);
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
        ShowWrong(maxGraphPoints_, wrong);
        return;
    }
    TakePreferences(App(), entry);
    accept();
}

}  // namespace marisonde
