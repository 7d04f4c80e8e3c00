#pragma once

// Declared without Xlib's header, whose macros (None, Bool, KeyPress …) clash with Qt's names.
struct _XDisplay;

namespace navro {

// Qt's own connection to the X server, or nullptr on another platform.
_XDisplay* qtDisplay();

// The window manager's active window, or 0 when it names none (or there is no such manager).
unsigned long activeWindow(_XDisplay* display);

} // namespace navro
