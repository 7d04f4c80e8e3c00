import QtQuick

// The Devices tab: one section per kind of device, in a column that scrolls when they outgrow
// the notch; a section without devices is not shown. Batteries as bars with their percentage,
// Bluetooth devices with their battery and a button to connect or disconnect, drives with their
// room and an Eject button, USB devices and displays by name. The Sound section lists the
// outputs (the current one marked; a click, Space or Return makes another the default and moves
// what plays to it), with the volume and mute. When the system refuses an eject, the reason
// shows beside the Eject button, and the drive's row is scrolled into sight.
Flickable {
    id: tab
    objectName: "devicesTab"
    readonly property bool arabic: settings.isArabic
    readonly property bool hasVolume: typeof systemVolume !== "undefined" && systemVolume !== null
    readonly property bool hasDevices: typeof devices !== "undefined" && devices !== null
    clip: true
    contentHeight: sections.height
    boundsBehavior: Flickable.StopAtBounds
    NotchScrollBar {
        id: scrollBar
        flickable: tab
    }

    // The drive and refusal last brought into sight: a list that changes for another reason
    // does not scroll back to it.
    property string revealed: ""

    // Scrolls so that all of `item` is in sight, once the column has placed it.
    function reveal(item) {
        Qt.callLater(() => {
            if (!item)
                return;
            // A row that was just made has not been placed yet.
            if (item.parent && item.parent.forceLayout)
                item.parent.forceLayout();
            sections.forceLayout();
            const top = item.mapToItem(sections, 0, 0).y;
            const bottom = top + item.height;
            if (bottom > tab.contentY + tab.height)
                tab.contentY = Math.min(bottom - tab.height, Math.max(0, tab.contentHeight - tab.height));
            if (top < tab.contentY)
                tab.contentY = top;
        });
    }

    // The column's narrow items hold to its leading edge by anchors, which turn with the layout:
    // a column alone keeps them at the left in Arabic too.
    component SectionTitle: Row {
        property string symbol
        property string text
        anchors.left: parent ? parent.left : undefined
        spacing: 6
        Icon {
            anchors.verticalCenter: parent.verticalCenter
            symbol: parent.symbol
            color: Theme.notchSecondaryText
            size: 13
        }
        Text {
            anchors.verticalCenter: parent.verticalCenter
            text: parent.text
            color: Theme.notchSecondaryText
            font.family: Theme.fontFamily
            font.pixelSize: Theme.smallSize
            font.weight: Font.DemiBold
        }
    }

    // One device: its symbol, name and a line about it, and an optional button at the far side.
    component DeviceRow: Item {
        id: row
        property string symbol
        property string title
        property string detail
        property string action
        property bool actionEnabled: true
        // What came of the action, beside its button where the user looks.
        property string notice
        property color noticeColor: Theme.priorityMedium
        signal triggered()
        width: sections.width
        height: row.detail === "" ? 26 : 34
        Icon {
            id: rowIcon
            anchors { left: parent.left; verticalCenter: parent.verticalCenter }
            symbol: row.symbol
            color: Theme.notchSecondaryText
            size: 14
        }
        Column {
            anchors { left: rowIcon.right; leftMargin: 8;
                      right: rowNotice.visible ? rowNotice.left : rowButton.left; rightMargin: 8;
                      verticalCenter: parent.verticalCenter }
            Text {
                width: parent.width
                text: row.title
                textFormat: Text.PlainText
                color: Theme.notchText
                font.family: Theme.fontFamily
                font.pixelSize: Theme.bodySize
                elide: Text.ElideRight
                horizontalAlignment: Text.AlignLeft
            }
            Text {
                width: parent.width
                visible: row.detail !== ""
                text: row.detail
                textFormat: Text.PlainText
                color: Theme.notchSecondaryText
                font.family: Theme.fontFamily
                font.pixelSize: Theme.smallSize
                elide: Text.ElideRight
                horizontalAlignment: Text.AlignLeft
            }
        }
        Text {
            id: rowNotice
            objectName: row.objectName + ":notice"
            anchors { right: rowButton.left; rightMargin: 8; verticalCenter: parent.verticalCenter }
            visible: row.notice !== ""
            width: Math.min(implicitWidth, row.width * 0.45)
            text: row.notice
            textFormat: Text.PlainText
            color: row.noticeColor
            font.family: Theme.fontFamily
            font.pixelSize: Theme.smallSize
            wrapMode: Text.WordWrap
            maximumLineCount: 2
            elide: Text.ElideRight
            horizontalAlignment: Text.AlignRight
        }
        NotchTextButton {
            id: rowButton
            objectName: row.objectName + ":action"
            anchors { right: parent.right; verticalCenter: parent.verticalCenter }
            visible: row.action !== ""
            width: visible ? implicitWidth : 0
            implicitHeight: 26
            text: row.action
            enabled: row.actionEnabled
            onClicked: row.triggered()
        }
    }

    Column {
        id: sections
        // Clear of the scroll bar, on whichever side it is.
        x: scrollBar.visible && tab.arabic ? 12 : 0
        width: tab.width - (scrollBar.visible ? 12 : 0)
        spacing: 14

        Column {
            objectName: "batterySection"
            visible: tab.hasDevices && devices.batteries.length > 0
            width: parent.width
            spacing: 6
            SectionTitle {
                symbol: devices.onCharger ? "battery.100percent.bolt" : "battery.75percent"
                text: tab.arabic ? "البطارية" : "Battery"
            }
            Repeater {
                model: tab.hasDevices ? devices.batteries : []
                delegate: Item {
                    id: battery
                    required property var modelData
                    objectName: "battery:" + modelData.name
                    width: sections.width
                    height: 22
                    readonly property real level: Math.max(0, Math.min(100, modelData.percentage))
                    readonly property bool charging: modelData.state === "charging"
                    Text {
                        id: batteryName
                        anchors { left: parent.left; verticalCenter: parent.verticalCenter }
                        width: Math.min(160, parent.width / 3)
                        text: battery.modelData.kind === "internal" && battery.modelData.name === ""
                              ? (tab.arabic ? "بطارية الجهاز" : "This computer") : battery.modelData.name
                        color: Theme.notchText
                        font.family: Theme.fontFamily
                        font.pixelSize: Theme.bodySize
                        elide: Text.ElideRight
                        horizontalAlignment: Text.AlignLeft
                    }
                    Rectangle {
                        id: bar
                        anchors { left: batteryName.right; leftMargin: 10; verticalCenter: parent.verticalCenter }
                        width: parent.width - batteryName.width - figure.width - 24
                        height: 6
                        radius: 3
                        color: Theme.notchControl
                        Rectangle {
                            // Mirrored layouts fill from the right, as Arabic reads.
                            anchors { left: parent.left; top: parent.top; bottom: parent.bottom }
                            width: parent.width * battery.level / 100
                            radius: 3
                            color: battery.charging ? Theme.success
                                   : battery.level <= 10 ? Theme.recording
                                   : battery.level <= 20 ? Theme.priorityMedium : Theme.notchText
                        }
                    }
                    Text {
                        id: figure
                        anchors { right: parent.right; verticalCenter: parent.verticalCenter }
                        width: 96
                        horizontalAlignment: Text.AlignRight
                        text: Format.number(battery.level) + (tab.arabic ? "٪" : "%")
                              + (battery.modelData.secondsLeft > 0
                                 ? " · " + Format.duration(battery.modelData.secondsLeft) : "")
                        color: Theme.notchSecondaryText
                        font.family: Theme.fontFamily
                        font.pixelSize: Theme.smallSize
                    }
                }
            }
        }

        Column {
            id: bluetoothSection
            objectName: "bluetoothSection"
            visible: tab.hasDevices && devices.bluetooth.length > 0
            width: parent.width
            spacing: 6
            SectionTitle {
                symbol: "bluetooth"
                text: tab.arabic ? "بلوتوث" : "Bluetooth"
            }
            Repeater {
                model: tab.hasDevices ? devices.bluetooth : []
                delegate: DeviceRow {
                    required property var modelData
                    objectName: "bluetooth:" + modelData.name
                    symbol: modelData.icon.indexOf("audio") === 0 ? "headphones"
                            : modelData.icon.indexOf("input-keyboard") === 0 ? "keyboard" : "bluetooth"
                    title: modelData.name
                    detail: (modelData.connected ? (tab.arabic ? "متصل" : "Connected")
                                                 : (tab.arabic ? "غير متصل" : "Not connected"))
                            + (modelData.battery >= 0
                               ? " · " + Format.number(modelData.battery) + (tab.arabic ? "٪" : "%") : "")
                    action: modelData.pending ? (tab.arabic ? "لحظة…" : "Wait…")
                            : modelData.connected ? (tab.arabic ? "فصل" : "Disconnect")
                            : (tab.arabic ? "اتصال" : "Connect")
                    actionEnabled: !modelData.pending
                    onTriggered: modelData.connected ? devices.disconnectDevice(modelData.id)
                                                     : devices.connectDevice(modelData.id)
                }
            }
        }

        Column {
            objectName: "drivesSection"
            visible: tab.hasDevices && devices.drives.length > 0
            width: parent.width
            spacing: 6
            SectionTitle {
                symbol: "externaldrive"
                text: tab.arabic ? "الأقراص" : "Drives"
            }
            Repeater {
                model: tab.hasDevices ? devices.drives : []
                delegate: DeviceRow {
                    id: driveRow
                    required property var modelData
                    readonly property bool refused: modelData.status === "busy" || modelData.status === "failed"
                    objectName: "drive:" + modelData.name
                    symbol: "externaldrive"
                    title: modelData.name
                    detail: modelData.mounted && modelData.free >= 0
                            ? (tab.arabic ? Format.bytes(modelData.free) + " متاحة من " + Format.bytes(modelData.size)
                                          : Format.bytes(modelData.free) + " free of " + Format.bytes(modelData.size))
                            : Format.bytes(modelData.size)
                    notice: modelData.status === "busy"
                            ? (tab.arabic ? "قيد الاستخدام، أغلق ما يستخدمه ثم أعد المحاولة"
                                          : "In use: close what uses it, then try again")
                            : modelData.status === "failed" ? (tab.arabic ? "تعذّر الإخراج" : "Could not eject")
                            : ""
                    action: modelData.status === "ejecting" ? (tab.arabic ? "جارٍ الإخراج…" : "Ejecting…")
                                                            : (tab.arabic ? "إخراج" : "Eject")
                    actionEnabled: modelData.status !== "ejecting"
                    onTriggered: devices.eject(modelData.id)
                    // The list is made anew on every change: the refusal is brought into sight
                    // once, when it is new.
                    Component.onCompleted: {
                        const key = modelData.id + ":" + modelData.status;
                        if (refused && tab.revealed !== key) {
                            tab.revealed = key;
                            tab.reveal(driveRow);
                        } else if (!refused && tab.revealed.indexOf(modelData.id + ":") === 0) {
                            tab.revealed = "";
                        }
                    }
                }
            }
        }

        Column {
            objectName: "usbSection"
            visible: tab.hasDevices && devices.usb.length > 0
            width: parent.width
            spacing: 6
            SectionTitle {
                symbol: "cable.connector"
                text: "USB"
            }
            Repeater {
                model: tab.hasDevices ? devices.usb : []
                delegate: DeviceRow {
                    required property var modelData
                    objectName: "usb:" + modelData.id
                    symbol: "cable.connector"
                    // A device neither the hardware database nor the device itself names.
                    title: modelData.name !== "" ? modelData.name
                                                 : (tab.arabic ? "جهاز USB" : "USB device")
                    // Hexadecimal numbers, written as lsusb and the box write them.
                    detail: modelData.name !== "" ? "" : modelData.ids
                }
            }
        }

        Column {
            objectName: "displaysSection"
            visible: tab.hasDevices && devices.displays.length > 0
            width: parent.width
            spacing: 6
            SectionTitle {
                symbol: "display"
                text: tab.arabic ? "الشاشات" : "Displays"
            }
            Repeater {
                model: tab.hasDevices ? devices.displays : []
                delegate: DeviceRow {
                    required property var modelData
                    objectName: "display:" + modelData.name
                    symbol: "display"
                    title: modelData.name
                    detail: Format.digits(modelData.width + " × " + modelData.height)
                }
            }
        }

        Column {
            id: sound
            objectName: "soundSection"
            width: parent.width
            spacing: 6

            SectionTitle {
                symbol: "headphones"
                text: tab.arabic ? "الصوت" : "Sound"
            }

            Text {
                anchors.left: parent.left
                visible: !tab.hasVolume || systemVolume.outputs.length === 0
                text: tab.arabic ? "لا توجد مخارج صوت" : "No sound outputs"
                color: Theme.notchTertiaryText
                font.family: Theme.fontFamily
                font.pixelSize: Theme.bodySize
            }

            Repeater {
                model: tab.hasVolume ? systemVolume.outputs : []
                delegate: Item {
                    id: output
                    objectName: "output:" + modelData
                    required property string modelData
                    readonly property bool current: modelData === systemVolume.outputName
                    width: sound.width
                    height: 26
                    activeFocusOnTab: true
                    Keys.onSpacePressed: systemVolume.selectOutput(modelData)
                    Keys.onReturnPressed: systemVolume.selectOutput(modelData)
                    Accessible.role: Accessible.RadioButton
                    Accessible.name: modelData
                    Accessible.checked: current
                    Accessible.onPressAction: systemVolume.selectOutput(modelData)

                    Rectangle {
                        anchors.fill: parent
                        radius: Theme.controlRadius
                        color: outputMouse.containsMouse || output.current ? Theme.notchControl
                                                                           : "transparent"
                        border.width: output.activeFocus ? 2 : 0
                        border.color: Theme.notchAccent
                    }
                    Row {
                        anchors { left: parent.left; leftMargin: 8; verticalCenter: parent.verticalCenter }
                        spacing: 8
                        Icon {
                            anchors.verticalCenter: parent.verticalCenter
                            symbol: output.current ? "checkmark.circle.fill" : "circle"
                            color: output.current ? Theme.notchAccent : Theme.notchTertiaryText
                            size: 14
                        }
                        Text {
                            anchors.verticalCenter: parent.verticalCenter
                            width: output.width - 40
                            text: output.modelData
                            color: Theme.notchText
                            font.family: Theme.fontFamily
                            font.pixelSize: Theme.bodySize
                            font.weight: output.current ? Font.DemiBold : Font.Normal
                            elide: Text.ElideRight
                            horizontalAlignment: Text.AlignLeft
                        }
                    }
                    MouseArea {
                        id: outputMouse
                        anchors.fill: parent
                        hoverEnabled: true
                        cursorShape: Qt.PointingHandCursor
                        onClicked: systemVolume.selectOutput(output.modelData)
                    }
                }
            }

            VolumeControl {
                anchors.left: parent.left
                visible: tab.hasVolume && systemVolume.outputs.length > 0
                tint: Theme.notchAccent
                sliderWidth: Math.min(280, sound.width - 36)
            }
        }
    }
}
