#include "calendar/HijriDate.h"

#include <gtest/gtest.h>

namespace navro {
namespace {

TEST(HijriDate, FollowsUmmAlQuraInEitherLanguage)
{
    // Ramadan 1445 and 1446 began on these days in Saudi Arabia; the day before is still Shaban.
    EXPECT_EQ(formatHijriDate(2024, 3, 11, false, "d MMMM y"), "1 Ramadan 1445");
    EXPECT_EQ(formatHijriDate(2024, 3, 10, false, "d MMMM y"), "29 Shaʻban 1445");
    EXPECT_EQ(formatHijriDate(2025, 3, 1, false, "d MMMM y"), "1 Ramadan 1446");
    EXPECT_EQ(formatHijriDate(2024, 3, 11, true, "d MMMM y"), "١ رمضان ١٤٤٥");
    EXPECT_EQ(formatHijriDate(2024, 3, 11, false, "MMMM y"), "Ramadan 1445");
}

} // namespace
} // namespace navro
