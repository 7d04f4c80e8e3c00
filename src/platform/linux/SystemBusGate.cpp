#include "platform/linux/SystemBusGate.h"

#include "app/Log.h"

#include <QSocketNotifier>
#include <cstdlib>
#include <unistd.h>

namespace navro {
namespace {

// Each gate's connection has a name of its own: a name already in use would return that
// connection, whatever bus it is on.
QString newConnectionName()
{
    static int gates = 0;
    return QStringLiteral("navro-system-bus-%1").arg(++gates);
}

} // namespace

SystemBusGate::SystemBusGate(std::string address, std::chrono::milliseconds patience,
                             QObject* parent)
    : QObject(parent), address_(std::move(address)), patience_(patience),
      connectionName_(newConnectionName())
{
    const BusProbeStart start = startBusProbe(address_);
    if (start.fd < 0) {
        finish(start.answer);
        return;
    }
    fd_ = start.fd;
    deadline_.setSingleShot(true);
    connect(&deadline_, &QTimer::timeout, this, [this] { finish(silentBusProbe(patience_)); });
    deadline_.start(patience_);
    writable_ = new QSocketNotifier(fd_, QSocketNotifier::Write, this);
    connect(writable_, &QSocketNotifier::activated, this, [this] { sendGreeting(); });
}

SystemBusGate::~SystemBusGate()
{
    closeSocket();
    QDBusConnection::disconnectFromBus(connectionName_);
}

std::string SystemBusGate::defaultAddress()
{
    const char* variable = std::getenv("DBUS_SYSTEM_BUS_ADDRESS");
    return variable && *variable ? variable : "unix:path=/var/run/dbus/system_bus_socket";
}

void SystemBusGate::sendGreeting()
{
    writable_->setEnabled(false);
    BusProbe answer;
    if (!sendBusProbeGreeting(fd_, answer)) {
        finish(answer);
        return;
    }
    readable_ = new QSocketNotifier(fd_, QSocketNotifier::Read, this);
    connect(readable_, &QSocketNotifier::activated, this,
            [this] { finish(readBusProbeReply(fd_)); });
}

void SystemBusGate::finish(const BusProbe& answer)
{
    closeSocket();
    deadline_.stop();
    if (answer.answer == BusProbe::Answer::silent) {
        logLine("the system bus at " + excerptForLog(address_, 200) + " " + answer.detail +
                "; Navro runs without it");
        // A connection by a name nobody opened: not connected, and every call on it fails at
        // once.
        bus_ = QDBusConnection(connectionName_);
    } else {
        // One that is absent fails at once in the bus library too, and says why.
        bus_ = QDBusConnection::connectToBus(QString::fromStdString(address_), connectionName_);
    }
    auto waiting = std::move(waiting_);
    waiting_.clear();
    for (auto& [context, ready] : waiting)
        if (context)
            ready(*bus_);
}

void SystemBusGate::closeSocket()
{
    // Called from their own signals: they go once those have returned.
    for (QSocketNotifier** notifier : {&writable_, &readable_}) {
        if (*notifier) {
            (*notifier)->setEnabled(false);
            (*notifier)->deleteLater();
            *notifier = nullptr;
        }
    }
    if (fd_ >= 0)
        ::close(fd_);
    fd_ = -1;
}

void SystemBusGate::whenReady(QObject* context, std::function<void(QDBusConnection)> ready)
{
    if (bus_)
        ready(*bus_);
    else
        waiting_.emplace_back(context, std::move(ready));
}

} // namespace navro
