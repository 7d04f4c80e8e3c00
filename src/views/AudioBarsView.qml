import QtQuick

// Level bars, one per level (0…1). Without levels it draws the bars at rest: short and still,
// saying "music" without pretending to follow the sound.
Row {
    id: bars
    property var levels: []
    property color tint: Theme.music
    readonly property int count: 4
    spacing: 2
    layoutDirection: Qt.LeftToRight

    Repeater {
        model: bars.count
        delegate: Item {
            width: 3
            height: bars.height
            Rectangle {
                anchors.verticalCenter: parent.verticalCenter
                width: parent.width
                radius: width / 2
                color: bars.tint
                readonly property real level: bars.levels.length > index ? bars.levels[index] : 0.25
                height: Math.max(width, parent.height * Math.max(0, Math.min(1, level)))
                Behavior on height { NumberAnimation { duration: 90 } }
            }
        }
    }
}
