import QtQuick
import QtQuick.Shapes

// The last minute of one figure (values 0…1, oldest first) as a line over a faint fill, filling
// the graph's width from the trailing end so the newest value stays in the same place.
Item {
    id: graph
    property var values: []
    property int slots: 30
    property color tint: Theme.accent

    readonly property var points: {
        const result = [];
        const step = width / Math.max(1, slots - 1);
        const first = slots - values.length;
        for (let i = 0; i < values.length; ++i) {
            const value = Math.max(0, Math.min(1, values[i]));
            result.push(Qt.point((first + i) * step, height - value * (height - 1)));
        }
        return result;
    }

    Rectangle {
        anchors.fill: parent
        radius: 3
        color: Qt.rgba(graph.tint.r, graph.tint.g, graph.tint.b, 0.08)
    }
    Shape {
        anchors.fill: parent
        visible: graph.points.length > 1
        antialiasing: true
        ShapePath {
            strokeColor: graph.tint
            strokeWidth: 1.5
            fillColor: "transparent"
            PathPolyline { path: graph.points }
        }
    }
}
