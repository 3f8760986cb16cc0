#include "app/DataWindow.h"

#include <algorithm>
#include <array>
#include <utility>

#include "app/PlottedChannels.h"
#include "app/WindowTitle.h"
#include "common/ConversionUtils.h"
#include "common/DateText.h"
#include "common/Numbers.h"
#include "common/VectorState.h"
#include "decode/Decoders.h"
#include "files/DatColumns.h"
#include "files/DatFile.h"
#include "files/DataFileQuestions.h"
#include "files/RawFile.h"
#include "link/HandleResponse.h"
#include "link/InputLoop.h"

namespace marisonde {

namespace {

constexpr const char* kNoCalibration = "No calibration file is loaded.  ";
constexpr const char* kCalibrationRemedy =
    "Load an appropriate calibration file, or select the 'Load Calibration from Instrument' option.";
constexpr const char* kSelectRemedy =
    "Use the Select Calibration File command under the File menu to load a suitable calibration.";

}  // namespace

DataWindow::DataWindow(AppContext& app, Dialogs& dialogs, std::unique_ptr<SerialLine> line,
                       DataFiles::MakeFile makeFile)
    : Link(app.FirstFreeWindow(), app.clock, std::move(line)),
      Files(Link.Index(), std::move(makeFile)),
      Plot(Chart),
      Terminal(Link),
      app_(app),
      dialogs_(dialogs) {
    app_.windows.at(static_cast<std::size_t>(Index())) = this;
    // A stored number that cannot be read is 0: no graph would show a file.
    Plot.MaxGraphPoints = ClampGraphPoints(app_.prefs.MaxGraphPoints);
    Plot.SigmaOption = app_.prefs.Sigma ? SigmaChoice::SigmaCorrect : SigmaChoice::NoSigma;
    Link.OnChunk = [this](std::string_view chunk) { Record(chunk); };
    Link.OnError = [this](std::string text) { dialogs_.ShowError(std::move(text)); };
    Link.MayStart = [this] { return LogWhatIsStarted(); };
    Link.OnStatus = [this] { UpdateStatusDisplay(Link, true); };
    UpdateStatusDisplay(Link, true);
    Link.OnRateChanged = [this](int baud) {
        app_.prefs.Baud = baud;
        app_.settings.SaveSetting("Connection", "Baud", std::to_string(baud));
    };
    Link.OnInstrumentMessage = [this](std::string text) { dialogs_.ShowInstrumentMessage(std::move(text)); };
}

DataWindow::~DataWindow() {
    app_.windows.at(static_cast<std::size_t>(Index())) = nullptr;
}

void DataWindow::Tick() {
    ClearUpperVectorState();
    FollowCalibration();
    if (Link.Line().IsOpen()) {
        ProcessInput(Link, app_.scratch);
        HandleResponse(Link);
        Terminal.UpdateTerm(converter_ ? &*converter_ : nullptr,
                            {Plot.SigmaOption == SigmaChoice::SigmaCorrect, Plot.DepthInMeters()});
        Link.SendPending();
    }
    UpdateStatusDisplay(Link, false);
    WatchLine();
    MakeWayForAnother();
    if (Stored.IsShown()) {
        // The user looks at a file: live samples wait in their queue.
    } else if (Link.State.TransferActive) {
        TransferTick();
    } else if (held_) {
        HoldTick();
    } else {
        LiveTick();
    }
    if (recorded_.Holds()) Record({});
    for (const DataFileTrouble& trouble : Files.FlushIfDue(app_.clock.Steady())) Report(trouble);
}

/// A calibration that the instrument sends replaces the window's own before anyone has shown it: a sample
/// must never meet the conversion of the calibration before. Done ahead of the input, because a reply that is
/// complete is checked only after the tick that brought its end.
void DataWindow::FollowCalibration() {
    if (!Link.State.CalReady) converter_.reset();
    if (!Link.State.CalReady || converter_) return;
    if (Stored.IsShown() && Plot.Model() != Link.CalData.InstType) ClearShownData();
    if (Plot.Model() == Link.CalData.InstType)
        CalibrationChanged();
    else
        ShowCalibration();
}

/// A download goes to the files alone: nothing is plotted.
void DataWindow::TransferTick() {
    if (!Files.IsOpen(DataFileKind::Dat)) {
        Link.DataLineQueue.Clear();
        return;
    }
    for (int waiting = Link.DataLineQueue.size(); waiting > 0; --waiting)
        if (TakeNextSample()) StoreSample();
}

void DataWindow::LiveTick() {
    if (!Link.State.CalReady || !converter_ || Link.DataLineQueue.size() == 0) return;
    for (int lines = Plot.BeginTick(Link.DataLineQueue.size()); lines > 0; --lines) {
        if (!TakeNextSample()) {
            Plot.AbandonTick();
            return;
        }
        DateSample();
        StoreSample();
        PlotSample(Link.State.CurrentRaw, Link.State.CurrentSample);
    }
    Plot.EndTick();
}

void DataWindow::DateSample() {
    CalibratedSample& sample = Link.State.CurrentSample;
    if (sample.Time != 0) return;
    sample.Time = app_.clock.Now();
    dates_.push_back(sample.Time);
    if (dates_.size() <= static_cast<std::size_t>(Plot.MaxGraphPoints)) return;
    dates_.pop_front();
    ++datesDropped_;
}

void DataWindow::PlotSample(const RawSample& raw, const CalibratedSample& sample) {
    Plot.AddSample(raw, sample);
    if (!Files.IsOpen(DataFileKind::Raw) || !RecordsWhatComes()) plottedUnlogged_ = true;
}

bool DataWindow::TakeNextSample() {
    Link.DataLineQueue.GetNext(line_);
    DataWindowState& state = Link.State;
    if (!ParseRawLine(line_, state.InstType, state.CurrentRaw)) return false;
    if (!converter_ || !converter_->Apply(state.CurrentRaw, state.CurrentSample)) return false;
    state.HasSample = true;
    ++state.Counted.samples;
    return true;
}

void DataWindow::Record(std::string_view chunk) {
    const std::string_view own = recorded_.Pass(chunk, Link.State);
    if (own.empty()) return;
    if (const auto trouble = Files.WriteRaw(own, app_.clock.Steady())) Report(*trouble);
}

void DataWindow::StoreSample() {
    if (!RecordsWhatComes()) return;
    const auto trouble =
        Files.WriteSample(Link.State.CurrentSample, Link.CalData.InstType, betaColumns_, app_.clock.Steady());
    if (trouble) Report(*trouble);
}

/// A line that fails is told once. While the window connects, whoever connects tells it.
void DataWindow::WatchLine() {
    const LineError error = Link.Line().LastError();
    if (!error) lineLost_ = false;
    if (!error || lineLost_ || !Link.State.Connected || Link.State.ConnectStage == kConnecting) return;
    lineLost_ = true;
    dialogs_.ShowError(LineLostText());
    if (error.kind == LineError::Kind::Gone && OnLineLost) OnLineLost();
}

std::string DataWindow::LineLostText() const {
    return "Port " + std::to_string(Link.State.PortNumber) +
           " has stopped working: " + Link.Line().LastError().text +
           ".  The data received so far are kept.  Check the cable.";
}

bool DataWindow::RecordsWhatComes() const {
    return recorded_.SenderIn(Link.State) == RecordedInstrument::Sender::Same;
}

/// What an instrument is started for is recorded, unless its user has asked for nothing of the kind. New
/// files would take the place of those that a full disk has ended: what these hold is worth more than what
/// comes.
bool DataWindow::LogWhatIsStarted() {
    if (Link.State.CurrentCommand == "STARTNOLOG" || (Files.AnyOpen() && RecordsWhatComes())) return true;
    const bool inTheWay = Files.HasUnsavedData() && (RecordsWhatComes() || !SetAsideUnsaved());
    if (inTheWay)
        dialogs_.ShowError(NotRecordedText());
    else
        OpenDataFiles("raw", Link.State.CalReady);
    return true;
}

/// A cable was plugged into another instrument, and that one samples: its data get files of their own. Those
/// of the one before are moved out of the way when nobody has saved them. A stored file stays on the graph
/// as long as the user looks at it; the data wait.
void DataWindow::MakeWayForAnother() {
    const bool another = recorded_.SenderIn(Link.State) == RecordedInstrument::Sender::Other;
    if (!another || Stored.IsShown() || Link.DataLineQueue.size() == 0) return;
    const bool unsaved = Files.HasUnsavedData();
    if (!unsaved && !Files.AnyOpen()) return;
    if (unsaved && (inTheWay_ || !SetAsideUnsaved())) {
        if (!inTheWay_) dialogs_.ShowError(NotRecordedText());
        inTheWay_ = true;
        return;
    }
    const std::string sent = recorded_.TakeOthers();
    OpenDataFiles("raw", Link.State.CalReady);
    Record(sent);
}

bool DataWindow::SetAsideUnsaved() {
    RecoveryReport report;
    const bool moved = Files.SetAside([&](const std::vector<std::filesystem::path>& files) {
        RecoverFiles(files, app_.safePlaces, report);
        return report.leftBehind.empty();
    });
    if (!moved) return false;
    std::string text = "The data of " + recorded_.Name() + " were not saved yet.  They are kept in";
    for (const std::filesystem::path& file : report.recovered) text += "\n" + file.string();
    dialogs_.ShowError(text + "\nWhat " + Link.State.InstModelName + " " + Link.State.InstSerial +
                       " sends is recorded in new files.");
    return true;
}

std::string DataWindow::NotRecordedText() const {
    return "What the instrument sends from now on is shown but not recorded, "
           "because data recorded before are not saved yet:\n" +
           WhereDataAre() + "\nSave them, then start the instrument again.";
}

void DataWindow::Report(const DataFileTrouble& trouble) {
    dialogs_.ShowSaveError(SaveFileErrorText(trouble.name, trouble.temporary, trouble.error),
                           trouble.temporary.parent_path().string());
}

bool DataWindow::LoadCalIntoWindow(const std::string& path) {
    CalibrationDataClass loaded;
    const CalFileResult result = loaded.LoadSourceFile(path, app_.sigma, app_.pureWater);
    if (!result.ok) {
        dialogs_.ShowError(result.error.empty() ? "Could not find '" + path + "'" : result.error);
        return false;
    }
    for (const std::string& message : result.messages) dialogs_.ShowError(message);
    UseCalibration(loaded);
    app_.prefs.CalFile = path;
    return true;
}

void DataWindow::UseCalibration(const CalibrationDataClass& cal) {
    Link.CalData = cal;
    Link.State.InstType = Link.CalData.InstType;
    Link.State.CalReady = true;
    ShowCalibration();
}

void DataWindow::ShowCalibration() {
    Plot.SetupChartForInstrument(Link.CalData.InstType);
    for (const PlottedChannel& channel : PlottedChannels(Plot, Link.CalData))
        if (!channel.calibrated || !channel.on)
            Chart.ChartGroups(channel.group).SetDisplay(channel.series, SeriesDisplay::Kept);
    CalibrationChanged();
}

void DataWindow::CalibrationChanged() {
    if (std::exchange(sampledModel_, Link.CalData.InstType) != Link.CalData.InstType) ForgetSample();
    converter_.emplace(Link.CalData, app_.sigma, app_.pureWater);
}

/// Samples are reused line by line: what one model leaves in them is nothing that another has measured.
void DataWindow::ForgetSample() {
    Link.State.CurrentRaw = {};
    Link.State.CurrentSample = {};
    Link.State.HasSample = false;
}

std::string DataWindow::OpenWithoutQuery(int port, int baud, InstTypeCode model) {
    Link.ClosePort();
    if (const LineError error = Link.OpenPort(port, baud))
        return "Port " + std::to_string(port) + " can not be opened. " + error.text + ".";
    DataWindowState& state = Link.State;
    state.PortNumber = static_cast<std::int16_t>(port);
    state.BaudRate = baud;
    state.InstType = model;
    state.InstModelName = InstTypeName(model);
    state.InstSerial.clear();
    state.Connected = true;
    state.LastInputTime = app_.clock.Steady();
    const bool fits = state.CalReady && Link.CalData.InstType == model;
    // What is not identified is not asked for its calibration either.
    if (!fits) dialogs_.ShowError(CalibrationProblem(model) + kSelectRemedy);
    state.CalReady = fits;
    if (!fits) Plot.SetupChartForInstrument(model);
    return "";
}

std::string NoCalibrationText() {
    return std::string(kNoCalibration) + kCalibrationRemedy;
}

std::string DataWindow::CalibrationProblem(InstTypeCode model) const {
    if (!Link.State.CalReady) return kNoCalibration;
    return "The current calibration file type (" + std::string(InstTypeName(Link.CalData.InstType)) +
           ") does not match the detected instrument (" + std::string(InstTypeName(model)) + ").  ";
}

std::string DataWindow::NoFittingCalibration(InstTypeCode model) const {
    return CalibrationProblem(model) + kCalibrationRemedy;
}

std::string DataWindow::HeaderOf(DataFileKind kind, std::string_view rawKind) const {
    const HeaderStamp stamp{app_.prefs.UserHeader, app_.clock.Now()};
    std::string header;
    // A calibration that does not fit is another instrument's: its serial number must not stand over the
    // data.
    const CalibrationDataClass* const cal = Link.State.CalReady ? &Link.CalData : nullptr;
    if (kind == DataFileKind::Raw)
        WriteRawHeader(header, stamp, rawKind, Link.State.InstType, cal);
    else
        WriteDatHeader(header, stamp, "", Link.CalData, app_.sigma, app_.pureWater);
    return header;
}

void DataWindow::OpenDataFiles(std::string_view kind, bool wantDat, const std::string& basePath) {
    ClearShownData();
    DataFilesRequest request;
    request.temporaryFolder = app_.temporaryFolder;
    request.basePath = basePath;
    if (!kind.empty()) request.rawHeader = HeaderOf(DataFileKind::Raw, kind);
    if (wantDat) request.datHeader = HeaderOf(DataFileKind::Dat, kind);
    if (wantDat) betaColumns_ = app_.pureWater.WriteBetaColumns;
    if (basePath.empty()) untitledNumber_ = ++app_.untitledFiles;
    recorded_.Opened(Link.State);
    inTheWay_ = false;
    for (const std::string& error : Files.OpenDataFiles(request)) {
        StatusLine = error;
        dialogs_.ShowError(error);
    }
    const bool mayBeNamed = kind.empty() || kind == "raw";
    if (app_.prefs.NameFilesOnOpen && mayBeNamed && Files.State().stillToBeNamed && Files.AnyOpen() &&
        OnFilesToName)
        OnFilesToName();
}

FileError DataWindow::BeginFileAnew(DataFileKind kind) {
    if (kind == DataFileKind::Raw) plottedUnlogged_ = true;
    if (kind == DataFileKind::Dat) betaColumns_ = app_.pureWater.WriteBetaColumns;
    untitledNumber_ = ++app_.untitledFiles;
    return Files.BeginAnew(kind, HeaderOf(kind, "raw"));
}

std::string DataWindow::StatusText() const {
    return StateWord(Link.State.PrevInstState, Link.State.StartsInSeconds);
}

std::string DataWindow::Title() const {
    return WindowTitle(*this);
}

bool DataWindow::HasTemperature() const {
    if (!Link.State.HasSample) return false;
    return !Stored.IsShown() || !Stored.IsCalibrated() || DatTellsTemperature(Plot.Model());
}

std::string DataWindow::WhereDataAre() const {
    if (Stored.IsShown()) return Stored.path.string();
    std::string where;
    const DataFileState& files = Files.State();
    const std::array pairs{std::pair{&files.rawFinal, &files.rawTemporary},
                           std::pair{&files.datFinal, &files.datTemporary}};
    for (const auto& [named, temporary] : pairs) {
        const std::string path = (named->empty() ? *temporary : *named).string();
        if (path.empty()) continue;
        if (!where.empty()) where += "\n";
        where += path;
    }
    return where;
}

std::string DataWindow::DefaultFileName() const {
    const CivilDate now = CivilFromDate(app_.clock.Now());
    const bool named = Link.State.CalReady && !Link.CalData.Serial.empty();
    std::string name = named ? Link.CalData.Serial : std::string(InstTypeName(Link.State.InstType));
    // A point would begin the extension, which every file of the pair has its own.
    for (char& c : name)
        if (c == '/' || c == '\\' || c == ':' || c == '.') c = '_';
    name += " " + std::to_string(now.year) + "-" + TwoDigits(now.month) + "-" + TwoDigits(now.day);
    return name + " " + TwoDigits(now.hour) + TwoDigits(now.minute) + TwoDigits(now.second);
}

}  // namespace marisonde
