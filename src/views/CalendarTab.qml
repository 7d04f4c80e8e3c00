import QtQuick
import QtQuick.Layouts

// The Calendar tab: today's and tomorrow's events under their day (time, title, calendar colour,
// location, and "Join" for a video call), and the month with today marked and its Umm al-Qura
// date beside the Gregorian one. Without any event it says so and leads to the Calendars page.
FocusScope {
    id: tab
    objectName: "calendarTab"
    readonly property bool arabic: settings.isArabic
    readonly property var events: calendar.upcoming
    readonly property var locale: Qt.locale(arabic ? "ar" : "en_GB")
    // The day the month grid shows; it moves on at midnight with the list.
    property date today: new Date()
    Connections {
        target: calendar
        function onUpcomingChanged() { tab.today = new Date() }
    }

    function timeText(value) {
        return Format.time(value);
    }

    function whenText(event) {
        if (event.allDay)
            return arabic ? "طوال اليوم" : "All day";
        return timeText(event.start) + " – " + timeText(event.end);
    }

    function dayTitle(day) {
        return day === 0 ? (arabic ? "اليوم" : "Today") : (arabic ? "غدًا" : "Tomorrow");
    }

    Component.onCompleted: (events.length > 0 ? list : emptyButton).forceActiveFocus()

    RowLayout {
        anchors.fill: parent
        spacing: Theme.openPadding

        // --- Today and tomorrow ---------------------------------------------------------------
        Item {
            Layout.fillWidth: true
            Layout.fillHeight: true

            ListView {
                id: list
                objectName: "calendarList"
                anchors.fill: parent
                visible: tab.events.length > 0
                clip: true
                spacing: 2
                model: tab.events
                keyNavigationEnabled: true
                boundsBehavior: Flickable.StopAtBounds
                delegate: Column {
                    id: row
                    width: ListView.view.width
                    readonly property bool firstOfDay:
                        index === 0 || tab.events[index - 1].day !== modelData.day
                    spacing: 2

                    Text {
                        visible: row.firstOfDay
                        topPadding: index === 0 ? 0 : 6
                        text: tab.dayTitle(modelData.day)
                        color: Theme.notchSecondaryText
                        font.family: Theme.fontFamily
                        font.pixelSize: Theme.smallSize
                        font.weight: Font.DemiBold
                    }
                    Rectangle {
                        width: parent.width
                        height: 38
                        radius: 8
                        color: row.ListView.isCurrentItem && list.activeFocus ? Theme.notchSelection
                                                                              : Theme.notchControl
                        border.width: row.ListView.isCurrentItem && list.activeFocus
                                      ? Theme.focusRingWidth : 0
                        border.color: Theme.notchFocusRing

                        Rectangle {
                            id: colourBar
                            anchors { left: parent.left; leftMargin: 6; verticalCenter: parent.verticalCenter }
                            width: 4
                            height: parent.height - 14
                            radius: 2
                            color: modelData.colour
                        }
                        Column {
                            anchors {
                                left: colourBar.right; leftMargin: 8
                                right: join.visible ? join.left : parent.right; rightMargin: 8
                                verticalCenter: parent.verticalCenter
                            }
                            Text {
                                width: parent.width
                                text: modelData.title !== "" ? modelData.title
                                                             : (tab.arabic ? "(بلا عنوان)" : "(No title)")
                                color: Theme.notchText
                                font.family: Theme.fontFamily
                                font.pixelSize: Theme.bodySize
                                elide: Text.ElideRight
                                horizontalAlignment: Text.AlignLeft
                            }
                            Text {
                                width: parent.width
                                text: tab.whenText(modelData)
                                      + (modelData.location !== "" ? "  ·  " + modelData.location : "")
                                color: Theme.notchSecondaryText
                                font.family: Theme.fontFamily
                                font.pixelSize: Theme.captionSize
                                elide: Text.ElideRight
                                horizontalAlignment: Text.AlignLeft
                            }
                        }
                        NotchTextButton {
                            id: join
                            objectName: "join_" + index
                            anchors { right: parent.right; rightMargin: 4; verticalCenter: parent.verticalCenter }
                            visible: modelData.joinLink !== ""
                            implicitHeight: 28
                            symbol: "video"
                            primary: true
                            text: tab.arabic ? "انضمام" : "Join"
                            onClicked: Qt.openUrlExternally(modelData.joinLink)
                        }
                    }
                }
                Keys.onReturnPressed: {
                    var event = tab.events[currentIndex];
                    if (event && event.joinLink !== "")
                        Qt.openUrlExternally(event.joinLink);
                }
            }

            Column {
                anchors.centerIn: parent
                visible: tab.events.length === 0
                spacing: 10
                Icon {
                    anchors.horizontalCenter: parent.horizontalCenter
                    symbol: "calendar"
                    color: Theme.notchSecondaryText
                    size: 26
                }
                Text {
                    anchors.horizontalCenter: parent.horizontalCenter
                    text: calendar.sources.length === 0
                          ? (tab.arabic ? "لم تُضف أي تقويم بعد" : "No calendars yet")
                          : (tab.arabic ? "لا مواعيد اليوم ولا غدًا" : "Nothing today or tomorrow")
                    color: Theme.notchText
                    font.family: Theme.fontFamily
                    font.pixelSize: Theme.bodySize
                }
                NotchTextButton {
                    id: emptyButton
                    objectName: "openCalendarsPage"
                    anchors.horizontalCenter: parent.horizontalCenter
                    text: tab.arabic ? "إدارة التقويمات…" : "Manage Calendars…"
                    onClicked: {
                        notch.close();
                        app.openSettingsPage("calendars");
                    }
                }
            }
        }

        // --- The month --------------------------------------------------------------------------
        ColumnLayout {
            // Its own width; the day's events take the rest of the row.
            Layout.preferredWidth: 236
            Layout.fillWidth: false
            Layout.fillHeight: true
            spacing: 2

            Text {
                objectName: "monthTitle"
                Layout.fillWidth: true
                text: Format.digits(tab.today.toLocaleDateString(tab.locale, "MMMM yyyy"))
                color: Theme.notchText
                font.family: Theme.fontFamily
                font.pixelSize: Theme.bodySize
                font.weight: Font.DemiBold
                horizontalAlignment: Text.AlignLeft
            }
            Text {
                objectName: "hijriToday"
                Layout.fillWidth: true
                text: calendar.hijriDate(tab.today, "EEEE d MMMM y")
                color: Theme.prayer
                font.family: Theme.fontFamily
                font.pixelSize: Theme.captionSize
                horizontalAlignment: Text.AlignLeft
            }
            WeekdayRow {
                Layout.fillWidth: true
                locale: tab.locale
            }
            MonthDays {
                id: grid
                Layout.fillWidth: true
                Layout.fillHeight: true
                today: tab.today
                locale: tab.locale
                delegate: Item {
                    required property var modelData
                    readonly property int day: modelData.day
                    readonly property int month: modelData.month
                    readonly property bool isToday: modelData.today
                    Rectangle {
                        anchors.centerIn: parent
                        width: 20
                        height: 18
                        radius: 9
                        color: parent.isToday ? Theme.notchAccent : "transparent"
                    }
                    Text {
                        anchors.centerIn: parent
                        text: Format.digits(parent.day)
                        color: parent.isToday ? Theme.textOnAccent
                                              : parent.month === grid.month ? Theme.notchText
                                                                                  : Theme.notchTertiaryText
                        font.family: Theme.fontFamily
                        font.pixelSize: Theme.captionSize
                        font.weight: parent.isToday ? Font.Bold : Font.Normal
                    }
                }
            }
        }
    }
}
