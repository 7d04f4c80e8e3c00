import QtQuick

// The clipboard history: a search field, filters by kind, and the entries newest first. A click or
// Enter puts an entry back on the clipboard and closes the notch, so that it can be pasted at
// once. Keyboard: typing searches, Down enters the list, Up at its top goes back to the search
// field, Delete removes the current entry, Escape clears the search (and then closes).
FocusScope {
    id: tab
    readonly property bool arabic: settings.isArabic
    readonly property bool enabledHistory: settings.clipboardEnabled
    property bool confirmingClear: false
    property var now: new Date()

    Accessible.role: Accessible.Pane
    Accessible.name: arabic ? "الحافظة" : "Clipboard"

    readonly property var filters: [
        { "id": "all", "english": "All", "arabic": "الكل" },
        { "id": "text", "english": "Text", "arabic": "نص" },
        { "id": "links", "english": "Links", "arabic": "روابط" },
        { "id": "images", "english": "Images", "arabic": "صور" },
        { "id": "files", "english": "Files", "arabic": "ملفات" }
    ]

    function copyCurrent() {
        if (!list.currentItem)
            return
        if (clipboard.copy(list.currentItem.itemId))
            notch.close()
    }

    function removeCurrent() {
        if (!list.currentItem)
            return
        const index = list.currentIndex
        clipboard.remove(list.currentItem.itemId)
        if (list.count === 0) {
            search.forceActiveFocus()
        } else {
            list.currentIndex = Math.min(index, list.count - 1)
        }
    }

    // Each opening starts over: all entries, the cursor in the search field.
    function reset() {
        search.text = ""
        // The search lives in the history's model, which outlives this view: a search typed
        // before the tab was left would otherwise go on filtering behind an empty field.
        clipboardHistory.query = ""
        confirmingClear = false
        list.currentIndex = 0
        list.positionViewAtBeginning()
        search.forceActiveFocus()
    }

    Component.onCompleted: reset()
    // Whenever the notch takes the keyboard on this tab, the cursor is in the search field.
    function takeKeyboard(reason) {
        search.forceActiveFocus(reason)
    }
    Connections {
        target: notch
        function onStatusChanged() {
            if (notch.isOpen)
                tab.reset()
        }
    }

    // The ages only need to move while they are on screen.
    Timer {
        interval: 30000
        repeat: true
        running: tab.visible
        triggeredOnStart: true
        onTriggered: tab.now = new Date()
    }

    // --- While the history is off ------------------------------------------------------------

    Column {
        anchors.centerIn: parent
        visible: !tab.enabledHistory
        spacing: 10
        Icon {
            anchors.horizontalCenter: parent.horizontalCenter
            symbol: "doc.on.clipboard"
            color: Theme.notchSecondaryText
            size: 28
        }
        Text {
            anchors.horizontalCenter: parent.horizontalCenter
            text: tab.arabic ? "سجل الحافظة متوقف" : "Clipboard history is off"
            color: Theme.notchText
            font.family: Theme.fontFamily
            font.pixelSize: Theme.titleSize
            font.weight: Font.DemiBold
        }
        Row {
            anchors.horizontalCenter: parent.horizontalCenter
            spacing: 10
            Text {
                anchors.verticalCenter: parent.verticalCenter
                text: tab.arabic ? "احفظ ما أنسخه" : "Keep what I copy"
                color: Theme.notchSecondaryText
                font.family: Theme.fontFamily
                font.pixelSize: Theme.bodySize
            }
            NavroSwitch {
                id: enableSwitch
                objectName: "clipboardEnabledSwitch"
                anchors.verticalCenter: parent.verticalCenter
                checked: settings.clipboardEnabled
                focus: !tab.enabledHistory
                Accessible.name: tab.arabic ? "سجل الحافظة" : "Clipboard history"
                onToggled: settings.clipboardEnabled = checked
                Rectangle {
                    anchors.fill: parent
                    anchors.margins: -3
                    radius: height / 2
                    color: "transparent"
                    border.width: enableSwitch.activeFocus ? Theme.focusRingWidth : 0
                    border.color: Theme.notchFocusRing
                }
            }
        }
    }

    // --- The history --------------------------------------------------------------------------

    Item {
        id: bar
        visible: tab.enabledHistory
        anchors { left: parent.left; right: parent.right; top: parent.top }
        height: 28

        Rectangle {
            id: searchBox
            anchors { left: parent.left; top: parent.top; bottom: parent.bottom }
            width: 200
            radius: height / 2
            color: Theme.notchControl
            border.width: search.activeFocus ? Theme.focusRingWidth : 0
            border.color: Theme.notchFocusRing

            Icon {
                id: searchIcon
                anchors { left: parent.left; leftMargin: 10; verticalCenter: parent.verticalCenter }
                symbol: "magnifyingglass"
                color: Theme.notchSecondaryText
                size: 13
            }
            TextInput {
                id: search
                objectName: "clipboardSearch"
                anchors {
                    left: searchIcon.right; leftMargin: 6
                    right: clearSearch.visible ? clearSearch.left : parent.right; rightMargin: 8
                    verticalCenter: parent.verticalCenter
                }
                focus: tab.enabledHistory
                clip: true
                color: Theme.notchText
                selectionColor: Theme.notchAccent
                selectedTextColor: Theme.textOnAccent
                font.family: Theme.fontFamily
                font.pixelSize: Theme.smallSize + 1
                horizontalAlignment: TextInput.AlignLeft
                Accessible.role: Accessible.EditableText
                Accessible.name: tab.arabic ? "بحث في الحافظة" : "Search the clipboard"
                onTextChanged: {
                    clipboardHistory.query = text
                    list.currentIndex = 0
                }
                Keys.onDownPressed: {
                    if (list.count > 0) {
                        list.currentIndex = Math.max(0, list.currentIndex)
                        list.forceActiveFocus()
                    }
                }
                Keys.onReturnPressed: tab.copyCurrent()
                Keys.onEnterPressed: tab.copyCurrent()
                Keys.onEscapePressed: (event) => {
                    // A search to clear first; with none, Escape is left to close the notch.
                    event.accepted = text !== ""
                    text = ""
                }

                Text {
                    anchors.fill: parent
                    visible: search.text === ""
                    text: tab.arabic ? "بحث" : "Search"
                    color: Theme.notchTertiaryText
                    font: search.font
                    horizontalAlignment: Text.AlignLeft
                    verticalAlignment: Text.AlignVCenter
                }
            }
            NotchIconButton {
                id: clearSearch
                anchors { right: parent.right; rightMargin: 3; verticalCenter: parent.verticalCenter }
                size: 22
                visible: search.text !== ""
                symbol: "xmark"
                toolTip: tab.arabic ? "مسح البحث" : "Clear the search"
                onClicked: {
                    search.text = ""
                    search.forceActiveFocus()
                }
            }
        }

        Row {
            id: chips
            visible: !tab.confirmingClear
            anchors { left: searchBox.right; leftMargin: 10; verticalCenter: parent.verticalCenter }
            spacing: 4
            Repeater {
                model: tab.filters
                delegate: NotchChip {
                    required property var modelData
                    objectName: "filter_" + modelData.id
                    checkable: true
                    text: tab.arabic ? modelData.arabic : modelData.english
                    selected: clipboardHistory.filter === modelData.id
                    onActivated: {
                        clipboardHistory.filter = modelData.id
                        list.currentIndex = 0
                    }
                }
            }
        }

        NotchChip {
            id: clearButton
            objectName: "clearHistory"
            visible: !tab.confirmingClear && clipboard.count > 0
            anchors { right: parent.right; verticalCenter: parent.verticalCenter }
            symbol: "trash"
            text: tab.arabic ? "مسح" : "Clear"
            onActivated: {
                tab.confirmingClear = true
                cancelClear.forceActiveFocus()
            }
        }

        // Clearing cannot be undone, so it asks first; Cancel has the focus.
        Row {
            visible: tab.confirmingClear
            anchors { right: parent.right; verticalCenter: parent.verticalCenter }
            spacing: 6
            Keys.onEscapePressed: {
                tab.confirmingClear = false
                clearButton.forceActiveFocus()
            }
            Text {
                anchors.verticalCenter: parent.verticalCenter
                text: tab.arabic ? "مسح السجل كله؟" : "Clear the whole history?"
                color: Theme.notchText
                font.family: Theme.fontFamily
                font.pixelSize: Theme.smallSize + 1
            }
            NotchChip {
                id: cancelClear
                text: tab.arabic ? "إلغاء" : "Cancel"
                onActivated: {
                    tab.confirmingClear = false
                    search.forceActiveFocus()
                }
            }
            NotchChip {
                objectName: "confirmClear"
                text: tab.arabic ? "مسح" : "Clear"
                textColor: Theme.recording
                onActivated: {
                    clipboard.clear()
                    tab.confirmingClear = false
                    search.forceActiveFocus()
                }
            }
        }
    }

    ListView {
        id: list
        objectName: "clipboardList"
        visible: tab.enabledHistory
        anchors {
            left: parent.left; right: parent.right; top: bar.bottom; topMargin: 8
            bottom: saveNote.visible ? saveNote.top : parent.bottom
        }
        clip: true
        // Rows are built only while they can be seen: copies made while the notch is closed
        // cost no views.
        model: tab.visible ? clipboardHistory : null
        spacing: 2
        currentIndex: 0
        keyNavigationEnabled: true
        highlightMoveDuration: 0
        boundsBehavior: Flickable.StopAtBounds
        Accessible.role: Accessible.List
        Accessible.name: tab.arabic ? "سجل الحافظة" : "Clipboard history"

        delegate: ClipboardRow {
            width: list.width
            arabic: tab.arabic
            now: tab.now
            focused: list.activeFocus && ListView.isCurrentItem
            onActivated: {
                list.currentIndex = index
                tab.copyCurrent()
            }
            onRemoveRequested: {
                list.currentIndex = index
                tab.removeCurrent()
            }
        }

        Keys.onUpPressed: (event) => {
            if (currentIndex <= 0)
                search.forceActiveFocus()
            else
                decrementCurrentIndex()
        }
        Keys.onReturnPressed: tab.copyCurrent()
        Keys.onEnterPressed: tab.copyCurrent()
        Keys.onDeletePressed: tab.removeCurrent()
        Keys.onPressed: (event) => {
            // Typing goes on in the search field.
            const typed = event.text
            const printable = typed.length > 0 && typed.charCodeAt(0) >= 32 && typed.charCodeAt(0) !== 127
            const plain = !(event.modifiers & (Qt.ControlModifier | Qt.AltModifier | Qt.MetaModifier))
            if (event.key === Qt.Key_Backspace || (printable && plain)) {
                search.forceActiveFocus()
                if (event.key === Qt.Key_Backspace)
                    search.remove(search.text.length - 1, search.text.length)
                else
                    search.insert(search.text.length, typed)
                event.accepted = true
            }
        }
    }

    Column {
        anchors.centerIn: list
        visible: tab.enabledHistory && list.count === 0
        spacing: 6
        Icon {
            anchors.horizontalCenter: parent.horizontalCenter
            symbol: clipboard.count === 0 ? "doc.on.clipboard" : "magnifyingglass"
            color: Theme.notchSecondaryText
            size: 22
        }
        Text {
            objectName: "clipboardEmpty"
            anchors.horizontalCenter: parent.horizontalCenter
            text: clipboard.count === 0 ? (tab.arabic ? "لم تنسخ شيئاً بعد" : "Nothing copied yet")
                                        : (tab.arabic ? "لا نتائج" : "No matches")
            color: Theme.notchText
            font.family: Theme.fontFamily
            font.pixelSize: Theme.bodySize
            font.weight: Font.DemiBold
        }
        Text {
            anchors.horizontalCenter: parent.horizontalCenter
            visible: clipboard.count === 0
            text: tab.arabic ? "تظهر هنا النصوص والروابط والصور والملفات التي تنسخها."
                             : "Text, links, images and files you copy appear here."
            color: Theme.notchSecondaryText
            font.family: Theme.fontFamily
            font.pixelSize: Theme.smallSize
        }
    }

    Text {
        id: saveNote
        visible: tab.enabledHistory && clipboard.saveFailed
        anchors { left: parent.left; right: parent.right; bottom: parent.bottom }
        text: tab.arabic ? "تعذّر حفظ سجل الحافظة على القرص؛ ستُعاد المحاولة."
                         : "Could not save the clipboard history to disk; trying again."
        color: Theme.warning
        font.family: Theme.fontFamily
        font.pixelSize: Theme.captionSize
        horizontalAlignment: Text.AlignLeft
        elide: Text.ElideRight
    }
}
