.pragma library

// Puts a control's `background` item under the whole of `owner`, as a Qt Quick Controls control
// lays out its own, for the views' controls built from plain items.
function place(background, owner) {
    if (!background)
        return;
    background.parent = owner;
    background.z = -1;
    background.anchors.fill = owner;
}
