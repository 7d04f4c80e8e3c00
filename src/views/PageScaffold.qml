import QtQuick
import QtQuick.Controls
import QtQuick.Layouts

// A settings page: its title, then its sections in a scrolling column. The scroll bar shows
// whenever the page goes on below the window's edge.
ScrollView {
    id: scaffold
    property string title: ""
    default property alias sections: column.data
    clip: true
    contentWidth: availableWidth
    ScrollBar.vertical: NavroScrollBar {
        parent: scaffold
        x: scaffold.mirrored ? 0 : scaffold.width - width
        y: scaffold.topPadding
        height: scaffold.availableHeight
    }
    ScrollBar.horizontal.policy: ScrollBar.AlwaysOff

    ColumnLayout {
        id: column
        width: scaffold.availableWidth - 2 * Theme.windowPadding
        x: Theme.windowPadding
        spacing: 14

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
