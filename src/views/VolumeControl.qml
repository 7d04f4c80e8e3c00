import QtQuick

// The system volume: the mute button, its symbol by level, and a slider that fills from the
// leading edge. The slider takes keyboard focus and moves by 5 % with the arrow keys; dragging
// it up unmutes. Greyed out while the output has no volume to set.
Row {
    id: control
    readonly property bool arabic: settings.isArabic
    property color tint: Theme.music
    property real sliderWidth: 160
    readonly property bool available: typeof systemVolume !== "undefined" && systemVolume !== null
    readonly property real volume: available ? systemVolume.volume : 0
    readonly property bool muted: available && systemVolume.isMuted
    readonly property bool enabled_: available && systemVolume.canSetVolume
    spacing: 8
    opacity: enabled_ ? 1 : 0.4

    function symbolFor(level, isMuted) {
        if (isMuted)
            return "speaker.slash.fill";
        if (level <= 0)
            return "speaker.fill";
        return level < 0.5 ? "speaker.wave.1.fill" : "speaker.wave.3.fill";
    }

    Item {
        id: muteButton
        objectName: "muteButton"
        anchors.verticalCenter: parent.verticalCenter
        width: 28
        height: 28
        activeFocusOnTab: control.enabled_
        readonly property string label: control.muted ? (control.arabic ? "إلغاء الكتم" : "Unmute")
                                                       : (control.arabic ? "كتم الصوت" : "Mute")
        Keys.onSpacePressed: systemVolume.toggleMute()
        Keys.onReturnPressed: systemVolume.toggleMute()
        Accessible.role: Accessible.Button
        Accessible.name: label
        Accessible.onPressAction: systemVolume.toggleMute()

        NotchIconButton {
            anchors.fill: parent
            size: 28
            symbol: control.symbolFor(slider.shownValue, control.muted)
            toolTip: muteButton.label
            enabled: control.enabled_
            onClicked: systemVolume.toggleMute()
        }
        Rectangle {
            anchors.fill: parent
            anchors.margins: -3
            radius: width / 2
            color: "transparent"
            border.width: 2
            border.color: control.tint
            visible: muteButton.activeFocus
        }
    }

    Item {
        id: slider
        objectName: "volumeSlider"
        anchors.verticalCenter: parent.verticalCenter
        width: control.sliderWidth
        height: 16
        property bool dragging: false
        property real dragValue: 0
        // While dragging the slider shows the hand, not the server's answers to earlier moves.
        readonly property real shownValue: dragging ? dragValue : control.volume
        activeFocusOnTab: control.enabled_
        Accessible.role: Accessible.Slider
        Accessible.name: control.arabic ? "مستوى الصوت" : "Volume"

        function valueAt(x) {
            var share = Math.max(0, Math.min(1, x / width));
            return control.arabic ? 1 - share : share;
        }
        function stepBy(amount) {
            systemVolume.set(Math.max(0, Math.min(1, control.volume + amount)));
        }
        Keys.onRightPressed: stepBy(control.arabic ? -0.05 : 0.05)
        Keys.onLeftPressed: stepBy(control.arabic ? 0.05 : -0.05)
        Keys.onUpPressed: stepBy(0.05)
        Keys.onDownPressed: stepBy(-0.05)

        Rectangle {
            anchors { left: parent.left; right: parent.right; verticalCenter: parent.verticalCenter }
            height: sliderMouse.containsMouse || slider.dragging || slider.activeFocus ? 6 : 4
            radius: height / 2
            color: Theme.notchControlHover
            Rectangle {
                objectName: "volumeFill"
                // From the leading edge: the left, or the right in Arabic.
                x: control.arabic ? parent.width - width : 0
                anchors { top: parent.top; bottom: parent.bottom }
                width: parent.width * slider.shownValue
                radius: parent.radius
                color: control.muted ? Theme.notchSecondaryText : control.tint
            }
        }
        Rectangle {
            x: (control.arabic ? 1 - slider.shownValue : slider.shownValue) * slider.width - width / 2
            anchors.verticalCenter: parent.verticalCenter
            width: 12
            height: 12
            radius: 6
            color: Theme.notchText
            border.width: slider.activeFocus ? 2 : 0
            border.color: control.tint
            visible: control.enabled_ && (sliderMouse.containsMouse || slider.dragging || slider.activeFocus)
        }
        MouseArea {
            id: sliderMouse
            anchors.fill: parent
            anchors.topMargin: -4
            anchors.bottomMargin: -4
            enabled: control.enabled_
            hoverEnabled: true
            cursorShape: Qt.PointingHandCursor
            onPressed: function(mouse) {
                slider.dragging = true;
                slider.dragValue = slider.valueAt(mouse.x);
                systemVolume.set(slider.dragValue);
            }
            onPositionChanged: function(mouse) {
                if (!slider.dragging)
                    return;
                slider.dragValue = slider.valueAt(mouse.x);
                systemVolume.set(slider.dragValue);
            }
            onReleased: slider.dragging = false
            onCanceled: slider.dragging = false
        }
    }
}
