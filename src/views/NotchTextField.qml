import QtQuick
import "Backdrop.js" as Backdrop

// A one-line text field on the notch: a TextInput over its `background`, with a placeholder
// while empty. Plain Qt Quick, so that the notch's views load no controls library.
TextInput {
    id: field
    property string placeholderText: ""
    property Item background: null

    onBackgroundChanged: Backdrop.place(background, field)

    clip: true
    activeFocusOnTab: true
    selectByMouse: true
    verticalAlignment: TextInput.AlignVCenter
    color: Theme.notchText
    selectionColor: Theme.notchAccentFill
    selectedTextColor: Theme.textOnAccent
    font.family: Theme.fontFamily
    Accessible.role: Accessible.EditableText

    Text {
        x: field.leftPadding
        y: field.topPadding
        width: field.width - field.leftPadding - field.rightPadding
        height: field.height - field.topPadding - field.bottomPadding
        visible: field.text === "" && field.preeditText === ""
        text: field.placeholderText
        color: Theme.notchSecondaryText
        font: field.font
        elide: Text.ElideRight
        horizontalAlignment: field.horizontalAlignment
        verticalAlignment: Text.AlignVCenter
    }
}
