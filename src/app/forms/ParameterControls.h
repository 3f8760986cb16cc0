#pragma once

#include <QString>

class QGridLayout;
class QLineEdit;
class QPushButton;
class QWidget;

namespace marisonde {

/// A button, check box or option named for tests and screen readers.
template <class Button>
Button* NamedButton(QWidget* parent, const QString& name, const QString& caption) {
    auto* button = new Button(caption, parent);
    button->setObjectName(name);
    button->setAccessibleName(QString(caption).remove('&'));
    return button;
}

/// The button of a parameter form. Enter presses only the default one.
QPushButton* ParameterButton(QWidget* parent, const QString& name, const QString& caption);

/// A box for a number or a text, wide enough for `chars` digits.
QLineEdit* ParameterBox(QWidget* parent, const char* name, const QString& meaning, int chars);

/// A row of a grid: caption with its letter, box, and the unit or a hint; `browse` stands behind them.
void AddParameterRow(QGridLayout* grid, const QString& caption, QLineEdit* box, const QString& unit,
                     QPushButton* browse = nullptr);

/// A locked box can be read and copied, and looks like the window behind it.
void LockBox(QLineEdit* box, bool locked);

}  // namespace marisonde
