import QtQuick

// Screenshots and recordings: the four capture buttons with the three capture settings, and the
// recent captures. A capture starts once the notch has closed, so that it is not in the picture.
// Keyboard: Tab moves between the buttons, the switches and the captures; in the captures the
// arrows move, Enter opens, Ctrl+Enter shows in the folder, Ctrl+C copies, Delete deletes.
FocusScope {
    id: tab
    readonly property bool arabic: settings.isArabic
    readonly property var captures: capture.recent
    property string pending: ""
    property var now: new Date()

    Accessible.role: Accessible.Pane
    Accessible.name: arabic ? "التقاط" : "Capture"

    function begin(what) {
        pending = what
        notch.close()
        startLater.restart()
    }
    Timer {
        id: startLater
        // The closing notch's animation is over by then.
        interval: 350
        onTriggered: {
            if (tab.pending === "recording")
                capture.startRecording("area")
            else
                capture.takeScreenshot(tab.pending)
            tab.pending = ""
        }
    }
    function elapsed() {
        const seconds = Math.max(0, Math.floor((now - capture.recordingStarted) / 1000))
        return Format.twoDigits(Math.floor(seconds / 60)) + ":" + Format.twoDigits(seconds % 60)
    }
    Timer {
        interval: 1000
        repeat: true
        running: tab.visible && capture.isRecording
        triggeredOnStart: true
        onTriggered: tab.now = new Date()
    }

    Component.onCompleted: capture.refresh()
    onVisibleChanged: if (visible) capture.refresh()

    Row {
        id: buttons
        anchors { left: parent.left; top: parent.top }
        spacing: 6
        NotchTextButton {
            objectName: "captureArea"
            symbol: "rectangle.dashed"
            text: tab.arabic ? "منطقة" : "Area"
            focus: true
            onClicked: tab.begin("area")
        }
        NotchTextButton {
            objectName: "captureWindow"
            symbol: "macwindow"
            text: tab.arabic ? "نافذة" : "Window"
            onClicked: tab.begin("window")
        }
        NotchTextButton {
            objectName: "captureScreen"
            symbol: "display"
            text: tab.arabic ? "الشاشة" : "Screen"
            onClicked: tab.begin("screen")
        }
        NotchTextButton {
            objectName: "captureRecording"
            symbol: capture.isRecording ? "stop.fill" : "record.circle"
            symbolColor: Theme.recording
            enabled: capture.canRecord
            primary: capture.isRecording
            text: capture.isRecording ? (tab.arabic ? "إيقاف " : "Stop ") + tab.elapsed()
                                      : (tab.arabic ? "تسجيل" : "Record")
            onClicked: capture.isRecording ? capture.stopRecording() : tab.begin("recording")
        }
    }

    Column {
        id: options
        anchors { right: parent.right; top: parent.top }
        spacing: 2
        Repeater {
            model: [
                { "key": "captureCopy", "english": "Copy to clipboard", "arabic": "نسخ إلى الحافظة" },
                { "key": "captureMicrophone", "english": "Record microphone", "arabic": "تسجيل الميكروفون" },
                { "key": "captureShowClicks", "english": "Show clicks", "arabic": "إظهار النقرات" }
            ]
            delegate: Row {
                required property var modelData
                spacing: 8
                layoutDirection: Qt.LeftToRight
                Text {
                    anchors.verticalCenter: parent.verticalCenter
                    width: 130
                    text: tab.arabic ? modelData.arabic : modelData.english
                    color: Theme.notchSecondaryText
                    font.family: Theme.fontFamily
                    font.pixelSize: Theme.smallSize
                    horizontalAlignment: Text.AlignRight
                }
                NavroSwitch {
                    objectName: modelData.key + "Switch"
                    anchors.verticalCenter: parent.verticalCenter
                    scale: 0.8
                    checked: settings[modelData.key]
                    Accessible.name: tab.arabic ? modelData.arabic : modelData.english
                    onToggled: settings[modelData.key] = checked
                }
            }
        }
    }

    Text {
        objectName: "recordingUnavailable"
        visible: !capture.canRecord
        anchors { left: parent.left; top: buttons.bottom; topMargin: 6 }
        text: tab.arabic ? "التسجيل غير متاح: ثبّت ffmpeg لتسجيل الشاشة"
                         : "Recording is unavailable: install ffmpeg to record the screen"
        color: Theme.warning
        font.family: Theme.fontFamily
        font.pixelSize: Theme.captionSize
    }

    Text {
        anchors.centerIn: list
        visible: tab.captures.length === 0
        text: tab.arabic ? "لا لقطات بعد" : "No captures yet"
        color: Theme.notchSecondaryText
        font.family: Theme.fontFamily
        font.pixelSize: Theme.bodySize
    }

    ListView {
        id: list
        objectName: "recentCaptures"
        anchors { left: parent.left; right: parent.right; bottom: parent.bottom; top: options.bottom; topMargin: 8 }
        orientation: ListView.Horizontal
        spacing: 4
        clip: true
        model: tab.captures
        activeFocusOnTab: true
        keyNavigationEnabled: true
        boundsBehavior: Flickable.StopAtBounds
        function current() { return currentIndex >= 0 && currentIndex < count ? tab.captures[currentIndex] : null }
        Keys.onReturnPressed: (event) => {
            const item = current()
            if (item)
                (event.modifiers & Qt.ControlModifier) ? capture.showInFolder(item.path) : capture.open(item.path)
        }
        Keys.onDeletePressed: { const item = current(); if (item) capture.remove(item.path) }
        Keys.onPressed: (event) => {
            const item = current()
            if (item && event.key === Qt.Key_C && (event.modifiers & Qt.ControlModifier)) {
                capture.copy(item.path)
                event.accepted = true
            }
        }
        delegate: FileTile {
            required property var modelData
            required property int index
            objectName: "capture_" + index
            file: modelData
            arabic: tab.arabic
            current: ListView.isCurrentItem
            focused: ListView.isCurrentItem && list.activeFocus
            onActivated: {
                list.currentIndex = index
                capture.open(modelData.path)
            }
            onShowInFolderRequested: capture.showInFolder(modelData.path)
            onRemoveRequested: capture.remove(modelData.path)
            NotchIconButton {
                anchors { left: parent.left; top: parent.top; margins: 2 }
                size: 22
                visible: parent.current || parent.hovered === true
                symbol: "doc.on.doc"
                toolTip: tab.arabic ? "نسخ" : "Copy"
                onClicked: capture.copy(modelData.path)
            }
        }
    }
}
