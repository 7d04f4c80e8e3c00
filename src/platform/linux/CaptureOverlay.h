#pragma once

#include "data/ScreenCapture.h"

#include <QImage>
#include <QList>
#include <QRasterWindow>
#include <functional>

namespace navro {

// A full-screen window over a frozen picture of the screen on which the user chooses what to
// capture: an area dragged out (its size shown while dragging) or a window clicked. Escape or a
// right click cancels. It holds the pointer and the keyboard while it is up.
class CaptureOverlay final : public QRasterWindow {
    Q_OBJECT

public:
    // `windows`: the desktop's windows, topmost first, in global coordinates (window mode).
    CaptureOverlay(QScreen* screen, QImage frozen, CaptureMode mode, QList<QRect> windows,
                   std::function<void(std::optional<ScreenGrab>)> done);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void exposeEvent(QExposeEvent* event) override;

private:
    QRect selection() const;
    QRect windowAt(const QPoint& local) const;
    void finish(std::optional<QRect> local);

    QImage frozen_;
    CaptureMode mode_;
    QList<QRect> windows_; // in this window's coordinates
    std::function<void(std::optional<ScreenGrab>)> done_;
    QPoint anchor_, pointer_;
    bool dragging_ = false;
    bool grabbed_ = false;
};

} // namespace navro
