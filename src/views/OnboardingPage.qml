import QtQuick
import QtQuick.Layouts

// One page of onboarding: a symbol, a title, a sentence, and whatever controls it holds.
ColumnLayout {
    id: page
    property string symbol: "circle"
    property string title: ""
    property string text: ""
    default property alias controls: extra.data
    spacing: 14

    Item { Layout.fillHeight: true }
    Rectangle {
        Layout.alignment: Qt.AlignHCenter
        width: 64
        height: 64
        radius: 16
        color: Theme.accent
        Icon {
            anchors.centerIn: parent
            symbol: page.symbol
            color: Theme.textOnAccent
            size: 30
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
    Text {
        Layout.fillWidth: true
        Layout.leftMargin: 20
        Layout.rightMargin: 20
        horizontalAlignment: Text.AlignHCenter
        text: page.text
        color: Theme.secondaryText
        font.family: Theme.fontFamily
        font.pixelSize: Theme.bodySize + 1
        wrapMode: Text.WordWrap
        lineHeight: 1.2
    }
    ColumnLayout {
        id: extra
        Layout.fillWidth: true
        Layout.topMargin: 6
        spacing: 10
    }
    Item { Layout.fillHeight: true }
}
