#!/usr/bin/env python3
"""Every sample file goes into a volume, out again, into a second volume and out of that: both exports are the
same bytes, both volumes show the same on every day and hold as many records, and a second import of an export
changes nothing. The export is also read by other programs' libraries when they are there."""
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
    imported = take_in(two, path)
    second = export(two)
    told_difference(name, first, second)
    expect(counts(one) == counts(two), f"{name}: {counts(one)} records become {counts(two)}")
    before, after = shown(one), shown(two)
    missing = [item for item in before if item not in set(after)]
    added = [item for item in after if item not in set(before)]
    expect(before == after, f"{name}: {len(missing)} not shown any more, {len(added)} new:\n"
           + "\n".join(missing[:3] + ["--"] + added[:3]))
    again = take_in(two, path)
    expect(" 0 created, 0 updated" in again.stdout, f"{name}: the second import changes: {again.stdout}")
    return one, first, imported


def main():
    groups = [DATA + "/" + part for part in ("calendars", "contacts", "malformed")]
    for folder in groups:
        for path in sorted(glob.glob(folder + "/**/*.*", recursive=True)):
            if path.lower().endswith((".ics", ".vcf")):
                round_trip(os.path.basename(path), [path])
    finish()


if __name__ == "__main__":
    main()
