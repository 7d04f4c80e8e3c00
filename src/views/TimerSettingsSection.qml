import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import QtQuick.Window

// Settings of timers and focus sessions: the finish sound, keeping the display awake, and the
// user's own programs that switch focus on and off.
SettingsSection {
    id: section
    readonly property bool arabic: settings.isArabic
    title: arabic ? "المؤقت والتركيز" : "Timer and focus"

    Component.onCompleted: timerService.loadShortcuts()
    // Programs added to the folder while the window was in the background show up on return.
    Connections {
        target: section.Window.window
        function onActiveChanged() {
            if (section.Window.window.active)
                timerService.loadShortcuts();
        }
    }

    // "None", the programs found, and a stored choice that has gone missing, marked as such.
    function choices(current) {
        var list = [{ "value": "", "text": arabic ? "بلا" : "None" }];
        var names = timerService.shortcuts;
        for (var i = 0; i < names.length; ++i)
            list.push({ "value": names[i], "text": names[i] });
        if (current !== "" && names.indexOf(current) < 0)
            list.push({ "value": current, "text": current + (arabic ? " (غير موجود)" : " (missing)") });
        return list;
    }

    function indexIn(list, value) {
        for (var i = 0; i < list.length; ++i)
            if (list[i].value === value)
                return i;
        return 0;
    }

    SettingsRow {
        title: section.arabic ? "صوت عند انتهاء المؤقت" : "Play a sound when a timer ends"
        NavroSwitch {
            objectName: "timerSoundSwitch"
            checked: settings.timerSound
            onToggled: settings.timerSound = checked
        }
    }
    SettingsRow {
        title: section.arabic ? "إبقاء الشاشة مستيقظة أثناء المؤقت" : "Keep the display awake during timers"
        detail: section.arabic ? "جلسات التركيز تُبقيها مستيقظة دائماً"
                               : "Focus sessions always keep it awake"
        NavroSwitch {
            objectName: "timerKeepAwakeSwitch"
            checked: settings.timerKeepAwake
            onToggled: settings.timerKeepAwake = checked
        }
    }
    Repeater {
        model: [
            { "key": "focusShortcutOn", "title": ["When a focus session starts", "عند بدء جلسة التركيز"] },
            { "key": "focusShortcutOff", "title": ["When a focus session ends", "عند انتهاء جلسة التركيز"] }
        ]
        delegate: SettingsRow {
            title: modelData.title[section.arabic ? 1 : 0]
            NavroComboBox {
                id: choice
                objectName: modelData.key + "Choice"
                readonly property string current: settings[modelData.key]
                readonly property var list: section.choices(current)
                implicitWidth: 200
                textRole: "text"
                valueRole: "value"
                model: list
                // From the list itself: the programs arrive after the box is built.
                currentIndex: section.indexIn(list, current)
                onActivated: settings[modelData.key] = currentValue
                Accessible.name: modelData.title[section.arabic ? 1 : 0]
            }
        }
    }
    SettingsRow {
        title: section.arabic ? "إجراءات التركيز" : "Focus actions"
        detail: section.arabic
                ? "ضع في هذا المجلد برامجك أو نصوصك البرمجية القابلة للتشغيل، ثم اختر أعلاه ما يعمل عند بدء جلسة التركيز وما يعمل عند انتهائها: " + timerService.shortcutsFolder
                : "Put programs or scripts of your own (executable files) in this folder, then choose above which one runs when a focus session starts and which when it ends: " + timerService.shortcutsFolder
        NavroButton {
            objectName: "openShortcutsButton"
            symbol: "tray"
            text: section.arabic ? "فتح المجلد" : "Open folder"
            onClicked: timerService.openShortcutsApp()
        }
    }
}
