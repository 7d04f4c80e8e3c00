#pragma once

#include "notch/PanelWindowSystem.h"

#include <QAbstractNativeEventFilter>
#include <QObject>
#include <cstdint>

namespace navro {

// The notch window's needs on X11. Input shapes go through the X Shape extension (ShapeInput):
// the drawn window stays whole, only the area that takes pointer events changes, so the notch's
// animations are never clipped. Focus goes back through the window manager (_NET_ACTIVE_WINDOW),
// which refuses windows that have gone away meanwhile. Presses are watched as XInput 2 raw
// events on the root window, which every client may listen to without grabbing anything.
class X11PanelWindow final : public PanelWindowSystem, private QAbstractNativeEventFilter {
public:
    X11PanelWindow();
    ~X11PanelWindow() override;
    X11PanelWindow(const X11PanelWindow&) = delete;
    X11PanelWindow& operator=(const X11PanelWindow&) = delete;

    bool canShapeInput() const override { return canShape_; }
    void setInputRegion(QWindow& window, const QRegion& region) override;
    void rememberFocus(QWindow& panel) override;
    void takeFocus(QWindow& panel) override;
    void returnFocus(QWindow& panel) override;
    bool watchPresses(std::function<void()> pressed) override;

private:
    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;
    void selectRawPresses(bool on);

    bool canShape_ = false;
    unsigned long previousActive_ = 0;
    int inputOpcode_ = -1; // XInput 2's major opcode, -1 without it
    std::function<void()> pressed_;
    std::uint64_t watch_ = 0;
    bool filterInstalled_ = false;
    QObject guard_; // queued calls die with the object
};

} // namespace navro
