import QtQuick

// The Devices tab: one section per kind of device, in a column that scrolls when they outgrow
// the notch. The Sound section lists the outputs (the current one marked; a click, Space or
// Return makes another the default and moves what plays to it), with the volume and mute.
Flickable {
    id: tab
    objectName: "devicesTab"
    readonly property bool arabic: settings.isArabic
    readonly property bool hasVolume: typeof systemVolume !== "undefined" && systemVolume !== null
    clip: true
    contentHeight: sections.height
    boundsBehavior: Flickable.StopAtBounds

    component SectionTitle: Row {
        property string symbol
        property string text
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

    Column {
        id: sections
        width: tab.width
        spacing: 14

        // Sections for the other kinds of device go here, above the sound.

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
                visible: tab.hasVolume && systemVolume.outputs.length > 0
                tint: Theme.notchAccent
                sliderWidth: Math.min(280, sound.width - 36)
            }
        }
    }
}
