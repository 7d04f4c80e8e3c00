import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import QtQml.Models

// The prayer settings: the city (from the built-in table, grouped by country), the calculation
// method and the Asr method. Choosing a city also switches to the method its authorities use; the
// method can still be changed afterwards.
Item {
    id: page

    readonly property bool arabic: settings.isArabic
    // The chosen city's id, empty while the prayer service is not there.
    readonly property string cityID: prayer ? prayer.cityID : ""

    implicitWidth: 440
    implicitHeight: column.implicitHeight

    LayoutMirroring.enabled: arabic
    LayoutMirroring.childrenInherit: true

    // Flat rows with their country, so the list can draw one header per country.
    ListModel { id: cityModel }

    function fillCities() {
        cityModel.clear()
        if (!prayer)
            return
        const groups = prayer.citiesByCountry()
        for (let g = 0; g < groups.length; ++g) {
            const cities = groups[g].cities
            for (let c = 0; c < cities.length; ++c)
                cityModel.append({ cityID: cities[c].id, name: cities[c].name,
                                   country: groups[g].country })
        }
    }

    function indexOfCity(id) {
        for (let i = 0; i < cityModel.count; ++i)
            if (cityModel.get(i).cityID === id)
                return i
        return -1
    }

    // Rebuilt with the language so the titles follow it.
    readonly property var methodList: {
        page.arabic
        return prayer ? prayer.methods() : []
    }

    Component.onCompleted: fillCities()
    onArabicChanged: fillCities()

    component SectionTitle: Label {
        color: Theme.text
        font.family: Theme.fontFamily
        font.pixelSize: Theme.bodySize
        font.bold: true
        horizontalAlignment: Text.AlignLeft
        Layout.fillWidth: true
    }

    component Note: Label {
        color: Theme.secondaryText
        font.family: Theme.fontFamily
        font.pixelSize: Theme.smallSize
        wrapMode: Text.WordWrap
        horizontalAlignment: Text.AlignLeft
        Layout.fillWidth: true
    }

    ColumnLayout {
        id: column
        anchors.left: parent.left
        anchors.right: parent.right
        spacing: Theme.spacing

        SectionTitle { text: page.arabic ? "المدينة" : "City" }

        Rectangle {
            Layout.fillWidth: true
            Layout.preferredHeight: 220
            radius: Theme.cardRadius
            color: Theme.cardBackground
            border.color: Theme.cardBorder
            clip: true

            ListView {
                id: cityList
                objectName: "prayerCityList"
                anchors.fill: parent
                anchors.margins: 1
                model: cityModel
                boundsBehavior: Flickable.StopAtBounds
                currentIndex: page.indexOfCity(page.cityID)
                highlightMoveDuration: 0
                interactive: contentHeight > height
                ScrollBar.vertical: ScrollBar {}

                Component.onCompleted: positionViewAtIndex(currentIndex, ListView.Center)

                section.property: "country"
                section.delegate: Label {
                    required property string section
                    width: ListView.view.width
                    text: section
                    topPadding: 8
                    bottomPadding: 2
                    leftPadding: 12
                    rightPadding: 12
                    color: Theme.secondaryText
                    font.family: Theme.fontFamily
                    font.pixelSize: Theme.captionSize
                    font.bold: true
                    horizontalAlignment: Text.AlignLeft
                }

                delegate: ItemDelegate {
                    id: cityRow
                    required property int index
                    required property string cityID
                    required property string name
                    readonly property bool chosen: cityID === page.cityID

                    width: ListView.view.width
                    height: 28
                    highlighted: chosen
                    onClicked: if (prayer) prayer.chooseCity(cityID)

                    background: Rectangle {
                        color: cityRow.chosen ? Theme.accent
                                              : (cityRow.hovered ? Theme.selection : "transparent")
                        radius: Theme.controlRadius
                        anchors.fill: parent
                        anchors.leftMargin: 4
                        anchors.rightMargin: 4
                    }
                    contentItem: Label {
                        text: cityRow.name
                        leftPadding: 12
                        rightPadding: 12
                        color: cityRow.chosen ? Theme.textOnAccent : Theme.text
                        font.family: Theme.fontFamily
                        font.pixelSize: Theme.bodySize
                        horizontalAlignment: Text.AlignLeft
                        verticalAlignment: Text.AlignVCenter
                    }
                }
            }
        }

        Note {
            text: page.arabic ? "اختيار المدينة يضبط طريقة الحساب المعتمدة فيها أيضاً."
                              : "Choosing a city also sets the calculation method used there."
        }

        SectionTitle { text: page.arabic ? "طريقة الحساب" : "Calculation method" }

        ComboBox {
            id: methodBox
            objectName: "prayerMethodBox"
            Layout.fillWidth: true
            font.family: Theme.fontFamily
            font.pixelSize: Theme.bodySize
            model: page.methodList
            textRole: "title"
            valueRole: "id"
            // Re-read once the model is in (count), and whenever the setting moves.
            currentIndex: count > 0 ? indexOfValue(settings.prayerMethod) : -1
            onActivated: settings.prayerMethod = currentValue
        }

        SectionTitle { text: page.arabic ? "وقت العصر" : "Asr time" }

        RowLayout {
            Layout.fillWidth: true
            spacing: Theme.spacing

            ButtonGroup { id: asrGroup }

            RadioButton {
                objectName: "asrStandard"
                ButtonGroup.group: asrGroup
                text: page.arabic ? "الجمهور" : "Standard"
                font.family: Theme.fontFamily
                font.pixelSize: Theme.bodySize
                checked: settings.asrMethod === "standard"
                onClicked: settings.asrMethod = "standard"
            }
            RadioButton {
                objectName: "asrHanafi"
                ButtonGroup.group: asrGroup
                text: page.arabic ? "الحنفي" : "Hanafi"
                font.family: Theme.fontFamily
                font.pixelSize: Theme.bodySize
                checked: settings.asrMethod === "hanafi"
                onClicked: settings.asrMethod = "hanafi"
            }
            Item { Layout.fillWidth: true }
        }

        Note {
            text: page.arabic
                  ? "الحنفي: حين يبلغ الظل مثلي طول الشيء، فيتأخر العصر."
                  : "Hanafi: when a shadow is twice an object's length, so Asr comes later."
        }

        // Today's times for the chosen city, so a change shows its effect at once.
        SectionTitle {
            visible: !!prayer
            text: !prayer ? "" : page.arabic ? ("اليوم في " + prayer.cityArabic)
                                             : ("Today in " + prayer.cityEnglish)
        }

        Flow {
            Layout.fillWidth: true
            spacing: Theme.spacing

            Repeater {
                model: prayer ? prayer.todayTimes : []
                delegate: Column {
                    required property var modelData
                    spacing: 2
                    Label {
                        text: page.arabic ? modelData.titleArabic : modelData.titleEnglish
                        color: prayer && modelData.prayer === prayer.nextPrayer ? Theme.accent
                                                                      : Theme.secondaryText
                        font.family: Theme.fontFamily
                        font.pixelSize: Theme.smallSize
                    }
                    Label {
                        text: modelData.clock
                        color: Theme.text
                        font.family: Theme.fontFamily
                        font.pixelSize: Theme.bodySize
                    }
                }
            }
        }
    }
}
