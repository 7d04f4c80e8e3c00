import QtQuick
import QtQuick.Layouts

// One action of the menu-bar panel.
Pressable {
    id: row
    property string symbol: "circle"
    property string title: ""
    property string shortcut: ""
    signal triggered()

    Layout.fillWidth: true
    implicitHeight: 32
    leftPadding: 10
    rightPadding: 10
    text: title
    onClicked: row.triggered()

    background: Rectangle {
        radius: Theme.controlRadius
        color: row.hovered || row.down ? Theme.selection : "transparent"
    }
    contentItem: RowLayout {
        spacing: 10
        Icon {
            symbol: row.symbol
            color: Theme.text
            size: 16
        }
        Text {
            Layout.fillWidth: true
            text: row.title
            color: Theme.text
            font.family: Theme.fontFamily
            font.pixelSize: Theme.bodySize
        }
        Text {
            visible: row.shortcut !== ""
            text: row.shortcut
            color: Theme.secondaryText
            font.family: Theme.latinFontFamily
            font.pixelSize: Theme.smallSize
        }
    }
}
