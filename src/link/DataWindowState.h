#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>

#include "link/InputBuffer.h"
#include "calibration/CalibratedSample.h"
#include "common/Clock.h"
#include "common/InstState.h"
#include "common/InstTypes.h"
#include "decode/RawSample.h"

namespace marisonde {

/// Lines kept for the command that waits for its reply; further ones are dropped.
inline constexpr int kMaxResponseLines = 200;

/// The record of one data window: connection, identification, reply flags, current command, newest samples.
/// Times that limits are counted from are steady (Clock::Steady); they do not jump with the computer's date.
struct DataWindowState {
    bool DataArrived = false;  ///< set at each tick in which bytes arrived
    bool CalReady = false;     ///< a complete calibration is there; data lines are consumed only when set

    InstTypeCode InstType = InstTypeCode::Unknown;
    std::string InstModelName;
    std::string InstSerial;
    std::string InstConfig;
    std::string InstId;
    std::string FirmwareVersion = "0";  ///< number as text, "0" until the instrument has told it

    std::int16_t PortNumber = 0;
    std::int32_t BaudRate = 0;
    bool InputBusy = false;  ///< input text was present within the last ticks
    bool Connected = false;  ///< the port is open and an instrument is there or assumed

    InstStateCode InstState = InstStateCode::NoConnection;
    InstStateCode PrevInstState = InstStateCode::Unknown;  ///< the state last shown
    std::int16_t StartsInSeconds = 0;

    InputBuffer InputText;       ///< text read and not yet cut into lines
    std::string CurrentCommand;  ///< upper-case name of the command whose reply is awaited; empty when none
    Millis CommandTime{0};
    std::string TerminalText;  ///< reply text collected so far for the terminal
    std::array<std::string, kMaxResponseLines + 1> ResponseLines;
    std::int16_t ResponseLineCount = 0;  ///< never above kMaxResponseLines
    bool LineSeen = false;               ///< set after each line handled
    Millis LastInputTime{0};
    Millis LastDataTime{0};  ///< when a timed record last arrived
    HousekeepingBlock LastHousekeeping;
    std::string LastLine;
    std::string LastMessage;  ///< the last message line shown to the user

    bool TransferActive = false;
    bool TransferEnded = false;
    std::int32_t TransferLineCount = 0;

    RawSample CurrentRaw;
    CalibratedSample CurrentSample;
    bool HasSample = false;                ///< CurrentSample holds a converted sample
    std::optional<float> SupplyVoltage;    ///< volts, from the newest line that carries it

    /// Lines as they came in: for the error counts that the user sees.
    struct Counts {
        std::int64_t lines = 0;
        std::int64_t samples = 0;
        std::int64_t badChecksums = 0;
    } Counted;
};

/// What the ticks of all windows share. They run one after the other, never inside each other.
struct LineScratch {
    std::string chunk;      ///< what was just read from the port
    std::string line;       ///< the line at hand
    int inputIdleCount = 0;
};

}  // namespace marisonde
