#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/BlockTransfer.h"
#include "simulator/CastMemory.h"
#include "simulator/FaultLayer.h"
#include "simulator/FileStore.h"
#include "simulator/OutputLine.h"
#include "simulator/Random.h"
#include "simulator/SampleSettings.h"
#include "simulator/WaterColumn.h"

namespace marisonde::simulator {

/// How long a break of the line has to last to restart an instrument.
inline constexpr Millis kResetBreak{60000};

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
    /// All were sent at SentRate(); after a change of the rate the rest comes with the next call.
    std::string TakeOutput(Millis now);
    /// Of the bytes that the last TakeOutput gave.
    [[nodiscard]] int SentRate() const { return line_.TakenRate(); }
    /// Bytes that reach the instrument at its own rate at `now`.
    void Receive(std::string_view bytes, Millis now);
    /// Power goes off and comes back: what was set and not stored is forgotten, and the instrument is awake
    /// and stopped. Clock, memory and rate are kept.
    void Restart(Millis now);
    /// The break of the line begins or ends. One that was held for kResetBreak restarts the instrument, which
    /// first scans its memory for a while and hears nothing.
    void Break(bool on, Millis now);
    /// The instrument says "!" and `text`, as it does to warn its user.
    void Warn(std::string_view text, Millis now);

    [[nodiscard]] const ModelInfo& Info() const { return info_; }
    [[nodiscard]] const Options& Settings() const { return options_; }
    [[nodiscard]] bool Sampling() const { return state_ == State::Sampling; }
    [[nodiscard]] bool Asleep() const { return state_ == State::Asleep; }
    [[nodiscard]] bool HasShutter() const { return shutter_; }
    [[nodiscard]] long SampleCount() const { return samples_; }
    /// At which it listens, and sends what it says from now on.
    [[nodiscard]] int BaudRate() const { return line_.Rate(); }
    /// Seconds since 1970 by the instrument's own clock.
    [[nodiscard]] std::int64_t ClockTime() const { return Now().secondsUnix; }
    [[nodiscard]] const SampleSettings& Sampler() const { return settings_; }
    /// True from the time of FaultOptions::vanishAt on: the device is gone.
    [[nodiscard]] bool Vanished(Millis now) const { return faults_.Vanished(now); }

    /// The calibration that the instrument tells, as the text of its `.cal` file, lines in CR LF. It inverts
    /// what the instrument sends as long as nobody has set another.
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
    /// Appends one sample as the bench wants it: with all its counts, where the model has a form for them.
    virtual void AppendRaw(std::string& out, const Moment& moment) { AppendSample(out, moment); }
    /// Appends the line that comes between samples now and then ("*H", "*I"), or nothing.
    virtual void AppendExtra(std::string& out, const Moment& moment) = 0;

    /// A command by its upper-case name. What follows the name in the line is its argument; a comma or blank
    /// between them is not part of it.
    struct Command {
        std::string_view name;
        void (Instrument::*run)(std::string_view argument);
        bool glued =
            false;  ///< the argument may follow the name without a gap even if it begins with a letter
    };
    template <class T>
    static Command Row(std::string_view name, void (T::*run)(std::string_view), bool glued = false) {
        return {name, static_cast<void (Instrument::*)(std::string_view)>(run), glued};
    }
    /// What the family understands beside the commands that all have.
    [[nodiscard]] virtual std::span<const Command> FamilyCommands() const = 0;
    [[nodiscard]] virtual double MaxDepthM() const = 0;

    /// One line in answer to a command, without its end.
    void Reply(std::string_view line);
    /// Lines in CR LF in answer to a command.
    void ReplyText(std::string_view text);
    void ReplyRefused() { Reply("Value refused"); }
    void ReplyUnknown() { Reply("Unknown command"); }
    /// Shows the values of `rows`.
    void ReplySettings(std::span<const SettingRow> rows);
    /// Takes new values of `rows` from the argument of a command, or without one only shows them. `allowed`
    /// is asked about the new values. False when they were refused.
    bool SetOrReply(std::span<const SettingRow> rows, std::string_view argument,
                    const std::function<bool(const SampleSettings&)>& allowed = {});
    /// "Storing channel data", and half a second later "..OK" and `store`.
    void StoreLater(std::string_view what, std::function<void()> store);
    /// The calibration file as it was captured, or else CalText(): for "sendcal" and "MAKEINI".
    void SendCal(std::string_view argument);
    void MakeIni(std::string_view argument);
    /// Offers a block of 128 bytes by XMODEM-CRC.
    void SendBlock(std::string_view block);
    /// Asks for a block of 128 bytes; `store` is given it and answers whether it is one to keep. What became
    /// of it is said.
    void ReceiveBlock(std::function<bool(const std::string&)> store);
    /// One sample for the bench, as it is measured now.
    void ReplyRaw();
    /// A line without a command in it.
    virtual void HearEmptyLine() {}
    /// The model keeps its calibration as a file that can be captured.
    [[nodiscard]] virtual bool KeepsFiles() const { return false; }
    /// The calibration was set otherwise: its file is written anew from it.
    void RewriteCalFile();
    /// Forgets what has been set and not stored beside the SampleSettings.
    virtual void LoadStoredCal() {}
    void StoreSettings() { storedSettings_ = settings_; }

    [[nodiscard]] LineForm Form() const { return form_; }
    [[nodiscard]] const WaterColumn& Water() const { return water_; }
    [[nodiscard]] double Firmware() const;
    Random& Noise() { return noise_; }
    [[nodiscard]] std::string Config() const;
    /// What the calibration says of its instrument: Info(), with another serial if the options have one.
    [[nodiscard]] ModelInfo CalInfo() const;
    /// Seconds since 1970 of the calibration as it left the factory.
    [[nodiscard]] std::int64_t CalibratedAt() const;
    void SetClock(std::int64_t secondsUnix) { clockOffset_ += secondsUnix - ClockTime(); }

  private:
    enum class State {
        Asleep,
        WakingUp,
        Stopped,
        OpeningShutter,
        CountingDown,
        Sampling,
        ClosingShutter,
        Downloading,
        Transferring,
    };
    /// Something that happens later; bytes that are heard until then wait.
    struct Work {
        Nanos due;
        std::function<void()> run;
    };
    enum class Question { None, EraseMemory, DeleteCast };
    static std::span<const Command> CommonCommands();

    void AdvanceTo(Nanos now);
    [[nodiscard]] bool StateIsTimed() const { return state_ != State::Asleep && state_ != State::Stopped; }
    void StepState();
    void StepWork();
    void EnterAfter(State state, Millis delay);
    void WorkAfter(Nanos delay, std::function<void()> run);
    void TakeSample();
    [[nodiscard]] bool BetweenBursts() const;
    void HearByte(char byte);
    void HearInBlock(char byte);
    void Echo(std::string_view bytes);
    void RubOut();
    void HearWhatWaited();
    void TransferBlock(std::unique_ptr<BlockTransfer> transfer, std::function<void()> whenOver);
    void EndBlock();
    void RunLine(const std::string& line);
    void RunCommand(std::string_view line);
    [[nodiscard]] const Command* FindCommand(std::string_view upperLine) const;
    bool AnswersQuestion(std::string_view upperLine);
    void Say(std::string_view line);
    void Send(std::string_view bytes);
    [[nodiscard]] Moment Now() const;
    void Adopt(const SampleSettings& settings);

    void BeginCountdown();
    void CountDown();
    [[nodiscard]] bool MovesShutter() const;
    void EndShutterTurn();
    void EndSampling();

    void Capture(std::string_view argument);
    void EndCapture();
    void FileCommand(std::string_view argument);
    [[nodiscard]] std::string CalFile() const;

    void Identify(std::string_view argument);
    void TellVersion(std::string_view argument);
    void Wake(std::string_view argument);
    void Sleep(std::string_view argument);
    void Start(std::string_view argument);
    void Stop(std::string_view argument);
    void Time(std::string_view argument);
    void Baud(std::string_view argument);
    void EchoOn(std::string_view argument);
    void EchoOff(std::string_view argument);

    void Directory(std::string_view argument);
    void Download(std::string_view argument);
    void DeleteCast(std::string_view argument);
    void ClearLog(std::string_view argument);
    void SendCastLine();
    void LogLine();

    Options options_;  ///< before what is made of it
    ModelInfo info_;
    LineForm form_;
    bool shutter_;
    int extraEvery_ = 0;
    SampleSettings settings_, storedSettings_;
    Nanos period_{0};
    OutputLine line_;
    FaultLayer faults_;
    WaterColumn water_;
    Random noise_;
    CastMemory memory_;
    FileStore files_;
    bool calFileMade_ = false;  ///< the calibration is in files_ unless it was deleted
    bool logging_ = false;      ///< what is sampled goes into memory too
    std::optional<Nanos> breakSince_;
    State state_ = State::Stopped;
    Nanos now_{0};
    Nanos due_{0};  ///< when the state takes its next step; meaningless in Asleep and Stopped
    std::optional<Work> work_;
    std::int64_t clockOffset_ = 0;  ///< s that the clock has been put forward
    int countdown_ = 0;
    bool shutterOpen_ = false;
    bool echo_ = true;
    Nanos sampledFrom_{0};
    Nanos lastLine_{0};  ///< how long the newest sample takes on the line
    long samples_ = 0;
    std::unique_ptr<BlockTransfer> block_;
    std::function<void()> afterBlock_;
    std::unique_ptr<Instrument> recording_;  ///< gives the lines of the cast on its way out
    Cast castOut_{};
    long castLines_ = 0;  ///< of it already sent
    Question question_ = Question::None;
    int castInQuestion_ = 0;
    int replyLines_ = 0;   ///< said in answer to the present command
    std::string inbox_;    ///< bytes that wait while the instrument is busy
    std::string command_;  ///< the command line so far
    std::string scratch_;
};

/// nullptr when the model does not offer the form.
std::unique_ptr<Instrument> MakeInstrument(Model model, const Options& options = {});
/// By name in any case or number; nullptr also when there is no such model.
std::unique_ptr<Instrument> MakeInstrument(std::string_view model, const Options& options = {});

}  // namespace marisonde::simulator
