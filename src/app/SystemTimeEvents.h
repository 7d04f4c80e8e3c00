#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace navro {

// The moments at which the machine's idea of "now" or "here" moves under a running program: the
// wall clock is set, the system time zone changes, or the machine wakes from sleep (during which
// no timer ran). Waits measure elapsed time, so after any of these a service that slept until a
// wall-clock instant has to look again.
//
// One instance watches for the whole program; every service that plans by the wall clock listens
// to it.
class SystemTimeEvents {
public:
    enum class Event { clockChanged, timeZoneChanged, resumed };
    using Handler = std::function<void(Event)>;

    virtual ~SystemTimeEvents() = default;

    // Adds a receiver and returns the number that removes it. Events arrive on the thread that
    // created the implementation, in the order the receivers were added.
    int addHandler(Handler handler)
    {
        handlers_.emplace(nextHandler_, std::move(handler));
        return nextHandler_++;
    }
    void removeHandler(int handler) { handlers_.erase(handler); }
    std::size_t handlerCount() const { return handlers_.size(); }

    // The machine's current IANA time-zone id, or empty when it cannot be told.
    virtual std::string systemTimeZoneID() const = 0;

protected:
    void deliver(Event event)
    {
        // A receiver may add or remove receivers while it runs; each one present before and
        // still present when its turn comes is called once.
        std::vector<int> order;
        for (const auto& entry : handlers_)
            order.push_back(entry.first);
        for (int handler : order)
            if (auto found = handlers_.find(handler); found != handlers_.end()) {
                const Handler call = found->second;
                call(event);
            }
    }

private:
    std::map<int, Handler> handlers_;
    int nextHandler_ = 0;
};

} // namespace navro
