import QtQuick
import QtQuick.Controls

// A round symbol button on the black notch.
Pressable {
    id: button
    property string symbol: "circle"
    property string toolTip: ""
    property int size: 32

    implicitWidth: size
    implicitHeight: size
    text: toolTip
    inNotch: true
    focusRadius: size / 2

    background: Rectangle {
        radius: width / 2
        color: button.down ? Theme.notchSelection
                           : (button.hovered ? Theme.notchControlHover : Theme.notchControl)
    }
    contentItem: Item {
        Icon {
            anchors.centerIn: parent
            symbol: button.symbol
            color: Theme.notchText
            size: 16
        }
    }

    HoverHandler { cursorShape: Qt.PointingHandCursor }

    ToolTip {
        visible: (button.hovered || button.visualFocus) && button.toolTip !== ""
        delay: 600
        text: button.toolTip
        contentItem: Text {
            text: button.toolTip
            color: Theme.notchText
            font.family: Theme.fontFamily
            font.pixelSize: Theme.smallSize
        }
        background: Rectangle {
            radius: Theme.controlRadius
            color: Theme.notchControl
            border.color: Theme.notchDivider
        }
    }
}
