#include "app/OpenFile.h"

#include <algorithm>
#include <filesystem>

#include "app/ConnectCommand.h"
#include "app/DataWindow.h"
#include "app/FileDialogs.h"
#include "app/GraphSetup.h"
#include "app/LoadStored.h"
#include "app/SaveCal.h"
#include "app/SelectCal.h"
#include "common/ConversionUtils.h"
#include "platform/Operations.h"

namespace marisonde {

namespace {

Question ModifiedQuestion() {
    return {
        "You have modified the calibration data associated with this window.  To open a new window with the "
        "modified calibration you must first save the changes.  Save the changes now?",
        "Save As...", "Don'tSave", "Cancel"};
}

bool IsCalFile(const std::string& path) {
    return LowerCase(std::filesystem::path(path).extension().string()) == ".cal";
}

/// A name that still holds when the program is started elsewhere the next time.
std::string Absolute(const std::string& path) {
    std::error_code reason;
    const std::filesystem::path absolute = std::filesystem::absolute(path, reason);
    return reason ? path : absolute.string();
}

bool HasDataFile(const DataWindow& window) {
    return window.Stored.IsShown() || window.Files.AnyOpen() || window.Files.HasUnsavedData();
}

/// A window that already holds something is not used again.
bool IsBusy(const DataWindow& window, const CalibrationDataClass& cal) {
    const DataWindowState& state = window.Link.State;
    return state.Connected || HasDataFile(window) ||
           (state.CalReady && window.Link.CalData.InstType != cal.InstType);
}

/// The calibration as its file has it. One that came from an instrument has no file: then as the window
/// holds it.
CalibrationDataClass CalToUse(DataWindow& window, const std::string& calFile) {
    const std::string name = calFile.empty() ? window.Link.CalData.SavedFile() : calFile;
    CalibrationDataClass cal;
    std::error_code passedOver;
    if (std::filesystem::exists(name, passedOver)) {
        const CalFileResult read = cal.LoadSourceFile(name, window.App().sigma, window.App().pureWater);
        if (read.ok) return cal;
        window.Ask().ShowError(read.error);
    }
    return window.Link.CalData;
}

/// Edits that no file has would be missing in a new window. False: the user does not want to open one.
QCoro::Task<bool> ChangesAreKept(Operation& operation, DataWindow& window) {
    if (window.Link.CalData.ChangedItems == 0) co_return true;
    const Question question = ModifiedQuestion();
    const Choice choice = co_await window.Ask().ShowChoiceDialog(operation, question);
    if (choice == Choice::Third) co_return false;
    if (choice == Choice::First) {
        const bool saved = co_await SaveCalFileAs(operation, window);
        co_return saved;
    }
    const std::string text =
        "The new window will be opened with the unmodified version of " + window.Link.CalData.SavedFile();
    co_await window.Ask().ShowMessage(operation, text);
    co_return true;
}

void UseCalibration(DataWindow& window, const CalibrationDataClass& cal, const std::string& calFile) {
    window.UseCalibration(cal);
    if (!calFile.empty()) window.App().prefs.CalFile = calFile;
    if (window.OnInstrumentChanged) window.OnInstrumentChanged();
}

QCoro::Task<> OpenElsewhere(Operation& operation, DataWindow& window, const DataChoice& choice,
                            const ShowNewWindow& newWindow) {
    const bool kept = co_await ChangesAreKept(operation, window);
    if (!kept || operation.Cancelled()) co_return;
    DataWindow* const other = newWindow();
    if (other == nullptr) {
        window.Ask().ShowError(WindowLimitText());
        co_return;
    }
    const CalibrationDataClass cal = CalToUse(window, choice.calFile);
    if (window.Link.State.CalReady || !choice.calFile.empty()) UseCalibration(*other, cal, choice.calFile);
    CopyGraphSettings(window, *other);
    StartLoad(*other, choice.file);
}

}  // namespace

QCoro::Task<> OpenFile(Operation& operation, DataWindow& window, DataChoice choice, bool forceNew,
                       ShowNewWindow newWindow) {
    const CalibrationDataClass cal =
        choice.calFile.empty() ? window.Link.CalData : CalToUse(window, choice.calFile);
    if (forceNew || IsBusy(window, cal)) {
        co_await OpenElsewhere(operation, window, choice, newWindow);
        co_return;
    }
    const bool kept = co_await SaveCalIfChanged(operation, window);
    if (!kept || operation.Cancelled()) co_return;
    if (!choice.calFile.empty()) UseCalibration(window, cal, choice.calFile);
    // The layout may still be that of a calibrated file, or of an instrument without a calibration.
    if (!choice.file.IsCalibrated() && window.Plot.Model() != window.Link.CalData.InstType)
        UseCalibration(window, window.Link.CalData, "");
    StartLoad(window, choice.file);
}

QCoro::Task<> OpenFileCommand(Operation& operation, DataWindow& window, ShowNewWindow newWindow) {
    Preferences& prefs = window.App().prefs;
    const std::string folder = prefs.OpenPath;
    const std::string path = co_await OpenDataDialog(operation, window.Ask(), folder);
    if (path.empty() || operation.Cancelled()) co_return;
    prefs.OpenPath = std::filesystem::path(path).parent_path().string() + "/";
    const std::optional<DataChoice> choice = co_await CheckDataFile(operation, window, path);
    if (choice && !operation.Cancelled()) co_await OpenFile(operation, window, *choice, false, newWindow);
}

QCoro::Task<> OpenGivenFiles(Operation& operation, DataWindow& window, std::vector<std::string> paths,
                             ShowNewWindow newWindow) {
    for (std::string& path : paths) path = Absolute(path);
    std::stable_partition(paths.begin(), paths.end(), IsCalFile);
    for (const std::string& path : paths) {
        if (operation.Cancelled()) co_return;
        if (IsCalFile(path)) {
            co_await SelectCalFile(operation, window, path);
            continue;
        }
        const std::optional<DataChoice> choice = co_await CheckDataFile(operation, window, path);
        if (choice && !operation.Cancelled()) co_await OpenFile(operation, window, *choice, false, newWindow);
    }
}

}  // namespace marisonde
