#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "app/AppContext.h"
#include "app/Dialogs.h"
#include "app/RecordedInstrument.h"
#include "app/StatusDisplay.h"
#include "app/WindowMenu.h"
#include "calibration/Converter.h"
#include "files/DataFiles.h"
#include "graphs/Chart2D.h"
#include "graphs/LivePlot.h"
#include "link/InstrumentLink.h"
#include "operations/Termulator.h"

namespace marisonde {

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

    std::function<void()> OnInstrumentChanged;  ///< another model, calibration or connection
    std::function<void()> OnLineLost;           ///< the device of an open connection has vanished
    std::function<void()> OnShow;               ///< brings the window to the front
    std::vector<ChildWindow> Children;          ///< the further windows of this one, open or not

    [[nodiscard]] int Index() const { return Link.Index(); }
    [[nodiscard]] AppContext& App() { return app_; }
    [[nodiscard]] Dialogs& Ask() { return dialogs_; }

    /// The heart of the program, every 50 ms: input, output, then the queued samples into file, readouts and
    /// graph.
    void Tick();

    /// Loads a calibration and sets the graph up for it. False: the dialogs have shown why, nothing changed.
    bool LoadCalIntoWindow(const std::string& path);
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
    /// The open files are of the instrument that is connected. Another one's data are shown, never recorded
    /// into them.
    [[nodiscard]] bool RecordsWhatComes() const;
    /// Says so after another instrument was connected, while there are unsaved data.
    void TellWhatIsNotRecorded();

    /// The word for the state that is shown, such as "Sampling" or "Starting: 5 s".
    [[nodiscard]] std::string StatusText() const;
    [[nodiscard]] std::string Title() const;
    /// Counts the files begun without a name in this run of the program; 0 before the window's first.
    [[nodiscard]] int UntitledNumber() const { return untitledNumber_; }
    /// Where the data are: the file names, or the temporary files while unnamed; empty without files.
    [[nodiscard]] std::string WhereDataAre() const;
    /// A name for new files of this window: serial or model, then date and time.
    [[nodiscard]] std::string DefaultFileName() const;

  private:
    void FollowCalibration();
    void TransferTick();
    void LiveTick();
    bool TakeNextSample();
    void Record(std::string_view chunk);
    void StoreSample();
    void WatchLine();
    bool LogWhatIsStarted();
    [[nodiscard]] std::string NotRecordedText() const;
    void Report(const DataFileTrouble& trouble);

    AppContext& app_;
    Dialogs& dialogs_;
    std::optional<Converter> converter_;  ///< of CalData while CalReady; none before
    RecordedInstrument recorded_;
    std::string line_;          ///< the queued line at hand
    bool betaColumns_ = false;  ///< the calibrated file that was begun last has columns of beta
    bool lineLost_ = false;     ///< the vanished device has been reported
    int untitledNumber_ = 0;
};

/// What the user is told when no calibration is at hand.
std::string NoCalibrationText();

}  // namespace marisonde
