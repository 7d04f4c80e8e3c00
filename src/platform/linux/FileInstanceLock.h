#pragma once

#include "app/Startup.h"

#include <filesystem>

namespace navro {

// The instance lock as an flock() on a file: exclusive, never blocking, released by the kernel
// when the process ends. The file holds the holder's process id for the others' log lines.
InstanceLockAttempt lockInstanceFile(const std::filesystem::path& file);

// "navro.lock" in $XDG_RUNTIME_DIR, the user's own folder for the session; without one, in a
// private folder of the user's under /tmp.
std::filesystem::path instanceLockPath();

} // namespace navro
