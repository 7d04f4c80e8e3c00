#include "system/DeviceMonitor.h"

#include "app/AppSettings.h"
#include "app/QtText.h"

#include <QPointer>
#include <algorithm>

namespace navro {
namespace {

const char* kindName(Battery::Kind kind)
{
    switch (kind) {
    case Battery::Kind::internal:
        return "internal";
    case Battery::Kind::mouse:
        return "mouse";
    case Battery::Kind::keyboard:
        return "keyboard";
    case Battery::Kind::headset:
        return "headset";
    case Battery::Kind::phone:
        return "phone";
    case Battery::Kind::tablet:
        return "tablet";
    case Battery::Kind::gamepad:
        return "gamepad";
    case Battery::Kind::other:
        return "other";
    }
    return "other";
}

const char* stateName(Battery::State state)
{
    switch (state) {
    case Battery::State::charging:
        return "charging";
    case Battery::State::discharging:
        return "discharging";
    case Battery::State::full:
        return "full";
    case Battery::State::notCharging:
        return "notCharging";
    case Battery::State::unknown:
        return "unknown";
    }
    return "unknown";
}

// Items of `after` whose key is not among `before`'s, in `after`'s order.
template <typename T, typename Key>
std::vector<const T*> missingFrom(const std::vector<T>& before, const std::vector<T>& after,
                                  Key key)
{
    std::vector<const T*> result;
    for (const T& item : after) {
        if (std::none_of(before.begin(), before.end(),
                         [&](const T& known) { return key(known) == key(item); }))
            result.push_back(&item);
    }
    return result;
}

} // namespace

DeviceMonitor::DeviceMonitor(Clock& clock, const AppSettings& settings, Sources sources,
                             Notify notify, QObject* parent)
    : QObject(parent), settings_(settings), sources_(sources), notify_(std::move(notify)),
      burst_(clock, [this](std::vector<DeviceEvent> events) { sayBurst(events); })
{
}

DeviceMonitor::~DeviceMonitor() = default;

void DeviceMonitor::start()
{
    QPointer<DeviceMonitor> self(this);
    if (sources_.power)
        sources_.power->start([self](const auto& supply) {
            if (self)
                self->applyPower(supply);
        });
    if (sources_.bluetooth)
        sources_.bluetooth->start([self](const auto& devices) {
            if (self)
                self->applyBluetooth(devices);
        });
    if (sources_.drives)
        sources_.drives->start([self](const auto& drives) {
            if (self)
                self->applyDrives(drives);
        });
    if (sources_.usb)
        sources_.usb->start([self](const auto& devices) {
            if (self)
                self->applyUsb(devices);
        });
}

void DeviceMonitor::applyPower(const std::optional<PowerSupply>& supply)
{
    if (supply == power_)
        return;
    power_ = supply;
    if (supply) {
        const auto internal = internalBattery();
        PowerReading reading{internal.has_value(), internal ? internal->percentage : 0,
                             supply->onCharger};
        for (PowerEvent event : powerRule_.observe(reading))
            say(describePowerEvent(event, reading.percentage, settings_.isArabic()));
    }
    emit batteriesChanged();
}

void DeviceMonitor::applyBluetooth(const std::optional<std::vector<BluetoothDevice>>& devices)
{
    if (devices == bluetooth_)
        return;
    if (bluetooth_ && devices) {
        for (const auto& device : *devices) {
            const auto before =
                std::find_if(bluetooth_->begin(), bluetooth_->end(),
                             [&](const auto& known) { return known.id == device.id; });
            const bool was = before != bluetooth_->end() && before->connected;
            if (was != device.connected)
                burst_.add({DeviceKind::bluetooth,
                            device.connected ? DeviceChange::connected : DeviceChange::disconnected,
                            device.name});
        }
        for (const auto* gone :
             missingFrom(*devices, *bluetooth_, [](const auto& d) { return d.id; }))
            if (gone->connected)
                burst_.add({DeviceKind::bluetooth, DeviceChange::disconnected, gone->name});
    }
    bluetooth_ = devices;
    emit bluetoothChanged();
}

void DeviceMonitor::applyDrives(const std::optional<std::vector<Drive>>& drives)
{
    if (drives == drives_)
        return;
    if (drives_ && drives) {
        for (const auto& drive : *drives) {
            const auto before =
                std::find_if(drives_->begin(), drives_->end(),
                             [&](const auto& known) { return known.id == drive.id; });
            const bool was = before != drives_->end() && before->mounted;
            if (was != drive.mounted)
                burst_.add({DeviceKind::drive,
                            drive.mounted ? DeviceChange::connected : DeviceChange::disconnected,
                            drive.name});
            // A change of the drive ends what was said about the last eject, except while one
            // runs.
            if (before != drives_->end() && *before != drive &&
                driveStatus_[drive.id] != QLatin1String("ejecting"))
                driveStatus_.erase(drive.id);
        }
        for (const auto* gone :
             missingFrom(*drives, *drives_, [](const auto& d) { return d.id; })) {
            if (gone->mounted)
                burst_.add({DeviceKind::drive, DeviceChange::disconnected, gone->name});
            driveStatus_.erase(gone->id);
        }
    }
    drives_ = drives;
    emit drivesChanged();
}

void DeviceMonitor::applyUsb(const std::optional<std::vector<UsbDevice>>& devices)
{
    if (devices == usb_)
        return;
    if (usb_ && devices) {
        const auto id = [](const UsbDevice& device) { return device.id; };
        // A device nothing names is told by its numbers, which read the same in both languages.
        const auto name = [](const UsbDevice* device) {
            return device->name.empty() ? device->ids : device->name;
        };
        for (const auto* added : missingFrom(*usb_, *devices, id))
            burst_.add({DeviceKind::usb, DeviceChange::connected, name(added)});
        for (const auto* gone : missingFrom(*devices, *usb_, id))
            burst_.add({DeviceKind::usb, DeviceChange::disconnected, name(gone)});
    }
    usb_ = devices;
    emit usbChanged();
}

void DeviceMonitor::setDisplays(std::vector<Display> displays)
{
    if (displays_ == displays)
        return;
    if (displays_) {
        const auto name = [](const Display& display) { return display.name; };
        for (const auto* added : missingFrom(*displays_, displays, name))
            burst_.add({DeviceKind::display, DeviceChange::connected, added->name});
        for (const auto* gone : missingFrom(displays, *displays_, name))
            burst_.add({DeviceKind::display, DeviceChange::disconnected, gone->name});
    }
    displays_ = std::move(displays);
    emit displaysChanged();
}

void DeviceMonitor::say(const DeviceNotice& notice)
{
    if (settings_.devicesInNotch() && notify_)
        notify_(notice);
}

void DeviceMonitor::sayBurst(const std::vector<DeviceEvent>& events)
{
    say(describeDeviceEvents(events, settings_.isArabic()));
}

std::optional<Battery> DeviceMonitor::internalBattery() const
{
    if (!power_)
        return std::nullopt;
    for (const auto& battery : power_->batteries)
        if (battery.kind == Battery::Kind::internal)
            return battery;
    return std::nullopt;
}

QVariantList DeviceMonitor::batteries() const
{
    QVariantList list;
    if (!power_)
        return list;
    for (const auto& battery : power_->batteries) {
        const bool charging = battery.state == Battery::State::charging;
        list << QVariantMap{
            {QStringLiteral("id"), toQString(battery.id)},
            {QStringLiteral("name"), toQString(battery.name)},
            {QStringLiteral("kind"), QLatin1String(kindName(battery.kind))},
            {QStringLiteral("percentage"), battery.percentage},
            {QStringLiteral("state"), QLatin1String(stateName(battery.state))},
            // Seconds until empty while it discharges, until full while it charges; 0 unknown.
            {QStringLiteral("secondsLeft"),
             double(charging ? battery.secondsToFull : battery.secondsToEmpty)},
        };
    }
    return list;
}

QVariantList DeviceMonitor::bluetooth() const
{
    QVariantList list;
    if (!bluetooth_)
        return list;
    for (const auto& device : *bluetooth_) {
        list << QVariantMap{
            {QStringLiteral("id"), toQString(device.id)},
            {QStringLiteral("name"), toQString(device.name)},
            {QStringLiteral("icon"), toQString(device.icon)},
            {QStringLiteral("connected"), device.connected},
            {QStringLiteral("battery"), device.battery ? *device.battery : -1},
            {QStringLiteral("pending"), bluetoothPending_.contains(device.id)},
        };
    }
    return list;
}

QVariantList DeviceMonitor::drives() const
{
    QVariantList list;
    if (!drives_)
        return list;
    for (const auto& drive : *drives_) {
        const auto status = driveStatus_.find(drive.id);
        list << QVariantMap{
            {QStringLiteral("id"), toQString(drive.id)},
            {QStringLiteral("name"), toQString(drive.name)},
            {QStringLiteral("size"), double(drive.size)},
            {QStringLiteral("free"), drive.freeBytes ? double(*drive.freeBytes) : -1.0},
            {QStringLiteral("mounted"), drive.mounted},
            {QStringLiteral("status"), status == driveStatus_.end() ? QString() : status->second},
        };
    }
    return list;
}

QVariantList DeviceMonitor::usb() const
{
    QVariantList list;
    if (usb_)
        for (const auto& device : *usb_)
            list << QVariantMap{{QStringLiteral("id"), toQString(device.id)},
                                {QStringLiteral("name"), toQString(device.name)},
                                {QStringLiteral("ids"), toQString(device.ids)}};
    return list;
}

QVariantList DeviceMonitor::displays() const
{
    QVariantList list;
    if (displays_)
        for (const auto& display : *displays_)
            list << QVariantMap{{QStringLiteral("name"), toQString(display.name)},
                                {QStringLiteral("width"), display.width},
                                {QStringLiteral("height"), display.height}};
    return list;
}

void DeviceMonitor::eject(const QString& id)
{
    const std::string key = id.toStdString();
    if (!sources_.drives || !drives_ ||
        std::none_of(drives_->begin(), drives_->end(),
                     [&](const Drive& d) { return d.id == key; }) ||
        driveStatus_[key] == QLatin1String("ejecting"))
        return;
    setDriveStatus(key, QStringLiteral("ejecting"));
    QPointer<DeviceMonitor> self(this);
    sources_.drives->eject(key, [self, key](EjectOutcome outcome) {
        if (!self)
            return;
        switch (outcome) {
        case EjectOutcome::ejected:
            self->setDriveStatus(key, {});
            break;
        case EjectOutcome::busy:
            self->setDriveStatus(key, QStringLiteral("busy"));
            break;
        case EjectOutcome::failed:
            self->setDriveStatus(key, QStringLiteral("failed"));
            break;
        }
    });
}

void DeviceMonitor::setDriveStatus(const std::string& id, QString status)
{
    if (status.isEmpty())
        driveStatus_.erase(id);
    else
        driveStatus_[id] = std::move(status);
    emit drivesChanged();
}

void DeviceMonitor::connectDevice(const QString& id)
{
    setConnected(id.toStdString(), true);
}

void DeviceMonitor::disconnectDevice(const QString& id)
{
    setConnected(id.toStdString(), false);
}

// The button waits for the answer; the new state itself arrives with the device's next change.
void DeviceMonitor::setConnected(const std::string& id, bool connected)
{
    if (!sources_.bluetooth || bluetoothPending_.contains(id))
        return;
    setBluetoothPending(id, true);
    QPointer<DeviceMonitor> self(this);
    sources_.bluetooth->setConnected(id, connected, [self, id](bool) {
        if (self)
            self->setBluetoothPending(id, false);
    });
}

void DeviceMonitor::setBluetoothPending(const std::string& id, bool pending)
{
    if (pending)
        bluetoothPending_.insert(id);
    else
        bluetoothPending_.erase(id);
    emit bluetoothChanged();
}

} // namespace navro
