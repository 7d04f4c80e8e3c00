import QtQuick

// Launch at login, read from the system: after a change (or a failed one) the switch shows what
// the system now says.
NavroSwitch {
    id: control
    checked: app.launchAtLogin
    onToggled: app.setLaunchAtLogin(checked)
    Connections {
        target: app
        function onLaunchAtLoginChanged() { control.checked = app.launchAtLogin }
    }
}
