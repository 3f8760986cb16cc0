#include "app/forms/BbParamsForm.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QRadioButton>
#include <QVBoxLayout>

#include "app/ParameterChange.h"
#include "app/forms/FormHelpers.h"
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
    BoxRow{PureWaterBox::chi, "chi", "chi factor", "c&hi", "where the calibration's is not used"},
};
static_assert(kBoxes.back().box == PureWaterBox::chi);  // it stands apart

}  // namespace

BbParamsForm::BbParamsForm(AppContext& app, QWidget* parent)
    : ParameterForm(app, parent, "bbParamsForm", "Pure-water Parameters"), entry_(app.pureWater) {
    MakeOptions();
    MakeBoxes();
    MakeChecks();
    LayOut({LayWater(), LayBackscatter(), writeBeta_}, {MakeAboutButton("&About", "aboutbb.htm")});
}

void BbParamsForm::MakeOptions() {
    options_ = new QButtonGroup(this);
    for (const OptionRow& row : kOptions) {
        const int index = static_cast<int>(row.choice);
        auto* option =
            NamedButton<QRadioButton>(this, QString("PureWaterOption(%1)").arg(index), row.caption);
        option->setToolTip(row.tip);
        options_->addButton(option, index);
    }
    connect(options_, &QButtonGroup::idClicked, this, [this](int index) {
        entry_.Choose(static_cast<PureWaterChoice>(index));
        Refresh();
    });
}

void BbParamsForm::MakeBoxes() {
    for (const BoxRow& row : kBoxes) {
        QLineEdit* const box = ParameterBox(this, row.name, row.meaning, 16);
        connect(box, &QLineEdit::textEdited, this,
                [this, which = row.box](const QString& text) { entry_.SetText(which, text.toStdString()); });
        boxes_.at(static_cast<std::size_t>(row.box)) = box;
    }
}

void BbParamsForm::MakeChecks() {
    useCalChi_ = NamedButton<QCheckBox>(this, "UseCalChi", "Use the chi of the ca&libration");
    writeBeta_ =
        NamedButton<QCheckBox>(this, "WriteBetaColumns", "Also write beta &columns to calibrated files");
    connect(useCalChi_, &QCheckBox::clicked, this, [this](bool on) {
        entry_.SetUseCalChi(on);
        Refresh();
    });
    connect(writeBeta_, &QCheckBox::clicked, this, [this](bool on) { entry_.SetWriteBetaColumns(on); });
    setTabOrder(Box(PureWaterBox::gammaLambda), useCalChi_);
    setTabOrder(useCalChi_, Box(PureWaterBox::chi));
}

QWidget* BbParamsForm::LayWater() {
    auto* group = new QGroupBox("Pure water", this);
    auto* row = new QHBoxLayout(group);
    auto* choices = new QVBoxLayout;
    for (QAbstractButton* option : options_->buttons()) choices->addWidget(option);
    choices->addStretch();
    auto* values = new QGridLayout;
    for (const BoxRow& box : kBoxes)
        if (box.box != PureWaterBox::chi) AddParameterRow(values, box.caption, Box(box.box), box.unit);
    values->setRowStretch(values->rowCount(), 1);
    row->addLayout(choices);
    row->addSpacing(24);
    row->addLayout(values, 1);
    return group;
}

QWidget* BbParamsForm::LayBackscatter() {
    const BoxRow& chi = kBoxes.back();
    auto* group = new QGroupBox("From beta to bb", this);
    auto* grid = new QGridLayout(group);
    grid->addWidget(useCalChi_, 0, 0, 1, 3);
    AddParameterRow(grid, chi.caption, Box(chi.box), chi.unit);
    grid->setColumnStretch(2, 1);
    return group;
}

void BbParamsForm::FillIn() {
    entry_ = PureWaterEntry(App().pureWater);
    Refresh();
}

void BbParamsForm::Refresh() {
    options_->button(static_cast<int>(entry_.Choice()))->setChecked(true);
    useCalChi_->setChecked(entry_.UseCalChi());
    writeBeta_->setChecked(entry_.WriteBetaColumns());
    for (const BoxRow& row : kBoxes) {
        const QString text = FromText(entry_.Text(row.box));
        if (Box(row.box)->text() != text) Box(row.box)->setText(text);
        LockBox(Box(row.box), entry_.Locked(row.box));
    }
}

void BbParamsForm::OKButton_Click() {
    if (const auto wrong = entry_.Validate()) {
        ShowWrong(Box(wrong->box), wrong->message);
        return;
    }
    TakePureWaterParams(App(), entry_.Params());
    accept();
}

}  // namespace marisonde
