#!/usr/bin/python3
"""heap_owners.py STACKS: the heap in heaptrack's flame-graph stacks (one "frame;frame;... bytes"
line per stack, the outermost frame first) summed by who holds it, largest first.

From the allocation outwards, the first frame that tells decides: one of Navro's stores, models
or services (named by the part of the product it serves), or Qt's QML engine and Qt Quick (the
views). Navro's glue between them (start-up, the control interface, the window) is passed over,
so a view created on request counts as a view. Stacks with neither count by library."""
import re
import sys

# Navro's classes and functions, by the part of the product they serve.
PARTS = [
    ("clipboard history", r"Clipboard"),
    ("music: player, artwork, bars", r"NowPlaying|Artwork|Player|BandAnalyzer|AudioBars|Equalizer"),
    ("calendar", r"Calendar|ICalendar|Meeting|DueCalendar"),
    ("notes and reminders", r"Notes|Todo|Reminder"),
    ("shelf", r"Shelf"),
    ("prayer times", r"Prayer|Adhan|Hijri|Zone"),
    ("application icons", r"Icon|DesktopEntr|DesktopPlayer"),
    ("devices, transfers, statistics", r"Device|Transfer|UPower|Blue|UDisks|Udev|Usb|Stats|Volume|Pulse"),
    ("timer", r"Timer"),
    ("capture", r"Capture|Screenshot|Recording"),
]
GLUE = re.compile(r"^navro::(AppDelegate|RemoteControl|NotchWindowController|NotchViewModel|"
                  r"main|Log|AppSettings|Settings)")
VIEWS = re.compile(r"^(QQml|QQuick|QV4::|QJS|QSG)")
LIBRARIES = [
    ("fonts (fontconfig, FreeType, HarfBuzz)", r"Fc[A-Z]|FT_|hb_|QFontEngine|QFontDatabase"),
    ("ICU", r"icu_\d+::|ucol_|udat_"),
    ("D-Bus", r"QDBus|dbus_"),
    ("Qt Widgets (tray menu)", r"QWidget|QMenu|QSystemTrayIcon"),
    ("the dynamic loader (libraries' own start-up)", r"_dl_init|dlopen"),
]


def owner(frames):
    for frame in reversed(frames):
        if frame.startswith("navro::") and not GLUE.match(frame):
            name = frame.split("(")[0]
            for part, pattern in PARTS:
                if re.search(pattern, name):
                    return part
            return "Navro, other"
        if VIEWS.match(frame):
            return "views (QML objects, bindings, JavaScript)"
    stack = ";".join(frames)
    for library, pattern in LIBRARIES:
        if re.search(pattern, stack):
            return library
    return "Qt and the rest"


def main():
    held = {}
    with open(sys.argv[1], encoding="utf-8", errors="replace") as stacks:
        for line in stacks:
            line = line.rstrip("\n")
            frames, _, size = line.rpartition(" ")
            if not size.isdigit():
                continue
            who = owner([f for f in frames.split(";") if f])
            held[who] = held.get(who, 0) + int(size)
    total = sum(held.values())
    for who, size in sorted(held.items(), key=lambda item: -item[1]):
        print(f"  {who:<52} {size / 1048576:8.1f}M {100 * size / total:5.1f} %")
    print(f"  {'total':<52} {total / 1048576:8.1f}M")


if __name__ == "__main__":
    main()
