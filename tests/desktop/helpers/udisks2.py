#!/usr/bin/python3
"""A small stand-in for UDisks2 on the system bus: an object manager with removable drives, their
block devices and file systems, Unmount and PowerOff.

A test adds a stick with the control method AddStick and makes the next Unmount fail as busy with
SetBusy; every call a program makes is printed as one line ("Unmount /org/...", "PowerOff
/org/..."), so that a test can read what was asked.
"""
import dbus
import dbus.mainloop.glib
import dbus.service
from gi.repository import GLib

ROOT = "/org/freedesktop/UDisks2"
OBJECT_MANAGER = "org.freedesktop.DBus.ObjectManager"
PROPERTIES = "org.freedesktop.DBus.Properties"
DRIVE = "org.freedesktop.UDisks2.Drive"
BLOCK = "org.freedesktop.UDisks2.Block"
FILESYSTEM = "org.freedesktop.UDisks2.Filesystem"
CONTROL = "io.navro.test.UDisks2"


def mount_points(path):
    return dbus.Array([dbus.ByteArray(path.encode() + b"\0")] if path else [], signature="ay")


class Thing(dbus.service.Object):
    """One object with its interfaces' properties."""

    def __init__(self, manager, path, interfaces):
        super().__init__(manager.bus, path)
        self.manager = manager
        self.path = path
        self.interfaces = interfaces

    @dbus.service.method(PROPERTIES, in_signature="ss", out_signature="v")
    def Get(self, interface, name):
        return self.interfaces[interface][name]

    @dbus.service.method(PROPERTIES, in_signature="s", out_signature="a{sv}")
    def GetAll(self, interface):
        return dbus.Dictionary(self.interfaces.get(interface, {}), signature="sv")

    @dbus.service.signal(PROPERTIES, signature="sa{sv}as")
    def PropertiesChanged(self, interface, changed, invalidated):
        pass

    def set(self, interface, name, value):
        self.interfaces[interface][name] = value
        self.PropertiesChanged(interface, {name: value}, [])

    @dbus.service.method(FILESYSTEM, in_signature="a{sv}")
    def Unmount(self, options):
        print(f"Unmount {self.path}", flush=True)
        if self.manager.busy:
            raise dbus.exceptions.DBusException(
                "Error unmounting: target is busy", name="org.freedesktop.UDisks2.Error.DeviceBusy")
        self.set(FILESYSTEM, "MountPoints", mount_points(""))

    @dbus.service.method(DRIVE, in_signature="a{sv}")
    def PowerOff(self, options):
        print(f"PowerOff {self.path}", flush=True)
        # The drive goes away with its block devices, as a stick powered off does.
        for thing in list(self.manager.things.values()):
            if thing is self or thing.interfaces.get(BLOCK, {}).get("Drive") == self.path:
                self.manager.drop(thing)


class Manager(dbus.service.Object):
    def __init__(self, connection):
        super().__init__(connection, ROOT)
        self.bus = connection
        self.things = {}
        self.busy = False

    @dbus.service.method(OBJECT_MANAGER, out_signature="a{oa{sa{sv}}}")
    def GetManagedObjects(self):
        return {path: thing.interfaces for path, thing in self.things.items()}

    @dbus.service.signal(OBJECT_MANAGER, signature="oa{sa{sv}}")
    def InterfacesAdded(self, path, interfaces):
        pass

    @dbus.service.signal(OBJECT_MANAGER, signature="oas")
    def InterfacesRemoved(self, path, interfaces):
        pass

    def add(self, path, interfaces):
        self.things[path] = Thing(self, path, interfaces)
        self.InterfacesAdded(path, interfaces)

    def drop(self, thing):
        del self.things[thing.path]
        thing.remove_from_connection()
        self.InterfacesRemoved(thing.path, list(thing.interfaces))

    @dbus.service.method(CONTROL, in_signature="sstss")
    def AddStick(self, name, label, size, vendor, model):
        drive = f"{ROOT}/drives/{name}"
        self.add(drive, {DRIVE: {
            "Vendor": vendor, "Model": model, "Size": dbus.UInt64(size),
            "Removable": True, "MediaRemovable": True, "Ejectable": False,
            "CanPowerOff": True, "ConnectionBus": "usb"}})
        self.add(f"{ROOT}/block_devices/{name}1", {
            BLOCK: {"Drive": dbus.ObjectPath(drive), "Size": dbus.UInt64(size), "IdLabel": label},
            FILESYSTEM: {"MountPoints": mount_points("")}})

    @dbus.service.method(CONTROL, in_signature="ss")
    def Mount(self, name, where):
        self.things[f"{ROOT}/block_devices/{name}1"].set(FILESYSTEM, "MountPoints",
                                                          mount_points(where))

    @dbus.service.method(CONTROL, in_signature="b")
    def SetBusy(self, busy):
        self.busy = bool(busy)


dbus.mainloop.glib.DBusGMainLoop(set_as_default=True)
bus = dbus.SystemBus()
manager = Manager(bus)
name = dbus.service.BusName("org.freedesktop.UDisks2", bus, do_not_queue=True)
print("ready", flush=True)
GLib.MainLoop().run()
