#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "common/InstTypes.h"
#include "common/OutputFile.h"
#include "files/FileHeader.h"
#include "files/LineReader.h"
#include "files/SampleReader.h"

namespace marisonde {

class CalibrationDataClass;
struct SigmaParams;
struct PureWaterParams;

/// How the conversion of one file ended. Unless it is Written, there is no new file and an older one of the
/// same name is as it was.
struct ConversionResult {
    enum class Outcome { Written, Cancelled, Failed };
    Outcome outcome = Outcome::Failed;
    std::string message;  ///< of a failure, for the user: "Error opening PATH: REASON"
    int code = 0;         ///< the system's number of a failure; 0 where it was none of the system's
    LineCounts counts;
};

/// How often, in lines, a conversion reports how far it is.
inline constexpr int kLinesPerProgress = 300;

using MakeOutputFile = std::function<std::unique_ptr<OutputFile>()>;
inline std::unique_ptr<OutputFile> MakeDiskFile() {
    return std::make_unique<DiskFile>();
}

/// The conversion of one file, some lines at a time, for programs that have other things to do meanwhile. The
/// source is never altered; the destination appears only once it is complete.
class FileConversion {
  public:
    /// Decodes the raw file `source` as lines of the calibration's model, converts every sample and writes
    /// the calibrated file `destination`. A source that is a calibrated file is refused. The calibration
    /// outlives the call only. Of a source that still grows, `most` bytes are read: those of its whole lines.
    static FileConversion ToDat(const std::filesystem::path& source, const std::filesystem::path& destination,
                                const HeaderStamp& stamp, const CalibrationDataClass& calibration,
                                const SigmaParams& sigma, const PureWaterParams& water,
                                const MakeOutputFile& makeFile = MakeDiskFile,
                                std::uint64_t most = LineReader::kWhole);
    /// The same without a calibration, into a table of raw numbers. `assumed` is the model of a source whose
    /// header and data lines tell none; without any model it is refused.
    static FileConversion ToDec(const std::filesystem::path& source, const std::filesystem::path& destination,
                                bool houseCheck, InstTypeCode assumed = InstTypeCode::Unknown,
                                const MakeOutputFile& makeFile = MakeDiskFile);

    FileConversion(FileConversion&&) noexcept;
    FileConversion& operator=(FileConversion&&) noexcept;
    /// A conversion that has not ended leaves no file.
    ~FileConversion();

    /// Converts at most `lines` lines. False once it has ended; Result tells how.
    bool Run(int lines);
    /// Ends it without a file.
    void Cancel();
    [[nodiscard]] ReadProgress Progress() const;
    /// How it ended; before that, the counts so far.
    [[nodiscard]] const ConversionResult& Result() const { return result_; }

  private:
    struct Parts;
    FileConversion();
    void Open(const MakeOutputFile& makeFile);
    void Fail(std::string_view doing, const std::filesystem::path& path, std::string_view reason,
              int code = 0);
    void Finish();
    [[nodiscard]] bool WriteOut();

    std::unique_ptr<Parts> parts_;  ///< null once it has ended
    ConversionResult result_;
};

/// What a conversion in one go needs of its surroundings.
struct ConversionHost {
    /// Called every kLinesPerProgress lines; false ends the conversion without a file. May be empty.
    std::function<bool(const ReadProgress&)> progress;
    MakeOutputFile makeFile = MakeDiskFile;
};

/// FileConversion::ToDat in one go.
ConversionResult ConvertRawToDat(const std::filesystem::path& source,
                                 const std::filesystem::path& destination, const HeaderStamp& stamp,
                                 const CalibrationDataClass& calibration, const SigmaParams& sigma,
                                 const PureWaterParams& water, const ConversionHost& host = {});
/// FileConversion::ToDec in one go.
ConversionResult ConvertRawToDec(const std::filesystem::path& source,
                                 const std::filesystem::path& destination, bool houseCheck,
                                 InstTypeCode assumed = InstTypeCode::Unknown,
                                 const ConversionHost& host = {});
/// The rest of a conversion in one go.
ConversionResult RunToEnd(FileConversion conversion, const ConversionHost& host);

/// `source` with `extension` (".dat") in place of its own, or appended when it has none; in `folder` when
/// that is not empty. A dot in a folder's name is no extension.
std::filesystem::path ConvertedPath(const std::filesystem::path& source, std::string_view extension,
                                    const std::filesystem::path& folder = {});

}  // namespace marisonde
