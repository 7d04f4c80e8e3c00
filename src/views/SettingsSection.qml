import QtQuick
import QtQuick.Layouts

// A titled group of rows on a card.
ColumnLayout {
    id: section
    property string title: ""
    default property alias rows: card.data
    spacing: 6
    Layout.fillWidth: true

    SectionCaption {
        visible: section.title !== ""
        text: section.title
    }
    Rectangle {
        Layout.fillWidth: true
        // Never squeezed below its rows by a page short of room.
        Layout.minimumHeight: implicitHeight
        implicitHeight: card.implicitHeight + 8
        radius: Theme.cardRadius
        color: Theme.cardBackground
        border.color: Theme.cardBorder
        border.width: 1
        ColumnLayout {
            id: card
            anchors { left: parent.left; right: parent.right; top: parent.top }
            anchors.leftMargin: 8
            anchors.rightMargin: 8
            anchors.topMargin: 4
            // The rows draw their own separators.
            spacing: 0
        }
    }
}
