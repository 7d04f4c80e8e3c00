#pragma once

#include "app/SystemTimeEvents.h"

namespace navro {

// The machine's clock, zone and sleep as a test wants them: it says which zone the machine is in
// and delivers events when told to.
class FakeSystemTimeEvents final : public SystemTimeEvents {
public:
    explicit FakeSystemTimeEvents(std::string zone = "Asia/Riyadh") : zone(std::move(zone)) {}

    std::string systemTimeZoneID() const override { return zone; }

    void send(Event event) { deliver(event); }

    std::string zone;
};

} // namespace navro
