#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "calibration/CalibratedSample.h"
#include "common/Clock.h"
#include "common/InstState.h"
#include "common/InstTypes.h"
#include "common/StringQueue.h"
#include "decode/RawSample.h"
#include "link/InputBuffer.h"
#include "link/SampleParams.h"
#include "link/Xmodem.h"

namespace marisonde {

/// Lines kept for the command that waits for its reply; further ones are dropped.
inline constexpr int kMaxResponseLines = 200;
/// Lines kept of a calibration that comes as text; the longest has about 260.
inline constexpr std::size_t kMaxCalLines = 2000;
/// Casts and summary lines of a directory that wait for the dialog.
inline constexpr int kDirQueueSize = 200;

/// Values of DataWindowState::ConnectStage.
inline constexpr std::int32_t kConnecting = 7;
inline constexpr std::int32_t kConnectEnded = 22;  ///< cancelled, or finished without success
/// Values of DataWindowState::CancelRequest.
inline constexpr std::int32_t kCancelIdle = 0;
inline constexpr std::int32_t kCancelRunning = 1;
inline constexpr std::int32_t kCancelStop = -1;

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
    std::string SentText;        ///< what that command put on the wire, to tell its echo from the reply
    Millis CommandTime{0};
    double CommandDate = 0;    ///< the same instant by the computer's clock, days since 30 December 1899
    std::string TerminalText;  ///< reply text collected so far for the terminal
    std::array<std::string, kMaxResponseLines + 1> ResponseLines;
    std::int16_t ResponseLineCount = 0;  ///< never above kMaxResponseLines
    /// Lines of a calibration text: apart from ResponseLines, so that one of any length arrives whole.
    std::vector<std::string> CalLines;
    bool LineSeen = false;  ///< set after each line handled
    Millis LastInputTime{0};
    Millis LastDataTime{0};  ///< when a timed record last arrived
    HousekeepingBlock LastHousekeeping;
    std::string LastLine;
    std::string LastMessage;  ///< the last message line shown to the user

    // Completion of replies; cleared by the sender.
    bool GotIdReply = false;
    bool GotCclReply = false;
    bool GotCcfReply = false;
    bool GotGcfReply = false;
    bool GotIniReply = false;
    bool GotDirEnd = false;
    bool GotTimeReply = false;
    bool ParamsReplyDone = false;
    double InstClockOffset = 0;  ///< instrument clock minus computer clock, days
    SampleParams Params;
    std::int16_t FlStatus0 = -1;  ///< state of the first fluorescence channel; below 0 unknown
    std::int16_t FlStatus1 = -1;
    int ReplyChannel = 0;  ///< channel, from 0, that the channel reply named last
    StringQueue DirQueue{kDirQueueSize};

    // Signals that end long operations of this window.
    std::int32_t ConnectStage = 0;
    std::int32_t CancelRequest = kCancelIdle;
    bool TransferCancelled = false;

    int DumpStage = 0;        ///< step of the DUMPCFG exchange
    bool DumpActive = false;  ///< the bytes that arrive belong to BinaryReceiver
    bool DumpIsText = false;  ///< the instrument answers DUMPCFG with calibration text
    XmodemState BinaryReceiver;

    bool TransferActive = false;
    bool TransferEnded = false;
    std::int32_t TransferLineCount = 0;

    RawSample CurrentRaw;
    CalibratedSample CurrentSample;
    bool HasSample = false;              ///< CurrentSample holds a converted sample
    std::optional<float> SupplyVoltage;  ///< volts, from the newest line that carries it

    /// Lines as they came in: for the error counts that the user sees.
    struct Counts {
        std::int64_t lines = 0;
        std::int64_t samples = 0;
        std::int64_t badChecksums = 0;
    } Counted;
};

/// What the ticks of all windows share. They run one after the other, never inside each other.
struct LineScratch {
    std::string chunk;  ///< what was just read from the port
    std::string line;   ///< the line at hand
    int inputIdleCount = 0;
};

}  // namespace marisonde
