#include <QCheckBox>
#include <QKeySequence>
#include <QPushButton>
#include <QRadioButton>
#include <QSet>

#include "app/forms/FormHelpers.h"

namespace marisonde {

namespace {

/// The place of the marked letter in a caption; -1 without one. "&&" is an ampersand.
qsizetype MarkedLetter(const QString& caption) {
    for (qsizetype i = 0; i + 1 < caption.size(); ++i) {
        if (caption[i] != '&') continue;
        if (caption[i + 1] != '&') return i + 1;
        ++i;
    }
    return -1;
}

/// The first free letter, those that begin a word before the others; -1 when there is none.
qsizetype FreeLetter(const QString& caption, const QSet<QChar>& taken) {
    for (const bool atWord : {true, false})
        for (qsizetype i = 0; i < caption.size(); ++i) {
            const bool begins = i == 0 || caption[i - 1] == ' ';
            if (begins == atWord && caption[i].isLetterOrNumber() && !taken.contains(caption[i].toLower()))
                return i;
        }
    return -1;
}

QList<QAbstractButton*> CaptionedControls(const QWidget& form) {
    QList<QAbstractButton*> controls;
    for (auto* button : form.findChildren<QAbstractButton*>()) {
        const bool captioned = qobject_cast<QPushButton*>(button) != nullptr ||
                               qobject_cast<QCheckBox*>(button) != nullptr ||
                               qobject_cast<QRadioButton*>(button) != nullptr;
        if (captioned && !button->text().isEmpty()) controls.push_back(button);
    }
    return controls;
}

}  // namespace

void FixControlAccelerators(QWidget& form) {
    QSet<QChar> taken;
    QList<QAbstractButton*> without;
    for (QAbstractButton* control : CaptionedControls(form)) {
        const QString caption = control->text();
        const qsizetype marked = MarkedLetter(caption);
        const QChar letter = marked < 0 ? QChar() : caption[marked].toLower();
        if (marked >= 0 && !taken.contains(letter)) {
            taken.insert(letter);
            continue;
        }
        if (marked >= 0) control->setText(QString(caption).remove(marked - 1, 1));
        without.push_back(control);
    }
    for (QAbstractButton* control : without) {
        const QString caption = control->text();
        const qsizetype place = FreeLetter(caption, taken);
        if (place < 0) continue;
        taken.insert(caption[place].toLower());
        control->setText(QString(caption).insert(place, '&'));
    }
}

}  // namespace marisonde
