#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace navro {

// What the device monitor needs of the platform, one source per kind of device. A source
// reports the whole list each time something in it changes, on this thread; none means the
// system has no such service (the section is hidden), an empty list that it has no such device.

struct Battery {
    enum class Kind { internal, mouse, keyboard, headset, phone, tablet, gamepad, other };
    enum class State { unknown, charging, discharging, full, notCharging };
    std::string id;
    std::string name;
    Kind kind = Kind::internal;
    double percentage = 0; // 0…100
    State state = State::unknown;
    std::int64_t secondsToEmpty = 0; // 0 when unknown
    std::int64_t secondsToFull = 0;
    bool operator==(const Battery&) const = default;
};

struct PowerSupply {
    bool onCharger = false;
    std::vector<Battery> batteries; // the internal ones first
    bool operator==(const PowerSupply&) const = default;
};

struct Drive {
    std::string id;
    std::string name;
    std::uint64_t size = 0;
    std::optional<std::uint64_t> freeBytes; // known while mounted
    bool mounted = false;
    bool operator==(const Drive&) const = default;
};

struct BluetoothDevice {
    std::string id;
    std::string name;
    std::string icon; // the freedesktop icon name BlueZ gives ("audio-headset", "input-mouse", …)
    bool connected = false;
    std::optional<int> battery; // percent, where the device reports it
    bool operator==(const BluetoothDevice&) const = default;
};

struct UsbDevice {
    std::string id;   // the kernel's path of the device
    std::string name; // vendor and product from the hardware database; empty when nothing names it
    std::string ids;  // vendor and product numbers, "046d:c52b", the name of last resort
    bool operator==(const UsbDevice&) const = default;
};

struct Display {
    std::string name;
    int width = 0;
    int height = 0;
    bool operator==(const Display&) const = default;
};

template <typename Snapshot> class DeviceSource {
public:
    using Changed = std::function<void(const std::optional<Snapshot>&)>;
    virtual ~DeviceSource() = default;
    // Starts listening; `changed` is called once the first list is known and on every change.
    virtual void start(Changed changed) = 0;
};

using PowerSource = DeviceSource<PowerSupply>;
using UsbSource = DeviceSource<std::vector<UsbDevice>>;

enum class EjectOutcome { ejected, busy, failed };

class DriveSource : public DeviceSource<std::vector<Drive>> {
public:
    // Unmounts every file system of the drive, then powers it off.
    virtual void eject(const std::string& id, std::function<void(EjectOutcome)> done) = 0;
};

class BluetoothSource : public DeviceSource<std::vector<BluetoothDevice>> {
public:
    virtual void setConnected(const std::string& id, bool connected,
                              std::function<void(bool succeeded)> done) = 0;
};

} // namespace navro
