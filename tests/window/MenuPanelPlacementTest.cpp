#include "app/MenuPanelPlacement.h"

#include "ManualClock.h"

#include <gtest/gtest.h>

namespace navro {
namespace {

using namespace std::chrono_literals;

const QRect screen(0, 0, 1920, 1080);
const QSize panel(272, 230);

TEST(MenuPanelPlacementTest, OpensUnderAnItemInATopPanelCentredOnIt)
{
    const QRect frame = menuPanelFrame(QRect(900, 0, 24, 24), panel, screen, screen, false);
    EXPECT_EQ(frame.top(), 30);
    EXPECT_LE(std::abs(frame.center().x() - QRect(900, 0, 24, 24).center().x()), 1);
    EXPECT_EQ(frame.size(), panel);
}

TEST(MenuPanelPlacementTest, OpensAboveAnItemInABottomPanel)
{
    const QRect item(900, 1056, 24, 24);
    const QRect available(0, 0, 1920, 1056);
    const QRect frame = menuPanelFrame(item, panel, screen, available, false);
    EXPECT_EQ(frame.bottom(), item.top() - 1 - 6);
}

TEST(MenuPanelPlacementTest, StaysInsideTheScreenAtItsEdge)
{
    const QRect frame = menuPanelFrame(QRect(1897, 1, 22, 22), panel, screen, screen, false);
    EXPECT_EQ(frame.right(), screen.right());
    const QRect leading = menuPanelFrame(QRect(0, 1, 22, 22), panel, screen, screen, false);
    EXPECT_EQ(leading.left(), 0);
}

TEST(MenuPanelPlacementTest, StaysOnTheScreenOfItsItem)
{
    const QRect second(1920, 0, 1280, 1024);
    const QRect frame = menuPanelFrame(QRect(3170, 0, 24, 24), panel, second, second, false);
    EXPECT_TRUE(second.contains(frame));
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
