import QtQuick
import QtQuick.Layouts

// A date on a month's grid and a time of day (24-hour), confirmed with Set or dismissed with
// Cancel. From the keyboard: arrows move the day (Page Up/Down the month) while the grid has the
// focus, Up/Down change the hour and minute in their fields, Enter sets, Escape cancels.
NotchPopup {
    id: picker
    readonly property bool arabic: settings.isArabic
    property int year: 2000
    property int month: 1 // 1–12
    property int day: 1
    signal picked(var moment)

    // Opens over the top of `origin` on the fields of `moment`, or of the next whole hour when it
    // is not a date.
    function openOn(moment, origin) {
        var fields = notes.wallClock(moment);
        year = fields.year;
        month = fields.month;
        day = fields.day;
        hour.value = fields.hour;
        minute.value = fields.minute;
        hour.showValue();
        minute.showValue();
        openOver(origin);
    }

    function moveDays(count) {
        var date = new Date(year, month - 1, day + count);
        year = date.getFullYear();
        month = date.getMonth() + 1;
        day = date.getDate();
    }

    function moveMonths(count) {
        var first = new Date(year, month - 1 + count, 1);
        var last = new Date(first.getFullYear(), first.getMonth() + 1, 0).getDate();
        year = first.getFullYear();
        month = first.getMonth() + 1;
        day = Math.min(day, last);
    }

    function confirm() {
        var moment = notes.momentAt(year, month, day, hour.value, minute.value);
        close();
        picked(moment);
    }

    padding: 10
    onOpened: grid.forceActiveFocus()

    background: Rectangle {
        color: Theme.notchControl
        radius: Theme.controlRadius + 4
        border.color: Theme.notchControlHover
    }

    contentItem: RowLayout {
        spacing: 14
        LayoutMirroring.enabled: picker.arabic
        LayoutMirroring.childrenInherit: true
        Keys.onReturnPressed: picker.confirm()
        Keys.onEnterPressed: picker.confirm()

        ColumnLayout {
            spacing: 2
            RowLayout {
                Layout.fillWidth: true
                NotchIconButton {
                    size: 20
                    symbol: picker.arabic ? "chevron.right" : "chevron.left"
                    toolTip: picker.arabic ? "الشهر السابق" : "Previous month"
                    onClicked: picker.moveMonths(-1)
                }
                Text {
                    Layout.fillWidth: true
                    horizontalAlignment: Text.AlignHCenter
                    text: Qt.locale(picker.arabic ? "ar" : "en").standaloneMonthName(picker.month - 1)
                          + " " + Format.digits(picker.year)
                    color: Theme.notchText
                    font.family: Theme.fontFamily
                    font.pixelSize: Theme.smallSize + 1
                    font.weight: Font.DemiBold
                }
                NotchIconButton {
                    size: 20
                    symbol: picker.arabic ? "chevron.left" : "chevron.right"
                    toolTip: picker.arabic ? "الشهر التالي" : "Next month"
                    onClicked: picker.moveMonths(1)
                }
            }
            WeekdayRow {
                Layout.fillWidth: true
                locale: grid.locale
                pixelSize: Theme.captionSize - 1
            }
            MonthDays {
                id: grid
                objectName: "dueDayGrid"
                Layout.preferredWidth: 7 * 24
                Layout.preferredHeight: 6 * 17
                year: picker.year
                month: picker.month - 1
                locale: Qt.locale(picker.arabic ? "ar" : "en")
                focus: true
                Keys.onLeftPressed: picker.moveDays(picker.arabic ? 1 : -1)
                Keys.onRightPressed: picker.moveDays(picker.arabic ? -1 : 1)
                Keys.onUpPressed: picker.moveDays(-7)
                Keys.onDownPressed: picker.moveDays(7)
                Keys.onPressed: (event) => {
                    if (event.key === Qt.Key_PageUp) {
                        picker.moveMonths(-1);
                        event.accepted = true;
                    } else if (event.key === Qt.Key_PageDown) {
                        picker.moveMonths(1);
                        event.accepted = true;
                    }
                }
                onClicked: (date) => {
                    picker.year = date.getFullYear();
                    picker.month = date.getMonth() + 1;
                    picker.day = date.getDate();
                }
                delegate: Rectangle {
                    required property var modelData
                    readonly property int day: modelData.day
                    readonly property int month: modelData.month
                    readonly property int year: modelData.year
                    readonly property bool today: modelData.today
                    readonly property bool chosen: day === picker.day && month === picker.month - 1
                                                   && year === picker.year
                    radius: height / 2
                    color: chosen ? Theme.notchAccentFill : "transparent"
                    border.color: chosen && grid.activeFocus ? Theme.notchText : "transparent"
                    Text {
                        anchors.centerIn: parent
                        text: Format.digits(parent.day)
                        color: parent.chosen ? Theme.textOnAccent
                             : parent.month === picker.month - 1 ? (parent.today ? Theme.notchAccent : Theme.notchText)
                             : Theme.notchSecondaryText
                        font.family: Theme.fontFamily
                        font.pixelSize: Theme.captionSize + 1
                    }
                }
            }
        }

        ColumnLayout {
            Layout.alignment: Qt.AlignTop
            spacing: 8
            Text {
                text: picker.arabic ? "الوقت" : "Time"
                color: Theme.notchSecondaryText
                font.family: Theme.fontFamily
                font.pixelSize: Theme.smallSize
            }
            RowLayout {
                // Hours before minutes in both languages, as a clock shows them.
                LayoutMirroring.enabled: false
                spacing: 4
                NotchNumberField {
                    id: hour
                    objectName: "dueHour"
                    from: 0
                    to: 23
                    accessibleName: picker.arabic ? "الساعة" : "Hour"
                }
                Text {
                    text: ":"
                    color: Theme.notchText
                    font.pixelSize: Theme.bodySize
                }
                NotchNumberField {
                    id: minute
                    objectName: "dueMinute"
                    from: 0
                    to: 59
                    accessibleName: picker.arabic ? "الدقيقة" : "Minute"
                }
            }
            Item { Layout.preferredHeight: 20 }
            RowLayout {
                spacing: 6
                NotchTextButton {
                    text: picker.arabic ? "إلغاء" : "Cancel"
                    onClicked: picker.close()
                }
                NotchTextButton {
                    objectName: "dueSet"
                    primary: true
                    text: picker.arabic ? "تعيين" : "Set"
                    onClicked: picker.confirm()
                }
            }
        }
    }
}
