import QtQuick
import "Icons.js" as Icons

// One symbol of the icon set, drawn in one colour, as large as `size` in layouts too.
Item {
    id: icon
    property string symbol: "circle"
    property color color: "white"
    property int size: 16

    width: size
    height: size
    implicitWidth: size
    implicitHeight: size

    Image {
        // Not kept once unused: Qt Quick's cache of unused images wakes the program every
        // 30 s until it has emptied. Every image of the views is loaded this way.
        cache: false
        anchors.fill: parent
        sourceSize: Qt.size(icon.size * 2, icon.size * 2)
        source: Icons.source(icon.symbol, icon.color)
        fillMode: Image.PreserveAspectFit
        smooth: true
        mipmap: true
    }
}
