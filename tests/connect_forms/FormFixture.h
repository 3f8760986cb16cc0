#pragma once

#include <QApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <chrono>
#include <gtest/gtest.h>
#include <memory>
#include <string>

#include "app/forms/InstrumentCommands.h"
#include "app/forms/MainForm.h"
#include "app/forms/Shell.h"
#include "app_connect/ConnectFixture.h"
#include "support/ShareFolder.h"

namespace marisonde {

/// The forms of the program on scripted ports, in virtual time: the timers of the forms are left out, and the
/// test moves the tick.
class FormFixture : public testing::Test {
  protected:
    FormFixture() : app(settings, clock), pump(clock), shell(app, pump) {
        LoadPreferences(settings, folder.Path().string(), app.prefs);
        app.sigma = LoadSigmaParams(settings, folder.Path(), ShareFolder()).params;
        app.pureWater = LoadPureWaterParams(settings);
        app.temporaryFolder = folder.Path();
        app.safePlaces = {folder / "recovered", folder / "recovered too"};
        app.ports = &ports;
    }
    ~FormFixture() override { QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); }

    MainForm& NewForm() {
        MainForm* const form = shell.NewWindow();
        form->show();
        return *form;
    }
    void Tick(int count = 1) {
        for (int i = 0; i < count; ++i) {
            clock.AdvanceBy(kTick);
            for (MainForm* form : shell.Windows()) {
                form->Window().Tick();
                form->Commands().Update();
            }
            pump.ResumeReady();
        }
    }
    template <class Widget>
    static Widget* Find(QObject& parent, const char* name) {
        Widget* const found = parent.findChild<Widget*>(name);
        EXPECT_NE(found, nullptr) << name;
        return found;
    }
    static void Press(QWidget* widget, Qt::Key key, const QString& text = {}) {
        QKeyEvent down(QEvent::KeyPress, key, Qt::NoModifier, text);
        QKeyEvent up(QEvent::KeyRelease, key, Qt::NoModifier, text);
        QCoreApplication::sendEvent(widget, &down);
        QCoreApplication::sendEvent(widget, &up);
    }

    TestFolder folder;
    MapSettings settings;
    VirtualClock clock{40735.385671};
    AppContext app;
    TalkerPorts ports;
    Pump pump;
    Shell shell;
};

}  // namespace marisonde
