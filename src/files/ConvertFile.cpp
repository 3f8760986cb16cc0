#include "files/ConvertFile.h"

#include <functional>
#include <optional>
#include <system_error>
#include <utility>

#include "calibration/CalibrationDataClass.h"
#include "calibration/Converter.h"
#include "common/ConversionUtils.h"
#include "common/ReplacedFile.h"
#include "common/VectorState.h"
#include "files/DatFile.h"
#include "files/DecFile.h"
#include "files/FileHeaderInfo.h"
#include "files/RawFileReader.h"

namespace marisonde {

namespace fs = std::filesystem;

namespace {

using Outcome = ConversionResult::Outcome;

/// Large enough that a system call costs nothing per line, small enough for the nearest caches.
constexpr std::size_t kWriteBlock = std::size_t{64} * 1024;

bool HasExtension(const fs::path& path, std::string_view extension) {
    return EqualIgnoringCase(path.extension().string(), extension);
}

/// Why a file is no source for a conversion; empty when it is one. Fills the model that it tells.
std::string ReasonAgainst(const fs::path& source, InstTypeCode& model) {
    constexpr std::string_view kCalibrated = "it is a calibrated file, not a raw one";
    if (HasExtension(source, ".dat")) return std::string(kCalibrated);
    std::string fileType;
    std::string serial;
    model = GetDataFileType(source, fileType, serial);
    return fileType == "dat" ? std::string(kCalibrated) : "";
}

}  // namespace

/// Everything that lives as long as the conversion.
struct FileConversion::Parts {
    fs::path source;
    fs::path destination;
    Converter converter;
    std::optional<RawFileReader> reader;
    std::optional<ReplacedFile> file;
    std::string text;  ///< what is not yet written; at first the header
    std::function<void(const RawFileReader&, std::string&)> writeSample;
};

FileConversion::FileConversion() : parts_(std::make_unique<Parts>()) {}
FileConversion::FileConversion(FileConversion&&) noexcept = default;
FileConversion& FileConversion::operator=(FileConversion&&) noexcept = default;
FileConversion::~FileConversion() = default;

FileConversion FileConversion::ToDat(const fs::path& source, const fs::path& destination,
                                     const HeaderStamp& stamp, const CalibrationDataClass& calibration,
                                     const SigmaParams& sigma, const PureWaterParams& water,
                                     const MakeOutputFile& makeFile, std::uint64_t most) {
    FileConversion conversion;
    InstTypeCode told = InstTypeCode::Unknown;
    if (const std::string reason = ReasonAgainst(source, told); !reason.empty()) {
        conversion.Fail("opening", source, reason);
        return conversion;
    }
    const InstTypeCode type = calibration.InstType;
    const bool betas = water.WriteBetaColumns;
    Parts& parts = *conversion.parts_;
    parts.source = source;
    parts.destination = destination;
    parts.converter = Converter(calibration, sigma, water);
    parts.reader.emplace(type, parts.converter);
    parts.reader->ReadAtMost(most);
    WriteDatHeader(parts.text, stamp, source.string(), calibration, sigma, water);
    parts.writeSample = [type, betas](const RawFileReader& reader, std::string& out) {
        WriteDatLine(out, reader.Sample(), type, betas);
    };
    conversion.Open(makeFile);
    return conversion;
}

FileConversion FileConversion::ToDec(const fs::path& source, const fs::path& destination, bool houseCheck,
                                     InstTypeCode assumed, const MakeOutputFile& makeFile) {
    FileConversion conversion;
    InstTypeCode told = InstTypeCode::Unknown;
    std::string reason = ReasonAgainst(source, told);
    const InstTypeCode type = told == InstTypeCode::Unknown ? assumed : told;
    std::error_code passedOver;
    if (reason.empty() && type == InstTypeCode::Unknown && fs::exists(source, passedOver))
        reason = "it holds no data of a known instrument";
    if (!reason.empty()) {
        conversion.Fail("opening", source, reason);
        return conversion;
    }
    Parts& parts = *conversion.parts_;
    parts.source = source;
    parts.destination = destination;
    parts.reader.emplace(type);
    WriteDecHeader(parts.text, type, houseCheck);
    parts.writeSample = [type, houseCheck](const RawFileReader& reader, std::string& out) {
        WriteDecLine(out, reader.Raw(), reader.Kind(), type, houseCheck);
    };
    conversion.Open(makeFile);
    return conversion;
}

void FileConversion::Open(const MakeOutputFile& makeFile) {
    Parts& parts = *parts_;
    std::error_code passedOver;
    if (fs::equivalent(parts.source, parts.destination, passedOver))
        return Fail("opening", parts.destination, "it is the file to be converted");
    if (const FileError error = parts.reader->Open(parts.source))
        return Fail("opening", parts.source, error.text, error.code);
    parts.file.emplace(parts.destination, ".converting", makeFile());
    if (const FileError error = parts.file->Open())
        return Fail("opening", parts.destination, error.text, error.code);
    parts.text.reserve(kWriteBlock + 4096);
}

void FileConversion::Fail(std::string_view doing, const fs::path& path, std::string_view reason, int code) {
    result_.code = code;
    result_.outcome = Outcome::Failed;
    result_.message.append("Error ").append(doing).append(" ").append(path.string());
    result_.message.append(": ").append(reason);
    // Last, for the path and the reason may be parts of it.
    parts_.reset();
}

bool FileConversion::WriteOut() {
    if (const FileError error = parts_->file->Append(parts_->text)) {
        Fail("writing", parts_->destination, error.text, error.code);
        return false;
    }
    parts_->text.clear();
    return true;
}

bool FileConversion::Run(int lines) {
    if (!parts_) return false;
    ClearUpperVectorState();
    Parts& parts = *parts_;
    for (; lines > 0; --lines) {
        if (!parts.reader->NextLine()) {
            Finish();
            return false;
        }
        if (parts.reader->HasSample()) parts.writeSample(*parts.reader, parts.text);
        if (parts.text.size() >= kWriteBlock && !WriteOut()) return false;
    }
    result_.counts = parts.reader->Counts();
    return true;
}

void FileConversion::Finish() {
    result_.counts = parts_->reader->Counts();
    if (const FileError& error = parts_->reader->Error())
        return Fail("reading", parts_->source, error.text, error.code);
    if (!WriteOut()) return;
    if (const FileError error = parts_->file->Commit())
        return Fail("writing", parts_->destination, error.text, error.code);
    result_.outcome = Outcome::Written;
    parts_.reset();
}

void FileConversion::Cancel() {
    if (!parts_) return;
    result_.outcome = Outcome::Cancelled;
    parts_.reset();
}

ReadProgress FileConversion::Progress() const {
    return parts_ ? parts_->reader->Progress() : ReadProgress{};
}

ConversionResult RunToEnd(FileConversion conversion, const ConversionHost& host) {
    while (conversion.Run(kLinesPerProgress))
        if (host.progress && !host.progress(conversion.Progress())) conversion.Cancel();
    return conversion.Result();
}

ConversionResult ConvertRawToDat(const fs::path& source, const fs::path& destination,
                                 const HeaderStamp& stamp, const CalibrationDataClass& calibration,
                                 const SigmaParams& sigma, const PureWaterParams& water,
                                 const ConversionHost& host) {
    return RunToEnd(
        FileConversion::ToDat(source, destination, stamp, calibration, sigma, water, host.makeFile), host);
}

ConversionResult ConvertRawToDec(const fs::path& source, const fs::path& destination, bool houseCheck,
                                 InstTypeCode assumed, const ConversionHost& host) {
    return RunToEnd(FileConversion::ToDec(source, destination, houseCheck, assumed, host.makeFile), host);
}

fs::path ConvertedPath(const fs::path& source, std::string_view extension, const fs::path& folder) {
    fs::path path = folder.empty() ? source : folder / source.filename();
    path.replace_extension(extension);
    return path;
}

}  // namespace marisonde
