import QtQuick

// An on/off switch in the windows' theme; a click, Space, Return and Enter flip it. The page acts
// on `toggled`, when `checked` already holds the new state; a binding on `checked` stays.
Pressable {
    id: control
    implicitWidth: 40
    implicitHeight: 24
    focusRadius: height / 2
    signal toggled()

    onClicked: {
        toggle();
        toggled();
    }

    Accessible.role: Accessible.CheckBox
    Accessible.checkable: true
    Accessible.checked: checked

    background: Rectangle {
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
}
