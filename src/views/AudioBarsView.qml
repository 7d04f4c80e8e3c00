import QtQuick

// Level bars, one per level (0…1). With live levels they follow the sound; without them they
// move on their own while music plays (never fully collapsed), and rest short and still while it
// does not.
Row {
    id: bars
    property var levels: []
    property bool playing: false
    property color tint: Theme.music
    readonly property int count: 4
    readonly property bool live: levels.length > 0
    // Seconds, advanced only while the synthetic motion is drawn.
    property real time: 0
    spacing: 2
    layoutDirection: Qt.LeftToRight

    Timer {
        interval: 33
        repeat: true
        running: bars.visible && bars.playing && !bars.live
        onTriggered: bars.time = Date.now() / 1000
    }

    function level(index) {
        if (!playing)
            return 0.25;
        if (live)
            return levels.length > index ? levels[index] * 0.86 + 0.14 : 0.14;
        return Math.abs(Math.sin(time * ((index % 4) * 1.7 + 5.0) + index)) * 0.65 + 0.35;
    }

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
                height: Math.max(width, parent.height * Math.max(0, Math.min(1, bars.level(index))))
                Behavior on height { NumberAnimation { duration: 90 } }
            }
        }
    }
}
