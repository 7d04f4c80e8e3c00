import QtQuick

// What the closed notch shows at its two sides for the current activity. The middle stays empty:
// on a notched screen it is the camera housing. Leading and trailing follow the reading
// direction.
Item {
    id: view
    property var activity: ({})
    readonly property string kind: activity && activity.kind ? activity.kind : ""
    readonly property bool arabic: settings.isArabic
    readonly property int sideInset: Math.max(8, height / 3)

    // Minutes until a meeting starts, or since it started, refreshed only while one is shown.
    property date now: new Date()
    Timer {
        running: view.kind === "meeting" || view.kind === "prayerSoon"
        interval: 15000
        repeat: true
        triggeredOnStart: true
        onTriggered: view.now = new Date()
    }

    function minutesText(minutes) {
        if (minutes <= 0)
            return arabic ? "الآن" : "now";
        if (!arabic)
            return "in " + Format.number(minutes) + " min";
        // Arabic counts: one and two have words of their own, 3–10 take the plural.
        if (minutes === 1)
            return "بعد دقيقة";
        if (minutes === 2)
            return "بعد دقيقتين";
        return "بعد " + Format.number(minutes) + (minutes <= 10 ? " دقائق" : " دقيقة");
    }

    Item {
        id: leading
        anchors { left: parent.left; leftMargin: view.sideInset; top: parent.top; bottom: parent.bottom }
        width: parent.width / 2 - view.sideInset - Theme.activityGap
        visible: view.kind !== ""

        Loader {
            anchors.fill: parent
            sourceComponent: {
                switch (view.kind) {
                case "toast": return toastLeading;
                case "meeting": return meetingLeading;
                case "prayerSoon": case "prayerNow": return prayerLeading;
                case "recording": return recordingLeading;
                case "timer": return timerLeading;
                case "transfer": return transferLeading;
                case "music": return musicLeading;
                default: return null;
                }
            }
        }
    }

    Item {
        id: trailing
        anchors { right: parent.right; rightMargin: view.sideInset; top: parent.top; bottom: parent.bottom }
        width: parent.width / 2 - view.sideInset - Theme.activityGap
        visible: view.kind !== ""

        Loader {
            anchors.fill: parent
            sourceComponent: {
                switch (view.kind) {
                case "toast": return toastTrailing;
                case "meeting": return meetingTrailing;
                case "prayerSoon": case "prayerNow": return prayerTrailing;
                case "recording": return recordingTrailing;
                case "timer": return timerTrailing;
                case "transfer": return transferTrailing;
                case "music": return musicTrailing;
                default: return null;
                }
            }
        }
    }

    // Toast: symbol and title at the leading side, detail at the trailing side.
    Component {
        id: toastLeading
        Row {
            spacing: 6
            Icon {
                anchors.verticalCenter: parent.verticalCenter
                symbol: view.activity.symbol || "info.circle"
                color: view.activity.tint ? view.activity.tint : Theme.notchText
                size: Theme.closedIconSize
            }
            ActivityText {
                anchors.verticalCenter: parent.verticalCenter
                width: leading.width - Theme.closedIconSize - 6
                text: view.activity.title || ""
                font.weight: Font.DemiBold
            }
        }
    }
    Component {
        id: toastTrailing
        ActivityText {
            text: view.activity.detail || ""
            color: Theme.notchSecondaryText
            horizontalAlignment: Text.AlignRight
        }
    }

    // Meeting: its title, and the time to its start.
    Component {
        id: meetingLeading
        Row {
            spacing: 6
            Icon {
                anchors.verticalCenter: parent.verticalCenter
                symbol: "calendar"
                color: view.activity.colour ? view.activity.colour : Theme.notchAccent
                size: Theme.closedIconSize
            }
            ActivityText {
                anchors.verticalCenter: parent.verticalCenter
                width: leading.width - Theme.closedIconSize - 6
                text: view.activity.title || ""
            }
        }
    }
    Component {
        id: meetingTrailing
        ActivityText {
            horizontalAlignment: Text.AlignRight
            color: Theme.notchAccent
            text: view.activity.start
                  ? view.minutesText(Math.ceil((view.activity.start - view.now) / 60000))
                  : ""
        }
    }

    // Prayer: the prayer's name, and its time (soon) or that it is due (now).
    Component {
        id: prayerLeading
        Row {
            spacing: 6
            Icon {
                anchors.verticalCenter: parent.verticalCenter
                symbol: "moon"
                color: Theme.prayer
                size: Theme.closedIconSize
            }
            ActivityText {
                anchors.verticalCenter: parent.verticalCenter
                width: leading.width - Theme.closedIconSize - 6
                text: arabic ? view.activity.titleArabic : view.activity.titleEnglish
            }
        }
    }
    Component {
        id: prayerTrailing
        ActivityText {
            horizontalAlignment: Text.AlignRight
            color: Theme.prayer
            text: view.kind === "prayerNow" ? (view.arabic ? "حان الآن" : "now")
                                            : (view.activity.time ? Format.time(view.activity.time) : "")
        }
    }

    // Recording: a red dot that breathes while the recording runs.
    Component {
        id: recordingLeading
        Item {
            Rectangle {
                anchors.verticalCenter: parent.verticalCenter
                width: 9
                height: 9
                radius: 4.5
                color: Theme.recording
                SequentialAnimation on opacity {
                    loops: Animation.Infinite
                    NumberAnimation { from: 1; to: 0.35; duration: 900; easing.type: Easing.InOutSine }
                    NumberAnimation { from: 0.35; to: 1; duration: 900; easing.type: Easing.InOutSine }
                }
            }
        }
    }
    Component {
        id: recordingTrailing
        ActivityText {
            horizontalAlignment: Text.AlignRight
            color: Theme.recording
            text: view.arabic ? "تسجيل" : "REC"
            font.weight: Font.DemiBold
        }
    }

    // Timer: the ring and the time left, both redrawn once a second by the timer service; "Time's
    // up" once it has ended.
    Component {
        id: timerLeading
        Item {
            LazyProgressRing {
                anchors.verticalCenter: parent.verticalCenter
                size: Theme.closedIconSize
                progress: timerService.progress
                tint: timerService.state === "finished" ? Theme.success : Theme.warning
            }
        }
    }
    Component {
        id: timerTrailing
        ActivityText {
            objectName: "closedTimerText"
            horizontalAlignment: Text.AlignRight
            font.family: timerService.state === "finished" ? Theme.fontFamily : Theme.monoFontFamily
            color: timerService.state === "finished" ? Theme.success : Theme.warning
            opacity: timerService.state === "paused" ? 0.6 : 1
            text: timerService.state === "finished" ? (view.arabic ? "انتهى الوقت" : "Time's up")
                                                    : Format.digits(timerService.clockText)
        }
    }

    // Transfers: a download symbol, and their progress.
    Component {
        id: transferLeading
        Item {
            Icon {
                anchors.verticalCenter: parent.verticalCenter
                symbol: "arrow.down.circle"
                color: Theme.notchAccent
                size: Theme.closedIconSize
            }
        }
    }
    Component {
        id: transferTrailing
        Item {
            LazyProgressRing {
                anchors.verticalCenter: parent.verticalCenter
                anchors.right: parent.right
                size: Theme.closedIconSize
                objectName: "closedTransferRing"
                progress: typeof transfers !== "undefined" ? transfers.progress : 0
                indeterminate: typeof transfers !== "undefined" && transfers.progress < 0
                tint: Theme.notchAccent
            }
        }
    }

    // Music: the artwork, and level bars.
    Component {
        id: musicLeading
        Item {
            Rectangle {
                anchors { left: parent.left; verticalCenter: parent.verticalCenter }
                width: Theme.closedIconSize + 2
                height: width
                radius: 4
                color: Theme.notchControl
                clip: true
                Image {
                    id: artwork
                    cache: false
                    anchors.fill: parent
                    source: typeof nowPlaying !== "undefined" && nowPlaying.artworkUrl
                            ? nowPlaying.artworkUrl : ""
                    fillMode: Image.PreserveAspectCrop
                    visible: status === Image.Ready
                }
                Icon {
                    anchors.centerIn: parent
                    visible: !artwork.visible
                    symbol: "music.note"
                    color: Theme.music
                    size: parent.width - 6
                }
            }
        }
    }
    Component {
        id: musicTrailing
        Item {
            EqualizerBars {
                anchors.verticalCenter: parent.verticalCenter
                anchors.right: parent.right
                height: Theme.closedIconSize
                isPlaying: typeof nowPlaying !== "undefined" && nowPlaying.isPlaying
                color: Theme.music
            }
        }
    }
}
