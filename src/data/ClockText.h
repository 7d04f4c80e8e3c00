#pragma once

#include <string>

namespace navro {
// Whole seconds (truncated; negative and NaN count as 0) as "M:SS" below an hour and "H:MM:SS"
// from an hour on, hours unbounded.
std::string clockText(double seconds);
} // namespace navro
