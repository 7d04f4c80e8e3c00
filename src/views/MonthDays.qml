import QtQuick

// A month as six weeks of seven days from the locale's first day of the week, the days of the
// months before and after filling the first and last weeks. The first week always holds a few
// days of the month before, even when the month begins on the week's first day. Each cell of
// `delegate` is sized to its share of the area and declares `required property var modelData`:
// {day, month, year, today}, month 0–11 as JavaScript's Date counts them.
Item {
    id: monthDays
    property int year: today.getFullYear()
    property int month: today.getMonth()
    property var locale: Qt.locale()
    property date today: new Date()
    property Component delegate
    readonly property var days: daysOf(year, month, locale.firstDayOfWeek, today)
    signal clicked(date date)

    // The 42 days shown for `monthIndex` of `fullYear` when weeks begin on `firstDay` (0 Sunday).
    function daysOf(fullYear, monthIndex, firstDay, now) {
        var before = (new Date(fullYear, monthIndex, 1).getDay() - firstDay + 7) % 7;
        if (before === 0)
            before = 7;
        var cells = [];
        for (var i = 0; i < 42; ++i) {
            var date = new Date(fullYear, monthIndex, 1 - before + i);
            cells.push({
                day: date.getDate(),
                month: date.getMonth(),
                year: date.getFullYear(),
                today: date.getDate() === now.getDate() && date.getMonth() === now.getMonth()
                       && date.getFullYear() === now.getFullYear()
            });
        }
        return cells;
    }

    implicitWidth: 7 * 24
    implicitHeight: 6 * 18

    Grid {
        id: grid
        anchors.fill: parent
        columns: 7
        Repeater {
            model: monthDays.days
            delegate: monthDays.delegate
            onItemAdded: (index, item) => {
                item.width = Qt.binding(() => monthDays.width / 7);
                item.height = Qt.binding(() => monthDays.height / 6);
            }
        }
    }

    MouseArea {
        anchors.fill: parent
        onClicked: (mouse) => {
            var cell = grid.childAt(mouse.x, mouse.y);
            if (cell && cell.modelData)
                monthDays.clicked(new Date(cell.modelData.year, cell.modelData.month, cell.modelData.day));
        }
    }
}
