#pragma once

#include <optional>
#include <string>
#include <vector>

namespace navro {

// What the geometry rule needs to know of one screen, in device-independent pixels with y
// growing downwards. Linux screens report no camera housing (inset 0, no auxiliary areas).
struct ScreenDescription {
    std::string name;
    int x = 0, y = 0, width = 0, height = 0; // the screen's frame
    int availableX = 0, availableY = 0, availableWidth = 0, availableHeight = 0; // minus panels
    int safeAreaTopInset = 0;
    std::optional<int> auxiliaryTopLeftWidth;
    std::optional<int> auxiliaryTopRightWidth;
    bool isMain = false;

    bool operator==(const ScreenDescription&) const = default;
};

struct NotchSize {
    int width = 0;
    int height = 0;
    bool operator==(const NotchSize&) const = default;
};

// The open notch is the same on every screen with room for it; only the closed one follows the
// hardware. A screen narrower than that (or lower) gets an open notch that fits inside it with a
// margin on each side, room for the curves the views draw out from its top corners, and its
// content reflows.
inline constexpr NotchSize openNotchSize{688, 260};
inline constexpr int openNotchScreenMargin = 16;

struct NotchGeometry {
    std::string screenName;
    int screenX = 0, screenY = 0, screenWidth = 0, screenHeight = 0;
    bool hasPhysicalNotch = false;
    NotchSize closedSize;
    NotchSize openSize = openNotchSize;

    bool operator==(const NotchGeometry&) const = default;
};

NotchSize openNotchSizeFor(int screenWidth, int screenHeight);

// The first screen with a camera housing, else the main screen, else the first; none if empty.
std::optional<ScreenDescription> preferredScreen(const std::vector<ScreenDescription>& screens);
NotchGeometry geometryFor(const ScreenDescription& screen);

} // namespace navro
