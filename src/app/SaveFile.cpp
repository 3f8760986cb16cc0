#include "app/SaveFile.h"

#include <array>
#include <filesystem>
#include <string>

#include "app/DataWindow.h"
#include "app/FileDialogs.h"
#include "files/ConvertFile.h"
#include "files/DataFileQuestions.h"
#include "platform/Operations.h"

namespace marisonde {

namespace {

namespace fs = std::filesystem;

constexpr std::array kKinds{DataFileKind::Raw, DataFileKind::Dat};

std::string ErrorWhileSaving(const FileError& error, const fs::path& name) {
    return "Error" + std::to_string(error.code) + " (" + error.text + ") occurred while saving " +
           name.string();
}

std::string ErrorWhileConverting(int code, const fs::path& name) {
    return "Error " + std::to_string(code) + " occurred while saving " + name.string();
}

std::string NoNewDataText(const FileError& error, const fs::path& name) {
    return "Error " + std::to_string(error.code) + " (" + error.text + ") occured while attempting to open " +
           name.string() + " for appending.  No new data will be saved.";
}

/// Where the raw data of a window lie, and the calibrated ones as they were recorded or read.
struct Sources {
    fs::path raw;
    fs::path dat;
    fs::path name;  ///< what the user knows them by; empty while unnamed
};

Sources SourcesOf(const DataWindow& window) {
    const StoredFile& stored = window.Stored;
    if (stored.IsShown()) {
        if (stored.IsCalibrated()) return {{}, stored.path, stored.path};
        return {stored.path, {}, stored.path};
    }
    const DataFileState& files = window.Files.State();
    const fs::path& name = files.rawFinal.empty() ? files.datFinal : files.rawFinal;
    return {files.rawTemporary, files.datTemporary, name};
}

DataFilesToSave WhatCanBeSaved(const DataWindow& window, const Sources& sources) {
    const bool convertible = !sources.raw.empty() && window.Link.State.CalReady;
    return {!sources.raw.empty(), !sources.dat.empty() || convertible};
}

void TellWhereDataAre(DataWindow& window, const DataFileTrouble& trouble) {
    window.Ask().ShowSaveError(SaveFileErrorText(trouble.name, trouble.temporary, trouble.error),
                               trouble.temporary.parent_path().string());
}

/// One file under the user's name. False: it could not be saved.
QCoro::Task<bool> SaveCopyAs(Operation& operation, DataWindow& window, DataFileKind kind, fs::path source,
                             fs::path name) {
    std::error_code passedOver;
    if (fs::equivalent(source, name, passedOver)) co_return true;
    std::optional<DataFileTrouble> trouble;
    if (!window.Stored.IsShown())
        trouble = window.Files.SaveCopy(kind, name);
    else if (const FileError error = CopyDataFile(source, name))
        trouble = DataFileTrouble{kind, name, {}, error};
    if (!trouble) co_return true;
    const std::string text = ErrorWhileSaving(trouble->error, name);
    co_await window.Ask().ShowMessage(operation, text);
    if (!trouble->temporary.empty()) TellWhereDataAre(window, *trouble);
    co_return false;
}

/// Calibrated data that nobody recorded, made of the raw ones. False: not saved.
QCoro::Task<bool> ConvertAs(Operation& operation, DataWindow& window, fs::path source, fs::path name) {
    const AppContext& app = window.App();
    const HeaderStamp stamp{app.prefs.UserHeader, app.clock.Now()};
    if (const auto trouble = window.Files.FlushNow(DataFileKind::Raw)) TellWhereDataAre(window, *trouble);
    FileConversion conversion =
        FileConversion::ToDat(source, name, stamp, window.Link.CalData, app.sigma, app.pureWater);
    window.ProgressTitle = "Saving Calibrated Data";
    const auto nextTurn = [] { return false; };
    constexpr Millis kNoTime{0};
    constexpr int kLinesPerTurn = 20 * kLinesPerProgress;
    while (conversion.Run(kLinesPerTurn)) {
        window.LoadProgress = conversion.Progress();
        co_await operation.Until(nextTurn, kNoTime);
        if (operation.Cancelled()) conversion.Cancel();
    }
    window.LoadProgress.reset();
    const ConversionResult& result = conversion.Result();
    if (result.outcome == ConversionResult::Outcome::Written) co_return true;
    if (result.outcome == ConversionResult::Outcome::Failed) {
        window.Ask().ShowError(result.message);
        const std::string text = ErrorWhileConverting(result.code, name);
        co_await window.Ask().ShowMessage(operation, text);
    }
    co_return false;
}

QCoro::Task<bool> SaveOne(Operation& operation, DataWindow& window, DataFileKind kind, fs::path base) {
    const Sources sources = SourcesOf(window);
    const fs::path name = FinalDataPath(base, kind);
    const fs::path& there = kind == DataFileKind::Raw ? sources.raw : sources.dat;
    bool saved = false;
    if (there.empty())
        saved = co_await ConvertAs(operation, window, sources.raw, name);
    else
        saved = co_await SaveCopyAs(operation, window, kind, there, name);
    co_return saved;
}

QCoro::Task<void> ShowNothingToSave(Operation& operation, DataWindow& window) {
    const std::string text = "No data loaded.  Cannot save any files.";
    co_await window.Ask().ShowMessage(operation, text);
}

}  // namespace

QCoro::Task<bool> SaveAsMenuCommand(Operation& operation, DataWindow& window) {
    const Sources sources = SourcesOf(window);
    const DataFilesToSave there = WhatCanBeSaved(window, sources);
    if (!there.raw && !there.dat) {
        co_await ShowNothingToSave(operation, window);
        co_return false;
    }
    AppContext& app = window.App();
    const std::string proposed =
        sources.name.empty() ? app.prefs.SavePath + window.DefaultFileName() : sources.name.string();
    const SaveSource kind = there.raw ? SaveSource::RawData : SaveSource::LiveData;
    const SaveFileAnswer answer =
        co_await SaveFileDialog(operation, window.Ask(), app.settings, kind, proposed, there);
    if (answer.path.empty() || operation.Cancelled()) co_return false;
    app.prefs.SavePath = fs::path(answer.path).parent_path().string() + "/";
    const fs::path base = answer.path;
    // What keeps one file from its place is likely to keep the other, and is told once.
    bool saved = true;
    if (answer.files.dat) saved = co_await SaveOne(operation, window, DataFileKind::Dat, base);
    if (answer.files.raw && saved) saved = co_await SaveOne(operation, window, DataFileKind::Raw, base);
    if (saved) window.StatusLine = "Saved to " + base.parent_path().string() + ".";
    co_return saved;
}

QCoro::Task<bool> SaveFileMenuCommand(Operation& operation, DataWindow& window) {
    if (window.Stored.IsShown()) {
        window.StatusLine = window.Stored.path.filename().string() +
                            " is as it was: there is nothing to save.  Use \"Save As...\" for a copy.";
        co_return true;
    }
    const Sources sources = SourcesOf(window);
    if (sources.name.empty()) {
        const bool saved = co_await SaveAsMenuCommand(operation, window);
        co_return saved;
    }
    for (const DataFileKind kind : kKinds) {
        const DataFileState files = window.Files.State();
        const fs::path name = kind == DataFileKind::Raw ? files.rawFinal : files.datFinal;
        if (name.empty()) continue;
        if (const auto trouble = window.Files.SaveCopy(kind, name)) {
            TellWhereDataAre(window, *trouble);
            co_return false;
        }
        if (const FileError error = window.Files.OpenForAppending(kind)) {
            const std::string text = NoNewDataText(error, name);
            co_await window.Ask().ShowMessage(operation, text);
        }
    }
    window.StatusLine = "Saved to " + sources.name.parent_path().string() + ".";
    co_return true;
}

}  // namespace marisonde
