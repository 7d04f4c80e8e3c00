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

// The virtual notch is as tall as the top panel, and never less than 24 px: a thin panel, one at
// the bottom, or a work area outside the screen (some window managers report the whole desktop's
// for every screen) give the minimum.
TEST(NotchScreensTest, TheVirtualNotchIsAsTallAsTheTopPanel)
{
    const QRect frame(1920, 0, 1280, 1024);
    for (auto [available, height] : {std::pair{QRect(1920, 32, 1280, 992), 32},
                                     {QRect(1920, 18, 1280, 1006), 24},
                                     {QRect(1920, 0, 1280, 984), 24},
                                     {QRect(0, 40, 3200, 1040), 24}}) {
        const auto screen = describeScreen(QStringLiteral("a"), frame, available, true);
        EXPECT_EQ(geometryFor(screen).closedSize, (NotchSize{190, height})) << available.y();
        EXPECT_FALSE(geometryFor(screen).hasPhysicalNotch);
        EXPECT_TRUE(frame.contains(QRect(screen.availableX, screen.availableY,
                                         screen.availableWidth, screen.availableHeight)));
    }
    EXPECT_EQ(describeScreen("x", QRect(0, 0, 800, 600), QRect(), false).availableWidth, 800);
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
    testApplication();
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
