#pragma once

#include "app/DesktopNotifier.h"

#include <map>
#include <string>
#include <vector>

namespace navro {

// The desktop's notification area as a test sees it: what was shown, in order, what is on screen
// now, and buttons it can press.
class FakeDesktopNotifier final : public DesktopNotifier {
public:
    void show(const DesktopNotification& notification, ActionHandler onAction) override
    {
        shown.push_back(notification);
        onScreen[notification.key] = notification;
        handlers_[notification.key] = std::move(onAction);
    }

    void withdraw(const std::string& key) override
    {
        withdrawn.push_back(key);
        onScreen.erase(key);
        handlers_.erase(key);
    }

    // The user chooses a button of the notification on screen under `key`.
    bool press(const std::string& key, const std::string& action)
    {
        const auto found = handlers_.find(key);
        if (found == handlers_.end() || !found->second)
            return false;
        const ActionHandler handler = found->second;
        handler(action);
        return true;
    }

    std::vector<DesktopNotification> shown;
    std::vector<std::string> withdrawn;
    std::map<std::string, DesktopNotification> onScreen;

private:
    std::map<std::string, ActionHandler> handlers_;
};

} // namespace navro
