import QtQuick

// A small menu on the black notch: a list of choices, one of them perhaps ticked. Up and Down move,
// Enter or Space chooses, Escape dismisses. entries: [{title, value, checked, destructive}].
NotchPopup {
    id: popup
    property var entries: []
    property int currentIndex: 0
    signal chosen(var value)

    property real menuWidth: 120

    onEntriesChanged: {
        var widest = 120;
        for (var i = 0; i < entries.length; ++i) {
            metrics.text = entries[i].title;
            widest = Math.max(widest, metrics.advanceWidth);
        }
        menuWidth = Math.ceil(widest) + 44;
    }

    padding: 4

    onOpened: {
        currentIndex = 0;
        for (var i = 0; i < entries.length; ++i)
            if (entries[i].checked)
                currentIndex = i;
        list.forceActiveFocus();
    }

    function choose(index) {
        if (index < 0 || index >= entries.length)
            return;
        var value = entries[index].value;
        close();
        chosen(value);
    }

    TextMetrics {
        id: metrics
        font.family: Theme.fontFamily
        font.pixelSize: Theme.bodySize - 1
    }

    background: Rectangle {
        color: Theme.notchControl
        radius: Theme.controlRadius + 2
        border.color: Theme.notchControlHover
    }

    contentItem: Column {
        id: list
        focus: true
        LayoutMirroring.enabled: settings.isArabic
        LayoutMirroring.childrenInherit: true
        Keys.onUpPressed: popup.currentIndex = (popup.currentIndex + popup.entries.length - 1) % popup.entries.length
        Keys.onDownPressed: popup.currentIndex = (popup.currentIndex + 1) % popup.entries.length
        Keys.onReturnPressed: popup.choose(popup.currentIndex)
        Keys.onEnterPressed: popup.choose(popup.currentIndex)
        Keys.onSpacePressed: popup.choose(popup.currentIndex)
        Keys.onTabPressed: popup.currentIndex = (popup.currentIndex + 1) % popup.entries.length
        Keys.onBacktabPressed: popup.currentIndex = (popup.currentIndex + popup.entries.length - 1) % popup.entries.length

        Repeater {
            model: popup.entries
            delegate: Rectangle {
                required property var modelData
                required property int index
                width: popup.menuWidth
                height: 24
                radius: Theme.controlRadius
                color: index === popup.currentIndex ? Theme.notchSelection : "transparent"

                Icon {
                    id: tick
                    anchors.left: parent.left
                    anchors.leftMargin: 6
                    anchors.verticalCenter: parent.verticalCenter
                    visible: modelData.checked === true
                    symbol: "checkmark.circle.fill"
                    color: Theme.notchAccent
                    size: 13
                }
                Text {
                    anchors.left: parent.left
                    anchors.leftMargin: 26
                    anchors.right: parent.right
                    anchors.rightMargin: 8
                    anchors.verticalCenter: parent.verticalCenter
                    text: modelData.title
                    color: modelData.destructive === true ? Theme.overdue : Theme.notchText
                    font.family: Theme.fontFamily
                    font.pixelSize: Theme.bodySize - 1
                    elide: Text.ElideRight
                    horizontalAlignment: Text.AlignLeft
                }
                MouseArea {
                    anchors.fill: parent
                    hoverEnabled: true
                    onEntered: popup.currentIndex = index
                    onClicked: popup.choose(index)
                }
                Accessible.role: Accessible.MenuItem
                Accessible.name: modelData.title
            }
        }
    }
}
