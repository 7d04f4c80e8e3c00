import QtQuick
import QtQuick.Controls

// A drop-down choice in the windows' theme. model: a list of objects; textRole and valueRole name
// their fields. The list it opens mirrors with the page in Arabic, like the value it shows.
ComboBox {
    id: control
    readonly property bool arabic: settings.isArabic

    implicitHeight: 34
    leftPadding: 12
    rightPadding: 12
    font.family: Theme.fontFamily
    font.pixelSize: Theme.bodySize
    Keys.onReturnPressed: popup.visible ? popup.close() : popup.open()
    Keys.onEnterPressed: popup.visible ? popup.close() : popup.open()

    background: Rectangle {
        radius: Theme.controlRadius
        color: control.down ? Theme.selection
                            : (control.hovered ? Theme.buttonHover : Theme.buttonBackground)
    }
    FocusRing {}

    contentItem: Text {
        leftPadding: control.mirrored ? indicatorSpace : 0
        rightPadding: control.mirrored ? 0 : indicatorSpace
        readonly property int indicatorSpace: 24
        text: control.displayText
        color: Theme.text
        font: control.font
        elide: Text.ElideRight
        horizontalAlignment: Text.AlignLeft
        verticalAlignment: Text.AlignVCenter
    }

    indicator: Icon {
        x: control.mirrored ? control.leftPadding : control.width - width - control.rightPadding
        y: (control.height - height) / 2
        symbol: "chevron.up.chevron.down"
        color: Theme.secondaryText
        size: 14
    }

    delegate: ItemDelegate {
        id: option
        required property var model
        required property var modelData
        required property int index
        width: ListView.view ? ListView.view.width : implicitWidth
        height: 30
        highlighted: control.highlightedIndex === index
        background: Rectangle {
            anchors.fill: parent
            anchors.leftMargin: 4
            anchors.rightMargin: 4
            radius: Theme.controlRadius
            color: option.highlighted ? Theme.accent : "transparent"
        }
        contentItem: Text {
            leftPadding: 8
            rightPadding: 8
            // A list of objects gives each row its object; a list model gives its roles.
            text: Array.isArray(control.model) ? option.modelData[control.textRole]
                                               : option.model[control.textRole]
            color: option.highlighted ? Theme.textOnAccent : Theme.text
            font.family: Theme.fontFamily
            font.pixelSize: Theme.bodySize
            font.weight: control.currentIndex === option.index ? Font.DemiBold : Font.Normal
            elide: Text.ElideRight
            horizontalAlignment: Text.AlignLeft
            verticalAlignment: Text.AlignVCenter
        }
    }

    popup: Popup {
        y: control.height + 4
        width: control.width
        implicitHeight: Math.min(list.contentHeight + 12, 280)
        padding: 6

        // A pop-up lives beside the page in the window, not inside it, so it does not inherit
        // the page's mirroring: the list sets its own.
        contentItem: ListView {
            id: list
            LayoutMirroring.enabled: control.arabic
            LayoutMirroring.childrenInherit: true
            clip: true
            model: control.delegateModel
            currentIndex: control.highlightedIndex
            boundsBehavior: Flickable.StopAtBounds
            ScrollBar.vertical: NavroScrollBar {}
        }
        background: Rectangle {
            radius: Theme.cardRadius
            color: Theme.cardBackground
            border.color: Theme.cardBorder
        }
    }
}
