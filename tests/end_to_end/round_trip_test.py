#!/usr/bin/env python3
"""Every sample file goes into a volume, out again, into a second volume and out of that: both exports are the
same bytes, both volumes show the same on every day and hold as many records, and a second import of an export
changes nothing. The export is also read by other programs' libraries when they are there."""
import ctypes
import ctypes.util
import glob
import os
import re
import sqlite3
import subprocess

from support import DATA, PIM, Home, calendar, event, expect, finish, todo

FIRST, LAST = "2014-01-01", "2031-12-31"
COUNTED = ("Appointments Database", "Tasks Database", "Contacts Database")


def counts(home):
    with sqlite3.connect(f"file:{home.volume}?mode=ro", uri=True) as db:
        return {name: db.execute(f'SELECT count(*) FROM "{name}"').fetchone()[0] for name in COUNTED}


def shown(home, first=FIRST, last=LAST):
    days = home.agenda(first, last)
    for item in days:
        del item["id"]
    return sorted(map(repr, days))


def export(home, *options):
    result = subprocess.run([PIM, "export", *options], env=home.env, capture_output=True, timeout=300)
    expect(result.returncode == 0, f"export ends with {result.returncode}: {result.stderr[:300]}")
    return result.stdout


def take_in(home, *files):
    result = home.pim("import", *files, timeout=600)
    expect(result.returncode in (0, 1), f"import ends with {result.returncode}: {result.stderr[:300]}")
    return result


def write(home, name, text):
    path = os.path.join(home.path, name)
    with open(path, "wb") as out:
        out.write(text if isinstance(text, bytes) else text.encode())
    return path


def told_difference(name, first, second):
    if first == second:
        return
    one, two = first.split(b"\r\n"), second.split(b"\r\n")
    at = next((i for i, (a, b) in enumerate(zip(one, two)) if a != b), min(len(one), len(two)))
    expect(False, f"{name}: the exports differ at line {at + 1}:\n{one[max(at - 6, 0):at + 3]}\n{two[max(at - 6, 0):at + 3]}")


def well_formed(name, content):
    lines = content.split(b"\r\n")
    expect(all(len(line) <= 75 for line in lines), f"{name}: a line of more than 75 octets")
    expect(b"\n" not in content.replace(b"\r\n", b""), f"{name}: a line end that is none")
    try:
        for line in lines:
            line.decode("utf-8")
    except UnicodeDecodeError:
        expect(False, f"{name}: a character is split")
    stack = []
    for line in re.sub(rb"\r\n ", b"", content).split(b"\r\n"):
        if line.startswith(b"BEGIN:"):
            stack.append(line[6:])
        elif line.startswith(b"END:"):
            expect(stack and stack.pop() == line[4:], f"{name}: {line} closes nothing")
    expect(not stack, f"{name}: {stack} stays open")


def round_trip(name, files):
    one, two = Home(), Home()
    take_in(one, *files)
    first = export(one)
    well_formed(name, first)
    path = write(one, "all.txt", first)
    take_in(two, path)
    second = export(two)
    told_difference(name, first, second)
    expect(counts(one) == counts(two), f"{name}: {counts(one)} records become {counts(two)}")
    before, after = shown(one), shown(two)
    missing, added = sorted(set(before) - set(after)), sorted(set(after) - set(before))
    expect(before == after, f"{name}: {len(missing)} not shown any more, {len(added)} new:\n"
           + "\n".join(missing[:3] + ["--"] + added[:3]))
    again = take_in(two, path)
    expect(" 0 created, 0 updated" in again.stdout, f"{name}: the second import changes: {again.stdout}")



# ---- another library's reading of the same bytes


def libical():
    name = ctypes.util.find_library("ical")
    if not name:
        return None
    library = ctypes.CDLL(name)
    for function, result, arguments in (
            ("icalparser_parse_string", ctypes.c_void_p, [ctypes.c_char_p]),
            ("icalcomponent_count_errors", ctypes.c_int, [ctypes.c_void_p])):
        getattr(library, function).restype = result
        getattr(library, function).argtypes = arguments
    return library


def errors_in(library, content):
    calendar_alone = content[:content.rfind(b"END:VCALENDAR") + 15]
    parsed = library.icalparser_parse_string(calendar_alone)
    return library.icalcomponent_count_errors(parsed) if parsed else -1


def libical_reads(library, name, original, exported):
    if library:
        before, after = errors_in(library, original), errors_in(library, exported)
        expect(0 <= after <= max(before, 0), f"{name}: libical finds {after} faults, in the original {before}")


# ---- ranges, files, commands

def commands():
    home = Home()
    take_in(home, write(home, "few.ics", calendar(
        event("in", "20260310T090000Z", ["SUMMARY:in"]), event("out", "20260410T090000Z", ["SUMMARY:out"]),
        event("daily", "20260301T090000Z", ["SUMMARY:daily", "RRULE:FREQ=DAILY"]),
        todo("t", ["SUMMARY:task", "DTSTART;VALUE=DATE:20260310", "DUE;VALUE=DATE:20260310", "RRULE:FREQ=DAILY;COUNT=3",
                   "BEGIN:VALARM", "ACTION:DISPLAY", "DESCRIPTION:t", "TRIGGER;VALUE=DATE-TIME:20260310T080000Z", "END:VALARM"]))))
    take_in(home, write(home, "one.vcf", "BEGIN:VCARD\r\nVERSION:3.0\r\nUID:c\r\nFN:Ann\r\nBDAY:1980-03-10\r\nEND:VCARD\r\n"
                             "BEGIN:VCARD\r\nVERSION:3.0\r\nUID:leap\r\nFN:Leo\r\nBDAY:2004-02-29\r\nEND:VCARD\r\n"))
    part = export(home, "--from", "2026-03-10", "--to", "2026-03-10")
    for uid, wanted in (("in", True), ("out", False), ("daily", True), ("t", True), ("c", True)):
        expect((f"UID:{uid}\r\n".encode() in part) == wanted, f"the range treats {uid} wrongly")
    for day, wanted in (("2026-02-28", True), ("2026-03-01", False)):  # as the agenda shows it
        expect((b"UID:leap\r\n" in export(home, "--from", day, "--to", day)) == wanted, f"the birthday of {day}")
    for ending, has, hasnot in ((".ics", b"BEGIN:VEVENT", b"BEGIN:VCARD"), (".vcf", b"BEGIN:VCARD", b"BEGIN:VCALENDAR")):
        path = os.path.join(home.path, "out" + ending)
        export(home, "--output", path)
        content = open(path, "rb").read()
        expect(has in content and hasnot not in content, f"the file {ending} holds the wrong items")
    folder = os.path.join(home.path, "shut")
    os.mkdir(folder, 0o500)
    for target in (os.path.join(folder, "x.ics"), os.path.join(home.path, "none", "x.ics")):
        if os.geteuid() != 0 or "none" in target:
            result = home.pim("export", "--output", target)
            expect(result.returncode == 2 and len(result.stderr.splitlines()) == 1 and not os.path.exists(target),
                   f"writing {target}: {result.returncode} {result.stderr}")
    with open("/dev/full", "wb") as full:
        result = subprocess.run([PIM, "export"], env=home.env, stdout=full, stderr=subprocess.PIPE)
        expect(result.returncode == 2 and result.stderr.count(b"\n") == 1, f"a full disk: {result.stderr}")

    def item(uid, day):
        return next((i for i in home.agenda(day, day) if i["uid"] == uid), None)
    task = item("t", "2026-03-10")
    expect(task["reminder"], "the reminder is lost")
    expect(home.pim("complete", str(task["id"])).returncode == 0, "complete fails")
    expect(not item("t", "2026-03-10") and item("t", "2026-03-11"), "the completed series does not move on")
    expect(not item("t", "2026-03-11")["reminder"], "what is completed still reminds")
    daily, contact = item("daily", "2026-03-10"), next(i for i in home.agenda("2026-03-10", "2026-03-10") if i["kind"] == "birthday")
    for number in (daily["id"], contact["id"] % 2**32, task["id"] % 2**32):  # both forms
        expect(home.pim("delete", str(number)).returncode == 0, f"delete {number} fails")
        expect(home.pim("delete", str(number)).returncode == 2, f"{number} can be deleted twice")
    expect(home.pim("complete", str(daily["id"])).returncode == 2, "an appointment can be completed")
    expect(home.pim("delete", "word").returncode == 2, "a word is an identifier")
    expect([i["uid"] for i in home.agenda("2026-03-01", "2026-04-30")] == ["in", "out"], "what remains is wrong")


def main():
    commands()
    if not os.path.isdir(DATA):
        print("no sample files")
        finish()
    library, every = libical(), []
    for part in ("calendars", "contacts", "malformed"):
        for path in sorted(glob.glob(os.path.join(DATA, part, "*"))):
            name = os.path.basename(path)
            if not name.endswith((".ics", ".vcf")) or name in ("empty.ics", "web-page.ics"):
                continue
            every.append(path)
            if part == "calendars" and name.endswith(".ics"):
                home = Home()
                take_in(home, path)
                libical_reads(library, name, open(path, "rb").read(), export(home))
    round_trip("all files", every)
    finish()


if __name__ == "__main__":
    main()
