import QtQuick
import QtQuick.Controls
import QtQuick.Layouts

PageScaffold {
    id: page
    readonly property bool arabic: settings.isArabic
    title: arabic ? "الصلاة" : "Prayer"

    Loader {
        Layout.fillWidth: true
        Layout.preferredHeight: item ? item.implicitHeight : 0
        source: "PrayerSettingsPage.qml"
    }

    SettingsSection {
        title: page.arabic ? "التنبيه بالأذان" : "Adhan alert"
        SettingsRow {
            title: page.arabic ? "إشعار عند كل صلاة" : "Notify at each prayer"
            detail: page.arabic ? "الفجر والظهر والعصر والمغرب والعشاء"
                                : "Fajr, Dhuhr, Asr, Maghrib and Isha"
            NavroSwitch {
                objectName: "adhanAlertSwitch"
                checked: settings.adhanAlert
                onToggled: settings.adhanAlert = checked
            }
        }
        SettingsRow {
            title: page.arabic ? "تشغيل صوت مع الإشعار" : "Play a sound with it"
            NavroSwitch {
                objectName: "adhanSoundSwitch"
                enabled: settings.adhanAlert
                checked: settings.adhanSound
                onToggled: settings.adhanSound = checked
            }
        }
        SettingsRow {
            title: page.arabic ? "إظهار وقت الصلاة في النوتش" : "Show the prayer in the notch"
            detail: page.arabic ? "إشعار قصير على النوتش المغلق لمدة دقيقة"
                                : "A short notice on the closed notch for a minute"
            NavroSwitch {
                objectName: "prayerInNotchSwitch"
                checked: settings.prayerInNotch
                onToggled: settings.prayerInNotch = checked
            }
        }
    }
}
