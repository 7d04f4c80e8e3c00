import QtQuick

// The shelf: sections as a row of chips, the chosen section's files as tiles. Files dropped on a
// chip or on the tiles land in that section. Keyboard: Left/Right (in the chips) choose the
// section, F2 renames it, Down enters the files; in the files the arrows move, Enter opens,
// Ctrl+Enter shows in the folder, Delete removes, Up from the first row goes back to the chips.
FocusScope {
    id: tab
    readonly property bool arabic: settings.isArabic
    readonly property var sections: shelf.sections
    property int sectionIndex: 0
    readonly property var section: sections.length > 0
                                   ? sections[Math.min(sectionIndex, sections.length - 1)] : null
    readonly property var items: section ? section.items : []
    // "" while not editing; "new" while naming a new section; "rename" while renaming this one.
    property string editing: ""

    Accessible.role: Accessible.Pane
    Accessible.name: arabic ? "الرف" : "Shelf"

    function chooseSection(index) {
        sectionIndex = Math.max(0, Math.min(index, sections.length - 1))
        grid.currentIndex = 0
    }
    function startEditing(kind) {
        editing = kind
        nameField.text = kind === "rename" && section ? section.name : ""
        nameField.selectAll()
        nameField.forceActiveFocus()
    }
    function finishEditing() {
        const name = nameField.text
        if (editing === "new") {
            const id = shelf.addSection(name)
            if (id !== "")
                chooseSection(sections.length - 1)
        } else if (editing === "rename" && section) {
            shelf.renameSection(section.id, name)
        }
        editing = ""
        chips.forceActiveFocus()
    }
    function removeCurrentItem() {
        if (grid.currentIndex < 0 || grid.currentIndex >= items.length)
            return
        const index = grid.currentIndex
        shelf.removeItem(items[index].id)
        grid.currentIndex = Math.min(index, items.length - 1)
    }

    Component.onCompleted: shelf.refresh()
    onVisibleChanged: if (visible) shelf.refresh()

    // --- Sections ----------------------------------------------------------------------------

    Item {
        id: bar
        anchors { left: parent.left; right: parent.right; top: parent.top }
        height: 28

        Flickable {
            id: chipsView
            anchors { left: parent.left; right: actions.left; rightMargin: 8; verticalCenter: parent.verticalCenter }
            height: 24
            contentWidth: chips.width
            clip: true
            flickableDirection: Flickable.HorizontalFlick
            visible: tab.editing === ""

            Row {
                id: chips
                objectName: "shelfSections"
                spacing: 4
                focus: true
                activeFocusOnTab: true
                Keys.onLeftPressed: tab.chooseSection(tab.sectionIndex + (tab.arabic ? 1 : -1))
                Keys.onRightPressed: tab.chooseSection(tab.sectionIndex + (tab.arabic ? -1 : 1))
                Keys.onDownPressed: if (tab.items.length > 0) grid.forceActiveFocus()
                Keys.onPressed: (event) => {
                    if (event.key === Qt.Key_F2) {
                        tab.startEditing("rename")
                        event.accepted = true
                    }
                }

                Repeater {
                    model: tab.sections
                    delegate: NotchChip {
                        required property var modelData
                        required property int index
                        objectName: "section_" + index
                        text: modelData.name
                        selected: index === tab.sectionIndex
                        border.width: (chips.activeFocus && selected) || drop.containsDrag
                                      ? Theme.focusRingWidth : 0
                        activeFocusOnTab: false
                        onActivated: tab.chooseSection(index)
                        MouseArea {
                            anchors.fill: parent
                            acceptedButtons: Qt.LeftButton
                            onClicked: tab.chooseSection(index)
                            onDoubleClicked: {
                                tab.chooseSection(index)
                                tab.startEditing("rename")
                            }
                        }
                        // A file dropped on a section's name lands in that section.
                        DropArea {
                            id: drop
                            anchors.fill: parent
                            keys: ["text/uri-list"]
                            onEntered: notch.isDropTargeted = true
                            onExited: notch.isDropTargeted = false
                            onDropped: (event) => {
                                notch.isDropTargeted = false
                                shelf.addUrls(modelData.id, event.urls)
                                tab.chooseSection(index)
                                event.acceptProposedAction()
                            }
                        }
                    }
                }
            }
        }

        // Naming a new section or renaming this one: Enter keeps the name, Escape drops it.
        Rectangle {
            visible: tab.editing !== ""
            anchors { left: parent.left; right: actions.left; rightMargin: 8; verticalCenter: parent.verticalCenter }
            height: 24
            radius: height / 2
            color: Theme.notchControl
            border.width: Theme.focusRingWidth
            border.color: Theme.notchFocusRing
            TextInput {
                id: nameField
                objectName: "sectionNameField"
                anchors { fill: parent; leftMargin: 10; rightMargin: 10 }
                verticalAlignment: TextInput.AlignVCenter
                horizontalAlignment: TextInput.AlignLeft
                color: Theme.notchText
                selectionColor: Theme.notchAccent
                selectedTextColor: Theme.textOnAccent
                font.family: Theme.fontFamily
                font.pixelSize: Theme.smallSize + 1
                maximumLength: 60
                clip: true
                Accessible.role: Accessible.EditableText
                Accessible.name: tab.arabic ? "اسم القسم" : "Section name"
                Keys.onReturnPressed: tab.finishEditing()
                Keys.onEnterPressed: tab.finishEditing()
                Keys.onEscapePressed: {
                    tab.editing = ""
                    chips.forceActiveFocus()
                }
                onActiveFocusChanged: if (!activeFocus && tab.editing !== "") tab.editing = ""
                Text {
                    anchors.fill: parent
                    visible: nameField.text === ""
                    text: tab.arabic ? "اسم القسم" : "Section name"
                    color: Theme.notchTertiaryText
                    font: nameField.font
                    verticalAlignment: Text.AlignVCenter
                    horizontalAlignment: Text.AlignLeft
                }
            }
        }

        Row {
            id: actions
            anchors { right: parent.right; verticalCenter: parent.verticalCenter }
            spacing: 4
            NotchChip {
                objectName: "addFiles"
                symbol: "plus"
                text: tab.arabic ? "إضافة…" : "Add…"
                onActivated: if (tab.section) shelf.chooseFiles(tab.section.id)
            }
            NotchChip {
                objectName: "newSection"
                symbol: "folder"
                text: tab.arabic ? "قسم جديد" : "New section"
                onActivated: tab.startEditing("new")
            }
            NotchChip {
                objectName: "renameSection"
                symbol: "pencil"
                Accessible.name: tab.arabic ? "إعادة تسمية القسم" : "Rename section"
                onActivated: tab.startEditing("rename")
            }
            NotchChip {
                objectName: "deleteSection"
                visible: tab.sections.length > 1
                symbol: "trash"
                textColor: Theme.recording
                Accessible.name: tab.arabic ? "حذف القسم" : "Delete section"
                onActivated: {
                    if (tab.section && shelf.removeSection(tab.section.id))
                        tab.chooseSection(tab.sectionIndex)
                }
            }
        }
    }

    // --- Files -------------------------------------------------------------------------------

    DropArea {
        id: filesDrop
        anchors { left: parent.left; right: parent.right; top: bar.bottom; topMargin: 8; bottom: parent.bottom }
        keys: ["text/uri-list"]
        onEntered: notch.isDropTargeted = true
        onExited: notch.isDropTargeted = false
        onDropped: (event) => {
            notch.isDropTargeted = false
            if (tab.section)
                shelf.addUrls(tab.section.id, event.urls)
            event.acceptProposedAction()
        }

        Rectangle {
            anchors.fill: parent
            radius: Theme.controlRadius + 4
            color: "transparent"
            border.width: filesDrop.containsDrag ? 2 : 0
            border.color: Theme.notchAccent
        }

        Column {
            anchors.centerIn: parent
            visible: tab.items.length === 0
            spacing: 8
            Icon {
                anchors.horizontalCenter: parent.horizontalCenter
                symbol: "tray"
                color: Theme.notchSecondaryText
                size: 28
            }
            Text {
                anchors.horizontalCenter: parent.horizontalCenter
                text: tab.arabic ? "أفلت الملفات هنا لإبقائها في متناول يدك"
                                 : "Drop files here to keep them at hand"
                color: Theme.notchSecondaryText
                font.family: Theme.fontFamily
                font.pixelSize: Theme.bodySize
            }
        }

        GridView {
            id: grid
            objectName: "shelfItems"
            anchors.fill: parent
            anchors.margins: 4
            clip: true
            cellWidth: 90
            cellHeight: 96
            model: tab.items
            keyNavigationEnabled: true
            activeFocusOnTab: true
            boundsBehavior: Flickable.StopAtBounds
            function activateCurrent(event) {
                if (currentIndex < 0 || currentIndex >= tab.items.length)
                    return
                const id = tab.items[currentIndex].id
                if (event.modifiers & Qt.ControlModifier)
                    shelf.showInFolder(id)
                else
                    shelf.open(id)
            }
            Keys.onReturnPressed: (event) => activateCurrent(event)
            Keys.onEnterPressed: (event) => activateCurrent(event)
            Keys.onDeletePressed: tab.removeCurrentItem()
            Keys.onUpPressed: (event) => {
                if (currentIndex < Math.floor(width / cellWidth))
                    chips.forceActiveFocus()
                else
                    moveCurrentIndexUp()
            }
            delegate: FileTile {
                required property var modelData
                required property int index
                objectName: "shelfItem_" + index
                file: modelData
                arabic: tab.arabic
                current: GridView.isCurrentItem
                focused: GridView.isCurrentItem && grid.activeFocus
                onActivated: {
                    grid.currentIndex = index
                    shelf.open(modelData.id)
                }
                onShowInFolderRequested: shelf.showInFolder(modelData.id)
                onRemoveRequested: shelf.removeItem(modelData.id)
            }
        }
    }
}
