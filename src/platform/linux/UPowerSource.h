#pragma once

#include "system/DeviceSources.h"

#include <QDBusConnection>
#include <QObject>
#include <memory>

class QDBusObjectPath;

namespace navro {

class BusObjects;
class SystemBusGate;

// Batteries and the charger from UPower on the system bus.
class UPowerSource final : public QObject, public PowerSource {
    Q_OBJECT

public:
    explicit UPowerSource(SystemBusGate& systemBus);
    ~UPowerSource() override;
    void start(Changed changed) override;

private slots:
    void onDeviceAdded(const QDBusObjectPath& path);
    void onDeviceRemoved(const QDBusObjectPath& path);

private:
    void follow(QDBusConnection bus);
    void report();

    SystemBusGate& systemBus_;
    std::unique_ptr<BusObjects> objects_; // once the system bus is known
    Changed changed_;
};

} // namespace navro
