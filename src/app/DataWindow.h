#pragma once

#include <QCoroTask>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "app/AppContext.h"
#include "app/Dialogs.h"
#include "app/FileLoading.h"
#include "app/RecordedInstrument.h"
#include "app/StatusDisplay.h"
#include "app/StoredFile.h"
#include "app/WindowMenu.h"
#include "calibration/Converter.h"
#include "files/DataFiles.h"
#include "files/LineReader.h"
#include "graphs/Chart2D.h"
#include "graphs/LivePlot.h"
#include "link/InstrumentLink.h"
#include "operations/Termulator.h"

namespace marisonde {

class Operation;
class Operations;

/// One data window without its form: an instrument, its files, its chart, and the tick that joins them.
class DataWindow {
  public:
    /// Takes the lowest free slot. `app` and `dialogs` outlive the window.
    DataWindow(
        AppContext& app, Dialogs& dialogs, std::unique_ptr<SerialLine> line,
        DataFiles::MakeFile makeFile = [] { return std::make_unique<DiskFile>(); });
    ~DataWindow();
    DataWindow(const DataWindow&) = delete;
    DataWindow& operator=(const DataWindow&) = delete;

    InstrumentLink Link;
    DataFiles Files;
    Chart2D Chart;
    LivePlot Plot;
    Termulator Terminal;

    StoredFile Stored;                         ///< what is shown in place of live samples
    std::optional<ReadProgress> LoadProgress;  ///< while a file is being read
    std::optional<ReadProgress> SaveProgress;  ///< while data are being saved
    std::string_view SaveTitle;                ///< what is being saved then
    bool StopSaving = false;                   ///< the user wants no more of it
    int LoadSerial = 0;                        ///< of the newest load; one that is not the newest has ended
    std::string StatusLine;                    ///< the last news about the window's data, for the user
    bool Busy = false;              ///< the user has to wait for a moment, and the pointer shows it
    Operations* Running = nullptr;  ///< where the window's long operations run; may be null

    std::function<void()> OnFilesToName;        ///< new files wait for the user's name, if there shall be one
    std::function<void()> OnInstrumentChanged;  ///< another model, calibration or connection
    std::function<void()> OnLineLost;           ///< the device of an open connection has vanished
    std::function<void()> OnShow;               ///< brings the window to the front
    /// Sends a calibration file to an instrument that stores it as a whole; null while nobody can.
    std::function<QCoro::Task<>(Operation&)> SendToMultiC;
    std::vector<ChildWindow> Children;  ///< the further windows of this one, open or not

    [[nodiscard]] int Index() const { return Link.Index(); }
    [[nodiscard]] AppContext& App() { return app_; }
    [[nodiscard]] Dialogs& Ask() { return dialogs_; }

    /// The heart of the program, every 50 ms: input, output, then the queued samples into file, readouts and
    /// graph.
    void Tick();

    /// Loads a calibration and sets the graph up for it. False: the dialogs have shown why, nothing changed.
    bool LoadCalIntoWindow(const std::string& path);
    /// Takes a calibration over and sets the graph up for it.
    void UseCalibration(const CalibrationDataClass& cal);
    /// Sets conversion and graph up for the calibration that the window holds now.
    void ShowCalibration();
    /// To be called when the calibration or the application's optical parameters have changed.
    void CalibrationChanged();
    /// Opens a port on which an instrument of this model is assumed to be. An error text for the user, or
    /// empty. A calibration of another model is not used; the dialogs say so.
    std::string OpenWithoutQuery(int port, int baud, InstTypeCode model);
    /// Why the samples of a connected model cannot be calibrated.
    [[nodiscard]] std::string NoFittingCalibration(InstTypeCode model) const;
    /// What the user is told when the device of the port has vanished or its line fails.
    [[nodiscard]] std::string LineLostText() const;
    /// Starts the temporary raw log, and the calibrated file beside it when a calibration is there.
    void OpenDataFiles(std::string_view kind, bool wantDat, const std::string& basePath = "");
    /// Begins a file anew whose temporary file somebody has removed; it has no name then. What is on the
    /// graph is in no file any more. Error 0: what comes is recorded again.
    FileError BeginFileAnew(DataFileKind kind);
    /// The open files are of the instrument that is connected. Another one's data are never recorded into
    /// them.
    [[nodiscard]] bool RecordsWhatComes() const;

    /// Takes samples off the graph, and with them the file they came from. Live ones begin anew.
    void ClearShownData();
    /// The samples on the graph can be read again: from the file shown, or from a log that has all of them.
    [[nodiscard]] bool CanReplot() const { return Stored.IsShown() || !plottedUnlogged_; }
    /// From here to EndReplot live samples go to the files only: whoever calls puts those that came before
    /// on the graph again, from the first `BeginReplot` bytes of the raw log. 0: there is no log.
    std::uint64_t BeginReplot();
    /// Shows what came in the meantime.
    void EndReplot();
    /// Dates of the samples since the log began whose lines have no clock. `index` counts from 0.
    [[nodiscard]] double DateWithoutClock(std::size_t index) const;

    /// The word for the state that is shown, such as "Sampling" or "Starting: 5 s".
    [[nodiscard]] std::string StatusText() const;
    [[nodiscard]] std::string Title() const;
    /// Counts the files begun without a name in this run of the program; 0 before the window's first.
    [[nodiscard]] int UntitledNumber() const { return untitledNumber_; }
    /// There is a sample, and its temperature was measured: most calibrated files have none.
    [[nodiscard]] bool HasTemperature() const;
    /// Where the data are: the file names, or the temporary files while unnamed; empty without files.
    [[nodiscard]] std::string WhereDataAre() const;
    /// A name for new files of this window: serial or model, then date and time.
    [[nodiscard]] std::string DefaultFileName() const;

  private:
    void FollowCalibration();
    void TransferTick();
    void LiveTick();
    void HoldTick();
    void DateSample();
    void PlotSample(const RawSample& raw, const CalibratedSample& sample);
    bool TakeNextSample();
    void ForgetSample();
    void Record(std::string_view chunk);
    void StoreSample();
    void WatchLine();
    bool LogWhatIsStarted();
    void MakeWayForAnother();
    bool SetAsideUnsaved();
    [[nodiscard]] std::string NotRecordedText() const;
    [[nodiscard]] std::string CalibrationProblem(InstTypeCode model) const;
    [[nodiscard]] std::string HeaderOf(DataFileKind kind, std::string_view rawKind) const;
    void Report(const DataFileTrouble& trouble);

    AppContext& app_;
    Dialogs& dialogs_;
    std::optional<Converter> converter_;                 ///< of CalData while CalReady; none before
    InstTypeCode sampledModel_ = InstTypeCode::Unknown;  ///< whose samples the window converts
    RecordedInstrument recorded_;
    std::string line_;  ///< the queued line at hand
    /// Live samples that wait while those before them are read again.
    struct Held {
        int logged = 0;  ///< queued lines that the log at hand holds already
        std::deque<std::pair<RawSample, CalibratedSample>> samples;
    };
    std::optional<Held> held_;
    std::deque<double> dates_;      ///< of samples without a clock, the newest as many as a graph holds
    std::size_t datesDropped_ = 0;  ///< older ones
    bool plottedUnlogged_ = false;  ///< the graph holds samples that no file has
    bool betaColumns_ = false;      ///< the calibrated file that was begun last has columns of beta
    bool lineLost_ = false;         ///< the vanished device has been reported
    bool inTheWay_ = false;         ///< the user knows that another instrument's data are not recorded
    int untitledNumber_ = 0;
};

/// The operation that reads a file into the graph: there is one at a time.
inline constexpr const char* kLoadOperation = "Load";

/// What the user is told when no calibration is at hand.
std::string NoCalibrationText();

}  // namespace marisonde
