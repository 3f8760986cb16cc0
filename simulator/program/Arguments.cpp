#include "simulator/program/Arguments.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>

#include "simulator/FieldText.h"

namespace marisonde::simulator {

namespace {

constexpr std::array kRates{4800, 9600, 19200, 38400, 57600, 115200};

template <class T>
std::optional<T> Number(std::string_view text) {
    T value{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc{} || end != text.data() + text.size() || value < T{0}) return std::nullopt;
    return value;
}

bool SetBaud(Arguments& a, std::string_view text) {
    const auto baud = Number<int>(text);
    if (!baud || std::find(kRates.begin(), kRates.end(), *baud) == kRates.end()) return false;
    a.options.baud = *baud;
    return true;
}

bool SetForm(Arguments& a, std::string_view text) {
    const auto form = LineFormFromText(text);
    if (form) a.options.form = *form;
    return form.has_value();
}

bool SetStart(Arguments& a, std::string_view text) {
    constexpr std::array<std::string_view, 3> words{"sampling", "stopped", "sleeping"};
    const auto* const word = std::find(words.begin(), words.end(), text);
    if (word == words.end()) return false;
    a.options.powerOn = static_cast<PowerOn>(word - words.begin());
    return true;
}

bool SetRate(Arguments& a, std::string_view text) {
    const auto rate = Number<double>(text);
    if (!rate || *rate < 0.001 || *rate > 1000) return false;
    a.options.samplesPerSecond = *rate;
    return true;
}

bool SetBottom(Arguments& a, std::string_view text) {
    const auto depth = Number<double>(text);
    if (!depth || *depth > 400) return false;
    a.options.bottomM = *depth;
    return true;
}

template <class T>
bool Store(T& place, std::string_view text) {
    const auto value = Number<T>(text);
    if (value) place = *value;
    return value.has_value();
}

/// "10,2": every 10 s for 2 s.
bool SetStall(Arguments& a, std::string_view text) {
    const auto comma = text.find(',');
    if (comma == std::string_view::npos) return false;
    const auto every = Number<int>(text.substr(0, comma));
    const auto lasts = Number<int>(text.substr(comma + 1));
    if (!every || !lasts || *every == 0) return false;
    a.options.faults.stallEvery = std::chrono::seconds{*every};
    a.options.faults.stallFor = std::chrono::seconds{*lasts};
    return true;
}

bool SetVanish(Arguments& a, std::string_view text) {
    const auto seconds = Number<int>(text);
    if (seconds) a.options.faults.vanishAt = std::chrono::seconds{*seconds};
    return seconds.has_value();
}

bool StoreText(std::string& place, std::string_view text) {
    place = text;
    return !text.empty();
}

bool SetFirmware(Arguments& a, std::string_view text) {
    return Number<double>(text) && StoreText(a.options.firmware, text);
}

bool SetCalStore(Arguments& a, std::string_view text) {
    constexpr std::array<std::string_view, 3> words{"both", "channels", "file"};
    const auto* const word = std::find(words.begin(), words.end(), text);
    if (word == words.end()) return false;
    a.options.calStore = static_cast<CalStore>(word - words.begin());
    return true;
}

bool SetReplyDelay(Arguments& a, std::string_view text) {
    const auto millis = Number<int>(text);
    if (millis) a.options.replies.delay = Millis{*millis};
    return millis.has_value();
}

bool SetSilentTo(Arguments& a, std::string_view text) {
    return StoreText(a.options.replies.silentTo, UpperCase(text));
}

struct OptionRow {
    std::string_view name;
    std::string_view value;  ///< name of its value in the help; empty for a switch
    std::string_view help;
    bool (*set)(Arguments&, std::string_view);
};

const std::array kOptions{
    OptionRow{"--link", "PATH", "make PATH a link to the device; with several models PATH0, PATH1, ...",
              [](Arguments& a, std::string_view v) { return a.link = v, !v.empty(); }},
    OptionRow{"--cal", "PATH", "write the calibration to PATH; with several models PATH0, PATH1, ...",
              [](Arguments& a, std::string_view v) { return a.cal = v, !v.empty(); }},
    OptionRow{"--baud", "N", "rate of the instruments: 4800, 9600, 19200 (default), 38400, 57600, 115200",
              SetBaud},
    OptionRow{"--seed", "N", "seed of noise and faults, default 1",
              [](Arguments& a, std::string_view v) { return Store(a.options.seed, v); }},
    OptionRow{"--form", "NAME",
              "line form: natural, hex, hundredths, verbose, decimal, decimal-timed, short, short-timed",
              SetForm},
    OptionRow{"--rate", "N", "samples per second, 0.001 to 1000, as far as the line holds them", SetRate},
    OptionRow{"--extra-every", "N", "one housekeeping line before each n-th sample; 0 none",
              [](Arguments& a, std::string_view v) { return Store(a.options.extraEvery, v); }},
    OptionRow{
        "--star-in-checksum", "", "sum the leading * too, as some firmware does",
        [](Arguments& a, std::string_view) { return a.options.checksum = ChecksumStyle::WithStar, true; }},
    OptionRow{"--start", "STATE", "sampling (default), stopped or sleeping", SetStart},
    OptionRow{"--depth", "M", "depth of the bottom in metres, up to 400, default 100", SetBottom},
    OptionRow{"--firmware", "V", "version of the firmware, default 1.85", SetFirmware},
    OptionRow{"--serial", "S", "serial number, such as CV6-123",
              [](Arguments& a, std::string_view v) { return StoreText(a.options.serial, v); }},
    OptionRow{"--config", "C", "configuration text",
              [](Arguments& a, std::string_view v) { return StoreText(a.options.config, v); }},
    OptionRow{"--short-id", "", "Tidals: identify by the serial alone, as old firmware does",
              [](Arguments& a, std::string_view) { return a.options.shortId = true; }},
    OptionRow{"--cal-serial", "S", "serial number in the calibration",
              [](Arguments& a, std::string_view v) { return StoreText(a.options.calSerial, v); }},
    OptionRow{"--cal-age", "N", "days since the calibration, default 45",
              [](Arguments& a, std::string_view v) { return Store(a.options.calAgeDays, v); }},
    OptionRow{"--cal-store", "KIND", "Corvanes: give the calibration as file, channels or both (default)",
              SetCalStore},
    OptionRow{"--dump-text", "", "Tidals: dump the calibration as text, not as image",
              [](Arguments& a, std::string_view) { return a.options.dumpAsText = true; }},
    OptionRow{"--reply-delay", "MS", "answer each command MS milliseconds late", SetReplyDelay},
    OptionRow{"--mute", "", "say nothing at all",
              [](Arguments& a, std::string_view) { return a.options.replies.mute = true; }},
    OptionRow{"--silent-to", "NAME", "do not answer the command NAME", SetSilentTo},
    OptionRow{"--cut-replies", "N", "end each answer after N lines",
              [](Arguments& a, std::string_view v) { return Store(a.options.replies.cutAfterLines, v); }},
    OptionRow{"--double-replies", "", "say each line of an answer twice",
              [](Arguments& a, std::string_view) { return a.options.replies.doubledLines = true; }},
    OptionRow{"--flip", "N", "flip a bit of one byte in N",
              [](Arguments& a, std::string_view v) { return Store(a.options.faults.flipOneIn, v); }},
    OptionRow{"--drop", "N", "lose one byte in N",
              [](Arguments& a, std::string_view v) { return Store(a.options.faults.dropOneIn, v); }},
    OptionRow{"--babble", "N", "put random bytes before one byte in N",
              [](Arguments& a, std::string_view v) { return Store(a.options.faults.babbleOneIn, v); }},
    OptionRow{"--split", "", "send in uneven pieces",
              [](Arguments& a, std::string_view) { return a.options.faults.splitWrites = true; }},
    OptionRow{"--stall", "S,L", "send nothing for L seconds, once in S seconds", SetStall},
    OptionRow{"--vanish", "S", "the devices disappear after S seconds", SetVanish},
    OptionRow{"--help", "", "show this text and end",
              [](Arguments& a, std::string_view) { return a.help = true; }},
    OptionRow{"--version", "", "show the version and end",
              [](Arguments& a, std::string_view) { return a.version = true; }},
};

/// Reads the option at `index` and its value; moves `index` to the last word used.
void ReadOption(const std::vector<std::string_view>& words, std::size_t& index, Arguments& arguments) {
    const std::string_view word = words[index];
    const auto equals = word.find('=');
    const std::string_view name = word.substr(0, equals);
    const auto* row =
        std::find_if(kOptions.begin(), kOptions.end(), [&](const OptionRow& r) { return r.name == name; });
    if (row == kOptions.end()) {
        arguments.error = "unknown option " + std::string(name);
        return;
    }
    std::string_view value;
    if (equals != std::string_view::npos) {
        value = word.substr(equals + 1);
    } else if (!row->value.empty() && index + 1 < words.size()) {
        value = words[++index];
    }
    const bool surplus = row->value.empty() && equals != std::string_view::npos;
    if (surplus || !row->set(arguments, value))
        arguments.error = "bad value \"" + std::string(value) + "\" for " + std::string(name);
}

void CheckModels(Arguments& arguments) {
    if (arguments.help || arguments.version || !arguments.error.empty()) return;
    if (arguments.models.empty()) arguments.error = "no model named";
    for (const Model model : arguments.models)
        if (!OffersForm(model, arguments.options.form))
            arguments.error = std::string(InfoOf(model).name) + " does not have that line form";
}

}  // namespace

Arguments ReadArguments(const std::vector<std::string_view>& words) {
    Arguments arguments;
    for (std::size_t i = 0; i < words.size() && arguments.error.empty(); ++i) {
        if (words[i].substr(0, 1) == "-") {
            ReadOption(words, i, arguments);
        } else if (const auto model = ModelFromText(words[i])) {
            arguments.models.push_back(*model);
        } else {
            arguments.error = "unknown model " + std::string(words[i]);
        }
    }
    CheckModels(arguments);
    return arguments;
}

std::string HelpText() {
    std::string text =
        "Usage: marisonde-simulator MODEL... [OPTION...]\n"
        "Simulated instruments, each on a pseudo-terminal of its own. Prints one line for each: the model "
        "and\n"
        "the device. They answer at their own rate only; whoever opens the device with another sees "
        "garbage.\n"
        "Ends on SIGINT and SIGTERM.\n\nModels, in any case:";
    for (int i = 0; i < kModelCount; ++i) text.append(" ").append(InfoOf(static_cast<Model>(i)).name);
    text += "\n\nOptions:\n";
    for (const OptionRow& row : kOptions) {
        std::string left("  ");
        left.append(row.name).append(row.value.empty() ? "" : " ").append(row.value);
        left.resize(std::max<std::size_t>(left.size() + 2, 24), ' ');
        text.append(left).append(row.help).append("\n");
    }
    return text;
}

std::string NumberedPath(const std::string& path, std::size_t index, std::size_t count) {
    return count == 1 ? path : path + std::to_string(index);
}

}  // namespace marisonde::simulator
