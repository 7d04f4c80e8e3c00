import QtQuick
import QtQuick.Layouts

// The Notes tab: a field that adds to-dos (with a priority and a deadline chosen beforehand), the
// to-dos in display order, and the scratch note below them.
//
// Keyboard: the notch opened from the keyboard puts the cursor in the add field; Enter adds,
// Down goes to the list. In the list: Up/Down move, Space completes or reopens, Enter or F2 edits,
// Delete deletes, P sets the priority, D the deadline. Tab walks through the rest.
Item {
    id: tab
    objectName: "notesTab"
    readonly property bool arabic: settings.isArabic
    // What the next added to-do gets: a priority 0–3 and a deadline (a Date) or null.
    property int newPriority: 0
    property var newDue: null
    // The to-do the open menu or picker changes; "" for the next one to be added.
    property string menuTarget: ""
    property bool watching: false

    function priorityColor(priority) {
        return priority === 3 ? Theme.priorityHigh
             : priority === 2 ? Theme.priorityMedium
             : priority === 1 ? Theme.priorityLow : Theme.notchText;
    }

    function addTyped() {
        var id = notes.addTodo(addField.text, newPriority, newDue ? newDue : new Date(NaN));
        if (id === "")
            return;
        addField.text = "";
        newPriority = 0;
        newDue = null;
    }

    function returnFocus() {
        if (menuTarget === "")
            addField.forceActiveFocus();
        else
            list.forceActiveFocus();
    }

    function openPriorityMenu(target, current, anchor) {
        menuTarget = target;
        var entries = [];
        var choices = notes.priorities();
        for (var i = 0; i < choices.length; ++i)
            entries.push({ title: choices[i].title, value: choices[i].value,
                           checked: choices[i].value === current });
        priorityMenu.entries = entries;
        priorityMenu.openBelow(anchor, 2);
    }

    function openDueMenu(target, currentDue, anchor) {
        menuTarget = target;
        var entries = [];
        var presets = notes.duePresets();
        for (var i = 0; i < presets.length; ++i)
            entries.push({ title: presets[i].title, value: { kind: "preset", due: presets[i].due } });
        entries.push({ title: arabic ? "اختر التاريخ والوقت…" : "Pick a date and time…",
                       value: { kind: "pick", due: currentDue } });
        if (currentDue)
            entries.push({ title: arabic ? "إزالة الموعد" : "Remove deadline",
                           value: { kind: "remove" }, destructive: true });
        dueMenu.entries = entries;
        dueMenu.openBelow(anchor, 2);
    }

    function applyPriority(priority) {
        if (menuTarget === "")
            newPriority = priority;
        else
            notes.setPriorityOf(menuTarget, priority);
        returnFocus();
    }

    function applyDue(moment) {
        if (menuTarget === "")
            newDue = moment;
        else
            notes.setDueOf(menuTarget, moment ? moment : new Date(NaN));
        returnFocus();
    }

    function updateWatching() {
        var wanted = visible;
        if (wanted === watching)
            return;
        watching = wanted;
        if (wanted)
            notes.watchList();
        else
            notes.stopWatchingList();
    }

    onVisibleChanged: updateWatching()
    Component.onCompleted: {
        updateWatching();
        addField.text = Drafts.todo;
        addField.forceActiveFocus();
    }
    Component.onDestruction: if (watching) notes.stopWatchingList()

    // Whenever the notch takes the keyboard on this tab, the cursor is in the add field.
    function takeKeyboard(reason) {
        addField.forceActiveFocus(reason);
    }

    ColumnLayout {
        anchors.fill: parent
        spacing: 6

        RowLayout {
            Layout.fillWidth: true
            spacing: 6

            NotchTextField {
                id: addField
                objectName: "addTodoField"
                Layout.fillWidth: true
                Layout.preferredHeight: 28
                placeholderText: tab.arabic ? "أضف مهمة" : "Add a to-do"
                onTextChanged: Drafts.todo = text
                font.pixelSize: Theme.bodySize
                leftPadding: 10
                rightPadding: 10
                horizontalAlignment: Text.AlignLeft
                background: Rectangle {
                    radius: Theme.controlRadius + 2
                    color: Theme.notchControl
                    border.color: addField.activeFocus ? Theme.notchAccent : "transparent"
                }
                Keys.onReturnPressed: tab.addTyped()
                Keys.onEnterPressed: tab.addTyped()
                Keys.onDownPressed: if (list.count > 0) list.forceActiveFocus()
                Keys.onEscapePressed: (event) => {
                    // Clears what was typed first; an empty field lets Escape close the notch.
                    if (text !== "")
                        text = "";
                    else
                        event.accepted = false;
                }
                Accessible.name: placeholderText
            }

            NotchTextButton {
                id: newPriorityButton
                objectName: "newPriority"
                symbol: "flag"
                symbolColor: tab.priorityColor(tab.newPriority)
                text: tab.newPriority > 0 ? notes.priorityTitle(tab.newPriority, tab.arabic) : ""
                Accessible.name: tab.arabic ? "الأولوية" : "Priority"
                toolTip: Accessible.name
                onClicked: tab.openPriorityMenu("", tab.newPriority, newPriorityButton)
            }

            NotchTextButton {
                id: newDueButton
                objectName: "newDue"
                symbol: "clock"
                text: tab.newDue ? notes.deadlineLabel(tab.newDue, tab.arabic) : ""
                Accessible.name: tab.arabic ? "الموعد" : "Deadline"
                toolTip: Accessible.name
                onClicked: tab.openDueMenu("", tab.newDue, newDueButton)
            }

            NotchTextButton {
                objectName: "addTodo"
                symbol: "plus"
                enabled: addField.text.trim() !== ""
                Accessible.name: tab.arabic ? "إضافة" : "Add"
                onClicked: tab.addTyped()
            }

            NotchTextButton {
                objectName: "clearDone"
                visible: notes.doneCount > 0
                text: tab.arabic ? "مسح المنجز" : "Clear done"
                onClicked: notes.clearDone()
            }
        }

        Text {
            Layout.fillWidth: true
            visible: notes.saveError !== ""
            text: tab.arabic
                  ? "تعذّر حفظ الملاحظات (" + notes.saveError + ")، ستُعاد المحاولة مع التعديل التالي"
                  : "Couldn't save your notes (" + notes.saveError + "); trying again with your next change"
            color: Theme.overdue
            elide: Text.ElideRight
            font.family: Theme.fontFamily
            font.pixelSize: Theme.smallSize
            horizontalAlignment: Text.AlignLeft
        }

        ListView {
            id: list
            objectName: "todoList"
            Layout.fillWidth: true
            Layout.fillHeight: true
            clip: true
            model: notes.sorted
            activeFocusOnTab: true
            keyNavigationEnabled: true
            highlightFollowsCurrentItem: false
            boundsBehavior: Flickable.StopAtBounds
            NotchScrollBar { flickable: list }

            delegate: TodoRow {
                onPriorityMenuRequested: (anchor) => tab.openPriorityMenu(todoId, priority, anchor)
                onDueMenuRequested: (anchor) => tab.openDueMenu(todoId, hasDue ? due : null, anchor)
            }

            Keys.onPressed: (event) => {
                var row = currentItem;
                if (!row)
                    return;
                switch (event.key) {
                case Qt.Key_Space:
                    notes.toggle(row.todoId);
                    break;
                case Qt.Key_Return:
                case Qt.Key_Enter:
                case Qt.Key_F2:
                    row.startEditing();
                    break;
                case Qt.Key_Delete:
                case Qt.Key_Backspace:
                    notes.remove(row.todoId);
                    break;
                case Qt.Key_P:
                    row.openPriorityMenu();
                    break;
                case Qt.Key_D:
                    row.openDueMenu();
                    break;
                case Qt.Key_Up:
                    if (currentIndex > 0)
                        return;
                    addField.forceActiveFocus();
                    break;
                default:
                    return;
                }
                event.accepted = true;
            }

            Text {
                anchors.centerIn: parent
                visible: list.count === 0
                text: tab.arabic ? "لا توجد مهام" : "No to-dos"
                color: Theme.notchSecondaryText
                font.family: Theme.fontFamily
                font.pixelSize: Theme.bodySize - 1
            }
        }

        NotchTextArea {
            objectName: "scratchNote"
            Layout.fillWidth: true
            Layout.preferredHeight: 40
            placeholderText: tab.arabic ? "ملاحظة سريعة" : "Scratch note"
            font.pixelSize: Theme.smallSize + 1
            Component.onCompleted: text = notes.note
            onTextChanged: notes.note = text
        }
    }

    NotchChoicePopup {
        id: priorityMenu
        objectName: "priorityMenu"
        margins: 4
        onChosen: (value) => tab.applyPriority(value)
        onClosed: if (!picker.visible) tab.returnFocus()
    }

    NotchChoicePopup {
        id: dueMenu
        objectName: "dueMenu"
        margins: 4
        onChosen: (value) => {
            if (value.kind === "pick")
                picker.openOn(value.due ? value.due : new Date(NaN), tab);
            else
                tab.applyDue(value.kind === "preset" ? value.due : null);
        }
        onClosed: if (!picker.visible) tab.returnFocus()
    }

    DueTimePicker {
        id: picker
        objectName: "duePicker"
        onPicked: (moment) => tab.applyDue(moment)
        onClosed: tab.returnFocus()
    }
}
