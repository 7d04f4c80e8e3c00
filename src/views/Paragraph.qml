import QtQuick

// Text of a line or a few that never ends on a lone word: the last two words are joined by a
// no-break space, so that a short last line takes its neighbour along. Set `content`, not `text`.
Text {
    property string content: ""
    text: content.replace(/\s+(\S+)\s*$/, "\u00a0$1")
    // Joined words wider than the line still break rather than run out of it.
    wrapMode: Text.Wrap
}
