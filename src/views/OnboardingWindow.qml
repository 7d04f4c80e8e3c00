import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import QtQuick.Window

// First run: welcome, language, how the notch opens, launch at login, done.
Window {
    id: window
    readonly property bool arabic: settings.isArabic
    readonly property int pageCount: 5
    property int page: 0
    width: 560
    height: 520
    minimumWidth: 520
    minimumHeight: 500
    title: arabic ? "مرحباً بك في نافرو" : "Welcome to Navro"
    color: Theme.windowBackground

    // Return presses the focused button: Continue unless the user tabbed elsewhere.
    onVisibleChanged: {
        if (visible) {
            page = 0;
            continueButton.forceActiveFocus();
        }
    }

    Item {
        anchors.fill: parent
        LayoutMirroring.enabled: window.arabic
        LayoutMirroring.childrenInherit: true

        StackLayout {
            id: pages
            objectName: "onboardingPages"
            anchors { left: parent.left; right: parent.right; top: parent.top; bottom: footer.top }
            anchors.margins: 28
            currentIndex: window.page

            // Welcome
            OnboardingPage {
                title: window.arabic ? "مرحباً بك في نافرو" : "Welcome to Navro"
                text: window.arabic
                      ? "يحوّل نافرو أعلى شاشتك إلى لوحة حيّة صغيرة، النوتش: يعرض ما يجري الآن، وينفتح على موسيقاك ومواعيدك وملاحظاتك وحافظتك."
                      : "Navro turns the top of your screen into a small live panel, the notch: it shows what is happening now and opens onto your music, calendar, notes and clipboard."
            }

            // Language
            OnboardingPage {
                symbol: "globe"
                title: window.arabic ? "اختر لغتك" : "Choose your language"
                text: window.arabic ? "يمكنك تغييرها لاحقاً من الإعدادات." : "You can change it later in Settings."
                Item {
                    Layout.fillWidth: true
                    implicitHeight: languageChoice.implicitHeight
                    ChoiceStrip {
                        id: languageChoice
                        anchors.horizontalCenter: parent.horizontalCenter
                        current: settings.language
                        model: [
                            { "value": "english", "label": "English" },
                            { "value": "arabic", "label": "العربية" },
                            { "value": "system", "label": window.arabic ? "لغة النظام" : "System language" }
                        ]
                        onChosen: (value) => settings.language = value
                    }
                }
            }

            // How the notch opens
            OnboardingPage {
                symbol: "cursorarrow"
                title: window.arabic ? "كيف يُفتح النوتش" : "How the notch opens"
                text: window.arabic ? "اختر الطريقة التي تناسبك." : "Pick what suits you."
                OpenModeChoice { Layout.fillWidth: true }
                SettingsSection {
                    HoverDelayRow {}
                }
            }

            // Launch at login
            OnboardingPage {
                symbol: "power"
                title: window.arabic ? "التشغيل عند تسجيل الدخول" : "Launch at login"
                text: window.arabic ? "ليكون النوتش جاهزاً في كل مرة تبدأ فيها جلستك."
                                    : "So the notch is ready every time your session starts."
                SettingsSection {
                    SettingsRow {
                        title: window.arabic ? "تشغيل نافرو عند تسجيل الدخول" : "Start Navro when I log in"
                        LaunchAtLoginSwitch {}
                    }
                }
            }

            // Done
            OnboardingPage {
                symbol: "checkmark.circle"
                title: window.arabic ? "كل شيء جاهز" : "You're all set"
                text: window.arabic
                      ? "اضغط Ctrl+Alt+L في أي وقت لفتح النوتش، أو انقر أيقونة نافرو في شريط النظام."
                      : "Press Ctrl+Alt+L any time to open the notch, or click Navro's icon in the tray."
            }
        }

        // The page dots stay in the middle whether or not there is a way back.
        Item {
            id: footer
            anchors { left: parent.left; right: parent.right; bottom: parent.bottom; margins: 20 }
            height: 36

            NavroButton {
                objectName: "backButton"
                anchors { left: parent.left; verticalCenter: parent.verticalCenter }
                text: window.arabic ? "رجوع" : "Back"
                visible: window.page > 0
                onClicked: window.page -= 1
            }
            Row {
                anchors.centerIn: parent
                spacing: 6
                Repeater {
                    model: window.pageCount
                    delegate: Rectangle {
                        width: index === window.page ? 18 : 6
                        height: 6
                        radius: 3
                        color: index === window.page ? Theme.accent : Theme.separator
                        Behavior on width { NumberAnimation { duration: Theme.fadeDuration } }
                    }
                }
            }
            NavroButton {
                id: continueButton
                objectName: "continueButton"
                anchors { right: parent.right; verticalCenter: parent.verticalCenter }
                primary: true
                text: window.page === window.pageCount - 1
                      ? (window.arabic ? "ابدأ" : "Get Started")
                      : (window.arabic ? "متابعة" : "Continue")
                onClicked: {
                    if (window.page === window.pageCount - 1)
                        app.finishOnboarding();
                    else
                        window.page += 1;
                }
            }
        }
    }
}
