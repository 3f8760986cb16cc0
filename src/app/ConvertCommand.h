#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "app/CommandLine.h"
#include "common/Settings.h"
#include "files/ConvertFile.h"
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

/// The exit status when not all was converted.
inline constexpr int kConversionFailed = 1;

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

/// The two files of a conversion by "DATAFILE;CALFILE".
struct PairToConvert {
    std::filesystem::path data;
    std::filesystem::path calibration;
};
/// Takes the calibration used last for a data file alone. nullopt: a file is missing.
std::optional<PairToConvert> PairFrom(const std::string& files, const ConvertSettings& settings);
/// Begins the conversion into a calibrated file beside the data file. nullopt: the calibration is of no use,
/// which the console has been told.
std::optional<FileConversion> BeginPair(const PairToConvert& pair, const ConvertSettings& settings,
                                        const Console& console);
/// Tells the console what went wrong; exit status 0 when the file was written.
int EndPair(const ConversionResult& result, const Console& console);
/// All of that in one go. A file that is missing ends it without a word.
int ConvertPair(const std::string& files, const ConvertSettings& settings, const Console& console);
/// The sub-command "convert": a summary line of each file that was written, exit status 0 when all were.
int ConvertFiles(const CommandLine& line, const ConvertSettings& settings, const Console& console);
/// Either of them, with the settings of the user and the terminal at hand. Needs a QCoreApplication.
int RunConversion(const CommandLine& line);
/// The settings of the user, and the terminal at hand. Need a QCoreApplication.
ConvertSettings UsersConvertSettings();
Console TerminalAtHand();

}  // namespace marisonde
