#pragma once

#include "notch/NotchGeometry.h"

#include <QRect>
#include <QSize>

namespace navro {

// The notch window's frame on a screen. The window keeps its size while the notch opens and
// closes: it is always large enough for the open notch plus room for its shadow, so opening and
// closing only redraw inside it and never move or resize a window (which would flicker under a
// compositor).
namespace notchMetrics {
inline constexpr int shadowPadding = 20;
inline constexpr QSize panelSize{openNotchSize.width + 2 * shadowPadding,
                                 openNotchSize.height + shadowPadding};
} // namespace notchMetrics

// Top edge on the screen's top edge, centred horizontally, in global coordinates; never wider than
// the screen (the shadow gives way first).
QRect notchPanelFrame(const NotchGeometry& geometry);

// The part of a global rectangle (the drawn notch) that lies in the window, in the window's
// coordinates: what the window takes pointer input over.
QRect notchInputRect(const QRect& panelFrame, const QRect& globalNotch);

} // namespace navro
