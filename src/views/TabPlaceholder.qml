import QtQuick

Item {
    id: placeholder
    property string symbol: "circle"
    property string title: ""

    Column {
        anchors.centerIn: parent
        spacing: 10
        Icon {
            anchors.horizontalCenter: parent.horizontalCenter
            symbol: placeholder.symbol
            color: Theme.notchSecondaryText
            size: 30
        }
        Text {
            anchors.horizontalCenter: parent.horizontalCenter
            text: placeholder.title
            color: Theme.notchText
            font.family: Theme.fontFamily
            font.pixelSize: Theme.headlineSize
            font.weight: Font.DemiBold
        }
    }
}
