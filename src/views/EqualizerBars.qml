import QtQuick
import Navro

// Level bars that move with the system's sound while music plays: the live levels once the
// capture has heard something, their own motion until then (or without a capture), and short,
// still bars while nothing plays. Frames come every 1/30 s, and only while playing.
EqualizerBarsItem {
    source: typeof audioBars !== "undefined" ? audioBars : null
    color: Theme.music
    width: implicitWidth
}
