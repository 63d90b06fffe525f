#!/usr/bin/env python3
"""Hostile calendars: each within 5 s and 200 MB, told and survived, neighbours kept."""
import itertools
import json
import os
import sqlite3

from support import DATA, PIM, Home, Measured, calendar, event, expect, finish

SECONDS, MEGABYTES = 5, 200
GOOD = event("good", "20260310T100000", ["SUMMARY:neighbour"])


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
    held = stored(home)
    expect(least <= held <= most, f"{name} leaves {held} items, not {least} to {most}: {measured.output[-500:]}")
    return home


def stored(home):
    """Number of records in the volume, asked of the file itself, so that no date range hides one."""
    if not os.path.exists(home.volume):
        return 0
    database = sqlite3.connect(f"file:{home.volume}?mode=ro", uri=True)
    try:
        return database.execute('select count(*) from "Appointments Database"').fetchone()[0]
    finally:
        database.close()


def write(folder, name, parts):
    """Part by part: a child's peak memory counts what its parent held when it was started."""
    path = os.path.join(folder, name)
    with open(path, "w", newline="") as out:
        for part in parts:
            out.write(part)
    return path


def around(uid, lines):
    """A calendar of a good event and one of many lines."""
    yield calendar(GOOD).replace("END:VCALENDAR\r\n", "")
    yield f"BEGIN:VEVENT\r\nUID:{uid}\r\nDTSTART:20100101T100000\r\n"
    yield from lines
    yield "\r\nEND:VEVENT\r\nEND:VCALENDAR\r\n"


def some_date(n):
    return f"{1990 + n % 100}{n // 100 % 12 + 1:02d}{n % 28 + 1:02d}T100000"


def generated():
    yield "a line of 10 MB", around("long", itertools.chain(["DESCRIPTION:"], itertools.repeat("x" * 1000, 10_000))), 1, 2
    nested = itertools.chain(itertools.repeat("BEGIN:VEVENT\r\n", 10_000), itertools.repeat("END:VEVENT\r\n", 10_000))
    yield "10,000 nested components", around("nest", nested), 1, 3
    yield "a million EXDATE lines", around("ex", itertools.chain(
        ["RRULE:FREQ=DAILY\r\n"], (f"EXDATE:{some_date(n)}\r\n" for n in range(1_000_000)), ["X-END:1"])), 2, 2
    yield "a million dates in one EXDATE", around("ex", itertools.chain(
        ["RRULE:FREQ=DAILY\r\nEXDATE:20100102T100000"], (f",{some_date(n)}" for n in range(1_000_000)))), 2, 2
    yield "a million lines of one item", around("many", itertools.repeat("X-A:1\r\n", 1_000_000)), 1, 2
    yield "a calendar that never ends", itertools.chain(
        [calendar(GOOD).replace("END:VCALENDAR\r\n", ""), "BEGIN:VEVENT\r\n"], itertools.repeat("X-A:1\r\n", 500_000)), 1, 2
    rules = ["FREQ=DAILY", "FREQ=SECONDLY", "FREQ=HOURLY;BYMONTH=2;BYMONTHDAY=31", "FREQ=MONTHLY;BYMONTHDAY=31;BYMONTH=2",
             "FREQ=YEARLY;BYYEARDAY=366;BYDAY=MO;BYMONTH=1", "FREQ=DAILY;COUNT=2147483647", "FREQ=YEARLY;INTERVAL=99999999",
             "FREQ=WEEKLY;BYDAY=MO,TU,WE,TH,FR,SA,SU;BYSETPOS=-366", "FREQ=MONTHLY;BYDAY=53MO",
             "FREQ=YEARLY;BYWEEKNO=53;BYDAY=SU;BYMONTH=6"]
    yield "rules that never end", [calendar(GOOD, *(event(f"r{n}", "20260101T100000", [f"RRULE:{rule}"])
                                                   for n, rule in enumerate(rules)))], 2, 6000


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
    for name, parts, least, most in generated():
        run(name, write(scratch.path, "hostile.ics", parts), least, most, False)
    empty = Home()
    expect(empty.pim("import", "/nonexistent.ics").returncode == 2, "a missing file is no usage error")
    expect(empty.pim("import", "/dev/null").returncode != 0, "an empty file goes without a message")
    finish()


if __name__ == "__main__":
    main()
