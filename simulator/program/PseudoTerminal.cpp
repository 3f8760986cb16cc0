#include "simulator/program/PseudoTerminal.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <poll.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>
#include <utility>

namespace marisonde::simulator {

namespace {

struct RateRow {
    int baud;
    speed_t code;
};
constexpr std::array kRates{
    RateRow{300, B300},     RateRow{600, B600},       RateRow{1200, B1200},   RateRow{2400, B2400},
    RateRow{4800, B4800},   RateRow{9600, B9600},     RateRow{19200, B19200}, RateRow{38400, B38400},
    RateRow{57600, B57600}, RateRow{115200, B115200},
};

volatile std::sig_atomic_t stopAsked = 0;

void OnSignal(int /*signal*/) {
    stopAsked = 1;
}

std::string SystemReason() {
    return std::strerror(errno);
}

speed_t CodeOf(int baud) {
    const auto* row =
        std::find_if(kRates.begin(), kRates.end(), [&](const RateRow& r) { return r.baud == baud; });
    return row == kRates.end() ? B9600 : row->code;
}

/// Bytes pass as they are: no echo, no lines, no signals.
bool SetRaw(int handle, int baud) {
    termios settings{};
    if (tcgetattr(handle, &settings) != 0) return false;
    cfmakeraw(&settings);
    cfsetspeed(&settings, CodeOf(baud));
    return tcsetattr(handle, TCSANOW, &settings) == 0;
}

/// The system reports a missing peer only after one has been there.
void OpenAndCloseOnce(const std::string& path) {
    const int peer = open(path.c_str(), O_RDWR | O_NOCTTY);
    if (peer >= 0) close(peer);
}

}  // namespace

std::optional<PseudoTerminal> PseudoTerminal::Open(int baud, std::string& error) {
    const int handle = posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    if (handle < 0) {
        error = SystemReason();
        return std::nullopt;
    }
    PseudoTerminal terminal(handle, {});
    std::array<char, 128> name{};
    if (grantpt(handle) != 0 || unlockpt(handle) != 0 || ptsname_r(handle, name.data(), name.size()) != 0 ||
        !SetRaw(handle, baud)) {
        error = SystemReason();
        return std::nullopt;
    }
    terminal.path_ = name.data();
    OpenAndCloseOnce(terminal.path_);
    return terminal;
}

PseudoTerminal::PseudoTerminal(PseudoTerminal&& other) noexcept
    : handle_(std::exchange(other.handle_, -1)), path_(std::move(other.path_)) {}

PseudoTerminal& PseudoTerminal::operator=(PseudoTerminal&& other) noexcept {
    std::swap(handle_, other.handle_);
    std::swap(path_, other.path_);
    return *this;
}

PseudoTerminal::~PseudoTerminal() {
    Close();
}

void PseudoTerminal::Close() {
    if (handle_ >= 0) close(std::exchange(handle_, -1));
}

bool PseudoTerminal::PeerPresent() const {
    pollfd entry{handle_, POLLIN, 0};
    return handle_ >= 0 && poll(&entry, 1, 0) >= 0 && (entry.revents & POLLHUP) == 0;
}

int PseudoTerminal::PeerBaud() const {
    termios settings{};
    if (handle_ < 0 || tcgetattr(handle_, &settings) != 0) return 0;
    const speed_t code = cfgetospeed(&settings);
    const auto* row =
        std::find_if(kRates.begin(), kRates.end(), [&](const RateRow& r) { return r.code == code; });
    return row == kRates.end() ? 0 : row->baud;
}

std::string PseudoTerminal::Read() const {
    std::array<char, 4096> buffer{};
    std::string text;
    if (handle_ < 0) return text;
    for (;;) {
        const ssize_t count = read(handle_, buffer.data(), buffer.size());
        if (count <= 0) return text;
        text.append(buffer.data(), static_cast<std::size_t>(count));
    }
}

void PseudoTerminal::Write(std::string_view bytes) const {
    while (handle_ >= 0 && !bytes.empty()) {
        const ssize_t count = write(handle_, bytes.data(), bytes.size());
        if (count <= 0) return;
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
}

std::optional<std::string> MakeLink(const std::string& target, const std::string& link) {
    std::error_code error;
    if (std::filesystem::is_symlink(link, error)) std::filesystem::remove(link, error);
    if (symlink(target.c_str(), link.c_str()) == 0) return std::nullopt;
    return SystemReason();
}

void RemoveLink(const std::string& target, const std::string& link) {
    std::error_code error;
    if (std::filesystem::read_symlink(link, error) == target) std::filesystem::remove(link, error);
}

void WatchSignals() {
    struct sigaction action {};
    action.sa_handler = OnSignal;
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);
    std::signal(SIGPIPE, SIG_IGN);
}

bool StopAsked() {
    return stopAsked != 0;
}

void Pause(std::chrono::milliseconds time) {
    poll(nullptr, 0, static_cast<int>(time.count()));
}

}  // namespace marisonde::simulator
