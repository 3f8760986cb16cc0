#include "app/forms/ParameterForm.h"

#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>

#include "app/forms/FormHelpers.h"
#include "app/forms/HelpPages.h"
#include "app/forms/ParameterControls.h"

namespace marisonde {

ParameterForm::ParameterForm(AppContext& app, QWidget* parent, const char* name, const char* title)
    : QDialog(parent), app_(app), dialogs_(this) {
    setObjectName(name);
    setWindowTitle(title);
    setSizeGripEnabled(true);
}

void ParameterForm::LayOut(std::initializer_list<QWidget*> parts,
                           std::initializer_list<QPushButton*> others) {
    auto* ok = ParameterButton(this, "OKButton", "OK");
    auto* cancel = ParameterButton(this, "CancelButton", "Cancel");
    ok->setDefault(true);
    connect(ok, &QPushButton::clicked, this, &ParameterForm::OKButton_Click);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    auto* buttons = new QHBoxLayout;
    for (QPushButton* button : others) buttons->addWidget(button);
    buttons->addStretch();
    buttons->addWidget(ok);
    buttons->addWidget(cancel);
    auto* all = new QVBoxLayout(this);
    all->setContentsMargins(20, 18, 20, 16);
    all->setSpacing(12);
    for (QWidget* part : parts) all->addWidget(part);
    const bool filled = std::any_of(parts.begin(), parts.end(), [](const QWidget* part) {
        return part->sizePolicy().expandingDirections().testFlag(Qt::Vertical);
    });
    if (!filled) all->addStretch();
    all->addLayout(buttons);
    RestoreFormGeometry(app_.settings, *this);
}

QPushButton* ParameterForm::MakeAboutButton(const char* caption, const char* page) {
    QPushButton* const about = ParameterButton(this, "AboutButton", caption);
    about->setToolTip("What these parameters mean");
    connect(about, &QPushButton::clicked, this, [this, page] { OpenHelpPage(page, dialogs_); });
    return about;
}

void ParameterForm::Show() {
    if (!isVisible()) FillIn();
    open();
    raise();
}

void ParameterForm::ShowWrong(QLineEdit* box, const std::string& message) {
    box->setFocus();
    box->selectAll();
    dialogs_.ShowError(message);
}

void ParameterForm::done(int result) {
    SaveFormGeometry(app_.settings, *this);
    QDialog::done(result);
}

}  // namespace marisonde
