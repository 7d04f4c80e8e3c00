import QtQuick

// The notch's outline: a body hanging from the top edge with rounded lower corners, and two small
// outward curves ("ears") where it meets the edge, so that it reads as part of the screen's frame
// rather than a box laid on it. The item's own width and height are the body's; the ears reach
// earRadius beyond it on each side.
Item {
    id: shape
    property real earRadius: Theme.closedEarRadius
    property real bottomRadius: Theme.closedBottomRadius
    property color fill: Theme.notchFill
    default property alias content: body.data

    Rectangle {
        id: body
        anchors.fill: parent
        color: shape.fill
        radius: Math.min(shape.bottomRadius, height / 2, width / 2)
        antialiasing: true
        clip: true

        // Squares off the top corners: only the lower ones are rounded.
        Rectangle {
            z: -1
            anchors { left: parent.left; right: parent.right; top: parent.top }
            height: parent.radius
            color: shape.fill
        }
    }

    Repeater {
        model: 2
        delegate: Canvas {
            readonly property bool leading: index === 0
            width: Math.ceil(shape.earRadius)
            height: Math.ceil(shape.earRadius)
            x: leading ? -width : shape.width
            y: 0
            visible: shape.earRadius >= 1
            renderStrategy: Canvas.Cooperative
            onWidthChanged: requestPaint()
            onPaint: {
                var ctx = getContext("2d");
                var r = width;
                ctx.reset();
                ctx.fillStyle = shape.fill;
                ctx.beginPath();
                if (leading) {
                    // Filled between the top edge, the body's side and a quarter circle around
                    // the ear's lower outer corner.
                    ctx.moveTo(0, 0);
                    ctx.lineTo(r, 0);
                    ctx.lineTo(r, r);
                    ctx.arc(0, r, r, 0, -Math.PI / 2, true);
                } else {
                    ctx.moveTo(r, 0);
                    ctx.lineTo(0, 0);
                    ctx.lineTo(0, r);
                    ctx.arc(r, r, r, Math.PI, -Math.PI / 2, false);
                }
                ctx.closePath();
                ctx.fill();
            }
        }
    }
}
