#include "clicker/Clicker.h"

#include <QAbstractButton>
#include <QAbstractSlider>
#include <QAbstractSpinBox>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QFileDialog>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPointer>
#include <QTabBar>
#include <QTest>
#include <QTextEdit>
#include <QTimer>
#include <algorithm>
#include <array>

#include "graphs/forms/ChartView.h"

namespace marisonde {

namespace {

constexpr std::array kTyped{"12",   "0",   "-7.5", "1E+308",      "abc",   "",
                            "ID\r", "300", "nan",  "99999999999", "C:\\x", "\t"};
constexpr std::array kKeys{Qt::Key_Escape, Qt::Key_Return, Qt::Key_Tab,  Qt::Key_Backtab,
                           Qt::Key_Up,     Qt::Key_Down,   Qt::Key_Left, Qt::Key_Right,
                           Qt::Key_Space,  Qt::Key_Delete, Qt::Key_Home};

/// A dialog takes the input of this window.
bool IsBlocked(const QWidget& window) {
    for (const QWidget* other : QApplication::topLevelWidgets()) {
        if (!other->isVisible() || other == &window || other->windowModality() == Qt::NonModal) continue;
        if (other->windowModality() == Qt::ApplicationModal) return true;
        for (const QWidget* above = other->parentWidget(); above != nullptr;
             above = above->window()->parentWidget())
            if (above->window() == &window) return true;
    }
    return false;
}

bool IsReachable(const QWidget& widget) {
    return widget.isVisible() && widget.isEnabled() && !widget.rect().isEmpty();
}

QString NameOf(const QWidget& widget) {
    return widget.window()->objectName() + "/" + widget.objectName();
}

/// In an order that does not depend on where in memory they lie.
QWidgetList Windows() {
    QWidgetList windows = QApplication::topLevelWidgets();
    const auto place = [](const QWidget* window) {
        const QWidget* const parent = window->parentWidget();
        return window->objectName() + window->windowTitle() +
               (parent != nullptr ? parent->window()->windowTitle() : QString());
    };
    std::sort(windows.begin(), windows.end(),
              [&](const QWidget* one, const QWidget* other) { return place(one) < place(other); });
    return windows;
}

/// The toolkit's dialog insists on an answer when there is no such file.
void AnswerToolkitNotice(QFileDialog& dialog) {
    QTimer::singleShot(0, &dialog, [] {
        if (auto* const notice = qobject_cast<QMessageBox*>(QApplication::activeModalWidget()))
            notice->reject();
    });
}

template <class Control>
std::vector<Control*> Controls(const QWidget& window) {
    std::vector<Control*> found;
    for (Control* control : window.findChildren<Control*>())
        if (control->window() == &window && IsReachable(*control)) found.push_back(control);
    return found;
}

}  // namespace

int Clicker::Pick(int below) {
    return static_cast<int>(random_() % static_cast<unsigned>(below));
}

QString Clicker::Act() {
    actions_.clear();
    for (QWidget* window : Windows()) {
        if (!IsReachable(*window) || IsBlocked(*window)) continue;
        if (qobject_cast<QFileDialog*>(window) != nullptr)
            AnswerFileDialog(*window);
        else
            CollectFrom(*window);
    }
    if (actions_.empty()) return "nothing";
    const Action action = actions_[static_cast<std::size_t>(Pick(static_cast<int>(actions_.size())))];
    return action();
}

void Clicker::CollectFrom(QWidget& window) {
    for (QAbstractButton* button : Controls<QAbstractButton>(window))
        actions_.push_back([button] {
            QString what = "press " + NameOf(*button) + " " + button->text();
            QTest::mouseClick(button, Qt::LeftButton);
            return what;
        });
    for (QComboBox* box : Controls<QComboBox>(window))
        actions_.push_back([this, box] {
            const int count = box->count();
            if (count > 0) {
                box->setCurrentIndex(Pick(count));
                emit box->activated(box->currentIndex());
            }
            return "choose in " + NameOf(*box);
        });
    for (QLineEdit* field : Controls<QLineEdit>(window))
        actions_.push_back([this, field] { return Type(*field); });
    for (QPlainTextEdit* field : Controls<QPlainTextEdit>(window))
        actions_.push_back([this, field] { return Type(*field); });
    for (QTextEdit* field : Controls<QTextEdit>(window))
        actions_.push_back([this, field] { return Type(*field); });
    for (QAbstractSpinBox* box : Controls<QAbstractSpinBox>(window))
        actions_.push_back([this, box] { return Type(*box); });
    for (QAbstractSlider* slider : Controls<QAbstractSlider>(window))
        actions_.push_back([this, slider] {
            slider->setValue(slider->minimum() + Pick(slider->maximum() - slider->minimum() + 1));
            return "move " + NameOf(*slider);
        });
    for (QTabBar* tabs : Controls<QTabBar>(window))
        actions_.push_back([this, tabs] {
            if (tabs->count() > 0) tabs->setCurrentIndex(Pick(tabs->count()));
            return "turn to a tab of " + NameOf(*tabs);
        });
    for (ChartView* chart : Controls<ChartView>(window))
        actions_.push_back([this, chart] { return UseChart(*chart); });
    QPointer<QWidget> target = &window;
    actions_.push_back([this, target] {
        const Qt::Key key = kKeys.at(static_cast<std::size_t>(Pick(kKeys.size())));
        QWidget* const focus = target->focusWidget();
        const QString what = "key " + QString::number(key, 16) + " in " + target->objectName();
        QTest::keyClick(focus != nullptr ? focus : target.data(), key);
        return what;
    });
    actions_.push_back([target] {
        const QString what = "close " + target->objectName();
        target->close();
        return what;
    });
    CollectMenus(window);
}

void Clicker::CollectMenus(QWidget& window) {
    for (QAction* action : window.findChildren<QAction*>()) {
        if (!action->isEnabled() || !action->isVisible() || action->menu() != nullptr ||
            action->isSeparator() || action->objectName().isEmpty())
            continue;
        actions_.push_back([action] {
            QString what = "choose " + action->objectName();
            action->trigger();
            return what;
        });
    }
}

void Clicker::AnswerFileDialog(QWidget& window) {
    auto* const dialog = qobject_cast<QFileDialog*>(&window);
    actions_.push_back([dialog] {
        dialog->reject();
        return QString("cancel the file dialog");
    });
    for (const QString& file : files_)
        actions_.push_back([dialog, file] {
            dialog->selectFile(file);
            AnswerToolkitNotice(*dialog);
            QMetaObject::invokeMethod(dialog, "accept");
            return "choose the file " + file;
        });
}

QString Clicker::Type(QWidget& field) {
    const QString text = kTyped.at(static_cast<std::size_t>(Pick(kTyped.size())));
    const QString what = "type '" + text + "' into " + NameOf(field);
    const QPointer<QWidget> target = &field;
    if (Pick(2) == 0) QTest::keySequence(target, QKeySequence::SelectAll);
    for (const QChar key : text)
        if (target && target->isVisible()) QTest::keyClick(target, key.toLatin1());
    return what;
}

QString Clicker::UseChart(QWidget& chart) {
    const auto point = [&] { return QPoint(Pick(chart.width()), Pick(chart.height())); };
    QWidget* const under =
        chart.childAt(chart.rect().center()) != nullptr ? chart.childAt(chart.rect().center()) : &chart;
    const Qt::MouseButton button = Pick(4) == 0 ? Qt::RightButton : Qt::LeftButton;
    switch (Pick(4)) {
        case 0:
            QTest::mouseDClick(under, Qt::LeftButton, {}, point());
            return "double click on the chart";
        case 1:
            QTest::mouseMove(under, point());
            return "point at the chart";
        default:
            QTest::mousePress(under, button, {}, point());
            QTest::mouseMove(under, point());
            QTest::mouseRelease(under, button, {}, point());
            return "drag over the chart";
    }
}

}  // namespace marisonde
