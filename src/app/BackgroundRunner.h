#pragma once

#include <functional>

namespace navro {

// Runs `work` away from the main thread, then `then` back on it. Stores take one so that reading
// their files never holds up the main thread; tests give one that runs both at once.
using BackgroundRunner =
    std::function<void(std::function<void()> work, std::function<void()> then)>;

} // namespace navro
