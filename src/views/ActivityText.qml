import QtQuick

// One line of text at a side of the closed notch.
Text {
    anchors.verticalCenter: parent ? parent.verticalCenter : undefined
    width: parent ? parent.width : implicitWidth
    color: Theme.notchText
    font.family: Theme.fontFamily
    font.pixelSize: Theme.smallSize
    elide: Text.ElideRight
    maximumLineCount: 1
    verticalAlignment: Text.AlignVCenter
}
