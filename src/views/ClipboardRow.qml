import QtQuick

// One entry of the clipboard history: its kind (or the image itself), its text on two lines at
// most, where it was copied from and how long ago.
Item {
    id: row
    required property int index
    required property string itemId
    required property string kind
    required property string preview
    required property string imageFile
    required property string source
    required property var date

    property bool arabic: false
    property var now: new Date()
    // The list has keyboard focus and this row is its current one.
    property bool focused: false
    signal activated()
    signal removeRequested()

    readonly property bool current: ListView.isCurrentItem
    readonly property bool isImage: kind === "image"

    objectName: "clipboardRow_" + index
    height: 44

    function arabicDigits(text) {
        return text.replace(/[0-9]/g, (digit) => String.fromCharCode(0x0660 + Number(digit)))
    }

    // How long ago, in words that fit a caption.
    function age() {
        const seconds = Math.max(0, (row.now - row.date) / 1000)
        const number = (value) => Format.number(Math.floor(value))
        if (seconds < 60)
            return row.arabic ? "الآن" : "Just now"
        if (seconds < 3600)
            return row.arabic ? "قبل " + number(seconds / 60) + " د" : number(seconds / 60) + " min ago"
        if (seconds < 86400)
            return row.arabic ? "قبل " + number(seconds / 3600) + " س" : number(seconds / 3600) + " h ago"
        if (seconds < 2 * 86400)
            return row.arabic ? "أمس" : "Yesterday"
        return row.date.toLocaleDateString(Qt.locale(row.arabic ? "ar" : "en_GB"), "d MMM")
    }

    readonly property string shownText: {
        if (isImage)
            return (arabic ? "صورة " + arabicDigits(preview) : "Image " + preview)
        return preview
    }
    readonly property string kindSymbol: ({ "text": "doc.text", "link": "link", "image": "photo",
                                            "file": "doc" })[kind] || "doc.text"

    Accessible.role: Accessible.ListItem
    Accessible.name: shownText

    Rectangle {
        anchors.fill: parent
        radius: Theme.controlRadius + 2
        color: row.current ? Theme.notchSelection
                           : (mouse.containsMouse ? Theme.notchControl : "transparent")
        border.width: row.focused ? Theme.focusRingWidth : 0
        border.color: Theme.notchFocusRing
    }

    MouseArea {
        id: mouse
        anchors.fill: parent
        hoverEnabled: true
        cursorShape: Qt.PointingHandCursor
        onClicked: row.activated()
    }

    Rectangle {
        id: badge
        anchors { left: parent.left; leftMargin: 8; verticalCenter: parent.verticalCenter }
        width: 32
        height: 32
        radius: Theme.controlRadius
        color: Theme.notchControl
        clip: true
        Icon {
            anchors.centerIn: parent
            visible: thumbnail.status !== Image.Ready
            symbol: row.kindSymbol
            color: row.kind === "link" ? Theme.notchAccent : Theme.notchSecondaryText
            size: 16
        }
        Image {
            id: thumbnail
            cache: false
            anchors.fill: parent
            visible: status === Image.Ready
            source: row.isImage && row.imageFile !== "" ? "image://clipboard/" + row.imageFile : ""
            sourceSize: Qt.size(64, 64)
            fillMode: Image.PreserveAspectCrop
            asynchronous: true
        }
    }

    Text {
        id: label
        anchors {
            left: badge.right; leftMargin: 10
            right: details.left; rightMargin: 10
            verticalCenter: parent.verticalCenter
        }
        text: row.shownText
        textFormat: Text.PlainText
        color: Theme.notchText
        font.family: row.kind === "text" ? Theme.fontFamily : Theme.latinFontFamily
        font.pixelSize: Theme.smallSize + 1
        wrapMode: Text.WrapAtWordBoundaryOrAnywhere
        maximumLineCount: 2
        elide: Text.ElideRight
        horizontalAlignment: Text.AlignLeft
    }

    Column {
        id: details
        anchors {
            right: removeButton.visible ? removeButton.left : parent.right
            rightMargin: 8
            verticalCenter: parent.verticalCenter
        }
        width: 96
        spacing: 2
        Text {
            width: parent.width
            visible: row.source !== ""
            text: row.source
            color: Theme.notchSecondaryText
            font.family: Theme.fontFamily
            font.pixelSize: Theme.captionSize
            elide: Text.ElideRight
            horizontalAlignment: Text.AlignRight
        }
        Text {
            width: parent.width
            text: row.age()
            color: Theme.notchTertiaryText
            font.family: Theme.fontFamily
            font.pixelSize: Theme.captionSize
            horizontalAlignment: Text.AlignRight
        }
    }

    NotchIconButton {
        id: removeButton
        objectName: "removeButton"
        anchors { right: parent.right; rightMargin: 6; verticalCenter: parent.verticalCenter }
        size: 24
        visible: mouse.containsMouse || row.current
        symbol: "trash"
        toolTip: row.arabic ? "حذف" : "Delete"
        onClicked: row.removeRequested()
    }
}
