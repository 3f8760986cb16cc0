#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "app/CommandLine.h"
#include "common/ConversionUtils.h"

namespace marisonde {

namespace {

/// One row per option; without `valueName` it takes no value.
struct ConvertOption {
    std::string_view name;
    std::string_view valueName;
    bool (*set)(CommandLine&, std::string_view);  ///< false: the value is none of those allowed
    std::string_view help;
};

bool SetCal(CommandLine& line, std::string_view value) {
    line.calFile = value;
    return !value.empty();
}
bool SetTo(CommandLine& line, std::string_view value) {
    line.convert.decimal = EqualIgnoringCase(value, "dec");
    return line.convert.decimal || EqualIgnoringCase(value, "dat");
}
bool SetFolder(CommandLine& line, std::string_view value) {
    line.convert.folder = value;
    return !value.empty();
}
bool SetHousekeeping(CommandLine& line, std::string_view /*value*/) {
    return line.convert.housekeeping = true;
}
bool SetOverwrite(CommandLine& line, std::string_view /*value*/) {
    return line.convert.overwrite = true;
}

constexpr std::array kConvertOptions{
    ConvertOption{"--cal", "FILE", SetCal, "the calibration to use; if not given, the one used last"},
    ConvertOption{"--to", "dat|dec", SetTo,
                  "calibrated data (dat, the usual) or a table of raw numbers (dec)"},
    ConvertOption{"--housekeeping", "", SetHousekeeping, "add the housekeeping columns to raw numbers"},
    ConvertOption{"--out", "DIR", SetFolder, "write into this folder, not beside each file"},
    ConvertOption{"--overwrite", "", SetOverwrite, "replace files that are there already"},
};

CommandLine Refused(std::string message) {
    CommandLine line;
    line.mode = CommandLine::Mode::Bad;
    line.message = std::move(message);
    return line;
}

}  // namespace

CommandLine ParseConvertCommand(const std::vector<std::string>& arguments) {
    CommandLine line;
    line.mode = CommandLine::Mode::ConvertFiles;
    bool namesOnly = false;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string& argument = arguments[i];
        if (namesOnly || !argument.starts_with('-')) {
            line.convert.files.push_back(argument);
            continue;
        }
        namesOnly = argument == "--";
        if (namesOnly) continue;
        if (argument == "--help" || argument == "-h") {
            line.mode = CommandLine::Mode::Help;
            return line;
        }
        const std::size_t equals = argument.find('=');
        const std::string name = argument.substr(0, equals);
        const auto* const row =
            std::find_if(kConvertOptions.begin(), kConvertOptions.end(),
                         [&](const ConvertOption& option) { return option.name == name; });
        if (row == kConvertOptions.end()) return Refused("Unknown option '" + name + "' of convert.");
        const bool given = equals != std::string::npos;
        std::string value;
        if (given)
            value = argument.substr(equals + 1);
        else if (!row->valueName.empty() && i + 1 < arguments.size())
            value = arguments[++i];
        if ((given && row->valueName.empty()) || !row->set(line, value))
            return Refused(row->valueName.empty()
                               ? name + " takes no value."
                               : name + " needs a value: " + std::string(row->valueName) + ".");
    }
    if (line.convert.files.empty()) return Refused("convert needs the names of files.");
    if (line.convert.housekeeping && !line.convert.decimal)
        return Refused("--housekeeping goes with --to dec.");
    return line;
}

std::string ConvertHelpText() {
    std::string text =
        "\"DATAFILE;CALFILE\" writes the calibrated file of a raw data file and ends; a data file alone uses "
        "the\n"
        "calibration used last. convert does so with many files, and says what became of each:\n";
    for (const ConvertOption& row : kConvertOptions) text += OptionHelp(row.name, row.valueName, row.help);
    return text;
}

}  // namespace marisonde
