#include "app/Recalculate.h"

#include <limits>
#include <optional>

#include "app/DataWindow.h"
#include "app/LoadStored.h"
#include "app/PlotSink.h"
#include "app/WindowTitle.h"
#include "files/RawFileReader.h"
#include "platform/Operations.h"

namespace marisonde {

namespace {

/// The window's title as the user knows it, without the program's name.
std::string Named(const DataWindow& window) {
    return "Data in '" + WindowSubject(window) + "' ";
}

std::string FromCalibratedFile(const DataWindow& window) {
    return Named(window) + "will not be recalculated because they were read from a calibrated file.  ";
}

std::string BeingSaved(const DataWindow& window) {
    return Named(window) +
           "are being saved to a file.  Data that have already been saved to the file cannot be recalculated "
           "until the file is closed and reopened for reading.";
}

std::string NotRecorded(const DataWindow& window) {
    return Named(window) +
           "will not be recalculated because they were not recorded.  New data use the new values.";
}

/// Reads the log from its beginning to where live samples are held back.
QCoro::Task<> ReplotLog(Operation& operation, DataWindow& window) {
    const int mine = ++window.LoadSerial;
    const std::uint64_t length = window.BeginReplot();
    if (length == 0) co_return;
    const std::filesystem::path log = window.Files.State().rawTemporary;
    const Converter converter(window.Link.CalData, window.App().sigma, window.App().pureWater);
    RawFileReader reader(window.Link.State.InstType, converter);
    reader.ReadAtMost(length);
    // The oldest points make room as they did when they were live.
    PlotSink sink(window, std::numeric_limits<int>::max(), PlotSink::NewestSample::Stays);
    std::size_t withoutClock = 0;
    sink.DateWithoutClock = [&](const CalibratedSample& /*sample*/) {
        return window.DateWithoutClock(withoutClock++);
    };
    LoadHost host{window.App().clock, window.Ask(), std::numeric_limits<int>::max(), {}, {}};
    host.progress = [&](const ReadProgress& at) {
        sink.Show();
        window.LoadProgress = at;
    };
    window.LoadProgress = ReadProgress();
    co_await LoadFile(operation, reader, true, log, sink, host);
    if (window.LoadSerial != mine) co_return;
    window.LoadProgress.reset();
    window.EndReplot();
}

void StartReplot(DataWindow& window) {
    if (window.Running == nullptr) return;
    window.Running->Cancel(kLoadOperation);
    window.Running->Start(kLoadOperation, [&window](Operation& operation) -> QCoro::Task<> {
        co_await ReplotLog(operation, window);
    });
}

}  // namespace

void RecalculateWindow(DataWindow& window) {
    const bool hasPoints = window.Plot.PlotIndex() > 1;
    if (window.Stored.IsShown() && window.Stored.IsCalibrated()) {
        window.StatusLine = FromCalibratedFile(window);
    } else if (window.Stored.IsShown()) {
        StartReload(window);
    } else if (!window.Link.State.CalReady) {
        return;
    } else if (hasPoints && !window.CanReplot()) {
        window.StatusLine = NotRecorded(window);
    } else if (hasPoints) {
        if (window.Files.AnyOpen()) window.StatusLine = BeingSaved(window);
        StartReplot(window);
    }
}

void ReplotWindow(DataWindow& window) {
    if (window.Stored.IsShown())
        StartReload(window);
    else if (window.Plot.PlotIndex() > 1 && window.CanReplot())
        StartReplot(window);
    else if (window.Plot.PlotIndex() > 1)
        window.StatusLine = NotRecorded(window);
}

void RecalculateAllWindows(AppContext& app) {
    for (DataWindow* const window : app.windows) {
        if (window == nullptr) continue;
        if (window->Link.State.CalReady) window->CalibrationChanged();
        RecalculateWindow(*window);
    }
}

}  // namespace marisonde
