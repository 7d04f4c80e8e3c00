import QtQuick
import QtQuick.Controls

// A thin scroll bar in the theme's colours. It stays in sight whenever there is more to see, so a
// page or list that goes on below its edge says so.
ScrollBar {
    id: bar
    // On the black notch the thumb is always light, whatever the windows' theme.
    property bool inNotch: false
    policy: size < 1 ? ScrollBar.AlwaysOn : ScrollBar.AlwaysOff
    padding: 2
    minimumSize: 0.1

    contentItem: Rectangle {
        implicitWidth: bar.hovered || bar.pressed ? 8 : 6
        implicitHeight: implicitWidth
        radius: width / 2
        color: inNotch ? Theme.notchScrollBar : Theme.scrollBar
        opacity: bar.pressed ? 1 : (bar.hovered ? 0.9 : 0.7)
        Behavior on implicitWidth { NumberAnimation { duration: Theme.fadeDuration } }
    }
    background: Item {}
}
