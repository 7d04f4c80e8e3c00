import QtQuick

// One tab of the open notch's tab bar: its symbol above its title.
Pressable {
    id: button
    property string tabId: ""
    property string symbol: "circle"
    property string title: ""
    property bool selected: false

    objectName: "tab_" + tabId
    text: title
    inNotch: true
    focusRadius: Theme.controlRadius + 3
    Accessible.role: Accessible.PageTab
    Accessible.selected: selected

    background: Rectangle {
        radius: Theme.controlRadius + 3
        color: button.selected ? Theme.notchSelection
                               : (button.hovered ? Theme.notchControl : "transparent")
        Behavior on color { ColorAnimation { duration: Theme.fadeDuration } }
    }

    contentItem: Item {
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
    }

    HoverHandler { cursorShape: Qt.PointingHandCursor }
}
