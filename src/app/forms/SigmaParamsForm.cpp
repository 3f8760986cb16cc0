#include "app/forms/SigmaParamsForm.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>
#include <QVBoxLayout>
#include <algorithm>

#include "app/FileDialogs.h"
#include "app/ParameterChange.h"
#include "app/forms/FormHelpers.h"
#include "app/forms/ParameterControls.h"
#include "platform/Paths.h"

namespace marisonde {

namespace {

struct BoxRow {
    SigmaBox box;
    const char* name;
    const char* meaning;
    const char* caption;
    const char* unit;
    const char* browse = nullptr;  ///< title of the dialog that chooses a table
};
/// In the order of the screen.
constexpr std::array kBoxes{
    BoxRow{SigmaBox::aStar, "aStarBox", "Chlorophyll-specific absorption, number or file",
           "Chlorophyll-specific &absorption", "", "Select chlorophyll-specific absorption file"},
    BoxRow{SigmaBox::aw, "awBox", "Pure-water absorption, number or file", "Pure-&water absorption", "",
           "Select pure-water absorption file"},
    BoxRow{SigmaBox::bTilde, "bTildeBox", "Backscatter probability, number or file",
           "&Backscatter probability", "", "Select backscattering probability file"},
    BoxRow{SigmaBox::c, "cBox", "Chlorophyll concentration", "C&hlorophyll concentration", "mg/m\u00b3"},
    BoxRow{SigmaBox::ad400, "ad400Box", "Detritus absorption at 400 nm", "&Detritus absorption at 400 nm",
           "1/m"},
    BoxRow{SigmaBox::gammad, "gammadBox", "Detritus slope", "De&tritus slope", "1/nm"},
    BoxRow{SigmaBox::gammaY, "gammaYBox", "Yellow substance slope", "&Yellow substance slope", "1/nm"},
    BoxRow{SigmaBox::p, "pBox", "Share of the attenuation", "Share &p", ""},
};

const BoxRow& RowOf(SigmaBox box) {
    return *std::find_if(kBoxes.begin(), kBoxes.end(), [box](const BoxRow& row) { return row.box == box; });
}

QLabel* MakeResult(QWidget* parent, const char* name, const char* meaning) {
    auto* label = new QLabel(parent);
    label->setObjectName(name);
    label->setAccessibleName(meaning);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    label->setMinimumWidth(label->fontMetrics().averageCharWidth() * 10);
    return label;
}

}  // namespace

SigmaParamsForm::SigmaParamsForm(AppContext& app, Operations& operations, QWidget* parent)
    : ParameterForm(app, parent, app.sigma.includePurewater ? "SigmaParamsFormOld" : "SigmaParamsFormNew",
                    "Sigma Parameters"),
      operations_(operations),
      tables_{TextFromPath(TablePath("aStar.csv")).toStdString(),
              TextFromPath(TablePath("aw.csv")).toStdString()},
      older_(app.sigma.includePurewater),
      pages_(new QTabWidget(this)) {
    MakeBoxes();
    MakeCalculation();
    MakeOptions();
    QWidget* const pages = LayPages();
    LayOut({pages}, {MakeDefaultsButton(), MakeAboutButton("Ab&out", "aboutSigma.htm")});
}

void SigmaParamsForm::MakeBoxes() {
    constexpr int kPathChars = 46;
    constexpr int kNumberChars = 12;
    for (const BoxRow& row : kBoxes) {
        if (row.box == SigmaBox::aw && !older_) continue;
        const auto index = static_cast<std::size_t>(row.box);
        boxes_.at(index) =
            ParameterBox(this, row.name, row.meaning, row.browse != nullptr ? kPathChars : kNumberChars);
        connect(Box(row.box), &QLineEdit::textChanged, this, &SigmaParamsForm::ForgetResults);
        if (row.browse != nullptr) browse_.at(index) = MakeBrowse(row.box, row.browse);
    }
    if (older_)
        Box(SigmaBox::aw)
            ->setToolTip("For Calculate. Data are corrected with the program's own pure-water absorption.");
}

void SigmaParamsForm::MakeOptions() {
    share_ = NamedButton<QRadioButton>(this, "cOption", "Sha&re of the measured attenuation");
    model_ = NamedButton<QRadioButton>(this, "cvOption", "Bio-optical &model of the first page");
    setTabOrder(share_, Box(SigmaBox::p));
    setTabOrder(Box(SigmaBox::p), model_);
    connect(share_, &QRadioButton::toggled, Box(SigmaBox::p), &QWidget::setEnabled);
}

void SigmaParamsForm::MakeCalculation() {
    wavelength_ = ParameterBox(this, "WavelengthText", "Wavelength of the calculation", 7);
    wavelength_->setText("470");
    connect(wavelength_, &QLineEdit::textChanged, this, &SigmaParamsForm::ForgetResults);
    calculate_ = ParameterButton(this, "CalculateButton", "Ca&lculate");
    connect(calculate_, &QPushButton::clicked, this, &SigmaParamsForm::CalculateButton_Click);
    a_ = MakeResult(this, "aResult", "Absorption at this wavelength");
    bbTilde_ = MakeResult(this, "bTildeResult", "Backscatter probability at this wavelength");
}

QPushButton* SigmaParamsForm::MakeBrowse(SigmaBox box, const char* title) {
    QPushButton* const button = ParameterButton(this, Box(box)->objectName() + "Browse", "...");
    button->setAccessibleName(title);
    button->setToolTip(title);
    connect(button, &QPushButton::clicked, this, [this, box, title] { Browse(box, title); });
    return button;
}

QPushButton* SigmaParamsForm::MakeDefaultsButton() {
    QPushButton* const defaults = ParameterButton(this, "DefaultsButton", "D&efaults");
    defaults->setToolTip("Fill in the defaults of this page");
    connect(defaults, &QPushButton::clicked, this, &SigmaParamsForm::DefaultsButton_Click);
    return defaults;
}

void SigmaParamsForm::AddBox(QGridLayout* grid, SigmaBox box) {
    const BoxRow& row = RowOf(box);
    AddParameterRow(grid, row.caption, Box(box), row.unit, browse_.at(static_cast<std::size_t>(box)));
}

QWidget* SigmaParamsForm::LayCorvanePage() {
    auto* page = new QWidget(this);
    auto* grid = new QGridLayout(page);
    for (const BoxRow& row : kBoxes)
        if (row.box != SigmaBox::p && Box(row.box) != nullptr) AddBox(grid, row.box);
    LayCalculation(grid);
    grid->setColumnStretch(1, 1);
    grid->setRowStretch(grid->rowCount(), 1);
    return page;
}

void SigmaParamsForm::LayCalculation(QGridLayout* grid) {
    auto* at = new QLabel("The model at wa&velength", this);
    at->setBuddy(wavelength_);
    auto* row = new QHBoxLayout;
    for (QWidget* part : std::initializer_list<QWidget*>{wavelength_, new QLabel("nm", this), calculate_})
        row->addWidget(part);
    row->addStretch();
    auto* results = new QHBoxLayout;
    for (QWidget* part : std::initializer_list<QWidget*>{
             new QLabel(older_ ? "Absorption with water, 1/m:" : "Absorption, 1/m:", this), a_,
             new QLabel("Backscatter probability:", this), bbTilde_})
        results->addWidget(part);
    results->addStretch();
    const int first = grid->rowCount();
    grid->setRowMinimumHeight(first, 8);
    grid->addWidget(at, first + 1, 0);
    grid->addLayout(row, first + 1, 1, 1, 2);
    grid->addLayout(results, first + 2, 1, 1, 2);
}

QWidget* SigmaParamsForm::LayNTidalPage() {
    auto* page = new QWidget(this);
    auto* grid = new QGridLayout(page);
    auto* caption = new QLabel("The attenuation that weakens the backscatter signal of an n-Tidal:", this);
    caption->setWordWrap(true);
    grid->addWidget(caption, 0, 0, 1, 3);
    grid->addWidget(share_, 1, 0, 1, 3);
    AddBox(grid, SigmaBox::p);
    grid->addWidget(model_, 3, 0, 1, 3);
    grid->setColumnStretch(2, 1);
    grid->setRowStretch(4, 1);
    return page;
}

QWidget* SigmaParamsForm::LayPages() {
    pages_->setObjectName("SSTab");
    pages_->setAccessibleName("Instrument family");
    pages_->addTab(LayCorvanePage(), "&Corvane");
    pages_->addTab(LayNTidalPage(), "&n-Tidal");
    return pages_;
}

void SigmaParamsForm::FillIn() {
    FillIn(EntryOf(App().sigma, tables_));
}

void SigmaParamsForm::FillIn(const SigmaParamsEntry& entry) {
    for (std::size_t i = 0; i < boxes_.size(); ++i)
        if (boxes_.at(i) != nullptr) boxes_.at(i)->setText(FromText(entry.boxes.at(i)));
    (entry.cUseCV ? model_ : share_)->setChecked(true);
    Box(SigmaBox::p)->setEnabled(!entry.cUseCV);
}

SigmaParamsEntry SigmaParamsForm::Entry() const {
    SigmaParamsEntry entry;
    for (std::size_t i = 0; i < boxes_.size(); ++i)
        if (boxes_.at(i) != nullptr) entry.boxes.at(i) = boxes_.at(i)->text().toStdString();
    entry.cUseCV = model_->isChecked();
    entry.older = older_;
    return entry;
}

void SigmaParamsForm::Browse(SigmaBox box, const char* title) {
    operations_.StartUnlessRunning("Choose table", [this, box, title](Operation& operation) -> QCoro::Task<> {
        const FileRequest request{FileRequest::Purpose::Open, title, Box(box)->text().toStdString(),
                                  TableFilters(), 0};
        const FileChoice choice = co_await Ask().ChooseFile(operation, request);
        if (!operation.Cancelled() && !choice.path.empty()) Box(box)->setText(FromText(choice.path));
    });
}

void SigmaParamsForm::DefaultsButton_Click() {
    SigmaParamsEntry entry = Entry();
    EnterDefaults(entry, pages_->currentIndex() == 0 ? SigmaPage::Corvane : SigmaPage::NTidal, tables_);
    FillIn(entry);
}

void SigmaParamsForm::CalculateButton_Click() {
    const SigmaModelTexts model = CalculateSigmaModel(Entry(), wavelength_->text().toStdString());
    a_->setText(FromText(model.a));
    bbTilde_->setText(FromText(model.bbTilde));
}

/// Results must never stand beside other numbers than those that they were made from.
void SigmaParamsForm::ForgetResults() {
    a_->clear();
    bbTilde_->clear();
}

void SigmaParamsForm::ShowWrong(const SigmaBoxError& wrong) {
    pages_->setCurrentIndex(wrong.box == SigmaBox::p ? 1 : 0);
    ParameterForm::ShowWrong(Box(wrong.box), wrong.message);
}

void SigmaParamsForm::OKButton_Click() {
    const SigmaParamsEntry entry = Entry();
    if (const auto wrong = ValidateParams(entry)) {
        ShowWrong(*wrong);
        return;
    }
    TakeSigmaParams(App(), ParamsOf(entry, App().sigma));
    accept();
}

}  // namespace marisonde
