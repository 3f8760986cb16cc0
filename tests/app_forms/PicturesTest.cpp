#include <QAction>
#include <QDir>
#include <QLabel>
#include <QMenu>
#include <QPalette>
#include <QPushButton>
#include <QStyle>
#include <algorithm>

#include "app_forms/FormsFixture.h"

namespace marisonde {
namespace {

QPalette Dark() {
    QPalette palette(QColor(0x31, 0x36, 0x3b), QColor(0x23, 0x26, 0x29));
    palette.setColor(QPalette::Base, QColor(0x1b, 0x1e, 0x20));
    for (const auto role : {QPalette::Highlight, QPalette::Link})
        palette.setColor(role, QColor(0x3d, 0xae, 0xe9));
    return palette;
}

/// Pictures of every window and dialog that a menu opens, in both themes, for whoever wants to look; and what
/// a machine can judge of them: texts that are cut off.
class PicturesTest : public FormsFixture, public testing::WithParamInterface<const char*> {
  protected:
    PicturesTest() : before(QApplication::palette()) {
        if (std::string_view(GetParam()) == "dark") QApplication::setPalette(Dark());
        QDir().mkpath(Folder());
    }
    ~PicturesTest() override {
        shell.reset();
        QApplication::setPalette(before);
    }

    static QString Folder() { return QCoreApplication::applicationDirPath() + "/pictures/" + GetParam(); }

    /// A window that shows a minute of samples.
    MainForm* AMinute(simulator::Model model) {
        MainForm* const form = Sampling(model);
        form->resize(1024, 700);
        Run(std::chrono::minutes(1));
        form->findChild<QAction*>("View_All_menu")->trigger();
        return form;
    }

    static void Take(QWidget& window, const QString& name) {
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&window));
        auto* const data = qobject_cast<MainForm*>(&window);
        const QPixmap picture = data != nullptr ? data->Picture() : window.grab();
        EXPECT_FALSE(picture.isNull());
        EXPECT_TRUE(picture.save(Folder() + "/" + name + ".png"));
        ExpectNothingCutOff(window, name);
    }

    static void ExpectNothingCutOff(const QWidget& window, const QString& name) {
        for (const QLabel* label : window.findChildren<QLabel*>()) {
            if (!label->isVisible() || label->wordWrap() || label->textFormat() != Qt::PlainText) continue;
            EXPECT_GE(label->width(), label->fontMetrics().horizontalAdvance(label->text()))
                << qPrintable(name + ": " + label->objectName() + " " + label->text());
        }
        for (const QAbstractButton* button : window.findChildren<QAbstractButton*>()) {
            if (!button->isVisible() || button->text().isEmpty()) continue;
            EXPECT_GE(button->width() + 2, button->minimumSizeHint().width())
                << qPrintable(name + ": " + button->objectName() + " " + button->text());
        }
    }

    /// The windows beside the data windows, each once it is there.
    static QWidgetList Others() {
        QWidgetList others;
        for (QWidget* window : QApplication::topLevelWidgets())
            if (window->isVisible() && qobject_cast<MainForm*>(window) == nullptr &&
                qobject_cast<QMenu*>(window) == nullptr)
                others.push_back(window);
        return others;
    }

    QPalette before;
};

TEST_P(PicturesTest, DataWindowsOfEveryModel) {
    for (int model = 0; model < static_cast<int>(InstTypeCode::Unknown); ++model) {
        MainForm* const form = AMinute(static_cast<simulator::Model>(model));
        Take(*form, "MainForm " + QString::number(model));
        form->CloseWith([] {});
        form->close();
        Settle();
    }
}

TEST_P(PicturesTest, EverythingThatAMenuOpens) {
    MainForm* const form = AMinute(simulator::Model::Corvane6);
    QStringList names;
    for (const QAction* action : form->findChildren<QAction*>())
        if (!action->objectName().isEmpty() && action->menu() == nullptr)
            names.push_back(action->objectName());
    int taken = 0;
    for (const QString& name : names) {
        if (name == "ExitItem" || name == "CloseWindowItem") continue;
        auto* const action = form->findChild<QAction*>(name);
        if (action == nullptr || !action->isEnabled()) continue;
        action->trigger();
        Run(4 * kTick);
        for (QWidget* window : Others()) {
            Take(*window, name + " " + window->objectName());
            ++taken;
            window->close();
        }
        Run(4 * kTick);
    }
    EXPECT_GE(taken, 4);
}

INSTANTIATE_TEST_SUITE_P(Themes, PicturesTest, testing::Values("light", "dark"));

}  // namespace
}  // namespace marisonde
