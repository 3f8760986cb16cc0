// Both sides of a transfer against the widely used programs of others.
#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <unistd.h>

#include "simulator/Conversation.h"
#include "simulator/Tidal.h"
#include "support/PeerProgram.h"

namespace marisonde::simulator {
namespace {

using namespace std::chrono_literals;

/// Lets an l-Tidal dump its calibration into the receiver and gives what that wrote. `spoil` sees each piece
/// on its way.
template <class Spoil>
std::string Received(Spoil spoil) {
    const auto path = std::filesystem::temp_directory_path() / ("dump-" + std::to_string(getpid()) + ".bin");
    std::string content;
    {
        Conversation talk(Model::LTidal);
        talk.AskWithEcho("DUMPCFG\r", 1s);
        PeerProgram receiver({"rx", "-c", path.string()});
        const auto begin = std::chrono::steady_clock::now();
        while (!receiver.Ended() && std::chrono::steady_clock::now() - begin < 40s) {
            talk.instrument->Receive(receiver.Read(), talk.now);
            receiver.Write(spoil(talk.Listen(10ms)));
        }
        EXPECT_EQ(receiver.ExitStatus(), 0);
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
    if (!PeerProgram::Installed("rx")) GTEST_SKIP() << "rx is not installed";
    EXPECT_EQ(Received([](std::string bytes) { return bytes; }), ImageOfLTidal());
}

TEST(XmodemPeer, GetsASpoiledBlockAgain) {
    if (!PeerProgram::Installed("rx")) GTEST_SKIP() << "rx is not installed";
    std::size_t passed = 0;
    const auto spoil = [&](std::string bytes) {
        for (char& byte : bytes)
            if (++passed == 70) byte = static_cast<char>(byte ^ 0x10);
        return bytes;
    };
    EXPECT_EQ(Received(spoil), ImageOfLTidal());
    EXPECT_GT(passed, 2U * 133U);
}

TEST(XmodemPeer, ItsSenderStoresAnImage) {
    if (!PeerProgram::Installed("sx")) GTEST_SKIP() << "sx is not installed";
    const auto path = std::filesystem::temp_directory_path() / ("load-" + std::to_string(getpid()) + ".bin");
    std::ofstream(path, std::ios::binary) << ImageOfLTidal();
    Conversation talk(Model::LTidal);
    PeerProgram sender({"sx", "-q", path.string()});
    std::string said = talk.AskWithEcho("LOADCFG\r", 10ms);
    const auto begin = std::chrono::steady_clock::now();
    while (said.find("saved") == std::string::npos && std::chrono::steady_clock::now() - begin < 40s) {
        talk.instrument->Receive(sender.Read(), talk.now);
        const std::string answer = talk.Listen(10ms);
        said += answer;
        if (!sender.Ended()) sender.Write(answer);
    }
    EXPECT_NE(said.find("Data saved\r\n"), std::string::npos);
    EXPECT_EQ(sender.WaitForExit(), 0);
    std::filesystem::remove(path);
}

}  // namespace
}  // namespace marisonde::simulator
