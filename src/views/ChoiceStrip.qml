import QtQuick

// A segmented choice: one of a few values, each with its label. model: [{value, label}].
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
            delegate: Rectangle {
                readonly property bool selected: strip.current === modelData.value
                width: Math.max(strip.itemMinimumWidth, label.implicitWidth + 24)
                height: strip.height - 4
                radius: Theme.controlRadius - 2
                color: selected ? Theme.cardBackground : (mouse.containsMouse ? Theme.buttonHover : "transparent")
                border.color: selected ? Theme.cardBorder : "transparent"
                Text {
                    id: label
                    anchors.centerIn: parent
                    text: modelData.label
                    color: Theme.text
                    font.family: Theme.fontFamily
                    font.pixelSize: Theme.smallSize + 1
                    font.weight: parent.selected ? Font.DemiBold : Font.Normal
                }
                MouseArea {
                    id: mouse
                    anchors.fill: parent
                    hoverEnabled: true
                    onClicked: strip.chosen(modelData.value)
                }
            }
        }
    }
}
