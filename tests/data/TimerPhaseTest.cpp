#include "data/TimerPhase.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace navro {
namespace {

using std::chrono::milliseconds;

const WallTime start{std::chrono::hours(24 * 365 * 56)};

WallTime after(double secondsLater)
{
    return start + seconds(secondsLater);
}

TEST(TimerPhase, RunningCountsTowardsItsEndAndStopsAtZero)
{
    const TimerPhase phase = TimerPhase::startingAt(start, 5);
    EXPECT_EQ(phase.state(), TimerState::running);
    EXPECT_EQ(phase.total(), 300);
    const struct {
        double at;
        double remaining;
        double progress;
        bool due;
    } cases[] = {
        {0, 300, 0, false},     {0.25, 299.75, 0.25 / 300, false},
        {150, 150, 0.5, false}, {299.999, 0.001, 299.999 / 300, false},
        {300, 0, 1, true},      {1000, 0, 1, true}, // clamped after the end
        {-10, 310, 0, false},                       // a clock set back: never below nothing done
    };
    for (const auto& c : cases) {
        EXPECT_NEAR(phase.remaining(after(c.at)), c.remaining, 1e-9) << c.at;
        EXPECT_NEAR(phase.progress(after(c.at)), c.progress, 1e-9) << c.at;
        EXPECT_EQ(phase.isDue(after(c.at)), c.due) << c.at;
    }
}

TEST(TimerPhase, PausedKeepsWhatWasLeftWhateverTheTime)
{
    const TimerPhase paused = TimerPhase::startingAt(start, 5).pausedAt(after(270));
    EXPECT_EQ(paused, TimerPhase::paused(30, 300));
    for (double at : {0.0, 270.0, 10000.0}) {
        EXPECT_EQ(paused.remaining(after(at)), 30);
        EXPECT_DOUBLE_EQ(paused.progress(after(at)), 0.9);
        EXPECT_FALSE(paused.isDue(after(at)));
    }
}

TEST(TimerPhase, ResumingStartsANewRunningPeriodFromWhatWasLeft)
{
    const TimerPhase paused = TimerPhase::paused(30, 300);
    const TimerPhase resumed = paused.resumedAt(after(1000));
    EXPECT_EQ(resumed, TimerPhase::running(after(1030), 300));
    EXPECT_EQ(resumed.remaining(after(1010)), 20);
    // Only a paused phase resumes, only a running one pauses.
    for (const TimerPhase& other :
         {TimerPhase::idle(), TimerPhase::finished(), TimerPhase::running(after(10), 60)})
        EXPECT_EQ(other.resumedAt(after(5)), other);
    for (const TimerPhase& other : {TimerPhase::idle(), TimerPhase::finished(), paused})
        EXPECT_EQ(other.pausedAt(after(5)), other);
}

TEST(TimerPhase, AMinuteMoreLengthensWhatIsLeftAndTheWhole)
{
    // Paused at 0:30 of five minutes: 1:30 left of six.
    EXPECT_EQ(TimerPhase::paused(30, 300).withExtraMinute(), TimerPhase::paused(90, 360));
    const TimerPhase running = TimerPhase::running(after(300), 300);
    EXPECT_EQ(running.withExtraMinute(), TimerPhase::running(after(360), 360));
    EXPECT_EQ(TimerPhase::idle().withExtraMinute(), TimerPhase::idle());
    EXPECT_EQ(TimerPhase::finished().withExtraMinute(), TimerPhase::finished());
}

TEST(TimerPhase, WithoutASessionNothingIsLeft)
{
    EXPECT_EQ(TimerPhase::idle().remaining(start), 0);
    EXPECT_EQ(TimerPhase::idle().progress(start), 0);
    EXPECT_EQ(TimerPhase::idle().total(), 0);
    EXPECT_EQ(TimerPhase::finished().remaining(start), 0);
    EXPECT_EQ(TimerPhase::finished().progress(start), 1) << "the ring is full at the end";
    EXPECT_EQ(TimerPhase::finished().state(), TimerState::finished);
    EXPECT_EQ(TimerPhase::idle().state(), TimerState::idle);
}

TEST(TimerPhase, SessionLengthsFromAnInstantToADay)
{
    const double inf = std::numeric_limits<double>::infinity();
    for (double minutes : {0.05, 1.0, 25.0, 1440.0})
        EXPECT_TRUE(isValidTimerMinutes(minutes)) << minutes;
    for (double minutes : {0.0, -1.0, -0.0, 1440.01, inf, -inf, std::nan("")})
        EXPECT_FALSE(isValidTimerMinutes(minutes)) << minutes;
    // Fractions of a minute reach the millisecond.
    EXPECT_EQ(TimerPhase::startingAt(start, 0.05),
              TimerPhase::running(start + milliseconds(3000), 3));
}

} // namespace
} // namespace navro
