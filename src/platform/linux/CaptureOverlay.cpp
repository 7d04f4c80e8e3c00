#include "platform/linux/CaptureOverlay.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScreen>
#include <QTimer>
#include <algorithm>
#include <cstdlib>

namespace navro {

CaptureOverlay::CaptureOverlay(QScreen* screen, QImage frozen, CaptureMode mode,
                               QList<QRect> windows,
                               std::function<void(std::optional<ScreenGrab>)> done)
    : frozen_(std::move(frozen)), mode_(mode), done_(std::move(done))
{
    // Above everything and left alone by the window manager, like the notch itself.
    setFlags(Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint | Qt::BypassWindowManagerHint |
             Qt::Tool);
    setScreen(screen);
    setGeometry(screen->geometry());
    setCursor(Qt::CrossCursor);
    for (const QRect& window : windows)
        windows_.append(window.translated(-screen->geometry().topLeft()));
}

void CaptureOverlay::exposeEvent(QExposeEvent* event)
{
    QRasterWindow::exposeEvent(event);
    if (isExposed() && !grabbed_) {
        grabbed_ = true;
        requestActivate();
        setKeyboardGrabEnabled(true);
        setMouseGrabEnabled(true);
    }
}

QRect CaptureOverlay::selection() const
{
    // From the pressed pixel up to (not including) the released one: a drag of 200 pixels
    // chooses 200.
    const QPoint topLeft(std::min(anchor_.x(), pointer_.x()), std::min(anchor_.y(), pointer_.y()));
    return QRect(topLeft,
                 QSize(std::abs(pointer_.x() - anchor_.x()), std::abs(pointer_.y() - anchor_.y())));
}

QRect CaptureOverlay::windowAt(const QPoint& local) const
{
    for (const QRect& window : windows_)
        if (window.contains(local))
            return window.intersected(QRect(QPoint(0, 0), size()));
    return QRect(QPoint(0, 0), size());
}

void CaptureOverlay::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.drawImage(QRect(QPoint(0, 0), size()), frozen_);
    const QRect chosen =
        mode_ == CaptureMode::window ? windowAt(pointer_) : (dragging_ ? selection() : QRect());
    // Everything but the choice is dimmed.
    QRegion dim(QRect(QPoint(0, 0), size()));
    dim -= chosen;
    painter.setClipRegion(dim);
    painter.fillRect(QRect(QPoint(0, 0), size()), QColor(0, 0, 0, 110));
    painter.setClipping(false);
    if (chosen.isEmpty())
        return;
    painter.setPen(QPen(QColor(0x0a, 0x84, 0xff), 2));
    painter.drawRect(chosen.adjusted(0, 0, -1, -1));
    if (mode_ != CaptureMode::area)
        return;
    const qreal ratio = frozen_.width() / qreal(std::max(1, width()));
    const QString label = QStringLiteral("%1 × %2")
                              .arg(qRound(chosen.width() * ratio))
                              .arg(qRound(chosen.height() * ratio));
    QFont font = painter.font();
    font.setPixelSize(13);
    painter.setFont(font);
    const QRect text = painter.fontMetrics().boundingRect(label).adjusted(-6, -3, 6, 3);
    QRect box(chosen.bottomRight() - QPoint(text.width(), -6), text.size());
    if (box.bottom() > height())
        box.moveBottom(chosen.bottom() - 6);
    painter.fillRect(box, QColor(0, 0, 0, 190));
    painter.setPen(Qt::white);
    painter.drawText(box, Qt::AlignCenter, label);
}

void CaptureOverlay::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::RightButton) {
        finish(std::nullopt);
        return;
    }
    pointer_ = event->position().toPoint();
    if (mode_ == CaptureMode::window) {
        finish(windowAt(pointer_));
        return;
    }
    anchor_ = pointer_;
    dragging_ = true;
    update();
}

void CaptureOverlay::mouseMoveEvent(QMouseEvent* event)
{
    pointer_ = event->position().toPoint();
    update();
}

void CaptureOverlay::mouseReleaseEvent(QMouseEvent* event)
{
    if (!dragging_ || event->button() != Qt::LeftButton)
        return;
    pointer_ = event->position().toPoint();
    dragging_ = false;
    // A click without a drag chose nothing yet: the overlay stays for a real drag.
    if (selection().width() < 2 || selection().height() < 2) {
        update();
        return;
    }
    finish(selection());
}

void CaptureOverlay::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape)
        finish(std::nullopt);
}

void CaptureOverlay::finish(std::optional<QRect> local)
{
    if (!done_)
        return;
    auto done = std::move(done_);
    done_ = nullptr;
    setKeyboardGrabEnabled(false);
    setMouseGrabEnabled(false);
    hide();
    std::optional<ScreenGrab> grab;
    if (local && !local->isEmpty()) {
        const qreal ratio = frozen_.width() / qreal(std::max(1, width()));
        const QRect pixels(qRound(local->x() * ratio), qRound(local->y() * ratio),
                           qRound(local->width() * ratio), qRound(local->height() * ratio));
        grab = ScreenGrab{frozen_.copy(pixels), local->translated(geometry().topLeft())};
    }
    done(std::move(grab));
    deleteLater();
}

} // namespace navro
