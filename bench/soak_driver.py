#!/usr/bin/python3
"""The stimuli of bench/soak.sh, sent to a running Navro as a user's programs send them.

    soak_driver.py run PHASE COPIES TABS TIMERS TRACKS DEVICES
        interleaves, evenly spread, COPIES clipboard copies (text, links, several lines, now and
        then a picture: through `clipboard_owner serve`, each made once Navro read the one before),
        TABS open/close cycles over every tab (OpenTab, then Close or Toggle; every fifth by the
        hot key), TIMERS timers started and stopped (every tenth a short one left to run out),
        TRACKS `playerctl next` on the player (every fiftieth a pause and play besides) and DEVICES
        battery, charger and Bluetooth changes of the stand-in UPower and BlueZ; each one waits for
        Navro to show it on its control interface. PHASE names the copies' texts.
    soak_driver.py check
        reads every property of Navro's control interface and says, one line each, whether it is
        sane and agrees with the services it reflects; fails when one does not.

Environment: SOAK_OWNER (the clipboard_owner program), SOAK_PLAYER (the player's name for
playerctl), SOAK_IMAGES (PNG files to copy, separated by colons), SOAK_BATTERY and SOAK_CHARGER
(the stand-in UPower's device paths), SOAK_HEADSET (the stand-in BlueZ device's address),
SOAK_APPLICATION (the window of the application the user works in, which has the keyboard while
the notch is closed), and the buses of the virtual desktop.
"""

import os
import subprocess
import sys
import time

import dbus

NAVRO_NAME = "io.navro.Navro"
NAVRO_PATH = "/io/navro/Navro"
TABS = ["home", "nowPlaying", "calendar", "timer", "notes", "clipboard", "capture", "shelf",
        "devices", "prayer"]
TIMER_MINUTES = [5, 10, 15, 25, 45, 60]
# Long enough for a tab's view to be built and drawn, as a glance at it would be.
TAB_DWELL = 0.15
# Between a close and the next open. Qt tells a window of its loss of focus 0.1 s late (in case the
# focus comes straight back), and a notch opened meanwhile would take that news as its own.
TAB_PAUSE = 0.15
OPENS_WITHIN = 2
WORDS = ("please review the numbers before friday the build is green again meeting moved to "
         "three thanks for the update invoice attached lunch at noon").split()


class Stuck(Exception):
    pass


class Navro:
    def __init__(self):
        proxy = dbus.SessionBus().get_object(NAVRO_NAME, NAVRO_PATH, introspect=False)
        self.properties = dbus.Interface(proxy, "org.freedesktop.DBus.Properties")
        self.control = dbus.Interface(proxy, NAVRO_NAME)

    def get(self, name):
        return self.properties.Get(NAVRO_NAME, name)

    def field(self, name, key):
        return self.get(name).get(key)


def wait_for(what, predicate, seconds=10):
    deadline = time.monotonic() + seconds
    while True:
        try:
            if predicate():
                return
        except (dbus.DBusException, LookupError, IndexError, OSError, ValueError):
            pass
        if time.monotonic() > deadline:
            raise Stuck(what)
        time.sleep(0.01)


class Stimuli:
    def __init__(self, phase):
        self.phase = phase
        self.navro = Navro()
        self.system = dbus.SystemBus()
        self.owner = subprocess.Popen([os.environ["SOAK_OWNER"], "serve", "2000"],
                                      stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
        self.images = [p for p in os.environ.get("SOAK_IMAGES", "").split(":") if p]
        self.player = os.environ["SOAK_PLAYER"]
        self.battery = os.environ["SOAK_BATTERY"]
        self.charger = os.environ["SOAK_CHARGER"]
        self.headset = os.environ["SOAK_HEADSET"]
        self.application = os.environ["SOAK_APPLICATION"]
        self.read = self.unread = self.ran_out = self.closed_at_once = 0
        self.last_copy = None

    def close(self):
        self.owner.stdin.close()
        self.owner.wait(10)

    # --- the clipboard --------------------------------------------------------------------
    def copy(self, k):
        if self.images and k % 20 == 19:
            line = "image " + self.images[(k // 20) % len(self.images)]
            self.last_copy = ("image", None)
        else:
            if k % 7 == 3:
                text = "https://example.com/%s/%d" % (self.phase, k)
            elif k % 11 == 5:
                text = "%s copy %d\\n%s\\n%s" % (self.phase, k, " ".join(WORDS[:8]),
                                                  " ".join(WORDS[8:]))
            else:
                text = "%s copy %d: %s" % (self.phase, k, " ".join(WORDS[k % 9:k % 9 + 6]))
            line = "text " + text
            self.last_copy = ("link" if text.startswith("https:") else "text",
                              text.replace("\\n", "\n"))
        self.owner.stdin.write(line + "\n")
        self.owner.stdin.flush()
        answer = self.owner.stdout.readline().strip()
        if not answer:
            raise Stuck("the clipboard owner ended")
        if answer == "read":
            self.read += 1
        else:
            self.unread += 1

    # --- the notch's tabs ----------------------------------------------------------------
    def status_is(self, status, tab=None):
        state = self.navro.get("State")
        return state["status"] == status and (tab is None or state["selectedTab"] == tab)

    def hot_key(self):
        subprocess.run(["xdotool", "key", "ctrl+alt+l"], check=True)

    def open_notch(self, what, open_it, tab=None):
        open_it()
        try:
            wait_for(what, lambda: self.status_is("open", tab), OPENS_WITHIN)
            return
        except Stuck:
            if not self.status_is("closed"):
                raise
        # Opened and closed again by the loss of focus before it, which Qt reports late.
        self.closed_at_once += 1
        open_it()
        wait_for(what, lambda: self.status_is("open", tab))

    def tab_cycle(self, k):
        # Every fifth cycle is the hot key's, which opens on the tab last shown; the others open
        # each tab in turn.
        tab = TABS[(k - k // 5) % len(TABS)]
        if k % 5 == 4:
            self.open_notch("the hot key to open the notch", self.hot_key)
            time.sleep(TAB_DWELL)
            self.hot_key()
        else:
            self.open_notch("the %s tab to open" % tab, lambda: self.navro.control.OpenTab(tab),
                            tab)
            time.sleep(TAB_DWELL)
            if k % 2:
                self.navro.control.Toggle()
            else:
                self.navro.control.Close()
        wait_for("the notch to close", lambda: self.status_is("closed"))
        # The keyboard goes back to the application the user was in, through the window manager;
        # a person's next look at the notch comes after that, and after a moment.
        wait_for("the focus back with the application", self.focus_is_back)
        time.sleep(TAB_PAUSE)

    def focus_is_back(self):
        focused = subprocess.run(["xdotool", "getwindowfocus"], capture_output=True, text=True)
        return focused.stdout.strip() == self.application

    # --- timers --------------------------------------------------------------------------
    def timer_is(self, state):
        return self.navro.field("Timer", "state") == state

    def timer(self, k):
        if k % 10 == 9:
            self.navro.control.StartTimer(0.02, False)
            wait_for("a short timer to run out", lambda: self.timer_is("finished"))
            self.ran_out += 1
        else:
            self.navro.control.StartTimer(float(TIMER_MINUTES[k % len(TIMER_MINUTES)]), k % 3 == 0)
            wait_for("the timer to run", lambda: self.timer_is("running"))
        self.navro.control.StopTimer()
        wait_for("the timer to stop", lambda: self.timer_is("idle"))

    # --- the player ----------------------------------------------------------------------
    def playerctl(self, *command):
        subprocess.run(["playerctl", "-p", self.player, *command], check=True)

    def track(self, k):
        before = self.navro.field("NowPlaying", "title")
        self.playerctl("next")
        wait_for("the next track", lambda: self.navro.field("NowPlaying", "title") != before)
        if k % 50 == 25:
            self.playerctl("pause")
            wait_for("the pause", lambda: not self.navro.field("NowPlaying", "playing"))
            self.playerctl("play")
            wait_for("playing again", lambda: self.navro.field("NowPlaying", "playing"))

    # --- devices -------------------------------------------------------------------------
    def devices(self):
        return self.navro.get("Devices")

    def upower(self, path, changes):
        mock = self.system.get_object("org.freedesktop.UPower", "/org/freedesktop/UPower")
        mock.SetDeviceProperties(path, changes, dbus_interface="org.freedesktop.DBus.Mock")

    def bluez(self, method, *arguments):
        mock = self.system.get_object("org.bluez", "/org/bluez")
        getattr(mock, method)(*arguments, dbus_interface="org.bluez.Mock")

    def headset_listed(self):
        return [d for d in self.devices()["bluetooth"] if d["name"] == "Travel Headset"]

    def device(self, k):
        step = k % 5
        if step == 0:
            percentage = float(15 + (k * 7) % 80)
            self.upower(self.battery, {"Percentage": dbus.Double(percentage)})
            wait_for("the battery at %g %%" % percentage,
                     lambda: self.devices()["batteries"][0]["percentage"] == percentage)
        elif step == 1:
            online = not bool(self.devices()["onCharger"])
            self.upower(self.charger, {"Online": dbus.Boolean(online)})
            wait_for("the charger", lambda: bool(self.devices()["onCharger"]) == online)
        elif step in (2, 3):
            connect = step == 2
            self.bluez("ConnectDevice" if connect else "DisconnectDevice", "hci0", self.headset)
            wait_for("the headset's connection",
                     lambda: bool(self.headset_listed()[0]["connected"]) == connect)
        else:
            # The headset is forgotten and paired again.
            adapter = self.system.get_object("org.bluez", "/org/bluez/hci0")
            device = "/org/bluez/hci0/dev_" + self.headset.replace(":", "_")
            adapter.RemoveDevice(dbus.ObjectPath(device), dbus_interface="org.bluez.Adapter1")
            wait_for("the headset gone", lambda: not self.headset_listed())
            self.bluez("AddDevice", "hci0", self.headset, "Travel Headset")
            self.bluez("PairDevice", "hci0", self.headset, dbus.UInt32(2360324))
            wait_for("the headset back", lambda: self.headset_listed())


def last_history_entry():
    import plistlib
    path = os.path.join(os.environ["XDG_DATA_HOME"], "Navro", "clipboard.plist")
    with open(path, "rb") as f:
        entries = plistlib.load(f)
    return len(entries), entries[0]["kind"], entries[0]["text"]


def run(phase, copies, tabs, timers, tracks, devices):
    stimuli = Stimuli(phase)
    kinds = [("copy", copies, stimuli.copy), ("tab", tabs, stimuli.tab_cycle),
             ("timer", timers, stimuli.timer), ("track", tracks, stimuli.track),
             ("device", devices, stimuli.device)]
    # Each kind spread evenly over the run, all of them interleaved.
    plan = sorted(((index + 0.5) / count, order, index)
                  for order, (_, count, _) in enumerate(kinds) for index in range(count))
    started = time.monotonic()
    done = 0
    try:
        for _, order, index in plan:
            name, _, act = kinds[order]
            try:
                act(index)
            except Stuck as stuck:
                try:
                    state = plain(stimuli.navro.get("State"))
                except dbus.DBusException as error:
                    state = error
                raise Stuck("%s %d: gave up waiting for %s (State: %s)" %
                            (name, index, stuck, state)) from None
            done += 1
            if done % max(1, len(plan) // 10) == 0:
                sys.stderr.write("[soak] %s: %d of %d events, %.0f s\n" %
                                 (phase, done, len(plan), time.monotonic() - started))
    except (Stuck, dbus.DBusException, subprocess.CalledProcessError) as failure:
        print("%s: stopped after %d of %d events: %s" % (phase, done, len(plan), failure))
        return 1
    finally:
        stimuli.close()
    print("%s: %d copies (%d read by Navro), %d tab cycles (%d opens closed again at once by a "
          "late loss of focus, and opened again), %d timers (%d ran out), %d track changes, "
          "%d device changes in %.0f s" %
          (phase, copies, stimuli.read, tabs, stimuli.closed_at_once, timers, stimuli.ran_out,
           tracks, devices, time.monotonic() - started))
    if copies and stimuli.last_copy:
        expected_kind, expected_text = stimuli.last_copy

        def last_copy_on_top():
            _, kind, text = last_history_entry()
            return kind == expected_kind and (expected_text is None or text == expected_text)
        # Navro has read the copy; a picture takes it a moment longer to keep.
        try:
            wait_for("the last copy on top of the history", last_copy_on_top)
        except Stuck:
            print("%s: the last copy is not on top of the history (%s %r)" %
                  ((phase,) + last_history_entry()[1:]))
            return 1
        print("%s: the history holds %d entries, the last copy on top" %
              (phase, last_history_entry()[0]))
    return 0 if stimuli.unread == 0 else 1


def plain(value):
    """A value read over the bus as Python's own, to print."""
    if isinstance(value, dict):
        return {str(k): plain(v) for k, v in value.items()}
    if isinstance(value, list):
        return [plain(v) for v in value]
    if isinstance(value, dbus.Boolean):
        return bool(value)
    if isinstance(value, (dbus.Double,)):
        return float(value)
    if isinstance(value, (dbus.Int32, dbus.Int64, dbus.UInt32, dbus.Byte)):
        return int(value)
    if isinstance(value, dbus.String):
        return str(value)
    return value


def check():
    navro = Navro()
    system = dbus.SystemBus()
    failed = 0

    def say(what, good, value):
        nonlocal failed
        print("%s - %s: %s" % ("ok  " if good else "FAIL", what, plain(value)))
        failed += 0 if good else 1

    def read(name):
        try:
            return navro.get(name)
        except dbus.DBusException as error:
            return error

    state = read("State")
    say("State", isinstance(state, dict) and state["status"] == "closed" and
        bool(state["panelVisible"]) and state["language"] == "english", state)
    playing = read("NowPlaying")
    player = subprocess.run(["playerctl", "-p", os.environ["SOAK_PLAYER"], "metadata", "title"],
                            capture_output=True, text=True).stdout.strip()
    say("NowPlaying", isinstance(playing, dict) and playing.get("title") == player and
        bool(playing.get("playing")), "%s (the player: %s)" % (plain(playing), player))
    volume = read("Volume")
    say("Volume", isinstance(volume, dict) and 0 <= float(volume["volume"]) <= 1.5 and
        bool(volume["output"]) and len(volume["outputs"]) > 0, volume)
    timer = read("Timer")
    say("Timer", isinstance(timer, dict) and timer["state"] == "idle", timer)
    prayer = read("NextPrayer")
    say("NextPrayer", isinstance(prayer, dict) and prayer.get("city") == "Manama" and
        bool(prayer.get("prayer")), prayer)
    meeting = read("NextMeeting")
    say("NextMeeting", isinstance(meeting, dict) and bool(meeting.get("title")), meeting)
    devices = read("Devices")
    battery = system.get_object("org.freedesktop.UPower", os.environ["SOAK_BATTERY"]).Get(
        "org.freedesktop.UPower.Device", "Percentage",
        dbus_interface="org.freedesktop.DBus.Properties")
    say("Devices", isinstance(devices, dict) and
        devices["batteries"][0]["percentage"] == battery and
        any(d["name"] == "Travel Headset" for d in devices["bluetooth"]),
        "battery %s (UPower: %s), %d Bluetooth, %d drives" % (
            devices["batteries"][0]["percentage"] if isinstance(devices, dict) else "?", battery,
            len(devices.get("bluetooth", [])) if isinstance(devices, dict) else 0,
            len(devices.get("drives", [])) if isinstance(devices, dict) else 0))
    return 1 if failed else 0


def main(argv):
    if len(argv) == 7 and argv[0] == "run":
        return run(argv[1], *(int(n) for n in argv[2:]))
    if argv == ["check"]:
        return check()
    sys.stderr.write(__doc__)
    return 2


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
