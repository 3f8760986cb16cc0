#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <sstream>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include "simulator/HostSide.h"

namespace marisonde::simulator {
namespace {

using namespace std::chrono_literals;
namespace fs = std::filesystem;

/// What can be read from a descriptor until `enough` says so, it ends, or ten seconds are over.
template <class Enough>
std::string ReadUntil(int handle, Enough enough) {
    const auto end = std::chrono::steady_clock::now() + 10s;
    std::string text;
    char buffer[4096];
    while (!enough(text) && std::chrono::steady_clock::now() < end) {
        pollfd entry{handle, POLLIN, 0};
        if (poll(&entry, 1, 100) <= 0) continue;
        const ssize_t count = read(handle, buffer, sizeof buffer);
        if (count <= 0) break;
        text.append(buffer, static_cast<std::size_t>(count));
    }
    return text;
}

auto HasLines(long lines) {
    return [lines](const std::string& text) { return std::count(text.begin(), text.end(), '\n') >= lines; };
}

/// The program with its output on a pipe; ended at the latest when the test ends.
class Running {
  public:
    explicit Running(const std::vector<std::string>& arguments) {
        int ends[2];
        if (pipe(ends) != 0) return;
        process_ = fork();
        if (process_ == 0) {
            dup2(ends[1], STDOUT_FILENO);
            dup2(ends[1], STDERR_FILENO);
            close(ends[0]);
            close(ends[1]);
            std::vector<char*> words{const_cast<char*>(MARISONDE_SIMULATOR)};
            for (const std::string& word : arguments) words.push_back(const_cast<char*>(word.c_str()));
            words.push_back(nullptr);
            execv(MARISONDE_SIMULATOR, words.data());
            _exit(127);
        }
        close(ends[1]);
        output_ = ends[0];
    }
    ~Running() {
        if (process_ > 0) End(SIGKILL);
        close(output_);
    }
    Running(const Running&) = delete;
    Running& operator=(const Running&) = delete;

    std::string Lines(long lines) const { return ReadUntil(output_, HasLines(lines)); }
    /// Exit status, or -1 when a signal ended it. Signal 0 only waits.
    int End(int signal) {
        if (signal != 0) kill(process_, signal);
        int status = 0;
        waitpid(process_, &status, 0);
        process_ = -1;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

  private:
    pid_t process_ = -1;
    int output_ = -1;
};

/// A device opened as a host opens a serial port.
class Port {
  public:
    Port(const std::string& path, speed_t rate) : handle_(open(path.c_str(), O_RDWR | O_NOCTTY)) {
        termios settings{};
        tcgetattr(handle_, &settings);
        cfmakeraw(&settings);
        cfsetspeed(&settings, rate);
        tcsetattr(handle_, TCSAFLUSH, &settings);
    }
    ~Port() {
        if (handle_ >= 0) close(handle_);
    }
    Port(const Port&) = delete;
    Port& operator=(const Port&) = delete;

    [[nodiscard]] bool IsOpen() const { return handle_ >= 0; }
    void Write(const std::string& text) const {
        ASSERT_EQ(write(handle_, text.data(), text.size()), static_cast<ssize_t>(text.size()));
    }
    template <class Enough>
    std::string Read(Enough enough) const {
        return ReadUntil(handle_, enough);
    }

  private:
    int handle_;
};

class Program : public testing::Test {
  protected:
    void SetUp() override {
        std::string pattern = (fs::temp_directory_path() / "simulator_test_XXXXXX").string();
        folder_ = mkdtemp(pattern.data());
    }
    void TearDown() override { fs::remove_all(folder_); }
    [[nodiscard]] std::string Link() const { return (folder_ / "instrument").string(); }

    fs::path folder_;
};

std::vector<std::string> Complete(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);)
        if (!line.empty() && line.back() == '\r') lines.push_back(line.substr(0, line.size() - 1));
    return lines;
}

TEST_F(Program, ServesAModelUntilItIsAskedToStop) {
    Running program({"CORVANE-6", "--link", Link(), "--rate", "10", "--extra-every", "0"});
    const std::string told = program.Lines(1);
    const std::string device = fs::read_symlink(Link()).string();
    EXPECT_EQ(told, "Corvane-6 " + device + " " + Link() + "\n");
    {
        const Port port(Link(), B19200);
        const auto lines = Complete(port.Read(HasLines(6)));
        ASSERT_GE(lines.size(), 5U);
        for (std::size_t i = 1; i < lines.size(); ++i) {
            EXPECT_EQ(lines[i].substr(0, 2), "*T");
            EXPECT_TRUE(host::ChecksumFits(lines[i], false)) << lines[i];
        }
    }
    EXPECT_EQ(program.End(SIGTERM), 0);
    EXPECT_FALSE(fs::is_symlink(Link()));
}

TEST_F(Program, NumbersTheLinksOfSeveralModels) {
    Running program({"delph-2", "l-tidal", "--link=" + Link(), "--rate=10"});
    program.Lines(2);
    const Port delph(Link() + "0", B19200);
    const Port tidal(Link() + "1", B19200);
    const auto numbers = Complete(delph.Read(HasLines(4)));
    ASSERT_GE(numbers.size(), 3U);
    EXPECT_EQ(host::Commas(numbers[2]), 15);
    const auto hex = Complete(tidal.Read(HasLines(4)));
    ASSERT_GE(hex.size(), 3U);
    EXPECT_EQ(hex[2].substr(0, 1), "*");
    EXPECT_EQ(program.End(SIGINT), 0);
    EXPECT_FALSE(fs::is_symlink(Link() + "0"));
    EXPECT_FALSE(fs::is_symlink(Link() + "1"));
}

TEST_F(Program, ObeysCommandsFromThePort) {
    Running program({"corvane-4", "--link", Link(), "--start", "stopped", "--baud", "9600"});
    program.Lines(1);
    const Port port(Link(), B9600);
    port.Write("sleep\r");
    EXPECT_EQ(port.Read(HasLines(2)), "sleep\r\nSleeping\r\n");
    port.Write("\r");
    EXPECT_EQ(port.Read(HasLines(2)), "Turning on\r\nCV4 ready\r\n");
}

TEST_F(Program, AnswersAsItIsToldTo) {
    Running program({"l-tidal", "--link", Link(), "--start=stopped", "--firmware", "1.02", "--serial",
                     "LT-123", "--config=300", "--cal-serial", "LT9912345", "--cal-age", "200", "--dump-text",
                     "--silent-to", "period", "--reply-delay", "50"});
    program.Lines(1);
    const Port port(Link(), B19200);
    port.Write("VER\r");
    EXPECT_EQ(port.Read(HasLines(2)), "VER\r\nFirmware version 1.02\r\n");
    port.Write("PERIOD\rID\r");
    const std::string identity = port.Read(HasLines(9));
    EXPECT_NE(identity.find("PERIOD\r\nID\r\nIdentification:\r\n"), std::string::npos) << identity;
    EXPECT_NE(identity.find("\r\nS/N: LT-123\r\nConfig: 300\r\n"), std::string::npos);
    port.Write("DUMPCFG\r");
    const std::string cal = port.Read([](const std::string& t) { return t.ends_with("[End]\r\n"); });
    EXPECT_NE(cal.find("\r\nSerial=LT9912345\r\n"), std::string::npos);
    Running odd({"l-tidal", "--short-id", "--double-replies", "--start=stopped", "--link", Link() + "x"});
    odd.Lines(1);
    const Port other(Link() + "x", B19200);
    other.Write("ID\r");
    EXPECT_EQ(other.Read(HasLines(3)), "ID\r\nLT040712\r\nLT040712\r\n");
    Running cut({"corvane-2", "--cal-store", "file", "--cut-replies", "2", "--start=stopped", "--link",
                 Link() + "y"});
    cut.Lines(1);
    const Port last(Link() + "y", B19200);
    last.Write("GCF\rID\r");
    EXPECT_EQ(last.Read(HasLines(5)), "GCF\r\nUnknown command\r\nID\r\nIdentification:\r\nModel: CV2\r\n");
}

TEST_F(Program, ChangesItsRateOnceTheAnswerIsOut) {
    Running program({"delph-2", "--link", Link(), "--start=stopped"});
    program.Lines(1);
    {
        const Port port(Link(), B19200);
        port.Write("BAUD,57600\r");
        EXPECT_EQ(port.Read(HasLines(2)), "BAUD,57600\r\nBaud rate: 57600\r\n");
    }
    const Port port(Link(), B57600);
    port.Write("VER\r");
    EXPECT_EQ(port.Read(HasLines(2)), "VER\r\nFirmware version 1.85\r\n");
}

TEST_F(Program, IsUnderstoodAtItsOwnRateOnly) {
    Running program({"corvane-4", "--link", Link(), "--baud", "9600", "--rate", "10"});
    program.Lines(1);
    {
        const Port wrong(Link(), B38400);
        // What passed before the port had its rate may be clear; after some hundred bytes nothing is.
        const auto text = wrong.Read([](const std::string& t) { return t.size() > 1000; });
        ASSERT_GT(text.size(), 500U);
        EXPECT_EQ(text.find("*T", 300), std::string::npos);
        wrong.Write("STOP\r");
        // The port must keep its rate until the instrument has looked.
        wrong.Read([](const std::string& t) { return t.size() > 300; });
    }
    const Port right(Link(), B9600);
    const auto lines = Complete(right.Read(HasLines(5)));
    ASSERT_GE(lines.size(), 3U);
    EXPECT_TRUE(host::ChecksumFits(lines.back(), false)) << lines.back();
}

TEST_F(Program, TakesTheDeviceAwayWhenToldToVanish) {
    Running program({"delph-6", "--link", Link(), "--vanish", "1"});
    program.Lines(1);
    const Port port(Link(), B19200);
    ASSERT_TRUE(port.IsOpen());
    port.Read([](const std::string&) { return false; });  // ends with the device
    EXPECT_FALSE(fs::is_symlink(Link()));
    EXPECT_EQ(program.End(SIGTERM), 0);
}

TEST_F(Program, LeavesWhatIsNotALinkAlone) {
    std::ofstream(Link()) << "kept";
    Running program({"delph-6", "--link", Link()});
    EXPECT_NE(program.Lines(1).find("cannot make the link " + Link()), std::string::npos);
    EXPECT_EQ(program.End(0), 1);
    EXPECT_EQ(fs::file_size(Link()), 4U);
}

/// A calibration without its date, which goes with the time of the start.
std::string Undated(const std::string& cal) {
    const std::size_t begin = cal.find("CalTime=");
    return begin == std::string::npos ? "no date" : cal.substr(0, begin) + cal.substr(cal.find("\n", begin));
}

TEST_F(Program, WritesTheCalibrationOfEachModel) {
    Running program({"delph-2", "corvane-4", "--cal", Link()});
    program.Lines(2);
    for (const auto& [number, model] : {std::pair{"0", Model::Delph2}, std::pair{"1", Model::Corvane4}}) {
        std::ifstream in(Link() + number, std::ios::binary);
        const std::string written{std::istreambuf_iterator<char>(in), {}};
        EXPECT_EQ(Undated(written), Undated(MakeInstrument(model)->CalText()));
    }
    EXPECT_EQ(program.End(SIGTERM), 0);
    Running refused({"delph-2", "--cal", "/nowhere/at/all"});
    EXPECT_EQ(refused.Lines(1), "marisonde-simulator: cannot write the calibration /nowhere/at/all\n");
    EXPECT_EQ(refused.End(0), 1);
}

TEST_F(Program, ExplainsItself) {
    Running help({"--help"});
    const std::string text = help.Lines(20);
    EXPECT_EQ(text.substr(0, 50), "Usage: marisonde-simulator MODEL... [OPTION...]\nSi");
    for (int i = 0; i < kModelCount; ++i)
        EXPECT_NE(text.find(InfoOf(static_cast<Model>(i)).name), std::string::npos);
    EXPECT_EQ(help.End(0), 0);
    Running version({"--version"});
    EXPECT_EQ(version.Lines(1), "marisonde-simulator 2.85\n");
    EXPECT_EQ(version.End(0), 0);
}

TEST_F(Program, RefusesWhatItDoesNotKnow) {
    const std::vector<std::pair<std::vector<std::string>, std::string>> cases{
        {{}, "no model named"},
        {{"corvane-7"}, "unknown model corvane-7"},
        {{"delph-2", "--frob"}, "unknown option --frob"},
        {{"delph-2", "--baud", "1200"}, "bad value \"1200\" for --baud"},
        {{"delph-2", "--rate", "fast"}, "bad value \"fast\" for --rate"},
        {{"delph-2", "--seed"}, "bad value \"\" for --seed"},
        {{"delph-2", "--firmware", "new"}, "bad value \"new\" for --firmware"},
        {{"delph-2", "--cal-store", "none"}, "bad value \"none\" for --cal-store"},
        {{"delph-2", "--help=yes"}, "bad value \"yes\" for --help"},
        {{"delph-2", "--form", "verbose"}, "Delph-2 does not have that line form"},
    };
    for (const auto& [arguments, complaint] : cases) {
        Running program(arguments);
        EXPECT_EQ(program.Lines(1),
                  "marisonde-simulator: " + complaint + "\nTry marisonde-simulator --help.\n");
        EXPECT_EQ(program.End(0), 2);
    }
}

}  // namespace
}  // namespace marisonde::simulator
