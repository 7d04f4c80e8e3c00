pragma Singleton
import QtQuick

// Every colour, radius, size and duration the views use. The notch itself is always black (it
// stands in for a camera housing); the theme setting chooses the look of the windows and of the
// accents inside the notch.
//
// Text colours keep at least 4.5:1 contrast against every background they are drawn on, in both
// themes (the views tests compute it); marks that are not text (rings, tracks) keep 3:1.
QtObject {
    id: theme

    readonly property SystemPalette systemPalette: SystemPalette { colorGroup: SystemPalette.Active }
    readonly property bool systemIsDark: systemPalette.window.hslLightness < 0.5
    readonly property bool dark: settings.theme === "dark"
                                 || (settings.theme === "system" && systemIsDark)
    readonly property bool arabic: settings.isArabic

    // Type
    readonly property string fontFamily: arabic ? "Noto Sans Arabic" : latinFontFamily
    // Names, shortcuts and figures that stay in Latin letters in both languages.
    readonly property string latinFontFamily: "Noto Sans"
    readonly property string monoFontFamily: "DejaVu Sans Mono"
    readonly property int captionSize: 10
    readonly property int smallSize: 11
    readonly property int bodySize: 13
    readonly property int titleSize: 15
    readonly property int headlineSize: 20
    readonly property int displaySize: 26

    // The notch
    readonly property color notchFill: "#000000"
    readonly property color notchText: "#f5f5f7"
    readonly property color notchSecondaryText: "#9a9aa0"
    readonly property color notchTertiaryText: "#5a5a5f"
    readonly property color notchControl: "#1c1c1e"
    readonly property color notchControlHover: "#2a2a2d"
    readonly property color notchSelection: dark ? "#2c2c2e" : "#3a3a3c"
    readonly property color notchDivider: "#1f1f22"
    readonly property int openWidth: 688
    readonly property int openHeight: 260
    readonly property int shadowPadding: 20
    readonly property int closedEarRadius: 6
    readonly property int closedBottomRadius: 10
    readonly property int openEarRadius: 14
    readonly property int openBottomRadius: 30
    readonly property int openPadding: 16
    readonly property int tabBarHeight: 44
    readonly property int closedIconSize: 14
    readonly property int activityGap: 8
    readonly property int notchRowHeight: 24

    // Accents. `accent` fills (buttons, chosen rows, switches) under white text; `accentText` is
    // the accent as text or a symbol on a window's own backgrounds. One blue cannot do both on
    // a dark window, so the dark theme has two.
    readonly property color accent: dark ? "#0a6ad8" : "#0062cc"
    readonly property color accentText: dark ? "#5eacff" : "#0062cc"
    readonly property color notchAccent: "#0a84ff"
    // Under white text on the notch (a main button, a chosen day, selected text): the notch's
    // accent is too light for that.
    readonly property color notchAccentFill: "#0a6ad8"
    readonly property color recording: "#ff453a"
    readonly property color success: "#30d158"
    readonly property color warning: "#ffd60a"
    readonly property color music: "#ff375f"
    readonly property color prayer: "#64d2ff"
    readonly property color priorityHigh: "#ff453a"
    readonly property color priorityMedium: "#ff9f0a"
    readonly property color priorityLow: "#0a84ff"
    readonly property color overdue: "#ff6961"

    // Windows
    readonly property color windowBackground: dark ? "#1c1c1e" : "#f2f2f7"
    readonly property color sidebarBackground: dark ? "#232326" : "#e9e9ee"
    readonly property color cardBackground: dark ? "#2c2c2e" : "#ffffff"
    readonly property color cardBorder: dark ? "#3a3a3c" : "#dcdce1"
    readonly property color text: dark ? "#f5f5f7" : "#1d1d1f"
    readonly property color secondaryText: dark ? "#aeaeb2" : "#5f5f64"
    readonly property color separator: dark ? "#38383a" : "#d8d8dd"
    readonly property color selection: dark ? "#3a3a3c" : "#dedee3"
    readonly property color buttonBackground: dark ? "#3a3a3c" : "#e5e5ea"
    readonly property color buttonHover: dark ? "#48484a" : "#d8d8de"
    readonly property color textOnAccent: "#ffffff"
    readonly property color knob: "#ffffff"
    readonly property color knobBorder: Qt.rgba(0, 0, 0, 0.12)
    // The edge of a control that is off or unchosen (a switch, a radio mark): 3:1 on cards.
    readonly property color controlOutline: "#8e8e93"
    readonly property color scrollBar: dark ? Qt.rgba(1, 1, 1, 0.35) : Qt.rgba(0, 0, 0, 0.35)
    readonly property color notchScrollBar: Qt.rgba(1, 1, 1, 0.35)
    readonly property int windowRadius: 12
    readonly property int cardRadius: 10
    readonly property int controlRadius: 7
    readonly property int spacing: 12
    readonly property int windowPadding: 20

    // Keyboard focus: a ring just outside the focused control, in the accent of its surface.
    readonly property color focusRing: accentText
    readonly property color notchFocusRing: notchAccent
    readonly property int focusRingWidth: 2
    readonly property int focusRingGap: 2

    // Motion
    readonly property int openDuration: 340
    readonly property int closeDuration: 240
    readonly property int resizeDuration: 260
    readonly property int fadeDuration: 160
}
