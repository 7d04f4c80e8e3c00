#pragma once

#include <QQuickView>
#include <QRect>

namespace navro {

class PanelWindowSystem;

// The window that hosts the notch's views: frameless, transparent around the drawn notch, above
// every other window and the desktop's panels, on every workspace, in no task bar or window
// switcher, never moved by the user.
//
// It is an override-redirect window: the window manager leaves it alone, which gives all of the
// above at once and also means that mapping it or clicking it never moves keyboard focus by
// itself. Focus is taken only when asked (PanelWindowSystem::takeFocus), so a panel opened by
// hovering leaves the active window in front, and the first click on the closed notch reaches the
// notch at once.
class NotchPanel final : public QQuickView {
    Q_OBJECT

public:
    NotchPanel(QQmlEngine* engine, PanelWindowSystem& windowSystem);

    void place(QScreen* screen, const QRect& frame);
    // The area, in window coordinates, that takes pointer input; everywhere else the pointer
    // reaches the windows below.
    void setInputRect(const QRect& rect);
    QRect inputRect() const { return inputRect_; }

signals:
    void pointerEntered();
    void pointerLeft();
    void pressed();
    void escapePressed();

protected:
    bool event(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void applyInputRect();

    PanelWindowSystem& windowSystem_;
    QRect inputRect_;
};

} // namespace navro
