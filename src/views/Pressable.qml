import QtQuick
import QtQuick.Controls

// The base of every control of Navro's own that acts when pressed, so that all of them work from
// the keyboard alike: Tab reaches it, Space, Return and Enter press it, and a focus ring shows
// while keyboard focus is on it. Keys it has no use for (the arrows) travel on to its containers,
// which may use them to move between their items, as the open notch does between its tabs.
AbstractButton {
    id: control
    // The corner radius of the control's shape, for its focus ring.
    property alias focusRadius: ring.cornerRadius
    property alias inNotch: ring.inNotch

    focusPolicy: Qt.StrongFocus
    hoverEnabled: true
    padding: 0

    Keys.onReturnPressed: control.clicked()
    Keys.onEnterPressed: control.clicked()

    FocusRing { id: ring }
}
