#ifdef __linux__

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QTemporaryDir>
#include <array>
#include <fcntl.h>
#include <functional>
#include <gtest/gtest.h>
#include <pty.h>
#include <string>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

#include "link/RealSerialLine.h"

namespace marisonde {
namespace {

/// The instrument's end of a pseudo-terminal. Its device has a name of its own: the system gives the name of
/// a terminal that was closed to the next that anybody opens.
class PseudoTerminal {
  public:
    PseudoTerminal() : device_(folder_.filePath(QStringLiteral("port")).toStdString()) { Plug(); }
    ~PseudoTerminal() { Pull(); }
    PseudoTerminal(const PseudoTerminal&) = delete;
    PseudoTerminal& operator=(const PseudoTerminal&) = delete;

    [[nodiscard]] const std::string& Device() const { return device_; }
    void Send(std::string_view bytes) const {
        ASSERT_EQ(write(near_, bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
    }
    /// Appends what the program has sent.
    void Receive(std::string& out) const {
        std::array<char, 4096> buffer{};
        for (ssize_t n = 0; (n = read(near_, buffer.data(), buffer.size())) > 0;)
            out.append(buffer.data(), static_cast<std::size_t>(n));
    }
    /// The rate that the program has set.
    [[nodiscard]] speed_t Rate() const {
        termios state{};
        tcgetattr(near_, &state);
        return cfgetospeed(&state);
    }
    /// The cable is plugged in.
    void Plug() {
        std::array<char, 256> name{};
        // The terminal hangs up when its far end is closed for the last time; held open, it can be opened
        // again.
        ASSERT_EQ(openpty(&near_, &far_, name.data(), nullptr, nullptr), 0);
        ASSERT_EQ(symlink(name.data(), device_.c_str()), 0);
        fcntl(near_, F_SETFL, O_NONBLOCK);
    }
    /// The cable is pulled, and its device vanishes.
    void Pull() {
        unlink(device_.c_str());
        for (int* end : {&near_, &far_}) {
            if (*end >= 0) close(*end);
            *end = -1;
        }
    }

  private:
    QTemporaryDir folder_;
    std::string device_;
    int near_ = -1;
    int far_ = -1;
};

bool TurnUntil(const std::function<bool()>& met) {
    const QDeadlineTimer limit(5000);
    while (!met() && !limit.hasExpired()) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 10);
    return met();
}

class RealSerialLineTest : public testing::Test {
  protected:
    RealSerialLineTest() : ports(PortTable::FromText("3=" + terminal.Device())), line(ports) {}
    bool ReadUntil(const std::string& expected) {
        return TurnUntil([&] {
            line.ReadAll(read);
            return read == expected;
        });
    }
    PseudoTerminal terminal;
    PortTable ports;
    RealSerialLine line;
    std::string read;
};

TEST_F(RealSerialLineTest, BytesPassUnchangedInBothDirections) {
    ASSERT_FALSE(line.Open(3, 19200)) << line.LastError().text;
    EXPECT_TRUE(line.IsOpen());
    std::string all;
    for (int i = 0; i < 256; ++i) all += static_cast<char>(i);
    terminal.Send(all);
    EXPECT_TRUE(ReadUntil(all));
    line.Write(all);
    std::string written;
    EXPECT_TRUE(TurnUntil([&] {
        terminal.Receive(written);
        return written == all;
    }));
    EXPECT_EQ(line.BytesToWrite(), 0u);
    EXPECT_FALSE(line.LastError()) << line.LastError().text;
}

TEST_F(RealSerialLineTest, NothingBlocksWhenNothingHasArrived) {
    ASSERT_FALSE(line.Open(3, 9600));
    line.ReadAll(read);
    EXPECT_EQ(read, "");
    EXPECT_EQ(line.BytesToRead(), 0u);
}

TEST_F(RealSerialLineTest, CountsAndDropsWhatHasArrived) {
    ASSERT_FALSE(line.Open(3, 9600));
    terminal.Send("abc");
    EXPECT_TRUE(TurnUntil([&] { return line.BytesToRead() == 3; }));
    line.DropInput();
    EXPECT_EQ(line.BytesToRead(), 0u);
    terminal.Send("d");
    EXPECT_TRUE(ReadUntil("d"));
}

TEST_F(RealSerialLineTest, SetsEveryRateOfTheInstruments) {
    ASSERT_FALSE(line.Open(3, 4800));
    EXPECT_EQ(terminal.Rate(), static_cast<speed_t>(B4800));
    const std::array<std::pair<int, speed_t>, 5> rates{
        {{9600, B9600}, {19200, B19200}, {38400, B38400}, {57600, B57600}, {115200, B115200}}};
    for (const auto& [rate, expected] : rates) {
        line.SetRate(rate);
        EXPECT_EQ(terminal.Rate(), expected) << rate;
    }
    EXPECT_FALSE(line.LastError()) << line.LastError().text;
}

TEST_F(RealSerialLineTest, AVanishedDeviceIsToldAndWhatHadArrivedIsKept) {
    ASSERT_FALSE(line.Open(3, 9600));
    terminal.Send("last words");
    EXPECT_TRUE(TurnUntil([&] { return line.BytesToRead() == 10; }));
    terminal.Pull();
    EXPECT_TRUE(TurnUntil([&] { return line.LastError().kind == LineError::Kind::Gone; }));
    EXPECT_NE(line.LastError().text, "");
    EXPECT_TRUE(line.IsOpen());
    line.ReadAll(read);
    EXPECT_EQ(read, "last words");
    EXPECT_FALSE(line.IsOpen());
    line.Write("anybody?");
    QCoreApplication::processEvents();
    line.ReadAll(read);
    EXPECT_EQ(read, "last words");
    EXPECT_EQ(line.BytesToWrite(), 0u);
    line.SetRate(9600);
    line.SetBreak(true);
    line.DropInput();
    EXPECT_EQ(line.LastError().kind, LineError::Kind::Gone);
    EXPECT_EQ(line.Open(3, 9600).kind, LineError::Kind::NotFound);
}

TEST_F(RealSerialLineTest, ALineMayDieRightAfterItsDevice) {
    {
        RealSerialLine shortLived(ports);
        ASSERT_FALSE(shortLived.Open(3, 9600));
        terminal.Pull();
        EXPECT_TRUE(TurnUntil([&] { return shortLived.LastError().kind == LineError::Kind::Gone; }));
    }
    QCoreApplication::processEvents();
}

TEST_F(RealSerialLineTest, ADeviceThatIsBackCanBeOpenedAgain) {
    ASSERT_FALSE(line.Open(3, 9600)) << line.LastError().text;
    terminal.Pull();
    EXPECT_TRUE(TurnUntil([&] { return line.LastError().kind == LineError::Kind::Gone; }));
    EXPECT_EQ(line.Open(3, 9600).kind, LineError::Kind::NotFound);
    terminal.Plug();
    ASSERT_FALSE(line.Open(3, 9600)) << line.LastError().text;
    terminal.Send("back");
    EXPECT_TRUE(ReadUntil("back"));
}

TEST_F(RealSerialLineTest, OpeningTellsWhyItFailed) {
    EXPECT_EQ(line.Open(4, 9600).kind, LineError::Kind::NotFound);
    EXPECT_EQ(line.LastError().text, "There is no port 4");
    PortTable missing = PortTable::FromText("1=/dev/no-such-port");
    EXPECT_EQ(RealSerialLine(missing).Open(1, 9600).kind, LineError::Kind::NotFound);
    QTemporaryDir folder;
    PortTable noPort = PortTable::FromText("1=" + folder.path().toStdString());
    EXPECT_EQ(RealSerialLine(noPort).Open(1, 9600).kind, LineError::Kind::Other);
    EXPECT_FALSE(line.IsOpen());
}

TEST_F(RealSerialLineTest, APortInUseIsBusy) {
    ASSERT_FALSE(line.Open(3, 9600));
    RealSerialLine other(ports);
    const LineError error = other.Open(3, 9600);
    EXPECT_EQ(error.kind, LineError::Kind::Busy) << error.text;
    EXPECT_NE(error.text, "");
    line.Close();
    EXPECT_FALSE(other.Open(3, 9600)) << other.LastError().text;
}

TEST_F(RealSerialLineTest, AForbiddenPortIsDenied) {
    if (geteuid() == 0) GTEST_SKIP() << "nothing is forbidden to this user";
    ASSERT_EQ(chmod(terminal.Device().c_str(), 0), 0);
    EXPECT_EQ(line.Open(3, 9600).kind, LineError::Kind::Denied);
}

TEST_F(RealSerialLineTest, AClosedLineDoesNothing) {
    line.Write("x");
    line.SetRate(9600);
    line.SetBreak(true);
    line.DropInput();
    line.ReadAll(read);
    line.Close();
    EXPECT_EQ(read, "");
    EXPECT_FALSE(line.IsOpen());
    EXPECT_FALSE(line.LastError());
}

}  // namespace
}  // namespace marisonde

#endif
