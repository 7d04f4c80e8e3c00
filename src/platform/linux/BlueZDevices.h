#pragma once

#include "system/DeviceSources.h"

#include <memory>

namespace navro {

class BusObjects;

// Paired Bluetooth devices from BlueZ on the system bus, with their battery where BlueZ knows
// it, and connecting and disconnecting them.
class BlueZDevices final : public BluetoothSource {
public:
    BlueZDevices();
    ~BlueZDevices() override;
    void start(Changed changed) override;
    void setConnected(const std::string& id, bool connected,
                      std::function<void(bool succeeded)> done) override;

private:
    void report();

    std::unique_ptr<BusObjects> objects_;
    Changed changed_;
};

} // namespace navro
