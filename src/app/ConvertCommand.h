#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>

#include "app/CommandLine.h"
#include "common/Settings.h"
#include "files/FileHeader.h"
#include "optics/PureWaterParams.h"
#include "optics/SigmaParams.h"

namespace marisonde {

/// Where a conversion without windows speaks.
struct Console {
    std::function<void(std::string_view)> out;    ///< summaries
    std::function<void(std::string_view)> error;  ///< what went wrong, and progress
    bool showProgress = false;                    ///< somebody looks at it: a terminal
    std::function<bool()> interrupted = [] { return false; };
};

/// What conversions take from the user's settings.
struct ConvertSettings {
    SigmaParams sigma;
    PureWaterParams water;
    HeaderStamp stamp;
    std::string calFile;       ///< the calibration used last; may be empty
    std::string missingFiles;  ///< notice about tables that were not found; empty when all were
};
ConvertSettings LoadConvertSettings(const Settings& settings, const std::filesystem::path& programFolder,
                                    const std::filesystem::path& dataFolder, double date);

/// "DATAFILE;CALFILE": exit status 0 when the calibrated file was written. A file that is missing ends it
/// without a word.
int ConvertPair(const std::string& files, const ConvertSettings& settings, const Console& console);
/// The sub-command "convert": a summary line of each file that was written, exit status 0 when all were.
int ConvertFiles(const CommandLine& line, const ConvertSettings& settings, const Console& console);
/// Either of them, with the settings of the user and the terminal at hand. Needs a QCoreApplication.
int RunConversion(const CommandLine& line);

}  // namespace marisonde
