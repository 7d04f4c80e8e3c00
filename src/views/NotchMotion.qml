import QtQuick

// The notch's one motion: a quick spring-like ease out when it opens or widens, a plain ease when
// it closes.
NumberAnimation {
    property bool opening: false
    duration: opening ? Theme.openDuration : Theme.closeDuration
    easing.type: opening ? Easing.OutBack : Easing.InOutCubic
    easing.overshoot: 0.5
}
