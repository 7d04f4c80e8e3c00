import QtQuick
import QtQuick.Controls

// A thin scroll bar in the theme's colours, for the windows' scroll views. It stays in sight
// whenever there is more to see, so a page or list that goes on below its edge says so.
ScrollBar {
    id: bar
    policy: size < 1 ? ScrollBar.AlwaysOn : ScrollBar.AlwaysOff
    padding: 2
    minimumSize: 0.1

    contentItem: ScrollThumb {
        hovered: bar.hovered
        pressed: bar.pressed
    }
    background: Item {}
}
