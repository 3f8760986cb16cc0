#include "app/SelectCal.h"

#include <filesystem>
#include <string>

#include "app/DataWindow.h"
#include "app/FileDialogs.h"
#include "app/Shutdown.h"
#include "platform/Operations.h"

namespace marisonde {

namespace {

Question FilesAreOpen() {
    return {
        "Some data have already been collected using the current calibration file.  Before changing "
        "calibration files you must close the current data file.",
        "", "Close File", "Cancel"};
}

Question OtherModel(const CalFileType& file, InstTypeCode connected) {
    const std::string model(InstTypeName(connected));
    return {"The selected calibration type is '" + std::string(InstTypeName(file.type)) + "', but a " +
                model + " is connected.  Do you wish to disconnect from the " + model + "?",
            "Disconnect", "Cancel", ""};
}

Question OtherSerial(const CalFileType& file, const std::string& connected) {
    return {"The serial number of the file (" + file.serial +
                ") does not match that of the connected instrument (" + connected + ").  Use it anyway?",
            "Yes", "Cancel", ""};
}

/// The file against the connected instrument. False: the user does not want it.
QCoro::Task<bool> FitsConnected(Operation& operation, DataWindow& window, const CalFileType& file) {
    const DataWindowState& state = window.Link.State;
    if (file.type != state.InstType) {
        const Question question = OtherModel(file, state.InstType);
        const Choice choice = co_await window.Ask().ShowChoiceDialog(operation, question);
        if (choice != Choice::First) co_return false;
        window.Link.ClosePort();
        co_return true;
    }
    if (SerialMatches(file.serial, state.InstSerial)) co_return true;
    const Question question = OtherSerial(file, state.InstSerial);
    const Choice choice = co_await window.Ask().ShowChoiceDialog(operation, question);
    co_return choice == Choice::First;
}

}  // namespace

QCoro::Task<bool> SelectCalCommand(Operation& operation, DataWindow& window) {
    if (window.Files.AnyOpen()) {
        const Question question = FilesAreOpen();
        const Choice choice = co_await window.Ask().ShowChoiceDialog(operation, question);
        if (choice != Choice::Second) co_return false;
        const bool closed = co_await CloseDataFiles(operation, window, true);
        if (!closed) co_return false;
    }
    Preferences& prefs = window.App().prefs;
    const std::string folder = prefs.OpenCalPath;
    const std::string name = co_await OpenCalDialog(operation, window.Ask(), folder);
    if (name.empty() || operation.Cancelled()) co_return false;
    std::error_code passedOver;
    if (!std::filesystem::exists(name, passedOver)) {
        const std::string text = "Could not find '" + name + "'";
        co_await window.Ask().ShowMessage(operation, text);
        co_return false;
    }
    prefs.OpenCalPath = std::filesystem::path(name).parent_path().string() + "/";
    if (window.Link.State.Connected) {
        const CalFileType file = GetCalFileType(name);
        const bool fits = co_await FitsConnected(operation, window, file);
        if (!fits) co_return false;
    }
    const bool loaded = window.LoadCalIntoWindow(name);
    if (loaded && window.OnInstrumentChanged) window.OnInstrumentChanged();
    co_return loaded;
}

}  // namespace marisonde
