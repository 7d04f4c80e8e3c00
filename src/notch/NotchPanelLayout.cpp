#include "notch/NotchPanelLayout.h"

namespace navro {

QRect notchPanelFrame(const NotchGeometry& geometry)
{
    const QSize size = notchMetrics::panelSize;
    const int x = geometry.screenX + (geometry.screenWidth - size.width()) / 2;
    return {QPoint(x, geometry.screenY), size};
}

QRect notchInputRect(const QRect& panelFrame, const QRect& globalNotch)
{
    return globalNotch.intersected(panelFrame).translated(-panelFrame.topLeft());
}

} // namespace navro
