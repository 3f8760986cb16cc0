#include "simulator/Instrument.h"

#include <algorithm>
#include <cctype>
#include <utility>

#include "simulator/Corvane.h"
#include "simulator/Delph.h"
#include "simulator/Tidal.h"

namespace marisonde::simulator {

namespace {

using namespace std::chrono_literals;

constexpr Millis kTurnOn = 400ms;
constexpr Millis kShutterTurn = 2500ms;
constexpr Millis kCount = 1000ms;
constexpr std::size_t kLongestCommand = 200;
// Housekeeping comes about this often, and no more than before every tenth sample.
constexpr double kUsualExtraS = 10;

LineForm NaturalForm(Model model) {
    if (InfoOf(model).family == Family::Corvane) return LineForm::HexHundredths;
    return model == Model::LTidal || model == Model::NTidal ? LineForm::Hex : LineForm::Decimal;
}

bool IsHexForm(LineForm form) {
    return form == LineForm::Hex || form == LineForm::HexHundredths || form == LineForm::HexVerbose;
}

double NaturalRate(Family family) {
    return family == Family::Corvane ? 2 : 4;
}

std::string UpperCase(std::string_view text) {
    std::string upper(text);
    for (char& c : upper) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return upper;
}

}  // namespace

Instrument::Instrument(Model model, const Options& options)
    : info_(InfoOf(model)),
      options_(options),
      form_(options.form == LineForm::Natural ? NaturalForm(model) : options.form),
      shutter_(info_.family == Family::Corvane &&
               options.shutter.value_or(info_.config.find("T1") != std::string_view::npos)),
      line_(options.baud),
      faults_(options.faults, options.seed),
      water_(options.bottomM),
      noise_(options.seed) {
    const double rate = options.samplesPerSecond > 0 ? options.samplesPerSecond : NaturalRate(info_.family);
    extraEvery_ = options.extraEvery;
    if (extraEvery_ < 0)
        extraEvery_ = IsHexForm(form_) ? std::max(10, static_cast<int>(kUsualExtraS * rate)) : 0;
    period_ = std::max(Nanos{1}, Nanos{static_cast<std::int64_t>(1e9 / rate)});
    if (options.powerOn == PowerOn::Sleeping) state_ = State::Asleep;
    if (options.powerOn != PowerOn::Sampling) return;
    state_ = State::Sampling;
    shutterOpen_ = true;
    due_ = period_;
}

void Instrument::RunUntil(Millis now) {
    AdvanceTo(now);
}

std::string Instrument::TakeOutput(Millis now) {
    AdvanceTo(now);
    return faults_.Pass(line_.Take(now_), std::chrono::duration_cast<Millis>(now_));
}

void Instrument::Receive(std::string_view bytes, Millis now) {
    AdvanceTo(now);
    if (faults_.Vanished(now)) return;
    for (const char byte : bytes) HearByte(byte);
}

void Instrument::Warn(std::string_view text, Millis now) {
    AdvanceTo(now);
    Say("!" + std::string(text));
}

void Instrument::AdvanceTo(Nanos now) {
    while (state_ != State::Asleep && state_ != State::Stopped && due_ <= now) {
        now_ = std::max(now_, due_);
        StepState();
    }
    now_ = std::max(now_, now);
}

void Instrument::EnterAfter(State state, Millis delay) {
    state_ = state;
    due_ = now_ + delay;
}

void Instrument::StepState() {
    switch (state_) {
        case State::WakingUp:
            state_ = State::Stopped;
            Say(std::string(info_.code) + " ready");
            break;
        case State::OpeningShutter:
        case State::ClosingShutter:
            EndShutterTurn();
            break;
        case State::CountingDown:
            CountDown();
            break;
        case State::Sampling:
            TakeSample();
            due_ += period_;
            break;
        case State::Asleep:
        case State::Stopped:
            break;
    }
}

void Instrument::EndShutterTurn() {
    shutterOpen_ = state_ == State::OpeningShutter;
    state_ = State::Stopped;
    Send("..done");
    Say("");
    if (shutterOpen_) BeginCountdown();
    for (const char byte : std::exchange(inbox_, {})) HearByte(byte);
}

void Instrument::BeginCountdown() {
    countdown_ = options_.startCountdown + 1;
    CountDown();
}

void Instrument::CountDown() {
    if (--countdown_ > 0) {
        Say("Starting in " + std::to_string(countdown_));
        EnterAfter(State::CountingDown, kCount);
        return;
    }
    EnterAfter(State::Sampling, Millis{0});
}

Instrument::Moment Instrument::Now() const {
    const auto hundredths = now_.count() / 10'000'000;
    return {now_, options_.startDate.time_since_epoch().count() + hundredths / 100,
            static_cast<int>(hundredths % 100)};
}

void Instrument::TakeSample() {
    // A sample that would wait behind a whole line is not taken: the instrument samples when it has sent.
    if (line_.BusyUntil() > now_ + lastLine_) return;
    const Nanos begin = std::max(now_, line_.BusyUntil());
    const Moment moment = Now();
    if (extraEvery_ > 0 && samples_ % extraEvery_ == 0) {
        scratch_.clear();
        AppendExtra(scratch_, moment);
        if (!scratch_.empty()) Say(scratch_);
    }
    scratch_.clear();
    AppendSample(scratch_, moment);
    Say(scratch_);
    ++samples_;
    lastLine_ = line_.BusyUntil() - begin;
}

void Instrument::Send(std::string_view bytes) {
    line_.Send(bytes, now_);
}

void Instrument::Say(std::string_view line) {
    Send(line);
    Send(options_.lineFeed ? "\r\n" : "\r");
}

void Instrument::HearByte(char byte) {
    if (state_ == State::Asleep) {
        Say("Turning on");
        EnterAfter(State::WakingUp, kTurnOn);
    }
    if (state_ == State::WakingUp || byte == '\n') return;
    if (state_ == State::OpeningShutter || state_ == State::ClosingShutter) {
        inbox_ += byte;
        return;
    }
    if (state_ != State::Sampling) Send(byte == '\r' ? "\r\n" : std::string_view(&byte, 1));
    if (byte == '\r') {
        RunCommand(std::exchange(command_, {}));
    } else if (command_.size() < kLongestCommand) {
        command_ += byte;
    }
}

const std::vector<Instrument::Command>& Instrument::Commands() {
    static const std::vector<Command> commands{
        {"START", &Instrument::Start},
        {"STOP", &Instrument::Stop},
        {"SLEEP", &Instrument::Sleep},
    };
    return commands;
}

void Instrument::RunCommand(std::string_view line) {
    const auto begin = line.find_first_not_of(' ');
    if (begin == std::string_view::npos) return;
    line.remove_prefix(begin);
    const auto nameEnd = std::min(line.find_first_of(", "), line.size());
    const std::string name = UpperCase(line.substr(0, nameEnd));
    const auto argument = line.substr(std::min(nameEnd + 1, line.size()));
    for (const Command& command : Commands())
        if (command.name == name) return (this->*command.run)(argument);
    Say("Unknown command");
}

void Instrument::Start(std::string_view /*argument*/) {
    if (state_ != State::Stopped) return;
    if (!shutter_ || shutterOpen_) return BeginCountdown();
    Send("Opening shutter");
    EnterAfter(State::OpeningShutter, kShutterTurn);
}

void Instrument::Stop(std::string_view /*argument*/) {
    Say(state_ == State::CountingDown ? "Start aborted" : "Stopped");
    state_ = State::Stopped;
    if (!shutter_ || !shutterOpen_) return;
    Send("Closing shutter");
    EnterAfter(State::ClosingShutter, kShutterTurn);
}

void Instrument::Sleep(std::string_view /*argument*/) {
    Say("Sleeping");
    state_ = State::Asleep;
}

std::string Instrument::Config() const {
    std::string config(info_.config);
    const auto place = config.find('T');
    if (place != std::string::npos) config[place + 1] = shutter_ ? '1' : '0';
    return config;
}

std::int64_t Instrument::CalibratedAt() const {
    return (options_.startDate - std::chrono::days{45}).time_since_epoch().count();
}

std::unique_ptr<Instrument> MakeInstrument(Model model, const Options& options) {
    if (!OffersForm(model, options.form)) return nullptr;
    switch (InfoOf(model).family) {
        case Family::Corvane:
            return std::make_unique<Corvane>(model, options);
        case Family::Tidal:
            return std::make_unique<Tidal>(model, options);
        case Family::Delph:
            return std::make_unique<Delph>(model, options);
    }
    return nullptr;
}

std::unique_ptr<Instrument> MakeInstrument(std::string_view model, const Options& options) {
    const auto found = ModelFromText(model);
    return found ? MakeInstrument(*found, options) : nullptr;
}

}  // namespace marisonde::simulator
