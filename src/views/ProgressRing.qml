import QtQuick

// A thin ring: a dim track and, over it, the share done (0…1) in the tint.
Canvas {
    id: ring
    property int size: 14
    property real progress: 0
    property color tint: Theme.notchAccent
    property real lineWidth: 2

    width: size
    height: size
    renderStrategy: Canvas.Cooperative
    onProgressChanged: requestPaint()
    onTintChanged: requestPaint()
    onPaint: {
        var ctx = getContext("2d");
        var r = (width - lineWidth) / 2;
        ctx.reset();
        ctx.lineWidth = lineWidth;
        ctx.strokeStyle = Theme.notchTertiaryText;
        ctx.beginPath();
        ctx.arc(width / 2, height / 2, r, 0, 2 * Math.PI);
        ctx.stroke();
        var share = Math.max(0, Math.min(1, progress));
        if (share > 0) {
            ctx.strokeStyle = tint;
            ctx.lineCap = "round";
            ctx.beginPath();
            ctx.arc(width / 2, height / 2, r, -Math.PI / 2, -Math.PI / 2 + share * 2 * Math.PI);
            ctx.stroke();
        }
    }
}
