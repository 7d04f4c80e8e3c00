import QtQuick

// A small pill on the black notch: one choice of a filter, or a quiet action. It takes keyboard
// focus with Tab and acts on Space or Enter.
Rectangle {
    id: chip
    property string text: ""
    property string symbol: ""
    property bool selected: false
    // A choice (a filter) rather than an action.
    property bool checkable: false
    property color textColor: Theme.notchText
    signal activated()

    implicitWidth: label.implicitWidth + (symbol !== "" ? 18 : 0) + 18
    implicitHeight: 24
    radius: height / 2
    color: selected ? Theme.notchSelection
                    : (mouse.containsMouse ? Theme.notchControlHover : Theme.notchControl)
    border.width: activeFocus ? Theme.focusRingWidth : 0
    border.color: Theme.notchFocusRing
    activeFocusOnTab: true

    Accessible.role: Accessible.Button
    Accessible.name: text
    Accessible.checkable: checkable
    Accessible.checked: selected
    Keys.onSpacePressed: activated()
    Keys.onReturnPressed: activated()
    Keys.onEnterPressed: activated()

    Row {
        anchors.centerIn: parent
        spacing: 4
        Icon {
            visible: chip.symbol !== ""
            anchors.verticalCenter: parent.verticalCenter
            symbol: chip.symbol
            color: label.color
            size: 12
        }
        Text {
            id: label
            anchors.verticalCenter: parent.verticalCenter
            text: chip.text
            color: chip.selected ? Theme.notchText : chip.textColor
            font.family: Theme.fontFamily
            font.pixelSize: Theme.smallSize
            font.weight: chip.selected ? Font.DemiBold : Font.Normal
        }
    }

    MouseArea {
        id: mouse
        anchors.fill: parent
        hoverEnabled: true
        cursorShape: Qt.PointingHandCursor
        onClicked: chip.activated()
    }
}
