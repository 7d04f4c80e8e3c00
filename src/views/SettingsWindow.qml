import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import QtQuick.Window

// The settings window: General, Prayer, Calendars and About pages, chosen by settings.settingsPage.
Window {
    id: window
    readonly property bool arabic: settings.isArabic
    width: 720
    height: 600
    minimumWidth: 640
    minimumHeight: 480
    title: arabic ? "إعدادات نافرو" : "Navro Settings"
    color: Theme.windowBackground

    Item {
        anchors.fill: parent
        LayoutMirroring.enabled: window.arabic
        LayoutMirroring.childrenInherit: true

        Rectangle {
            id: sidebar
            anchors { left: parent.left; top: parent.top; bottom: parent.bottom }
            width: 180
            color: Theme.sidebarBackground

            Column {
                anchors { left: parent.left; right: parent.right; top: parent.top; margins: 12 }
                spacing: 2

                Repeater {
                    model: [
                        { "page": "general", "symbol": "gearshape", "title": ["General", "عام"] },
                        { "page": "prayer", "symbol": "moon", "title": ["Prayer", "الصلاة"] },
                        { "page": "calendars", "symbol": "calendar", "title": ["Calendars", "التقويمات"] },
                        { "page": "about", "symbol": "info.circle", "title": ["About", "حول"] }
                    ]
                    delegate: Pressable {
                        id: entry
                        readonly property bool selected: settings.settingsPage === modelData.page
                        objectName: "page_" + modelData.page
                        width: parent.width
                        height: 34
                        leftPadding: 10
                        rightPadding: 10
                        text: modelData.title[window.arabic ? 1 : 0]
                        Accessible.role: Accessible.PageTab
                        Accessible.selected: selected
                        onClicked: settings.settingsPage = modelData.page

                        background: Rectangle {
                            radius: Theme.controlRadius
                            color: entry.selected ? Theme.selection
                                                  : (entry.hovered ? Theme.buttonBackground : "transparent")
                        }
                        contentItem: Row {
                            spacing: 10
                            Icon {
                                anchors.verticalCenter: parent.verticalCenter
                                symbol: modelData.symbol
                                color: entry.selected ? Theme.accentText : Theme.secondaryText
                                size: 16
                            }
                            Text {
                                anchors.verticalCenter: parent.verticalCenter
                                text: entry.text
                                color: Theme.text
                                font.family: Theme.fontFamily
                                font.pixelSize: Theme.bodySize
                                font.weight: entry.selected ? Font.DemiBold : Font.Normal
                            }
                        }
                    }
                }
            }
        }

        Rectangle {
            anchors { left: sidebar.right; top: parent.top; bottom: parent.bottom }
            width: 1
            color: Theme.separator
        }

        SettingsNotices {
            id: noticeArea
            anchors { left: sidebar.right; right: parent.right; top: parent.top; margins: visible ? Theme.windowPadding : 0 }
            height: visible ? implicitHeight : 0
        }

        Loader {
            id: page
            anchors { left: sidebar.right; leftMargin: 1; right: parent.right; top: noticeArea.bottom; bottom: parent.bottom }
            source: settings.settingsPage === "prayer" ? "PrayerPage.qml"
                    : settings.settingsPage === "calendars" ? "CalendarsPage.qml"
                    : settings.settingsPage === "about" ? "AboutPage.qml" : "GeneralPage.qml"
        }
    }
}
