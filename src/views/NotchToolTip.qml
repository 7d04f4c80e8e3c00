import QtQuick

// A short explanation shown above (or, at the window's top, below) the item it belongs to once
// the pointer has rested on it for a moment, or while the keyboard is on it. It is drawn on the
// window's content item, so a list that clips its rows does not clip it.
Rectangle {
    id: tip
    // The item it explains, and whether it should show now.
    required property Item target
    property bool wanted: false
    property string text: ""

    readonly property Item windowItem: target && target.Window.window ? target.Window.window.contentItem : null

    function place() {
        if (!windowItem)
            return;
        var spot = target.mapToItem(windowItem, (target.width - width) / 2, -height - 4);
        if (spot.y < 0)
            spot = target.mapToItem(windowItem, (target.width - width) / 2, target.height + 4);
        x = Math.round(Math.max(2, Math.min(spot.x, windowItem.width - width - 2)));
        y = Math.round(spot.y);
    }

    parent: windowItem
    z: 1000
    visible: false
    implicitWidth: label.implicitWidth + 12
    implicitHeight: label.implicitHeight + 8
    radius: Theme.controlRadius
    color: Theme.notchControl
    border.color: Theme.notchDivider

    onWantedChanged: {
        if (!wanted || text === "")
            visible = false;
        else
            delay.restart();
    }

    // Runs only while the pointer rests on the target.
    Timer {
        id: delay
        interval: 600
        onTriggered: {
            if (!tip.wanted)
                return;
            tip.place();
            tip.visible = true;
        }
    }

    Text {
        id: label
        anchors.centerIn: parent
        text: tip.text
        color: Theme.notchText
        font.family: Theme.fontFamily
        font.pixelSize: Theme.smallSize
    }
}
