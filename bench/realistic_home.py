#!/usr/bin/python3
"""The files of a home that has used Navro for months, written the way Navro writes them.

    realistic_home.py fill HOME_DIR [CLIPBOARD_LIMIT]
        the clipboard history at CLIPBOARD_LIMIT entries (500 by default, the most the settings
        offer) with some 50 images, 200 to-dos of which 20 have a reminder ahead, a shelf of 100
        files and folders that exist, a calendar of 500 events (series with exceptions, moved
        instances, all-day and zoned events), and the settings: onboarding done, English, the
        prayer alert on, the clipboard limit, the calendar among the sources
    realistic_home.py add-reminders HOME_DIR EPOCH...
        one more open to-do "Reminder N" due at each EPOCH (seconds since 1970)
    realistic_home.py picture FILE WIDTH HEIGHT
        a PNG with the make-up of a screenshot

Only the standard library. Content is drawn from a fixed seed, so two homes differ only in their
identifiers' times; every time is relative to now: reminders lie ahead, the calendar keeps the
three hours around now free so that no meeting is near while a bench measures.
"""

import datetime as dt
import json
import os
import plistlib
import random
import struct
import sys
import uuid
import zlib
import zoneinfo

# The origin of the times in notes.json and shelf.json.
REFERENCE = dt.datetime(2001, 1, 1, tzinfo=dt.timezone.utc).timestamp()
CALENDAR_NAME = "Work"


def data_folder(home):
    return os.path.join(home, ".local", "share", "Navro")


def private_folder(path):
    os.makedirs(path, mode=0o700, exist_ok=True)
    os.chmod(path, 0o700)


def write_private(path, data):
    with open(path, "wb") as f:
        f.write(data)
    os.chmod(path, 0o600)


def file_time(epoch):
    return round(epoch - REFERENCE, 3)


def new_id(rng):
    return str(uuid.UUID(int=rng.getrandbits(128), version=4)).upper()


def png(width, height, rng):
    """A picture with the make-up of a screenshot: flat areas of a few colours and lines of
    detail that do not compress, so that the file has a real screenshot's size."""
    palette = [bytes(rng.randrange(256) for _ in range(3)) for _ in range(4)]
    rows = []
    for y in range(height):
        if y % 24 < 2:
            row = rng.randbytes(width * 3)
        else:
            row = palette[(y // 96) % len(palette)] * width
        rows.append(b"\0" + row)
    raw = zlib.compress(b"".join(rows), 6)

    def chunk(kind, body):
        return (struct.pack(">I", len(body)) + kind + body +
                struct.pack(">I", zlib.crc32(kind + body) & 0xFFFFFFFF))

    header = struct.pack(">IIBBBBB", width, height, 8, 2, 0, 0, 0)
    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + chunk(b"IDAT", raw) +
            chunk(b"IEND", b""))


WORDS = ("the report is due friday please review the numbers before the meeting we agreed to "
         "move the launch to next week can you send me the slides from yesterday thanks for "
         "the quick reply invoice attached let me know if anything is missing the build failed "
         "again on the release branch lunch at noon works for me").split()
ARABIC = ["مرحبا بكم في الاجتماع الأسبوعي", "الرجاء مراجعة التقرير قبل يوم الخميس",
          "شكرا على الرد السريع", "موعد التسليم نهاية الشهر"]
SOURCES = ["Firefox", "Terminal", "Text Editor", "Files", "Thunderbird", "LibreOffice Writer"]


def sentence(rng, low=5, high=25):
    return " ".join(rng.choice(WORDS) for _ in range(rng.randint(low, high))).capitalize() + "."


def clipboard_text(rng, index):
    roll = rng.random()
    if roll < 0.08:
        return "\n".join(sentence(rng, 20, 60) for _ in range(rng.randint(10, 60)))
    if roll < 0.20:
        lines = ["def handle_%d(request):" % index, "    body = request.json()",
                 "    if not body.get('id'):", "        return error(400)",
                 "    return store.save(body)"]
        return "\n".join(lines[: rng.randint(2, len(lines))])
    if roll < 0.28:
        return rng.choice(ARABIC) + " " + str(index)
    return sentence(rng) + " #" + str(index)


def fill_clipboard(home, rng, now, limit, shelf_paths):
    folder = data_folder(home)
    images = os.path.join(folder, "ClipboardImages")
    private_folder(images)
    entries = []
    for index in range(limit):
        # Newest first, a few minutes to an hour apart.
        when = dt.datetime.fromtimestamp(now - 60 - index * rng.randint(120, 3600),
                                         dt.timezone.utc).replace(tzinfo=None)
        entry = {"id": new_id(rng), "date": when, "source": rng.choice(SOURCES)}
        roll = rng.random()
        if roll < 0.10:
            width, height = rng.choice([(1920, 1080), (1280, 800), (800, 600), (640, 480),
                                        (320, 240)])
            name = entry["id"] + ".png"
            write_private(os.path.join(images, name), png(width, height, rng))
            entry.update(kind="image", text="%d × %d" % (width, height), imageFile=name)
        elif roll < 0.25:
            entry.update(kind="link", text="https://example.com/%s/%d?ref=%d" % (
                rng.choice(["docs", "issues", "wiki", "news"]), index, rng.randrange(10 ** 6)))
        elif roll < 0.30:
            entry.update(kind="file", text="\n".join(rng.sample(shelf_paths, rng.randint(1, 3))))
        else:
            entry.update(kind="text", text=clipboard_text(rng, index))
        entries.append(entry)
    write_private(os.path.join(folder, "clipboard.plist"),
                  plistlib.dumps(entries, fmt=plistlib.FMT_BINARY, sort_keys=False))
    return sum(1 for e in entries if e["kind"] == "image")


def todo(rng, text, created, done=False, priority=0, due=None):
    item = {"id": new_id(rng), "text": text, "done": done, "created": file_time(created),
            "priority": priority}
    if due is not None:
        item["due"] = file_time(due)
    return item


def notes_path(home):
    return os.path.join(data_folder(home), "notes.json")


def write_notes(home, document):
    # As Navro writes it: compact, slashes escaped.
    text = json.dumps(document, ensure_ascii=False, separators=(",", ":")).replace("/", "\\/")
    write_private(notes_path(home), text.encode("utf-8"))


def fill_notes(home, rng, now):
    todos = []
    for index in range(200):
        created = now - rng.randint(3600, 90 * 86400)
        if index < 20:
            # A reminder ahead: from tomorrow to a month out.
            due = now + 86400 + rng.randint(0, 30 * 86400)
            todos.append(todo(rng, "Follow up: " + sentence(rng, 3, 8), created,
                              priority=rng.randint(0, 3), due=due))
        elif index < 80:
            todos.append(todo(rng, sentence(rng, 2, 10), created, done=True,
                              priority=rng.randint(0, 3), due=created + rng.randint(0, 86400)))
        elif index < 100:
            # Overdue: their deadline passed without a reminder left to show.
            todos.append(todo(rng, sentence(rng, 2, 10), created, priority=rng.randint(0, 3),
                              due=now - rng.randint(3600, 20 * 86400)))
        else:
            todos.append(todo(rng, sentence(rng, 2, 14), created, priority=rng.randint(0, 3)))
    rng.shuffle(todos)
    note = "\n".join(sentence(rng, 8, 30) for _ in range(40))
    write_notes(home, {"todos": todos, "note": note})


def add_reminders(home, moments):
    with open(notes_path(home), encoding="utf-8") as f:
        document = json.load(f)
    rng = random.Random(moments[0])
    for index, due in enumerate(moments):
        document["todos"].append(todo(rng, "Reminder %d" % (index + 1), due - 3600, due=due))
    write_notes(home, document)


def fill_shelf_files(home, rng):
    """The files and folders the shelf points at: (path, is_folder)."""
    made = []
    for index in range(100):
        kind = index % 10
        if kind < 5:
            folder = os.path.join(home, "Documents", "Projects", "project-%d" % (index % 7))
            os.makedirs(folder, exist_ok=True)
            path = os.path.join(folder, "%s-%d.%s" % (
                rng.choice(["report", "notes", "budget", "draft", "minutes"]), index,
                rng.choice(["pdf", "odt", "txt", "ods", "md"])))
            with open(path, "wb") as f:
                f.write(rng.randbytes(rng.randint(2_000, 200_000)))
            made.append((path, False))
        elif kind < 8:
            folder = os.path.join(home, "Pictures", "Trip")
            os.makedirs(folder, exist_ok=True)
            path = os.path.join(folder, "photo-%d.png" % index)
            with open(path, "wb") as f:
                f.write(png(rng.choice([640, 1024]), rng.choice([480, 768]), rng))
            made.append((path, False))
        else:
            path = os.path.join(home, "Documents", "Archive", "folder-%d" % index)
            os.makedirs(path, exist_ok=True)
            with open(os.path.join(path, "readme.txt"), "w") as f:
                f.write(sentence(rng))
            made.append((path, True))
    return made


def fill_shelf(home, rng, now, made):
    sections = []
    for name, share in (("Shelf", made[:40]), ("Work", made[40:75]), ("Photos", made[75:])):
        sections.append({"id": new_id(rng), "name": name, "items": [
            {"id": new_id(rng), "path": path, "added": file_time(now - rng.randint(60, 40 * 86400)),
             "isFolder": folder} for path, folder in share]})
    text = json.dumps({"sections": sections}, ensure_ascii=False, separators=(",", ":"))
    write_private(os.path.join(data_folder(home), "shelf.json"), text.replace("/", "\\/").encode())


def ics_time(epoch):
    return dt.datetime.fromtimestamp(epoch, dt.timezone.utc).strftime("%Y%m%dT%H%M%SZ")


def ics_date(epoch):
    return dt.datetime.fromtimestamp(epoch, dt.timezone.utc).strftime("%Y%m%d")


def meet_code(rng):
    letters = "abcdefghijklmnopqrstuvwxyz"
    return "-".join("".join(rng.choice(letters) for _ in range(n)) for n in (3, 4, 3))


def calendar_document(rng, now):
    """500 events: 60 series (daily, weekly, fortnightly, monthly) with exception dates, 40
    instances of them moved or changed, 370 single events over half a year either side (some on
    a zone's wall clock, some cancelled), 30 all-day events. Nothing starts within an hour before
    and three after now."""
    quiet_from, quiet_to = now - 3600, now + 3 * 3600
    day = 86400
    midnight = now - now % day

    def clear_of_now(start):
        return not quiet_from <= start < quiet_to

    def time_of_day(rng):
        # Whole quarter hours whose daily recurrence never falls in the quiet hours.
        while True:
            seconds = rng.randrange(7 * 4, 19 * 4) * 900
            if all(clear_of_now(midnight + offset * day + seconds) for offset in (-1, 0, 1)):
                return seconds

    lines = ["BEGIN:VCALENDAR", "VERSION:2.0", "PRODID:-//Navro bench//realistic home//EN",
             "X-WR-CALNAME:" + CALENDAR_NAME, "X-APPLE-CALENDAR-COLOR:#3A7BD5"]
    events = 0

    def event(uid, title, start, end, extra=(), all_day=False, zone=None):
        nonlocal events
        events += 1
        lines.append("BEGIN:VEVENT")
        lines.append("UID:" + uid)
        lines.append("DTSTAMP:" + ics_time(now))
        lines.append("SUMMARY:" + title)
        if all_day:
            lines.append("DTSTART;VALUE=DATE:" + ics_date(start))
            lines.append("DTEND;VALUE=DATE:" + ics_date(end))
        elif zone:
            # On the wall clock of a zone the system knows.
            for name, moment in (("DTSTART", start), ("DTEND", end)):
                local = dt.datetime.fromtimestamp(moment, zoneinfo.ZoneInfo(zone))
                lines.append("%s;TZID=%s:%s" % (name, zone, local.strftime("%Y%m%dT%H%M%S")))
        else:
            lines.append("DTSTART:" + ics_time(start))
            lines.append("DTEND:" + ics_time(end))
        lines.extend(extra)
        lines.append("END:VEVENT")

    rules = ["FREQ=DAILY;BYDAY=MO,TU,WE,TH,FR", "FREQ=DAILY", "FREQ=WEEKLY",
             "FREQ=WEEKLY;INTERVAL=2", "FREQ=MONTHLY", "FREQ=WEEKLY;BYDAY=MO,WE"]
    moved = 0
    for series in range(60):
        start = midnight - rng.randint(30, 180) * day + time_of_day(rng)
        length = rng.choice([900, 1800, 3600])
        uid = "series-%d@navro.bench" % series
        rule = rules[series % len(rules)]
        if series % 5 == 0:
            rule += ";COUNT=%d" % rng.randint(20, 200)
        extra = ["RRULE:" + rule,
                 "DESCRIPTION:Join https://meet.google.com/%s" % meet_code(rng),
                 "LOCATION:Room %d" % rng.randint(1, 12)]
        # A few occurrences skipped: holidays.
        skipped = [start + rng.randint(1, 20) * 7 * day for _ in range(rng.randint(0, 3))]
        extra += ["EXDATE:" + ics_time(s) for s in skipped]
        event(uid, "%s sync %d" % (rng.choice(["Team", "Design", "Product", "1:1"]), series),
              start, start + length, extra)
        # Moved or renamed instances of the plain weekly series.
        if rule == "FREQ=WEEKLY" and moved < 40:
            for week in rng.sample(range(1, 25), 5):
                if moved == 40:
                    break
                original = start + week * 7 * day
                shifted = original + rng.choice([-2, -1, 1, 2]) * 3600
                if not clear_of_now(shifted) or not clear_of_now(original):
                    continue
                event(uid, "Moved sync %d" % series, shifted, shifted + length,
                      ["RECURRENCE-ID:" + ics_time(original)])
                moved += 1
    while events < 470:
        start = midnight + rng.randint(-180, 180) * day + time_of_day(rng)
        if not clear_of_now(start):
            continue
        extra = []
        if rng.random() < 0.3:
            extra.append("LOCATION:https://example.zoom.us/j/%d" % rng.randrange(10 ** 9, 10 ** 10))
        if rng.random() < 0.05:
            extra.append("STATUS:CANCELLED")
        event("single-%d@navro.bench" % events, sentence(rng, 2, 6).rstrip("."), start,
              start + rng.choice([1800, 3600, 5400]), extra,
              zone=rng.choice(["Europe/London", "Asia/Bahrain"]) if rng.random() < 0.1 else None)
    while events < 500:
        start = midnight + rng.randint(-180, 180) * day
        event("allday-%d@navro.bench" % events, rng.choice(["Holiday", "Conference", "Offsite"]),
              start, start + rng.randint(1, 3) * day, all_day=True)
    lines.append("END:VCALENDAR")
    return "\r\n".join(lines) + "\r\n", events


def ini_quoted(text):
    return '"' + text.replace("\\", "\\\\").replace('"', '\\"') + '"'


def fill(home, limit):
    rng = random.Random(19)
    now = dt.datetime.now(dt.timezone.utc).timestamp()
    private_folder(os.path.join(home, ".local", "share"))
    private_folder(data_folder(home))
    made = fill_shelf_files(home, rng)
    images = fill_clipboard(home, rng, now, limit, [path for path, folder in made if not folder])
    fill_notes(home, rng, now)
    fill_shelf(home, rng, now, made)

    calendars = os.path.join(data_folder(home), "Calendars")
    private_folder(calendars)
    document, events = calendar_document(rng, now)
    calendar_file = os.path.join(calendars, CALENDAR_NAME + ".ics")
    write_private(calendar_file, document.encode())
    sources = json.dumps([{"id": new_id(rng), "kind": "file", "location": calendar_file,
                           "name": "", "enabled": True}], separators=(",", ":"))

    config = os.path.join(home, ".config", "Navro")
    private_folder(config)
    settings = {
        "hasCompletedOnboarding": "true",
        "language": "english",
        "adhanAlert": "true",
        "adhanSound": "true",
        "prayerInNotch": "true",
        "prayerCityID": "manama",
        "clipboardEnabled": "true",
        "clipboardLimit": str(limit),
        "calendarSources": ini_quoted(sources),
    }
    write_private(os.path.join(config, "Navro.conf"),
                  ("[General]\n" + "".join("%s=%s\n" % kv for kv in sorted(settings.items())))
                  .encode())
    print("clipboard: %d entries (%d images); notes: 200 to-dos, 20 reminders ahead; shelf: %d "
          "items; calendar: %d events in %s" % (limit, images, len(made), events, calendar_file))


def main(argv):
    if len(argv) >= 2 and argv[0] == "fill":
        fill(argv[1], int(argv[2]) if len(argv) > 2 else 500)
    elif len(argv) >= 3 and argv[0] == "add-reminders":
        add_reminders(argv[1], [float(moment) for moment in argv[2:]])
    elif len(argv) == 4 and argv[0] == "picture":
        with open(argv[1], "wb") as f:
            f.write(png(int(argv[2]), int(argv[3]), random.Random(argv[1])))
    else:
        sys.stderr.write(__doc__)
        return 2
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
