import QtQuick
import QtQuick.Layouts

// A two-digit number on the notch (an hour, a minute): typed, or stepped with Up and Down, which
// wrap around at the ends.
NotchTextField {
    id: field
    property int value: 0
    property int from: 0
    property int to: 59
    property string accessibleName: ""

    // While the user types, the text is theirs; otherwise it shows the value.
    property bool typing: false

    function step(by) {
        var span = to - from + 1;
        value = from + ((value - from + by) % span + span) % span;
    }
    function showValue() {
        text = Format.twoDigits(value);
    }

    width: 38
    height: 26
    Layout.preferredWidth: width
    Layout.preferredHeight: height
    maximumLength: 2
    horizontalAlignment: Text.AlignHCenter
    inputMethodHints: Qt.ImhDigitsOnly
    font.pixelSize: Theme.bodySize
    padding: 2

    Component.onCompleted: showValue()
    onValueChanged: if (!typing) showValue()
    onTextEdited: {
        var typed = Format.read(text);
        if (text === "" || isNaN(typed) || typed < from || typed > to)
            return;
        typing = true;
        value = typed;
        typing = false;
    }
    onEditingFinished: showValue()
    onActiveFocusChanged: if (activeFocus) selectAll()
    Keys.onUpPressed: step(1)
    Keys.onDownPressed: step(-1)
    Connections {
        target: settings
        function onIsArabicChanged() { field.showValue(); }
    }

    background: Rectangle {
        radius: Theme.controlRadius
        color: Theme.notchFill
        border.color: field.activeFocus ? Theme.notchAccent : Theme.notchControlHover
    }
    Accessible.name: accessibleName
}
