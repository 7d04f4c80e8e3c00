#include "app/OnboardingFinish.h"

#include "ManualClock.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace navro {
namespace {

using namespace std::chrono_literals;

class OnboardingFinishTest : public ::testing::Test {
protected:
    // Each step is recorded with the virtual time since the start, in milliseconds.
    void note(const std::string& what)
    {
        const auto elapsed =
            std::chrono::duration_cast<std::chrono::milliseconds>(clock.now() - started);
        steps.push_back(what + "@" + std::to_string(elapsed.count()));
    }

    ManualClock clock;
    WallTime started = clock.now();
    bool panelVisible = true;
    std::vector<std::string> steps;
    OnboardingFinish finish{clock, OnboardingFinish::Steps{[this] { return panelVisible; },
                                                           [this] { note("open"); },
                                                           [this] { note("close"); }}};
};

using Steps = std::vector<std::string>;

TEST_F(OnboardingFinishTest, OpensHalfASecondAfterAndClosesThreeSecondsLater)
{
    finish.start();
    clock.advance(499ms);
    EXPECT_TRUE(steps.empty());
    clock.advance(1ms);
    EXPECT_EQ(steps, (Steps{"open@500"}));
    clock.advance(2999ms);
    EXPECT_EQ(steps, (Steps{"open@500"}));
    clock.advance(1ms);
    EXPECT_EQ(steps, (Steps{"open@500", "close@3500"}));
    EXPECT_FALSE(finish.isRunning());
    finish.interrupt(); // idle: nothing to do
    clock.advance(10s);
    EXPECT_EQ(steps.size(), 2u);
}

TEST_F(OnboardingFinishTest, WithoutAVisiblePanelItStillClosesAtTheEnd)
{
    panelVisible = false;
    finish.start();
    clock.advance(5s);
    EXPECT_EQ(steps, (Steps{"close@3500"}));
}

// Interrupted, it opens (if it had not yet) and closes at once; when idle nothing happens.
TEST_F(OnboardingFinishTest, AnInterruptedFinishStillClosesAtOnce)
{
    for (auto [startedFor, expected] : {std::pair{200ms, Steps{"open@200", "close@200"}},
                                        {1000ms, Steps{"open@500", "close@1000"}}}) {
        SCOPED_TRACE(startedFor.count());
        steps.clear();
        started = clock.now();
        finish.start();
        clock.advance(startedFor);
        finish.interrupt();
        EXPECT_EQ(steps, expected);
        finish.interrupt();
        clock.advance(10s);
        EXPECT_EQ(steps, expected);
    }
}

TEST_F(OnboardingFinishTest, StartingAgainFinishesTheRunningOneFirst)
{
    finish.start();
    clock.advance(1s);
    finish.start();
    clock.advance(4s);
    EXPECT_EQ(steps, (Steps{"open@500", "close@1000", "open@1500", "close@4500"}));
}

} // namespace
} // namespace navro
