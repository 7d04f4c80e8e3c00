import QtQuick
import "Backdrop.js" as Backdrop

// A small panel over the notch's views, a menu or a picker. Open, it is drawn on the window's
// content item above everything else there, kept inside the window; a press outside it (which
// then goes on to what lies under it) or Escape closes it. Its `background` fills the panel and
// its `contentItem` sits inside the padding. Plain Qt Quick, so that the notch's views load no
// controls library.
Item {
    id: popup
    property real padding: 0
    // The room kept between the panel and the window's edges.
    property real margins: 0
    property Item background: null
    property Item contentItem: null
    // Where the panel was asked to be, on the window's content item, and which point of its top
    // edge goes there: 0 its left corner, 0.5 its centre, 1 its right corner.
    property point spot
    property real alignment: 0
    signal opened()
    signal closed()

    // Shows the panel centred over the top of `origin`.
    function openOver(origin) {
        show(origin, origin.width / 2, 0, 0.5);
    }

    // Shows the panel `gap` below `origin`, lined up with the edge its reading starts from: the
    // left in a left-to-right layout, the right in a mirrored one.
    function openBelow(origin, gap) {
        var mirrored = origin.LayoutMirroring.enabled;
        show(origin, mirrored ? origin.width : 0, origin.height + gap, mirrored ? 1 : 0);
    }

    function show(origin, x, y, alignment) {
        var window = origin.Window.window;
        if (!window)
            return;
        parent = window.contentItem;
        popup.alignment = alignment;
        spot = origin.mapToItem(parent, x, y);
        visible = true;
        panel.forceActiveFocus();
        opened();
    }

    function close() {
        if (!visible)
            return;
        visible = false;
        closed();
    }

    anchors.fill: parent
    visible: false
    z: 900

    onBackgroundChanged: Backdrop.place(background, panel)
    onContentItemChanged: {
        if (!contentItem)
            return;
        contentItem.parent = panel;
        contentItem.x = Qt.binding(() => popup.padding);
        contentItem.y = Qt.binding(() => popup.padding);
    }

    MouseArea {
        anchors.fill: parent
        // Takes the hover as well, so that nothing under an open panel shows it is hovered (a
        // tool tip, say).
        hoverEnabled: true
        onPressed: (mouse) => {
            mouse.accepted = false;
            popup.close();
        }
    }

    FocusScope {
        id: panel
        // Its size follows what it shows, which a positioner knows only once it has laid it out.
        x: Math.max(popup.margins, Math.min(popup.spot.x - popup.alignment * width,
                                            popup.width - width - popup.margins))
        y: Math.max(popup.margins, Math.min(popup.spot.y, popup.height - height - popup.margins))
        width: (popup.contentItem ? popup.contentItem.implicitWidth : 0) + 2 * popup.padding
        height: (popup.contentItem ? popup.contentItem.implicitHeight : 0) + 2 * popup.padding
        Keys.onEscapePressed: popup.close()
        // A press on the panel stays there instead of closing it.
        MouseArea {
            anchors.fill: parent
            z: -1
        }
    }
}
