#include "app/SaveFile.h"

#include <array>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>

#include "app/BatchConversion.h"
#include "app/DataWindow.h"
#include "app/FileDialogs.h"
#include "app/Slices.h"
#include "files/ConvertFile.h"
#include "files/DataFileQuestions.h"
#include "files/FileCopy.h"
#include "files/LineReader.h"
#include "files/RawFile.h"
#include "platform/Operations.h"
#include "platform/Recovery.h"

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

/// `purpose`: what the file was to be opened for.
std::string NoNewDataText(const FileError& error, const fs::path& name, const char* purpose) {
    return "Error " + std::to_string(error.code) + " (" + error.text + ") occured while attempting to open " +
           name.string() + " for " + purpose + ".  No new data will be saved.";
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

/// A running copy of the program records under that name, or may at any time, and deletes it afterwards.
bool IsForRecording(const AppContext& app, const fs::path& name) {
    if (!IsTemporaryDataName(name.filename().string())) return false;
    std::error_code unknown;
    const fs::path copies = fs::canonical(name.parent_path(), unknown).parent_path();
    return fs::equivalent(copies, app.temporaryFolder.parent_path(), unknown);
}

std::string ForRecordingText(const fs::path& name) {
    return name.string() +
           " is a name that data are recorded under until they are saved.  Choose another folder.";
}

DataFilesToSave WhatCanBeSaved(const DataWindow& window, const Sources& sources) {
    const bool convertible = !sources.raw.empty() && window.Link.State.CalReady;
    return {!sources.raw.empty(), !sources.dat.empty() || convertible};
}

void TellWhereDataAre(DataWindow& window, const DataFileTrouble& trouble) {
    if (trouble.temporary.empty())
        return window.Ask().ShowError(ErrorWhileSaving(trouble.error, trouble.name));
    window.Ask().ShowSaveError(SaveFileErrorText(trouble.name, trouble.temporary, trouble.error),
                               trouble.temporary.parent_path().string());
}

/// Takes the steps of a save while the window lives on. False: the user has stopped it.
QCoro::Task<bool> RunSave(Operation& operation, DataWindow& window, std::string_view title,
                          const std::function<bool()>& step, const std::function<ReadProgress()>& progress) {
    window.StopSaving = false;
    window.SaveTitle = title;
    const std::function<bool()> unlessStopped = [&] { return !window.StopSaving && step(); };
    const std::function<void()> shown = [&] { window.SaveProgress = progress(); };
    co_await RunInSlices(operation, window.App().clock, unlessStopped, shown);
    window.SaveProgress.reset();
    if (window.StopSaving) window.StatusLine = "Saving was stopped.";
    co_return !window.StopSaving && !operation.Cancelled();
}

/// How the copy of a file ended. Neither made nor in trouble: the user has stopped it.
struct CopyEnd {
    bool made = false;
    std::optional<DataFileTrouble> trouble;
};

/// What a window has recorded, or the file that it shows, under another name.
QCoro::Task<CopyEnd> CopyAs(Operation& operation, DataWindow& window, DataFileKind kind, fs::path source,
                            fs::path name) {
    const bool recorded = !window.Stored.IsShown();
    CopyEnd end;
    if (recorded) end.trouble = window.Files.FlushNow(kind);
    if (end.trouble) co_return end;
    // What comes while the copy is made is not in it.
    const CopyMark mark = window.Files.MarkForCopy(kind);
    FileCopy copy(source, name);
    const std::function<bool()> step = [&] { return copy.Run(); };
    const std::function<ReadProgress()> progress = [&] { return copy.Progress(); };
    const std::string_view title = kind == DataFileKind::Raw ? "Saving Raw Data" : BatchTitle(false);
    const bool ended = co_await RunSave(operation, window, title, step, progress);
    if (!ended) co_return end;
    if (recorded)
        end.trouble = window.Files.NoteCopy(kind, name, mark, copy.Error());
    else if (copy.Error())
        end.trouble = DataFileTrouble{kind, name, {}, copy.Error()};
    end.made = !end.trouble;
    co_return end;
}

/// A recording that a full disk had ended is taken up again behind what has been saved of it.
QCoro::Task<> GoOnRecording(Operation& operation, DataWindow& window, DataFileKind kind, fs::path name) {
    if (const FileError error = window.Files.OpenForAppending(kind)) {
        const std::string text = NoNewDataText(error, name, "appending");
        co_await window.Ask().ShowMessage(operation, text);
    }
}

/// One file under the user's name. False: it could not be saved.
QCoro::Task<bool> SaveCopyAs(Operation& operation, DataWindow& window, DataFileKind kind, fs::path source,
                             fs::path name) {
    const bool recorded = !window.Stored.IsShown();
    std::error_code passedOver;
    if (!recorded && fs::equivalent(source, name, passedOver)) co_return true;
    const CopyEnd end = co_await CopyAs(operation, window, kind, source, name);
    if (end.made && recorded) co_await GoOnRecording(operation, window, kind, name);
    if (!end.trouble) co_return end.made;
    const std::string text = ErrorWhileSaving(end.trouble->error, name);
    co_await window.Ask().ShowMessage(operation, text);
    if (!end.trouble->temporary.empty()) TellWhereDataAre(window, *end.trouble);
    co_return false;
}

/// Calibrated data that nobody recorded, made of the raw ones. False: not saved.
QCoro::Task<bool> ConvertAs(Operation& operation, DataWindow& window, fs::path source, fs::path name) {
    const AppContext& app = window.App();
    const HeaderStamp stamp{app.prefs.UserHeader, app.clock.Now()};
    if (const auto trouble = window.Files.FlushNow(DataFileKind::Raw)) TellWhereDataAre(window, *trouble);
    // The instrument may be in the middle of a line, whose beginning alone can look like another record.
    const std::uint64_t most = window.Stored.IsShown() ? LineReader::kWhole : WholeLinesLength(source);
    FileConversion conversion = FileConversion::ToDat(source, name, stamp, window.Link.CalData, app.sigma,
                                                      app.pureWater, MakeDiskFile, most);
    const std::function<bool()> step = [&] { return conversion.Run(kLinesPerProgress); };
    const std::function<ReadProgress()> progress = [&] { return conversion.Progress(); };
    const std::string_view title = BatchTitle(false);
    co_await RunSave(operation, window, title, step, progress);
    const ConversionResult& result = conversion.Result();
    if (result.outcome == ConversionResult::Outcome::Written) co_return true;
    if (!result.message.empty()) {
        window.Ask().ShowError(result.message);
        const std::string text = ErrorWhileConverting(result.code, name);
        co_await window.Ask().ShowMessage(operation, text);
    }
    co_return false;
}

QCoro::Task<bool> SaveOne(Operation& operation, DataWindow& window, DataFileKind kind, fs::path base) {
    co_await SaveHasEnded(operation, window);
    const Sources sources = SourcesOf(window);
    const fs::path name = FinalDataPath(base, kind);
    if (IsForRecording(window.App(), name)) {
        const std::string text = ForRecordingText(name);
        co_await window.Ask().ShowMessage(operation, text);
        co_return false;
    }
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

/// Begins files anew that somebody has removed while they were recorded: there is nothing left to save, but
/// what comes shall not be lost too.
QCoro::Task<> RecordAnew(Operation& operation, DataWindow& window) {
    for (const DataFileKind kind : kKinds) {
        if (!window.Files.HasVanished(kind)) continue;
        const DataFileState files = window.Files.State();
        const fs::path path = kind == DataFileKind::Raw ? files.rawTemporary : files.datTemporary;
        window.StatusLine = path.string() + " has been removed.  What comes is recorded in a new file.";
        if (const FileError error = window.BeginFileAnew(kind)) {
            const std::string text = NoNewDataText(error, path, "writing");
            window.StatusLine = text;
            co_await window.Ask().ShowMessage(operation, text);
        }
    }
}

}  // namespace

QCoro::Task<> SaveHasEnded(Operation& operation, DataWindow& window) {
    const auto ended = [&window] { return !window.SaveProgress; };
    co_await operation.Until(ended);
}

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
    co_await SaveHasEnded(operation, window);
    const bool vanished =
        window.Files.HasVanished(DataFileKind::Raw) || window.Files.HasVanished(DataFileKind::Dat);
    if (vanished) {
        co_await RecordAnew(operation, window);
        co_return false;
    }
    const Sources sources = SourcesOf(window);
    if (sources.name.empty()) {
        const bool saved = co_await SaveAsMenuCommand(operation, window);
        co_return saved;
    }
    for (const DataFileKind kind : kKinds) {
        const DataFileState files = window.Files.State();
        const bool raw = kind == DataFileKind::Raw;
        const fs::path& source = raw ? files.rawTemporary : files.datTemporary;
        const fs::path& name = raw ? files.rawFinal : files.datFinal;
        if (name.empty()) continue;
        const CopyEnd end = co_await CopyAs(operation, window, kind, source, name);
        if (end.trouble) TellWhereDataAre(window, *end.trouble);
        if (!end.made) co_return false;
        co_await GoOnRecording(operation, window, kind, name);
    }
    window.StatusLine = "Saved to " + sources.name.parent_path().string() + ".";
    co_return true;
}

}  // namespace marisonde
