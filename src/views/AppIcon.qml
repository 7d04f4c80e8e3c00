import QtQuick

// Navro's own mark, the application icon (also the tray icon's picture).
Item {
    id: icon
    property int size: 64
    implicitWidth: size
    implicitHeight: size
    Accessible.ignored: true

    Image {
        cache: false
        anchors.fill: parent
        sourceSize: Qt.size(icon.size * 2, icon.size * 2)
        source: "qrc:/views/navro.svg"
        fillMode: Image.PreserveAspectFit
        smooth: true
        mipmap: true
    }
}
