#include "platform/KeepAwake.h"

#include <QtGlobal>

#ifdef MARISONDE_DBUS
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusUnixFileDescriptor>
#endif

namespace marisonde {

namespace {

class NoInhibitor final : public SleepInhibitor {
  public:
    void Hold() override {}
    void Release() override {}
};

#ifdef MARISONDE_DBUS

/// Where the system's message bus listens.
QString SystemBusAddress() {
    const QString given = qEnvironmentVariable("DBUS_SYSTEM_BUS_ADDRESS");
    return given.isEmpty() ? "unix:path=/var/run/dbus/system_bus_socket" : given;
}

QDBusMessage GreetingOfBus() {
    return QDBusMessage::createMethodCall("org.freedesktop.DBus", "/org/freedesktop/DBus",
                                          "org.freedesktop.DBus", "Hello");
}

QDBusMessage InhibitCall() {
    QDBusMessage call = QDBusMessage::createMethodCall("org.freedesktop.login1", "/org/freedesktop/login1",
                                                       "org.freedesktop.login1.Manager", "Inhibit");
    call << "idle:sleep"
         << "Marisonde"
         << "An instrument is sending data"
         << "block";
    return call;
}

/// The login manager hands out a descriptor: the computer stays awake until it is closed, also by the end of
/// the program, however that comes about. Nothing waits for the bus, for one that does not answer must not
/// hold up an instrument: the bus is taken for a plain peer and greeted by hand, because the toolkit's own
/// way to it stands still until the greeting is returned.
class LoginManagerInhibitor final : public SleepInhibitor {
  public:
    ~LoginManagerInhibitor() override { Release(); }
    LoginManagerInhibitor() = default;
    LoginManagerInhibitor(const LoginManagerInhibitor&) = delete;
    LoginManagerInhibitor& operator=(const LoginManagerInhibitor&) = delete;

    void Hold() override {
        const QDBusConnection bus = QDBusConnection::connectToPeer(SystemBusAddress(), kConnection);
        if (!bus.isConnected()) return;
        bus.asyncCall(GreetingOfBus());
        watcher_ = std::make_unique<QDBusPendingCallWatcher>(bus.asyncCall(InhibitCall()));
        QObject::connect(watcher_.get(), &QDBusPendingCallWatcher::finished, watcher_.get(), [this] {
            const QDBusPendingReply<QDBusUnixFileDescriptor> reply = *watcher_;
            if (!reply.isError()) held_ = reply.value();
        });
    }
    void Release() override {
        watcher_.reset();
        held_ = QDBusUnixFileDescriptor();
        QDBusConnection::disconnectFromPeer(kConnection);
    }

  private:
    static constexpr const char* kConnection = "Marisonde keeps the computer awake";

    std::unique_ptr<QDBusPendingCallWatcher> watcher_;
    QDBusUnixFileDescriptor held_;
};

#endif

}  // namespace

std::unique_ptr<SleepInhibitor> SystemSleepInhibitor() {
#ifdef MARISONDE_DBUS
    return std::make_unique<LoginManagerInhibitor>();
#else
    return std::make_unique<NoInhibitor>();
#endif
}

void KeepAwake::Use(std::unique_ptr<SleepInhibitor> inhibitor) {
    const bool needed = held_;
    Update(false);
    inhibitor_ = std::move(inhibitor);
    Update(needed);
}

void KeepAwake::Update(bool needed) {
    if (needed == held_ || !inhibitor_) return;
    held_ = needed;
    if (needed)
        inhibitor_->Hold();
    else
        inhibitor_->Release();
}

}  // namespace marisonde
