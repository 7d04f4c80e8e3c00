import QtQuick
import QtQuick.Layouts

// The Home tab, the day at a glance: the date in both calendars, the next prayer with its
// countdown and the day's times, the next meeting, what plays, the timer and the to-dos due
// today. A card whose service has nothing to show is left out; a click on a card opens its tab.
// While the tab is on screen the clock-driven texts are refreshed once a second, never while
// the notch is closed.
FocusScope {
    id: tab
    objectName: "homeTab"
    readonly property bool arabic: settings.isArabic
    readonly property var locale: Qt.locale(arabic ? "ar" : "en_GB")
    property date now: new Date()
    readonly property var meeting: calendar.nextMeeting
    readonly property bool hasMeeting: meeting.title !== undefined
    // Read again with the clock, since "today" moves at midnight.
    readonly property var dueTodos: { tab.now; return notes.dueToday(); }

    // On screen: the notch is open on this tab.
    readonly property bool shown: tab.visible && notch.isOpen
    property bool watchingCountdown: false
    function followCountdown() {
        if (shown === watchingCountdown)
            return;
        watchingCountdown = shown;
        if (shown)
            prayer.watchCountdown();
        else
            prayer.stopWatchingCountdown();
    }
    onShownChanged: followCountdown()
    Timer {
        interval: 1000
        repeat: true
        running: tab.shown
        onTriggered: tab.now = new Date()
    }
    Connections {
        target: notes
        function onTodosChanged() { tab.now = new Date() }
    }
    Component.onCompleted: followCountdown()
    Component.onDestruction: if (watchingCountdown) prayer.stopWatchingCountdown()

    function timeText(value) {
        return Format.time(value);
    }

    function openTab(id) {
        notch.selectedTab = id;
    }

    function minutesUntil(start) {
        var minutes = Math.ceil((start - tab.now) / 60000);
        if (minutes <= 0)
            return arabic ? "الآن" : "now";
        if (minutes >= 60)
            return (arabic ? "الساعة " : "at ") + timeText(start);
        if (!arabic)
            return "in " + minutes + " min";
        return minutes === 1 ? "بعد دقيقة" : minutes === 2 ? "بعد دقيقتين"
             : "بعد " + Format.number(minutes) + (minutes <= 10 ? " دقائق" : " دقيقة");
    }

    component Card: Rectangle {
        id: card
        default property alias content: inner.data
        property string target: ""
        signal activated()
        Layout.fillWidth: true
        Layout.fillHeight: true
        Layout.preferredWidth: 1
        radius: 12
        color: hover.hovered ? Theme.notchControlHover : Theme.notchControl
        border.width: card.activeFocus ? Theme.focusRingWidth : 0
        border.color: Theme.notchFocusRing
        activeFocusOnTab: true
        clip: true
        Keys.onReturnPressed: card.activated()
        Keys.onSpacePressed: card.activated()
        HoverHandler { id: hover }
        TapHandler { onTapped: card.activated() }
        ColumnLayout {
            id: inner
            anchors.fill: parent
            anchors.margins: 10
            spacing: 2
        }
    }

    component Caption: Text {
        Layout.fillWidth: true
        color: Theme.notchSecondaryText
        font.family: Theme.fontFamily
        font.pixelSize: Theme.captionSize
        elide: Text.ElideRight
        horizontalAlignment: Text.AlignLeft
    }

    component Headline: Text {
        Layout.fillWidth: true
        color: Theme.notchText
        font.family: Theme.fontFamily
        font.pixelSize: Theme.bodySize
        font.weight: Font.DemiBold
        elide: Text.ElideRight
        horizontalAlignment: Text.AlignLeft
    }

    GridLayout {
        anchors.fill: parent
        columns: 3
        rowSpacing: 8
        columnSpacing: 8

        // --- The date ---------------------------------------------------------------------------
        Card {
            objectName: "homeDate"
            onActivated: tab.openTab("calendar")
            Caption { text: tab.now.toLocaleDateString(tab.locale, "dddd") }
            Headline {
                objectName: "homeGregorian"
                text: Format.digits(tab.now.toLocaleDateString(tab.locale, "d MMMM yyyy"))
            }
            Text {
                objectName: "homeHijri"
                Layout.fillWidth: true
                text: { tab.now; return calendar.hijriDate(tab.now); }
                color: Theme.prayer
                font.family: Theme.fontFamily
                font.pixelSize: Theme.smallSize
                elide: Text.ElideRight
                horizontalAlignment: Text.AlignLeft
            }
            Item { Layout.fillHeight: true }
        }

        // --- The next prayer and the day's times ----------------------------------------------
        Card {
            objectName: "homePrayer"
            visible: prayer.nextPrayer !== ""
            Layout.columnSpan: 2
            Layout.preferredWidth: 2
            onActivated: app.openSettingsPage("prayer")
            RowLayout {
                Layout.fillWidth: true
                Headline {
                    Layout.fillWidth: false
                    text: (tab.arabic ? prayer.nextPrayerArabic : prayer.nextPrayerEnglish)
                          + "  " + Format.digits(prayer.nextPrayerClock)
                }
                Caption {
                    objectName: "homeCountdown"
                    text: (tab.arabic ? "بعد " : "in ") + Format.digits(prayer.countdownText)
                          + " · " + (tab.arabic ? prayer.cityArabic : prayer.cityEnglish)
                }
            }
            RowLayout {
                Layout.fillWidth: true
                spacing: 4
                Repeater {
                    model: prayer.todayTimes
                    delegate: Rectangle {
                        readonly property bool isNext: modelData.prayer === prayer.nextPrayer
                        Layout.fillWidth: true
                        implicitHeight: 38
                        radius: 8
                        color: isNext ? Theme.prayer : "transparent"
                        Column {
                            anchors.centerIn: parent
                            Text {
                                anchors.horizontalCenter: parent.horizontalCenter
                                text: tab.arabic ? modelData.titleArabic : modelData.titleEnglish
                                color: parent.parent.isNext ? Theme.notchFill : Theme.notchSecondaryText
                                font.family: Theme.fontFamily
                                font.pixelSize: Theme.captionSize
                            }
                            Text {
                                anchors.horizontalCenter: parent.horizontalCenter
                                text: Format.digits(modelData.clock)
                                color: parent.parent.isNext ? Theme.notchFill : Theme.notchText
                                font.family: Theme.fontFamily
                                font.pixelSize: Theme.smallSize
                                font.weight: Font.DemiBold
                            }
                        }
                    }
                }
            }
            Item { Layout.fillHeight: true }
        }

        // --- The next meeting -------------------------------------------------------------------
        Card {
            objectName: "homeMeeting"
            visible: tab.hasMeeting
            onActivated: tab.openTab("calendar")
            Caption {
                text: tab.hasMeeting ? tab.minutesUntil(tab.meeting.start) + " · "
                                       + tab.meeting.calendarName : ""
            }
            Headline { text: tab.hasMeeting ? tab.meeting.title : "" }
            Item { Layout.fillHeight: true }
            NotchTextButton {
                objectName: "homeJoin"
                visible: tab.hasMeeting && tab.meeting.joinLink !== ""
                implicitHeight: 26
                symbol: "video"
                primary: true
                text: tab.arabic ? "انضمام" : "Join"
                onClicked: Qt.openUrlExternally(tab.meeting.joinLink)
            }
        }

        // --- What plays ---------------------------------------------------------------------------
        Card {
            objectName: "homeMusic"
            visible: nowPlaying.hasInfo
            onActivated: tab.openTab("nowPlaying")
            Caption { text: nowPlaying.appName }
            Headline { text: nowPlaying.title }
            Caption { text: nowPlaying.artist }
            Item { Layout.fillHeight: true }
            NotchIconButton {
                objectName: "homePlayPause"
                size: 26
                symbol: nowPlaying.isPlaying ? "pause.fill" : "play.fill"
                toolTip: nowPlaying.isPlaying ? (tab.arabic ? "إيقاف مؤقت" : "Pause")
                                              : (tab.arabic ? "تشغيل" : "Play")
                onClicked: nowPlaying.togglePlayPause()
            }
        }

        // --- The timer ----------------------------------------------------------------------------
        Card {
            objectName: "homeTimer"
            onActivated: tab.openTab("timer")
            readonly property bool running: timerService.state !== "idle"
            Caption { text: tab.arabic ? "المؤقت" : "Timer" }
            Headline {
                visible: parent.parent.running
                text: Format.digits(timerService.clockText)
            }
            Item { Layout.fillHeight: true }
            RowLayout {
                visible: !parent.parent.running
                spacing: 4
                Repeater {
                    model: [5, 25, 45]
                    delegate: NotchTextButton {
                        implicitHeight: 26
                        text: Format.digits(modelData) + (tab.arabic ? " د" : " min")
                        onClicked: timerService.start(modelData, false)
                    }
                }
            }
        }

        // --- To-dos due today ---------------------------------------------------------------------
        Card {
            objectName: "homeTodos"
            visible: tab.dueTodos.length > 0
            onActivated: tab.openTab("notes")
            Caption {
                text: tab.arabic ? "مستحقة اليوم: " + Format.digits(tab.dueTodos.length)
                                 : "Due today: " + tab.dueTodos.length
            }
            Repeater {
                model: tab.dueTodos.slice(0, 3)
                delegate: Text {
                    Layout.fillWidth: true
                    text: "• " + modelData.text
                    color: modelData.overdue ? Theme.overdue : Theme.notchText
                    font.family: Theme.fontFamily
                    font.pixelSize: Theme.smallSize
                    elide: Text.ElideRight
                    horizontalAlignment: Text.AlignLeft
                }
            }
            Item { Layout.fillHeight: true }
        }
    }
}
