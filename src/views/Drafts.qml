pragma Singleton
import QtQuick

// What the user has typed into the open notch and not yet used. The open notch's views come and
// go (a tab's view with each tab switch, all of them after a rest closed); what is kept here
// lives as long as the application.
QtObject {
    id: drafts

    // The "Add a to-do" field of the Notes tab.
    property string todo: ""
    // The Timer tab's choice while no session runs: a length in minutes (0 while none was chosen
    // since the last start) and whether it is a focus session.
    property real timerMinutes: 0
    property bool focusSession: false

    // Any session started, from the tab, the tray or the bus, uses the chosen length up: the
    // service's last length takes over.
    readonly property Connections sessionStarts: Connections {
        target: timerService
        function onStateChanged() {
            if (timerService.state !== "idle")
                drafts.timerMinutes = 0;
        }
    }
}
