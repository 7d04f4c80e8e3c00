import QtQuick

// A few lines of text on the notch that scroll when they outgrow the field, with a placeholder
// while empty. The cursor stays in sight while typing. Tab leaves it like any other field instead
// of typing a tab.
Rectangle {
    id: area
    property alias text: editor.text
    property alias font: editor.font
    property string placeholderText: ""

    radius: Theme.controlRadius + 2
    color: Theme.notchControl
    border.color: editor.activeFocus ? Theme.notchAccent : "transparent"

    Flickable {
        id: scroller
        anchors.fill: parent
        clip: true
        contentWidth: width
        contentHeight: editor.implicitHeight
        boundsBehavior: Flickable.StopAtBounds

        function reveal(cursor) {
            if (cursor.y < contentY)
                contentY = cursor.y;
            else if (cursor.y + cursor.height > contentY + height)
                contentY = cursor.y + cursor.height - height;
        }

        TextEdit {
            id: editor
            width: scroller.width
            padding: 6
            leftPadding: 10
            rightPadding: 10
            color: Theme.notchText
            selectionColor: Theme.notchAccentFill
            selectedTextColor: Theme.textOnAccent
            selectByMouse: true
            font.family: Theme.fontFamily
            wrapMode: TextEdit.Wrap
            horizontalAlignment: Text.AlignLeft
            onCursorRectangleChanged: scroller.reveal(cursorRectangle)
            Keys.onTabPressed: nextItemInFocusChain(true).forceActiveFocus(Qt.TabFocusReason)
            Keys.onBacktabPressed: nextItemInFocusChain(false).forceActiveFocus(Qt.BacktabFocusReason)
            activeFocusOnTab: true
            Accessible.role: Accessible.EditableText
            Accessible.multiLine: true
            Accessible.name: area.placeholderText

            Text {
                x: editor.leftPadding
                y: editor.topPadding
                width: editor.width - editor.leftPadding - editor.rightPadding
                visible: editor.text === "" && editor.preeditText === ""
                text: area.placeholderText
                color: Theme.notchSecondaryText
                font: editor.font
                elide: Text.ElideRight
                horizontalAlignment: Text.AlignLeft
            }
        }
    }
}
