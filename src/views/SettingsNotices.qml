import QtQuick
import QtQuick.Layouts

// Above every page of the settings window: what does not work right now, and the way out. Takes
// no room while all is well.
ColumnLayout {
    id: column
    readonly property bool arabic: settings.isArabic
    // The bus call that toggles the notch, for a shortcut of the desktop's own.
    readonly property string toggleCommand: "gdbus call --session --dest io.navro.Navro "
        + "--object-path /io/navro/Navro --method io.navro.Navro.Toggle"
    spacing: 8
    visible: notices.settingsSaveProblem !== "" || notices.hotKeyTaken

    component Notice: Rectangle {
        id: notice
        default property alias content: body.data
        Layout.fillWidth: true
        implicitHeight: body.implicitHeight + 2 * 10
        radius: Theme.cardRadius
        color: Theme.cardBackground
        border.color: Theme.warning
        border.width: 1

        Icon {
            id: mark
            anchors { left: parent.left; leftMargin: 12; top: parent.top; topMargin: 12 }
            symbol: "exclamationmark.circle"
            color: Theme.warning
            size: 16
        }
        ColumnLayout {
            id: body
            anchors { left: mark.right; leftMargin: 10; right: parent.right; rightMargin: 12
                      verticalCenter: parent.verticalCenter }
            spacing: 6
        }
    }

    component NoticeText: Text {
        Layout.fillWidth: true
        wrapMode: Text.Wrap
        color: Theme.text
        font.family: Theme.fontFamily
        font.pixelSize: Theme.bodySize
        horizontalAlignment: Text.AlignLeft
    }

    Notice {
        id: saveNotice
        objectName: "settingsSaveNotice"
        visible: notices.settingsSaveProblem !== ""
        NoticeText {
            text: column.arabic
                  ? "تعذّر حفظ الإعدادات: " + notices.settingsSaveProblem
                    + ". تبقى التغييرات محفوظة في الذاكرة وتُكتب حالما يصبح ذلك ممكناً."
                  : "Settings can't be saved: " + notices.settingsSaveProblem
                    + ". Your changes are kept and written as soon as that works."
        }
    }

    Notice {
        id: hotKeyNotice
        objectName: "hotKeyNotice"
        visible: notices.hotKeyTaken
        NoticeText {
            text: column.arabic
                  ? "يستخدم برنامج آخر الاختصار Ctrl+Alt+L، فلا يفتح به النوتش. حرّره ثم افتح هذه النافذة من جديد، أو اجعل لهذا الأمر اختصاراً في إعدادات سطح المكتب:"
                  : "Another program uses Ctrl+Alt+L, so it does not open the notch. Free it and open this window again, or give this command a shortcut in your desktop's settings:"
        }
        TextEdit {
            Layout.fillWidth: true
            text: column.toggleCommand
            readOnly: true
            selectByMouse: true
            wrapMode: TextEdit.Wrap
            color: Theme.text
            selectionColor: Theme.accent
            selectedTextColor: Theme.textOnAccent
            font.family: Theme.monoFontFamily
            font.pixelSize: Theme.smallSize
            // A command reads left to right in both languages.
            LayoutMirroring.enabled: false
            horizontalAlignment: TextEdit.AlignLeft
        }
    }
}
