#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace navro {

using Duration = std::chrono::milliseconds;
using WallTime = std::chrono::time_point<std::chrono::system_clock, std::chrono::milliseconds>;

// A single slot for delayed work. Scheduling again replaces (cancels) the pending task, and
// destroying the slot cancels it, so an owner that holds its slot as a member can never be
// called back after it is gone.
class TaskSlot {
public:
    virtual ~TaskSlot() = default;
    virtual void schedule(Duration delay, std::function<void()> task) = 0;
    virtual void cancel() = 0;
    virtual bool isPending() const = 0;
};

// The source of time for every service: the wall clock for what a user reads, and slots for
// waits. Waits measure elapsed time, so they are not shortened or stretched when the wall clock
// is set.
class Clock {
public:
    virtual ~Clock() = default;
    virtual WallTime now() const = 0;
    virtual std::unique_ptr<TaskSlot> makeSlot() = 0;
};

inline Duration seconds(double value)
{
    return std::chrono::round<Duration>(std::chrono::duration<double>(value));
}

} // namespace navro
