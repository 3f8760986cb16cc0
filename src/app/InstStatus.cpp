#include "app/InstStatus.h"

#include <QLocale>

#include "app/DataWindow.h"
#include "common/Numbers.h"
#include "platform/SystemClock.h"

namespace marisonde {

namespace {

constexpr const char* kUnknown = "unknown";
constexpr std::size_t kSerialOfNewTidal = 7;

std::string ShortDate(double date) {
    if (date == 0) return kUnknown;
    return QLocale().toString(DateTimeFromDays(date).date(), QLocale::ShortFormat).toStdString();
}

/// Tidal instruments with a short serial are of the first series, whose firmware keeps no calibration.
bool StoresCalibration(const DataWindowState& state) {
    return !IsTidalFamily(state.InstType) || state.InstSerial.size() >= kSerialOfNewTidal;
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
        {"Nonvolatile_Box", "&Keeps its calibration", open && StoresCalibration(state) ? "Yes" : "No"},
    };
}

}  // namespace marisonde
