#include "files/ConvertFile.h"

#include <system_error>
#include <utility>

#include "calibration/CalibrationDataClass.h"
#include "calibration/Converter.h"
#include "common/ConversionUtils.h"
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

ConversionResult Failed(std::string_view doing, const fs::path& path, std::string_view reason) {
    ConversionResult result;
    result.message.append("Error ").append(doing).append(" ").append(path.string());
    result.message.append(": ").append(reason);
    return result;
}

/// A file that is written under another name beside its place, and takes its place only when it is complete.
class ReplacedFile {
  public:
    ReplacedFile(fs::path destination, std::unique_ptr<OutputFile> file)
        : destination_(std::move(destination)), beside_(destination_), file_(std::move(file)) {
        beside_ += ".converting";
    }
    ReplacedFile(const ReplacedFile&) = delete;
    ReplacedFile& operator=(const ReplacedFile&) = delete;
    ~ReplacedFile() {
        if (!opened_) return;
        file_->Close();
        std::error_code passedOver;
        fs::remove(beside_, passedOver);
    }

    FileError Open() {
        FileError error = file_->Open(beside_, OpenMode::Replace);
        opened_ = !error;
        return error;
    }
    FileError Append(std::string_view bytes) { return file_->Append(bytes); }
    FileError Commit() {
        if (FileError error = file_->Close()) return error;
        std::error_code reason;
        fs::rename(beside_, destination_, reason);
        if (reason) return {reason.value(), reason.message()};
        opened_ = false;
        return {};
    }

  private:
    fs::path destination_;
    fs::path beside_;
    std::unique_ptr<OutputFile> file_;
    bool opened_ = false;
};

/// The road of every conversion: lines in, `writeSample` for each sample, blocks out. `text` holds the
/// header.
template <class WriteSample>
ConversionResult Run(const fs::path& source, const fs::path& destination, RawFileReader& reader,
                     std::string text, const ConversionHost& host, WriteSample writeSample) {
    std::error_code passedOver;
    if (fs::equivalent(source, destination, passedOver))
        return Failed("opening", destination, "it is the file to be converted");
    if (const FileError error = reader.Open(source)) return Failed("opening", source, error.text);
    ReplacedFile file(destination, host.makeFile());
    if (const FileError error = file.Open()) return Failed("opening", destination, error.text);
    text.reserve(kWriteBlock + 4096);
    int untilProgress = kLinesPerProgress;
    while (reader.NextLine()) {
        if (reader.HasSample()) writeSample(text);
        if (text.size() >= kWriteBlock) {
            if (const FileError error = file.Append(text)) return Failed("writing", destination, error.text);
            text.clear();
        }
        if (--untilProgress > 0) continue;
        untilProgress = kLinesPerProgress;
        if (host.progress && !host.progress(reader.Progress()))
            return {Outcome::Cancelled, "", reader.Counts()};
    }
    if (const FileError& error = reader.Error()) return Failed("reading", source, error.text);
    FileError error = file.Append(text);
    if (!error) error = file.Commit();
    if (error) return Failed("writing", destination, error.text);
    return {Outcome::Written, "", reader.Counts()};
}

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

ConversionResult ConvertRawToDat(const fs::path& source, const fs::path& destination,
                                 const HeaderStamp& stamp, const CalibrationDataClass& calibration,
                                 const SigmaParams& sigma, const PureWaterParams& water,
                                 const ConversionHost& host) {
    InstTypeCode told = InstTypeCode::Unknown;
    if (const std::string reason = ReasonAgainst(source, told); !reason.empty())
        return Failed("opening", source, reason);
    const InstTypeCode type = calibration.InstType;
    const Converter converter(calibration, sigma, water);
    RawFileReader reader(type, converter);
    std::string header;
    WriteDatHeader(header, stamp, source.string(), calibration, sigma, water);
    return Run(source, destination, reader, std::move(header), host,
               [&](std::string& out) { WriteDatLine(out, reader.Sample(), type, water.WriteBetaColumns); });
}

ConversionResult ConvertRawToDec(const fs::path& source, const fs::path& destination, bool houseCheck,
                                 InstTypeCode assumed, const ConversionHost& host) {
    InstTypeCode told = InstTypeCode::Unknown;
    if (const std::string reason = ReasonAgainst(source, told); !reason.empty())
        return Failed("opening", source, reason);
    const InstTypeCode type = told == InstTypeCode::Unknown ? assumed : told;
    std::error_code passedOver;
    if (type == InstTypeCode::Unknown && fs::exists(source, passedOver))
        return Failed("opening", source, "it holds no data of a known instrument");
    RawFileReader reader(type);
    std::string header;
    WriteDecHeader(header, type, houseCheck);
    return Run(source, destination, reader, std::move(header), host,
               [&](std::string& out) { WriteDecLine(out, reader.Raw(), reader.Kind(), type, houseCheck); });
}

fs::path ConvertedPath(const fs::path& source, std::string_view extension, const fs::path& folder) {
    fs::path path = folder.empty() ? source : folder / source.filename();
    path.replace_extension(extension);
    return path;
}

}  // namespace marisonde
