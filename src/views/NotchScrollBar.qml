import QtQuick

// A thin scroll bar along the trailing edge of a list or column on the notch. It stays in sight
// whenever there is more to see; its thumb can be dragged, and a press beside the thumb moves a
// page towards the press.
Item {
    id: bar
    required property Flickable flickable
    readonly property real shownPart: flickable.visibleArea.heightRatio
    readonly property real scrollRange: Math.max(0, flickable.contentHeight - flickable.height)
    readonly property real track: height - 4
    readonly property real thumbLength: Math.max(0.1, shownPart) * track
    // How far down the content is scrolled, from 0 to 1.
    readonly property real progress: scrollRange > 0
        ? Math.max(0, Math.min(1, (flickable.contentY - flickable.originY) / scrollRange)) : 0

    function scrollTo(thumbTop) {
        var free = track - thumbLength;
        var part = free > 0 ? Math.max(0, Math.min(1, thumbTop / free)) : 0;
        flickable.contentY = flickable.originY + part * scrollRange;
    }

    // Over the list rather than inside its moving content.
    parent: flickable
    anchors { top: flickable.top; bottom: flickable.bottom; right: flickable.right }
    width: thumb.width + 4
    visible: shownPart < 1
    z: 10

    ScrollThumb {
        id: thumb
        inNotch: true
        hovered: hover.hovered
        pressed: dragArea.pressed
        x: 2
        y: 2 + bar.progress * (bar.track - height)
        height: bar.thumbLength
    }

    HoverHandler { id: hover }

    MouseArea {
        id: dragArea
        property real grab: -1
        anchors.fill: parent
        preventStealing: true
        onPressed: (mouse) => {
            var top = thumb.y - 2;
            if (mouse.y >= thumb.y && mouse.y <= thumb.y + thumb.height) {
                grab = mouse.y - top;
                return;
            }
            grab = -1;
            bar.scrollTo(mouse.y < thumb.y ? top - bar.thumbLength : top + bar.thumbLength);
        }
        onPositionChanged: (mouse) => {
            if (grab >= 0)
                bar.scrollTo(mouse.y - grab);
        }
    }
}
