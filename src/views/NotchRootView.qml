import QtQuick
import QtQuick.Window

// The whole content of the notch window: a black notch hanging from the top edge of the screen,
// closed (with the current activity at its sides) or open (the tabbed panel). The window is
// fixed in size and transparent; only the notch inside it moves.
Item {
    id: root
    width: Theme.openWidth + 2 * Theme.shadowPadding
    height: Theme.openHeight + Theme.shadowPadding

    LayoutMirroring.enabled: settings.isArabic
    LayoutMirroring.childrenInherit: true

    readonly property bool isOpen: notch.isOpen
    readonly property var activity: notch.activity
    readonly property string activityKind: activity && activity.kind ? activity.kind : ""
    // The view model's rectangles are global; the window's own position turns them into ours,
    // so the drawn notch and the area that takes the pointer are the same pixels.
    readonly property int originX: Window.window ? Window.window.x : 0
    readonly property int originY: Window.window ? Window.window.y : 0
    readonly property rect target: isOpen ? notch.openRect : notch.closedRect
    // The notch's moves animate once it is in place: while the view is built its window's
    // position is not known yet, and the first placement must not slide in from the corner.
    property bool animates: false
    Component.onCompleted: Qt.callLater(() => root.animates = true)

    NotchShape {
        id: notchShape
        objectName: "notchShape"
        y: root.target.y - root.originY
        x: root.target.x - root.originX
        width: root.target.width
        height: root.target.height
        earRadius: root.isOpen ? Theme.openEarRadius : Theme.closedEarRadius
        bottomRadius: root.isOpen ? Theme.openBottomRadius : Theme.closedBottomRadius

        Behavior on x { enabled: root.animates; NotchMotion { opening: root.isOpen } }
        Behavior on width { enabled: root.animates; NotchMotion { opening: root.isOpen } }
        Behavior on height { enabled: root.animates; NotchMotion { opening: root.isOpen } }
        Behavior on earRadius { enabled: root.animates; NotchMotion { opening: root.isOpen } }
        Behavior on bottomRadius { enabled: root.animates; NotchMotion { opening: root.isOpen } }

        // Files dragged over the notch: it widens and opens on the shelf, which takes the drop.
        // Dropped anywhere but on a section of the shelf, they land in the first section.
        DropArea {
            id: notchDrop
            objectName: "notchDropArea"
            anchors.fill: parent
            keys: ["text/uri-list"]
            property bool openedForDrag: false
            onEntered: {
                notch.isDropTargeted = true
                leftWithoutDrop.stop()
                if (!notch.isOpen) {
                    openedForDrag = true
                    notch.open(false, false)
                }
                notch.selectedTab = "shelf"
            }
            onExited: {
                notch.isDropTargeted = false
                leftWithoutDrop.restart()
            }
            onDropped: (event) => {
                notch.isDropTargeted = false
                openedForDrag = false
                shelf.addUrls("", event.urls)
                event.acceptProposedAction()
            }
            // A drag that only passed over the notch (or moved on to a section of the shelf, which
            // marks the notch again) leaves it as it found it.
            Connections {
                target: shelf
                function onSectionsChanged() { notchDrop.openedForDrag = false }
            }
            Timer {
                id: leftWithoutDrop
                interval: 400
                onTriggered: {
                    if (notchDrop.openedForDrag && !notch.isDropTargeted)
                        notch.close()
                    notchDrop.openedForDrag = notch.isDropTargeted && notchDrop.openedForDrag
                }
            }
        }

        ClosedActivityView {
            anchors.fill: parent
            activity: root.activity
            opacity: root.isOpen ? 0 : 1
            visible: opacity > 0
            Behavior on opacity { NumberAnimation { duration: Theme.fadeDuration } }
        }

        // The open notch is built when it is wanted, not before the closed notch is on screen,
        // and let go after a rest: named by its file, its views and the controls they use load
        // with it. The pointer resting on the notch starts building it while the hover delay
        // runs; opening finishes the build at once.
        Loader {
            id: openView
            objectName: "openNotchLoader"
            anchors.horizontalCenter: parent.horizontalCenter
            anchors.top: parent.top
            // Narrower on a small screen: the tabs and their content reflow.
            width: notch.openRect.width
            height: notch.openRect.height
            active: notch.openViewWanted
            asynchronous: !root.isOpen
            source: "OpenNotchView.qml"
            focus: true
            opacity: root.isOpen ? 1 : 0
            visible: opacity > 0
            enabled: root.isOpen
            Behavior on opacity {
                NumberAnimation {
                    duration: root.isOpen ? Theme.openDuration : Theme.fadeDuration / 2
                    easing.type: Easing.InQuad
                }
            }
        }
    }
}
