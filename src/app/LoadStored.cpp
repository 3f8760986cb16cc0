#include "app/LoadStored.h"

#include <algorithm>
#include <limits>
#include <memory>
#include <utility>

#include "app/DataWindow.h"
#include "app/PlotSink.h"
#include "app/RecentFiles.h"
#include "files/DatFileReader.h"
#include "files/FileHeader.h"
#include "files/FileHeaderInfo.h"
#include "files/RawFileReader.h"
#include "optics/OrcaParams.h"
#include "platform/Operations.h"

namespace marisonde {

namespace {

using End = LoadResult::End;

/// The names in the file are those of its curves, whatever calibration the window holds.
void NameChannels(DataWindow& window, const DatFileReader& reader) {
    CalibrationDataClass& cal = window.Link.CalData;
    if (cal.InstType != reader.Type() || !window.Link.State.CalReady) {
        cal.Clear();
        cal.InstType = reader.Type();
        window.Link.State.CalReady = false;
    }
    window.Link.State.InstType = reader.Type();
    const int count = std::min(static_cast<int>(reader.Channels().size()), kChannelSlots);
    for (int i = 0; i < count; ++i) cal.EditChannel(i).name = reader.Channels()[static_cast<std::size_t>(i)];
}

/// Makes graph and channel panel ready for a calibrated file once it is known to be there.
class DatSink final : public SampleSink {
  public:
    DatSink(DataWindow& window, const DatFileReader& reader, PlotSink& plot)
        : window_(window), reader_(reader), plot_(plot) {}
    void Clear() override {
        if (!std::exchange(ready_, true)) {
            NameChannels(window_, reader_);
            window_.Plot.SetupChartForInstrument(reader_.Type());
            if (window_.OnInstrumentChanged) window_.OnInstrumentChanged();
        }
        plot_.Clear();
    }
    void Expect(int samples) override { plot_.Expect(samples); }
    void Append(const RawSample& raw, const CalibratedSample& sample) override {
        plot_.Append(raw, sample);
        if (reader_.Type() != InstTypeCode::LTidal) return;
        const Preferences& prefs = window_.App().prefs;
        window_.Plot.StoreVisibility(OrcaDistance(sample.K, {prefs.OrcaX, prefs.OrcaCThreshold}));
    }

  private:
    DataWindow& window_;
    const DatFileReader& reader_;
    PlotSink& plot_;
    bool ready_ = false;
};

/// A change to the other form reads the file again.
DatScattering ShownBy(const LivePlot& plot) {
    return plot.SigmaOption == SigmaChoice::SigmaCorrect ? DatScattering::Corrected
                                                         : DatScattering::Uncorrected;
}

std::string Told(const StoredFile& file, const LoadResult& result) {
    if (result.end == End::NotOpened) return result.error;
    std::string text = file.path.filename().string() + ": ";
    if (result.end == End::Failed) text += "could not be read to its end.  ";
    if (result.end == End::Cancelled) text += "loading was stopped.  ";
    if (result.end == End::Stopped) text += "more points follow.  ";
    return text + LoadSummary(result);
}

/// What the time of samples without a clock counts from: when the recording began.
double BeginOf(const StoredFile& file) {
    // The times of a calibrated file without dates are the count itself. Its beginning is 0 like theirs, but
    // not the 0 of a sample that has no time at all.
    if (file.IsCalibrated()) return std::numeric_limits<double>::min();
    FileHeaderInfo info;
    constexpr double kNoDate = 1;  // not 0, which means that a sample has no date at all
    if (ReadFileHeader(file.path, info)) return kNoDate;
    return CreationDateFrom(info.CreationDate).value_or(kNoDate);
}

/// Reads the whole file, or the group of it that was shown before.
QCoro::Task<> Load(Operation& operation, DataWindow& window, StoredFile file, bool again) {
    const int mine = ++window.LoadSerial;
    const StoredFile before = std::exchange(window.Stored, file);
    PlotSink plot(window, window.Plot.MaxGraphPoints, PlotSink::NewestSample::Follows);
    const double begin = BeginOf(file);
    plot.DateWithoutClock = [begin](const CalibratedSample& sample) { return begin + sample.Elapsed; };
    const Converter converter(window.Link.CalData, window.App().sigma, window.App().pureWater);
    RawFileReader raw(window.Link.CalData.InstType, converter);
    DatFileReader dat(file.type);
    dat.Read(ShownBy(window.Plot));
    DatSink named(window, dat, plot);
    LoadHost host{window.App().clock, window.Ask(), window.Plot.MaxGraphPoints, {}, {}};
    host.progress = [&](const ReadProgress& at) {
        plot.Show();
        window.LoadProgress = at;
    };
    if (again) host.group = file.group;
    window.LoadProgress = ReadProgress();
    SampleReader& reader = file.IsCalibrated() ? static_cast<SampleReader&>(dat) : raw;
    SampleSink& sink = file.IsCalibrated() ? static_cast<SampleSink&>(named) : plot;
    const LoadResult result =
        co_await LoadFile(operation, reader, !file.IsCalibrated(), file.path, sink, host);
    // Another load has taken this one's place, or the file was closed.
    if (window.LoadSerial != mine) co_return;
    window.LoadProgress.reset();
    window.StatusLine = Told(file, result);
    if (result.end == End::NotOpened) {
        window.Stored = before;
        co_return;
    }
    window.Stored.group = result.group;
    if (again) co_return;
    NoteRecentFile(window.App().settings, file.path.string());
    window.Plot.ApplyAutoScaleFlags();
}

void Start(DataWindow& window, StoredFile file, bool again) {
    if (window.Running == nullptr) return;
    window.Running->Cancel(kLoadOperation);
    window.Running->Start(kLoadOperation, [&window, file, again](Operation& operation) -> QCoro::Task<> {
        co_await Load(operation, window, file, again);
    });
}

}  // namespace

void StartLoad(DataWindow& window, StoredFile file) {
    Start(window, std::move(file), false);
}

void StartReload(DataWindow& window) {
    // The group of a load that has not ended is not known: it asks as it did.
    if (window.Stored.IsShown()) Start(window, window.Stored, !window.LoadProgress);
}

}  // namespace marisonde
