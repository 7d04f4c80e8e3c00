import QtQuick
import QtQuick.Layouts

// A titled group of rows on a card.
ColumnLayout {
    id: section
    property string title: ""
    default property alias rows: card.data
    spacing: 6
    Layout.fillWidth: true

    Text {
        visible: section.title !== ""
        text: section.title
        color: Theme.secondaryText
        font.family: Theme.fontFamily
        font.pixelSize: Theme.smallSize
        font.weight: Font.DemiBold
        Layout.leftMargin: 4
        Layout.rightMargin: 4
    }
    Rectangle {
        Layout.fillWidth: true
        implicitHeight: card.implicitHeight + 16
        radius: Theme.cardRadius
        color: Theme.cardBackground
        border.color: Theme.cardBorder
        border.width: 1
        ColumnLayout {
            id: card
            anchors { left: parent.left; right: parent.right; top: parent.top; margins: 8 }
            spacing: 4
        }
    }
}
