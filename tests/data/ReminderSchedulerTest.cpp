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

class ReminderSchedulerTest : public ::testing::Test {
protected:
    ManualClock clock;
    FakeDesktopNotifier notifier;
    ReminderScheduler scheduler{clock, notifier};
    WallTime start = clock.now();
};

TEST_F(ReminderSchedulerTest, WaitsOnceForTheEarliestAndShowsEachInTurn)
{
    scheduler.schedule(notice("c"), start + 3min, nullptr);
    scheduler.schedule(notice("a"), start + 1min, nullptr);
    scheduler.schedule(notice("b"), start + 2min, nullptr);
    EXPECT_EQ(clock.pendingCount(), 1u);
    clock.advance(2min);
    EXPECT_EQ(bodies(notifier), (std::vector<std::string>{"body of a", "body of b"}));
    // Rescheduled under the same key, the pending one moves rather than doubling.
    scheduler.schedule(notice("c"), start + 5min, nullptr);
    clock.advance(2min);
    EXPECT_EQ(notifier.shown.size(), 2u);
    clock.advance(1min);
    EXPECT_EQ(notifier.shown.size(), 3u);
    EXPECT_EQ(clock.pendingCount(), 0u);
}

TEST_F(ReminderSchedulerTest, ShowsWhatCameDueWhileTheClockJumped)
{
    scheduler.schedule(notice("a"), start + 1min, nullptr);
    scheduler.schedule(notice("b"), start + 1h, nullptr);
    clock.setWallTime(start + 10min);
    scheduler.wake();
    EXPECT_EQ(bodies(notifier), std::vector<std::string>{"body of a"});
    EXPECT_TRUE(scheduler.isPending("b"));
    // Looked at again for the same moment: not shown twice. For a new moment it is.
    scheduler.schedule(notice("a"), start + 1min, nullptr);
    EXPECT_FALSE(scheduler.isPending("a"));
    scheduler.schedule(notice("a"), start + 20min, nullptr);
    EXPECT_EQ(scheduler.pendingAt("a"), start + 20min);
}

TEST_F(ReminderSchedulerTest, CancellingForgetsThePendingOneAndWithdrawsAShownOne)
{
    scheduler.schedule(notice("shown"), start + 1min, nullptr);
    scheduler.schedule(notice("pending"), start + 1h, nullptr);
    clock.advance(1min);
    scheduler.cancelPending("shown");
    EXPECT_TRUE(notifier.withdrawn.empty()) << "cancelPending leaves the screen alone";
    scheduler.cancel("shown");
    scheduler.cancel("pending");
    EXPECT_EQ(notifier.withdrawn, std::vector<std::string>{"shown"});
    EXPECT_EQ(clock.pendingCount(), 0u);
    // Once cancelled, the same moment may be reminded of again.
    scheduler.schedule(notice("shown"), start + 1min, nullptr);
    clock.advance(0ms);
    EXPECT_EQ(notifier.shown.size(), 2u);
}

TEST_F(ReminderSchedulerTest, ButtonsReachTheHandlerOfTheirReminder)
{
    std::string pressed;
    scheduler.schedule(notice("a"), start,
                       [&](std::string_view action) { pressed = "a:" + std::string(action); });
    clock.runDue();
    ASSERT_TRUE(notifier.press("a", "done"));
    EXPECT_EQ(pressed, "a:done");
}

} // namespace
} // namespace navro
