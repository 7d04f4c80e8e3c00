import QtQuick
import QtQuick.Layouts

// The Timer tab: the length and the kind of session while none runs; the ring, the time left
// and the controls while one does; "Time's up" when it has ended.
Item {
    id: tab
    objectName: "timerTab"
    readonly property bool arabic: settings.isArabic
    readonly property string phase: timerService.state
    readonly property var presets: [1, 5, 10, 15, 25, 45, 60, 90]

    // A length chosen and not yet started, else the last length used (the service bounds what
    // was stored).
    readonly property real minutes: Drafts.timerMinutes > 0 ? Drafts.timerMinutes
                                                            : timerService.lastMinutes
    property bool customChosen: presets.indexOf(minutes) < 0

    function choose(value, custom) {
        tab.customChosen = custom;
        Drafts.timerMinutes = value;
    }

    function number(value) {
        var decimals = Math.round(value) === value ? 0 : 2;
        return Format.number(value, decimals);
    }

    // Minutes typed in either set of digits, with either decimal mark; 0 when not a length.
    function parseMinutes(text) {
        var plain = "";
        for (var i = 0; i < text.length; ++i) {
            var code = text.charCodeAt(i);
            if (code >= 0x0660 && code <= 0x0669)
                plain += String.fromCharCode(code - 0x0660 + 48);
            else if (text[i] === "," || text[i] === "\u066B")
                plain += ".";
            else
                plain += text[i];
        }
        var value = Number(plain);
        return isFinite(value) && value > 0 && value <= 1440 ? value : 0;
    }

    // The keyboard starts on the control a user most likely wants next, and follows it as the
    // phase changes (the control it was on may have gone).
    function focusMainControl(reason) {
        var control = phase === "idle" ? startButton
                    : phase === "running" ? pauseButton
                    : phase === "paused" ? resumeButton : closeButton;
        control.forceActiveFocus(reason === undefined ? Qt.OtherFocusReason : reason);
    }
    function takeKeyboard(reason) {
        focusMainControl(reason);
    }
    Component.onCompleted: focusMainControl()
    onPhaseChanged: focusMainControl()

    function start() {
        if (tab.minutes <= 0)
            return;
        timerService.start(tab.minutes, Drafts.focusSession);
    }

    // --- No session: choose and start ---------------------------------------------------------
    ColumnLayout {
        anchors.fill: parent
        anchors.topMargin: 6
        visible: tab.phase === "idle"
        spacing: 14

        Text {
            text: tab.arabic ? "المدة بالدقائق" : "Length in minutes"
            color: Theme.notchSecondaryText
            font.family: Theme.fontFamily
            font.pixelSize: Theme.smallSize
        }

        RowLayout {
            spacing: 6
            Repeater {
                model: tab.presets
                delegate: NotchTextButton {
                    objectName: "preset_" + modelData
                    text: tab.number(modelData)
                    primary: !tab.customChosen && tab.minutes === modelData
                    implicitWidth: 46
                    onClicked: tab.choose(modelData, false)
                }
            }
            NotchTextField {
                id: custom
                objectName: "customMinutes"
                Layout.preferredWidth: 74
                Layout.preferredHeight: 30
                placeholderText: tab.arabic ? "مخصص" : "Custom"
                text: tab.customChosen ? tab.number(tab.minutes) : ""
                font.pixelSize: Theme.smallSize + 1
                leftPadding: 8
                rightPadding: 8
                horizontalAlignment: Text.AlignHCenter
                inputMethodHints: Qt.ImhFormattedNumbersOnly
                validator: RegularExpressionValidator {
                    regularExpression: Format.minutesPattern
                }
                onTextEdited: {
                    var value = tab.parseMinutes(text);
                    if (value > 0)
                        tab.choose(value, true);
                }
                onAccepted: tab.start()
                Keys.onUpPressed: tab.choose(Math.min(1440, Math.floor(tab.minutes) + 1), true)
                Keys.onDownPressed: tab.choose(Math.max(1, Math.ceil(tab.minutes) - 1), true)
                background: Rectangle {
                    radius: height / 2
                    color: Theme.notchControl
                    border.width: custom.activeFocus ? 2 : (tab.customChosen ? 1 : 0)
                    border.color: custom.activeFocus ? Theme.notchText : Theme.notchAccent
                }
                Accessible.name: tab.arabic ? "عدد دقائق مخصص" : "Custom minutes"
            }
        }

        RowLayout {
            Layout.fillWidth: true
            spacing: 10
            NavroSwitch {
                id: focusSwitch
                objectName: "focusSwitch"
                checked: Drafts.focusSession
                inNotch: true
                onToggled: Drafts.focusSession = checked
                Accessible.name: focusLabel.text
            }
            ColumnLayout {
                spacing: 1
                Text {
                    id: focusLabel
                    text: tab.arabic ? "جلسة تركيز" : "Focus session"
                    color: Theme.notchText
                    font.family: Theme.fontFamily
                    font.pixelSize: Theme.bodySize
                }
                Text {
                    text: tab.arabic ? "تشغّل إجراءَي التركيز المختارين في الإعدادات"
                                     : "Runs the focus actions chosen in Settings"
                    color: Theme.notchSecondaryText
                    font.family: Theme.fontFamily
                    font.pixelSize: Theme.captionSize
                }
            }
            Item { Layout.fillWidth: true }
            NotchTextButton {
                id: startButton
                objectName: "startButton"
                primary: true
                symbol: "play.fill"
                text: tab.arabic ? "ابدأ" : "Start"
                onClicked: tab.start()
            }
        }
        Item { Layout.fillHeight: true }
    }

    // --- A session: the ring, the time left, the controls ---------------------------------------
    Row {
        id: session
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.leftMargin: 24
        anchors.verticalCenter: parent.verticalCenter
        visible: tab.phase !== "idle"
        spacing: 32

        Item {
            width: 120
            height: 120
            ProgressRing {
                anchors.centerIn: parent
                size: 120
                lineWidth: 6
                progress: timerService.progress
                tint: tab.phase === "finished" ? Theme.success : Theme.warning
            }
            Text {
                objectName: "timerClock"
                anchors.centerIn: parent
                text: Format.digits(timerService.clockText)
                color: tab.phase === "paused" ? Theme.notchSecondaryText : Theme.notchText
                font.family: Theme.monoFontFamily
                font.pixelSize: Theme.displaySize - 2
                visible: tab.phase !== "finished"
            }
            Icon {
                anchors.centerIn: parent
                visible: tab.phase === "finished"
                symbol: "checkmark.circle"
                color: Theme.success
                size: 34
            }
        }

        Column {
            anchors.verticalCenter: parent.verticalCenter
            width: session.width - 120 - session.spacing
            spacing: 10

            Text {
                objectName: "timerTitle"
                width: parent.width
                text: tab.phase === "finished" ? (tab.arabic ? "انتهى الوقت" : "Time's up")
                      : timerService.isFocus ? (tab.arabic ? "جلسة تركيز" : "Focus session")
                      : (tab.arabic ? "مؤقت" : "Timer")
                color: Theme.notchText
                font.family: Theme.fontFamily
                font.pixelSize: Theme.headlineSize
                font.weight: Font.DemiBold
            }
            Text {
                width: parent.width
                visible: tab.phase !== "finished"
                text: (tab.phase === "paused" ? (tab.arabic ? "متوقف مؤقتاً · " : "Paused · ") : "")
                      + (tab.arabic ? "من " : "of ") + Format.digits(timerService.clock(timerService.total))
                color: Theme.notchSecondaryText
                font.family: Theme.fontFamily
                font.pixelSize: Theme.smallSize + 1
            }

            Row {
                // Anchored, so that it follows the reading direction like the texts above.
                anchors.left: parent.left
                spacing: 8
                NotchTextButton {
                    objectName: "addMinuteButton"
                    visible: tab.phase === "running" || tab.phase === "paused"
                    text: tab.arabic ? "+١ دقيقة" : "+1 min"
                    onClicked: timerService.addMinute()
                }
                NotchTextButton {
                    id: pauseButton
                    objectName: "pauseButton"
                    visible: tab.phase === "running"
                    symbol: "pause.fill"
                    text: tab.arabic ? "إيقاف مؤقت" : "Pause"
                    onClicked: timerService.pause()
                }
                NotchTextButton {
                    id: resumeButton
                    objectName: "resumeButton"
                    visible: tab.phase === "paused"
                    primary: true
                    symbol: "play.fill"
                    text: tab.arabic ? "استئناف" : "Resume"
                    onClicked: timerService.resume()
                }
                NotchTextButton {
                    objectName: "stopButton"
                    visible: tab.phase === "running" || tab.phase === "paused"
                    symbol: "xmark"
                    text: tab.arabic ? "إيقاف" : "Stop"
                    onClicked: timerService.stop()
                }
                NotchTextButton {
                    id: closeButton
                    objectName: "closeButton"
                    visible: tab.phase === "finished"
                    primary: true
                    text: tab.arabic ? "إغلاق" : "Close"
                    onClicked: timerService.dismiss()
                }
            }
        }
    }
}
