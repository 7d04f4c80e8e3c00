#include "platform/linux/UPowerSource.h"

#include "platform/linux/BusObjects.h"
#include "platform/linux/SystemBusGate.h"

#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <algorithm>

namespace navro {
namespace {

const QString service = QStringLiteral("org.freedesktop.UPower");
const QString root = QStringLiteral("/org/freedesktop/UPower");
const QString daemonInterface = QStringLiteral("org.freedesktop.UPower");
const QString deviceInterface = QStringLiteral("org.freedesktop.UPower.Device");

// UPower's device kinds (UpDeviceKind).
enum : unsigned {
    kindLinePower = 1,
    kindBattery = 2,
    kindMouse = 5,
    kindKeyboard = 6,
    kindPhone = 8,
    kindTablet = 10,
    kindGamingInput = 12,
    kindHeadset = 17,
    kindHeadphones = 18
};

Battery::Kind batteryKind(unsigned type)
{
    switch (type) {
    case kindBattery:
        return Battery::Kind::internal;
    case kindMouse:
        return Battery::Kind::mouse;
    case kindKeyboard:
        return Battery::Kind::keyboard;
    case kindPhone:
        return Battery::Kind::phone;
    case kindTablet:
        return Battery::Kind::tablet;
    case kindGamingInput:
        return Battery::Kind::gamepad;
    case kindHeadset:
    case kindHeadphones:
        return Battery::Kind::headset;
    default:
        return Battery::Kind::other;
    }
}

Battery::State batteryState(unsigned state)
{
    switch (state) {
    case 1: // charging
    case 5: // pending charge
        return Battery::State::charging;
    case 2: // discharging
    case 3: // empty
    case 6: // pending discharge
        return Battery::State::discharging;
    case 4:
        return Battery::State::full;
    default:
        return Battery::State::unknown;
    }
}

std::string nameOf(const QVariantMap& properties)
{
    const QString vendor = properties.value(QStringLiteral("Vendor")).toString().trimmed();
    const QString model = properties.value(QStringLiteral("Model")).toString().trimmed();
    if (model.isEmpty())
        return vendor.toStdString();
    if (vendor.isEmpty() || model.startsWith(vendor))
        return model.toStdString();
    return (vendor + QLatin1Char(' ') + model).toStdString();
}

} // namespace

UPowerSource::UPowerSource(SystemBusGate& systemBus) : systemBus_(systemBus) {}

UPowerSource::~UPowerSource() = default;

void UPowerSource::start(Changed changed)
{
    changed_ = std::move(changed);
    systemBus_.whenReady(this, [this](QDBusConnection bus) { follow(std::move(bus)); });
}

void UPowerSource::follow(QDBusConnection bus)
{
    objects_ = std::make_unique<BusObjects>(bus, service, QStringLiteral("UPower"));
    BusObjects* objects = objects_.get();
    QObject::connect(objects, &BusObjects::changed, objects, [this] { report(); });
    QObject::connect(objects, &BusObjects::unavailable, objects,
                     [this] { changed_(std::nullopt); });
    // UPower has no object manager: its devices are listed, and added and removed by signals.
    bus.connect(service, root, daemonInterface, QStringLiteral("DeviceAdded"), this,
                SLOT(onDeviceAdded(QDBusObjectPath)));
    bus.connect(service, root, daemonInterface, QStringLiteral("DeviceRemoved"), this,
                SLOT(onDeviceRemoved(QDBusObjectPath)));
    objects->followListedObjects([objects] {
        objects->add(root, daemonInterface);
        auto call = objects->bus().asyncCall(QDBusMessage::createMethodCall(
            service, root, daemonInterface, QStringLiteral("EnumerateDevices")));
        auto* watcher = new QDBusPendingCallWatcher(call, objects);
        QObject::connect(watcher, &QDBusPendingCallWatcher::finished, objects,
                         [objects](QDBusPendingCallWatcher* w) {
                             w->deleteLater();
                             QDBusPendingReply<QList<QDBusObjectPath>> reply = *w;
                             if (reply.isError()) {
                                 objects->noteFailure(QStringLiteral("listing devices"),
                                                      reply.reply());
                                 return;
                             }
                             for (const auto& path : reply.value())
                                 objects->add(path.path(), deviceInterface);
                         });
    });
}

void UPowerSource::onDeviceAdded(const QDBusObjectPath& path)
{
    objects_->add(path.path(), deviceInterface);
}

void UPowerSource::onDeviceRemoved(const QDBusObjectPath& path)
{
    objects_->remove(path.path());
}

void UPowerSource::report()
{
    PowerSupply supply;
    std::optional<bool> lineOnline;
    for (auto object = objects_->objects().begin(); object != objects_->objects().end(); ++object) {
        const auto device = object->find(deviceInterface);
        if (device == object->end())
            continue;
        const QVariantMap& p = *device;
        const unsigned type = p.value(QStringLiteral("Type")).toUInt();
        if (type == kindLinePower || (type == 0 && p.contains(QStringLiteral("Online")))) {
            lineOnline = lineOnline.value_or(false) || p.value(QStringLiteral("Online")).toBool();
            continue;
        }
        if (type == 0 || !p.value(QStringLiteral("IsPresent"), true).toBool())
            continue;
        // The system's own batteries are power supplies; a mouse's battery is not.
        Battery::Kind kind = batteryKind(type);
        if (kind == Battery::Kind::internal && !p.value(QStringLiteral("PowerSupply")).toBool())
            kind = Battery::Kind::other;
        Battery battery{object.key().toStdString(),
                        nameOf(p),
                        kind,
                        std::clamp(p.value(QStringLiteral("Percentage")).toDouble(), 0.0, 100.0),
                        batteryState(p.value(QStringLiteral("State")).toUInt()),
                        std::max<qint64>(0, p.value(QStringLiteral("TimeToEmpty")).toLongLong()),
                        std::max<qint64>(0, p.value(QStringLiteral("TimeToFull")).toLongLong())};
        supply.batteries.push_back(std::move(battery));
    }
    std::stable_sort(
        supply.batteries.begin(), supply.batteries.end(), [](const auto& a, const auto& b) {
            return (a.kind == Battery::Kind::internal) > (b.kind == Battery::Kind::internal);
        });
    if (lineOnline) {
        supply.onCharger = *lineOnline;
    } else {
        const auto daemon = objects_->objects().value(root).value(daemonInterface);
        supply.onCharger = daemon.contains(QStringLiteral("OnBattery")) &&
                           !daemon.value(QStringLiteral("OnBattery")).toBool() &&
                           !supply.batteries.empty();
    }
    changed_(supply);
}

} // namespace navro
