#include "app/forms/ParameterControls.h"

#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace marisonde {

QPushButton* ParameterButton(QWidget* parent, const QString& name, const QString& caption) {
    auto* button = NamedButton<QPushButton>(parent, name, caption);
    button->setAutoDefault(false);
    return button;
}

QLineEdit* ParameterBox(QWidget* parent, const char* name, const QString& meaning, int chars) {
    auto* box = new QLineEdit(parent);
    box->setObjectName(name);
    box->setAccessibleName(meaning);
    box->setMinimumWidth(box->fontMetrics().averageCharWidth() * chars);
    return box;
}

void AddParameterRow(QGridLayout* grid, const QString& caption, QLineEdit* box, const QString& unit,
                     QPushButton* browse) {
    const int row = grid->rowCount();
    auto* label = new QLabel(caption, box->parentWidget());
    label->setBuddy(box);
    grid->addWidget(label, row, 0);
    grid->addWidget(box, row, 1);
    if (browse != nullptr)
        grid->addWidget(browse, row, 2);
    else
        grid->addWidget(new QLabel(unit, box->parentWidget()), row, 2);
}

void LockBox(QLineEdit* box, bool locked) {
    box->setReadOnly(locked);
    // Set back to nothing, the box follows the theme again.
    QPalette palette;
    if (locked) palette.setBrush(QPalette::Base, box->parentWidget()->palette().window());
    box->setPalette(palette);
}

}  // namespace marisonde
