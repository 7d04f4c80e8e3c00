import QtQuick

// The open notch: the tab bar with the settings button, and the selected tab's content.
Item {
    id: panel
    readonly property bool arabic: settings.isArabic

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
        "nowPlaying": "NowPlayingTab.qml",
        "timer": "TimerTab.qml",
        "notes": "NotesTab.qml",
        "clipboard": "ClipboardTab.qml"
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
