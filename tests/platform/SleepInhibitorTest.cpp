#ifdef MARISONDE_DBUS

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusUnixFileDescriptor>
#include <QElapsedTimer>
#include <QProcess>
#include <QStandardPaths>
#include <array>
#include <functional>
#include <gtest/gtest.h>
#include <poll.h>
#include <string>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include "platform/KeepAwake.h"
#include "support/TestFolder.h"

namespace marisonde {

/// The login manager of the test's own bus: hands out the end of a pipe.
class FakeLoginManager final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.login1.Manager")

  public:
    FakeLoginManager() { EXPECT_EQ(pipe(ends_.data()), 0); }
    ~FakeLoginManager() override {
        close(ends_[0]);
        CloseOwn();
    }
    FakeLoginManager(const FakeLoginManager&) = delete;
    FakeLoginManager& operator=(const FakeLoginManager&) = delete;

    /// Whether somebody still holds what was handed out.
    [[nodiscard]] bool IsHeld() {
        CloseOwn();
        pollfd end{ends_[0], POLLIN, 0};
        poll(&end, 1, 0);
        return (end.revents & POLLHUP) == 0;
    }

    QStringList asked;

  public slots:
    QDBusUnixFileDescriptor Inhibit(const QString& what, const QString& who, const QString& why,
                                    const QString& mode) {
        asked = QStringList{what, who, why, mode};
        return QDBusUnixFileDescriptor(ends_[1]);
    }

  private:
    void CloseOwn() {
        if (ends_[1] >= 0) close(ends_[1]);
        ends_[1] = -1;
    }
    std::array<int, 2> ends_{};
};

namespace {

/// A bus that takes every connection and never says a word.
class SilentBus {
  public:
    explicit SilentBus(const std::string& path) : socket_(socket(AF_UNIX, SOCK_STREAM, 0)) {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        path.copy(static_cast<char*>(address.sun_path), sizeof address.sun_path - 1);
        EXPECT_EQ(bind(socket_, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
        EXPECT_EQ(listen(socket_, 5), 0);
    }
    ~SilentBus() {
        if (caller_ >= 0) close(caller_);
        close(socket_);
    }
    SilentBus(const SilentBus&) = delete;
    SilentBus& operator=(const SilentBus&) = delete;

    /// Whether somebody has called and said something.
    bool IsAsked() {
        if (caller_ < 0 && HasInput(socket_)) caller_ = accept(socket_, nullptr, nullptr);
        return caller_ >= 0 && HasInput(caller_);
    }

  private:
    static bool HasInput(int end) {
        pollfd one{end, POLLIN, 0};
        return poll(&one, 1, 0) == 1;
    }
    int socket_;
    int caller_ = -1;
};

class SleepInhibitorTest : public testing::Test {
  protected:
    SleepInhibitorTest() { qputenv("DBUS_SYSTEM_BUS_ADDRESS", Address().toLatin1()); }
    ~SleepInhibitorTest() override { qunsetenv("DBUS_SYSTEM_BUS_ADDRESS"); }

    [[nodiscard]] std::string Socket() const { return (folder / "bus").string(); }
    [[nodiscard]] QString Address() const { return "unix:path=" + QString::fromStdString(Socket()); }

    /// Handles what comes until `met`; false after a while.
    static bool Soon(const std::function<bool()>& met) {
        QElapsedTimer watch;
        watch.start();
        while (!met() && watch.elapsed() < 5000)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents, 20);
        return met();
    }

    TestFolder folder;
};

TEST_F(SleepInhibitorTest, ABusThatAcceptsAndSaysNothingHoldsUpNobody) {
    SilentBus silent(Socket());
    QElapsedTimer watch;
    watch.start();
    {
        const auto inhibitor = SystemSleepInhibitor();
        inhibitor->Hold();
        EXPECT_LT(watch.elapsed(), 1000);
        EXPECT_TRUE(Soon([&silent] { return silent.IsAsked(); }));
        watch.restart();
        inhibitor->Release();
        inhibitor->Hold();
    }
    EXPECT_LT(watch.elapsed(), 1000) << "nor the end of the program";
}

TEST_F(SleepInhibitorTest, HoldsWhatTheLoginManagerGivesUntilItIsReleased) {
    const QString daemon = QStandardPaths::findExecutable("dbus-daemon");
    if (daemon.isEmpty()) GTEST_SKIP() << "no message bus to start";
    QProcess bus;
    bus.start(daemon, {"--session", "--nofork", "--nopidfile", "--print-address", "--address=" + Address()});
    ASSERT_TRUE(bus.waitForReadyRead(5000)) << bus.readAllStandardError().toStdString();
    FakeLoginManager manager;
    QDBusConnection own = QDBusConnection::connectToBus(Address(), "login manager");
    ASSERT_TRUE(own.registerService("org.freedesktop.login1"));
    ASSERT_TRUE(own.registerObject("/org/freedesktop/login1", &manager, QDBusConnection::ExportAllSlots));

    const auto inhibitor = SystemSleepInhibitor();
    for (int round = 0; round < 2; ++round) {
        manager.asked.clear();
        inhibitor->Hold();
        EXPECT_TRUE(Soon([&manager] { return !manager.asked.isEmpty(); }));
        EXPECT_EQ(manager.asked,
                  QStringList({"idle:sleep", "Marisonde", "An instrument is sending data", "block"}));
        if (round == 0) {
            inhibitor->Release();
            continue;  // before the answer has come
        }
        for (int i = 0; i < 20; ++i) QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        EXPECT_TRUE(manager.IsHeld());
        inhibitor->Release();
        EXPECT_TRUE(Soon([&manager] { return !manager.IsHeld(); }));
    }
    QDBusConnection::disconnectFromBus("login manager");
    bus.kill();
    bus.waitForFinished();
}

}  // namespace
}  // namespace marisonde

#include "SleepInhibitorTest.moc"

#endif
