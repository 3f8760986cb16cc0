#pragma once

#include <QSerialPort>
#include <memory>
#include <string>
#include <string_view>

#include "link/PortTable.h"
#include "link/SerialLine.h"

namespace marisonde {

/// A port of this computer. Bytes come and go while the event loop turns; no call waits for them. When the
/// device vanishes, LastError tells Gone, the line is closed so that the system can give the device its name
/// again, and what had arrived before can still be read: until then the line counts as open.
class RealSerialLine final : public SerialLine {
  public:
    /// `ports` must outlive the line.
    explicit RealSerialLine(PortTable& ports) : ports_(ports) {}
    ~RealSerialLine() override;

    LineError Open(int port, int baud) override;
    void Close() override;
    [[nodiscard]] bool IsOpen() const override;
    /// The system may know more rates than kInstrumentRates.
    void SetRate(int baud) override;
    void ReadAll(std::string& out) override;
    void Write(std::string_view bytes) override;
    [[nodiscard]] std::size_t BytesToWrite() const override;
    [[nodiscard]] std::size_t BytesToRead() const override;
    void DropInput() override;
    void SetBreak(bool on) override;
    [[nodiscard]] LineError LastError() const override { return lastError_; }

  private:
    [[nodiscard]] bool Works() const { return port_ && port_->isOpen(); }
    void OnError(QSerialPort::SerialPortError error);

    PortTable& ports_;
    std::unique_ptr<QSerialPort> port_;
    std::string lastBytes_;  ///< arrived before the device vanished
    LineError lastError_;
};

}  // namespace marisonde
