import QtQuick
import QtQuick.Controls
import QtQuick.Dialogs
import QtQuick.Layouts

// The user's calendars: each with its colour, name and where it comes from, a switch and a
// remove button; below, a field for a subscription link and a button for a local .ics file.
// Evolution's own calendars are found without being added.
PageScaffold {
    id: page
    readonly property bool arabic: settings.isArabic
    readonly property var sources: calendar ? calendar.sources : []
    property string linkError: ""
    title: arabic ? "التقويمات" : "Calendars"

    function kindText(kind) {
        if (kind === "link")
            return arabic ? "اشتراك" : "Subscription"
        if (kind === "evolution")
            return arabic ? "تقويم إيفولوشن" : "Evolution calendar"
        return arabic ? "ملف" : "File"
    }

    function addLink() {
        if (calendar.addLink(linkField.text)) {
            linkField.text = ""
            linkError = ""
        } else {
            linkError = arabic ? "أدخل رابط اشتراك يبدأ بـ https:// أو webcal:// ولم يُضف من قبل"
                               : "Enter a subscription link starting with https:// or webcal:// that is not already listed"
        }
    }

    SettingsSection {
        title: page.arabic ? "تقويماتك" : "Your calendars"
        Text {
            visible: page.sources.length === 0
            Layout.fillWidth: true
            Layout.margins: 8
            text: page.arabic ? "لا توجد تقويمات بعد. أضف رابط اشتراك أو ملف ‎.ics‎ أدناه."
                              : "No calendars yet. Add a subscription link or an .ics file below."
            color: Theme.secondaryText
            font.family: Theme.fontFamily
            font.pixelSize: Theme.bodySize
            wrapMode: Text.WordWrap
        }
        Repeater {
            model: page.sources
            delegate: SettingsRow {
                objectName: "calendarSource_" + index
                title: modelData.name
                detail: modelData.error !== ""
                        ? (page.arabic ? "تعذرت القراءة: " : "Could not read: ") + modelData.error
                        : page.kindText(modelData.kind) + " · " + modelData.location
                RowLayout {
                    spacing: 10
                    Rectangle {
                        width: 12
                        height: 12
                        radius: 6
                        color: modelData.colour
                    }
                    NavroSwitch {
                        objectName: "calendarEnabled_" + index
                        checked: modelData.enabled
                        onToggled: calendar.setEnabled(modelData.id, checked)
                    }
                    NavroButton {
                        objectName: "calendarRemove_" + index
                        visible: modelData.kind !== "evolution"
                        text: page.arabic ? "إزالة" : "Remove"
                        onClicked: calendar.remove(modelData.id)
                    }
                }
            }
        }
    }

    SettingsSection {
        title: page.arabic ? "إضافة تقويم" : "Add a calendar"
        RowLayout {
            Layout.fillWidth: true
            Layout.margins: 8
            spacing: 8
            TextField {
                id: linkField
                objectName: "calendarLinkField"
                Layout.fillWidth: true
                placeholderText: "webcal://…  https://…/calendar.ics"
                font.family: Theme.latinFontFamily
                font.pixelSize: Theme.bodySize
                onAccepted: page.addLink()
            }
            NavroButton {
                objectName: "calendarAddLink"
                primary: true
                enabled: linkField.text.trim() !== ""
                text: page.arabic ? "اشتراك" : "Subscribe"
                onClicked: page.addLink()
            }
        }
        Text {
            visible: page.linkError !== ""
            Layout.fillWidth: true
            Layout.leftMargin: 8
            Layout.rightMargin: 8
            text: page.linkError
            color: Theme.overdue
            font.family: Theme.fontFamily
            font.pixelSize: Theme.smallSize
            wrapMode: Text.WordWrap
        }
        SettingsRow {
            title: page.arabic ? "ملف تقويم على هذا الجهاز" : "A calendar file on this computer"
            detail: page.arabic ? "يُقرأ من جديد كلما تغيّر" : "Read again whenever it changes"
            NavroButton {
                objectName: "calendarAddFile"
                text: page.arabic ? "اختيار ملف…" : "Choose File…"
                onClicked: fileDialog.open()
            }
        }
    }

    FileDialog {
        id: fileDialog
        title: page.arabic ? "اختر ملف تقويم" : "Choose a calendar file"
        nameFilters: [page.arabic ? "تقويمات (*.ics)" : "Calendars (*.ics)", "* (*)"]
        onAccepted: calendar.addFile(selectedFile)
    }
}
