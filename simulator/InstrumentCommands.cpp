#include <algorithm>
#include <array>

#include "simulator/Dates.h"
#include "simulator/FieldText.h"
#include "simulator/Instrument.h"

namespace marisonde::simulator {

namespace {

using namespace std::chrono_literals;

constexpr Millis kStore = 500ms;
constexpr std::array kRates{4800, 9600, 19200, 38400, 57600, 115200};

bool IsLetter(char c) {
    return c >= 'A' && c <= 'Z';
}

}  // namespace

std::span<const Instrument::Command> Instrument::CommonCommands() {
    static const std::array commands{
        Command{"ID", &Instrument::Identify},       Command{"VER", &Instrument::TellVersion},
        Command{"WAKE", &Instrument::Wake},         Command{"SLEEP", &Instrument::Sleep},
        Command{"START", &Instrument::Start},       Command{"STOP", &Instrument::Stop},
        Command{"TIME", &Instrument::Time},         Command{"DATE", &Instrument::Time},
        Command{"BAUD", &Instrument::Baud},         Command{"ECHOON", &Instrument::EchoOn},
        Command{"ECHOOFF", &Instrument::EchoOff},   Command{"DIR", &Instrument::Directory},
        Command{"DOWNLOAD", &Instrument::Download}, Command{"DELCAST", &Instrument::DeleteCast},
        Command{"CLEARLOG", &Instrument::ClearLog}, Command{"CAPTURE", &Instrument::Capture},
        Command{"\\", &Instrument::FileCommand},
    };
    return commands;
}

const Instrument::Command* Instrument::FindCommand(std::string_view upperLine) const {
    const Command* found = nullptr;
    for (const auto table : {CommonCommands(), FamilyCommands()})
        for (const Command& command : table) {
            if (!upperLine.starts_with(command.name)) continue;
            const auto rest = upperLine.substr(command.name.size());
            if (!command.glued && !rest.empty() && IsLetter(rest[0])) continue;
            // "BURST" begins "BURSTCYCLE": the longest name is meant.
            if (!found || command.name.size() > found->name.size()) found = &command;
        }
    return found;
}

void Instrument::RunLine(const std::string& line) {
    if (files_.Capturing()) return files_.AddLine(line);
    if (Trimmed(line).empty()) return HearEmptyLine();
    if (options_.replies.delay <= 0ms) return RunCommand(line);
    WorkAfter(options_.replies.delay, [this, line] { RunCommand(line); });
}

void Instrument::RunCommand(std::string_view line) {
    line = Trimmed(line);
    const std::string upper = UpperCase(line);
    replyLines_ = 0;
    if (AnswersQuestion(upper)) return;
    const Command* const command = FindCommand(upper);
    const bool busy = state_ == State::Sampling || state_ == State::Downloading;
    if (busy && (!command || command->name != "STOP")) return;
    if (!command) return ReplyUnknown();
    if (command->name == options_.replies.silentTo) return;
    auto argument = line.substr(command->name.size());
    if (!argument.empty() && (argument[0] == ',' || argument[0] == ' ')) argument.remove_prefix(1);
    (this->*command->run)(argument);
}

void Instrument::Reply(std::string_view line) {
    const ReplyOptions& odd = options_.replies;
    if (odd.cutAfterLines >= 0 && replyLines_ >= odd.cutAfterLines) return;
    ++replyLines_;
    Say(line);
    if (odd.doubledLines) Say(line);
}

void Instrument::ReplyText(std::string_view text) {
    while (!text.empty()) {
        const auto end = std::min(text.find("\r\n"), text.size());
        Reply(text.substr(0, end));
        text.remove_prefix(std::min(end + 2, text.size()));
    }
}

void Instrument::ReplyRaw() {
    scratch_.clear();
    AppendRaw(scratch_, Now());
    Reply(scratch_);
}

void Instrument::ReplySettings(std::span<const SettingRow> rows) {
    for (const SettingRow& row : rows) Reply(SettingLine(row, settings_));
}

bool Instrument::SetOrReply(std::span<const SettingRow> rows, std::string_view argument,
                            const std::function<bool(const SampleSettings&)>& allowed) {
    SampleSettings changed = settings_;
    if (!ApplySettings(rows, argument, changed) || (allowed && !allowed(changed))) {
        ReplyRefused();
        return false;
    }
    Adopt(changed);
    ReplySettings(rows);
    return true;
}

void Instrument::StoreLater(std::string_view what, std::function<void()> store) {
    std::string line("Storing ");
    line.append(what).append("..OK");
    WorkAfter(kStore, [this, line, keep = std::move(store)] {
        keep();
        Reply(line);
    });
}

void Instrument::Identify(std::string_view /*argument*/) {
    if (options_.shortId && info_.family == Family::Tidal) return Reply(info_.serial);
    Reply("Identification:");
    Reply("Model: " + std::string(info_.code));
    Reply("S/N: " + std::string(info_.serial));
    Reply("Config: " + Config());
    Reply("ID: " + std::string(kLabel));
    Reply("Firmware: " + options_.firmware);
    Reply("Maximum depth: " + AllDigits(MaxDepthM()));
    if (info_.family != Family::Corvane) return;
    Reply("Clock: " + DateText(ClockTime()));
    Reply("Logged casts: " + std::to_string(memory_.Count()));
}

void Instrument::TellVersion(std::string_view /*argument*/) {
    Reply("Firmware version " + options_.firmware);
}

void Instrument::Wake(std::string_view /*argument*/) {
    Reply(std::string(info_.code) + " ready");
}

void Instrument::Sleep(std::string_view /*argument*/) {
    Reply("Sleeping");
    state_ = State::Asleep;
}

void Instrument::Start(std::string_view argument) {
    if (state_ != State::Stopped) return;
    // The second value is 0 for samples that are only sent.
    const auto texts = SplitAtCommas(argument);
    logging_ = texts.size() < 2 || NumberFrom(texts[1]) != 0.0;
    if (!MovesShutter() || shutterOpen_) return BeginCountdown();
    Send("Opening shutter");
    EnterAfter(State::OpeningShutter, Millis{static_cast<int>(settings_.shutterTime * 1000)});
}

void Instrument::Stop(std::string_view /*argument*/) {
    Reply(state_ == State::CountingDown ? "Start aborted" : "Stopped");
    recording_.reset();
    EndSampling();
}

void Instrument::Time(std::string_view argument) {
    if (!Trimmed(argument).empty()) {
        const auto time = DateFromText(argument);
        if (!time) return ReplyRefused();
        SetClock(*time);
    }
    Reply("Time: " + DateText(ClockTime()));
}

void Instrument::Baud(std::string_view argument) {
    const double asked = Trimmed(argument).empty() ? BaudRate() : NumberFrom(argument).value_or(0);
    const auto* const rate = std::find(kRates.begin(), kRates.end(), asked);
    if (rate == kRates.end()) return ReplyRefused();
    Reply("Baud rate: " + std::to_string(*rate));
    // The answer still goes out at the old rate.
    WorkAfter(std::max(line_.BusyUntil() - now_, Nanos{0}), [this, baud = *rate] { line_.SetRate(baud); });
}

void Instrument::EchoOn(std::string_view /*argument*/) {
    echo_ = true;
}

void Instrument::EchoOff(std::string_view /*argument*/) {
    echo_ = false;
}

double Instrument::Firmware() const {
    return NumberFrom(options_.firmware).value_or(0);
}

std::string Instrument::Config() const {
    if (!options_.config.empty()) return options_.config;
    std::string config(info_.config);
    const auto place = config.find('T');
    if (place != std::string::npos) config[place + 1] = shutter_ ? '1' : '0';
    return config;
}

ModelInfo Instrument::CalInfo() const {
    ModelInfo info = info_;
    if (!options_.calSerial.empty()) info.serial = options_.calSerial;
    return info;
}

std::int64_t Instrument::CalibratedAt() const {
    return (options_.startDate - std::chrono::days{options_.calAgeDays}).time_since_epoch().count();
}

}  // namespace marisonde::simulator
