#pragma once

#include "notch/PanelWindowSystem.h"

namespace navro {

// The notch window's needs on X11. Input shapes go through the X Shape extension (ShapeInput):
// the drawn window stays whole, only the area that takes pointer events changes, so the notch's
// animations are never clipped. Focus goes back through the window manager (_NET_ACTIVE_WINDOW),
// which refuses windows that have gone away meanwhile.
class X11PanelWindow final : public PanelWindowSystem {
public:
    X11PanelWindow();

    bool canShapeInput() const override { return canShape_; }
    void setInputRegion(QWindow& window, const QRegion& region) override;
    void rememberFocus(QWindow& panel) override;
    void returnFocus(QWindow& panel) override;

private:
    bool canShape_ = false;
    unsigned long previousActive_ = 0;
};

} // namespace navro
