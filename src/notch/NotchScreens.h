#pragma once

#include "notch/NotchGeometry.h"

#include <QList>
#include <QRect>
#include <QString>
#include <vector>

class QScreen;

namespace navro {

// Describes Qt's screens to the geometry rule. No Linux screen has a camera housing, so the
// safe-area inset is 0 and there are no auxiliary top areas; the gap between the screen's top and
// its available area is the top panel the virtual notch matches in height.
ScreenDescription describeScreen(const QString& name, const QRect& geometry,
                                 const QRect& availableGeometry, bool isMain);
ScreenDescription describeScreen(const QScreen& screen, bool isMain);
// In Qt's screen order, leaving out screens with an empty frame; the primary screen is the main
// one.
std::vector<ScreenDescription> describeScreens(const QList<QScreen*>& screens,
                                               const QScreen* primary);

// The geometry for the preferred one of the application's screens, or none without screens.
std::optional<NotchGeometry> currentNotchGeometry();
// The screen a geometry was made for, or null when it is gone.
QScreen* screenFor(const NotchGeometry& geometry);

} // namespace navro
