#include "platform/linux/X11InputShape.h"

#include <QGuiApplication>
#include <QWindow>
#include <X11/Xlib.h>
#include <X11/extensions/shape.h>
#include <cmath>
#include <vector>

namespace navro {
namespace {

Display* qtDisplay()
{
    auto* x11 = qApp ? qApp->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
    return x11 ? x11->display() : nullptr;
}

} // namespace

X11InputShape::X11InputShape()
{
    if (Display* display = qtDisplay()) {
        int eventBase = 0;
        int errorBase = 0;
        int major = 0;
        int minor = 0;
        // Input shapes arrived with version 1.1 of the extension.
        available_ = XShapeQueryExtension(display, &eventBase, &errorBase) &&
                     XShapeQueryVersion(display, &major, &minor) &&
                     (major > 1 || (major == 1 && minor >= 1));
    }
}

void X11InputShape::setInputRegion(QWindow& window, const QRegion& region)
{
    Display* display = qtDisplay();
    if (!available_ || !display)
        return;
    const qreal ratio = window.devicePixelRatio();
    std::vector<XRectangle> rectangles;
    rectangles.reserve(static_cast<std::size_t>(region.rectCount()));
    for (const QRect& rect : region) {
        // Rounded outwards so that a fractional scale never leaves a one-pixel dead edge.
        const int left = static_cast<int>(std::floor(rect.x() * ratio));
        const int top = static_cast<int>(std::floor(rect.y() * ratio));
        const int right = static_cast<int>(std::ceil((rect.x() + rect.width()) * ratio));
        const int bottom = static_cast<int>(std::ceil((rect.y() + rect.height()) * ratio));
        rectangles.push_back({static_cast<short>(left), static_cast<short>(top),
                              static_cast<unsigned short>(right - left),
                              static_cast<unsigned short>(bottom - top)});
    }
    // An empty list is a valid shape: the window then takes no pointer input at all.
    XShapeCombineRectangles(display, static_cast<Window>(window.winId()), ShapeInput, 0, 0,
                            rectangles.data(), static_cast<int>(rectangles.size()), ShapeSet,
                            Unsorted);
    XFlush(display);
}

std::unique_ptr<PanelWindowSystem> makePanelWindowSystem()
{
    return std::make_unique<X11InputShape>();
}

} // namespace navro
