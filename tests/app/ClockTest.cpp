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

// Scheduling again replaces the pending task; cancelling or destroying a slot drops it; even a
// zero delay waits for the next turn.
TEST(TaskSlot, OnlyTheLastScheduledTaskOfALiveSlotRunsAndNeverInsideTheCall)
{
    ManualClock clock;
    std::string ran;
    auto slot = clock.makeSlot();
    slot->schedule(100ms, [&] { ran += "first,"; });
    slot->schedule(200ms, [&] { ran += "second,"; });
    auto cancelled = clock.makeSlot();
    cancelled->schedule(10ms, [&] { ran += "cancelled,"; });
    cancelled->cancel();
    clock.makeSlot()->schedule(10ms, [&] { ran += "destroyed,"; });
    clock.advance(199ms);
    EXPECT_EQ(ran, "");
    clock.advance(1ms);
    EXPECT_EQ(ran, "second,");
    EXPECT_FALSE(slot->isPending());
    EXPECT_EQ(clock.pendingCount(), 0u);

    slot->schedule(Duration::zero(), [&] { ran += "now"; });
    EXPECT_EQ(ran, "second,");
    clock.runDue();
    EXPECT_EQ(ran, "second,now");
}

TEST(Seconds, RoundsToTheNearestMillisecond)
{
    EXPECT_EQ(seconds(0.15), 150ms);
    EXPECT_EQ(seconds(15), 15000ms);
}

} // namespace
} // namespace navro
