#pragma once

#include "system/DeviceSources.h"

#include <QObject>
#include <memory>

class QDBusObjectPath;

namespace navro {

class BusObjects;

// Batteries and the charger from UPower on the system bus.
class UPowerSource final : public QObject, public PowerSource {
    Q_OBJECT

public:
    UPowerSource();
    ~UPowerSource() override;
    void start(Changed changed) override;

private slots:
    void onDeviceAdded(const QDBusObjectPath& path);
    void onDeviceRemoved(const QDBusObjectPath& path);

private:
    void report();

    std::unique_ptr<BusObjects> objects_;
    Changed changed_;
};

} // namespace navro
