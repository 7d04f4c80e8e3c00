#pragma once

#include <memory>

namespace navro {

// Keeps the display from dimming and sleeping while a timer runs. There is one hold at most:
// asking again while held changes nothing, and letting go without a hold does nothing. Neither
// call waits for the system; where it has no way to keep the display awake, that is said once in
// the log and the caller carries on.
class SleepPreventer {
public:
    virtual ~SleepPreventer() = default;
    virtual void keepAwake() = 0;
    virtual void allowSleep() = 0;
};

// The desktop's screen saver or power manager (Linux: over the session bus). Destroying it lets
// go of a hold before it returns. Defined by the platform library.
std::unique_ptr<SleepPreventer> makeSleepPreventer();

} // namespace navro
