#include "data/ReminderScheduler.h"

#include <algorithm>
#include <vector>

namespace navro {

ReminderScheduler::ReminderScheduler(Clock& clock, DesktopNotifier& notifier)
    : clock_(clock), notifier_(notifier), slot_(clock.makeSlot())
{
}

void ReminderScheduler::schedule(DesktopNotification notification, WallTime at,
                                 DesktopNotifier::ActionHandler onAction)
{
    const std::string key = notification.key;
    if (auto shown = shown_.find(key); shown != shown_.end() && shown->second == at) {
        cancelPending(key);
        return;
    }
    pending_.insert_or_assign(key, Pending{std::move(notification), at, std::move(onAction)});
    arm();
}

void ReminderScheduler::cancelPending(const std::string& key)
{
    if (pending_.erase(key) != 0)
        arm();
}

void ReminderScheduler::cancel(const std::string& key)
{
    cancelPending(key);
    if (shown_.erase(key) != 0)
        notifier_.withdraw(key);
}

void ReminderScheduler::wake()
{
    showDue();
}

std::optional<WallTime> ReminderScheduler::pendingAt(const std::string& key) const
{
    const auto found = pending_.find(key);
    if (found == pending_.end())
        return std::nullopt;
    return found->second.at;
}

void ReminderScheduler::showDue()
{
    const WallTime now = clock_.now();
    std::vector<Pending> due;
    for (auto entry = pending_.begin(); entry != pending_.end();) {
        if (entry->second.at <= now) {
            due.push_back(std::move(entry->second));
            entry = pending_.erase(entry);
        } else {
            ++entry;
        }
    }
    std::stable_sort(due.begin(), due.end(),
                     [](const Pending& a, const Pending& b) { return a.at < b.at; });
    // Armed before showing: a handler may run synchronously and schedule again.
    arm();
    for (Pending& reminder : due) {
        shown_.insert_or_assign(reminder.notification.key, reminder.at);
        notifier_.show(reminder.notification, std::move(reminder.onAction));
    }
}

void ReminderScheduler::arm()
{
    const auto earliest =
        std::min_element(pending_.begin(), pending_.end(),
                         [](const auto& a, const auto& b) { return a.second.at < b.second.at; });
    if (earliest == pending_.end()) {
        slot_->cancel();
        return;
    }
    slot_->schedule(std::max(earliest->second.at - clock_.now(), Duration::zero()),
                    [this] { showDue(); });
}

} // namespace navro
