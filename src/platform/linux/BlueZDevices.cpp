#include "platform/linux/BlueZDevices.h"

#include "app/Log.h"
#include "platform/linux/BusObjects.h"
#include "platform/linux/SystemBusGate.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>

namespace navro {
namespace {

const QString service = QStringLiteral("org.bluez");
const QString deviceInterface = QStringLiteral("org.bluez.Device1");
const QString batteryInterface = QStringLiteral("org.bluez.Battery1");

} // namespace

BlueZDevices::BlueZDevices(SystemBusGate& systemBus) : systemBus_(systemBus) {}

BlueZDevices::~BlueZDevices() = default;

void BlueZDevices::start(Changed changed)
{
    changed_ = std::move(changed);
    systemBus_.whenReady(this, [this](QDBusConnection bus) {
        objects_ = std::make_unique<BusObjects>(bus, service, QStringLiteral("BlueZ"));
        QObject::connect(objects_.get(), &BusObjects::changed, objects_.get(),
                         [this] { report(); });
        QObject::connect(objects_.get(), &BusObjects::unavailable, objects_.get(),
                         [this] { changed_(std::nullopt); });
        objects_->followObjectManager(QStringLiteral("/"));
    });
}

void BlueZDevices::report()
{
    std::vector<BluetoothDevice> devices;
    const auto& objects = objects_->objects();
    for (auto object = objects.begin(); object != objects.end(); ++object) {
        const auto device = object->find(deviceInterface);
        if (device == object->end())
            continue;
        const bool connected = device->value(QStringLiteral("Connected")).toBool();
        // Devices nearby that were never paired are not the user's.
        if (!connected && !device->value(QStringLiteral("Paired")).toBool())
            continue;
        QString name = device->value(QStringLiteral("Alias")).toString().trimmed();
        if (name.isEmpty())
            name = device->value(QStringLiteral("Name")).toString().trimmed();
        if (name.isEmpty())
            name = device->value(QStringLiteral("Address")).toString();
        BluetoothDevice entry{object.key().toStdString(), name.toStdString(),
                              device->value(QStringLiteral("Icon")).toString().toStdString(),
                              connected, std::nullopt};
        const auto battery = object->find(batteryInterface);
        if (battery != object->end() && battery->contains(QStringLiteral("Percentage")))
            entry.battery =
                std::clamp(battery->value(QStringLiteral("Percentage")).toInt(), 0, 100);
        devices.push_back(std::move(entry));
    }
    changed_(devices);
}

void BlueZDevices::setConnected(const std::string& id, bool connected,
                                std::function<void(bool)> done)
{
    if (!objects_) {
        done(false);
        return;
    }
    const QString path = QString::fromStdString(id);
    const QString method = connected ? QStringLiteral("Connect") : QStringLiteral("Disconnect");
    auto* watcher =
        new QDBusPendingCallWatcher(objects_->bus().asyncCall(QDBusMessage::createMethodCall(
                                        service, path, deviceInterface, method)),
                                    objects_.get());
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, objects_.get(),
                     [done, path, method](QDBusPendingCallWatcher* w) {
                         w->deleteLater();
                         const QDBusMessage reply = w->reply();
                         const bool failed = reply.type() == QDBusMessage::ErrorMessage;
                         if (failed)
                             logLine("BlueZ: " + method.toStdString() + " " +
                                     excerptForLog(path.toStdString()) + " failed: " +
                                     excerptForLog(reply.errorName().toStdString() + " " +
                                                   reply.errorMessage().toStdString()));
                         done(!failed);
                     });
}

} // namespace navro
