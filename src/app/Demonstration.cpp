#include "app/Demonstration.h"

#include <algorithm>
#include <chrono>
#include <fstream>
#include <system_error>
#include <utility>

#include "app/DataWindow.h"
#include "common/ConversionUtils.h"
#include "link/Commands.h"
#include "simulator/Instrument.h"

namespace marisonde {

namespace {

/// Instruments count seconds of the clock on the wall, without a time zone.
std::chrono::sys_seconds WallTime(double date) {
    return std::chrono::sys_seconds{std::chrono::seconds(static_cast<long>((date - kDay1970) * 86400))};
}

/// A newcomer looks for half a minute, not for the 100 minutes that a graph begins with; the limits grow from
/// here.
void ShowTheFirstHalfMinute(DataWindow& window) {
    constexpr double kMinutes = 0.5;
    constexpr double kClearWaterBb = 0.004;  ///< 1/m
    window.Plot.CurrentTimeMax = kMinutes;
    window.Chart.Axes(AxisName::X).SetMax(kMinutes);
    if (!IsDelphFamily(window.Plot.Model())) window.Chart.Axes(AxisName::Y).SetMax(kClearWaterBb);
}

/// Windows of one model begin in the same second, and files of an earlier demonstration may be there.
bool IsTaken(DataWindow& window, const std::filesystem::path& raw) {
    std::error_code passedOver;
    const auto& windows = window.App().windows;
    return std::filesystem::exists(raw, passedOver) ||
           std::any_of(windows.begin(), windows.end(), [&](const DataWindow* other) {
               return other != nullptr && other->Files.State().rawFinal == raw;
           });
}

/// A name in the folder that no other demonstration window has, for both data files.
std::filesystem::path FreeBase(DataWindow& window, const std::filesystem::path& folder) {
    const std::string name = window.DefaultFileName();
    std::filesystem::path base = folder / name;
    for (int number = 2; IsTaken(window, FinalDataPath(base, DataFileKind::Raw)); ++number)
        base = folder / (name + " (" + std::to_string(number) + ")");
    return base;
}

}  // namespace

DemoInstrument AddDemoInstrument(SimulatedPorts& ports, InstTypeCode model, const Clock& clock) {
    simulator::Options options;
    options.seed = ports.Present().size() + 1;
    options.startDate = WallTime(clock.Now());
    options.powerOn = simulator::PowerOn::Stopped;
    options.startCountdown = 1;
    auto instrument = simulator::MakeInstrument(static_cast<simulator::Model>(model), options);
    DemoInstrument demo;
    demo.calText = instrument->CalText();
    demo.baud = options.baud;
    demo.port = ports.Add(std::move(instrument));
    return demo;
}

bool IdentifiesItself(InstTypeCode model) {
    return model != InstTypeCode::XTidal;
}

std::string LoadDemoCalibration(DataWindow& window, const DemoInstrument& instrument) {
    const std::filesystem::path calPath =
        window.App().temporaryFolder / ("demo" + std::to_string(window.Index()) + ".cal");
    std::ofstream(calPath, std::ios::binary) << instrument.calText;
    if (window.LoadCalIntoWindow(calPath.string())) return "";
    return "The calibration could not be written to " + calPath.string();
}

void BeginDemo(DataWindow& window, const std::filesystem::path& folder) {
    ShowTheFirstHalfMinute(window);
    window.OpenDataFiles("raw", true, FreeBase(window, folder).string());
    SendCommand("START", window.Link);
}

DemoFiles FinishDemo(DataWindow& window) {
    DemoFiles done;
    const DataFileState files = window.Files.State();
    const std::array wanted{std::pair{DataFileKind::Raw, &done.raw}, std::pair{DataFileKind::Dat, &done.dat}};
    for (const auto& [kind, path] : wanted) {
        const auto& place = kind == DataFileKind::Raw ? files.rawFinal : files.datFinal;
        if (place.empty() || window.Files.SaveCopy(kind, place)) continue;
        *path = place;
    }
    window.Files.CloseDataFiles(false);
    window.Link.ClosePort();
    return done;
}

std::filesystem::path DemoFolder() {
    std::error_code ignored;
    std::filesystem::path folder = std::filesystem::temp_directory_path(ignored) / "marisonde-demonstration";
    std::filesystem::create_directories(folder, ignored);
    return folder;
}

}  // namespace marisonde
