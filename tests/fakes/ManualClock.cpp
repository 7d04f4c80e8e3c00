#include "ManualClock.h"

#include <optional>

namespace navro {

class ManualClock::Slot final : public TaskSlot {
public:
    explicit Slot(ManualClock& clock) : clock_(clock) {}
    ~Slot() override { cancel(); }

    void schedule(Duration delay, std::function<void()> task) override
    {
        cancel();
        task_ = std::move(task);
        key_ = clock_.enqueue(this, delay);
    }

    void cancel() override
    {
        if (key_)
            clock_.dequeue(*key_);
        key_.reset();
        task_ = nullptr;
    }

    bool isPending() const override { return key_.has_value(); }

    void fire()
    {
        key_.reset();
        auto task = std::move(task_);
        task_ = nullptr;
        if (task)
            task();
    }

private:
    ManualClock& clock_;
    std::optional<Key> key_;
    std::function<void()> task_;
};

ManualClock::ManualClock(WallTime start) : now_(start) {}

ManualClock::~ManualClock() = default;

std::unique_ptr<TaskSlot> ManualClock::makeSlot()
{
    return std::make_unique<Slot>(*this);
}

ManualClock::Key ManualClock::enqueue(Slot* slot, Duration delay)
{
    Key key{now_ + std::max(delay, Duration::zero()), sequence_++};
    queue_.emplace(key, slot);
    return key;
}

void ManualClock::advance(Duration by)
{
    advanceTo(now_ + by);
}

void ManualClock::advanceTo(WallTime to)
{
    while (!queue_.empty() && queue_.begin()->first.first <= to) {
        auto [key, slot] = *queue_.begin();
        queue_.erase(queue_.begin());
        now_ = std::max(now_, key.first);
        slot->fire();
    }
    now_ = std::max(now_, to);
}

} // namespace navro
