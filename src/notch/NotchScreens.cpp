#include "notch/NotchScreens.h"

#include <QGuiApplication>
#include <QScreen>

namespace navro {

ScreenDescription describeScreen(const QString& name, const QRect& geometry,
                                 const QRect& availableGeometry, bool isMain)
{
    ScreenDescription screen;
    screen.name = name.toStdString();
    screen.x = geometry.x();
    screen.y = geometry.y();
    screen.width = geometry.width();
    screen.height = geometry.height();
    // A window manager that reserves nothing reports an empty or unrelated work area on some
    // setups; only an area inside the screen says where its panels are.
    const QRect available = availableGeometry.isValid() && geometry.contains(availableGeometry)
                                ? availableGeometry
                                : geometry;
    screen.availableX = available.x();
    screen.availableY = available.y();
    screen.availableWidth = available.width();
    screen.availableHeight = available.height();
    screen.isMain = isMain;
    return screen;
}

ScreenDescription describeScreen(const QScreen& screen, bool isMain)
{
    return describeScreen(screen.name(), screen.geometry(), screen.availableGeometry(), isMain);
}

std::vector<ScreenDescription> describeScreens(const QList<QScreen*>& screens,
                                               const QScreen* primary)
{
    std::vector<ScreenDescription> described;
    described.reserve(static_cast<std::size_t>(screens.size()));
    for (const QScreen* screen : screens) {
        // An output that is connected but shows nothing (no mode set) reports an empty frame;
        // a notch there would hang off the left edge of the desktop.
        if (screen && !screen->geometry().isEmpty())
            described.push_back(describeScreen(*screen, screen == primary));
    }
    return described;
}

std::optional<NotchGeometry> currentNotchGeometry()
{
    const auto screen = preferredScreen(
        describeScreens(QGuiApplication::screens(), QGuiApplication::primaryScreen()));
    if (!screen)
        return std::nullopt;
    return geometryFor(*screen);
}

QScreen* screenFor(const NotchGeometry& geometry)
{
    const QString name = QString::fromStdString(geometry.screenName);
    const QRect frame(geometry.screenX, geometry.screenY, geometry.screenWidth,
                      geometry.screenHeight);
    QScreen* byName = nullptr;
    for (QScreen* screen : QGuiApplication::screens()) {
        if (screen->name() == name && screen->geometry() == frame)
            return screen;
        if (!byName && screen->name() == name)
            byName = screen;
    }
    return byName;
}

} // namespace navro
