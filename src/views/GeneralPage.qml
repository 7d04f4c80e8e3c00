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

    SettingsSection {
        title: page.arabic ? "الحافظة" : "Clipboard"
        SettingsRow {
            title: page.arabic ? "الاحتفاظ بسجل لما تنسخه" : "Keep a history of what you copy"
            detail: page.arabic ? "لا تُحفظ أبداً كلمات المرور التي تنسخها برامج إدارة كلمات المرور"
                                : "Passwords copied from password managers are never kept"
            NavroSwitch {
                objectName: "clipboardEnabledSwitch"
                checked: settings.clipboardEnabled
                onToggled: settings.clipboardEnabled = checked
            }
        }
        SettingsRow {
            title: page.arabic ? "عدد العناصر المحفوظة" : "Entries kept"
            enabled: settings.clipboardEnabled
            opacity: enabled ? 1 : 0.5
            ChoiceStrip {
                objectName: "clipboardLimitChoice"
                itemMinimumWidth: 42
                current: String(settings.clipboardLimit)
                model: [10, 25, 50, 100, 200, 500].map((count) => ({
                    "value": String(count),
                    "label": page.arabic ? count.toLocaleString(Qt.locale("ar"), "f", 0) : String(count)
                }))
                onChosen: (value) => settings.clipboardLimit = Number(value)
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
