#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/FaultLayer.h"
#include "simulator/OutputLine.h"
#include "simulator/Random.h"
#include "simulator/WaterColumn.h"

namespace marisonde::simulator {

/// What the water truly is at a moment, free of noise, in the units that a host shows.
struct Truth {
    double depthM = 0;
    double tempC = 0;
    std::vector<double>
        bb;  ///< 1/m by channel, corrected for losses; fluorescence channels in their own unit
    std::vector<double>
        c;         ///< attenuation without that of water, 1/m, by attenuation channel (k of the host)
    double a = 0;  ///< absorption without that of water, 1/m; l-Tidal only
};

/// One simulated instrument. Time is the caller's: every call names the time since power came on, and time
/// never runs backward (an earlier time counts as the latest one named). Nothing here looks at a real clock.
class Instrument {
  public:
    Instrument(Model model, const Options& options);
    virtual ~Instrument() = default;
    Instrument(const Instrument&) = delete;
    Instrument& operator=(const Instrument&) = delete;

    /// Samples, speaks and changes state up to `now`.
    void RunUntil(Millis now);
    /// The bytes that have come through the line by `now` at its rate (10 bits each), since the last call.
    std::string TakeOutput(Millis now);
    /// Bytes that reach the instrument at its own rate at `now`.
    void Receive(std::string_view bytes, Millis now);
    /// The instrument says "!" and `text`, as it does to warn its user.
    void Warn(std::string_view text, Millis now);

    [[nodiscard]] const ModelInfo& Info() const { return info_; }
    [[nodiscard]] const Options& Settings() const { return options_; }
    [[nodiscard]] bool Sampling() const { return state_ == State::Sampling; }
    [[nodiscard]] bool Asleep() const { return state_ == State::Asleep; }
    [[nodiscard]] bool HasShutter() const { return shutter_; }
    [[nodiscard]] long SampleCount() const { return samples_; }
    [[nodiscard]] int BaudRate() const { return line_.Rate(); }
    /// True from the time of FaultOptions::vanishAt on: the device is gone.
    [[nodiscard]] bool Vanished(Millis now) const { return faults_.Vanished(now); }

    /// The calibration that inverts what the instrument sends, as the text of its `.cal` file, lines in CR
    /// LF.
    [[nodiscard]] virtual std::string CalText() const = 0;
    [[nodiscard]] virtual Truth TruthAt(Millis now) const = 0;

  protected:
    /// The moment of a sample.
    struct Moment {
        Nanos sinceOn;             ///< since power came on
        std::int64_t secondsUnix;  ///< whole seconds since 1970 by the instrument's clock
        int hundredths;
    };
    /// Appends one sample as one line without its end.
    virtual void AppendSample(std::string& out, const Moment& moment) = 0;
    /// Appends the line that comes between samples now and then ("*H", "*I"), or nothing.
    virtual void AppendExtra(std::string& out, const Moment& moment) = 0;

    [[nodiscard]] LineForm Form() const { return form_; }
    [[nodiscard]] const WaterColumn& Water() const { return water_; }
    Random& Noise() { return noise_; }
    [[nodiscard]] std::string Config() const;
    /// Seconds since 1970 of the calibration: 45 days before the start date.
    [[nodiscard]] std::int64_t CalibratedAt() const;

  private:
    enum class State { Asleep, WakingUp, Stopped, OpeningShutter, CountingDown, Sampling, ClosingShutter };
    struct Command {
        std::string_view name;
        void (Instrument::*run)(std::string_view argument);
    };
    static const std::vector<Command>& Commands();

    void AdvanceTo(Nanos now);
    void StepState();
    void EnterAfter(State state, Millis delay);
    void TakeSample();
    void HearByte(char byte);
    void RunCommand(std::string_view line);
    void Say(std::string_view line);
    void Send(std::string_view bytes);
    [[nodiscard]] Moment Now() const;

    void BeginCountdown();
    void CountDown();
    void EndShutterTurn();
    void Start(std::string_view argument);
    void Stop(std::string_view argument);
    void Sleep(std::string_view argument);

    ModelInfo info_;
    Options options_;
    LineForm form_;
    bool shutter_;
    int extraEvery_ = 0;
    Nanos period_{0};
    OutputLine line_;
    FaultLayer faults_;
    WaterColumn water_;
    Random noise_;
    State state_ = State::Stopped;
    Nanos now_{0};
    Nanos due_{0};  ///< when the state takes its next step; meaningless in Asleep and Stopped
    int countdown_ = 0;
    bool shutterOpen_ = false;
    Nanos lastLine_{0};  ///< how long the newest sample takes on the line
    long samples_ = 0;
    std::string inbox_;    ///< bytes that wait while the shutter moves
    std::string command_;  ///< the command line so far
    std::string scratch_;
};

/// nullptr when the model does not offer the form.
std::unique_ptr<Instrument> MakeInstrument(Model model, const Options& options = {});
/// By name in any case or number; nullptr also when there is no such model.
std::unique_ptr<Instrument> MakeInstrument(std::string_view model, const Options& options = {});

}  // namespace marisonde::simulator
