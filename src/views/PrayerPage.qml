import QtQuick
import QtQuick.Controls
import QtQuick.Layouts

PageScaffold {
    id: page
    title: settings.isArabic ? "الصلاة" : "Prayer"

    Loader {
        Layout.fillWidth: true
        Layout.preferredHeight: item ? item.implicitHeight : 0
        source: "PrayerSettingsPage.qml"
    }
}
