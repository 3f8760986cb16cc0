#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace marisonde {

/// The rates that instruments can be set to, in baud.
inline constexpr std::array kInstrumentRates{4800, 9600, 19200, 38400, 57600, 115200};

/// Why a port could not be opened or stopped working. `text` is the system's reason.
struct LineError {
    enum class Kind { None, NotFound, Busy, Denied, Gone, Other };
    Kind kind = Kind::None;
    std::string text;
    explicit operator bool() const { return kind != Kind::None; }
};

/// The operations of a serial port that the program needs: 8 data bits, no parity, 1 stop bit. Nothing
/// blocks.
class SerialLine {
  public:
    virtual ~SerialLine() = default;

    /// Opens port number `port` (1 to 31) at `baud`; an open line is closed first.
    virtual LineError Open(int port, int baud) = 0;
    virtual void Close() = 0;
    [[nodiscard]] virtual bool IsOpen() const = 0;
    virtual void SetRate(int baud) = 0;
    /// Appends all bytes that have arrived to `out`. A failed read appends nothing.
    virtual void ReadAll(std::string& out) = 0;
    virtual void Write(std::string_view bytes) = 0;
    /// Bytes waiting to go out (OutBufferCount) and waiting to be read (InBufferCount).
    [[nodiscard]] virtual std::size_t BytesToWrite() const = 0;
    [[nodiscard]] virtual std::size_t BytesToRead() const = 0;
    virtual void DropInput() = 0;
    virtual void SetBreak(bool on) = 0;
    /// What went wrong since Open; kind Gone when the device has vanished.
    [[nodiscard]] virtual LineError LastError() const = 0;
};

}  // namespace marisonde
