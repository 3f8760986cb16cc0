#include "app/ConvertCommand.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <optional>
#include <system_error>
#include <utility>

#include "app/BatchConversion.h"
#include "files/FileHeaderInfo.h"
#include "platform/IniSettings.h"
#include "platform/Paths.h"
#include "platform/SystemClock.h"

#ifdef _WIN32
#include <io.h>
#else
#include <unistd.h>
#endif

namespace marisonde {

namespace fs = std::filesystem;

namespace {

using Outcome = ConversionResult::Outcome;
constexpr int kInterrupted = 130;  ///< as a shell tells of programs that were interrupted

bool Exists(const fs::path& path) {
    std::error_code passedOver;
    return !path.empty() && fs::exists(path, passedOver);
}

std::string Counted(std::uint64_t count, std::string_view what) {
    std::string text = std::to_string(count);
    text.append(" ").append(what);
    return count == 1 ? text : text + "s";
}

std::string SummaryOf(const fs::path& source, const fs::path& destination, const LineCounts& counts) {
    std::string text =
        source.string() + ": " + Counted(counts.lines, "line") + ", " + Counted(counts.samples, "sample");
    if (counts.housekeeping > 0) text += ", " + std::to_string(counts.housekeeping) + " housekeeping";
    const std::string passedOver = PassedOverText(counts);
    if (!passedOver.empty()) text += ", " + passedOver;
    return text + " -> " + destination.string() + "\n";
}

void Complain(const Console& console, const std::string& text) {
    console.error("marisonde: " + text + "\n");
}

/// One line on a terminal that is written over; at most ten times a second, whatever the speed of the run.
class ProgressLine {
  public:
    ProgressLine(const Console& console, std::string name) : console_(console), name_(std::move(name)) {}
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;
    ~ProgressLine() {
        if (shown_ > 0) console_.error("\r" + std::string(shown_, ' ') + "\r");
    }
    void Show(const ReadProgress& progress) {
        if (!console_.showProgress || progress.size == 0) return;
        const auto now = std::chrono::steady_clock::now();
        if (now < next_) return;
        next_ = now + std::chrono::milliseconds(100);
        const std::uint64_t percent = std::min<std::uint64_t>(progress.done * 100 / progress.size, 100);
        const std::string text = name_ + ": " + std::to_string(percent) + " %";
        console_.error("\r" + text);
        shown_ = text.size();
    }

  private:
    const Console& console_;
    std::string name_;
    std::size_t shown_ = 0;
    std::chrono::steady_clock::time_point next_;
};

void WarnAboutModel(const fs::path& source, InstTypeCode calibrated, const Console& console) {
    FileHeaderInfo info;
    if (ReadFileHeader(source, info) || info.DeviceType.empty() || info.InstType == calibrated) return;
    Complain(console, "warning: " + source.string() + " was recorded by a " + info.DeviceType +
                          ", but the calibration is that of a " + std::string(InstTypeName(calibrated)) +
                          ".");
}

ConversionResult RunShowingProgress(FileConversion conversion, const fs::path& source,
                                    const Console& console) {
    ProgressLine line(console, source.string());
    ConversionHost host;
    host.progress = [&](const ReadProgress& progress) {
        line.Show(progress);
        return !console.interrupted();
    };
    return RunToEnd(std::move(conversion), host);
}

/// Converts one file. False: it was not written.
bool ConvertOne(const fs::path& source, BatchConversion& batch, const BatchRequest& request, bool overwrite,
                const Console& console) {
    const fs::path destination = DestinationOf(request, source);
    if (!overwrite && Exists(destination)) {
        Complain(console, destination.string() + " exists already; --overwrite replaces it.");
        return false;
    }
    if (!request.decimal) WarnAboutModel(source, batch.Calibration().InstType, console);
    std::string error;
    std::optional<FileConversion> conversion = batch.Begin(source, error);
    if (!conversion) {
        Complain(console, error);
        return false;
    }
    const ConversionResult result = RunShowingProgress(*std::move(conversion), source, console);
    if (result.outcome == Outcome::Failed) Complain(console, result.message);
    if (result.outcome != Outcome::Written) return false;
    batch.NoteWritten(source);
    console.out(SummaryOf(source, destination, result.counts));
    return true;
}

/// What users, systems and sessions that end ask a program with to stop.
constexpr std::array kStopSignals{
    SIGINT,
    SIGTERM,
#ifdef SIGHUP
    SIGHUP,
#endif
};

volatile std::sig_atomic_t stopSignal = 0;
void TakeSignal(int signal) {
    stopSignal = signal;
}

/// A program that was started to go on without its terminal does go on.
void TakeUnlessIgnored(int signal) {
    if (std::signal(signal, TakeSignal) == SIG_IGN) std::signal(signal, SIG_IGN);
}

bool ErrorsGoToATerminal() {
#ifdef _WIN32
    return _isatty(_fileno(stderr)) != 0;
#else
    return isatty(STDERR_FILENO) != 0;
#endif
}

}  // namespace

ConvertSettings LoadConvertSettings(const Settings& settings, const fs::path& programFolder,
                                    const fs::path& dataFolder, double date) {
    ConvertSettings loaded;
    SigmaParamsLoad sigma = LoadSigmaParams(settings, programFolder, dataFolder);
    loaded.sigma = std::move(sigma.params);
    loaded.water = LoadPureWaterParams(settings);
    loaded.stamp = {settings.GetSetting("App", "UserHeader"), date};
    loaded.calFile = settings.GetSetting("App", "CalFile");
    if (sigma.missingFiles > 0)
        loaded.missingFiles =
            "Files needed for sigma correction were not found.  Please check the parameter settings.";
    return loaded;
}

std::optional<PairToConvert> PairFrom(const std::string& files, const ConvertSettings& settings) {
    const FilePair names = SplitFilePair(files);
    const bool alone = files.find(';') == std::string::npos;
    PairToConvert pair{names.data, alone ? settings.calFile : names.calibration};
    if (!Exists(pair.data) || !Exists(pair.calibration)) return std::nullopt;
    return pair;
}

std::optional<FileConversion> BeginPair(const PairToConvert& pair, const ConvertSettings& settings,
                                        const Console& console) {
    if (!settings.missingFiles.empty()) Complain(console, settings.missingFiles);
    BatchRequest request;
    request.calFile = pair.calibration;
    BatchConversion batch(request, settings.stamp, settings.sigma, settings.water);
    std::string error = batch.Prepare();
    for (const std::string& message : batch.Messages()) Complain(console, message);
    if (error.empty()) WarnAboutModel(pair.data, batch.Calibration().InstType, console);
    std::optional<FileConversion> conversion;
    if (error.empty()) conversion = batch.Begin(pair.data, error);
    if (!conversion) Complain(console, error);
    return conversion;
}

int EndPair(const ConversionResult& result, const Console& console) {
    if (result.outcome == Outcome::Failed) Complain(console, result.message);
    return result.outcome == Outcome::Written ? 0 : kConversionFailed;
}

int ConvertPair(const std::string& files, const ConvertSettings& settings, const Console& console) {
    const std::optional<PairToConvert> pair = PairFrom(files, settings);
    if (!pair) return kConversionFailed;
    std::optional<FileConversion> conversion = BeginPair(*pair, settings, console);
    if (!conversion) return kConversionFailed;
    ConversionHost host;
    host.progress = [&console](const ReadProgress&) { return !console.interrupted(); };
    return EndPair(RunToEnd(*std::move(conversion), host), console);
}

int ConvertFiles(const CommandLine& line, const ConvertSettings& settings, const Console& console) {
    const ConvertArguments& arguments = line.convert;
    BatchRequest request;
    request.files.assign(arguments.files.begin(), arguments.files.end());
    request.decimal = arguments.decimal;
    request.houseCheck = arguments.housekeeping;
    request.folder = arguments.folder;
    request.calFile = line.calFile.empty() && !arguments.decimal ? settings.calFile : line.calFile;
    if (!arguments.decimal && !settings.missingFiles.empty()) Complain(console, settings.missingFiles);

    BatchConversion batch(request, settings.stamp, settings.sigma, settings.water);
    if (const std::string reason = batch.Prepare(); !reason.empty()) {
        Complain(console, reason);
        return kConversionFailed;
    }
    for (const std::string& message : batch.Messages()) Complain(console, message);
    bool allWritten = true;
    for (const fs::path& source : request.files) {
        if (!ConvertOne(source, batch, request, arguments.overwrite, console)) allWritten = false;
        if (console.interrupted()) return kInterrupted;
    }
    return allWritten ? 0 : kConversionFailed;
}

ConvertSettings UsersConvertSettings() {
    const IniSettings stored(SettingsFile());
    const SystemClock clock;
    return LoadConvertSettings(stored, ProgramFolder(), DataFolder(), clock.Now());
}

Console TerminalAtHand() {
    // A conversion that is interrupted takes away the half of a file that it has written.
    for (const int signal : kStopSignals) TakeUnlessIgnored(signal);
    Console console;
    console.out = [](std::string_view text) { std::fwrite(text.data(), 1, text.size(), stdout); };
    console.error = [](std::string_view text) { std::fwrite(text.data(), 1, text.size(), stderr); };
    console.showProgress = ErrorsGoToATerminal();
    console.interrupted = [] { return stopSignal != 0; };
    return console;
}

int RunConversion(const CommandLine& line) {
    const ConvertSettings settings = UsersConvertSettings();
    const Console console = TerminalAtHand();
    return line.mode == CommandLine::Mode::Convert ? ConvertPair(line.files, settings, console)
                                                   : ConvertFiles(line, settings, console);
}

}  // namespace marisonde
