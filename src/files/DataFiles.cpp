#include "files/DataFiles.h"

#include <algorithm>
#include <fstream>
#include <system_error>
#include <utility>

#include "files/DatFile.h"
#include "files/FileCopy.h"
#include "files/FileHeader.h"
#include "files/RawFile.h"

namespace marisonde {

namespace fs = std::filesystem;

namespace {

constexpr std::array kKinds{DataFileKind::Raw, DataFileKind::Dat};
constexpr std::array<std::string_view, kDataFileKinds> kExtensions{".raw", ".dat"};

std::string_view ExtensionOf(DataFileKind kind) {
    return kExtensions[static_cast<std::size_t>(kind)];
}

/// What a full disk took of a sample it did not take whole: its last number would be read as another one.
void CutOffHalfLine(const fs::path& path) {
    constexpr std::uint64_t kLineFeed = 1;
    const std::uint64_t whole = WholeLinesLength(path);
    std::error_code reason;
    const std::uint64_t size = fs::file_size(path, reason);
    if (!reason && whole > 0 && size > whole + kLineFeed) fs::resize_file(path, whole + kLineFeed, reason);
}

/// Whether the next line can follow. A file that is empty, or that nobody can read, has none to be ended.
bool EndsInLineEnd(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    file.seekg(-1, std::ios::end);
    const int last = file.get();
    return !file || last == '\n';
}

}  // namespace

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
    return std::any_of(slots_.begin(), slots_.end(),
                       [](const Slot& slot) { return slot.taken > slot.saved; });
}

std::vector<std::string> DataFiles::OpenDataFiles(const DataFilesRequest& request) {
    std::vector<std::string> messages = CloseDataFiles(false);
    state_.stillToBeNamed = request.basePath.empty();
    const std::array<std::string_view, kDataFileKinds> headers{request.rawHeader, request.datHeader};
    for (const DataFileKind kind : kKinds) {
        const std::string_view header = headers[static_cast<std::size_t>(kind)];
        if (header.empty()) continue;
        const fs::path path = TemporaryDataPath(request.temporaryFolder, window_, kind);
        if (const FileError error = OpenOne(kind, path, header))
            messages.push_back("Error opening " + path.string() + ": " + error.text + ".");
        else if (!request.basePath.empty())
            FinalPath(kind) = FinalDataPath(request.basePath, kind);
    }
    return messages;
}

FileError DataFiles::OpenOne(DataFileKind kind, const fs::path& path, std::string_view header) {
    Slot& slot = At(kind);
    slot = {};
    ++recording_;
    slot.file = makeFile_();
    FileError error = slot.file->Open(path, OpenMode::Replace);
    const bool made = !error;
    if (!error) error = slot.file->Append(header);
    // A disk that has no room for a header is found out now, not when the first samples are lost.
    if (!error) error = slot.file->Flush();
    if (!error) {
        TemporaryPath(kind) = path;
        return {};
    }
    slot = {};
    // The rest of a header is no data: left behind, the next start would take it for what a dead run
    // recorded.
    std::error_code passedOver;
    if (made) fs::remove(path, passedOver);
    return error;
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
    if (kind == DataFileKind::Dat) CutOffHalfLine(TemporaryPath(kind));
    return TroubleOf(kind, error);
}

std::optional<DataFileTrouble> DataFiles::Write(DataFileKind kind, std::string_view bytes, Millis now) {
    if (!IsOpen(kind) || bytes.empty()) return std::nullopt;
    Slot& slot = At(kind);
    slot.taken += bytes.size();
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
    Slot& slot = At(kind);
    slot.file = makeFile_();
    const bool lineEnded = EndsInLineEnd(TemporaryPath(kind));
    if (FileError error = slot.file->Open(TemporaryPath(kind), OpenMode::Extend)) return error;
    // The halves of two lines would make one that nobody has sent.
    if (!lineEnded) slot.file->Append(kLineEnd);
    return {};
}

bool DataFiles::HasVanished(DataFileKind kind) const {
    const fs::path& path = kind == DataFileKind::Raw ? state_.rawTemporary : state_.datTemporary;
    std::error_code reason;
    return !path.empty() && !fs::exists(path, reason) && !reason;
}

FileError DataFiles::BeginAnew(DataFileKind kind, std::string_view header) {
    if (FileError error = OpenOne(kind, fs::path(TemporaryPath(kind)), header)) return error;
    state_.rawFinal.clear();
    state_.datFinal.clear();
    state_.stillToBeNamed = true;
    return {};
}

std::optional<DataFileTrouble> DataFiles::SaveCopy(DataFileKind kind, const fs::path& destination) {
    if (TemporaryPath(kind).empty()) return std::nullopt;
    if (IsOpen(kind)) {
        if (auto trouble = Flush(kind)) return trouble;
    }
    const CopyMark mark = MarkForCopy(kind);
    const FileError error = CopyDataFile(TemporaryPath(kind), destination);
    return NoteCopy(kind, destination, mark, error);
}

std::optional<DataFileTrouble> DataFiles::NoteCopy(DataFileKind kind, const fs::path& destination,
                                                   const CopyMark& mark, const FileError& error) {
    const bool same = mark.recording == recording_ && !TemporaryPath(kind).empty();
    if (error) return DataFileTrouble{kind, destination, same ? TemporaryPath(kind) : fs::path(), error};
    if (!same) return std::nullopt;
    FinalPath(kind) = destination;
    state_.stillToBeNamed = false;
    At(kind).saved = mark.taken;
    return std::nullopt;
}

void DataFiles::NameFiles(const fs::path& basePath) {
    for (const DataFileKind kind : kKinds)
        if (!TemporaryPath(kind).empty()) FinalPath(kind) = FinalDataPath(basePath, kind);
    state_.stillToBeNamed = false;
}

}  // namespace marisonde
