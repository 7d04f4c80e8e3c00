import QtQuick
import QtQuick.Controls
import QtQuick.Layouts

// A settings page: its title, then its sections in a scrolling column.
ScrollView {
    id: scaffold
    property string title: ""
    default property alias sections: column.data
    clip: true
    contentWidth: availableWidth

    ColumnLayout {
        id: column
        width: scaffold.availableWidth - 2 * Theme.windowPadding
        x: Theme.windowPadding
        spacing: 18

        Item { implicitHeight: 2 }
        Text {
            text: scaffold.title
            color: Theme.text
            font.family: Theme.fontFamily
            font.pixelSize: Theme.headlineSize
            font.weight: Font.Bold
        }
    }
}
