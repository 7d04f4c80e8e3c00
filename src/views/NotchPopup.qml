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
    // Where the panel was asked to be, on the window's content item: its top-left corner, or its
    // top centre when `centred`.
    property point spot
    property bool centred: false
    signal opened()
    signal closed()

    // Shows the panel with its top-left corner at (x, y) of `origin`; with `x` left out, centred
    // over `origin` at `y`.
    function openAt(origin, x, y) {
        var window = origin.Window.window;
        if (!window)
            return;
        parent = window.contentItem;
        centred = x === undefined;
        spot = origin.mapToItem(parent, centred ? origin.width / 2 : x, y);
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
        onPressed: (mouse) => {
            mouse.accepted = false;
            popup.close();
        }
    }

    FocusScope {
        id: panel
        // Its size follows what it shows, which a positioner knows only once it has laid it out.
        x: Math.max(popup.margins, Math.min(popup.spot.x - (popup.centred ? width / 2 : 0),
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
