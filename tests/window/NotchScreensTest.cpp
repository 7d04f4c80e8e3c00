#include "notch/NotchScreens.h"

#include "QtTestApplication.h"

#include <QGuiApplication>
#include <QScreen>
#include <gtest/gtest.h>

namespace navro {
namespace {

TEST(NotchScreensTest, CarriesFrameAndWorkAreaOverWithoutACameraHousing)
{
    const ScreenDescription screen = describeScreen(
        QStringLiteral("DP-1"), QRect(1920, 0, 2560, 1440), QRect(1920, 32, 2560, 1408), true);
    EXPECT_EQ(screen.name, "DP-1");
    EXPECT_EQ((std::array{screen.x, screen.y, screen.width, screen.height}),
              (std::array{1920, 0, 2560, 1440}));
    EXPECT_EQ((std::array{screen.availableX, screen.availableY, screen.availableWidth,
                          screen.availableHeight}),
              (std::array{1920, 32, 2560, 1408}));
    EXPECT_EQ(screen.safeAreaTopInset, 0);
    EXPECT_FALSE(screen.auxiliaryTopLeftWidth);
    EXPECT_FALSE(screen.auxiliaryTopRightWidth);
    EXPECT_TRUE(screen.isMain);
}

TEST(NotchScreensTest, TheVirtualNotchIsAsTallAsTheTopPanel)
{
    const auto panel32 = geometryFor(describeScreen(QStringLiteral("a"), QRect(0, 0, 1920, 1080),
                                                    QRect(0, 32, 1920, 1048), true));
    EXPECT_EQ(panel32.closedSize, (NotchSize{190, 32}));
    EXPECT_FALSE(panel32.hasPhysicalNotch);

    // A thin panel, or none, still gives the minimum height.
    const auto panel18 = geometryFor(describeScreen(QStringLiteral("a"), QRect(0, 0, 1920, 1080),
                                                    QRect(0, 18, 1920, 1062), true));
    EXPECT_EQ(panel18.closedSize, (NotchSize{190, 24}));
    const auto bottomPanel = geometryFor(describeScreen(
        QStringLiteral("a"), QRect(0, 0, 1920, 1080), QRect(0, 0, 1920, 1040), true));
    EXPECT_EQ(bottomPanel.closedSize, (NotchSize{190, 24}));
}

TEST(NotchScreensTest, AWorkAreaOutsideTheScreenIsIgnored)
{
    // Some window managers report the work area of the whole desktop for every screen.
    const ScreenDescription screen = describeScreen(
        QStringLiteral("HDMI-1"), QRect(1920, 0, 1280, 1024), QRect(0, 40, 3200, 1040), false);
    EXPECT_EQ(screen.availableY, 0);
    EXPECT_EQ(screen.availableX, 1920);
    EXPECT_EQ(geometryFor(screen).closedSize, (NotchSize{190, 24}));

    const ScreenDescription empty =
        describeScreen(QStringLiteral("x"), QRect(0, 0, 800, 600), QRect(), false);
    EXPECT_EQ(empty.availableWidth, 800);
}

TEST(NotchScreensTest, ThePrimaryScreenIsChosenAmongScreensWithoutHousing)
{
    const std::vector<ScreenDescription> screens{
        describeScreen(QStringLiteral("left"), QRect(0, 0, 1280, 1024), QRect(0, 0, 1280, 1024),
                       false),
        describeScreen(QStringLiteral("main"), QRect(1280, 0, 1920, 1080),
                       QRect(1280, 28, 1920, 1052), true)};
    const auto chosen = preferredScreen(screens);
    ASSERT_TRUE(chosen);
    EXPECT_EQ(chosen->name, "main");
    EXPECT_EQ(geometryFor(*chosen).screenX, 1280);
    EXPECT_EQ(geometryFor(*chosen).closedSize.height, 28);
}

TEST(NotchScreensTest, DescribesTheApplicationsScreensAndFindsTheOneChosen)
{
    QtTestApplication::ensure();
    const QList<QScreen*> screens = QGuiApplication::screens();
    ASSERT_FALSE(screens.isEmpty());
    const auto described = describeScreens(screens, QGuiApplication::primaryScreen());
    ASSERT_EQ(described.size(), static_cast<std::size_t>(screens.size()));
    EXPECT_EQ(std::count_if(described.begin(), described.end(),
                            [](const auto& screen) { return screen.isMain; }),
              1);

    const auto geometry = currentNotchGeometry();
    ASSERT_TRUE(geometry);
    QScreen* screen = screenFor(*geometry);
    ASSERT_NE(screen, nullptr);
    EXPECT_EQ(screen->geometry(), QRect(geometry->screenX, geometry->screenY, geometry->screenWidth,
                                        geometry->screenHeight));

    NotchGeometry gone = *geometry;
    gone.screenName = "no such screen";
    EXPECT_EQ(screenFor(gone), nullptr);
}

} // namespace
} // namespace navro
