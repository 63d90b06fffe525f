#!/usr/bin/env python3
"""The sample calendar fills an empty calendar, once, and leaves every other alone."""
import os
import subprocess
from datetime import datetime, timedelta, timezone

from support import BIN, Home, calendar, event, expect, finish

SAMPLE = os.path.join(BIN, "tessera-sample")


def run(home, *arguments):
    return subprocess.run([SAMPLE, *arguments], env=home.env, capture_output=True, text=True, timeout=20)


def main():
    home = Home(zone="UTC")
    first = run(home)
    expect(first.returncode == 0, f"the first run ends with {first.returncode}: {first.stderr}")
    expect("sound" in home.pim("check").stdout, "the sample is not sound")
    days = [(datetime.now(timezone.utc).date() + timedelta(days=n)).isoformat() for n in (-1, 0, 2)]
    rows = home.agenda(days[0], days[2])
    today = [row for row in rows if row["day"] == days[1]]
    expect(len(today) >= 8, f"today has only {len(today)} items")
    for what in ("all_day", "conflict", "note", "reminder", "attendees", "categories"):
        expect(any(row[what] for row in rows), f"nothing shows {what}")
    for kind in ("appointment", "task", "birthday", "anniversary"):
        expect(any(row["kind"] == kind for row in rows), f"there is no {kind}")
    expect(any(row["recurrence"] for row in rows), "nothing recurs")
    expect(any(row["sensitivity"] == 2 for row in rows), "nothing is private")

    second = run(home)
    expect(second.returncode == 0 and "nothing was added" in second.stdout, f"the second run says {second.stdout!r}")
    expect(home.agenda(days[0], days[2]) == rows, "the second run changed the calendar")

    other = Home()
    path = os.path.join(other.path, "own.ics")
    with open(path, "w", newline="") as out:
        out.write(calendar(event("own", "20260310T090000", ["SUMMARY:own"])))
    other.pim("import", path)
    run(other)
    expect(len(other.agenda("2026-01-01", "2027-12-31")) == 1, "a calendar with one item got the sample")
    expect(not os.path.exists(os.path.join(other.env["XDG_DATA_HOME"], "tessera", "ZELVCalendar.ini")), "and its settings")
    expect(run(other, "--bogus").returncode == 2, "an unknown option is taken")
    finish()


main()
