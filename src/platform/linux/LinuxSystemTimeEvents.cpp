#include "platform/linux/LinuxSystemTimeEvents.h"

#include "platform/linux/SystemBusGate.h"

#include <QDBusConnection>
#include <QFileInfo>
#include <QSocketNotifier>
#include <QTimeZone>
#include <cerrno>
#include <cstdint>
#include <ctime>
#include <sys/timerfd.h>
#include <unistd.h>

namespace navro {
namespace {

const QString zoneLink = QStringLiteral("/etc/localtime");
const QString zoneFolder = QStringLiteral("/etc");

} // namespace

LinuxSystemTimeEvents::LinuxSystemTimeEvents(SystemBusGate& systemBus, QObject* parent)
    : QObject(parent), zone_(QTimeZone::systemTimeZoneId())
{
    // A timer far in the future whose only job is to be cancelled: with TFD_TIMER_CANCEL_ON_SET
    // the kernel wakes its reader whenever the real-time clock is set discontinuously.
    clockFd_ = timerfd_create(CLOCK_REALTIME, TFD_NONBLOCK | TFD_CLOEXEC);
    if (clockFd_ >= 0 && armClockWatch()) {
        clockNotifier_ = new QSocketNotifier(clockFd_, QSocketNotifier::Read, this);
        connect(clockNotifier_, &QSocketNotifier::activated, this, [this] { onClockWatch(); });
    } else if (clockFd_ >= 0) {
        ::close(clockFd_);
        clockFd_ = -1;
    }

    // The zone is a link that tools replace rather than rewrite, so the folder is watched too.
    connect(&zoneWatcher_, &QFileSystemWatcher::fileChanged, this, [this] { checkTimeZone(); });
    connect(&zoneWatcher_, &QFileSystemWatcher::directoryChanged, this,
            [this] { checkTimeZone(); });
    watchZoneFiles();

    systemBus.whenReady(this, [this](QDBusConnection bus) {
        if (bus.isConnected())
            bus.connect(QStringLiteral("org.freedesktop.login1"),
                        QStringLiteral("/org/freedesktop/login1"),
                        QStringLiteral("org.freedesktop.login1.Manager"),
                        QStringLiteral("PrepareForSleep"), this, SLOT(onPrepareForSleep(bool)));
    });
}

LinuxSystemTimeEvents::~LinuxSystemTimeEvents()
{
    if (clockFd_ >= 0)
        ::close(clockFd_);
}

std::string LinuxSystemTimeEvents::systemTimeZoneID() const
{
    return zone_.toStdString();
}

bool LinuxSystemTimeEvents::armClockWatch()
{
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    itimerspec expiry{};
    expiry.it_value.tv_sec = now.tv_sec + 10L * 365 * 24 * 3600;
    return timerfd_settime(clockFd_, TFD_TIMER_ABSTIME | TFD_TIMER_CANCEL_ON_SET, &expiry,
                           nullptr) == 0;
}

void LinuxSystemTimeEvents::onClockWatch()
{
    std::uint64_t expirations = 0;
    const auto got = ::read(clockFd_, &expirations, sizeof expirations);
    if (got < 0 && errno == EAGAIN)
        return;
    const bool clockSet = got < 0 && errno == ECANCELED;
    // Cancelled or (after ten years) expired, the timer has to be set again to keep watching.
    armClockWatch();
    if (clockSet) {
        checkTimeZone();
        deliver(Event::clockChanged);
    }
}

void LinuxSystemTimeEvents::watchZoneFiles()
{
    if (QFileInfo::exists(zoneLink) && !zoneWatcher_.files().contains(zoneLink))
        zoneWatcher_.addPath(zoneLink);
    if (QFileInfo::exists(zoneFolder) && !zoneWatcher_.directories().contains(zoneFolder))
        zoneWatcher_.addPath(zoneFolder);
}

void LinuxSystemTimeEvents::checkTimeZone()
{
    // A replaced link drops out of the watch list; put it back.
    watchZoneFiles();
    const QByteArray zone = QTimeZone::systemTimeZoneId();
    if (zone == zone_)
        return;
    zone_ = zone;
    deliver(Event::timeZoneChanged);
}

void LinuxSystemTimeEvents::onPrepareForSleep(bool starting)
{
    if (starting)
        return;
    checkTimeZone();
    deliver(Event::resumed);
}

} // namespace navro
