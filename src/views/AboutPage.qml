import QtQuick
import QtQuick.Controls
import QtQuick.Layouts

Item {
    id: page
    readonly property bool arabic: settings.isArabic
    property bool showingLicences: false

    ColumnLayout {
        visible: !page.showingLicences
        anchors.centerIn: parent
        width: Math.min(parent.width - 2 * Theme.windowPadding, 420)
        spacing: 10

        AppIcon {
            Layout.alignment: Qt.AlignHCenter
            size: 96
        }
        Text {
            Layout.alignment: Qt.AlignHCenter
            text: page.arabic ? "نافرو" : "Navro"
            color: Theme.text
            font.family: Theme.fontFamily
            font.pixelSize: Theme.displaySize
            font.weight: Font.Bold
        }
        Text {
            objectName: "versionText"
            Layout.alignment: Qt.AlignHCenter
            text: (page.arabic ? "الإصدار " : "Version ") + Format.digits(app.version)
            color: Theme.secondaryText
            font.family: Theme.fontFamily
            font.pixelSize: Theme.bodySize
        }
        Paragraph {
            Layout.fillWidth: true
            Layout.topMargin: 6
            horizontalAlignment: Text.AlignHCenter
            content: page.arabic ? "يحوّل نافرو أعلى شاشتك إلى لوحة حيّة صغيرة تُظهر ما يجري الآن، وتنفتح على أدواتك اليومية."
                                 : "Navro turns the top of your screen into a small live panel that shows what is happening now and opens onto your everyday tools."
            color: Theme.text
            font.family: Theme.fontFamily
            font.pixelSize: Theme.bodySize
        }

        SettingsSection {
            Layout.topMargin: 10
            SettingsRow {
                title: page.arabic ? "معرِّف الجهاز" : "Device identifier"
                // Derived from the machine id by a keyed hash: it names this device to Navro's
                // support without revealing the machine id itself.
                detail: about.deviceIdentifier !== "" ? about.deviceIdentifier
                        : (page.arabic ? "غير متاح: لا يحمل النظام معرِّفاً للجهاز" : "Not available: the system has no machine id")
                NavroButton {
                    objectName: "copyIdentifierButton"
                    visible: about.deviceIdentifier !== ""
                    text: copied.running ? (page.arabic ? "نُسخ" : "Copied") : (page.arabic ? "نسخ" : "Copy")
                    onClicked: {
                        about.copyText(about.deviceIdentifier);
                        copied.restart();
                    }
                    Timer { id: copied; interval: 1500 }
                }
            }
            SettingsRow {
                objectName: "updatesRow"
                title: page.arabic ? "التحديثات" : "Updates"
                detail: {
                    const state = updates.state;
                    if (state === "available")
                        return page.arabic ? "الإصدار " + Format.digits(updates.latestVersion) + " متاح"
                                           : "Version " + updates.latestVersion + " is available";
                    if (state === "checking")
                        return page.arabic ? "جارٍ البحث عن تحديث…" : "Checking for updates…";
                    if (state === "failed")
                        return page.arabic ? "تعذّر البحث عن تحديث" : "Could not check for updates";
                    if (state === "upToDate")
                        return page.arabic ? "لديك أحدث إصدار" : "You have the latest version";
                    if (about.installedByPackage)
                        return page.arabic ? "يحدّث مدير الحزم في نظامك نافرو مع بقية البرامج."
                                           : "Your system's package manager keeps Navro up to date with your other software.";
                    return page.arabic ? "هذه نسخة مبنية من المصدر: حدّثها من مستودعها."
                                       : "This copy was built from source: update it from its repository.";
                }
                NavroButton {
                    objectName: "checkNowButton"
                    visible: updates.hasFeed
                    enabled: updates.state !== "checking"
                    text: page.arabic ? "ابحث الآن" : "Check now"
                    onClicked: updates.checkNow()
                }
            }
            SettingsRow {
                visible: updates.state === "available"
                title: page.arabic ? "ما الجديد فيه" : "What's new in it"
                detail: page.arabic ? updates.notesArabic : updates.notesEnglish
                NavroButton {
                    primary: true
                    text: page.arabic ? "التنزيل" : "Download"
                    onClicked: Qt.openUrlExternally(updates.link)
                }
            }
            SettingsRow {
                visible: updates.hasFeed
                title: page.arabic ? "البحث عن تحديثات يومياً" : "Check for updates daily"
                NavroSwitch {
                    checked: settings.autoUpdate
                    onToggled: settings.autoUpdate = checked
                }
            }
        }

        NavroButton {
            objectName: "licencesButton"
            Layout.alignment: Qt.AlignHCenter
            Layout.topMargin: 6
            text: page.arabic ? "التراخيص" : "Licences"
            onClicked: page.showingLicences = true
        }
    }

    // Navro's licence and that of every third-party file it carries, in their original English.
    ColumnLayout {
        visible: page.showingLicences
        anchors.fill: parent
        anchors.margins: Theme.windowPadding
        spacing: 10

        RowLayout {
            Layout.fillWidth: true
            NavroButton {
                objectName: "licencesBackButton"
                symbol: page.arabic ? "chevron.right" : "chevron.left"
                text: page.arabic ? "رجوع" : "Back"
                onClicked: page.showingLicences = false
            }
            Text {
                Layout.fillWidth: true
                text: page.arabic ? "التراخيص" : "Licences"
                color: Theme.text
                font.family: Theme.fontFamily
                font.pixelSize: Theme.headlineSize
                font.weight: Font.Bold
            }
        }
        Paragraph {
            Layout.fillWidth: true
            content: page.arabic ? "نافرو برنامج حر بموجب رخصة غنو العمومية، الإصدار الثالث أو أي إصدار لاحق. وتأتي معه الملفات التالية من غيره، كلٌّ برخصته."
                                 : "Navro is free software under the GNU General Public License, version 3 or any later version. It carries these files by others, each under its own licence."
            color: Theme.secondaryText
            font.family: Theme.fontFamily
            font.pixelSize: Theme.smallSize
        }
        ScrollView {
            id: licenceScroller
            Layout.fillWidth: true
            Layout.fillHeight: true
            clip: true
            contentWidth: availableWidth
            ScrollBar.horizontal.policy: ScrollBar.AlwaysOff

            ColumnLayout {
                width: licenceScroller.availableWidth
                spacing: 14
                Repeater {
                    // Read only while the view is open.
                    model: page.showingLicences ? about.licences : []
                    delegate: ColumnLayout {
                        Layout.fillWidth: true
                        spacing: 6
                        SectionCaption {
                            text: modelData.name + " — " + modelData.licence
                        }
                        TextEdit {
                            objectName: "licenceText"
                            Layout.fillWidth: true
                            LayoutMirroring.enabled: false
                            readOnly: true
                            selectByMouse: true
                            wrapMode: TextEdit.Wrap
                            text: modelData.text
                            color: Theme.text
                            font.family: "DejaVu Sans Mono"
                            font.pixelSize: Theme.smallSize
                        }
                    }
                }
            }
        }
    }
}
