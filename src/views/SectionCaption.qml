import QtQuick
import QtQuick.Layouts

// The small title above a group of settings.
Text {
    color: Theme.secondaryText
    font.family: Theme.fontFamily
    font.pixelSize: Theme.smallSize
    font.weight: Font.DemiBold
    Layout.leftMargin: 4
    Layout.rightMargin: 4
}
