import QtQuick

// Level bars that move with the system's sound while music plays: the live levels once the
// capture has heard something, their own motion until then (or without a capture), and short,
// still bars while nothing plays. Frames come every 1/30 s, and only while playing.
Row {
    id: bars
    property bool isPlaying: false
    property color color: Theme.music
    property int count: 4
    property real barWidth: 3
    // This frame's live levels (empty when there are none) and its time in seconds.
    property var live: []
    property real time: 0
    spacing: 2
    layoutDirection: Qt.LeftToRight

    function nextFrame() {
        live = typeof audioBars !== "undefined" && audioBars ? audioBars.liveLevels(count) : [];
        time = Date.now() / 1000;
    }
    onIsPlayingChanged: if (!isPlaying) live = []

    Timer {
        interval: 33
        repeat: true
        triggeredOnStart: true
        running: bars.visible && bars.isPlaying
        onTriggered: bars.nextFrame()
    }

    function level(index) {
        if (!isPlaying)
            return 0.25;
        if (index < live.length)
            return live[index] * 0.86 + 0.14;
        return Math.abs(Math.sin(time * ((index % 4) * 1.7 + 5.0) + index)) * 0.65 + 0.35;
    }

    Repeater {
        model: bars.count
        delegate: Item {
            width: bars.barWidth
            height: bars.height
            Rectangle {
                anchors.verticalCenter: parent.verticalCenter
                width: parent.width
                radius: width / 2
                color: bars.color
                // No animation between frames: the levels are smoothed already, and an animation
                // would redraw at the display's rate instead of 30 times a second.
                height: Math.max(width, parent.height * Math.max(0, Math.min(1, bars.level(index))))
            }
        }
    }
}
