#include "app/InstStatus.h"

#include <QLocale>

#include "app/DataWindow.h"
#include "common/Numbers.h"
#include "platform/SystemClock.h"

namespace marisonde {

namespace {

constexpr const char* kUnknown = "unknown";

std::string ShortDate(double date) {
    if (date == 0) return kUnknown;
    return QLocale().toString(DateTimeFromDays(date).date(), QLocale::ShortFormat).toStdString();
}

/// An instrument that was identified brings its calibration, or was compared with the one that is loaded.
std::string CalSource(const DataWindowState& state, const CalibrationDataClass& cal) {
    if (!state.CalReady) return kUnknown;
    return state.Connected && !state.InstSerial.empty() ? "Detected" : cal.SourceFile();
}

}  // namespace

std::vector<InstStatusRow> InstStatus(const DataWindow& window) {
    const DataWindowState& state = window.Link.State;
    const CalibrationDataClass& cal = window.Link.CalData;
    const bool open = window.Link.Line().IsOpen();
    return {
        {"Device_Box", "&Model", std::string(InstTypeName(state.InstType))},
        {"Serial_Box", "&Serial number", state.InstSerial},
        {"Firmware_Box", "&Firmware", NumberText(Val(state.FirmwareVersion))},
        {"Status_Box", "S&tate", window.StatusText()},
        {"Com_Port_Box", "&Port", open ? std::to_string(state.PortNumber) : ""},
        {"BAUD_Rate_Box", "&Baud rate", open ? std::to_string(state.BaudRate) : ""},
        {"MaxDepth_box", "Maximum &depth (m)", state.CalReady ? NumberText(cal.MaxDepth) : kUnknown},
        {"CalDateBox", "&Calibrated on", state.CalReady ? ShortDate(cal.CalTime) : kUnknown},
        {"CalSource_Box", "Calibration so&urce", CalSource(state, cal)},
        {"Nonvolatile_Box", "&Keeps its calibration",
         open && StoresCalibration(state.InstType, state.InstSerial) ? "Yes" : "No"},
    };
}

}  // namespace marisonde
