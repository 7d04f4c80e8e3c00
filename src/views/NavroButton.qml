import QtQuick

// A push button of the windows: filled with the accent when primary, quiet otherwise.
Pressable {
    id: control
    property bool primary: false
    property string symbol: ""

    implicitWidth: content.implicitWidth + leftPadding + rightPadding
    implicitHeight: 32
    leftPadding: 14
    rightPadding: 14
    font.family: Theme.fontFamily
    font.pixelSize: Theme.bodySize
    font.weight: primary ? Font.DemiBold : Font.Normal

    contentItem: Item {
        implicitWidth: content.implicitWidth
        Row {
            id: content
            anchors.centerIn: parent
            spacing: 6
            layoutDirection: control.mirrored ? Qt.RightToLeft : Qt.LeftToRight
            Icon {
                visible: control.symbol !== ""
                anchors.verticalCenter: parent.verticalCenter
                symbol: control.symbol
                color: label.color
                size: 14
            }
            Text {
                id: label
                anchors.verticalCenter: parent.verticalCenter
                text: control.text
                font: control.font
                color: control.primary ? Theme.textOnAccent : Theme.text
            }
        }
    }
    background: Rectangle {
        radius: Theme.controlRadius
        color: control.primary
               ? (control.down ? Qt.darker(Theme.accent, 1.15) : Theme.accent)
               : (control.down ? Theme.selection : (control.hovered ? Theme.buttonHover : Theme.buttonBackground))
        opacity: control.enabled ? 1 : 0.5
    }
}
