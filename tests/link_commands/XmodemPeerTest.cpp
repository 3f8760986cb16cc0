// The receiver against the widely used sender of another program, and that program's receiver against frames
// made as the receiver here expects them.
#include <array>
#include <chrono>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <memory>
#include <poll.h>
#include <string>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include "link/Xmodem.h"

namespace marisonde {
namespace {

using namespace std::chrono_literals;

/// A program of the system whose standard input and output are pipes.
class Peer {
  public:
    Peer(const std::string& program, const std::string& option, const std::string& file) {
        std::array<int, 2> in{};
        std::array<int, 2> out{};
        if (pipe(in.data()) != 0 || pipe(out.data()) != 0) return;
        pid_ = fork();
        if (pid_ == 0) {
            dup2(in[0], 0);
            dup2(out[1], 1);
            const int quiet = open("/dev/null", O_WRONLY);
            dup2(quiet, 2);
            for (const int end : {in[0], in[1], out[0], out[1]}) close(end);
            execlp(program.c_str(), program.c_str(), option.c_str(), "-X", file.c_str(), nullptr);
            _exit(127);
        }
        close(in[0]);
        close(out[1]);
        toPeer_ = in[1];
        fromPeer_ = out[0];
    }
    ~Peer() {
        close(toPeer_);
        close(fromPeer_);
        if (pid_ > 0 && !ended_) {
            kill(pid_, SIGKILL);
            waitpid(pid_, nullptr, 0);
        }
    }
    Peer(const Peer&) = delete;
    Peer& operator=(const Peer&) = delete;

    /// What has come within 20 ms; empty also after the end.
    std::string Read() const {
        pollfd waiting{fromPeer_, POLLIN, 0};
        if (poll(&waiting, 1, 20) <= 0) return {};
        std::array<char, 4096> buffer{};
        const ssize_t count = read(fromPeer_, buffer.data(), buffer.size());
        return {buffer.data(), static_cast<std::size_t>(std::max<ssize_t>(count, 0))};
    }
    void Write(const std::string& bytes) const {
        if (!bytes.empty() && write(toPeer_, bytes.data(), bytes.size()) < 0) ADD_FAILURE() << "peer is gone";
    }
    /// The exit status; -1 when it does not end by itself in 10 s.
    int Ended() {
        for (int i = 0; i < 500; ++i) {
            int status = 0;
            if (waitpid(pid_, &status, WNOHANG) == pid_) {
                ended_ = true;
                return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
            }
            std::this_thread::sleep_for(20ms);
        }
        return -1;
    }

  private:
    pid_t pid_ = -1;
    int toPeer_ = -1;
    int fromPeer_ = -1;
    bool ended_ = false;
};

bool HasPeer(const char* program) {
    const std::string command = std::string("command -v ") + program + " >/dev/null 2>&1";
    return std::system(command.c_str()) == 0;
}

class XmodemPeer : public testing::Test {
  protected:
    XmodemPeer()
        : folder(std::filesystem::temp_directory_path() / ("xmodem-peer-" + std::to_string(getpid()))) {
        std::filesystem::create_directories(folder);
    }
    ~XmodemPeer() override { std::filesystem::remove_all(folder); }
    /// Every byte value stands in it, the control bytes of the protocol among them.
    static std::string Image() {
        std::string image;
        for (int i = 0; i < 128; ++i) image += static_cast<char>(i * 37 + 5);
        return image;
    }
    /// Turns the receiver at the pace of the peer; what is sent may be changed on its way by `spoil`.
    template <class Spoil>
    void Receive(Peer& peer, XmodemState& state, Spoil spoil) {
        XmodemStart(state);
        const auto begin = std::chrono::steady_clock::now();
        while (state.BinaryActive != XmodemStage::Idle) {
            const auto passed = std::chrono::steady_clock::now() - begin;
            ASSERT_LT(passed, 30s);
            std::string reply;
            XmodemReceive(state, spoil(peer.Read()), std::chrono::duration_cast<Millis>(passed), reply);
            peer.Write(reply);
        }
    }
    std::filesystem::path folder;
};

TEST_F(XmodemPeer, TakesABlockFromTheSender) {
    if (!HasPeer("sx")) GTEST_SKIP() << "sx is not installed";
    const auto path = folder / "image.bin";
    std::ofstream(path, std::ios::binary) << Image();
    Peer peer("sx", "-q", path.string());
    XmodemState state;
    Receive(peer, state, [](std::string bytes) { return bytes; });
    EXPECT_TRUE(state.BlockReady);
    EXPECT_EQ(state.BlockText, Image());
    EXPECT_EQ(peer.Ended(), 0);
}

TEST_F(XmodemPeer, ASpoiledBlockIsSentAgain) {
    if (!HasPeer("sx")) GTEST_SKIP() << "sx is not installed";
    const auto path = folder / "image.bin";
    std::ofstream(path, std::ios::binary) << Image();
    Peer peer("sx", "-q", path.string());
    XmodemState state;
    bool spoiled = false;
    Receive(peer, state, [&](std::string bytes) {
        if (!spoiled && bytes.size() > 60) {
            bytes[60] = static_cast<char>(bytes[60] ^ 0x10);
            spoiled = true;
        }
        return bytes;
    });
    EXPECT_TRUE(spoiled);
    EXPECT_EQ(state.BlockText, Image());
    EXPECT_EQ(peer.Ended(), 0);
}

TEST_F(XmodemPeer, TheOtherReceiverAgreesAboutCrcAndFrame) {
    if (!HasPeer("rx")) GTEST_SKIP() << "rx is not installed";
    const auto path = folder / "received.bin";
    Peer peer("rx", "-c", path.string());
    const int crc = XmodemCrc(Image());
    const std::string frame = std::string("\x01\x01\xFE", 3) + Image() + static_cast<char>(crc / 256) +
                              static_cast<char>(crc % 256);
    const auto await = [&](char wanted) {
        for (int i = 0; i < 1000; ++i)
            if (peer.Read().find(wanted) != std::string::npos) return true;
        return false;
    };
    ASSERT_TRUE(await('C'));
    peer.Write(frame);
    ASSERT_TRUE(await('\x06'));
    peer.Write("\x04");
    ASSERT_TRUE(await('\x06'));
    EXPECT_EQ(peer.Ended(), 0);
    std::ifstream file(path, std::ios::binary);
    const std::string received{std::istreambuf_iterator<char>(file), {}};
    EXPECT_EQ(received, Image());
}

}  // namespace
}  // namespace marisonde
