import QtQuick

// A file on the shelf or among the captures: its thumbnail (images) or its icon from the desktop's
// icon theme, its name, and a mark when it no longer exists. A click opens it; it can be dragged
// out to any application that takes files.
Item {
    id: tile
    required property var file // {id, name, url, isImage, exists, icon, genericIcon}
    property bool arabic: false
    property bool current: false
    property bool focused: false
    signal activated()
    signal showInFolderRequested()
    signal removeRequested()

    width: 86
    height: 92
    Accessible.role: Accessible.ListItem
    Accessible.name: file.name + (file.exists ? "" : (arabic ? "، غير موجود" : ", missing"))

    Rectangle {
        anchors.fill: parent
        radius: Theme.controlRadius + 2
        color: tile.current ? Theme.notchSelection
                            : (mouse.containsMouse ? Theme.notchControl : "transparent")
        border.width: tile.focused ? Theme.focusRingWidth : 0
        border.color: Theme.notchFocusRing
    }

    Item {
        id: picture
        anchors { horizontalCenter: parent.horizontalCenter; top: parent.top; topMargin: 8 }
        width: 48
        height: 48
        opacity: tile.file.exists ? 1 : 0.4
        Image {
            id: themeIcon
            cache: false
            anchors.fill: parent
            visible: thumbnail.status !== Image.Ready
            source: "image://themeicon/" + tile.file.icon + "/" + tile.file.genericIcon
            sourceSize: Qt.size(48, 48)
            asynchronous: true
        }
        Image {
            id: thumbnail
            cache: false
            anchors.fill: parent
            visible: status === Image.Ready
            source: tile.file.isImage && tile.file.exists ? tile.file.url : ""
            sourceSize: Qt.size(96, 96)
            fillMode: Image.PreserveAspectCrop
            asynchronous: true
        }
        // Gone from where it was: the shortcut stays until the user removes it.
        Rectangle {
            objectName: "missingMark"
            visible: !tile.file.exists
            anchors { right: parent.right; bottom: parent.bottom; margins: -4 }
            width: 18
            height: 18
            radius: 9
            color: Theme.recording
            Icon {
                anchors.centerIn: parent
                symbol: "exclamationmark.circle"
                color: Theme.textOnAccent
                size: 12
            }
        }
    }

    Text {
        anchors { left: parent.left; right: parent.right; top: picture.bottom; topMargin: 6 }
        anchors.leftMargin: 4
        anchors.rightMargin: 4
        text: tile.file.name
        textFormat: Text.PlainText
        color: tile.file.exists ? Theme.notchText : Theme.notchSecondaryText
        font.family: Theme.fontFamily
        font.pixelSize: Theme.captionSize
        font.strikeout: !tile.file.exists
        horizontalAlignment: Text.AlignHCenter
        wrapMode: Text.WrapAnywhere
        maximumLineCount: 2
        elide: Text.ElideMiddle
    }

    MouseArea {
        id: mouse
        anchors.fill: parent
        hoverEnabled: true
        acceptedButtons: Qt.LeftButton
        cursorShape: Qt.PointingHandCursor
        onClicked: tile.activated()
    }

    // Dragged out, the file goes as its location, which file managers, browsers and editors take.
    Item {
        id: dragged
        anchors.fill: parent
        Drag.active: dragHandler.active
        Drag.dragType: Drag.Automatic
        Drag.supportedActions: Qt.CopyAction | Qt.LinkAction
        Drag.mimeData: ({ "text/uri-list": String(tile.file.url) + "\r\n" })
        DragHandler {
            id: dragHandler
            enabled: tile.file.exists
            target: null
        }
    }

    Row {
        anchors { top: parent.top; right: parent.right; margins: 2 }
        spacing: 2
        visible: mouse.containsMouse || tile.current
        NotchIconButton {
            objectName: "showInFolderButton"
            size: 22
            visible: tile.file.exists
            symbol: "folder"
            toolTip: tile.arabic ? "إظهار في المجلد" : "Show in folder"
            onClicked: tile.showInFolderRequested()
        }
        NotchIconButton {
            objectName: "removeButton"
            size: 22
            symbol: "xmark"
            toolTip: tile.arabic ? "إزالة" : "Remove"
            onClicked: tile.removeRequested()
        }
    }
}
