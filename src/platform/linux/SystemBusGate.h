#pragma once

#include "platform/linux/BusProbe.h"

#include <QDBusConnection>
#include <QObject>
#include <QPointer>
#include <QTimer>
#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <vector>

class QSocketNotifier;

namespace navro {

// The system bus, handed out once it is known to answer. A bus daemon that takes connections in
// and never answers holds the first call to it for good, and with it the whole program; finding
// that out takes up to the probe's patience. Nobody waits for that: the probe runs in the event
// loop beside the start-up, and the parts that use the system bus are handed it when the probe
// has answered; a silent one is one log line and a bus that is not connected.
class SystemBusGate final : public QObject {
public:
    // Starts the probe at once.
    SystemBusGate(std::string address, std::chrono::milliseconds patience,
                  QObject* parent = nullptr);
    ~SystemBusGate() override;

    // Calls `ready` with the bus once the probe has answered (at once when it has), unless
    // `context` is gone by then.
    void whenReady(QObject* context, std::function<void(QDBusConnection)> ready);
    bool isKnown() const { return bus_.has_value(); }

    // Where the system bus is: DBUS_SYSTEM_BUS_ADDRESS, else its well-known socket.
    static std::string defaultAddress();

private:
    void sendGreeting();
    void finish(const BusProbe& answer);
    void closeSocket();

    std::string address_;
    std::chrono::milliseconds patience_;
    QString connectionName_;
    int fd_ = -1;
    QSocketNotifier* writable_ = nullptr;
    QSocketNotifier* readable_ = nullptr;
    QTimer deadline_;
    std::optional<QDBusConnection> bus_;
    std::vector<std::pair<QPointer<QObject>, std::function<void(QDBusConnection)>>> waiting_;
};

} // namespace navro
