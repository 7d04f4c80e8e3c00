import QtQuick
import QtQuick.Layouts
import QtQuick.Window

// The tray item's panel: the four actions of the application. Positioned at the tray item by
// the application, closed when it loses focus.
Window {
    id: window
    readonly property bool arabic: settings.isArabic
    flags: Qt.Tool | Qt.FramelessWindowHint | Qt.WindowStaysOnTopHint | Qt.NoDropShadowWindowHint
    width: 272
    height: card.implicitHeight + 2 * margin
    readonly property int margin: 6
    color: "transparent"
    title: "Navro"

    Shortcut {
        sequence: "Escape"
        onActivated: window.hide()
    }

    Rectangle {
        id: card
        anchors.fill: parent
        anchors.margins: window.margin
        implicitHeight: content.implicitHeight + 16
        radius: Theme.windowRadius
        color: Theme.windowBackground
        border.color: Theme.cardBorder
        border.width: 1
        LayoutMirroring.enabled: window.arabic
        LayoutMirroring.childrenInherit: true

        ColumnLayout {
            id: content
            anchors { left: parent.left; right: parent.right; top: parent.top; margins: 8 }
            spacing: 2

            RowLayout {
                Layout.fillWidth: true
                Layout.margins: 6
                spacing: 10
                AppIcon { size: 30 }
                ColumnLayout {
                    spacing: 0
                    Layout.fillWidth: true
                    Text {
                        text: window.arabic ? "نافرو" : "Navro"
                        color: Theme.text
                        font.family: Theme.fontFamily
                        font.pixelSize: Theme.titleSize
                        font.weight: Font.Bold
                    }
                    Text {
                        text: !settings.notchEnabled ? (window.arabic ? "النوتش مخفي" : "The notch is hidden")
                              : notch.isOpen ? (window.arabic ? "النوتش مفتوح" : "The notch is open")
                              : (window.arabic ? "النوتش جاهز" : "The notch is ready")
                        color: Theme.secondaryText
                        font.family: Theme.fontFamily
                        font.pixelSize: Theme.smallSize
                    }
                }
            }

            Rectangle { Layout.fillWidth: true; Layout.topMargin: 4; Layout.bottomMargin: 4; height: 1; color: Theme.separator }

            MenuRow {
                objectName: "openNotchAction"
                symbol: "rectangle.topthird.inset.filled"
                title: window.arabic ? "فتح النوتش" : "Open Notch"
                shortcut: "Ctrl+Alt+L"
                // The notch takes the keyboard before this panel goes: a focused window that
                // disappears has the window manager hand focus on, perhaps after the notch took it.
                onTriggered: { app.openNotch(); window.hide(); }
            }
            MenuRow {
                objectName: "settingsAction"
                symbol: "gearshape"
                title: window.arabic ? "الإعدادات…" : "Settings…"
                onTriggered: { window.hide(); app.openSettings(); }
            }
            MenuRow {
                objectName: "aboutAction"
                symbol: "info.circle"
                title: window.arabic ? "حول نافرو" : "About Navro"
                onTriggered: { window.hide(); app.openAbout(); }
            }

            Rectangle { Layout.fillWidth: true; Layout.topMargin: 4; Layout.bottomMargin: 4; height: 1; color: Theme.separator }

            MenuRow {
                objectName: "quitAction"
                symbol: "power"
                title: window.arabic ? "إنهاء نافرو" : "Quit Navro"
                onTriggered: app.quit()
            }
        }
    }
}
