import QtQuick

// A progress ring for the closed notch that loads Qt Quick Shapes (which draws rings) the first
// time one shows, not with the closed notch itself.
Loader {
    id: lazy
    property int size: 14
    property real progress: 0
    property color tint: Theme.notchAccent
    property bool indeterminate: false
    width: size
    height: size
    source: "ProgressRing.qml"
    Binding { target: lazy.item; property: "size"; value: lazy.size; when: lazy.item }
    Binding { target: lazy.item; property: "progress"; value: lazy.progress; when: lazy.item }
    Binding { target: lazy.item; property: "tint"; value: lazy.tint; when: lazy.item }
    Binding { target: lazy.item; property: "indeterminate"; value: lazy.indeterminate; when: lazy.item }
}
