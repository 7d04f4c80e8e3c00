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
    // Work whose size is unknown: a quarter arc going round instead of a share.
    property bool indeterminate: false
    readonly property real share: Math.max(0, Math.min(1, progress))
    readonly property real radius: (size - lineWidth) / 2

    width: size
    height: size
    onIndeterminateChanged: if (!indeterminate) rotation = 0

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
            strokeColor: ring.indeterminate || ring.share > 0 ? ring.tint : "transparent"
            strokeWidth: ring.lineWidth
            fillColor: "transparent"
            capStyle: ShapePath.RoundCap
            PathAngleArc {
                centerX: ring.size / 2
                centerY: ring.size / 2
                radiusX: ring.radius
                radiusY: ring.radius
                startAngle: -90
                sweepAngle: ring.indeterminate ? 90 : 360 * ring.share
            }
        }
    }

    // Turns only while it is on screen and has nothing better to show.
    RotationAnimator on rotation {
        running: ring.indeterminate && ring.visible
        from: 0
        to: 360
        duration: 1200
        loops: Animation.Infinite
    }
}
