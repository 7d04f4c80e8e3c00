import QtQuick
import QtQuick.Layouts

// One row of a settings card: a title (and optional detail) at the leading side, a control at
// the trailing side, centred on the text beside it. Every row but the first of its card is set
// apart from the one above by a thin line.
//
// Anchors rather than a row layout: a layout keeps the control where it centred it while the
// detail text was still wrapping at a narrower width, and a page built in Arabic (whose text
// wraps differently) then showed one row's switch over the next row's.
Item {
    id: row
    property string title: ""
    property string detail: ""
    default property alias control: trailing.data
    readonly property int inset: 8
    readonly property bool separated: parent !== null && parent.children.length > 0
                                      && parent.children[0] !== row

    Layout.fillWidth: true
    implicitWidth: 200 + Theme.spacing + trailing.implicitWidth + 2 * inset
    implicitHeight: Math.max(40, Math.max(label.implicitHeight, trailing.implicitHeight) + 12)

    Rectangle {
        visible: row.separated
        anchors { left: parent.left; right: parent.right; top: parent.top }
        anchors.leftMargin: row.inset
        anchors.rightMargin: row.inset
        height: 1
        color: Theme.separator
    }

    Column {
        id: label
        anchors { left: parent.left; right: trailing.left; verticalCenter: parent.verticalCenter }
        anchors.leftMargin: row.inset
        anchors.rightMargin: Theme.spacing
        spacing: 2
        Text {
            width: parent.width
            text: row.title
            color: Theme.text
            font.family: Theme.fontFamily
            font.pixelSize: Theme.bodySize
            elide: Text.ElideRight
        }
        Paragraph {
            width: parent.width
            visible: row.detail !== ""
            content: row.detail
            color: Theme.secondaryText
            font.family: Theme.fontFamily
            font.pixelSize: Theme.smallSize
        }
    }
    Row {
        id: trailing
        anchors { right: parent.right; verticalCenter: parent.verticalCenter }
        anchors.rightMargin: row.inset
        spacing: 8
    }
}
