import QtQuick
import QtQuick.Window

// The open notch: the tab bar with the settings button, and the selected tab's content.
//
// From the keyboard: Tab and Shift+Tab go through the controls, Space, Return and Enter press
// the focused one, the arrow keys that no control uses move between tabs in the direction they
// point (so, mirrored in Arabic), and Escape closes the notch (the window hears it last).
Item {
    id: panel
    readonly property bool arabic: settings.isArabic

    // The notch has just taken the keyboard: the selected tab's view puts the focus on the
    // control a user most likely wants (a tab view offers that as `takeKeyboard(reason)`), else
    // the selected tab's button gets it. The ring shows unless the pointer is on the notch (a
    // click opened it, and a ring would only be noise).
    readonly property bool hasKeyboard: notch.isOpen && Window.active
    onHasKeyboardChanged: if (hasKeyboard) takeKeyboard()
    // Built while the notch already has the keyboard (its first opening).
    Component.onCompleted: if (hasKeyboard) takeKeyboard()

    function takeKeyboard() {
        const reason = notch.isHovering ? Qt.MouseFocusReason : Qt.TabFocusReason;
        const view = content.item ? content.item.item : null;
        if (view && typeof view.takeKeyboard === "function")
            view.takeKeyboard(reason);
        else
            focusSelectedTab(reason);
    }

    function focusSelectedTab(reason) {
        const tabs = notch.visibleTabs;
        let index = 0;
        for (let i = 0; i < tabs.length; ++i) {
            if (tabs[i].id === notch.selectedTab)
                index = i;
        }
        const button = tabButtons.itemAt(index);
        if (button)
            button.forceActiveFocus(reason);
    }

    function stepTabs(steps) {
        notch.selectNeighbourTab(steps);
        focusSelectedTab(Qt.TabFocusReason);
    }

    Keys.onLeftPressed: stepTabs(arabic ? 1 : -1)
    Keys.onRightPressed: stepTabs(arabic ? -1 : 1)

    Item {
        id: header
        anchors { left: parent.left; right: parent.right; top: parent.top }
        anchors.leftMargin: Theme.openPadding + 6
        anchors.rightMargin: Theme.openPadding + 6
        anchors.topMargin: 8
        height: Theme.tabBarHeight

        Row {
            id: tabBar
            anchors { left: parent.left; verticalCenter: parent.verticalCenter }
            spacing: 2
            readonly property real tabWidth: (header.width - settingsButton.width - 10) / notch.visibleTabs.length - spacing

            Repeater {
                id: tabButtons
                model: notch.visibleTabs
                delegate: NotchTabButton {
                    width: tabBar.tabWidth
                    height: header.height
                    tabId: modelData.id
                    symbol: modelData.symbol
                    title: panel.arabic ? modelData.titleArabic : modelData.titleEnglish
                    selected: notch.selectedTab === modelData.id
                    onClicked: notch.selectedTab = modelData.id
                }
            }
        }

        NotchIconButton {
            id: settingsButton
            objectName: "settingsButton"
            anchors { right: parent.right; verticalCenter: parent.verticalCenter }
            symbol: "gearshape"
            toolTip: panel.arabic ? "الإعدادات" : "Settings"
            onClicked: notch.openSettings()
        }
    }

    Rectangle {
        id: divider
        anchors { left: parent.left; right: parent.right; top: header.bottom }
        anchors.leftMargin: Theme.openPadding + 6
        anchors.rightMargin: Theme.openPadding + 6
        anchors.topMargin: 6
        height: 1
        color: Theme.notchDivider
    }

    Loader {
        id: content
        anchors { left: parent.left; right: parent.right; top: divider.bottom; bottom: parent.bottom }
        anchors.margins: Theme.openPadding
        readonly property var tab: notch.selectedTabInfo
        // The tab's own view where one exists, else what it is.
        readonly property string view: panel.tabViews[notch.selectedTab] || ""
        sourceComponent: view === "" ? placeholder : tabView
        // The tab's own keyboard focus (a search field, say) is the notch's.
        focus: true
    }

    // Tabs with views of their own, by tab id (e.g. "notes": "NotesTab.qml"). A tab that is not
    // listed shows its symbol and title.
    readonly property var tabViews: ({
        "home": "HomeTab.qml",
        "nowPlaying": "NowPlayingTab.qml",
        "calendar": "CalendarTab.qml",
        "timer": "TimerTab.qml",
        "notes": "NotesTab.qml",
        "clipboard": "ClipboardTab.qml",
        "shelf": "ShelfTab.qml",
        "capture": "CaptureTab.qml",
        "devices": "DevicesTab.qml"
    })

    Component {
        id: tabView
        Loader {
            source: content.view
            focus: true
        }
    }

    // Until a tab has content of its own it shows what it is.
    Component {
        id: placeholder
        TabPlaceholder {
            symbol: content.tab.symbol
            title: panel.arabic ? content.tab.titleArabic : content.tab.titleEnglish
        }
    }
}
