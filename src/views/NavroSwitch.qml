import QtQuick
import QtQuick.Controls

// An on/off switch in the windows' theme; Space, Return and Enter flip it from the keyboard.
Switch {
    id: control
    padding: 0
    implicitWidth: 40
    implicitHeight: 24
    text: ""
    property alias inNotch: ring.inNotch

    // Toggled, as a click would: the page acts on onToggled.
    function flip() {
        toggle();
        toggled();
    }
    Keys.onReturnPressed: flip()
    Keys.onEnterPressed: flip()

    indicator: Rectangle {
        implicitWidth: 40
        implicitHeight: 24
        x: control.mirrored ? 0 : control.width - width
        y: (control.height - height) / 2
        radius: height / 2
        color: control.checked ? Theme.accent : Theme.buttonBackground
        border.color: control.checked ? Theme.accent : Theme.controlOutline
        opacity: control.enabled ? 1 : 0.5
        Behavior on color { ColorAnimation { duration: Theme.fadeDuration } }

        Rectangle {
            readonly property real travel: parent.width - width - 4
            x: 2 + (control.checked !== control.mirrored ? travel : 0)
            anchors.verticalCenter: parent.verticalCenter
            width: 20
            height: 20
            radius: 10
            color: Theme.knob
            border.color: Theme.knobBorder
            Behavior on x { NumberAnimation { duration: Theme.fadeDuration; easing.type: Easing.OutCubic } }
        }
    }
    contentItem: Item {}

    FocusRing {
        id: ring
        cornerRadius: control.height / 2
    }
}
