#!/usr/bin/env python3
"""Hostile calendars: each within 5 s and 200 MB, told and survived, neighbours kept."""
import json
import os
import subprocess
import sys

from support import DATA, PIM, Home, Measured, calendar, event, expect, finish

SECONDS, MEGABYTES = 5, 200


def run(name, file, least, most, message):
    home = Home()
    measured = Measured([PIM, "import", file], home.env)
    print(f"{name}: exit {measured.code}, {measured.seconds:.2f} s, {measured.megabytes:.0f} MB", flush=True)
    expect(measured.code in (0, 1, 2), f"{name} ends with {measured.code}: {measured.output[-500:]}")
    expect(measured.seconds < SECONDS, f"{name} takes {measured.seconds:.1f} s")
    expect(measured.megabytes < MEGABYTES, f"{name} takes {measured.megabytes:.0f} MB")
    if message:
        expect(measured.code != 0 and measured.output.strip(), f"{name} goes without a message")
    if os.path.exists(home.volume):
        check = home.pim("check")
        expect(check.returncode == 0, f"{name}: {check.stdout}{check.stderr}")
    held = len(stored(home))
    expect(least <= held <= most, f"{name} leaves {held} items, not {least} to {most}: {measured.output[-500:]}")
    return home


def stored(home):
    """Records of the volume; asked of the file itself, so that no date range hides one."""
    if not os.path.exists(home.volume):
        return []
    script = ("import sqlite3,sys\n"
              "db = sqlite3.connect('file:' + sys.argv[1] + '?mode=ro', uri=True)\n"
              "names = [r[0] for r in db.execute(\"select name from sqlite_master where type='table'\")]\n"
              "name = [n for n in names if 'ppointment' in n][0]\n"
              "print(db.execute('select count(*) from \"%s\"' % name).fetchone()[0])\n")
    out = subprocess.run([sys.executable, "-c", script, home.volume], capture_output=True, text=True)
    expect(out.returncode == 0, out.stderr)
    return range(int(out.stdout or 0))


def write(folder, name, text):
    path = os.path.join(folder, name)
    with open(path, "w", newline="") as out:
        out.write(text)
    return path


def generated(folder):
    good = event("good", "20260310T100000", ["SUMMARY:neighbour"])
    yield "a line of 10 MB", calendar(good, event("long", "20260311T100000", ["DESCRIPTION:" + "x" * 10_000_000])), 1, 2
    yield "10,000 nested components", calendar(
        good, "\r\n".join(["BEGIN:VEVENT"] * 10_000 + ["END:VEVENT"] * 10_000), event("after", "20260312T100000")), 1, 3
    dates = "\r\n".join(f"EXDATE:{1990 + n % 100}{n // 100 % 12 + 1:02d}{n % 28 + 1:02d}T100000" for n in range(1_000_000))
    yield "a million EXDATE lines", calendar(good, event("ex", "19900101T100000", ["RRULE:FREQ=DAILY", dates])), 1, 2
    one = ",".join(f"20{n % 90 + 10}{n // 90 % 12 + 1:02d}{n % 28 + 1:02d}T100000" for n in range(1_000_000))
    yield "a million dates in one EXDATE", calendar(good, event("ex", "20100101T100000", ["RRULE:FREQ=DAILY", "EXDATE:" + one])), 1, 2
    rules = ["FREQ=DAILY", "FREQ=SECONDLY", "FREQ=HOURLY;BYMONTH=2;BYMONTHDAY=31", "FREQ=MONTHLY;BYMONTHDAY=31;BYMONTH=2",
             "FREQ=YEARLY;BYYEARDAY=366;BYDAY=MO;BYMONTH=1", "FREQ=DAILY;COUNT=2147483647", "FREQ=YEARLY;INTERVAL=99999999",
             "FREQ=WEEKLY;BYDAY=MO,TU,WE,TH,FR,SA,SU;BYSETPOS=-366", "FREQ=MONTHLY;BYDAY=53MO",
             "FREQ=YEARLY;BYWEEKNO=53;BYDAY=SU;BYMONTH=6"]
    yield "rules that never end", calendar(good, *(event(f"r{n}", "20260101T100000", [f"RRULE:{r}"]) for n, r in enumerate(rules))), 2, 4000
    yield "a million lines of one item", calendar(good, event("many", "20260311T100000", ["X-A:1"] * 1_000_000)), 1, 2
    yield "a calendar that never ends", calendar(good).replace("END:VCALENDAR", "") + "BEGIN:VEVENT\r\n" + "X-A:1\r\n" * 500_000, 1, 2


def main():
    index = os.path.join(DATA, "malformed", "index.json")
    if os.path.exists(index):
        with open(index) as source:
            for case in json.load(source)["files"]:
                if case["file"].endswith(".ics"):
                    run(case["file"], os.path.join(DATA, "malformed", case["file"]), case["records_min"],
                        case["records_max"], case["message"])
    else:
        print("no shared data; only the generated files")
    scratch = Home()
    for name, text, least, most in generated(scratch.path):
        run(name, write(scratch.path, "hostile.ics", text), least, most, False)
    empty = Home()
    expect(empty.pim("import", "/nonexistent.ics").returncode == 2, "a missing file is no usage error")
    expect(empty.pim("import", "/dev/null").returncode != 0, "an empty file goes without a message")
    finish()


if __name__ == "__main__":
    main()
