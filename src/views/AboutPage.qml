import QtQuick
import QtQuick.Layouts

Item {
    id: page
    readonly property bool arabic: settings.isArabic

    ColumnLayout {
        anchors.centerIn: parent
        width: Math.min(parent.width - 2 * Theme.windowPadding, 380)
        spacing: 10

        AppIcon {
            Layout.alignment: Qt.AlignHCenter
            size: 96
        }
        Text {
            Layout.alignment: Qt.AlignHCenter
            text: page.arabic ? "نافرو" : "Navro"
            color: Theme.text
            font.family: Theme.fontFamily
            font.pixelSize: Theme.displaySize
            font.weight: Font.Bold
        }
        Text {
            objectName: "versionText"
            Layout.alignment: Qt.AlignHCenter
            text: (page.arabic ? "الإصدار " : "Version ") + Format.digits(app.version)
            color: Theme.secondaryText
            font.family: Theme.fontFamily
            font.pixelSize: Theme.bodySize
        }
        Paragraph {
            Layout.fillWidth: true
            Layout.topMargin: 6
            horizontalAlignment: Text.AlignHCenter
            content: page.arabic ? "يحوّل نافرو أعلى شاشتك إلى لوحة حيّة صغيرة تُظهر ما يجري الآن، وتنفتح على أدواتك اليومية."
                                 : "Navro turns the top of your screen into a small live panel that shows what is happening now and opens onto your everyday tools."
            color: Theme.text
            font.family: Theme.fontFamily
            font.pixelSize: Theme.bodySize
        }
        Paragraph {
            Layout.fillWidth: true
            Layout.topMargin: 10
            horizontalAlignment: Text.AlignHCenter
            content: page.arabic ? "الأيقونات من مجموعة Lucide (رخصة ISC)." : "Icons from the Lucide set (ISC licence)."
            color: Theme.secondaryText
            font.family: Theme.fontFamily
            font.pixelSize: Theme.smallSize
        }
    }
}
