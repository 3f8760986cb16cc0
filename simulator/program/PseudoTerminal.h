#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

namespace marisonde::simulator {

/// One end of a pseudo-terminal whose other end is a device that programs open like a serial port.
class PseudoTerminal {
  public:
    /// nullopt with the reason in `error` when the system gives none. `baud` is what the device is set to
    /// until whoever opens it sets a rate of its own.
    static std::optional<PseudoTerminal> Open(int baud, std::string& error);
    PseudoTerminal(PseudoTerminal&& other) noexcept;
    PseudoTerminal& operator=(PseudoTerminal&& other) noexcept;
    ~PseudoTerminal();

    [[nodiscard]] const std::string& Path() const { return path_; }
    /// Whether anybody has the device open.
    [[nodiscard]] bool PeerPresent() const;
    /// The rate that the peer has set, bits per second; 0 when it is hung up.
    [[nodiscard]] int PeerBaud() const;
    /// All that has arrived; empty when nothing has. Never waits.
    [[nodiscard]] std::string Read() const;
    /// Never waits: what the device has no room for is lost, as on a real line.
    void Write(std::string_view bytes) const;
    /// The device disappears, like an adapter that is pulled out.
    void Close();

  private:
    PseudoTerminal(int handle, std::string path) : handle_(handle), path_(std::move(path)) {}

    int handle_ = -1;
    std::string path_;
};

/// Makes `link` point to `target`, replacing a link that is there but nothing else. The reason when it fails.
std::optional<std::string> MakeLink(const std::string& target, const std::string& link);
/// Removes `link` if it is still a link to `target`.
void RemoveLink(const std::string& target, const std::string& link);

/// From now on SIGINT and SIGTERM only make StopAsked true, and a reader that goes away is no signal.
void WatchSignals();
bool StopAsked();
/// Waits for this time, or until a watched signal comes.
void Pause(std::chrono::milliseconds time);

}  // namespace marisonde::simulator
