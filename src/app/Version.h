#pragma once

#include <string_view>

namespace navro {

// Navro's short version ("0.1.0"), as the build was configured.
std::string_view applicationVersion();

} // namespace navro
