.pragma library

// The symbol names the program uses (the names of the system symbols of the original design)
// mapped once to files of the bundled icon set. Unknown names draw a plain circle rather than
// nothing, so a missing mapping is visible.
var files = {
    "house": "house",
    "music.note": "music",
    "calendar": "calendar",
    "timer": "timer",
    "checklist": "list-checks",
    "doc.on.clipboard": "clipboard",
    "camera.viewfinder": "scan",
    "tray": "inbox",
    "battery.75percent": "battery-medium",
    "battery.100percent": "battery-full",
    "battery.25percent": "battery-low",
    "battery.100percent.bolt": "battery-charging",
    "bolt": "zap",
    "moon": "moon",
    "moon.stars": "moon",
    "gearshape": "settings",
    "rectangle.topthird.inset.filled": "panel-top",
    "checkmark.circle": "circle-check",
    "checkmark.circle.fill": "circle-check",
    "xmark": "x",
    "info.circle": "info",
    "exclamationmark.circle": "circle-alert",
    "power": "power",
    "sun.max": "sun",
    "globe": "globe",
    "character.bubble": "languages",
    "cursorarrow": "mouse-pointer-2",
    "cursorarrow.click": "mouse-pointer-click",
    "mic": "mic",
    "record.circle": "circle-dot",
    "arrow.down.circle": "download",
    "video": "video",
    "externaldrive": "hard-drive",
    "display": "monitor",
    "cable.connector": "usb",
    "headphones": "headphones",
    "bell": "bell",
    "clock": "clock",
    "keyboard": "keyboard",
    "waveform": "audio-lines",
    "play.fill": "play",
    "pause.fill": "pause",
    "forward.fill": "skip-forward",
    "backward.fill": "skip-back",
    "bluetooth": "bluetooth",
    "sparkles": "sparkles",
    "rectangle.portrait.and.arrow.right": "log-out",
    "doc.text": "file-text",
    "link": "link",
    "photo": "image",
    "doc": "file",
    "magnifyingglass": "search",
    "trash": "trash-2",
    "flag": "flag",
    "plus": "plus",
    "chevron.left": "chevron-left",
    "chevron.right": "chevron-right",
    "chevron.up.chevron.down": "chevrons-up-down",
    "circle": "circle",
    "folder": "folder",
    "pencil": "pencil",
    "camera": "camera",
    "macwindow": "app-window",
    "rectangle.dashed": "square-dashed",
    "doc.on.doc": "copy",
    "stop.fill": "square",
    "speaker.fill": "volume",
    "speaker.wave.1.fill": "volume-1",
    "speaker.wave.3.fill": "volume-2",
    "speaker.slash.fill": "volume-x"
};

function fileFor(symbol) {
    return files[symbol] !== undefined ? files[symbol] : "circle";
}

// An image URL for the icon in the given colour (the provider paints the SVG's strokes in it).
function source(symbol, color) {
    var text = String(color);
    return "image://icon/" + fileFor(symbol) + "/" + text.replace("#", "");
}
