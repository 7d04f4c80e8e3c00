import QtQuick
import QtQuick.Layouts
import QtQuick.Window

// The tray item's panel: the four actions of the application, and above the last of them the
// processor and memory load of the last minute, the battery and the next prayer. Positioned at the tray item by the
// application, closed when it loses focus; its figures are sampled only while it is shown.
Window {
    id: window
    readonly property bool arabic: settings.isArabic
    readonly property bool hasStats: typeof systemStats !== "undefined" && systemStats !== null
    readonly property var mainBattery: {
        if (typeof devices === "undefined" || devices === null)
            return null;
        const list = devices.batteries;
        for (let i = 0; i < list.length; ++i)
            if (list[i].kind === "internal")
                return list[i];
        return null;
    }
    function percent(share) {
        return share < 0 ? "–" : Format.number(Math.round(share * 100)) + (arabic ? "٪" : "%");
    }
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

    component StatRow: RowLayout {
        property string symbol
        property string title
        property string figure
        property var values: []
        property color tint
        Layout.fillWidth: true
        Layout.leftMargin: 6
        Layout.rightMargin: 6
        spacing: 8
        Icon {
            symbol: parent.symbol
            color: Theme.secondaryText
            size: 14
        }
        Text {
            Layout.preferredWidth: 70
            text: parent.title
            color: Theme.text
            font.family: Theme.fontFamily
            font.pixelSize: Theme.smallSize + 1
            horizontalAlignment: Text.AlignLeft
        }
        StatGraph {
            Layout.fillWidth: true
            Layout.preferredHeight: 20
            values: parent.values
            tint: parent.tint
        }
        Text {
            Layout.preferredWidth: 40
            text: parent.figure
            color: Theme.secondaryText
            font.family: Theme.fontFamily
            font.pixelSize: Theme.smallSize
            horizontalAlignment: Text.AlignRight
        }
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

            StatRow {
                objectName: "cpuStat"
                visible: window.hasStats
                symbol: "waveform"
                title: window.arabic ? "المعالج" : "Processor"
                figure: window.hasStats ? window.percent(systemStats.cpu) : ""
                values: window.hasStats ? systemStats.cpuHistory : []
                tint: Theme.accentText
            }
            StatRow {
                objectName: "memoryStat"
                visible: window.hasStats
                symbol: "tray"
                title: window.arabic ? "الذاكرة" : "Memory"
                figure: window.hasStats ? window.percent(systemStats.memory) : ""
                values: window.hasStats ? systemStats.memoryHistory : []
                tint: Theme.success
            }
            Text {
                objectName: "memoryDetail"
                visible: window.hasStats && systemStats.memoryTotalBytes > 0
                Layout.leftMargin: 28
                text: window.hasStats ? (window.arabic
                      ? "مستخدمة " + Format.bytes(systemStats.memoryUsedBytes) + " من " + Format.bytes(systemStats.memoryTotalBytes)
                      : Format.bytes(systemStats.memoryUsedBytes) + " of " + Format.bytes(systemStats.memoryTotalBytes) + " in use") : ""
                color: Theme.secondaryText
                font.family: Theme.fontFamily
                font.pixelSize: Theme.captionSize
            }
            RowLayout {
                objectName: "batteryStat"
                visible: window.mainBattery !== null
                Layout.leftMargin: 6
                Layout.topMargin: 2
                spacing: 8
                Icon {
                    symbol: devices && devices.onCharger ? "battery.100percent.bolt" : "battery.75percent"
                    color: Theme.secondaryText
                    size: 14
                }
                Text {
                    text: window.mainBattery === null ? "" :
                          (window.arabic ? "البطارية " : "Battery ") + window.percent(window.mainBattery.percentage / 100)
                          + (window.mainBattery.state === "charging" ? (window.arabic ? "، قيد الشحن" : ", charging")
                             : window.mainBattery.secondsLeft > 0
                               ? (window.arabic ? "، متبقٍ " : ", ") + Format.duration(window.mainBattery.secondsLeft) + (window.arabic ? "" : " left")
                               : "")
                    color: Theme.text
                    font.family: Theme.fontFamily
                    font.pixelSize: Theme.smallSize + 1
                }
            }
            RowLayout {
                objectName: "prayerStat"
                visible: prayer.nextPrayer !== ""
                Layout.leftMargin: 6
                spacing: 8
                Icon {
                    symbol: "moon.stars"
                    color: Theme.secondaryText
                    size: 14
                }
                Text {
                    text: (window.arabic ? prayer.nextPrayerArabic : prayer.nextPrayerEnglish) + " · "
                          + Format.time(prayer.nextPrayerTime)
                    color: Theme.text
                    font.family: Theme.fontFamily
                    font.pixelSize: Theme.smallSize + 1
                }
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
