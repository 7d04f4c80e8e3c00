import QtQuick

// The names of the seven days over a month's columns, from the locale's first day of the week;
// right to left where the layout is mirrored. Short names where they fit the columns, else the
// narrow ones (Arabic's short names are its whole names).
Item {
    id: row
    property var locale: Qt.locale()
    property int pixelSize: Theme.captionSize
    readonly property bool mirrored: LayoutMirroring.enabled
    property int format: Locale.ShortFormat

    function fit() {
        var widest = 0;
        for (var day = 0; day < 7; ++day) {
            metrics.text = locale.standaloneDayName(day, Locale.ShortFormat);
            widest = Math.max(widest, metrics.advanceWidth);
        }
        format = widest <= width / 7 - 2 ? Locale.ShortFormat : Locale.NarrowFormat;
    }
    onWidthChanged: fit()
    onLocaleChanged: fit()
    onPixelSizeChanged: fit()

    implicitWidth: 7 * 24
    implicitHeight: pixelSize + 6

    TextMetrics {
        id: metrics
        font.family: Theme.fontFamily
        font.pixelSize: row.pixelSize
    }

    Repeater {
        model: 7
        delegate: Text {
            required property int index
            x: (row.mirrored ? 6 - index : index) * width
            width: row.width / 7
            height: row.height
            text: row.locale.standaloneDayName((row.locale.firstDayOfWeek + index) % 7, row.format)
            horizontalAlignment: Text.AlignHCenter
            verticalAlignment: Text.AlignVCenter
            color: Theme.notchSecondaryText
            font.family: Theme.fontFamily
            font.pixelSize: row.pixelSize
        }
    }
}
