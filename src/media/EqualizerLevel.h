#pragma once

#include <vector>

namespace navro {

// How tall bar `index` of the level bars is, as a fraction of their height, at `seconds` on the
// wall clock: short and still while nothing plays; the live level (never fully collapsed) where
// one exists for the bar; otherwise a motion of the bars' own.
float equalizerLevel(int index, bool playing, const std::vector<float>& live, double seconds);

// The bars' heights in whole pixels for `levels` (fractions, clamped to 0…1) of `height`, each at
// least `minimum` (a bar is never thinner than it is wide). Frames whose pixels would not differ
// need not be drawn.
std::vector<int> barPixelHeights(const std::vector<float>& levels, double height, int minimum);

} // namespace navro
