#include "app/CommandLine.h"

#include <algorithm>
#include <array>
#include <functional>
#include <optional>

#include "common/ConversionUtils.h"
#include "common/Numbers.h"
#include "link/PortTable.h"
#include "link/SerialLine.h"

namespace marisonde {

namespace {

constexpr std::string_view kOpen = "--open";
constexpr std::string_view kPort = "--port";
constexpr std::string_view kDemo = "--demo";

std::string Quoted(std::string_view text) {
    return "'" + std::string(text) + "'";
}

std::string ModelNames() {
    std::string names;
    for (int code = 0; code < static_cast<int>(InstTypeCode::Unknown); ++code) {
        if (code > 0) names += ", ";
        names += InstTypeName(static_cast<InstTypeCode>(code));
    }
    return names;
}

std::optional<InstTypeCode> ModelFrom(std::string_view name) {
    const InstTypeCode code = InstTypeFromName(name);
    if (code >= InstTypeCode::Unknown) return std::nullopt;
    return code;
}

std::string SetPort(CommandLine& line, std::string_view value) {
    line.port = ToInt32(SafeVal(value));
    line.mode = CommandLine::Mode::Direct;
    if (line.port < 1 || line.port > kMaxPortNumber) return "The port must be a number from 1 to 31.";
    return "";
}

std::string SetBaud(CommandLine& line, std::string_view value) {
    line.baud = ToInt32(SafeVal(value));
    if (std::find(kInstrumentRates.begin(), kInstrumentRates.end(), line.baud) == kInstrumentRates.end())
        return "The rate must be 4800, 9600, 19200, 38400, 57600 or 115200.";
    return "";
}

std::string SetModel(CommandLine& line, std::string_view value) {
    const auto model = ModelFrom(value);
    if (!model) return Quoted(value) + " is not a model. Models are: " + ModelNames() + ".";
    line.model = *model;
    return "";
}

std::string SetCal(CommandLine& line, std::string_view value) {
    line.calFile = value;
    return "";
}

std::string SetOpen(CommandLine& line, std::string_view value) {
    line.openFiles.emplace_back(value);
    return "";
}

std::string SetDemo(CommandLine& line, std::string_view value) {
    line.mode = CommandLine::Mode::Demo;
    while (true) {
        const std::size_t comma = value.find(',');
        const std::string_view name = Trim(value.substr(0, comma));
        const auto model = ModelFrom(name);
        if (!model) return Quoted(name) + " is not a model. Models are: " + ModelNames() + ".";
        line.demoModels.push_back(*model);
        if (comma == std::string_view::npos) break;
        value.remove_prefix(comma + 1);
    }
    if (line.demoModels.size() > kMaxWindows) return "Cannot open more than 6 windows.";
    return "";
}

std::string SetSeconds(CommandLine& line, std::string_view value) {
    line.runSeconds = ToInt32(SafeVal(value));
    if (line.runSeconds < 1) return "The time must be at least one second.";
    return "";
}

/// One row per option that takes a value.
struct OptionRow {
    std::string_view name;
    std::string (*set)(CommandLine&, std::string_view);
    std::string_view valueName;
    std::string_view help;
    std::string_view goesWith = {};  ///< the option without which this one says nothing; may be empty
};

constexpr std::array kOptions{
    OptionRow{kPort, SetPort, "N", "open port N (1 to 31) without identifying the instrument"},
    OptionRow{"--baud", SetBaud, "RATE", "its rate, 4800 to 115200; 19200 if not given", kPort},
    OptionRow{"--model", SetModel, "MODEL", "the model that is connected there", kPort},
    OptionRow{"--cal", SetCal, "FILE", "the calibration file to use"},
    OptionRow{kOpen, SetOpen, "[FILE...]", "open data files and calibrations in windows"},
    OptionRow{kDemo, SetDemo, "MODEL[,MODEL...]", "show simulated instruments, one window each, up to six"},
    OptionRow{"--seconds", SetSeconds, "N", "end the demonstration after N seconds", kDemo},
};

CommandLine Refused(std::string message) {
    CommandLine line;
    line.mode = CommandLine::Mode::Bad;
    line.message = std::move(message);
    return line;
}

using GivenOptions = std::vector<const OptionRow*>;

std::string MissingParts(const CommandLine& line, const GivenOptions& given) {
    for (const OptionRow* row : given) {
        const bool alone = std::none_of(given.begin(), given.end(),
                                        [&](const OptionRow* other) { return other->name == row->goesWith; });
        if (!row->goesWith.empty() && alone)
            return std::string(row->name) + " goes with " + std::string(row->goesWith) + ".";
    }
    if (line.mode == CommandLine::Mode::Direct && line.model == InstTypeCode::Unknown)
        return "--port needs --model. Models are: " + ModelNames() + ".";
    return "";
}

/// Each of these is a purpose of its own, and the other would be forgotten without a word.
std::string Contradiction(const CommandLine& line) {
    std::vector<std::string> purposes;
    if (line.port != 0) purposes.emplace_back(kPort);
    if (!line.demoModels.empty()) purposes.emplace_back(kDemo);
    if (!line.openFiles.empty()) purposes.emplace_back(kOpen);
    if (!line.files.empty()) purposes.push_back(Quoted(line.files));
    if (purposes.size() > 1) return purposes[0] + " does not go with " + purposes[1] + ".";
    if (line.calFile.empty()) return "";
    if (!line.demoModels.empty()) return "--cal does not go with --demo.";
    if (!line.files.empty())
        return "--cal does not go with " + Quoted(line.files) +
               "; write \"DATAFILE;CALFILE\", or convert --cal FILE DATAFILE.";
    return "";
}

}  // namespace

CommandLine ParseCommandLine(const std::vector<std::string>& arguments) {
    if (!arguments.empty() && arguments.front() == "convert")
        return ParseConvertCommand({arguments.begin() + 1, arguments.end()});
    CommandLine line;
    GivenOptions given;
    bool opens = false;  // names are those of files to open
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string& argument = arguments[i];
        if (argument.empty()) continue;
        if (argument[0] != '-' && opens) {
            line.openFiles.push_back(argument);
            continue;
        }
        if (argument[0] != '-') {
            line.mode = CommandLine::Mode::Convert;
            if (!line.files.empty()) line.files += ' ';
            line.files += argument;
            continue;
        }
        if (argument == "--help" || argument == "-h") {
            line.mode = CommandLine::Mode::Help;
            return line;
        }
        if (argument == "--version") {
            line.mode = CommandLine::Mode::Version;
            return line;
        }
        const std::size_t equals = argument.find('=');
        const std::string name = argument.substr(0, equals);
        // A desktop names as many files as its user has chosen, and none when the program is just started.
        opens = name == kOpen && equals == std::string::npos;
        if (opens) continue;
        const auto* const row = std::find_if(kOptions.begin(), kOptions.end(),
                                             [&](const OptionRow& option) { return option.name == name; });
        if (row == kOptions.end()) return Refused("Unknown option " + Quoted(name) + ".");
        std::string value;
        if (equals != std::string::npos)
            value = argument.substr(equals + 1);
        else if (i + 1 < arguments.size())
            value = arguments[++i];
        else
            return Refused(name + " needs a value: " + std::string(row->valueName) + ".");
        if (std::string message = row->set(line, value); !message.empty()) return Refused(std::move(message));
        given.push_back(row);
    }
    for (std::string message : {MissingParts(line, given), Contradiction(line)})
        if (!message.empty()) return Refused(std::move(message));
    return line;
}

FilePair SplitFilePair(std::string_view files) {
    const auto clean = [](std::string_view name) {
        // The quotes may stand around each name or around the pair.
        name = Trim(name);
        if (name.starts_with('"')) name.remove_prefix(1);
        if (name.ends_with('"')) name.remove_suffix(1);
        return std::string(Trim(name));
    };
    const std::size_t semicolon = files.find(';');
    if (semicolon == std::string_view::npos) return {clean(files), ""};
    return {clean(files.substr(0, semicolon)), clean(files.substr(semicolon + 1))};
}

std::string OptionHelp(std::string_view name, std::string_view valueName, std::string_view help) {
    constexpr std::size_t kHelpColumn = 30;
    std::string line = "  " + std::string(name) + " " + std::string(valueName);
    line.resize(std::max(line.size() + 2, kHelpColumn), ' ');
    return line.append(help) + "\n";
}

std::string HelpText() {
    std::string text =
        "Usage: marisonde [options]\n"
        "       marisonde \"DATAFILE;CALFILE\"\n"
        "       marisonde convert [options] FILE...\n"
        "Shows, records and calibrates what optical instruments in the sea send over serial lines.\n\n";
    for (const OptionRow& row : kOptions) text += OptionHelp(row.name, row.valueName, row.help);
    text += OptionHelp("--help", "", "this text");
    text += OptionHelp("--version", "", "the version of the program") + "\n";
    text += ConvertHelpText() + "\n";
    text += "Models: " + ModelNames() + ".\n";
    text += "Without options a window opens. MARISONDE_PORTS=\"1=/dev/pts/4,7=/tmp/sim0\" names the ports,\n";
    text += "MARISONDE_SETTINGS=FILE another settings file.\n";
    return text;
}

}  // namespace marisonde
