#include "app/MenuPanelPlacement.h"

#include "ManualClock.h"

#include <gtest/gtest.h>

namespace navro {
namespace {

using namespace std::chrono_literals;

const QRect screen(0, 0, 1920, 1080);
const QSize panel(272, 230);

// Under an item of a top panel, centred on it; above one of a bottom panel; and always inside the
// screen of its item, even at the screen's edge.
TEST(MenuPanelPlacementTest, OpensNextToItsItemInsideItsScreen)
{
    const QRect top = menuPanelFrame(QRect(900, 0, 24, 24), panel, screen, screen, false);
    EXPECT_EQ(top.top(), 30);
    EXPECT_LE(std::abs(top.center().x() - QRect(900, 0, 24, 24).center().x()), 1);
    EXPECT_EQ(top.size(), panel);

    const QRect bottomItem(900, 1056, 24, 24);
    const QRect bottom = menuPanelFrame(bottomItem, panel, screen, QRect(0, 0, 1920, 1056), false);
    EXPECT_EQ(bottom.bottom(), bottomItem.top() - 1 - 6);

    EXPECT_EQ(menuPanelFrame(QRect(1897, 1, 22, 22), panel, screen, screen, false).right(),
              screen.right());
    EXPECT_EQ(menuPanelFrame(QRect(0, 1, 22, 22), panel, screen, screen, false).left(), 0);
    const QRect second(1920, 0, 1280, 1024);
    EXPECT_TRUE(
        second.contains(menuPanelFrame(QRect(3170, 0, 24, 24), panel, second, second, false)));
}

TEST(MenuPanelPlacementTest, WithoutAnItemGeometryOpensInTheTopTrailingCorner)
{
    const QRect available(0, 28, 1920, 1052);
    const QRect ltr = menuPanelFrame(QRect(), panel, screen, available, false);
    EXPECT_EQ(ltr.topRight(), QPoint(1919 - 6, 28 + 6));
    const QRect rtl = menuPanelFrame(QRect(), panel, screen, available, true);
    EXPECT_EQ(rtl.topLeft(), QPoint(6, 28 + 6));
}

TEST(PopupDismissalTest, CountsAsShownOnlyBrieflyAfterDismissalUnlessReset)
{
    ManualClock clock;
    PopupDismissal dismissal;
    EXPECT_FALSE(dismissal.justDismissed(clock.now()));
    dismissal.noteDismissed(clock.now());
    clock.advance(299ms);
    EXPECT_TRUE(dismissal.justDismissed(clock.now()));
    clock.advance(1ms);
    EXPECT_FALSE(dismissal.justDismissed(clock.now()));
    dismissal.noteDismissed(clock.now());
    dismissal.reset();
    EXPECT_FALSE(dismissal.justDismissed(clock.now()));
}

} // namespace
} // namespace navro
