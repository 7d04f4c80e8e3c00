#include "app/LaunchAtLogin.h"

#include "app/Log.h"

namespace navro {

LaunchAtLogin::LaunchAtLogin(std::unique_ptr<LoginItem> item) : item_(std::move(item)) {}

void LaunchAtLogin::set(bool enabled)
{
    if (!item_) {
        logLine("launch at login change failed: no login item on this system");
        return;
    }
    if (auto failure = item_->setEnabled(enabled)) {
        logLine("launch at login change failed: " + failure->toStdString());
    }
}

bool LaunchAtLogin::isEnabled() const
{
    return item_ && item_->isEnabled();
}

} // namespace navro
