#include "app/BatchConversion.h"

#include <algorithm>
#include <string_view>
#include <system_error>
#include <utility>

#include "common/ConversionUtils.h"

namespace marisonde {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view kNoCalibration = "Cannot proceed, because no calibration file is specified.";
constexpr std::string_view kUnknownCalibration =
    "Cannot proceed, because the specified calibration file does not exist or is of an unknown type.";

bool IsFolder(const fs::path& path) {
    std::error_code passedOver;
    return fs::is_directory(path, passedOver);
}

std::string WhyNotCalibration(const fs::path& calFile) {
    if (calFile.empty()) return std::string(kNoCalibration);
    if (GetCalFileType(calFile).type == InstTypeCode::Unknown) return std::string(kUnknownCalibration);
    return "";
}

}  // namespace

fs::path DestinationOf(const BatchRequest& request, const fs::path& source) {
    return ConvertedPath(source, request.decimal ? ".dec" : ".dat", request.folder);
}

int CountExisting(const BatchRequest& request) {
    return static_cast<int>(
        std::count_if(request.files.begin(), request.files.end(), [&](const fs::path& source) {
            std::error_code passedOver;
            return fs::exists(DestinationOf(request, source), passedOver);
        }));
}

Question OverwriteQuestion(int existing, int selected) {
    return {std::to_string(existing) + " of the " + std::to_string(selected) +
                " files you selected will overwrite existing data files. " + "Do you wish to overwrite them?",
            "Overwrite", "Cancel", ""};
}

std::vector<std::string> RawFilesIn(const fs::path& folder) {
    std::vector<std::string> names;
    std::error_code passedOver;
    for (fs::directory_iterator entry(folder, passedOver), end; !passedOver && entry != end;
         entry.increment(passedOver)) {
        const std::string name = entry->path().filename().string();
        std::error_code unknown;
        if (name.starts_with('.') || !EqualIgnoringCase(entry->path().extension().string(), ".raw")) continue;
        if (entry->is_regular_file(unknown)) names.push_back(name);
    }
    std::sort(names.begin(), names.end(), [](const std::string& a, const std::string& b) {
        return std::pair(LowerCase(a), a) < std::pair(LowerCase(b), b);
    });
    return names;
}

std::string WhyNotProcess(const ProcessFilesChoice& choice) {
    if (!IsFolder(choice.sourceFolder))
        return "Cannot proceed, because the source directory does not exists.";
    if (!choice.saveToSource && !IsFolder(choice.datFolder))
        return "Cannot proceed, because the desination directory does not exists.";
    if (!choice.decimal) {
        std::string reason = WhyNotCalibration(choice.calFile);
        if (!reason.empty()) return reason;
    }
    if (choice.selected.empty())
        return "You must select some files from the list to specify those you wish to process.";
    return "";
}

BatchRequest RequestOf(const ProcessFilesChoice& choice) {
    BatchRequest request;
    for (const std::string& name : choice.selected) request.files.push_back(choice.sourceFolder / name);
    request.decimal = choice.decimal;
    request.houseCheck = choice.houseCheck;
    // The form takes no calibration for raw numbers: one that stands there may be gone long since.
    if (!choice.decimal) request.calFile = choice.calFile;
    if (!choice.saveToSource) request.folder = choice.datFolder;
    return request;
}

std::string_view BatchTitle(bool decimal) {
    return decimal ? "Saving Decimal Data" : "Saving Calibrated Data";
}

BatchConversion::BatchConversion(BatchRequest request, HeaderStamp stamp, SigmaParams sigma,
                                 const PureWaterParams& water)
    : request_(std::move(request)), stamp_(std::move(stamp)), sigma_(std::move(sigma)), water_(water) {}

std::string BatchConversion::Prepare() {
    if (request_.decimal && request_.calFile.empty()) return "";
    std::string reason = WhyNotCalibration(request_.calFile);
    if (!reason.empty()) return reason;
    CalFileResult result = calibration_.LoadSourceFile(request_.calFile, sigma_, water_);
    messages_ = std::move(result.messages);
    return result.ok ? "" : result.error;
}

/// By the file itself: on some disks names that differ in the case of their letters are one.
bool BatchConversion::IsWritten(const fs::path& destination) const {
    std::error_code passedOver;
    if (!fs::exists(destination, passedOver)) return false;
    return std::any_of(written_.begin(), written_.end(), [&](const fs::path& written) {
        return fs::equivalent(written, destination, passedOver);
    });
}

std::optional<FileConversion> BatchConversion::Begin(const fs::path& source, std::string& error) {
    const fs::path destination = DestinationOf(request_, source);
    if (IsWritten(destination)) {
        error =
            "Error opening " + destination.string() + ": another of the files has just been written there";
        return std::nullopt;
    }
    if (!request_.decimal)
        return FileConversion::ToDat(source, destination, stamp_, calibration_, sigma_, water_);
    const InstTypeCode assumed = request_.calFile.empty() ? InstTypeCode::Unknown : calibration_.InstType;
    return FileConversion::ToDec(source, destination, request_.houseCheck, assumed);
}

}  // namespace marisonde
