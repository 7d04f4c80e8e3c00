#include "app/SettingRange.h"

#include "app/Log.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace navro {
namespace {

constexpr double inf = std::numeric_limits<double>::infinity();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();

// Every numeric setting, at and beyond the edges of what it can be.
TEST(BoundedSetting, EveryNumericSettingIsUsedWithinItsRange)
{
    struct Case {
        SettingRange range;
        double read;
        double used;
    };
    const std::vector<Case> cases{
        {hoverDelayRange, 0.15, 0.15},
        {hoverDelayRange, 0.0, 0.0},
        {hoverDelayRange, 10.0, 10.0},
        {hoverDelayRange, 10.01, 10.0},
        {hoverDelayRange, 1e308, 10.0},
        {hoverDelayRange, inf, 10.0},
        {hoverDelayRange, -0.5, 0.0},
        {hoverDelayRange, -inf, 0.0},
        {hoverDelayRange, nan, 0.15},
        {lastTimerMinutesRange, 25.0, 25.0},
        {lastTimerMinutesRange, 0.01, 0.01},
        {lastTimerMinutesRange, 0.001, 25.0},
        {lastTimerMinutesRange, 1440.0, 1440.0},
        {lastTimerMinutesRange, 1e308, 25.0},
        {lastTimerMinutesRange, 1440.5, 25.0},
        {lastTimerMinutesRange, 0.0, 25.0},
        {lastTimerMinutesRange, -25.0, 25.0},
        {lastTimerMinutesRange, nan, 25.0},
        {clipboardLimitRange, 200.0, 200.0},
        {clipboardLimitRange, 5.0, 10.0},
        {clipboardLimitRange, 2147483647.0, 5000.0},
        {clipboardLimitRange, -2147483648.0, 10.0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.range.key) + " " + std::to_string(c.read));
        CapturingLogSink log;
        BoundedSetting setting(c.range);
        EXPECT_EQ(setting.use(c.read), c.used);
        const bool outside =
            std::isnan(c.read) || c.read < c.range.lowest || c.read > c.range.highest;
        ASSERT_EQ(log.lines.size(), outside ? 1u : 0u);
        if (outside) {
            EXPECT_NE(log.lines[0].find("setting \"" + std::string(c.range.key) + "\" is "),
                      std::string::npos)
                << log.lines[0];
        }
    }
}

TEST(BoundedSetting, AValueOutsideIsLoggedOnceUntilAnotherIsRead)
{
    CapturingLogSink log;
    BoundedSetting delay(hoverDelayRange);
    for (int i = 0; i < 3; ++i)
        delay.use(1e308);
    ASSERT_EQ(log.lines.size(), 1u);
    EXPECT_EQ(log.lines[0], "Navro: setting \"hoverDelay\" is 1e+308, outside 0 to 10; using 10");

    delay.use(nan);
    delay.use(nan);
    EXPECT_EQ(log.lines.size(), 2u) << "NaN is no repeat of 1e308, and then no news";
    delay.use(0.5);
    delay.use(1e308);
    EXPECT_EQ(log.lines.size(), 3u) << "after a usable value, the old one is news again";
}

} // namespace
} // namespace navro
