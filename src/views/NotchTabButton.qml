import QtQuick

// One tab of the open notch's tab bar: its symbol above its title.
Item {
    id: button
    property string tabId: ""
    property string symbol: "circle"
    property string title: ""
    property bool selected: false
    signal clicked()

    objectName: "tab_" + tabId

    Rectangle {
        anchors.fill: parent
        radius: Theme.controlRadius + 3
        color: button.selected ? Theme.notchSelection
                               : (mouse.containsMouse ? Theme.notchControl : "transparent")
        Behavior on color { ColorAnimation { duration: Theme.fadeDuration } }
    }

    Column {
        anchors.centerIn: parent
        spacing: 3
        Icon {
            anchors.horizontalCenter: parent.horizontalCenter
            symbol: button.symbol
            color: button.selected ? Theme.notchText : Theme.notchSecondaryText
            size: 16
        }
        Text {
            anchors.horizontalCenter: parent.horizontalCenter
            width: Math.min(implicitWidth, button.width - 4)
            text: button.title
            color: button.selected ? Theme.notchText : Theme.notchSecondaryText
            font.family: Theme.fontFamily
            font.pixelSize: Theme.captionSize
            font.weight: button.selected ? Font.DemiBold : Font.Normal
            elide: Text.ElideRight
            horizontalAlignment: Text.AlignHCenter
        }
    }

    MouseArea {
        id: mouse
        anchors.fill: parent
        hoverEnabled: true
        cursorShape: Qt.PointingHandCursor
        onClicked: button.clicked()
    }
}
