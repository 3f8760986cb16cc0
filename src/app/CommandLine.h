#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "common/InstTypes.h"

namespace marisonde {

/// What the program was asked to do when it was started.
struct CommandLine {
    enum class Mode {
        Window,   ///< open a data window
        Direct,   ///< open a window on a port without identifying the instrument
        Demo,     ///< windows on simulated instruments
        Convert,  ///< convert one data file and end
        Help,
        Version,
        Bad,  ///< not understood: `message` says why
    };
    Mode mode = Mode::Window;
    int port = 0;
    int baud = 19200;
    InstTypeCode model = InstTypeCode::Unknown;
    std::string calFile;
    std::vector<InstTypeCode> demoModels;
    int runSeconds = 0;  ///< demonstration: end after so many seconds; 0 runs on
    std::string files;   ///< Convert: "data file;calibration file" as given
    std::string message;
};

inline constexpr int kMaxWindows = 6;

/// Reads the arguments behind the program's name. An argument that does not begin with "-" is the file pair.
CommandLine ParseCommandLine(const std::vector<std::string>& arguments);
/// The two file names of a pair: up to the first ";" and after it, each trimmed and without quotes around it.
struct FilePair {
    std::string data;
    std::string calibration;
};
FilePair SplitFilePair(std::string_view files);
/// The text of --help.
std::string HelpText();

}  // namespace marisonde
