import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import QtQuick.Window

// After an update: what changed in this version (and in any version skipped on the way).
Window {
    id: window
    readonly property bool arabic: settings.isArabic
    width: 520
    height: 460
    minimumWidth: 440
    minimumHeight: 360
    title: arabic ? "ما الجديد في نافرو" : "What's New in Navro"
    color: Theme.windowBackground

    onVisibleChanged: if (visible) continueButton.forceActiveFocus()

    Item {
        anchors.fill: parent
        LayoutMirroring.enabled: window.arabic
        LayoutMirroring.childrenInherit: true

        ColumnLayout {
            anchors { left: parent.left; right: parent.right; top: parent.top; bottom: footer.top }
            anchors.margins: 28
            spacing: 14

            AppIcon {
                Layout.alignment: Qt.AlignHCenter
                size: 64
            }
            Text {
                Layout.alignment: Qt.AlignHCenter
                text: window.arabic ? "ما الجديد" : "What's New"
                color: Theme.text
                font.family: Theme.fontFamily
                font.pixelSize: Theme.headlineSize
                font.weight: Font.Bold
            }

            ScrollView {
                id: scroller
                Layout.fillWidth: true
                Layout.fillHeight: true
                clip: true
                contentWidth: availableWidth
                ScrollBar.horizontal.policy: ScrollBar.AlwaysOff

                ColumnLayout {
                    width: scroller.availableWidth
                    spacing: 12
                    Repeater {
                        model: whatsNew.entries
                        delegate: ColumnLayout {
                            Layout.fillWidth: true
                            spacing: 6
                            SectionCaption {
                                text: (window.arabic ? "الإصدار " : "Version ") + Format.digits(modelData.version)
                            }
                            Repeater {
                                model: window.arabic ? modelData.arabic : modelData.english
                                delegate: Paragraph {
                                    Layout.fillWidth: true
                                    content: "•  " + modelData
                                    color: Theme.text
                                    font.family: Theme.fontFamily
                                    font.pixelSize: Theme.bodySize
                                }
                            }
                        }
                    }
                }
            }
        }

        Item {
            id: footer
            anchors { left: parent.left; right: parent.right; bottom: parent.bottom; margins: 20 }
            height: 36
            NavroButton {
                id: continueButton
                objectName: "continueButton"
                anchors { right: parent.right; verticalCenter: parent.verticalCenter }
                primary: true
                text: window.arabic ? "متابعة" : "Continue"
                onClicked: window.close()
            }
        }
    }
}
