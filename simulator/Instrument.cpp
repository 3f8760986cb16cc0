#include "simulator/Instrument.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "simulator/Corvane.h"
#include "simulator/Delph.h"
#include "simulator/FieldText.h"
#include "simulator/Tidal.h"

namespace marisonde::simulator {

namespace {

using namespace std::chrono_literals;

constexpr Millis kTurnOn = 400ms;
constexpr Millis kCount = 1000ms;
constexpr Millis kMemoryScan = 10s;  // after a reset
constexpr std::size_t kLongestCommand = 200;
constexpr std::size_t kLongestFileLine = 4096;
constexpr std::size_t kLongestInbox = 4096;
constexpr char kCancel = 3;
constexpr char kBackspace = 8;
constexpr char kDelete = 127;
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

Nanos FromSeconds(double seconds) {
    return Nanos{static_cast<std::int64_t>(seconds * 1e9)};
}

/// With the serial that the options give. It is a view of their text.
ModelInfo InfoFor(Model model, const Options& options) {
    ModelInfo info = InfoOf(model);
    if (!options.serial.empty()) info.serial = options.serial;
    return info;
}

}  // namespace

Instrument::Instrument(Model model, const Options& options)
    : options_(options),
      info_(InfoFor(model, options_)),
      form_(options.form == LineForm::Natural ? NaturalForm(model) : options.form),
      shutter_(info_.family == Family::Corvane &&
               options.shutter.value_or(info_.config.find("T1") != std::string_view::npos)),
      line_(options.baud),
      faults_(options.faults, options.seed),
      water_(options.bottomM),
      noise_(options.seed),
      memory_(options.startDate.time_since_epoch().count()) {
    const double rate = options.samplesPerSecond > 0 ? options.samplesPerSecond : NaturalRate(info_.family);
    extraEvery_ = options.extraEvery;
    if (extraEvery_ < 0)
        extraEvery_ = IsHexForm(form_) ? std::max(10, static_cast<int>(kUsualExtraS * rate)) : 0;
    period_ = std::max(Nanos{1}, FromSeconds(1 / rate));
    settings_.period = 1 / rate;
    settings_.startOnPower = options.powerOn == PowerOn::Sampling ? 1 : 0;
    settings_.hexadecimal = IsHexForm(form_) ? 1 : 0;
    storedSettings_ = settings_;
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

void Instrument::Restart(Millis now) {
    AdvanceTo(now);
    work_.reset();
    block_.reset();
    recording_.reset();
    logging_ = false;
    files_.DropCapture();
    question_ = Question::None;
    inbox_.clear();
    command_.clear();
    state_ = State::Stopped;
    shutterOpen_ = false;
    echo_ = true;
    Adopt(storedSettings_);
    LoadStoredCal();
}

void Instrument::Break(bool on, Millis now) {
    AdvanceTo(now);
    if (on) {
        if (!breakSince_) breakSince_ = now_;
        return;
    }
    const auto since = std::exchange(breakSince_, std::nullopt);
    if (!since || now_ - *since < kResetBreak) return;
    Restart(now);
    EnterAfter(State::WakingUp, kMemoryScan);
}

void Instrument::AdvanceTo(Nanos now) {
    for (;;) {
        const bool stateDue = StateIsTimed() && due_ <= now;
        const bool workDue = work_ && work_->due <= now;
        if (!stateDue && !workDue) break;
        const bool workFirst = workDue && (!stateDue || work_->due <= due_);
        now_ = std::max(now_, workFirst ? work_->due : due_);
        if (workFirst)
            StepWork();
        else
            StepState();
    }
    now_ = std::max(now_, now);
}

void Instrument::EnterAfter(State state, Millis delay) {
    state_ = state;
    due_ = now_ + delay;
}

void Instrument::WorkAfter(Nanos delay, std::function<void()> run) {
    work_ = Work{now_ + delay, std::move(run)};
}

void Instrument::StepWork() {
    const auto run = std::move(work_->run);
    work_.reset();
    run();
    HearWhatWaited();
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
            due_ += period_;
            if (!BetweenBursts()) TakeSample();
            break;
        case State::Downloading:
            SendCastLine();
            break;
        case State::Transferring:
            Send(block_->OnDue(now_));
            EndBlock();
            break;
        case State::Asleep:
        case State::Stopped:
            break;
    }
}

bool Instrument::MovesShutter() const {
    return shutter_ && settings_.shutterEnabled != 0 && settings_.shutterAuto != 0;
}

void Instrument::EndShutterTurn() {
    shutterOpen_ = state_ == State::OpeningShutter;
    state_ = State::Stopped;
    Send("..done");
    Say("");
    if (shutterOpen_) BeginCountdown();
    HearWhatWaited();
}

void Instrument::BeginCountdown() {
    countdown_ = options_.startCountdown + static_cast<int>(settings_.startDelay) + 1;
    CountDown();
}

void Instrument::CountDown() {
    if (--countdown_ > 0) {
        Say("Starting in " + std::to_string(countdown_));
        EnterAfter(State::CountingDown, kCount);
        return;
    }
    sampledFrom_ = now_;
    if (logging_) memory_.Begin(Now().secondsUnix, settings_.period);
    EnterAfter(State::Sampling, Millis{0});
}

void Instrument::EndSampling() {
    logging_ = false;
    state_ = State::Stopped;
    if (!MovesShutter() || !shutterOpen_) return;
    Send("Closing shutter");
    state_ = State::ClosingShutter;
    due_ = now_ + FromSeconds(settings_.shutterTime);
}

Instrument::Moment Instrument::Now() const {
    const auto hundredths = now_.count() / 10'000'000;
    return {now_, options_.startDate.time_since_epoch().count() + clockOffset_ + hundredths / 100,
            static_cast<int>(hundredths % 100)};
}

bool Instrument::BetweenBursts() const {
    if (settings_.burst == 0 || settings_.burstCycle <= 0) return false;
    const double since = std::chrono::duration<double>(now_ - sampledFrom_).count();
    return std::fmod(since, settings_.burstCycle) >= settings_.burstLength;
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
    if (logging_) LogLine();
    ++samples_;
    lastLine_ = line_.BusyUntil() - begin;
}

void Instrument::Adopt(const SampleSettings& settings) {
    if (settings.period != settings_.period) period_ = FromSeconds(settings.period);
    if ((settings.hexadecimal != 0) != IsHexForm(form_))
        form_ = settings.hexadecimal != 0 ? LineForm::Hex : LineForm::Decimal;
    settings_ = settings;
}

void Instrument::Send(std::string_view bytes) {
    if (!options_.replies.mute) line_.Send(bytes, now_);
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
    if (state_ == State::WakingUp) return;
    if (work_ || state_ == State::OpeningShutter || state_ == State::ClosingShutter) {
        if (inbox_.size() < kLongestInbox) inbox_ += byte;
        return;
    }
    if (state_ == State::Transferring) return HearInBlock(byte);
    if (byte == '\n') return;
    if (byte == kCancel) {
        if (files_.Capturing()) EndCapture();
        command_.clear();
        if (state_ == State::Downloading) RunCommand("STOP");
        return;
    }
    if (byte == kBackspace || byte == kDelete) return RubOut();
    Echo(byte == '\r' ? "\r\n" : std::string_view(&byte, 1));
    if (byte == '\r') {
        RunLine(std::exchange(command_, {}));
    } else if (command_.size() < (files_.Capturing() ? kLongestFileLine : kLongestCommand)) {
        command_ += byte;
    }
}

void Instrument::Echo(std::string_view bytes) {
    if (echo_ && state_ != State::Sampling && state_ != State::Downloading) Send(bytes);
}

/// Takes the last character of the line back, on the screen of a terminal too.
void Instrument::RubOut() {
    if (command_.empty()) return;
    command_.pop_back();
    Echo("\b \b");
}

void Instrument::HearWhatWaited() {
    for (const char byte : std::exchange(inbox_, {})) HearByte(byte);
}

void Instrument::HearInBlock(char byte) {
    Send(block_->Hear(byte, now_));
    EndBlock();
}

void Instrument::TransferBlock(std::unique_ptr<BlockTransfer> transfer, std::function<void()> whenOver) {
    block_ = std::move(transfer);
    afterBlock_ = std::move(whenOver);
    state_ = State::Transferring;
    due_ = block_->Due();
}

void Instrument::EndBlock() {
    due_ = block_->Due();
    if (!block_->Over()) return;
    state_ = State::Stopped;
    if (const auto whenOver = std::exchange(afterBlock_, nullptr)) whenOver();
    block_.reset();
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
