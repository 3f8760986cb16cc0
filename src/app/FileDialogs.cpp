#include "app/FileDialogs.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <system_error>

#include "common/ConversionUtils.h"
#include "common/Numbers.h"
#include "files/DataFiles.h"
#include "platform/Operations.h"

namespace marisonde {

namespace {

constexpr FileFilter kCalFile{"Calibration File (*.cal)", "*.cal", "cal"};
constexpr FileFilter kOldCalFile{"Old Calibration File (*.ini)", "*.ini", "ini"};
constexpr FileFilter kAllFiles{"All Files (*.*)", "*.*", ""};
constexpr FileFilter kRawOrDat{"Raw or Calibrated Data (*.raw, *.dat)", "*.raw;*.dat", "raw"};
constexpr FileFilter kRawFile{"Raw Data File (*.raw)", "*.raw", "raw"};
constexpr FileFilter kDatFile{"Calibrated Data File (*.dat)", "*.dat", "dat"};
constexpr FileFilter kCsvFile{"Comma-separated Values File (*.csv)", "*.csv", "csv"};

constexpr std::array kSaveRaw{
    FileFilter{"Raw and Calibrated Data (*.raw, *.dat)", "*.raw;*.dat", "raw"},
    FileFilter{"Raw Data Only (*.raw)", "*.raw", "raw"},
    FileFilter{"Calibrated Data Only (*.dat)", "*.dat", "dat"},
};
constexpr std::array kSaveLive{FileFilter{"Calibrated Data (*.dat)", "*.dat", "dat"}};
constexpr std::array kSaveCal{kCalFile};
constexpr std::array kSaveGraphics{
    FileFilter{"Bitmap (*.bmp)", "*.bmp", "bmp"},
    FileFilter{"Standard Windows Metafile (*.wmf)", "*.wmf", "wmf"},
    FileFilter{"Enhanced Windows Metafile (*.emf)", "*.emf", "emf"},
    FileFilter{"High Quality JPEG (*.jpg)", "*.jpg", "jpg"},
    FileFilter{"Med Quality JPEG (*.jpg)", "*.jpg", "jpg"},
    FileFilter{"Low Quality/Compact JPEG (*.jpg)", "*.jpg", "jpg"},
};

constexpr std::array kOpenCal{kCalFile, kOldCalFile, kAllFiles};
constexpr std::array kOpenData{kRawOrDat, kRawFile, kDatFile, kAllFiles};
constexpr std::array kOpenAny{kCalFile, kOldCalFile, kAllFiles, kRawOrDat, kRawFile, kDatFile, kCsvFile};
constexpr std::array kOpenTable{kCsvFile, kAllFiles};

struct SaveRow {
    SaveSource source;
    std::span<const FileFilter> filters;
    std::string_view setting;  ///< key that keeps the choice; empty: it is not kept
};
constexpr std::array kSaveRows{
    SaveRow{SaveSource::RawData, kSaveRaw, "SaveRawType"},
    SaveRow{SaveSource::LiveData, kSaveLive, "SaveLiveType"},
    SaveRow{SaveSource::Calibration, kSaveCal, ""},
    SaveRow{SaveSource::Graphics, kSaveGraphics, ""},
};

const SaveRow* RowOf(SaveSource source) {
    const auto* const row = std::find_if(kSaveRows.begin(), kSaveRows.end(),
                                         [&](const SaveRow& r) { return r.source == source; });
    return row == kSaveRows.end() ? nullptr : row;
}

/// Types are kept by their place in the list, counted from 1.
int KeptFilter(const Settings& settings, const SaveRow& row) {
    if (row.setting.empty()) return 0;
    const int kept = ToInt32(Val(settings.GetSetting("App", row.setting, "1")));
    return std::clamp(kept, 1, static_cast<int>(row.filters.size())) - 1;
}

void KeepFilter(Settings& settings, const SaveRow& row, int filter) {
    if (!row.setting.empty()) settings.SaveSetting("App", row.setting, std::to_string(filter + 1));
}

bool IsData(SaveSource source) {
    return source == SaveSource::RawData || source == SaveSource::LiveData;
}

DataFilesToSave Narrowed(DataFilesToSave there, const FileFilter& filter) {
    const std::string_view pattern = filter.pattern;
    return {there.raw && pattern.find("*.raw") != std::string_view::npos,
            there.dat && pattern.find("*.dat") != std::string_view::npos};
}

std::vector<std::string> ExistingAmong(const std::vector<std::string>& paths) {
    std::vector<std::string> existing;
    std::error_code passedOver;
    for (const std::string& path : paths)
        if (std::filesystem::exists(path, passedOver)) existing.push_back(path);
    return existing;
}

std::vector<std::string> PathsToWrite(SaveSource source, const SaveFileAnswer& answer) {
    if (!IsData(source)) return {answer.path};
    std::vector<std::string> paths;
    if (answer.files.raw) paths.push_back(FinalDataPath(answer.path, DataFileKind::Raw).string());
    if (answer.files.dat) paths.push_back(FinalDataPath(answer.path, DataFileKind::Dat).string());
    return paths;
}

/// Whether there is something to write and nothing in its way that the user wants to keep.
QCoro::Task<bool> MayWrite(Operation& operation, Dialogs& dialogs, const std::vector<std::string>& paths) {
    if (paths.empty()) {
        std::string nothing = "This window holds no data of that type.";
        co_await dialogs.ShowMessage(operation, std::move(nothing));
        co_return false;
    }
    const std::vector<std::string> existing = ExistingAmong(paths);
    if (existing.empty()) co_return true;
    const Question question = ReplaceQuestion(existing);
    const Choice replace = co_await dialogs.ShowChoiceDialog(operation, question);
    co_return replace == Choice::First;
}

std::string UnknownSourceText(SaveSource source) {
    return "Notify Venmark: unknown source type in SaveFileDialog (" +
           std::to_string(static_cast<int>(source)) + ").";
}

}  // namespace

std::span<const FileFilter> SaveFilters(SaveSource source) {
    const SaveRow* const row = RowOf(source);
    return row == nullptr ? std::span<const FileFilter>() : row->filters;
}

std::span<const FileFilter> CalFilters() {
    return kOpenCal;
}

std::span<const FileFilter> DataFilters() {
    return kOpenData;
}

std::span<const FileFilter> AllFilters() {
    return kOpenAny;
}

std::string WithExtension(const std::string& path, const FileFilter& filter) {
    if (path.empty() || filter.extension.empty()) return path;
    const std::filesystem::path name(path);
    if (name.has_extension() && name.extension() != ".") return path;
    return std::filesystem::path(name).replace_extension(filter.extension).string();
}

std::span<const FileFilter> TableFilters() {
    return kOpenTable;
}

Question ReplaceQuestion(const std::vector<std::string>& existing) {
    const bool one = existing.size() == 1;
    std::string names = existing.empty() ? std::string() : existing.front();
    for (std::size_t i = 1; i < existing.size(); ++i) names += " and " + existing[i];
    return {names + (one ? " already exists.  Replace it?" : " already exist.  Replace them?"), "Yes", "No",
            ""};
}

Question FindFileQuestion(std::string_view name) {
    std::string message = "The file ";
    message.append(name).append(
        " could not be found in the specified path.  Would you like to help find it?");
    return {std::move(message), "Yes", "No", ""};
}

QCoro::Task<SaveFileAnswer> SaveFileDialog(Operation& operation, Dialogs& dialogs, Settings& settings,
                                           SaveSource source, std::string proposed, DataFilesToSave there) {
    SaveFileAnswer answer;
    const SaveRow* const row = RowOf(source);
    if (row == nullptr) {
        std::string unknown = UnknownSourceText(source);
        co_await dialogs.ShowMessage(operation, std::move(unknown));
        co_return answer;
    }
    FileRequest request{FileRequest::Purpose::Save, "Save As", std::move(proposed), row->filters,
                        KeptFilter(settings, *row)};
    while (!operation.Cancelled()) {
        const FileChoice choice = co_await dialogs.ChooseFile(operation, request);
        if (choice.path.empty()) co_return SaveFileAnswer();
        const FileFilter& filter = row->filters[static_cast<std::size_t>(choice.filter)];
        answer = {WithExtension(choice.path, filter), choice.filter, Narrowed(there, filter)};
        const std::vector<std::string> paths = PathsToWrite(source, answer);
        const bool mayWrite = co_await MayWrite(operation, dialogs, paths);
        if (mayWrite) {
            KeepFilter(settings, *row, choice.filter);
            co_return answer;
        }
        request.path = answer.path;
        request.filter = choice.filter;
    }
    co_return SaveFileAnswer();
}

QCoro::Task<std::string> OpenCalDialog(Operation& operation, Dialogs& dialogs, std::string folder) {
    const FileRequest request{FileRequest::Purpose::Open, "Select Calibration File", std::move(folder),
                              kOpenCal, 0};
    const FileChoice choice = co_await dialogs.ChooseFile(operation, request);
    co_return choice.path;
}

QCoro::Task<std::string> OpenDataDialog(Operation& operation, Dialogs& dialogs, std::string folder) {
    const FileRequest request{FileRequest::Purpose::Open, "Select Data File", std::move(folder), kOpenData,
                              0};
    const FileChoice choice = co_await dialogs.ChooseFile(operation, request);
    co_return choice.path;
}

QCoro::Task<std::string> FindFileDialog(Operation& operation, Dialogs& dialogs, std::string name) {
    const Question question = FindFileQuestion(name);
    const Choice choice = co_await dialogs.ShowChoiceDialog(operation, question);
    if (choice != Choice::First) co_return std::string();
    const FileRequest request{FileRequest::Purpose::Open, "Select File", name, kOpenAny, 2};
    const FileChoice found = co_await dialogs.ChooseFile(operation, request);
    co_return found.path;
}

}  // namespace marisonde
