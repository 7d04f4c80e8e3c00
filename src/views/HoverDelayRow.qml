import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import "."

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
        width: 150
        from: 0
        to: 1
        stepSize: 0.05
        snapMode: Slider.SnapAlways
        value: settings.hoverDelay
        onMoved: settings.hoverDelay = Math.round(value * 100) / 100
        palette.dark: Theme.accent
        palette.midlight: Theme.buttonBackground
    }
    Text {
        anchors.verticalCenter: parent.verticalCenter
        width: 52
        horizontalAlignment: Text.AlignRight
        text: row.arabic
              ? settings.hoverDelay.toLocaleString(Qt.locale("ar"), "f", 2) + " ث"
              : settings.hoverDelay.toFixed(2) + " s"
        color: Theme.secondaryText
        font.family: Theme.fontFamily
        font.pixelSize: Theme.smallSize + 1
    }
}
