import QtQuick
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
        SectionCaption { text: page.arabic ? "فتح النوتش" : "Opening the notch" }
        OpenModeChoice {}
        SettingsSection {
            Layout.topMargin: 4
            HoverDelayRow {}
        }
    }

    SettingsSection {
        SettingsRow {
            title: page.arabic ? "إظهار النوتش" : "Show the notch"
            // While the notch is off the hot key has nothing to open; only the tray panel's
            // action turns it back on.
            detail: page.arabic ? "ما دام مخفياً لا يفتحه الاختصار Ctrl+Alt+L، ويعيده «فتح النوتش» من قائمة أيقونة شريط النظام."
                                : "While it is hidden, Ctrl+Alt+L does nothing; Open Notch in the tray icon's menu brings it back."
            NavroSwitch {
                objectName: "notchEnabledSwitch"
                checked: settings.notchEnabled
                onToggled: settings.notchEnabled = checked
            }
        }
        SettingsRow {
            title: page.arabic ? "التشغيل عند تسجيل الدخول" : "Launch at login"
            LaunchAtLoginSwitch {}
        }
        SettingsRow {
            title: page.arabic ? "صفحات الترحيب" : "Welcome pages"
            NavroButton {
                text: page.arabic ? "عرضها مجدداً" : "Show again"
                onClicked: app.showOnboarding()
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
                    "label": Format.number(count)
                }))
                onChosen: (value) => settings.clipboardLimit = Number(value)
            }
        }
    }
    TimerSettingsSection {}
    UsageStatisticsSection {}
    Item { implicitHeight: 4 }
}
