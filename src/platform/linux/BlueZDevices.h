#pragma once

#include "system/DeviceSources.h"

#include <QObject>
#include <memory>

namespace navro {

class BusObjects;
class SystemBusGate;

// Paired Bluetooth devices from BlueZ on the system bus, with their battery where BlueZ knows
// it, and connecting and disconnecting them.
class BlueZDevices final : public QObject, public BluetoothSource {
public:
    explicit BlueZDevices(SystemBusGate& systemBus);
    ~BlueZDevices() override;
    void start(Changed changed) override;
    void setConnected(const std::string& id, bool connected,
                      std::function<void(bool succeeded)> done) override;

private:
    void report();

    SystemBusGate& systemBus_;
    std::unique_ptr<BusObjects> objects_; // once the system bus is known
    Changed changed_;
};

} // namespace navro
