import QtQuick
import QtQuick.Controls
import QtQuick.Layouts

Item {
    id: page
    readonly property bool arabic: settings.isArabic

    ColumnLayout {
        anchors.centerIn: parent
        width: Math.min(parent.width - 2 * Theme.windowPadding, 380)
        spacing: 10

        Rectangle {
            Layout.alignment: Qt.AlignHCenter
            width: 84
            height: 84
            radius: 20
            color: Theme.accent
            // The app's mark: a notch hanging from the top edge.
            NotchShape {
                anchors.horizontalCenter: parent.horizontalCenter
                y: 0
                width: 40
                height: 14
                earRadius: 4
                bottomRadius: 6
                fill: Theme.notchFill
            }
            Icon {
                anchors.centerIn: parent
                anchors.verticalCenterOffset: 8
                symbol: "sparkles"
                color: Theme.notchText
                size: 28
            }
        }
        Text {
            Layout.alignment: Qt.AlignHCenter
            text: "Navro"
            color: Theme.text
            font.family: Theme.latinFontFamily
            font.pixelSize: Theme.displaySize
            font.weight: Font.Bold
        }
        Text {
            objectName: "versionText"
            Layout.alignment: Qt.AlignHCenter
            text: (page.arabic ? "الإصدار " : "Version ") + app.version
            color: Theme.secondaryText
            font.family: Theme.fontFamily
            font.pixelSize: Theme.bodySize
        }
        Text {
            Layout.fillWidth: true
            Layout.topMargin: 6
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.WordWrap
            text: page.arabic ? "يحوّل نافرو أعلى شاشتك إلى لوحة حيّة صغيرة تُظهر ما يجري الآن، وتنفتح على أدواتك اليومية."
                              : "Navro turns the top of your screen into a small live panel that shows what is happening now and opens onto your everyday tools."
            color: Theme.text
            font.family: Theme.fontFamily
            font.pixelSize: Theme.bodySize
        }
        Text {
            Layout.fillWidth: true
            Layout.topMargin: 10
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.WordWrap
            text: page.arabic ? "الأيقونات من مجموعة Lucide (رخصة ISC)." : "Icons from the Lucide set (ISC licence)."
            color: Theme.secondaryText
            font.family: Theme.fontFamily
            font.pixelSize: Theme.smallSize
        }
    }
}
