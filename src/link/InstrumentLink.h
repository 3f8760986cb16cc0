#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "calibration/CalibrationDataClass.h"
#include "common/Clock.h"
#include "common/StringQueue.h"
#include "link/DataWindowState.h"
#include "link/SerialLine.h"

namespace marisonde {

/// The instrument side of one data window: its port, its record, its calibration and the queues between the
/// port and everything that wants lines. Knows nothing of graphs, files and forms; those listen.
class InstrumentLink {
  public:
    static constexpr int kQueueSize = 1000;

    InstrumentLink(int index, const Clock& clock, std::unique_ptr<SerialLine> line);

    DataWindowState State;
    CalibrationDataClass CalData;
    StringQueue DataLineQueue{kQueueSize};  ///< lines that carry samples
    StringQueue TermQueue{kQueueSize};      ///< every line, for the terminal
    std::string PendingOutput;              ///< command text not yet sent; the tick paces it out

    std::function<void(std::string_view chunk)> OnChunk;        ///< every byte received, as it came
    std::function<void(std::string text)> OnInstrumentMessage;  ///< a "!" line for the user
    std::function<void(std::string text)> OnError;              ///< for the error form
    /// Opens the connect dialog and calls back once it has closed, whatever came of it; not after the window
    /// has gone.
    std::function<void(std::function<void()> whenClosed)> ShowConnectForm;
    std::function<bool()> MayStart;  ///< asked before sampling is started; false stops it
    std::function<void()>
        OnStatus;  ///< a command was sent or the port closed: the state is to be shown at once
    std::function<void(int baud)> OnRateChanged;  ///< the instrument and the port have gone to another rate

    std::filesystem::path TemporaryFolder;  ///< for the last calibration image; empty: none is kept
    /// Where replies that carry calibration go; null: CalData.
    CalibrationDataClass* ReplyCalData = nullptr;
    [[nodiscard]] CalibrationDataClass& ReplyCal() { return ReplyCalData ? *ReplyCalData : CalData; }

    [[nodiscard]] int Index() const { return index_; }
    [[nodiscard]] const Clock& Time() const { return clock_; }
    [[nodiscard]] SerialLine& Line() { return *line_; }
    [[nodiscard]] const SerialLine& Line() const { return *line_; }
    void UseLine(std::unique_ptr<SerialLine> line) { line_ = std::move(line); }
    /// The port has closed or its device has vanished.
    [[nodiscard]] bool LineBroken() const {
        return !line_->IsOpen() || line_->LastError().kind == LineError::Kind::Gone;
    }
    [[nodiscard]] InstIdentity Identity() const;

    /// Opens the port at 8,N,1 and drops what it held and what waits of the one before. The error says why it
    /// did not open.
    LineError OpenPort(int port, int baud);
    /// Closes the port; the window shows no connection, nothing is left to send and no reply is awaited.
    void ClosePort();
    /// Appends to PendingOutput; the tick sends it.
    void QueueOutput(std::string_view text) { PendingOutput += text; }
    /// One paced step of PendingOutput: instruments have little input buffering.
    void SendPending();

  private:
    int index_;
    const Clock& clock_;
    std::unique_ptr<SerialLine> line_;
};

}  // namespace marisonde
