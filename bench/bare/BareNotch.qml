import QtQuick

Rectangle {
    color: "black"
    radius: 10
    Text {
        anchors.centerIn: parent
        color: "white"
        font.pixelSize: 11
        text: "12:00"
    }
}
