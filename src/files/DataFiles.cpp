#include "files/DataFiles.h"

#include <system_error>
#include <utility>

#include "files/DatFile.h"

namespace marisonde {

namespace fs = std::filesystem;

namespace {

constexpr std::array kKinds{DataFileKind::Raw, DataFileKind::Dat};
constexpr std::array<std::string_view, kDataFileKinds> kExtensions{".raw", ".dat"};

std::string_view ExtensionOf(DataFileKind kind) {
    return kExtensions[static_cast<std::size_t>(kind)];
}

FileError ErrorOf(const std::error_code& reason) {
    return {reason.value(), reason.message()};
}

}  // namespace

FileError CopyDataFile(const fs::path& source, const fs::path& destination) {
    std::error_code reason;
    // Saving a file onto itself would only look like a save: a temporary file is deleted at the end.
    if (fs::equivalent(source, destination, reason))
        return ErrorOf(std::make_error_code(std::errc::device_or_resource_busy));
    reason.clear();
    fs::path beside = destination;
    beside += ".saving";
    fs::copy_file(source, beside, fs::copy_options::overwrite_existing, reason);
    if (!reason) fs::rename(beside, destination, reason);
    if (!reason) return {};
    std::error_code passedOver;
    fs::remove(beside, passedOver);
    return ErrorOf(reason);
}

fs::path TemporaryDataPath(const fs::path& folder, int window, DataFileKind kind) {
    return folder / std::to_string(window).append(ExtensionOf(kind));
}

fs::path FinalDataPath(const fs::path& basePath, DataFileKind kind) {
    fs::path path = basePath;
    path.replace_extension(ExtensionOf(kind));
    return path;
}

DataFiles::DataFiles(int window, MakeFile makeFile) : window_(window), makeFile_(std::move(makeFile)) {}

fs::path& DataFiles::FinalPath(DataFileKind kind) {
    return kind == DataFileKind::Raw ? state_.rawFinal : state_.datFinal;
}

fs::path& DataFiles::TemporaryPath(DataFileKind kind) {
    return kind == DataFileKind::Raw ? state_.rawTemporary : state_.datTemporary;
}

bool DataFiles::IsOpen(DataFileKind kind) const {
    return At(kind).file && At(kind).file->IsOpen();
}

bool DataFiles::HasUnsavedData() const {
    return At(DataFileKind::Raw).unsaved || At(DataFileKind::Dat).unsaved;
}

std::vector<std::string> DataFiles::OpenDataFiles(const DataFilesRequest& request) {
    std::vector<std::string> messages = CloseDataFiles(false);
    state_.stillToBeNamed = request.basePath.empty();
    const std::array<std::string_view, kDataFileKinds> headers{request.rawHeader, request.datHeader};
    for (const DataFileKind kind : kKinds) {
        const std::string_view header = headers[static_cast<std::size_t>(kind)];
        if (header.empty()) continue;
        if (auto message = OpenOne(kind, request, header)) messages.push_back(*std::move(message));
    }
    return messages;
}

std::optional<std::string> DataFiles::OpenOne(DataFileKind kind, const DataFilesRequest& request,
                                              std::string_view header) {
    const fs::path path = TemporaryDataPath(request.temporaryFolder, window_, kind);
    Slot& slot = At(kind);
    slot.file = makeFile_();
    FileError error = slot.file->Open(path, OpenMode::Replace);
    const bool made = !error;
    if (!error) error = slot.file->Append(header);
    // A disk that has no room for a header is found out now, not when the first samples are lost.
    if (!error) error = slot.file->Flush();
    if (!error) {
        TemporaryPath(kind) = path;
        if (!request.basePath.empty()) FinalPath(kind) = FinalDataPath(request.basePath, kind);
        return std::nullopt;
    }
    slot = {};
    // The rest of a header is no data: left behind, the next start would take it for what a dead run
    // recorded.
    std::error_code passedOver;
    if (made) fs::remove(path, passedOver);
    return "Error opening " + path.string() + ": " + error.text + ".";
}

std::vector<std::string> DataFiles::CloseDataFiles(bool keepTemporary) {
    std::vector<std::string> messages;
    const auto report = [&](const FileError& error) {
        if (error) messages.push_back("Error closing files: " + error.text);
    };
    for (const DataFileKind kind : kKinds) {
        if (Slot& slot = At(kind); slot.file) report(slot.file->Close());
        if (!keepTemporary && !TemporaryPath(kind).empty()) {
            std::error_code reason;
            fs::remove(TemporaryPath(kind), reason);
            if (reason) report(ErrorOf(reason));
        }
        At(kind) = {};
    }
    state_ = {};
    return messages;
}

bool DataFiles::SetAside(const MoveFiles& move) {
    std::vector<fs::path> files;
    for (const DataFileKind kind : kKinds) {
        if (Slot& slot = At(kind); slot.file) slot.file->Close();
        if (!TemporaryPath(kind).empty()) files.push_back(TemporaryPath(kind));
    }
    if (!move(files)) return false;
    slots_ = {};
    state_ = {};
    return true;
}

DataFileTrouble DataFiles::TroubleOf(DataFileKind kind, const FileError& error) {
    const fs::path& temporary = TemporaryPath(kind);
    const fs::path& named = FinalPath(kind);
    return {kind, named.empty() ? temporary : named, temporary, error};
}

DataFileTrouble DataFiles::TurnOff(DataFileKind kind, const FileError& error) {
    Slot& slot = At(kind);
    slot.file->Close();  // gives the same error again, which the user is told once
    slot.waitingSince.reset();
    return TroubleOf(kind, error);
}

std::optional<DataFileTrouble> DataFiles::Write(DataFileKind kind, std::string_view bytes, Millis now) {
    if (!IsOpen(kind) || bytes.empty()) return std::nullopt;
    Slot& slot = At(kind);
    slot.unsaved = true;
    if (!slot.waitingSince) slot.waitingSince = now;
    if (const FileError error = slot.file->Append(bytes)) return TurnOff(kind, error);
    return std::nullopt;
}

std::optional<DataFileTrouble> DataFiles::WriteRaw(std::string_view chunk, Millis now) {
    return Write(DataFileKind::Raw, chunk, now);
}

std::optional<DataFileTrouble> DataFiles::WriteSample(const CalibratedSample& sample, InstTypeCode type,
                                                      bool writeBetaColumns, Millis now) {
    if (!IsOpen(DataFileKind::Dat)) return std::nullopt;
    line_.clear();
    WriteDatLine(line_, sample, type, writeBetaColumns);
    return Write(DataFileKind::Dat, line_, now);
}

std::optional<DataFileTrouble> DataFiles::Flush(DataFileKind kind) {
    Slot& slot = At(kind);
    slot.waitingSince.reset();
    if (const FileError error = slot.file->Flush()) return TurnOff(kind, error);
    return std::nullopt;
}

std::vector<DataFileTrouble> DataFiles::FlushIfDue(Millis now) {
    std::vector<DataFileTrouble> troubles;
    for (const DataFileKind kind : kKinds) {
        const Slot& slot = At(kind);
        if (!IsOpen(kind) || !slot.waitingSince || now - *slot.waitingSince < kFlushInterval) continue;
        if (auto trouble = Flush(kind)) troubles.push_back(*std::move(trouble));
    }
    return troubles;
}

std::optional<DataFileTrouble> DataFiles::FlushNow(DataFileKind kind) {
    return IsOpen(kind) ? Flush(kind) : std::nullopt;
}

FileError DataFiles::OpenForAppending(DataFileKind kind) {
    if (IsOpen(kind) || TemporaryPath(kind).empty()) return {};
    At(kind).file = makeFile_();
    return At(kind).file->Open(TemporaryPath(kind), OpenMode::Extend);
}

std::optional<DataFileTrouble> DataFiles::SaveCopy(DataFileKind kind, const fs::path& destination) {
    if (TemporaryPath(kind).empty()) return std::nullopt;
    if (IsOpen(kind)) {
        if (auto trouble = Flush(kind)) return trouble;
    }
    if (const FileError error = CopyDataFile(TemporaryPath(kind), destination)) {
        DataFileTrouble trouble = TroubleOf(kind, error);
        trouble.name = destination;
        return trouble;
    }
    FinalPath(kind) = destination;
    state_.stillToBeNamed = false;
    At(kind).unsaved = false;
    return std::nullopt;
}

void DataFiles::NameFiles(const fs::path& basePath) {
    for (const DataFileKind kind : kKinds)
        if (!TemporaryPath(kind).empty()) FinalPath(kind) = FinalDataPath(basePath, kind);
    state_.stillToBeNamed = false;
}

}  // namespace marisonde
