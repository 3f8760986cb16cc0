#include "app/SelectCal.h"

#include <string>

#include "app/CheckDataFile.h"
#include "app/DataWindow.h"
#include "app/Recalculate.h"
#include "app/SaveCal.h"
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

Question AlreadyCalibrated() {
    return {
        "The currently displayed file is already calibrated.  You can select a new calibration file but it "
        "will not be applied to this file.  ",
        "Select", "Cancel", ""};
}

Question OtherModelThanData(const CalFileType& file, InstTypeCode data) {
    return {"You selected a " + std::string(InstTypeName(file.type)) +
                " calibration file, but the open data file contains " + std::string(InstTypeName(data)) +
                " data.  Do you wish to close the data file ?",
            "Close File", "Cancel", ""};
}

Question OtherSerialThanData(const CalFileType& file, const std::string& data) {
    return {"The serial number of the calibration you selected (" + file.serial +
                ") does not match that of the loaded data file (" + data + ").  Use it anyway?",
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

/// The file against the data on the graph. False: the user does not want it.
QCoro::Task<bool> FitsStored(Operation& operation, DataWindow& window, const CalFileType& file) {
    const StoredFile stored = window.Stored;
    if (!stored.IsShown() || stored.type == InstTypeCode::Unknown) co_return true;
    if (!TypesAreCompatible(file.type, stored.type)) {
        const Question question = OtherModelThanData(file, stored.type);
        const Choice choice = co_await window.Ask().ShowChoiceDialog(operation, question);
        if (choice != Choice::First) co_return false;
        const bool closed = co_await CloseDataFiles(operation, window, true);
        co_return closed;
    }
    if (SerialMatches(file.serial, stored.serial)) co_return true;
    const Question question = OtherSerialThanData(file, stored.serial);
    const Choice choice = co_await window.Ask().ShowChoiceDialog(operation, question);
    co_return choice == Choice::First;
}

/// Nothing stands in the way of another calibration. False: the user wants to keep what there is.
QCoro::Task<bool> MayChangeCal(Operation& operation, DataWindow& window) {
    if (window.Files.AnyOpen()) {
        const Question question = FilesAreOpen();
        const Choice choice = co_await window.Ask().ShowChoiceDialog(operation, question);
        if (choice != Choice::Second) co_return false;
        const bool closed = co_await CloseDataFiles(operation, window, true);
        if (!closed) co_return false;
    } else if (window.Stored.IsShown() && window.Stored.IsCalibrated()) {
        const Question question = AlreadyCalibrated();
        const Choice choice = co_await window.Ask().ShowChoiceDialog(operation, question);
        if (choice != Choice::First) co_return false;
    }
    const bool kept = co_await SaveCalIfChanged(operation, window);
    co_return kept && !operation.Cancelled();
}

QCoro::Task<bool> UseCalFile(Operation& operation, DataWindow& window, const std::string& name) {
    const DataWindowState& state = window.Link.State;
    const CalFileType file = GetCalFileType(name);
    bool fits = false;
    if (state.Connected)
        fits = co_await FitsConnected(operation, window, file);
    else
        fits = co_await FitsStored(operation, window, file);
    if (!fits) co_return false;
    const bool loaded = window.LoadCalIntoWindow(name);
    if (!loaded) co_return false;
    if (window.OnInstrumentChanged) window.OnInstrumentChanged();
    const bool calibrated = window.Stored.IsShown() && window.Stored.IsCalibrated();
    if (!calibrated) RecalculateWindow(window);
    co_return true;
}

}  // namespace

QCoro::Task<bool> SelectCalCommand(Operation& operation, DataWindow& window) {
    const bool mayChange = co_await MayChangeCal(operation, window);
    if (!mayChange) co_return false;
    const std::string name = co_await ChooseCalFile(operation, window);
    if (name.empty()) co_return false;
    const bool used = co_await UseCalFile(operation, window, name);
    co_return used;
}

QCoro::Task<bool> SelectCalFile(Operation& operation, DataWindow& window, std::string path) {
    const bool mayChange = co_await MayChangeCal(operation, window);
    if (!mayChange) co_return false;
    const bool used = co_await UseCalFile(operation, window, path);
    co_return used;
}

}  // namespace marisonde
