#include "data/ClockText.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace navro {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

struct ClockCase {
    double seconds;
    const char* text;
};

// Whole seconds, truncated and never rounded up; minutes are not padded below an hour, hours
// never wrap at a day; nothing left (negative, not a number) reads as 0:00.
TEST(ClockText, WholeSecondsAsMinutesBelowAnHourAndHoursFromThenOn)
{
    const ClockCase belowAnHour[] = {{0, "0:00"},     {0.999, "0:00"},    {1, "0:01"},
                                     {59.9, "0:59"},  {60, "1:00"},       {61, "1:01"},
                                     {599, "9:59"},   {600, "10:00"},     {3595, "59:55"},
                                     {3599, "59:59"}, {3599.999, "59:59"}};
    const ClockCase fromAnHour[] = {
        {3600, "1:00:00"},   {3601, "1:00:01"},   {3661, "1:01:01"},     {36000, "10:00:00"},
        {86399, "23:59:59"}, {86400, "24:00:00"}, {360000, "100:00:00"}, {1e10, "2777777:46:40"}};
    for (const ClockCase& c : belowAnHour)
        EXPECT_EQ(clockText(c.seconds), c.text) << c.seconds;
    for (const ClockCase& c : fromAnHour)
        EXPECT_EQ(clockText(c.seconds), c.text) << c.seconds;
    for (double nothing : {-0.5, -3600.0, -infinity, std::nan("")})
        EXPECT_EQ(clockText(nothing), "0:00") << nothing;
}

// Digits, a colon, two digits, a colon, two digits.
bool readsAsHours(const std::string& text)
{
    const std::size_t size = text.size();
    return size >= 7 && text.find_first_not_of("0123456789:") == std::string::npos &&
           text.find(':') == size - 6 && text.rfind(':') == size - 3;
}

TEST(ClockText, EndlessDurationsStillReadAsAClock)
{
    for (double seconds : {1e300, std::numeric_limits<double>::max(), infinity})
        EXPECT_TRUE(readsAsHours(clockText(seconds))) << clockText(seconds);
    for (const char* notHours : {"59:59", "inf:00:00", ":00:00:00", "1:00:0:0"})
        EXPECT_FALSE(readsAsHours(notHours)) << notHours;
}

} // namespace
} // namespace navro
