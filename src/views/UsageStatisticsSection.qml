import QtQuick
import QtQuick.Controls
import QtQuick.Layouts

// Anonymous usage statistics: the switch, and the exact report the next send carries.
SettingsSection {
    id: section
    readonly property bool arabic: settings.isArabic
    property bool showingReport: false
    title: arabic ? "الخصوصية" : "Privacy"

    SettingsRow {
        title: section.arabic ? "مشاركة إحصاءات استخدام مجهولة" : "Share anonymous usage statistics"
        detail: !usageStatistics.hasEndpoint
                ? (section.arabic ? "بُنيت هذه النسخة دون عنوان للإحصاءات: لا يُجمع شيء ولا يُرسل."
                                  : "This copy was built without a statistics address: nothing is collected or sent.")
                : (section.arabic ? "أعداد يومية فقط: مرات التشغيل والتبويبات والميزات المستخدمة ولغة الواجهة. لا شيء مما تكتبه أو تنسخه أو تشغّله، ولا موقعك. يحذف إيقافها ما حُفظ."
                                  : "Daily counts only: launches, tabs and features used, the interface language. Nothing you type, copy or play, and not where you are. Turning it off deletes what was kept.")
        NavroSwitch {
            objectName: "shareUsageStatsSwitch"
            enabled: usageStatistics.hasEndpoint
            checked: usageStatistics.hasEndpoint && settings.shareUsageStats
            onToggled: settings.shareUsageStats = checked
        }
    }
    SettingsRow {
        visible: usageStatistics.hasEndpoint && settings.shareUsageStats
        title: section.arabic ? "ما يُرسل مرة في اليوم بعد منتصف الليل" : "Sent once a day, after midnight"
        NavroButton {
            objectName: "showSharedButton"
            text: section.showingReport ? (section.arabic ? "إخفاء" : "Hide")
                                        : (section.arabic ? "اعرض ما يُشارَك" : "Show what is shared")
            onClicked: section.showingReport = !section.showingReport
        }
    }
    TextEdit {
        objectName: "sharedDocument"
        visible: section.showingReport && usageStatistics.hasEndpoint && settings.shareUsageStats
        Layout.fillWidth: true
        Layout.margins: 8
        LayoutMirroring.enabled: false
        readOnly: true
        selectByMouse: true
        wrapMode: TextEdit.Wrap
        text: usageStatistics.sharedDocument
        color: Theme.text
        font.family: "DejaVu Sans Mono"
        font.pixelSize: Theme.smallSize
    }
}
