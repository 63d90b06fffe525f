#!/usr/bin/env python3
"""Kills the importer at random moments; each time the volume must be sound and every item whole.

usage: kill_test.py [TIMES]
"""
import collections
import os
import random
import signal
import subprocess
import sys
import time

from support import PIM, Home, calendar, event, expect, finish

ITEMS = 600


def write_version(home, version):
    """Items whose every text carries the version, so that a mixture shows."""
    items = []
    for n in range(ITEMS):
        day = f"202603{n % 28 + 1:02d}"
        lines = [f"SEQUENCE:{version}", f"SUMMARY:item {n} v{version}", f"LOCATION:place v{version}",
                 f"DESCRIPTION:note v{version}", f"CATEGORIES:v{version}",
                 f"ATTENDEE;CN=guest v{version}:mailto:guest{version}@example.org"]
        if n % 4 == 0:
            lines += ["RRULE:FREQ=WEEKLY;COUNT=3", f"EXDATE:{day}T{n % 12 + 8:02d}0000"] if n % 8 else ["RRULE:FREQ=DAILY;COUNT=2"]
        items.append(event(f"kill-{n}", f"{day}T{n % 12 + 8:02d}0000", lines, f"{day}T{n % 12 + 8:02d}3000"))
    name = os.path.join(home.path, f"v{version}.ics")
    with open(name, "w", newline="") as out:
        out.write(calendar(*items))
    return name


def whole(home, last_version):
    check = home.pim("check")
    expect(check.returncode == 0, f"check after a kill: {check.stdout}{check.stderr}")
    versions = collections.defaultdict(set)
    for row in home.agenda("2026-03-01", "2026-04-30"):
        version = row["subject"].rsplit(" v", 1)[1]
        versions[row["uid"]].add(version)
        expect(row["location"] == f"place v{version}", f"{row['subject']}: at {row['location']}")
        expect(row["categories"] == [f"v{version}"], f"{row['subject']}: in {row['categories']}")
        expect(row["note"] and row["attendees"], f"{row['subject']} lost its note or its attendees")
        expect(int(version) <= last_version, f"{row['subject']} is from the future")
    expect(all(len(v) == 1 for v in versions.values()), "an item shows two versions of itself")
    return len(versions)


def main():
    times = int(sys.argv[1]) if len(sys.argv) > 1 else 200
    home = Home()
    chance = random.Random(20260301)
    version, killed, held = 1, 0, 0
    name = write_version(home, version)
    started = time.monotonic()
    subprocess.run([PIM, "import", name], env=dict(home.env, TESSERA_VOLUME=home.volume + ".probe"),
                   stdout=subprocess.DEVNULL, check=True)
    length = time.monotonic() - started
    while killed < times:
        process = subprocess.Popen([PIM, "import", name], env=home.env, stdout=subprocess.DEVNULL,
                                   stderr=subprocess.DEVNULL)
        time.sleep(chance.uniform(0, length * 1.1))
        process.send_signal(signal.SIGKILL)
        if process.wait() == -signal.SIGKILL:
            killed += 1
        else:
            version += 1
            name = write_version(home, version)
        if os.path.exists(home.volume):
            now = whole(home, version)
            expect(now >= held, f"items vanished: {held} before, {now} after")
            held = now
    finished = home.pim("import", name)
    expect(finished.returncode == 0, f"import after all kills: {finished.stderr}")
    expect(whole(home, version) == ITEMS, "items are missing after the last import")
    print(f"{killed} kills, {version} versions, import takes {length * 1000:.0f} ms")
    finish()


if __name__ == "__main__":
    main()
