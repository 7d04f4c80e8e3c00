#include "app/Log.h"
#include "data/ScreenCapture.h"
#include "platform/linux/CaptureOverlay.h"
#include "platform/linux/X11Windows.h"

#include <QCursor>
#include <QGuiApplication>
#include <QPixmap>
#include <QScreen>
#include <QTimer>
#include <X11/Xlib.h>

namespace navro {
namespace {

// The desktop's visible windows, topmost first, without override-redirect ones (menus, the
// notch), which nobody means to capture as a window.
QList<QRect> visibleWindows()
{
    QList<QRect> rects;
    Display* display = qtDisplay();
    if (!display)
        return rects;
    Window root = 0, parent = 0;
    Window* children = nullptr;
    unsigned int count = 0;
    if (!XQueryTree(display, DefaultRootWindow(display), &root, &parent, &children, &count))
        return rects;
    for (unsigned int i = count; i-- > 0;) {
        XWindowAttributes attributes{};
        if (!XGetWindowAttributes(display, children[i], &attributes) ||
            attributes.map_state != IsViewable || attributes.override_redirect ||
            attributes.c_class != InputOutput)
            continue;
        rects.append(QRect(attributes.x, attributes.y,
                           attributes.width + 2 * attributes.border_width,
                           attributes.height + 2 * attributes.border_width));
    }
    if (children)
        XFree(children);
    return rects;
}

class X11ScreenGrabber final : public ScreenGrabber {
public:
    void grab(CaptureMode mode, std::function<void(std::optional<ScreenGrab>)> done) override
    {
        QScreen* screen = QGuiApplication::screenAt(QCursor::pos());
        if (!screen)
            screen = QGuiApplication::primaryScreen();
        const QImage frozen = screen ? screen->grabWindow(0).toImage() : QImage();
        if (frozen.isNull()) {
            logLine("could not read the screen");
            QTimer::singleShot(0, [done = std::move(done)] { done(std::nullopt); });
            return;
        }
        if (mode == CaptureMode::screen) {
            QTimer::singleShot(0, [done = std::move(done), frozen, rect = screen->geometry()] {
                done(ScreenGrab{frozen, rect});
            });
            return;
        }
        auto* overlay = new CaptureOverlay(
            screen, frozen, mode, mode == CaptureMode::window ? visibleWindows() : QList<QRect>(),
            std::move(done));
        overlay->show();
    }
};

} // namespace

std::unique_ptr<ScreenGrabber> makeScreenGrabber()
{
    return std::make_unique<X11ScreenGrabber>();
}

} // namespace navro
