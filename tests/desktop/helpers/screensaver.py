#!/usr/bin/python3
"""A stand-in for the desktop's screen saver on the session bus (org.freedesktop.ScreenSaver).

Grants inhibitions with fresh cookies, takes them back, and prints every call with the number of
inhibitions then in force, one line each, so that a test can read what a program asked for.
"""
import dbus
import dbus.mainloop.glib
import dbus.service
from gi.repository import GLib

INTERFACE = "org.freedesktop.ScreenSaver"


class ScreenSaver(dbus.service.Object):
    def __init__(self, bus):
        super().__init__(bus, "/org/freedesktop/ScreenSaver")
        self.active = {}
        self.next_cookie = 1

    @dbus.service.method(INTERFACE, in_signature="ss", out_signature="u")
    def Inhibit(self, application, reason):
        cookie = self.next_cookie
        self.next_cookie += 1
        self.active[cookie] = (str(application), str(reason))
        print(f"Inhibit {application}|{reason} cookie={cookie} active={len(self.active)}",
              flush=True)
        return cookie

    @dbus.service.method(INTERFACE, in_signature="u")
    def UnInhibit(self, cookie):
        known = self.active.pop(int(cookie), None) is not None
        print(f"UnInhibit cookie={int(cookie)} known={known} active={len(self.active)}",
              flush=True)


dbus.mainloop.glib.DBusGMainLoop(set_as_default=True)
bus = dbus.SessionBus()
service = ScreenSaver(bus)
name = dbus.service.BusName(INTERFACE, bus, do_not_queue=True)
print("ready", flush=True)
GLib.MainLoop().run()
