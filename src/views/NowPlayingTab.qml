import QtQuick

// The music tab: the cover on its tint, the track, the player, the position with seeking, and
// previous / play-pause / next. Every control is reachable with Tab and works with Space or
// Return; the position bar moves by 5 seconds with the arrow keys.
FocusScope {
    id: tab
    readonly property bool arabic: settings.isArabic
    readonly property bool hasInfo: nowPlaying.hasInfo
    readonly property color tint: nowPlaying.artworkTint
    // The extrapolated position, refreshed once a second while this tab is on screen and the
    // track plays, and at once on every change of the track.
    property real elapsed: 0
    readonly property real duration: nowPlaying.duration

    function refresh() {
        elapsed = nowPlaying.elapsedNow();
    }

    Component.onCompleted: refresh()
    Connections {
        target: nowPlaying
        function onInfoChanged() { tab.refresh() }
    }
    Timer {
        interval: 1000
        repeat: true
        running: tab.visible && nowPlaying.isPlaying
        onTriggered: tab.refresh()
    }

    // "m:ss", or "h:mm:ss" from an hour on, in the digits of the interface language.
    function clockText(seconds) {
        var total = Math.max(0, Math.floor(seconds));
        var hours = Math.floor(total / 3600);
        var minutes = Math.floor(total / 60) % 60;
        var secs = total % 60;
        var text = (hours > 0 ? hours + ":" + (minutes < 10 ? "0" : "") : "") + minutes + ":"
                   + (secs < 10 ? "0" : "") + secs;
        if (!arabic)
            return text;
        return text.replace(/[0-9]/g, function(digit) { return "٠١٢٣٤٥٦٧٨٩"[digit]; });
    }

    // A round button of the notch that takes keyboard focus and shows it with a ring.
    component TransportButton: Item {
        id: transport
        property alias symbol: button.symbol
        property alias toolTip: button.toolTip
        property int size: 36
        signal clicked()

        width: size
        height: size
        activeFocusOnTab: true
        Keys.onSpacePressed: transport.clicked()
        Keys.onReturnPressed: transport.clicked()
        Keys.onEnterPressed: transport.clicked()
        Accessible.role: Accessible.Button
        Accessible.name: button.toolTip
        Accessible.onPressAction: transport.clicked()

        NotchIconButton {
            id: button
            anchors.fill: parent
            size: transport.size
            onClicked: transport.clicked()
        }
        Rectangle {
            anchors.fill: parent
            anchors.margins: -3
            radius: width / 2
            color: "transparent"
            border.width: 2
            border.color: tab.tint
            visible: transport.activeFocus
        }
    }

    // Nothing plays.
    Column {
        anchors.centerIn: parent
        spacing: 10
        visible: !tab.hasInfo
        Icon {
            anchors.horizontalCenter: parent.horizontalCenter
            symbol: "music.note"
            color: Theme.notchSecondaryText
            size: 30
        }
        Text {
            objectName: "nothingPlaying"
            anchors.horizontalCenter: parent.horizontalCenter
            text: tab.arabic ? "لا شيء قيد التشغيل" : "Nothing is playing"
            color: Theme.notchText
            font.family: Theme.fontFamily
            font.pixelSize: Theme.headlineSize
            font.weight: Font.DemiBold
        }
    }

    Item {
        anchors.fill: parent
        visible: tab.hasInfo

        // The cover, on a glow of its own tint.
        Item {
            id: cover
            anchors { left: parent.left; verticalCenter: parent.verticalCenter }
            width: Math.min(parent.height, 150)
            height: width

            Rectangle {
                anchors.fill: parent
                anchors.margins: -6
                radius: 18
                color: tab.tint
                opacity: 0.3
            }
            Rectangle {
                anchors.fill: parent
                radius: 12
                color: Theme.notchControl
                clip: true
                Image {
                    id: artwork
                    cache: false
                    anchors.fill: parent
                    source: nowPlaying.artworkUrl
                    sourceSize: Qt.size(2 * width, 2 * height)
                    fillMode: Image.PreserveAspectCrop
                    visible: status === Image.Ready
                }
                Icon {
                    anchors.centerIn: parent
                    visible: !artwork.visible
                    symbol: "music.note"
                    color: tab.tint
                    size: 48
                }
            }
        }

        // The sound as it plays, at the trailing end of the track's line.
        EqualizerBars {
            id: tabBars
            objectName: "musicTabBars"
            anchors { right: parent.right; top: cover.top; topMargin: 4 }
            height: 18
            count: 6
            isPlaying: nowPlaying.isPlaying
            color: tab.tint
        }

        Column {
            id: details
            anchors {
                left: cover.right; leftMargin: 20
                right: tabBars.left; rightMargin: 12
                top: cover.top
            }
            spacing: 2

            Text {
                width: parent.width
                text: nowPlaying.title
                color: Theme.notchText
                font.family: Theme.fontFamily
                font.pixelSize: Theme.titleSize + 2
                font.weight: Font.DemiBold
                elide: Text.ElideRight
                horizontalAlignment: Text.AlignLeft
            }
            Text {
                width: parent.width
                text: nowPlaying.artist
                visible: text !== ""
                color: Theme.notchSecondaryText
                font.family: Theme.fontFamily
                font.pixelSize: Theme.bodySize
                elide: Text.ElideRight
                horizontalAlignment: Text.AlignLeft
            }
            Text {
                width: parent.width
                text: nowPlaying.album
                visible: text !== ""
                color: Theme.notchTertiaryText
                font.family: Theme.fontFamily
                font.pixelSize: Theme.smallSize
                elide: Text.ElideRight
                horizontalAlignment: Text.AlignLeft
            }

        }

        // Position: elapsed, the bar, remaining.
        Item {
            id: progress
            anchors {
                left: details.left
                right: parent.right
                bottom: controls.top; bottomMargin: 8
            }
            height: 16

            Text {
                id: elapsedText
                anchors { left: parent.left; verticalCenter: parent.verticalCenter }
                width: 44
                text: tab.clockText(bar.shownPosition)
                color: Theme.notchSecondaryText
                font.family: Theme.monoFontFamily
                font.pixelSize: Theme.captionSize
                horizontalAlignment: Text.AlignLeft
            }
            Text {
                anchors { right: parent.right; verticalCenter: parent.verticalCenter }
                width: 48
                text: tab.duration > 0 ? "-" + tab.clockText(tab.duration - bar.shownPosition) : ""
                color: Theme.notchSecondaryText
                font.family: Theme.monoFontFamily
                font.pixelSize: Theme.captionSize
                horizontalAlignment: Text.AlignRight
            }

            Item {
                id: bar
                objectName: "progressBar"
                anchors {
                    left: elapsedText.right; leftMargin: 6
                    right: parent.right; rightMargin: 54
                    verticalCenter: parent.verticalCenter
                }
                height: 16
                readonly property bool seekable: tab.duration > 0
                property bool dragging: false
                property real dragPosition: 0
                readonly property real shownPosition: dragging ? dragPosition : tab.elapsed
                readonly property real fraction: tab.duration > 0
                                                 ? Math.max(0, Math.min(1, shownPosition / tab.duration)) : 0
                activeFocusOnTab: seekable
                Accessible.role: Accessible.Slider
                Accessible.name: tab.arabic ? "موضع التشغيل" : "Position"

                function positionAt(x) {
                    // The bar fills from the leading edge, which is on the right in Arabic.
                    var share = Math.max(0, Math.min(1, x / width));
                    return (tab.arabic ? 1 - share : share) * tab.duration;
                }
                function seekBy(seconds) {
                    nowPlaying.seek(Math.max(0, Math.min(tab.duration, tab.elapsed + seconds)));
                }
                Keys.onRightPressed: seekBy(tab.arabic ? -5 : 5)
                Keys.onLeftPressed: seekBy(tab.arabic ? 5 : -5)

                Rectangle {
                    id: track
                    anchors { left: parent.left; right: parent.right; verticalCenter: parent.verticalCenter }
                    height: barMouse.containsMouse || bar.dragging || bar.activeFocus ? 6 : 4
                    radius: height / 2
                    color: Theme.notchControlHover
                    Rectangle {
                        objectName: "progressFill"
                        anchors { left: parent.left; top: parent.top; bottom: parent.bottom }
                        width: parent.width * bar.fraction
                        radius: parent.radius
                        color: tab.tint
                    }
                }
                Rectangle {
                    x: (tab.arabic ? 1 - bar.fraction : bar.fraction) * bar.width - width / 2
                    anchors.verticalCenter: parent.verticalCenter
                    width: 12
                    height: 12
                    radius: 6
                    color: Theme.notchText
                    border.width: bar.activeFocus ? 2 : 0
                    border.color: tab.tint
                    visible: bar.seekable && (barMouse.containsMouse || bar.dragging || bar.activeFocus)
                }
                MouseArea {
                    id: barMouse
                    anchors.fill: parent
                    anchors.topMargin: -4
                    anchors.bottomMargin: -4
                    enabled: bar.seekable
                    hoverEnabled: true
                    cursorShape: Qt.PointingHandCursor
                    // Mouse coordinates are not mirrored; positionAt mirrors them itself.
                    onPressed: function(mouse) {
                        bar.dragging = true;
                        bar.dragPosition = bar.positionAt(mouse.x);
                    }
                    onPositionChanged: function(mouse) {
                        if (bar.dragging)
                            bar.dragPosition = bar.positionAt(mouse.x);
                    }
                    onReleased: function(mouse) {
                        bar.dragPosition = bar.positionAt(mouse.x);
                        nowPlaying.seek(bar.dragPosition);
                        bar.dragging = false;
                    }
                    onCanceled: bar.dragging = false
                }
            }
        }

        Row {
            id: controls
            anchors { horizontalCenter: progress.horizontalCenter; bottom: parent.bottom }
            spacing: 18
            // Transport symbols point the same way in every language.
            LayoutMirroring.enabled: false

            TransportButton {
                objectName: "previousButton"
                anchors.verticalCenter: parent.verticalCenter
                symbol: "backward.fill"
                toolTip: tab.arabic ? "السابق" : "Previous"
                onClicked: nowPlaying.previousTrack()
            }
            TransportButton {
                objectName: "playPauseButton"
                anchors.verticalCenter: parent.verticalCenter
                size: 44
                symbol: nowPlaying.isPlaying ? "pause.fill" : "play.fill"
                toolTip: nowPlaying.isPlaying ? (tab.arabic ? "إيقاف مؤقت" : "Pause")
                                              : (tab.arabic ? "تشغيل" : "Play")
                onClicked: nowPlaying.togglePlayPause()
            }
            TransportButton {
                objectName: "nextButton"
                anchors.verticalCenter: parent.verticalCenter
                symbol: "forward.fill"
                toolTip: tab.arabic ? "التالي" : "Next"
                onClicked: nowPlaying.nextTrack()
            }
        }

        // The system volume on the other side of the controls.
        VolumeControl {
            anchors { right: progress.right; verticalCenter: controls.verticalCenter }
            tint: tab.tint
            sliderWidth: Math.max(60, player.room - 36)
        }

        // The player, beside the controls: a click (or Space) brings it forward.
        Item {
            id: player
            anchors { left: details.left; verticalCenter: controls.verticalCenter }
            // What is left beside the centred controls.
            readonly property real room: (progress.width - controls.width) / 2 - 8
            width: Math.min(room, playerRow.implicitWidth + 12)
            height: 24
            activeFocusOnTab: true
            Keys.onSpacePressed: nowPlaying.openPlayerApp()
            Keys.onReturnPressed: nowPlaying.openPlayerApp()
            Accessible.role: Accessible.Button
            Accessible.name: (tab.arabic ? "افتح " : "Open ") + nowPlaying.appName
            Accessible.onPressAction: nowPlaying.openPlayerApp()

            Rectangle {
                anchors.fill: parent
                radius: Theme.controlRadius
                color: playerMouse.containsMouse ? Theme.notchControl : "transparent"
                border.width: player.activeFocus ? 2 : 0
                border.color: tab.tint
            }
            Row {
                id: playerRow
                anchors { left: parent.left; leftMargin: 6; verticalCenter: parent.verticalCenter }
                spacing: 6
                Image {
                    cache: false
                    anchors.verticalCenter: parent.verticalCenter
                    width: 16
                    height: 16
                    source: nowPlaying.appIconUrl
                    sourceSize: Qt.size(32, 32)
                    visible: source != ""
                }
                Text {
                    anchors.verticalCenter: parent.verticalCenter
                    width: Math.min(implicitWidth, player.room - 34)
                    text: nowPlaying.appName
                    color: Theme.notchSecondaryText
                    font.family: Theme.fontFamily
                    font.pixelSize: Theme.smallSize
                    elide: Text.ElideRight
                }
            }
            MouseArea {
                id: playerMouse
                anchors.fill: parent
                hoverEnabled: true
                cursorShape: Qt.PointingHandCursor
                onClicked: nowPlaying.openPlayerApp()
            }
        }
    }
}
