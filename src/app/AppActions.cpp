#include "app/AppActions.h"

#include "app/LaunchAtLogin.h"

#include <QCoreApplication>

namespace navro {

AppActions::AppActions(Callbacks callbacks, LaunchAtLogin* launchAtLogin, QObject* parent)
    : QObject(parent), callbacks_(std::move(callbacks)), launchAtLogin_(launchAtLogin)
{
}

QString AppActions::version() const
{
    return QCoreApplication::applicationVersion();
}

bool AppActions::launchAtLogin() const
{
    return launchAtLogin_ && launchAtLogin_->isEnabled();
}

void AppActions::setLaunchAtLogin(bool enabled)
{
    if (!launchAtLogin_)
        return;
    launchAtLogin_->set(enabled);
    // Also after a failure: the switch that asked must go back to what the system says.
    emit launchAtLoginChanged();
}

} // namespace navro
