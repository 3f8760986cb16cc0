#include "app/Shutdown.h"

#include <string>

#include "app/DataWindow.h"
#include "app/SaveCal.h"
#include "app/SaveFile.h"
#include "files/DataFileQuestions.h"
#include "link/Commands.h"
#include "platform/Operations.h"

namespace marisonde {

namespace {

Question SleepQuestion(const DataWindow& window) {
    return {"Put the " + std::string(InstTypeName(window.Link.State.InstType)) +
                " to sleep before disconnecting?",
            "Yes", "No", "Cancel"};
}

Question NotConfirmedQuestion() {
    return {"The instrument did not confirm the sleep command.  Disconnect anyway?", "Yes", "No", "Cancel"};
}

/// What the user is told the unsaved data came from: the file while it has a name, else the instrument's
/// serial.
std::string SourceOf(const DataWindow& window) {
    const auto& named = window.Files.State().rawFinal;
    return named.empty() ? window.Link.State.InstSerial : named.string();
}

/// Saves under the names that the files have. What the instrument sent may have none beside its calibrated
/// file, and would be gone: then the user is asked.
QCoro::Task<bool> SaveBeforeClosing(Operation& operation, DataWindow& window) {
    const DataFileState& files = window.Files.State();
    const bool rawIsUnnamed = !files.rawTemporary.empty() && files.rawFinal.empty();
    bool saved = false;
    if (rawIsUnnamed && !files.datFinal.empty())
        saved = co_await SaveAsMenuCommand(operation, window);
    else
        saved = co_await SaveFileMenuCommand(operation, window);
    co_return saved;
}

QCoro::Task<bool> PutToSleep(Operation& operation, DataWindow& window) {
    const DataWindowState& state = window.Link.State;
    // It may have gone to sleep while the question stood, and the same command would wake it.
    if (state.InstState != InstStateCode::Sleeping) SendCommandNow("SETSLEEP", window.Link);
    window.Busy = true;
    co_await operation.Until([&state] { return state.InstState == InstStateCode::Sleeping; },
                             std::chrono::seconds(kSleepConfirmSeconds));
    window.Busy = false;
    co_return state.InstState == InstStateCode::Sleeping;
}

}  // namespace

QCoro::Task<bool> CloseDataFiles(Operation& operation, DataWindow& window, bool ask) {
    const DataWindowState& state = window.Link.State;
    const std::string model(InstTypeName(state.InstType));
    co_await SaveHasEnded(operation, window);
    bool saves = false;
    if (ask && window.Files.HasUnsavedData()) {
        const Question unsaved = UnsavedDataQuestion(model, SourceOf(window));
        const Choice choice = co_await window.Ask().ShowChoiceDialog(operation, unsaved);
        if (choice == Choice::Third) co_return false;
        if (choice == Choice::First) {
            saves = co_await SaveBeforeClosing(operation, window);
            if (!saves) co_return false;
        }
    }
    if (ask && window.Files.AnyOpen() && AsksBeforeClosingFiles(state.InstState)) {
        const Question receiving = ReceivingDataQuestion(model);
        const Choice choice = co_await window.Ask().ShowChoiceDialog(operation, receiving);
        if (choice != Choice::First) co_return false;
    }
    // What came while the questions stood is wanted as well.
    if (saves && window.Files.HasUnsavedData()) {
        const bool saved = co_await SaveFileMenuCommand(operation, window);
        if (!saved) co_return false;
    }
    for (const std::string& error : window.Files.CloseDataFiles(false)) window.Ask().ShowError(error);
    window.ClearShownData();
    co_return true;
}

QCoro::Task<bool> DisconnectCommand(Operation& operation, DataWindow& window) {
    const DataWindowState& state = window.Link.State;
    const bool awake = state.Connected && state.InstState != InstStateCode::Sleeping;
    if (awake) {
        const Question sleep = SleepQuestion(window);
        const Choice choice = co_await window.Ask().ShowChoiceDialog(operation, sleep);
        if (choice == Choice::Third) co_return false;
        if (choice == Choice::First) {
            const bool asleep = co_await PutToSleep(operation, window);
            if (!asleep) {
                const Question anyway = NotConfirmedQuestion();
                const Choice answer = co_await window.Ask().ShowChoiceDialog(operation, anyway);
                if (answer != Choice::First) co_return false;
            }
        }
    }
    window.Link.ClosePort();
    co_return true;
}

QCoro::Task<bool> PrepToCloseForm(Operation& operation, DataWindow& window) {
    const bool closed = co_await CloseDataFiles(operation, window, true);
    if (!closed) co_return false;
    const bool kept = co_await SaveCalIfChanged(operation, window);
    if (!kept) co_return false;
    const bool disconnected = co_await DisconnectCommand(operation, window);
    co_return disconnected;
}

}  // namespace marisonde
