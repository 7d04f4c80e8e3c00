import QtQuick
import QtQuick.Layouts

// One action of the menu-bar panel.
Rectangle {
    id: row
    property string symbol: "circle"
    property string title: ""
    property string shortcut: ""
    signal triggered()

    Layout.fillWidth: true
    implicitHeight: 32
    radius: Theme.controlRadius
    color: mouse.containsMouse ? Theme.selection : "transparent"

    RowLayout {
        anchors.fill: parent
        anchors.leftMargin: 10
        anchors.rightMargin: 10
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
    MouseArea {
        id: mouse
        anchors.fill: parent
        hoverEnabled: true
        onClicked: row.triggered()
    }
}
