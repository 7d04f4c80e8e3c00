import QtQuick
import QtQuick.Layouts

// One to-do in the Notes tab's list: its done box, priority flag, text (edited in place),
// deadline, and the buttons that change it, shown while the row is pointed at or has the focus.
Item {
    id: row
    required property int index
    required property string todoId
    required property string text
    required property bool done
    required property int priority
    required property string priorityTitle
    required property var due
    required property string dueLabel
    required property bool overdue

    readonly property bool arabic: settings.isArabic
    readonly property bool current: ListView.isCurrentItem
    readonly property bool keyboardCurrent: current && ListView.view && ListView.view.activeFocus
    readonly property bool hasDue: dueLabel !== ""
    property bool editing: false

    signal priorityMenuRequested(var anchor)
    signal dueMenuRequested(var anchor)

    objectName: "todo_" + index
    width: ListView.view ? ListView.view.width : 0
    height: Theme.notchRowHeight

    function startEditing() {
        editing = true;
        editor.text = row.text;
        editor.forceActiveFocus();
        editor.selectAll();
    }
    function finishEditing(keep) {
        if (!editing)
            return;
        editing = false;
        if (keep)
            notes.update(todoId, editor.text);
        if (ListView.view)
            ListView.view.forceActiveFocus();
    }
    function openPriorityMenu() { priorityMenuRequested(flagButton); }
    function openDueMenu() { dueMenuRequested(dueButton); }

    HoverHandler { id: hover }

    Rectangle {
        anchors.fill: parent
        radius: Theme.controlRadius
        color: row.keyboardCurrent ? Theme.notchSelection
             : hover.hovered ? Theme.notchControl : "transparent"
        border.width: row.keyboardCurrent ? 1 : 0
        border.color: Theme.notchAccent
    }

    TapHandler {
        onTapped: if (row.ListView.view) row.ListView.view.currentIndex = row.index
        onDoubleTapped: row.startEditing()
    }

    RowLayout {
        anchors.fill: parent
        anchors.leftMargin: 4
        anchors.rightMargin: 4
        spacing: 6

        Item {
            id: doneBox
            Layout.preferredWidth: 20
            Layout.preferredHeight: 20
            Icon {
                anchors.centerIn: parent
                symbol: row.done ? "checkmark.circle.fill" : "circle"
                color: row.done ? Theme.success : Theme.notchSecondaryText
                size: 15
            }
            MouseArea {
                anchors.fill: parent
                cursorShape: Qt.PointingHandCursor
                onClicked: notes.toggle(row.todoId)
            }
            Accessible.role: Accessible.CheckBox
            Accessible.checkable: true
            Accessible.checked: row.done
            Accessible.name: row.text
        }

        Icon {
            visible: row.priority > 0
            symbol: "flag"
            size: 12
            color: row.priority === 3 ? Theme.priorityHigh
                 : row.priority === 2 ? Theme.priorityMedium : Theme.priorityLow
            Accessible.role: Accessible.StaticText
            Accessible.name: row.priorityTitle
        }

        Text {
            Layout.fillWidth: true
            visible: !row.editing
            text: row.text
            elide: Text.ElideRight
            color: row.done ? Theme.notchSecondaryText : Theme.notchText
            font.family: Theme.fontFamily
            font.pixelSize: Theme.bodySize - 1
            font.strikeout: row.done
            horizontalAlignment: Text.AlignLeft
        }

        NotchTextField {
            id: editor
            objectName: "todoEditor"
            Layout.fillWidth: true
            Layout.preferredHeight: Theme.notchRowHeight - 4
            visible: row.editing
            font.pixelSize: Theme.bodySize - 1
            padding: 2
            leftPadding: 6
            rightPadding: 6
            background: Rectangle {
                radius: Theme.controlRadius
                color: Theme.notchFill
                border.color: Theme.notchAccent
            }
            Keys.onReturnPressed: row.finishEditing(true)
            Keys.onEnterPressed: row.finishEditing(true)
            Keys.onEscapePressed: row.finishEditing(false)
            onActiveFocusChanged: if (!activeFocus) row.finishEditing(true)
        }

        Text {
            visible: row.hasDue && !row.editing
            text: row.dueLabel
            color: row.overdue ? Theme.overdue : Theme.notchSecondaryText
            font.family: Theme.fontFamily
            font.pixelSize: Theme.smallSize
        }

        Row {
            spacing: 2
            visible: (hover.hovered || row.keyboardCurrent) && !row.editing
            NotchIconButton {
                id: flagButton
                size: 20
                symbol: "flag"
                toolTip: (row.arabic ? "الأولوية" : "Priority") + " (P)"
                onClicked: row.openPriorityMenu()
            }
            NotchIconButton {
                id: dueButton
                size: 20
                symbol: "clock"
                toolTip: (row.arabic ? "الموعد" : "Deadline") + " (D)"
                onClicked: row.openDueMenu()
            }
            NotchIconButton {
                size: 20
                symbol: "xmark"
                toolTip: (row.arabic ? "حذف" : "Delete") + " (Del)"
                onClicked: notes.remove(row.todoId)
            }
        }
    }
}
