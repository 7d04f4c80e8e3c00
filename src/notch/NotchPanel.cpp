#include "notch/NotchPanel.h"

#include "notch/NotchPanelLayout.h"
#include "notch/PanelWindowSystem.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QSurfaceFormat>

namespace navro {

NotchPanel::NotchPanel(QQmlEngine* engine, PanelWindowSystem& windowSystem)
    : QQuickView(engine, nullptr), windowSystem_(windowSystem)
{
    setFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
             Qt::BypassWindowManagerHint | Qt::NoDropShadowWindowHint);
    setTitle(QStringLiteral("Navro"));
    QSurfaceFormat surface = format();
    surface.setAlphaBufferSize(8);
    setFormat(surface);
    setColor(Qt::transparent);
    setResizeMode(QQuickView::SizeRootObjectToView);
    resize(notchMetrics::panelSize);
    setMinimumSize(notchMetrics::panelSize);
    setMaximumSize(notchMetrics::panelSize);
}

void NotchPanel::place(QScreen* screen, const QRect& frame)
{
    if (screen && screen != this->screen())
        setScreen(screen);
    // Fixed at the frame's size: nobody but the layout resizes this window.
    setMinimumSize(frame.size());
    setMaximumSize(frame.size());
    setGeometry(frame);
}

void NotchPanel::setInputRect(const QRect& rect)
{
    if (rect == inputRect_ && handle())
        return;
    inputRect_ = rect;
    applyInputRect();
}

void NotchPanel::applyInputRect()
{
    if (!windowSystem_.canShapeInput()) {
        // The window mask limits input too, at the price of clipping the drawing: a closing
        // notch then snaps shut instead of shrinking, which beats swallowing clicks.
        setMask(QRegion(inputRect_));
        return;
    }
    // The shape belongs to the native window, which must exist before the first map so that the
    // window never takes a click over its whole frame, not even for one frame.
    create();
    windowSystem_.setInputRegion(*this, QRegion(inputRect_));
}

bool NotchPanel::event(QEvent* event)
{
    switch (event->type()) {
    case QEvent::Enter:
        emit pointerEntered();
        break;
    case QEvent::Leave:
        emit pointerLeft();
        break;
    case QEvent::PlatformSurface:
        // A recreated native window starts with a full input shape again.
        if (static_cast<QPlatformSurfaceEvent*>(event)->surfaceEventType() ==
            QPlatformSurfaceEvent::SurfaceCreated)
            QMetaObject::invokeMethod(this, &NotchPanel::applyInputRect, Qt::QueuedConnection);
        break;
    default:
        break;
    }
    return QQuickView::event(event);
}

void NotchPanel::mousePressEvent(QMouseEvent* event)
{
    emit pressed();
    QQuickView::mousePressEvent(event);
}

void NotchPanel::keyPressEvent(QKeyEvent* event)
{
    const bool someoneListens = activeFocusItem() != nullptr;
    QQuickView::keyPressEvent(event);
    // A view that wants Escape for itself (a text field clearing, say) accepts it first.
    if (event->key() == Qt::Key_Escape && (!someoneListens || !event->isAccepted()))
        emit escapePressed();
}

} // namespace navro
