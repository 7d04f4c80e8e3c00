import QtQuick
import QtQuick.Controls

// A round symbol button on the black notch.
Item {
    id: button
    property string symbol: "circle"
    property string toolTip: ""
    property int size: 32
    signal clicked()

    width: size
    height: size

    Rectangle {
        anchors.fill: parent
        radius: width / 2
        color: mouse.pressed ? Theme.notchSelection
                             : (mouse.containsMouse ? Theme.notchControlHover : Theme.notchControl)
    }
    Icon {
        anchors.centerIn: parent
        symbol: button.symbol
        color: Theme.notchText
        size: 16
    }
    MouseArea {
        id: mouse
        anchors.fill: parent
        hoverEnabled: true
        cursorShape: Qt.PointingHandCursor
        onClicked: button.clicked()
    }

    Accessible.role: Accessible.Button
    Accessible.name: button.toolTip
    ToolTip.text: button.toolTip
    ToolTip.visible: mouse.containsMouse && button.toolTip !== ""
    ToolTip.delay: 600
}
