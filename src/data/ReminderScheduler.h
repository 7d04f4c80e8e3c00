#pragma once

#include "app/Clock.h"
#include "app/DesktopNotifier.h"

#include <map>
#include <memory>
#include <optional>
#include <string>

namespace navro {

// Desktop notifications that wait for a moment on the wall clock, by key. One wait at a time,
// for the earliest: the process sleeps until then. When it wakes (on time, or late because the
// machine slept or the clock was set) it shows every one whose moment has come.
class ReminderScheduler {
public:
    ReminderScheduler(Clock& clock, DesktopNotifier& notifier);

    // Replaces the pending one of the same key. One that was already shown for this very moment
    // is not shown again: looking again after a clock change must not repeat a reminder.
    void schedule(DesktopNotification notification, WallTime at,
                  DesktopNotifier::ActionHandler onAction);
    // Forgets the pending one of that key; a shown one stays on screen.
    void cancelPending(const std::string& key);
    // Forgets the pending one and takes a shown one off the screen: what it reminds of is gone.
    void cancel(const std::string& key);
    // After the wall clock moved under the process: shows what has come due, then sleeps again.
    void wake();

    bool isPending(const std::string& key) const { return pending_.count(key) != 0; }
    std::optional<WallTime> pendingAt(const std::string& key) const;

private:
    struct Pending {
        DesktopNotification notification;
        WallTime at;
        DesktopNotifier::ActionHandler onAction;
    };

    void showDue();
    void arm();

    Clock& clock_;
    DesktopNotifier& notifier_;
    std::unique_ptr<TaskSlot> slot_;
    std::map<std::string, Pending> pending_;
    // The moment each shown reminder was for, until its key is cancelled.
    std::map<std::string, WallTime> shown_;
};

} // namespace navro
