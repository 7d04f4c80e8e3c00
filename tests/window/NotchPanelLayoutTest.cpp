#include "notch/NotchPanelLayout.h"

#include "FakeSettingsStore.h"
#include "ManualClock.h"
#include "app/AppSettings.h"
#include "notch/NotchViewModel.h"

#include <gtest/gtest.h>

namespace navro {
namespace {

NotchGeometry screen(int x, int y, int width, int height, int closedHeight = 24)
{
    return NotchGeometry{
        "s", x, y, width, height, false, {190, closedHeight}, openNotchSizeFor(width, height)};
}

TEST(NotchPanelLayoutTest, ThePanelHangsFromTheTopEdgeCentredAtTheFixedSize)
{
    const QRect frame = notchPanelFrame(screen(0, 0, 1920, 1080));
    EXPECT_EQ(frame, QRect(596, 0, 728, 280));
    EXPECT_EQ(frame.size(), QSize(688 + 2 * 20, 260 + 20));

    const QRect second = notchPanelFrame(screen(1920, 200, 1280, 1024));
    EXPECT_EQ(second.top(), 200);
    EXPECT_EQ(second.left() - 1920, 1280 + 1920 - second.right() - 1);
}

TEST(NotchPanelLayoutTest, OnAScreenNarrowerThanTheOpenNotchBothStayInsideIt)
{
    struct Case {
        int width, height;
        QRect frame; // relative to the screen
        NotchSize open;
    };
    const std::vector<Case> cases{
        {720, 600, QRect(0, 0, 720, 280), {688, 260}},
        {719, 600, QRect(0, 0, 719, 280), {687, 260}},
        {640, 480, QRect(0, 0, 640, 280), {608, 260}},
        {320, 200, QRect(0, 0, 320, 204), {288, 184}},
        {760, 276, QRect(16, 0, 728, 280), {688, 260}},
    };
    for (const auto& c : cases) {
        const NotchGeometry geometry = screen(100, 50, c.width, c.height);
        EXPECT_EQ(geometry.openSize, c.open) << c.width << "x" << c.height;
        EXPECT_EQ(notchPanelFrame(geometry), c.frame.translated(100, 50)) << c.width;
    }
}

TEST(NotchPanelLayoutTest, InputAreaIsTheGlobalNotchInWindowCoordinatesClippedToTheWindow)
{
    const QRect frame(596, 0, 728, 280);
    EXPECT_EQ(notchInputRect(frame, QRect(865, 0, 190, 24)), QRect(269, 0, 190, 24));
    EXPECT_EQ(notchInputRect(frame, QRect(500, 0, 900, 24)), QRect(0, 0, 728, 24));
}

// The window is placed by this layout and the notch is drawn where the view model says; the two
// must agree on every screen size, odd or even, with or without an activity widening the notch.
class LayoutAgreesWithViewModel : public ::testing::TestWithParam<std::tuple<int, int>> {};

TEST_P(LayoutAgreesWithViewModel, TheNotchLiesInsideThePanelWithTheShadowPaddingAround)
{
    const auto [x, width] = GetParam();
    ManualClock clock;
    FakeSettingsStore store;
    AppSettings settings{store, [] { return QStringList(); }};
    NotchViewModel model{clock, settings};
    model.setGeometry(screen(x, 0, width, 900, 30));
    const QRect frame = notchPanelFrame(model.geometry());

    const QRect open = notchInputRect(frame, model.openRect());
    EXPECT_EQ(open.size(), model.openRect().size()) << "the window holds the whole open notch";
    const QRect screenFrame(x, 0, width, 900);
    EXPECT_TRUE(screenFrame.contains(frame)) << "screen " << x << "+" << width;
    // Strictly inside, with the margin on both sides.
    EXPECT_GE(model.openRect().left() - screenFrame.left(), openNotchScreenMargin);
    EXPECT_GE(screenFrame.right() - model.openRect().right(), openNotchScreenMargin);
    if (width >= 688 + 2 * 20) {
        EXPECT_EQ(open, QRect(20, 0, 688, 260)) << "screen " << x << "+" << width;
    }

    for (auto activity : {std::optional<ClosedActivity>(), std::optional(ClosedActivity::music()),
                          std::optional(ClosedActivity::timer())}) {
        model.setActivity(activity);
        const QRect closed = notchInputRect(frame, model.closedRect());
        EXPECT_EQ(closed.size(), model.closedRect().size());
        EXPECT_LE(std::abs(closed.left() - (frame.width() - closed.right() - 1)), 1);
        EXPECT_TRUE(open.contains(closed));
    }
}

INSTANTIATE_TEST_SUITE_P(Screens, LayoutAgreesWithViewModel,
                         ::testing::Combine(::testing::Values(0, 1920, -1366),
                                            ::testing::Values(1366, 1365, 1920, 2561, 800, 728, 705,
                                                              640, 639, 480)));

} // namespace
} // namespace navro
