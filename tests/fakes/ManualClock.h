#pragma once

#include "app/Clock.h"

#include <cstdint>
#include <map>
#include <utility>

namespace navro {

// Virtual time for tests: nothing happens until the test advances the clock, and then every task
// that falls due runs in time order (equal times in the order they were scheduled), with now()
// reading the task's due time while it runs.
class ManualClock final : public Clock {
public:
    explicit ManualClock(WallTime start = WallTime(std::chrono::hours(24 * 365 * 56)));
    ~ManualClock() override;

    WallTime now() const override { return now_; }
    std::unique_ptr<TaskSlot> makeSlot() override;

    void advance(Duration by);
    void advanceTo(WallTime to);
    // Runs the tasks due now, such as zero-delay ones: one turn of an event loop.
    void runDue() { advance(Duration::zero()); }
    // Moves the wall clock as a user setting the time would, without running anything.
    void setWallTime(WallTime to) { now_ = to; }
    std::size_t pendingCount() const { return queue_.size(); }

private:
    class Slot;
    using Key = std::pair<WallTime, std::uint64_t>;

    Key enqueue(Slot* slot, Duration delay);
    void dequeue(const Key& key) { queue_.erase(key); }

    WallTime now_;
    std::uint64_t sequence_ = 0;
    std::map<Key, Slot*> queue_;
};

} // namespace navro
