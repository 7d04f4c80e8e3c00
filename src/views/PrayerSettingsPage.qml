import QtQuick
import QtQuick.Controls
import QtQuick.Layouts

// The prayer settings: today's times first (so a change shows its effect where the page opens),
// then the city (from the built-in table, grouped by country), the calculation method and the
// Asr method. Choosing a city also switches to the method its authorities use; the method can
// still be changed afterwards.
Item {
    id: page

    readonly property bool arabic: settings.isArabic
    // The chosen city's id, empty while the prayer service is not there.
    readonly property string cityID: prayer ? prayer.cityID : ""

    implicitWidth: 440
    implicitHeight: column.implicitHeight

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

    // The arrow keys choose the city above or below, as in any list box.
    function chooseCityAt(index) {
        if (!prayer || index < 0 || index >= cityModel.count)
            return
        prayer.chooseCity(cityModel.get(index).cityID)
        cityList.positionViewAtIndex(index, ListView.Contain)
    }

    // Rebuilt with the language so the titles follow it.
    readonly property var methodList: {
        page.arabic
        return prayer ? prayer.methods() : []
    }

    Component.onCompleted: fillCities()
    onArabicChanged: fillCities()

    component SectionTitle: Text {
        color: Theme.text
        font.family: Theme.fontFamily
        font.pixelSize: Theme.bodySize
        font.bold: true
        Layout.fillWidth: true
    }

    component Note: Paragraph {
        color: Theme.secondaryText
        font.family: Theme.fontFamily
        font.pixelSize: Theme.smallSize
        Layout.fillWidth: true
    }

    ColumnLayout {
        id: column
        anchors.left: parent.left
        anchors.right: parent.right
        spacing: Theme.spacing

        // Today's times for the chosen city.
        SectionTitle {
            visible: !!prayer
            text: !prayer ? "" : page.arabic ? ("اليوم في " + prayer.cityArabic)
                                             : ("Today in " + prayer.cityEnglish)
        }
        Rectangle {
            visible: !!prayer
            Layout.fillWidth: true
            implicitHeight: times.implicitHeight + 20
            radius: Theme.cardRadius
            color: Theme.cardBackground
            border.color: Theme.cardBorder

            RowLayout {
                id: times
                objectName: "prayerTimes"
                anchors { left: parent.left; right: parent.right; verticalCenter: parent.verticalCenter }
                anchors.leftMargin: 12
                anchors.rightMargin: 12
                spacing: 4

                Repeater {
                    model: prayer ? prayer.todayTimes : []
                    delegate: Column {
                        required property var modelData
                        readonly property bool next: prayer && modelData.prayer === prayer.nextPrayer
                        Layout.fillWidth: true
                        Layout.preferredWidth: 1
                        spacing: 2
                        Text {
                            anchors.horizontalCenter: parent.horizontalCenter
                            text: page.arabic ? modelData.titleArabic : modelData.titleEnglish
                            color: parent.next ? Theme.accentText : Theme.secondaryText
                            font.family: Theme.fontFamily
                            font.pixelSize: Theme.smallSize
                            font.weight: parent.next ? Font.DemiBold : Font.Normal
                        }
                        Text {
                            anchors.horizontalCenter: parent.horizontalCenter
                            text: Format.digits(modelData.clock)
                            color: parent.next ? Theme.accentText : Theme.text
                            font.family: Theme.fontFamily
                            font.pixelSize: Theme.bodySize
                            font.weight: parent.next ? Font.DemiBold : Font.Normal
                        }
                    }
                }
            }
        }

        SectionTitle {
            Layout.topMargin: 6
            text: page.arabic ? "المدينة" : "City"
        }

        Rectangle {
            id: cityCard
            Layout.fillWidth: true
            Layout.preferredHeight: 172
            radius: Theme.cardRadius
            color: Theme.cardBackground
            border.color: Theme.cardBorder

            FocusRing {
                shown: cityList.activeFocus
                cornerRadius: Theme.cardRadius
            }

            ListView {
                id: cityList
                objectName: "prayerCityList"
                anchors.fill: parent
                anchors.margins: 1
                clip: true
                model: cityModel
                boundsBehavior: Flickable.StopAtBounds
                currentIndex: page.indexOfCity(page.cityID)
                highlightMoveDuration: 0
                interactive: contentHeight > height
                activeFocusOnTab: true
                keyNavigationEnabled: false
                ScrollBar.vertical: NavroScrollBar {}
                Accessible.role: Accessible.List
                Accessible.name: page.arabic ? "المدينة" : "City"

                Keys.onUpPressed: page.chooseCityAt(currentIndex - 1)
                Keys.onDownPressed: page.chooseCityAt(currentIndex + 1)

                Component.onCompleted: positionViewAtIndex(currentIndex, ListView.Center)

                section.property: "country"
                section.delegate: Text {
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
                    // The list as a whole takes the keyboard; its rows are not stops of their own.
                    focusPolicy: Qt.NoFocus
                    onClicked: if (prayer) prayer.chooseCity(cityID)

                    background: Rectangle {
                        color: cityRow.chosen ? Theme.accent
                                              : (cityRow.hovered ? Theme.selection : "transparent")
                        radius: Theme.controlRadius
                        anchors.fill: parent
                        anchors.leftMargin: 4
                        anchors.rightMargin: 4
                    }
                    contentItem: Text {
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
            content: page.arabic ? "اختيار المدينة يضبط طريقة الحساب المعتمدة فيها أيضاً."
                                 : "Choosing a city also sets the calculation method used there."
        }

        SectionTitle {
            Layout.topMargin: 6
            text: page.arabic ? "طريقة الحساب" : "Calculation method"
        }

        NavroComboBox {
            id: methodBox
            objectName: "prayerMethodBox"
            Layout.fillWidth: true
            model: page.methodList
            textRole: "title"
            valueRole: "id"
            // Re-read once the model is in (count), and whenever the setting moves.
            currentIndex: count > 0 ? indexOfValue(settings.prayerMethod) : -1
            onActivated: settings.prayerMethod = currentValue
        }

        SectionTitle {
            Layout.topMargin: 6
            text: page.arabic ? "وقت العصر" : "Asr time"
        }

        ChoiceStrip {
            objectName: "asrChoice"
            current: settings.asrMethod
            model: [
                { "value": "standard", "label": page.arabic ? "الجمهور" : "Standard" },
                { "value": "hanafi", "label": page.arabic ? "الحنفي" : "Hanafi" }
            ]
            onChosen: (value) => settings.asrMethod = value
        }

        Note {
            content: page.arabic
                     ? "الحنفي: حين يبلغ الظل مثلي طول الشيء، فيتأخر العصر."
                     : "Hanafi: when a shadow is twice an object's length, so Asr comes later."
        }
    }
}
