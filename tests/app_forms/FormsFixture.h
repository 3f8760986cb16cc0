#pragma once

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QTest>
#include <QTimer>
#include <gtest/gtest.h>
#include <memory>
#include <string>

#include "app/forms/MainForm.h"
#include "app/forms/Shell.h"
#include "common/Settings.h"
#include "link/SimulatedLine.h"
#include "simulator/Instrument.h"
#include "support/ScriptedLine.h"
#include "support/ShareFolder.h"
#include "support/TestFolder.h"

namespace marisonde {

inline constexpr Millis kTick{50};

/// The whole program with its windows, in virtual time: a form ticks when the test says so.
class FormsFixture : public testing::Test {
  protected:
    FormsFixture() : app(settings, clock), pump(clock), shell(std::make_unique<Shell>(app, pump)) {
        LoadPreferences(settings, folder.Path().string(), app.prefs);
        app.sigma = LoadSigmaParams(settings, folder.Path(), ShareFolder()).params;
        app.pureWater = LoadPureWaterParams(settings);
        app.temporaryFolder = folder.Path();
        app.safePlaces = {folder / "recovered", folder / "recovered too"};
    }
    ~FormsFixture() override {
        shell.reset();
        Settle();
    }

    /// A window that is shown, without a connection.
    MainForm* Empty() { return Shown(shell->NewWindow(std::make_unique<ScriptedLine>())); }

    /// A window on a sampling instrument, with its data files open.
    MainForm* Sampling(simulator::Model model = simulator::Model::Corvane6) {
        auto instrument = simulator::MakeInstrument(model, {});
        const std::string cal = instrument->CalText();
        const auto path = folder / ("instrument" + std::to_string(app.FirstFreeWindow()) + ".cal");
        TestFolder::Write(path, cal);
        MainForm* const form =
            shell->NewWindow(Cable(std::make_unique<SimulatedLine>(std::move(instrument), clock)));
        DataWindow& window = form->Window();
        EXPECT_TRUE(window.LoadCalIntoWindow(path.string()));
        EXPECT_EQ(window.OpenWithoutQuery(window.Index() + 1, 19200, static_cast<InstTypeCode>(model)), "");
        window.OpenDataFiles("raw", true);
        form->InstrumentChanged();
        return Shown(form);
    }

    /// What lies between an instrument and its window.
    virtual std::unique_ptr<SerialLine> Cable(std::unique_ptr<SerialLine> line) { return line; }

    /// Lets this time pass in all windows.
    void Run(Millis time) {
        for (Millis passed{0}; passed < time; passed += kTick) {
            clock.AdvanceBy(kTick);
            for (MainForm* form : shell->Windows())
                QMetaObject::invokeMethod(form->findChild<QTimer*>("ProcessSerialInputTimer"), "timeout");
            Settle();
        }
    }

    /// Handles what the forms have put off.
    static void Settle() {
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    /// The dialog of that name that is open above a window; null when there is none.
    static QDialog* Open(const QWidget* form, const char* name) {
        for (QDialog* dialog : form->findChildren<QDialog*>(name))
            if (dialog->isVisible()) return dialog;
        return nullptr;
    }
    static std::string Message(const QWidget* form, const char* name = "YesNoCancelForm") {
        const QDialog* const dialog = Open(form, name);
        return dialog == nullptr ? "no " + std::string(name)
                                 : dialog->findChild<QLabel*>("Message")->text().toStdString();
    }
    /// Presses a button of the question that is open, and lets its asker go on.
    void Press(const QWidget* form, const char* button) {
        const QDialog* const dialog = Open(form, "YesNoCancelForm");
        ASSERT_NE(dialog, nullptr) << "for " << button;
        auto* const pressed = dialog->findChild<QAbstractButton*>(button);
        ASSERT_NE(pressed, nullptr) << button;
        QTest::mouseClick(pressed, Qt::LeftButton);
        Run(2 * kTick);
    }

    static std::string Text(const QWidget* form, const char* label) {
        const auto* const found = form->findChild<QLabel*>(label);
        return found == nullptr ? "no " + std::string(label) : found->text().toStdString();
    }

    TestFolder folder;
    MapSettings settings;
    VirtualClock clock{40735.385671};  // 11 July 2011, about 09:15
    AppContext app;
    Pump pump;
    std::unique_ptr<Shell> shell;

  private:
    static MainForm* Shown(MainForm* form) {
        form->findChild<QTimer*>("ProcessSerialInputTimer")->stop();
        form->show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(form));
        return form;
    }
};

}  // namespace marisonde
