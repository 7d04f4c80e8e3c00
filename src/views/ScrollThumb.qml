import QtQuick

// The thumb of the views' scroll bars: thin, a little wider and stronger under the pointer.
Rectangle {
    // On the black notch the thumb is always light, whatever the windows' theme.
    property bool inNotch: false
    property bool hovered: false
    property bool pressed: false

    implicitWidth: hovered || pressed ? 8 : 6
    implicitHeight: implicitWidth
    radius: width / 2
    color: inNotch ? Theme.notchScrollBar : Theme.scrollBar
    opacity: pressed ? 1 : (hovered ? 0.9 : 0.7)
    Behavior on implicitWidth { NumberAnimation { duration: Theme.fadeDuration } }
}
