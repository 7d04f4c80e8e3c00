import QtQuick
import QtQuick.Layouts

// The two ways the notch opens, as cards that explain themselves. Both cards are as tall as the
// taller one, whichever of them wraps its line.
RowLayout {
    id: choice
    readonly property bool arabic: settings.isArabic
    spacing: Theme.spacing
    Layout.fillWidth: true

    Repeater {
        model: [
            { "value": "hover", "symbol": "cursorarrow",
              "title": ["Hover", "التمرير"],
              "detail": ["Opens when you rest the pointer on it", "يُفتح عند وضع المؤشر عليه"] },
            { "value": "click", "symbol": "cursorarrow.click",
              "title": ["Click", "النقر"],
              "detail": ["Stays closed until you click it", "يبقى مغلقاً حتى تنقر عليه"] }
        ]
        delegate: Pressable {
            id: card
            readonly property bool selected: settings.openMode === modelData.value
            objectName: "openMode_" + modelData.value
            Layout.fillWidth: true
            Layout.fillHeight: true
            Layout.preferredWidth: 1
            // Never squeezed below its text by a page short of room.
            Layout.minimumHeight: implicitHeight
            implicitHeight: cardContent.implicitHeight + 24
            text: modelData.title[choice.arabic ? 1 : 0]
            focusRadius: Theme.cardRadius
            Accessible.role: Accessible.RadioButton
            Accessible.checked: selected
            Accessible.description: modelData.detail[choice.arabic ? 1 : 0]
            onClicked: settings.openMode = modelData.value

            background: Rectangle {
                radius: Theme.cardRadius
                color: card.hovered && !card.selected ? Theme.selection : Theme.cardBackground
                border.width: card.selected ? 2 : 1
                border.color: card.selected ? Theme.accentText : Theme.cardBorder
            }

            contentItem: Item {
                ColumnLayout {
                    id: cardContent
                    anchors { left: parent.left; right: parent.right; top: parent.top; margins: 12 }
                    spacing: 6
                    RowLayout {
                        Layout.fillWidth: true
                        spacing: 8
                        Icon {
                            symbol: modelData.symbol
                            color: card.selected ? Theme.accentText : Theme.secondaryText
                            size: 16
                        }
                        Text {
                            Layout.fillWidth: true
                            text: modelData.title[choice.arabic ? 1 : 0]
                            color: Theme.text
                            font.family: Theme.fontFamily
                            font.pixelSize: Theme.bodySize
                            font.weight: Font.DemiBold
                        }
                        // The radio mark.
                        Rectangle {
                            width: 16; height: 16; radius: 8
                            color: "transparent"
                            border.width: 2
                            border.color: card.selected ? Theme.accentText : Theme.controlOutline
                            Rectangle {
                                anchors.centerIn: parent
                                visible: card.selected
                                width: 8; height: 8; radius: 4
                                color: Theme.accentText
                            }
                        }
                    }
                    Paragraph {
                        Layout.fillWidth: true
                        content: modelData.detail[choice.arabic ? 1 : 0]
                        color: Theme.secondaryText
                        font.family: Theme.fontFamily
                        font.pixelSize: Theme.smallSize + 1
                    }
                }
            }

            HoverHandler { cursorShape: Qt.PointingHandCursor }
        }
    }
}
