#include "notch/NotchPanelLayout.h"

#include <algorithm>

namespace navro {

QRect notchPanelFrame(const NotchGeometry& geometry)
{
    const int shadow = notchMetrics::shadowPadding;
    const QSize size(std::min(geometry.openSize.width + 2 * shadow, geometry.screenWidth),
                     geometry.openSize.height + shadow);
    const int x = geometry.screenX + (geometry.screenWidth - size.width()) / 2;
    return {QPoint(x, geometry.screenY), size};
}

QRect notchInputRect(const QRect& panelFrame, const QRect& globalNotch)
{
    return globalNotch.intersected(panelFrame).translated(-panelFrame.topLeft());
}

} // namespace navro
