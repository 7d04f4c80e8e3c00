#pragma once

#include <memory>
#include <optional>
#include <string>

namespace navro {

// What main() settles with the platform before the application object exists. Defined by the
// platform library.

// Why Navro cannot show itself here (no X11 display it can connect to), or nothing.
std::optional<std::string> displayProblem();

// A session bus that accepts connections but never answers would hold Navro, and the parts of Qt
// that use it, at their first call for good. Such a bus is, for this process and its children,
// replaced by an address that fails at once; Navro then runs without it, and the remote control
// says so once and waits for a bus to come back at the original address. (The system bus, which
// nothing needs before the first frame, is probed without holding the start-up.)
void avoidSilentBuses();

// One Navro per user session: a lock held for the whole life of the process. The system releases
// it with its process, however that ends, so a lock is never left behind by a dead one.
class InstanceLock {
public:
    virtual ~InstanceLock() = default;
};

struct InstanceLockAttempt {
    enum class Outcome {
        held,          // this process is the one
        heldByAnother, // a running Navro has it
        unavailable,   // the lock file cannot be used (detail says why)
    };
    Outcome outcome = Outcome::unavailable;
    std::unique_ptr<InstanceLock> lock; // when held
    std::string detail;                 // "process 1234" for another holder, else the reason
};

InstanceLockAttempt takeInstanceLock();

} // namespace navro
