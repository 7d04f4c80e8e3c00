#include "data/ReminderScheduler.h"

#include "FakeDesktopNotifier.h"
#include "ManualClock.h"

#include <gtest/gtest.h>

namespace navro {
namespace {

using namespace std::chrono_literals;

DesktopNotification notice(const std::string& key)
{
    return {key, "title", "body of " + key, {}};
}

std::vector<std::string> bodies(const FakeDesktopNotifier& notifier)
{
    std::vector<std::string> list;
    for (const auto& shown : notifier.shown)
        list.push_back(shown.body);
    return list;
}

struct Fixture {
    ManualClock clock;
    FakeDesktopNotifier notifier;
    ReminderScheduler scheduler{clock, notifier};
    WallTime start = clock.now();
};

TEST(ReminderScheduler, WaitsOnceForTheEarliestAndShowsEachInTurn)
{
    Fixture f;
    f.scheduler.schedule(notice("c"), f.start + 3min, nullptr);
    f.scheduler.schedule(notice("a"), f.start + 1min, nullptr);
    f.scheduler.schedule(notice("b"), f.start + 2min, nullptr);
    EXPECT_EQ(f.clock.pendingCount(), 1u);
    f.clock.advance(2min);
    EXPECT_EQ(bodies(f.notifier), (std::vector<std::string>{"body of a", "body of b"}));
    // Rescheduled under the same key, the pending one moves rather than doubling.
    f.scheduler.schedule(notice("c"), f.start + 5min, nullptr);
    f.clock.advance(2min);
    EXPECT_EQ(f.notifier.shown.size(), 2u);
    f.clock.advance(1min);
    EXPECT_EQ(f.notifier.shown.size(), 3u);
    EXPECT_EQ(f.clock.pendingCount(), 0u);
}

TEST(ReminderScheduler, ShowsWhatCameDueWhileTheClockJumped)
{
    Fixture f;
    f.scheduler.schedule(notice("a"), f.start + 1min, nullptr);
    f.scheduler.schedule(notice("b"), f.start + 1h, nullptr);
    f.clock.setWallTime(f.start + 10min);
    f.scheduler.wake();
    EXPECT_EQ(bodies(f.notifier), std::vector<std::string>{"body of a"});
    EXPECT_TRUE(f.scheduler.isPending("b"));
    // Looked at again for the same moment: not shown twice. For a new moment it is.
    f.scheduler.schedule(notice("a"), f.start + 1min, nullptr);
    EXPECT_FALSE(f.scheduler.isPending("a"));
    f.scheduler.schedule(notice("a"), f.start + 20min, nullptr);
    EXPECT_EQ(f.scheduler.pendingAt("a"), f.start + 20min);
}

TEST(ReminderScheduler, CancellingForgetsThePendingOneAndWithdrawsAShownOne)
{
    Fixture f;
    f.scheduler.schedule(notice("shown"), f.start + 1min, nullptr);
    f.scheduler.schedule(notice("pending"), f.start + 1h, nullptr);
    f.clock.advance(1min);
    f.scheduler.cancelPending("shown");
    EXPECT_TRUE(f.notifier.withdrawn.empty()) << "cancelPending leaves the screen alone";
    f.scheduler.cancel("shown");
    f.scheduler.cancel("pending");
    EXPECT_EQ(f.notifier.withdrawn, std::vector<std::string>{"shown"});
    EXPECT_EQ(f.clock.pendingCount(), 0u);
    // Once cancelled, the same moment may be reminded of again.
    f.scheduler.schedule(notice("shown"), f.start + 1min, nullptr);
    f.clock.advance(0ms);
    EXPECT_EQ(f.notifier.shown.size(), 2u);
}

TEST(ReminderScheduler, ButtonsReachTheHandlerOfTheirReminder)
{
    Fixture f;
    std::string pressed;
    f.scheduler.schedule(notice("a"), f.start,
                         [&](std::string_view action) { pressed = "a:" + std::string(action); });
    f.clock.runDue();
    ASSERT_TRUE(f.notifier.press("a", "done"));
    EXPECT_EQ(pressed, "a:done");
}

} // namespace
} // namespace navro
