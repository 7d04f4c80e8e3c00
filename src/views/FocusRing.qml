import QtQuick

// The keyboard focus ring, drawn just outside its parent. By default it shows while its parent
// control holds focus that came from the keyboard (Tab, Shift+Tab, arrows), never after a click.
Rectangle {
    id: ring
    // The corner radius of what it surrounds; the ring's own follows it at its distance.
    property real cornerRadius: Theme.controlRadius
    // Inside the black notch the ring takes the notch's accent.
    property bool inNotch: false
    property bool shown: parent !== null && parent.visualFocus === true

    readonly property real reach: Theme.focusRingGap + Theme.focusRingWidth
    anchors.fill: parent
    anchors.margins: -reach
    radius: cornerRadius > 0 ? cornerRadius + reach : 0
    color: "transparent"
    border.width: Theme.focusRingWidth
    border.color: inNotch ? Theme.notchFocusRing : Theme.focusRing
    visible: shown
    z: 10
}
