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

/// The login manager hands out a descriptor: the computer stays awake until it is closed, also by the end of
/// the program, however that comes about.
class LoginManagerInhibitor final : public SleepInhibitor {
  public:
    void Hold() override {
        const QDBusConnection bus = QDBusConnection::systemBus();
        if (!bus.isConnected()) return;
        QDBusMessage call = QDBusMessage::createMethodCall(
            "org.freedesktop.login1", "/org/freedesktop/login1", "org.freedesktop.login1.Manager", "Inhibit");
        call << "idle:sleep"
             << "Marisonde"
             << "An instrument is sending data"
             << "block";
        // Asked without waiting: a bus that does not answer must not hold up an instrument.
        watcher_ = std::make_unique<QDBusPendingCallWatcher>(bus.asyncCall(call));
        QObject::connect(watcher_.get(), &QDBusPendingCallWatcher::finished, watcher_.get(), [this] {
            const QDBusPendingReply<QDBusUnixFileDescriptor> reply = *watcher_;
            if (!reply.isError()) held_ = reply.value();
        });
    }
    void Release() override {
        watcher_.reset();
        held_ = QDBusUnixFileDescriptor();
    }

  private:
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
