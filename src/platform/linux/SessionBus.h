#pragma once

#include <string>

namespace navro {

// The session bus as main() found it (avoidSilentBuses): the address the user's session gave, the
// same after this process has replaced a silent one, and why it is not used in that case (empty
// while it is fine).
std::string sessionBusAddress();
std::string sessionBusProblem();

} // namespace navro
