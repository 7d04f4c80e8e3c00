import QtQuick
import QtQuick.Layouts

// One page of onboarding: a symbol (Navro's own mark when none is given), a title, a sentence,
// and whatever controls it holds. The symbol and the title sit at the same height on every page,
// so that only what differs moves when the user goes on.
ColumnLayout {
    id: page
    property string symbol: ""
    property string title: ""
    property string text: ""
    default property alias controls: extra.data
    readonly property bool arabic: settings.isArabic
    spacing: 14

    Item { implicitHeight: 8 }
    Item {
        Layout.alignment: Qt.AlignHCenter
        implicitWidth: 64
        implicitHeight: 64
        AppIcon {
            visible: page.symbol === ""
            anchors.centerIn: parent
            size: 72
        }
        Rectangle {
            visible: page.symbol !== ""
            anchors.fill: parent
            radius: 16
            color: Theme.accent
            Icon {
                anchors.centerIn: parent
                symbol: page.symbol
                color: Theme.textOnAccent
                size: 30
            }
        }
    }
    Text {
        Layout.fillWidth: true
        horizontalAlignment: Text.AlignHCenter
        text: page.title
        color: Theme.text
        font.family: Theme.fontFamily
        font.pixelSize: Theme.displaySize - 4
        font.weight: Font.Bold
        wrapMode: Text.WordWrap
    }
    Paragraph {
        Layout.fillWidth: true
        Layout.leftMargin: 20
        Layout.rightMargin: 20
        horizontalAlignment: Text.AlignHCenter
        content: page.text
        color: Theme.secondaryText
        font.family: Theme.fontFamily
        font.pixelSize: Theme.bodySize + 1
        // Arabic letters come with tall lines of their own; more air would only loosen them.
        lineHeight: page.arabic ? 1.0 : 1.2
    }
    ColumnLayout {
        id: extra
        Layout.fillWidth: true
        Layout.topMargin: 6
        spacing: 10
    }
    Item { Layout.fillHeight: true }
}
