import QtQuick

// A pill-shaped button on the black notch, with an optional symbol before its text. Tab reaches
// it, Space or Enter presses it, and a ring shows where the keyboard is.
Pressable {
    id: control
    property string symbol: ""
    // Filled with the accent: the main action, or the chosen one of a group.
    property bool primary: false
    // The symbol in a colour of its own (a priority's flag), else in the text's.
    property color symbolColor: label.color
    // Shown when the pointer rests on the button, for one that says little or nothing itself.
    property string toolTip: ""

    implicitHeight: 30
    // A symbol alone makes a round button.
    leftPadding: text === "" ? 8 : 12
    rightPadding: text === "" ? 8 : 12
    font.family: Theme.fontFamily
    font.pixelSize: Theme.smallSize + 1
    font.weight: primary ? Font.DemiBold : Font.Normal

    inNotch: true
    focusRadius: height / 2

    contentItem: Item {
        implicitWidth: content.implicitWidth
        implicitHeight: content.implicitHeight
        Row {
            id: content
            anchors.centerIn: parent
            spacing: 5
            layoutDirection: control.mirrored ? Qt.RightToLeft : Qt.LeftToRight
            Icon {
                visible: control.symbol !== ""
                anchors.verticalCenter: parent.verticalCenter
                symbol: control.symbol
                color: control.symbolColor
                size: 13
            }
            Text {
                id: label
                visible: control.text !== ""
                anchors.verticalCenter: parent.verticalCenter
                text: control.text
                font: control.font
                color: control.primary ? Theme.textOnAccent : Theme.notchText
            }
        }
    }
    background: Rectangle {
        radius: height / 2
        color: control.primary
               ? (control.down ? Qt.darker(Theme.notchAccentFill, 1.2) : Theme.notchAccentFill)
               : (control.down ? Theme.notchSelection
                               : (control.hovered ? Theme.notchControlHover : Theme.notchControl))
        opacity: control.enabled ? 1 : 0.5
    }

    Loader {
        active: control.toolTip !== ""
        sourceComponent: NotchToolTip {
            target: control
            wanted: control.hovered
            text: control.toolTip
        }
    }
}
