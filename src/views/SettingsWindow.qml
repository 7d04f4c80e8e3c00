import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import QtQuick.Window

// The settings window: General, Prayer and About pages, chosen by settings.settingsPage.
Window {
    id: window
    readonly property bool arabic: settings.isArabic
    width: 700
    height: 540
    minimumWidth: 620
    minimumHeight: 460
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
                        { "page": "about", "symbol": "info.circle", "title": ["About", "حول"] }
                    ]
                    delegate: Rectangle {
                        readonly property bool selected: settings.settingsPage === modelData.page
                        objectName: "page_" + modelData.page
                        width: parent.width
                        height: 34
                        radius: Theme.controlRadius
                        color: selected ? Theme.selection : (mouse.containsMouse ? Theme.buttonBackground : "transparent")
                        Row {
                            anchors { left: parent.left; leftMargin: 10; verticalCenter: parent.verticalCenter }
                            spacing: 10
                            Icon {
                                anchors.verticalCenter: parent.verticalCenter
                                symbol: modelData.symbol
                                color: parent.parent.selected ? Theme.accent : Theme.secondaryText
                                size: 16
                            }
                            Text {
                                anchors.verticalCenter: parent.verticalCenter
                                text: modelData.title[window.arabic ? 1 : 0]
                                color: Theme.text
                                font.family: Theme.fontFamily
                                font.pixelSize: Theme.bodySize
                                font.weight: parent.parent.selected ? Font.DemiBold : Font.Normal
                            }
                        }
                        MouseArea {
                            id: mouse
                            anchors.fill: parent
                            hoverEnabled: true
                            onClicked: settings.settingsPage = modelData.page
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

        Loader {
            id: page
            anchors { left: sidebar.right; leftMargin: 1; right: parent.right; top: parent.top; bottom: parent.bottom }
            source: settings.settingsPage === "prayer" ? "PrayerPage.qml"
                    : settings.settingsPage === "about" ? "AboutPage.qml" : "GeneralPage.qml"
        }
    }
}
