#pragma once

#include "app/Clock.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace navro {

// A notice of the device monitor, in the language asked for, ready for the closed notch.
struct DeviceNotice {
    std::string symbol;
    std::string title;
    std::string detail;
    std::optional<std::uint32_t> tint;
    bool operator==(const DeviceNotice&) const = default;
};

// The power supply as the battery notices see it.
struct PowerReading {
    bool hasBattery = false;
    double percentage = 0; // of the internal battery, 0…100
    bool onCharger = false;
    bool operator==(const PowerReading&) const = default;
};

enum class PowerEvent { chargerConnected, chargerRemoved, batteryAt20, batteryAt10 };

// Which power notices a new reading calls for. The charger's arrival and departure are said each
// time; the 20 % and 10 % warnings once each per discharge: they are armed again only when a
// charger is connected. The state found at start-up is the baseline and says nothing, and a
// fall through both marks at once (after a resume) says only the lower one.
class PowerNoticeRule {
public:
    std::vector<PowerEvent> observe(const PowerReading& reading);

private:
    std::optional<PowerReading> last_;
    bool warned20_ = false;
    bool warned10_ = false;
};

enum class DeviceKind { usb, bluetooth, drive, display };
enum class DeviceChange { connected, disconnected };

// One device that came or went; for drives, connected means mounted and disconnected ejected.
struct DeviceEvent {
    DeviceKind kind = DeviceKind::usb;
    DeviceChange change = DeviceChange::connected;
    std::string name;
    bool operator==(const DeviceEvent&) const = default;
};

DeviceNotice describePowerEvent(PowerEvent event, double percentage, bool arabic);
// One notice for a burst of events: a single event names its device; several count them, by
// kind and change when they share both (a hub of five) and as changes of devices otherwise.
DeviceNotice describeDeviceEvents(const std::vector<DeviceEvent>& events, bool arabic);

// Western digits as the "ar" locale writes them.
std::string withArabicDigits(std::string text);

// Collects events that arrive close together (the devices of one hub, a drive with several
// partitions) and hands them on as one burst once no new one has come for `quiet`, or `longest`
// after the first at the latest, so that a stream of changes still gets said.
class DeviceEventBurst {
public:
    using Deliver = std::function<void(std::vector<DeviceEvent>)>;
    static constexpr Duration quiet = std::chrono::milliseconds(600);
    static constexpr Duration longest = std::chrono::milliseconds(3000);

    DeviceEventBurst(Clock& clock, Deliver deliver);
    void add(DeviceEvent event);

private:
    void flush();

    Clock& clock_;
    Deliver deliver_;
    std::unique_ptr<TaskSlot> slot_;
    std::vector<DeviceEvent> pending_;
    WallTime firstAt_{};
};

} // namespace navro
