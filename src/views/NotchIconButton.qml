import QtQuick

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

    NotchToolTip {
        target: button
        wanted: button.hovered || button.visualFocus
        text: button.toolTip
    }
}
