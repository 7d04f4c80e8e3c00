#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace navro {

// One notice in the desktop's notification area (a reminder, an alert). The key names it for as
// long as it is shown: showing another with the same key replaces it in place.
struct DesktopNotification {
    struct Action {
        std::string id;
        std::string label;
    };

    std::string key;
    std::string title;
    std::string body;            // plain text
    std::vector<Action> actions; // buttons, left out where the desktop offers none
};

// The desktop's notification service. Calls never wait for it; where there is none, the first
// attempt says so in one log line and nothing else happens.
class DesktopNotifier {
public:
    // Called with the action's id when the user chooses one of the notification's buttons.
    using ActionHandler = std::function<void(std::string_view actionID)>;

    virtual ~DesktopNotifier() = default;
    // Shows it (with the desktop's usual sound), replacing a shown one of the same key together
    // with that one's handler.
    virtual void show(const DesktopNotification& notification, ActionHandler onAction) = 0;
    // Takes the notification of that key off the screen, if one is shown.
    virtual void withdraw(const std::string& key) = 0;
};

// The session's notification service (org.freedesktop.Notifications on Linux).
// Defined by the platform library.
std::unique_ptr<DesktopNotifier> makeDesktopNotifier();

} // namespace navro
