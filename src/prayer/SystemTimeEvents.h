#pragma once

#include <functional>
#include <string>

namespace navro {

// The moments at which the machine's idea of "now" or "here" moves under a running program: the
// wall clock is set, the system time zone changes, or the machine wakes from sleep (during which
// no timer ran). Waits measure elapsed time, so after any of these a service that slept until a
// wall-clock instant has to look again.
class SystemTimeEvents {
public:
    enum class Event { clockChanged, timeZoneChanged, resumed };

    virtual ~SystemTimeEvents() = default;
    // The one receiver; events arrive on the thread that created the implementation.
    virtual void setHandler(std::function<void(Event)> handler) = 0;
    // The machine's current IANA time-zone id, or empty when it cannot be told.
    virtual std::string systemTimeZoneID() const = 0;
};

} // namespace navro
