import QtQuick
import QtQuick.Controls

// How long the pointer must rest on the notch before it opens.
SettingsRow {
    id: row
    readonly property bool arabic: settings.isArabic
    title: arabic ? "مهلة الفتح بالتمرير" : "Hover delay"
    detail: arabic ? "المدة التي يبقى فيها المؤشر على النوتش قبل أن يُفتح"
                   : "How long the pointer rests on the notch before it opens"
    enabled: settings.openMode === "hover"
    opacity: enabled ? 1 : 0.5

    Slider {
        id: slider
        anchors.verticalCenter: parent.verticalCenter
        width: 130
        from: 0
        to: 1
        stepSize: 0.05
        snapMode: Slider.SnapAlways
        value: settings.hoverDelay
        onMoved: settings.hoverDelay = Math.round(value * 100) / 100
        background: Rectangle {
            x: slider.leftPadding
            y: slider.topPadding + slider.availableHeight / 2 - height / 2
            width: slider.availableWidth
            height: 4
            radius: 2
            color: Theme.buttonBackground
            Rectangle {
                x: slider.mirrored ? parent.width - width : 0
                width: slider.position * parent.width
                height: parent.height
                radius: 2
                color: Theme.accent
            }
        }
        handle: Rectangle {
            x: slider.leftPadding + slider.visualPosition * (slider.availableWidth - width)
            y: slider.topPadding + slider.availableHeight / 2 - height / 2
            width: 18
            height: 18
            radius: 9
            color: Theme.knob
            border.color: Theme.controlOutline
            FocusRing {
                shown: slider.visualFocus
                cornerRadius: 9
            }
        }
    }
    Text {
        anchors.verticalCenter: parent.verticalCenter
        width: 52
        horizontalAlignment: Text.AlignRight
        text: Format.number(settings.hoverDelay, 2) + (row.arabic ? " ث" : " s")
        color: Theme.secondaryText
        font.family: Theme.fontFamily
        font.pixelSize: Theme.smallSize + 1
    }
}
