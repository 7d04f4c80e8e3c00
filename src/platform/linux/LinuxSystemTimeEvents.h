#pragma once

#include "app/SystemTimeEvents.h"

#include <QByteArray>
#include <QFileSystemWatcher>
#include <QObject>

class QSocketNotifier;

namespace navro {

class SystemBusGate;

// Clock, zone and sleep events on Linux: a real-time timer that the kernel cancels whenever the
// wall clock is set, a watch on /etc where the zone link lives, and logind's PrepareForSleep on
// the system bus. Each piece that is missing (no system bus in a container, no timerfd) is simply
// left out: the service then only misses early wake-ups.
class LinuxSystemTimeEvents final : public QObject, public SystemTimeEvents {
    Q_OBJECT
public:
    explicit LinuxSystemTimeEvents(SystemBusGate& systemBus, QObject* parent = nullptr);
    ~LinuxSystemTimeEvents() override;

    std::string systemTimeZoneID() const override;

private slots:
    void onPrepareForSleep(bool starting);

private:
    bool armClockWatch();
    void onClockWatch();
    void watchZoneFiles();
    void checkTimeZone();

    int clockFd_ = -1;
    QSocketNotifier* clockNotifier_ = nullptr;
    QFileSystemWatcher zoneWatcher_;
    QByteArray zone_;
};

} // namespace navro
