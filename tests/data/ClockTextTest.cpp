#include "data/ClockText.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace navro {
namespace {

TEST(ClockText, WholeSecondsAsMinutesBelowAnHourAndHoursFromThenOn)
{
    const struct {
        double seconds;
        const char* text;
    } cases[] = {
        {0, "0:00"},
        {0.999, "0:00"}, // truncated, never rounded up
        {1, "0:01"},
        {59.9, "0:59"},
        {60, "1:00"},
        {61, "1:01"},
        {599, "9:59"},
        {600, "10:00"}, // minutes are not padded below an hour
        {3599, "59:59"},
        {3599.999, "59:59"},
        {3600, "1:00:00"},
        {3661, "1:01:01"},
        {36000, "10:00:00"},
        {86399, "23:59:59"},
        {86400, "24:00:00"}, // no wrap at a day
        {360000, "100:00:00"},
        {1e10, "2777777:46:40"},
        {-0.5, "0:00"},
        {-3600, "0:00"},
        {-std::numeric_limits<double>::infinity(), "0:00"},
        {std::nan(""), "0:00"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(clockText(c.seconds), c.text) << c.seconds;
}

// Digits, a colon, two digits, a colon, two digits.
bool readsAsHours(const std::string& text)
{
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    const std::size_t size = text.size();
    if (size < 7 || text[size - 3] != ':' || text[size - 6] != ':')
        return false;
    for (std::size_t i = 0; i < size; ++i)
        if (i != size - 3 && i != size - 6 && !isDigit(text[i]))
            return false;
    return true;
}

TEST(ClockText, EndlessDurationsStillReadAsAClock)
{
    for (double seconds :
         {1e300, std::numeric_limits<double>::max(), std::numeric_limits<double>::infinity()})
        EXPECT_TRUE(readsAsHours(clockText(seconds))) << clockText(seconds);
    EXPECT_FALSE(readsAsHours("59:59"));
    EXPECT_FALSE(readsAsHours("inf:00:00"));
}

TEST(ClockText, CountsDownOneSecondAtATimeAcrossTheHour)
{
    // Every second from 1:00:05 down to 59:55 gives a different text, in the right form.
    std::string previous;
    for (int seconds = 3605; seconds >= 3595; --seconds) {
        const std::string text = clockText(seconds);
        EXPECT_NE(text, previous);
        EXPECT_EQ(text.size(), seconds >= 3600 ? 7u : 5u) << text;
        previous = text;
    }
}

} // namespace
} // namespace navro
