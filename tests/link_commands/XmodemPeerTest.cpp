// The receiver against the widely used sender of another program, and that program's receiver against frames
// made as the receiver here expects them.
#include <chrono>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <string>

#include "link/Xmodem.h"
#include "support/PeerProgram.h"

namespace marisonde {
namespace {

using namespace std::chrono_literals;

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
    void Receive(PeerProgram& peer, XmodemState& state, Spoil spoil) {
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
    if (!PeerProgram::Installed("sx")) GTEST_SKIP() << "sx is not installed";
    const auto path = folder / "image.bin";
    std::ofstream(path, std::ios::binary) << Image();
    PeerProgram peer({"sx", "-q", "-X", path.string()});
    XmodemState state;
    Receive(peer, state, [](std::string bytes) { return bytes; });
    EXPECT_TRUE(state.BlockReady);
    EXPECT_EQ(state.BlockText, Image());
    EXPECT_EQ(peer.WaitForExit(), 0);
}

TEST_F(XmodemPeer, ASpoiledBlockIsSentAgain) {
    if (!PeerProgram::Installed("sx")) GTEST_SKIP() << "sx is not installed";
    const auto path = folder / "image.bin";
    std::ofstream(path, std::ios::binary) << Image();
    PeerProgram peer({"sx", "-q", "-X", path.string()});
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
    EXPECT_EQ(peer.WaitForExit(), 0);
}

TEST_F(XmodemPeer, TheOtherReceiverAgreesAboutCrcAndFrame) {
    if (!PeerProgram::Installed("rx")) GTEST_SKIP() << "rx is not installed";
    const auto path = folder / "received.bin";
    PeerProgram peer({"rx", "-c", "-X", path.string()});
    const int crc = XmodemCrc(Image());
    const std::string frame = std::string("\x01\x01\xFE", 3) + Image() + static_cast<char>(crc / 256) +
                              static_cast<char>(crc % 256);
    const auto await = [&](char wanted) {
        for (int i = 0; i < 2000; ++i)
            if (peer.Read().find(wanted) != std::string::npos) return true;
        return false;
    };
    ASSERT_TRUE(await('C'));
    peer.Write(frame);
    ASSERT_TRUE(await('\x06'));
    peer.Write("\x04");
    ASSERT_TRUE(await('\x06'));
    EXPECT_EQ(peer.WaitForExit(), 0);
    std::ifstream file(path, std::ios::binary);
    const std::string received{std::istreambuf_iterator<char>(file), {}};
    EXPECT_EQ(received, Image());
}

}  // namespace
}  // namespace marisonde
