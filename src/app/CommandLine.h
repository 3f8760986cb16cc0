#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "common/InstTypes.h"

namespace marisonde {

/// What the sub-command "convert" was given; its calibration is CommandLine::calFile.
struct ConvertArguments {
    std::vector<std::string> files;
    bool decimal = false;       ///< a table of raw numbers in place of a calibrated file
    bool housekeeping = false;  ///< with the housekeeping columns
    bool overwrite = false;     ///< files that are there already are replaced
    std::string folder;         ///< where the files go; empty: beside each source
};

/// What the program was asked to do when it was started.
struct CommandLine {
    enum class Mode {
        Window,        ///< open a data window
        Direct,        ///< open a window on a port without identifying the instrument
        Demo,          ///< windows on simulated instruments
        Convert,       ///< convert one data file and end
        ConvertFiles,  ///< the sub-command "convert": many files, with a summary of each
        Help,
        Version,
        Bad,  ///< not understood: `message` says why
    };
    Mode mode = Mode::Window;
    int port = 0;
    int baud = 19200;
    InstTypeCode model = InstTypeCode::Unknown;
    std::string calFile;
    std::vector<std::string> openFiles;  ///< data files and calibrations to open in windows
    std::vector<InstTypeCode> demoModels;
    int runSeconds = 0;        ///< demonstration: end after so many seconds; 0 runs on
    std::string files;         ///< Convert: "data file;calibration file" as given
    ConvertArguments convert;  ///< ConvertFiles
    std::string message;
};

inline constexpr int kMaxWindows = 6;

/// Reads the arguments behind the program's name. Arguments that do not begin with "-" are together the file
/// pair, with blanks where a shell has cut it; "convert" as the first one is the sub-command.
CommandLine ParseCommandLine(const std::vector<std::string>& arguments);
/// Reads the arguments behind "convert".
CommandLine ParseConvertCommand(const std::vector<std::string>& arguments);
/// One line of --help, with a line end. `valueName` may be empty.
std::string OptionHelp(std::string_view name, std::string_view valueName, std::string_view help);
/// The part of --help that explains "convert".
std::string ConvertHelpText();
/// The two file names of a pair: up to the first ";" and after it, each trimmed and without quotes.
struct FilePair {
    std::string data;
    std::string calibration;
};
FilePair SplitFilePair(std::string_view files);
/// The text of --help.
std::string HelpText();

}  // namespace marisonde
