#include "ManualClock.h"

#include <gtest/gtest.h>
#include <string>

namespace navro {
namespace {

using namespace std::chrono_literals;

TEST(ManualClock, RunsDueTasksInTimeOrderWithNowAtTheirDueTime)
{
    ManualClock clock;
    const auto start = clock.now();
    auto late = clock.makeSlot();
    auto early = clock.makeSlot();
    std::string order;
    std::vector<Duration> seenAt;
    late->schedule(300ms, [&] {
        order += "late";
        seenAt.push_back(clock.now() - start);
    });
    early->schedule(100ms, [&] {
        order += "early,";
        seenAt.push_back(clock.now() - start);
    });

    clock.advance(99ms);
    EXPECT_EQ(order, "");
    clock.advance(1s);
    EXPECT_EQ(order, "early,late");
    EXPECT_EQ(seenAt, (std::vector<Duration>{100ms, 300ms}));
    EXPECT_EQ(clock.now() - start, 1099ms);
}

TEST(ManualClock, TaskScheduledFromATaskRunsWhenItFallsDueInTheSameAdvance)
{
    ManualClock clock;
    auto slot = clock.makeSlot();
    int runs = 0;
    std::function<void()> repeat = [&] {
        ++runs;
        slot->schedule(15s, repeat);
    };
    slot->schedule(15s, repeat);
    clock.advance(60s);
    EXPECT_EQ(runs, 4);
    EXPECT_TRUE(slot->isPending());
}

TEST(TaskSlot, SchedulingAgainReplacesThePendingTask)
{
    ManualClock clock;
    auto slot = clock.makeSlot();
    std::string ran;
    slot->schedule(100ms, [&] { ran += "first"; });
    slot->schedule(200ms, [&] { ran += "second"; });
    clock.advance(150ms);
    EXPECT_EQ(ran, "");
    clock.advance(50ms);
    EXPECT_EQ(ran, "second");
    EXPECT_FALSE(slot->isPending());
}

TEST(TaskSlot, CancelAndDestructionBothPreventTheTask)
{
    ManualClock clock;
    bool ran = false;
    auto cancelled = clock.makeSlot();
    cancelled->schedule(10ms, [&] { ran = true; });
    cancelled->cancel();
    {
        auto destroyed = clock.makeSlot();
        destroyed->schedule(10ms, [&] { ran = true; });
    }
    clock.advance(1s);
    EXPECT_FALSE(ran);
    EXPECT_EQ(clock.pendingCount(), 0u);
}

TEST(TaskSlot, ZeroDelayRunsOnTheNextTurnNotImmediately)
{
    ManualClock clock;
    auto slot = clock.makeSlot();
    bool ran = false;
    slot->schedule(Duration::zero(), [&] { ran = true; });
    EXPECT_FALSE(ran);
    clock.runDue();
    EXPECT_TRUE(ran);
}

TEST(Seconds, RoundsToTheNearestMillisecond)
{
    EXPECT_EQ(seconds(0.15), 150ms);
    EXPECT_EQ(seconds(0.25), 250ms);
    EXPECT_EQ(seconds(15), 15000ms);
}

} // namespace
} // namespace navro
