import QtQuick
import "Backdrop.js" as Backdrop
import Navro

// The base of every control of Navro's own that acts when pressed, so that all of them work from
// the keyboard alike: Tab reaches it, Space, Return and Enter press it, and a focus ring shows
// while keyboard focus is on it. Keys it has no use for (the arrows) travel on to its containers,
// which may use them to move between their items, as the open notch does between its tabs.
//
// Like a Qt Quick Controls button, it lays out a `background` under its whole area and a
// `contentItem` inside its padding, and takes the focus when clicked; it is made of plain Qt Quick
// items, so that the views that use it load no controls library.
PressableItem {
    id: control
    property string text: ""
    property font font
    property Item background: null
    property Item contentItem: null
    property real padding: 0
    property real leftPadding: padding
    property real rightPadding: padding
    property real topPadding: padding
    property real bottomPadding: padding
    // The corner radius of the control's shape, for its focus ring.
    property alias focusRadius: ring.cornerRadius
    property alias inNotch: ring.inNotch

    readonly property bool hovered: hover.hovered
    readonly property bool down: mouse.pressed
    readonly property bool mirrored: LayoutMirroring.enabled
    signal clicked()

    implicitWidth: Math.max(background ? background.implicitWidth : 0,
                            (contentItem ? contentItem.implicitWidth : 0) + leftPadding + rightPadding)
    implicitHeight: Math.max(background ? background.implicitHeight : 0,
                             (contentItem ? contentItem.implicitHeight : 0) + topPadding + bottomPadding)
    activeFocusOnTab: true

    onBackgroundChanged: Backdrop.place(background, control)
    onContentItemChanged: {
        if (!contentItem)
            return;
        contentItem.parent = control;
        // Anchored rather than bound: content whose implicit size follows its width (wrapped
        // text) then settles as in a layout instead of looping through the control's size.
        contentItem.anchors.fill = control;
        contentItem.anchors.leftMargin = Qt.binding(() => control.leftPadding);
        contentItem.anchors.rightMargin = Qt.binding(() => control.rightPadding);
        contentItem.anchors.topMargin = Qt.binding(() => control.topPadding);
        contentItem.anchors.bottomMargin = Qt.binding(() => control.bottomPadding);
    }

    Keys.onSpacePressed: (event) => {
        if (!event.isAutoRepeat)
            control.clicked();
    }
    Keys.onReturnPressed: control.clicked()
    Keys.onEnterPressed: control.clicked()

    Accessible.role: Accessible.Button
    Accessible.name: text
    Accessible.focusable: true
    Accessible.onPressAction: control.clicked()

    HoverHandler {
        id: hover
        enabled: control.enabled
    }

    MouseArea {
        id: mouse
        anchors.fill: parent
        z: 1
        onPressed: control.forceActiveFocus(Qt.MouseFocusReason)
        onClicked: control.clicked()
    }

    FocusRing { id: ring }
}
