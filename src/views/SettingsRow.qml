import QtQuick
import QtQuick.Layouts

// One row of a settings card: a title (and optional detail) at the leading side, a control at
// the trailing side.
RowLayout {
    id: row
    property string title: ""
    property string detail: ""
    default property alias control: trailing.data
    Layout.fillWidth: true
    Layout.leftMargin: 8
    Layout.rightMargin: 8
    Layout.minimumHeight: 36
    spacing: Theme.spacing

    ColumnLayout {
        Layout.fillWidth: true
        spacing: 1
        Text {
            Layout.fillWidth: true
            text: row.title
            color: Theme.text
            font.family: Theme.fontFamily
            font.pixelSize: Theme.bodySize
            elide: Text.ElideRight
        }
        Text {
            Layout.fillWidth: true
            visible: row.detail !== ""
            text: row.detail
            color: Theme.secondaryText
            font.family: Theme.fontFamily
            font.pixelSize: Theme.smallSize
            wrapMode: Text.WordWrap
        }
    }
    Row {
        id: trailing
        Layout.alignment: Qt.AlignVCenter
        spacing: 8
    }
}
