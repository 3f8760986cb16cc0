#include "app/SaveCal.h"

#include <filesystem>
#include <string>

#include "app/DataWindow.h"
#include "app/FileDialogs.h"
#include "platform/Operations.h"

namespace marisonde {

namespace {

Question ChangedQuestion() {
    return {"The current calibration data have changed. Save changes to the file before closing?",
            "Save As...", "Don't Save", "Cancel"};
}

std::string ProposedName(const DataWindow& window, const std::string& folder) {
    const CalibrationDataClass& cal = window.Link.CalData;
    std::error_code passedOver;
    if (std::filesystem::exists(cal.SourceFile(), passedOver)) return cal.SourceFile();
    return folder + (cal.Serial.empty() ? std::string(InstTypeName(cal.InstType)) : cal.Serial) + ".cal";
}

}  // namespace

QCoro::Task<bool> SaveCalFileAs(Operation& operation, DataWindow& window) {
    AppContext& app = window.App();
    const std::string proposed = ProposedName(window, app.prefs.OpenCalPath);
    const SaveFileAnswer answer =
        co_await SaveFileDialog(operation, window.Ask(), app.settings, SaveSource::Calibration, proposed);
    if (answer.path.empty()) co_return false;
    const CalFileResult saved = window.Link.CalData.SaveAsFile(answer.path, app.pureWater);
    if (saved.ok)
        app.prefs.CalFile = answer.path;
    else
        window.Ask().ShowError(saved.error);
    co_return saved.ok;
}

QCoro::Task<bool> SaveCalIfChanged(Operation& operation, DataWindow& window) {
    if (window.Link.CalData.ChangedItems == 0) co_return true;
    const Question question = ChangedQuestion();
    const Choice choice = co_await window.Ask().ShowChoiceDialog(operation, question);
    if (choice == Choice::Third) co_return false;
    if (choice == Choice::Second) co_return true;
    const bool saved = co_await SaveCalFileAs(operation, window);
    co_return saved;
}

}  // namespace marisonde
