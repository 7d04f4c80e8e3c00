#pragma once

#include "notch/PanelWindowSystem.h"

namespace navro {

// Input shapes through the X Shape extension (ShapeInput): the drawn window stays whole, only
// the area that takes pointer events changes, so the notch's animations are never clipped.
class X11InputShape final : public PanelWindowSystem {
public:
    X11InputShape();

    bool canShapeInput() const override { return available_; }
    void setInputRegion(QWindow& window, const QRegion& region) override;

private:
    bool available_ = false;
};

} // namespace navro
