#pragma once

#include "prayer/SystemTimeEvents.h"

namespace navro {

// The machine's clock, zone and sleep as a test wants them: it says which zone the machine is in
// and delivers events when told to.
class FakeSystemTimeEvents final : public SystemTimeEvents {
public:
    explicit FakeSystemTimeEvents(std::string zone = "Asia/Riyadh") : zone(std::move(zone)) {}

    void setHandler(std::function<void(Event)> handler) override { handler_ = std::move(handler); }
    std::string systemTimeZoneID() const override { return zone; }

    bool hasHandler() const { return bool(handler_); }
    void send(Event event)
    {
        if (handler_)
            handler_(event);
    }

    std::string zone;

private:
    std::function<void(Event)> handler_;
};

} // namespace navro
