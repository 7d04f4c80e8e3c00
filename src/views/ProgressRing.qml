import QtQuick
import QtQuick.Shapes

// A thin ring: a dim track and, over it, the share done (0…1) in the tint. Drawn as shapes, not
// on a canvas, so that a ring that moves once a second costs a few strokes rather than a script
// and an image upload each time.
Item {
    id: ring
    property int size: 14
    property real progress: 0
    property color tint: Theme.notchAccent
    property real lineWidth: 2
    readonly property real share: Math.max(0, Math.min(1, progress))
    readonly property real radius: (size - lineWidth) / 2

    width: size
    height: size

    Shape {
        anchors.fill: parent
        antialiasing: true
        ShapePath {
            strokeColor: Theme.notchTertiaryText
            strokeWidth: ring.lineWidth
            fillColor: "transparent"
            PathAngleArc {
                centerX: ring.size / 2
                centerY: ring.size / 2
                radiusX: ring.radius
                radiusY: ring.radius
                startAngle: 0
                sweepAngle: 360
            }
        }
        ShapePath {
            // Nothing done draws nothing, not the dot a round cap would leave.
            strokeColor: ring.share > 0 ? ring.tint : "transparent"
            strokeWidth: ring.lineWidth
            fillColor: "transparent"
            capStyle: ShapePath.RoundCap
            PathAngleArc {
                centerX: ring.size / 2
                centerY: ring.size / 2
                radiusX: ring.radius
                radiusY: ring.radius
                startAngle: -90
                sweepAngle: 360 * ring.share
            }
        }
    }
}
