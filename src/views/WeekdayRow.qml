import QtQuick

// The short names of the seven days over a month's columns, from the locale's first day of the
// week.
Row {
    id: row
    property var locale: Qt.locale()
    property int pixelSize: Theme.captionSize

    Repeater {
        model: 7
        delegate: Text {
            required property int index
            width: row.width / 7
            text: row.locale.standaloneDayName((row.locale.firstDayOfWeek + index) % 7, Locale.ShortFormat)
            horizontalAlignment: Text.AlignHCenter
            color: Theme.notchSecondaryText
            font.family: Theme.fontFamily
            font.pixelSize: row.pixelSize
        }
    }
}
