import QtQuick
import QtQuick.Controls
import QtQuick.Layouts

PageScaffold {
    id: page
    readonly property bool arabic: settings.isArabic
    title: arabic ? "عام" : "General"

    SettingsSection {
        title: page.arabic ? "اللغة والمظهر" : "Language and appearance"
        SettingsRow {
            title: page.arabic ? "اللغة" : "Language"
            ChoiceStrip {
                objectName: "languageChoice"
                current: settings.language
                model: [
                    { "value": "system", "label": page.arabic ? "النظام" : "System" },
                    { "value": "english", "label": "English" },
                    { "value": "arabic", "label": "العربية" }
                ]
                onChosen: (value) => settings.language = value
            }
        }
        SettingsRow {
            title: page.arabic ? "المظهر" : "Theme"
            ChoiceStrip {
                current: settings.theme
                model: [
                    { "value": "system", "label": page.arabic ? "النظام" : "System" },
                    { "value": "dark", "label": page.arabic ? "داكن" : "Dark" },
                    { "value": "light", "label": page.arabic ? "فاتح" : "Light" }
                ]
                onChosen: (value) => settings.theme = value
            }
        }
    }

    ColumnLayout {
        Layout.fillWidth: true
        spacing: 6
        Text {
            text: page.arabic ? "فتح النوتش" : "Opening the notch"
            color: Theme.secondaryText
            font.family: Theme.fontFamily
            font.pixelSize: Theme.smallSize
            font.weight: Font.DemiBold
            Layout.leftMargin: 4
            Layout.rightMargin: 4
        }
        OpenModeChoice {}
    }

    SettingsSection {
        HoverDelayRow {}
        SettingsRow {
            title: page.arabic ? "إظهار النوتش" : "Show the notch"
            detail: page.arabic ? "يمكنك دائماً فتحه من أيقونة شريط النظام أو بالاختصار Ctrl+Alt+L"
                                : "You can always open it from the tray icon or with Ctrl+Alt+L"
            NavroSwitch {
                objectName: "notchEnabledSwitch"
                checked: settings.notchEnabled
                onToggled: settings.notchEnabled = checked
            }
        }
        SettingsRow {
            title: page.arabic ? "التشغيل عند تسجيل الدخول" : "Launch at login"
            NavroSwitch {
                id: loginSwitch
                checked: app.launchAtLogin
                onToggled: app.setLaunchAtLogin(checked)
                Connections {
                    target: app
                    function onLaunchAtLoginChanged() { loginSwitch.checked = app.launchAtLogin }
                }
            }
        }
    }

    TimerSettingsSection {}

    RowLayout {
        Layout.fillWidth: true
        NavroButton {
            text: page.arabic ? "عرض الترحيب مجدداً" : "Show welcome again"
            onClicked: app.showOnboarding()
        }
        Item { Layout.fillWidth: true }
    }
    Item { implicitHeight: 8 }
}
