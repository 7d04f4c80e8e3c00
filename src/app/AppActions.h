#pragma once

#include "app/MenuBarActions.h"

#include <QObject>
#include <QString>
#include <functional>

namespace navro {

class LaunchAtLogin;

// The application's actions as the views see them (the "app" object in QML).
class AppActions final : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString version READ version CONSTANT)
    Q_PROPERTY(
        bool launchAtLogin READ launchAtLogin WRITE setLaunchAtLogin NOTIFY launchAtLoginChanged)

public:
    struct Callbacks {
        MenuBarActions menu;
        std::function<void()> finishOnboarding;
        std::function<void()> showOnboarding;
        std::function<void(const QString& page)> openSettingsPage;
    };

    AppActions(Callbacks callbacks, LaunchAtLogin* launchAtLogin, QObject* parent = nullptr);

    QString version() const;

    Q_INVOKABLE void openNotch() { call(callbacks_.menu.openNotch); }
    Q_INVOKABLE void openSettings() { call(callbacks_.menu.openSettings); }
    Q_INVOKABLE void openAbout() { call(callbacks_.menu.openAbout); }
    Q_INVOKABLE void quit() { call(callbacks_.menu.quit); }
    Q_INVOKABLE void finishOnboarding() { call(callbacks_.finishOnboarding); }
    Q_INVOKABLE void showOnboarding() { call(callbacks_.showOnboarding); }
    // The settings window on the page of that raw value ("calendars" …).
    Q_INVOKABLE void openSettingsPage(const QString& page)
    {
        if (callbacks_.openSettingsPage)
            callbacks_.openSettingsPage(page);
    }

    // Read from the system each time: another program (or the user's file manager) may change
    // the autostart entry behind our back.
    bool launchAtLogin() const;
    Q_INVOKABLE void setLaunchAtLogin(bool enabled);

signals:
    void launchAtLoginChanged();

private:
    static void call(const std::function<void()>& action)
    {
        if (action)
            action();
    }

    Callbacks callbacks_;
    LaunchAtLogin* launchAtLogin_;
};

} // namespace navro
