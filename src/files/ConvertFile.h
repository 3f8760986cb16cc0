#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "common/InstTypes.h"
#include "files/FileHeader.h"
#include "files/OutputFile.h"
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
    LineCounts counts;
};

/// How often, in lines, a conversion reports how far it is.
inline constexpr int kLinesPerProgress = 300;

/// What a conversion needs of its surroundings.
struct ConversionHost {
    /// Called every kLinesPerProgress lines; false ends the conversion without a file. May be empty.
    std::function<bool(const ReadProgress&)> progress;
    std::function<std::unique_ptr<OutputFile>()> makeFile = [] { return std::make_unique<DiskFile>(); };
};

/// Decodes the raw file `source` as lines of the calibration's model, converts every sample and writes the
/// calibrated file `destination`. The source is never altered; the destination appears only once it is
/// complete. A source that is a calibrated file is refused.
ConversionResult ConvertRawToDat(const std::filesystem::path& source,
                                 const std::filesystem::path& destination, const HeaderStamp& stamp,
                                 const CalibrationDataClass& calibration, const SigmaParams& sigma,
                                 const PureWaterParams& water, const ConversionHost& host = {});

/// The same without a calibration, into a table of raw numbers. `assumed` is the model of a source whose
/// header and data lines tell none; without any model it is refused.
ConversionResult ConvertRawToDec(const std::filesystem::path& source,
                                 const std::filesystem::path& destination, bool houseCheck,
                                 InstTypeCode assumed = InstTypeCode::Unknown,
                                 const ConversionHost& host = {});

/// `source` with `extension` (".dat") in place of its own, or appended when it has none; in `folder` when
/// that is not empty. A dot in a folder's name is no extension.
std::filesystem::path ConvertedPath(const std::filesystem::path& source, std::string_view extension,
                                    const std::filesystem::path& folder = {});

}  // namespace marisonde
