#include "app/forms/Shell.h"

#include <QApplication>
#include <algorithm>

#include "app/WindowStart.h"
#include "app/forms/MainForm.h"
#include "link/Ports.h"

namespace marisonde {

Shell::Shell(AppContext& app, Pump& pump)
    : app_(app), pump_(pump), operations_(pump, [this](const std::string& name, const std::string& reason) {
          const auto windows = Windows();
          if (!windows.empty()) windows.front()->Ask().ShowError(name + " failed: " + reason);
      }) {
    nextTurn_.setSingleShot(true);
    nextTurn_.setInterval(0);
    connect(&nextTurn_, &QTimer::timeout, this, [this] { pump_.ResumeReady(); });
    pump_.OnWorkAtHand = [this] { nextTurn_.start(); };
}

Shell::~Shell() {
    pump_.OnWorkAtHand = nullptr;
    for (MainForm* form : Windows()) delete form;
}

MainForm* Shell::NewWindow() {
    if (app_.FirstFreeWindow() == kMaxWindows) return nullptr;
    return NewWindow(app_.ports->MakeLine());
}

MainForm* Shell::NewWindow(std::unique_ptr<SerialLine> line) {
    if (app_.FirstFreeWindow() == kMaxWindows) return nullptr;
    auto* form = new MainForm(*this, std::move(line));
    forms_.push_back(form);
    // A closed window leaves its slot when it is deleted.
    connect(form, &QObject::destroyed, this, [this, form] {
        std::erase(forms_, form);
        WatchSleep();
        BuildWindowMenu();
    });
    LoadRecalledCalibration(form->Window());
    form->InstrumentChanged();
    BuildWindowMenu();
    return form;
}

void Shell::BuildWindowMenu() {
    for (MainForm* form : Windows()) form->BuildWindowMenu();
}

void Shell::WatchSleep() {
    const auto windows = Windows();
    awake_.Update(std::any_of(windows.begin(), windows.end(), [](MainForm* form) {
        return NeedsComputerAwake(form->Window().Link, form->Window().Files.AnyOpen());
    }));
}

std::vector<MainForm*> Shell::Windows() const {
    return forms_;
}

void Shell::ExitCommand(MainForm* first) {
    if (Exiting()) return;
    const auto windows = Windows();
    const bool oneIsClosing =
        std::any_of(windows.begin(), windows.end(), [](MainForm* form) { return form->AsksToClose(); });
    if (oneIsClosing) return;  // its question comes first
    const QPointer<MainForm> starter = first;
    operations_.Start("Exit", [this, starter](Operation& operation) -> QCoro::Task<> {
        std::vector<QPointer<MainForm>> order{starter};
        for (MainForm* form : Windows())
            if (form != starter) order.emplace_back(form);
        for (const QPointer<MainForm>& form : order) {
            if (!form) continue;
            const bool mayClose = co_await form->PrepToClose(operation);
            if (!mayClose) co_return;
        }
        for (const QPointer<MainForm>& form : order)
            if (form) form->CloseWithoutAsking();
    });
}

bool Shell::Exiting() const {
    return operations_.Running("Exit");
}

void Shell::WindowClosed(MainForm* form) {
    std::erase(forms_, form);
    if (!forms_.empty()) return;
    SavePreferences(app_.settings, app_.prefs);
    SaveSigmaParams(app_.settings, app_.sigma);
    SavePureWaterParams(app_.settings, app_.pureWater);
    QCoreApplication::exit(0);
}

}  // namespace marisonde
