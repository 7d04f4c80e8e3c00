import QtQuick
import "Icons.js" as Icons

// One symbol of the icon set, drawn in one colour.
Image {
    id: icon
    property string symbol: "circle"
    property color color: "white"
    property int size: 16

    width: size
    height: size
    sourceSize: Qt.size(size * 2, size * 2)
    source: Icons.source(symbol, color)
    fillMode: Image.PreserveAspectFit
    smooth: true
    mipmap: true
    asynchronous: false
}
