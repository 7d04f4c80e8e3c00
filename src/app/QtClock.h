#pragma once

#include "app/Clock.h"

namespace navro {

// Production time: the system clock, and slots backed by single-shot Qt timers on the thread
// that created them.
class QtClock final : public Clock {
public:
    WallTime now() const override;
    std::unique_ptr<TaskSlot> makeSlot() override;
};

} // namespace navro
