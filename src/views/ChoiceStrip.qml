import QtQuick

// A segmented choice: one of a few values, each with its label. model: [{value, label}]. Each
// segment is a control of its own for the keyboard (Tab to it, Space or Return to choose it).
Rectangle {
    id: strip
    property var model: []
    property string current: ""
    property int itemMinimumWidth: 72
    signal chosen(string value)

    implicitWidth: row.implicitWidth + 4
    implicitHeight: 30
    radius: Theme.controlRadius
    color: Theme.buttonBackground

    Row {
        id: row
        anchors.centerIn: parent
        spacing: 2
        Repeater {
            model: strip.model
            delegate: Pressable {
                id: segment
                readonly property bool selected: strip.current === modelData.value
                width: Math.max(strip.itemMinimumWidth, label.implicitWidth + 24)
                height: strip.height - 4
                text: modelData.label
                focusRadius: Theme.controlRadius - 2
                Accessible.role: Accessible.RadioButton
                Accessible.checked: selected
                onClicked: strip.chosen(modelData.value)

                background: Rectangle {
                    radius: Theme.controlRadius - 2
                    color: segment.selected ? Theme.cardBackground
                                            : (segment.hovered ? Theme.buttonHover : "transparent")
                    border.color: segment.selected ? Theme.cardBorder : "transparent"
                }
                contentItem: Text {
                    id: label
                    text: modelData.label
                    color: Theme.text
                    font.family: Theme.fontFamily
                    font.pixelSize: Theme.smallSize + 1
                    font.weight: segment.selected ? Font.DemiBold : Font.Normal
                    horizontalAlignment: Text.AlignHCenter
                    verticalAlignment: Text.AlignVCenter
                }
            }
        }
    }
}
