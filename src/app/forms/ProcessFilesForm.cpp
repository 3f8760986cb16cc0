#include "app/forms/ProcessFilesForm.h"

#include <QCheckBox>
#include <QFileDialog>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include "app/AppContext.h"
#include "app/forms/FormHelpers.h"
#include "app/forms/ParameterControls.h"
#include "app/forms/ProgressBar.h"
#include "platform/Paths.h"

namespace marisonde {

namespace {

/// The name of a file in bytes: what is shown of it may not lead back to it.
constexpr int kNameRole = Qt::UserRole;

std::string NameOf(const QListWidgetItem& item) {
    return item.data(kNameRole).toByteArray().toStdString();
}

}  // namespace

ProcessFilesForm::ProcessFilesForm(AppContext& app, Operations& operations, QWidget* parent)
    : QDialog(parent),
      app_(app),
      operations_(operations),
      dialogs_(this),
      host_{app.clock, dialogs_, [this](const BatchProgress& at) { ShowProgress(at); },
            [this](std::size_t file, const ConversionResult&) { FileDone(file); }, [this] { return stop_; }} {
    setObjectName("ProcessFilesForm");
    setWindowTitle("Process Files");
    setSizeGripEnabled(true);
    MakeInputs();
    MakeButtons();
    LayOut();
    source_->setText(FromText(app_.prefs.OpenPath));
    cal_->setText(FromText(app_.prefs.CalFile));
    RestoreControlValues(app_.settings, *this);
    FixControlAccelerators(*this);
    Refresh();
}

QLineEdit* ProcessFilesForm::MakePath(const char* name, const char* meaning) {
    auto* path = new QLineEdit(this);
    path->setObjectName(name);
    path->setAccessibleName(meaning);
    path->setMinimumWidth(path->fontMetrics().averageCharWidth() * 45);
    return path;
}

QPushButton* ProcessFilesForm::MakeBrowse(QLineEdit* path, const char* title, bool folder) {
    auto* browse = new QPushButton("...", this);
    browse->setObjectName(path->objectName() + "Browse");
    browse->setAccessibleName(title);
    browse->setToolTip(title);
    browse->setAutoDefault(false);
    connect(browse, &QPushButton::clicked, this, [this, path, title, folder] {
        auto* dialog = new QFileDialog(this, title, path->text(),
                                       folder ? "" : "Calibration File (*.cal);;All Files (*)");
        dialog->setAttribute(Qt::WA_DeleteOnClose);
        dialog->setFileMode(folder ? QFileDialog::Directory : QFileDialog::ExistingFile);
        connect(dialog, &QFileDialog::fileSelected, path, &QLineEdit::setText);
        dialog->open();
    });
    return browse;
}

void ProcessFilesForm::MakeInputs() {
    source_ = MakePath("SourceFileText", "Source folder");
    dat_ = MakePath("DatFileText", "Destination folder");
    cal_ = MakePath("CalFileText", "Calibration file");
    browseSource_ = MakeBrowse(source_, "Choose the source folder", true);
    browseDat_ = MakeBrowse(dat_, "Choose the destination folder", true);
    browseCal_ = MakeBrowse(cal_, "Choose the calibration file", false);
    saveToSource_ = NamedButton<QCheckBox>(this, "SaveToSourceCheck", "Save to source &folder");
    calibrated_ = NamedButton<QRadioButton>(this, "ProcessOptionButton(0)", "C&alibrated data (.dat)");
    decimal_ = NamedButton<QRadioButton>(this, "ProcessOptionButton(1)", "&Decimal raw data (.dec)");
    house_ = NamedButton<QCheckBox>(this, "HouseCheck", "Include &housekeeping");
    calibrated_->setChecked(true);
    list_ = new QListWidget(this);
    list_->setObjectName("List1");
    list_->setAccessibleName("Raw files in the source folder");
    list_->setSelectionMode(QAbstractItemView::ExtendedSelection);
    connect(source_, &QLineEdit::textChanged, this, &ProcessFilesForm::FillList);
    connect(list_, &QListWidget::itemSelectionChanged, this, &ProcessFilesForm::Refresh);
    connect(saveToSource_, &QCheckBox::toggled, this, &ProcessFilesForm::Refresh);
    connect(decimal_, &QRadioButton::toggled, this, &ProcessFilesForm::Refresh);
}

void ProcessFilesForm::MakeButtons() {
    process_ = NamedButton<QPushButton>(this, "ProcessButton", "&Process");
    cancel_ = NamedButton<QPushButton>(this, "CancelButton", "Close");
    process_->setDefault(true);
    cancel_->setAutoDefault(false);
    bar_ = new ProgressBar(this, "ProgressBar", "Progress of all files");
    bar_->setTextVisible(false);
    status_ = new QLabel(this);
    status_->setObjectName("StatusLabel");
    status_->setTextFormat(Qt::PlainText);
    connect(process_, &QPushButton::clicked, this, &ProcessFilesForm::Process);
    connect(cancel_, &QPushButton::clicked, this, &ProcessFilesForm::reject);
}

void ProcessFilesForm::LayOut() {
    auto* grid = new QGridLayout;
    const auto row = [this, grid](int at, const char* caption, QLineEdit* path, QPushButton* browse) {
        auto* label = new QLabel(caption, this);
        label->setBuddy(path);
        grid->addWidget(label, at, 0);
        grid->addWidget(path, at, 1);
        grid->addWidget(browse, at, 2);
    };
    row(0, "&Source folder", source_, browseSource_);
    grid->addWidget(saveToSource_, 1, 1);
    row(2, "D&estination folder", dat_, browseDat_);
    row(3, "&Calibration file", cal_, browseCal_);
    auto* options = new QHBoxLayout;
    for (QWidget* option : std::initializer_list<QWidget*>{calibrated_, decimal_, house_})
        options->addWidget(option);
    options->addStretch();
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(status_, 1);
    buttons->addWidget(process_);
    buttons->addWidget(cancel_);
    auto* all = new QVBoxLayout(this);
    all->setContentsMargins(20, 18, 20, 16);
    all->setSpacing(12);
    all->addLayout(grid);
    all->addLayout(options);
    all->addWidget(list_, 1);
    all->addWidget(bar_);
    all->addLayout(buttons);
}

void ProcessFilesForm::Show() {
    if (!working_) FillList();
    show();
    raise();
    activateWindow();
}

void ProcessFilesForm::FillList() {
    list_->clear();
    for (const std::string& name : RawFilesIn(PathFromText(source_->text())))
        (new QListWidgetItem(FromText(name), list_))->setData(kNameRole, QByteArray::fromStdString(name));
    Refresh();
}

void ProcessFilesForm::Refresh() {
    const bool calibrated = !decimal_->isChecked();
    for (QWidget* input : std::initializer_list<QWidget*>{source_, browseSource_, saveToSource_, calibrated_,
                                                          decimal_, list_, process_})
        input->setEnabled(!working_);
    for (QWidget* input : std::initializer_list<QWidget*>{dat_, browseDat_})
        input->setEnabled(!working_ && !saveToSource_->isChecked());
    for (QWidget* input : std::initializer_list<QWidget*>{cal_, browseCal_})
        input->setEnabled(!working_ && calibrated);
    house_->setEnabled(!working_ && !calibrated);
    cancel_->setText(working_ ? "Cancel" : "Close");
    cancel_->setEnabled(!stop_);
    if (!working_)
        status_->setText(
            QString("%1 of %2 files selected").arg(list_->selectedItems().size()).arg(list_->count()));
}

ProcessFilesChoice ProcessFilesForm::Chosen() const {
    ProcessFilesChoice choice;
    choice.sourceFolder = PathFromText(source_->text());
    choice.datFolder = PathFromText(dat_->text());
    choice.calFile = PathFromText(cal_->text());
    choice.saveToSource = saveToSource_->isChecked();
    choice.decimal = decimal_->isChecked();
    choice.houseCheck = house_->isChecked();
    choice.selected = atWork_;
    return choice;
}

void ProcessFilesForm::Process() {
    if (working_) return;
    working_ = true;
    atWork_.clear();
    for (int row = 0; row < list_->count(); ++row)
        if (list_->item(row)->isSelected()) atWork_.push_back(NameOf(*list_->item(row)));
    Refresh();
    operations_.Start("Process files", [this](Operation& operation) -> QCoro::Task<> {
        const ProcessFilesChoice choice = Chosen();
        const HeaderStamp stamp{app_.prefs.UserHeader, app_.clock.Now()};
        co_await ProcessFiles(operation, choice, stamp, app_.sigma, app_.pureWater, host_);
        Ended();
    });
}

void ProcessFilesForm::ShowProgress(const BatchProgress& at) {
    const Millis now = app_.clock.Steady();
    if (at.within.done != 0 && now < nextShown_) return;
    nextShown_ = now + kBetweenPaintings;
    bar_->ShowShare((static_cast<double>(at.file) + ShareDone(at.within)) / static_cast<double>(at.files));
    const std::string_view title = BatchTitle(decimal_->isChecked());
    status_->setText(QString::fromUtf8(title.data(), static_cast<qsizetype>(title.size())) + ": " +
                     FromText(atWork_.at(at.file)));
}

void ProcessFilesForm::FileDone(std::size_t file) {
    for (int row = 0; row < list_->count(); ++row)
        if (NameOf(*list_->item(row)) == atWork_.at(file)) list_->item(row)->setSelected(false);
}

void ProcessFilesForm::Ended() {
    working_ = false;
    stop_ = false;
    bar_->reset();
    Refresh();
}

void ProcessFilesForm::reject() {
    if (working_) {
        stop_ = true;
        Refresh();
        return;
    }
    SaveControlValues(app_.settings, *this);
    QDialog::reject();
}

}  // namespace marisonde
