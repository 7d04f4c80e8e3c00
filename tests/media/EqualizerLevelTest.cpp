#include "media/EqualizerLevel.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace navro {
namespace {

TEST(EqualizerLevel, StillAndShortWhileNothingPlaysNeverCollapsedWhileLive)
{
    // Live levels left over from the last frame do not move paused bars.
    for (int bar = 0; bar < 6; ++bar)
        EXPECT_FLOAT_EQ(equalizerLevel(bar, false, {1, 1, 1, 1, 1, 1}, 1234.5), 0.25f);
    // Live levels are never fully collapsed.
    const std::vector<float> live{0.0f, 0.5f, 1.0f};
    EXPECT_FLOAT_EQ(equalizerLevel(0, true, live, 10), 0.14f);
    EXPECT_FLOAT_EQ(equalizerLevel(1, true, live, 10), 0.57f);
    EXPECT_FLOAT_EQ(equalizerLevel(2, true, live, 10), 1.0f);
}

TEST(EqualizerLevel, OwnMotionWithoutLiveLevelsStaysInItsRangeAndMoves)
{
    // A bar past the live levels (and every bar without any) follows its own motion.
    const std::vector<float> live{0.3f};
    for (int bar = 1; bar < 8; ++bar) {
        float lowest = 1, highest = 0;
        for (int frame = 0; frame < 300; ++frame) {
            const float level = equalizerLevel(bar, true, live, 1.7e9 + frame / 30.0);
            lowest = std::min(lowest, level);
            highest = std::max(highest, level);
        }
        EXPECT_GE(lowest, 0.35f) << bar;
        EXPECT_LE(highest, 1.0f) << bar;
        EXPECT_GT(highest - lowest, 0.5f) << "bar " << bar << " hardly moves";
    }
    // Neighbouring bars are out of step.
    EXPECT_NE(equalizerLevel(0, true, {}, 100), equalizerLevel(1, true, {}, 100));
    EXPECT_FLOAT_EQ(equalizerLevel(2, true, {}, 0), float(std::abs(std::sin(2.0)) * 0.65 + 0.35));
}

TEST(BarPixelHeights, WholePixelsOfTheHeightNeverThinnerThanWideAndSteadyUnderWobble)
{
    EXPECT_EQ(barPixelHeights({0.0f, 0.14f, 0.5f, 1.0f}, 14, 3), (std::vector<int>{3, 3, 7, 14}));
    // Beyond the range, and not a number at all, stay inside the bars' box.
    EXPECT_EQ(barPixelHeights({-1.0f, 2.0f, std::numeric_limits<float>::quiet_NaN()}, 14, 3),
              (std::vector<int>{3, 14, 3}));
    EXPECT_TRUE(barPixelHeights({}, 14, 3).empty());
    // A steady sound wobbles in the last digits; the picture does not.
    EXPECT_EQ(barPixelHeights({0.5001f, 0.7f}, 14, 3), barPixelHeights({0.4999f, 0.7003f}, 14, 3));
    EXPECT_NE(barPixelHeights({0.5f}, 14, 3), barPixelHeights({0.6f}, 14, 3));
}

} // namespace
} // namespace navro
