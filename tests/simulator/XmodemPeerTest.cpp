// The sender against the widely used receiver of another program.
#include <array>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include "simulator/Conversation.h"
#include "simulator/Tidal.h"

namespace marisonde::simulator {
namespace {

using namespace std::chrono_literals;

bool HasReceiver() {
    return std::system("command -v rx >/dev/null 2>&1") == 0;
}

/// "rx -c FILE" with pipes as its line.
class Receiver {
  public:
    explicit Receiver(const std::string& file) {
        std::array<int, 2> in{};
        std::array<int, 2> out{};
        if (pipe(in.data()) != 0 || pipe(out.data()) != 0) return;
        pid_ = fork();
        if (pid_ == 0) {
            dup2(in[0], 0);
            dup2(out[1], 1);
            dup2(open("/dev/null", O_WRONLY), 2);
            for (const int end : {in[0], in[1], out[0], out[1]}) close(end);
            execlp("rx", "rx", "-c", file.c_str(), nullptr);
            _exit(127);
        }
        close(in[0]);
        close(out[1]);
        toPeer_ = in[1];
        fromPeer_ = out[0];
    }
    ~Receiver() {
        close(toPeer_);
        close(fromPeer_);
        if (pid_ <= 0 || ended_) return;
        kill(pid_, SIGKILL);
        waitpid(pid_, nullptr, 0);
    }
    Receiver(const Receiver&) = delete;
    Receiver& operator=(const Receiver&) = delete;

    /// What has come within 10 ms.
    [[nodiscard]] std::string Read() const {
        pollfd waiting{fromPeer_, POLLIN, 0};
        if (poll(&waiting, 1, 10) <= 0) return {};
        std::array<char, 4096> buffer{};
        const ssize_t count = read(fromPeer_, buffer.data(), buffer.size());
        return {buffer.data(), static_cast<std::size_t>(std::max<ssize_t>(count, 0))};
    }
    void Write(const std::string& bytes) const {
        if (!bytes.empty() && write(toPeer_, bytes.data(), bytes.size()) < 0) ADD_FAILURE() << "rx is gone";
    }
    /// True once it has ended; its exit status is then known.
    bool Ended() {
        int status = 0;
        if (!ended_ && waitpid(pid_, &status, WNOHANG) == pid_) {
            ended_ = true;
            exitStatus = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
        }
        return ended_;
    }
    int exitStatus = -1;

  private:
    pid_t pid_ = -1;
    int toPeer_ = -1, fromPeer_ = -1;
    bool ended_ = false;
};

/// Lets an l-Tidal dump its calibration into the receiver and gives what that wrote. `spoil` sees each piece
/// on its way.
template <class Spoil>
std::string Received(Spoil spoil) {
    const auto path = std::filesystem::temp_directory_path() / ("dump-" + std::to_string(getpid()) + ".bin");
    std::string content;
    {
        Conversation talk(Model::LTidal);
        talk.AskWithEcho("DUMPCFG\r", 1s);
        Receiver receiver(path.string());
        const auto begin = std::chrono::steady_clock::now();
        while (!receiver.Ended() && std::chrono::steady_clock::now() - begin < 40s) {
            talk.instrument->Receive(receiver.Read(), talk.now);
            receiver.Write(spoil(talk.Listen(10ms)));
        }
        EXPECT_EQ(receiver.exitStatus, 0);
        EXPECT_EQ(talk.Ask("VER"), "Firmware version 1.85\r\n");  // it is through with the transfer as well
        std::ifstream file(path, std::ios::binary);
        content.assign(std::istreambuf_iterator<char>(file), {});
    }
    std::filesystem::remove(path);
    return content;
}

std::string ImageOfLTidal() {
    const auto calibrated = std::chrono::sys_days{std::chrono::year{2011} / 5 / 20} + 9h + 15min + 22s;
    return TidalCalImage(TidalCalibrationOf(Model::LTidal), InfoOf(Model::LTidal), "257",
                         calibrated.time_since_epoch().count());
}

TEST(XmodemPeer, TakesTheImageAsItIs) {
    if (!HasReceiver()) GTEST_SKIP() << "rx is not installed";
    EXPECT_EQ(Received([](std::string bytes) { return bytes; }), ImageOfLTidal());
}

TEST(XmodemPeer, GetsASpoiledBlockAgain) {
    if (!HasReceiver()) GTEST_SKIP() << "rx is not installed";
    std::size_t passed = 0;
    const auto spoil = [&](std::string bytes) {
        for (char& byte : bytes)
            if (++passed == 70) byte = static_cast<char>(byte ^ 0x10);
        return bytes;
    };
    EXPECT_EQ(Received(spoil), ImageOfLTidal());
    EXPECT_GT(passed, 2U * 133U);
}

}  // namespace
}  // namespace marisonde::simulator
