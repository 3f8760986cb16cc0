#include "app/forms/BbParamsForm.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include "app/ParameterChange.h"
#include "app/forms/FormHelpers.h"
#include "app/forms/HelpPages.h"
#include "app/forms/ParameterControls.h"

namespace marisonde {

namespace {

struct OptionRow {
    PureWaterChoice choice;
    const char* caption;
    const char* tip;
};
/// In the order of the screen.
constexpr std::array kOptions{
    OptionRow{PureWaterChoice::MorelFresh, "Morel, &fresh water", "Pure fresh water after Morel (1974)"},
    OptionRow{PureWaterChoice::MorelSalt, "Morel, &sea water", "Pure sea water after Morel (1974)"},
    OptionRow{PureWaterChoice::VenmarkRecommended, "Venmark &recommended", "The mean of fresh and sea water"},
    OptionRow{PureWaterChoice::Custom, "C&ustom", "Your own values"},
    OptionRow{PureWaterChoice::NoPure, "&No pure water", "Nothing is taken out for the water"},
};

struct BoxRow {
    PureWaterBox box;
    const char* name;
    const char* meaning;
    const char* caption;
    const char* unit;
};
constexpr std::array kBoxes{
    BoxRow{PureWaterBox::lambda0, "lambda0", "Reference wavelength", "Reference &wavelength", "nm"},
    BoxRow{PureWaterBox::beta0, "beta0", "beta of water at the reference wavelength", "&beta of water",
           "1/(m sr)"},
    BoxRow{PureWaterBox::bb0, "bb0", "bb of water at the reference wavelength", "bb &of water", "1/m"},
    BoxRow{PureWaterBox::gammaLambda, "gammaLambda", "Spectral exponent", "Spectral &exponent", ""},
};

}  // namespace

BbParamsForm::BbParamsForm(AppContext& app, QWidget* parent)
    : QDialog(parent), app_(app), dialogs_(this), entry_(app.pureWater) {
    setObjectName("bbParamsForm");
    setWindowTitle("Pure-water Parameters");
    setSizeGripEnabled(true);
    MakeControls();
    LayOut();
    // Without a place of its own the form opens in the middle of its window.
    if (!app_.settings.GetSetting("bbParamsForm", "Left").empty()) RestoreFormGeometry(app_.settings, *this);
}

void BbParamsForm::MakeControls() {
    options_ = new QButtonGroup(this);
    for (const OptionRow& row : kOptions) {
        const int index = static_cast<int>(row.choice);
        auto* option = new QRadioButton(row.caption, this);
        option->setObjectName(QString("PureWaterOption(%1)").arg(index));
        option->setAccessibleName(QString(row.caption).remove('&'));
        option->setToolTip(row.tip);
        options_->addButton(option, index);
    }
    const auto box = [this](PureWaterBox which, const char* name, const char* meaning) {
        QLineEdit* made = ParameterBox(this, name, meaning, 16);
        connect(made, &QLineEdit::textEdited, this,
                [this, which](const QString& text) { entry_.SetText(which, text.toStdString()); });
        boxes_.at(static_cast<std::size_t>(which)) = made;
    };
    for (const BoxRow& row : kBoxes) box(row.box, row.name, row.meaning);
    box(PureWaterBox::chi, "chi", "chi factor");
    useCalChi_ = new QCheckBox("Use the chi of the ca&libration", this);
    useCalChi_->setObjectName("UseCalChi");
    writeBeta_ = new QCheckBox("Also write beta &columns to calibrated files", this);
    writeBeta_->setObjectName("WriteBetaColumns");
    connect(options_, &QButtonGroup::idClicked, this, [this](int index) {
        entry_.Choose(static_cast<PureWaterChoice>(index));
        Refresh();
    });
    connect(useCalChi_, &QCheckBox::clicked, this, [this](bool on) {
        entry_.SetUseCalChi(on);
        Refresh();
    });
    connect(writeBeta_, &QCheckBox::clicked, this, [this](bool on) { entry_.SetWriteBetaColumns(on); });
}

void BbParamsForm::LayOut() {
    auto* water = new QGroupBox("Pure water", this);
    auto* inWater = new QHBoxLayout(water);
    auto* choices = new QVBoxLayout;
    for (QAbstractButton* option : options_->buttons()) choices->addWidget(option);
    choices->addStretch();
    auto* values = new QGridLayout;
    for (const BoxRow& row : kBoxes)
        AddParameterRow(values, row.caption, boxes_.at(static_cast<std::size_t>(row.box)), row.unit);
    values->setRowStretch(values->rowCount(), 1);
    inWater->addLayout(choices);
    inWater->addSpacing(24);
    inWater->addLayout(values, 1);
    auto* backscatter = new QGroupBox("From beta to bb", this);
    auto* inBackscatter = new QGridLayout(backscatter);
    inBackscatter->addWidget(useCalChi_, 0, 0, 1, 3);
    AddParameterRow(inBackscatter, "c&hi", boxes_.at(static_cast<std::size_t>(PureWaterBox::chi)),
                    "where the calibration's is not used");
    inBackscatter->setColumnStretch(2, 1);
    auto* ok = ParameterButton(this, "OKButton", "OK");
    auto* cancel = ParameterButton(this, "CancelButton", "Cancel");
    auto* about = ParameterButton(this, "AboutButton", "&About");
    about->setToolTip("What these parameters mean");
    ok->setDefault(true);
    connect(ok, &QPushButton::clicked, this, &BbParamsForm::OKButton_Click);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(about, &QPushButton::clicked, this, [this] { OpenHelpPage("aboutbb.htm", dialogs_); });
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(about);
    buttons->addStretch();
    buttons->addWidget(ok);
    buttons->addWidget(cancel);
    auto* all = new QVBoxLayout(this);
    all->setContentsMargins(20, 18, 20, 16);
    all->setSpacing(12);
    for (QWidget* part : std::initializer_list<QWidget*>{water, backscatter, writeBeta_})
        all->addWidget(part);
    all->addStretch();
    all->addLayout(buttons);
}

void BbParamsForm::Show() {
    if (!isVisible()) entry_ = PureWaterEntry(app_.pureWater);
    Refresh();
    open();
    raise();
}

void BbParamsForm::Refresh() {
    options_->button(static_cast<int>(entry_.Choice()))->setChecked(true);
    useCalChi_->setChecked(entry_.UseCalChi());
    writeBeta_->setChecked(entry_.WriteBetaColumns());
    for (std::size_t i = 0; i < boxes_.size(); ++i) {
        const auto which = static_cast<PureWaterBox>(i);
        const QString text = FromText(entry_.Text(which));
        if (boxes_.at(i)->text() != text) boxes_.at(i)->setText(text);
        LockBox(boxes_.at(i), entry_.Locked(which));
    }
}

void BbParamsForm::OKButton_Click() {
    if (const auto wrong = entry_.Validate()) {
        QLineEdit* const box = boxes_.at(static_cast<std::size_t>(wrong->box));
        box->setFocus();
        box->selectAll();
        dialogs_.ShowError(wrong->message);
        return;
    }
    TakePureWaterParams(app_, entry_.Params());
    accept();
}

void BbParamsForm::done(int result) {
    SaveFormGeometry(app_.settings, *this);
    QDialog::done(result);
}

}  // namespace marisonde
