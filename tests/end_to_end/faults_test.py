#!/usr/bin/env python3
"""Files that are no calendar, calendars of a newer version, full disks and missing displays: one clear line,
exit code 2 or a window that goes on, and the file as it was. Needs Xvfb and xdotool for the windows."""
import hashlib
import os
import shutil
import sqlite3
import subprocess

from support import PIM, WINDOW, Home, event, expect, finish
from tasks_test import open_window
from window_test import Display, write


def digest(path):
    with open(path, "rb") as file:
        return hashlib.sha256(file.read()).hexdigest()


def make_junk(home):
    with open(home.volume, "wb") as out:
        out.write(b"not a calendar\n" * 500)


def make_foreign(home):
    other = sqlite3.connect(home.volume)
    other.execute("CREATE TABLE notes (text)")
    other.commit()
    other.close()


def make_newer(home):
    home.pim("import", write(home, "a.ics", event("a", "20260310T090000", ["SUMMARY:kept"])))
    newer = sqlite3.connect(home.volume)
    newer.execute("PRAGMA user_version = 99")
    newer.execute("PRAGMA wal_checkpoint(TRUNCATE)")
    newer.close()


FAULTS = [("a text", make_junk, "is not a volume"), ("another program's database", make_foreign, "is not a volume"),
          ("a newer calendar", make_newer, "newer version")]


def one_line(text):
    return text.count("\n") == 1 and text.endswith("\n")


def tools(name, make, wanted):
    home = Home()
    make(home)
    before = digest(home.volume)
    more = write(home, "more.ics", event("b", "20260311T090000", ["SUMMARY:more"]))
    for arguments in (["agenda", "2026-03-10", "2026-03-10"], ["import", more]):
        result = home.pim(*arguments)
        expect(result.returncode == 2, f"{arguments[0]} of {name} ends with {result.returncode}")
        expect(one_line(result.stderr) and wanted in result.stderr, f"{arguments[0]} of {name} tells {result.stderr!r}")
    picture = subprocess.run([WINDOW, "--snapshot", os.path.join(home.path, "x.png")], env=home.env,
                             capture_output=True, text=True, timeout=20)
    expect(picture.returncode == 2 and one_line(picture.stderr) and wanted in picture.stderr,
           f"a snapshot of {name} ends with {picture.returncode}: {picture.stderr!r}")
    expect(digest(home.volume) == before, f"{name} was changed")


def windows(name, make, wanted, display):
    home = Home()
    make(home)
    before = digest(home.volume)
    home.env.update(DISPLAY=display, QT_QPA_PLATFORM="xcb")
    home.env.pop("WAYLAND_DISPLAY", None)
    window, _ = open_window(home)
    window.terminate()  # goes through the open message
    _, complaints = window.communicate(timeout=10)
    expect(window.returncode == 0, f"a window on {name} ends with {window.returncode}")
    expect(one_line(complaints) and wanted in complaints, f"a window on {name} tells {complaints!r}")
    expect(digest(home.volume) == before, f"{name} was changed by the window")


def without_display():
    home = Home()
    for name in ("DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"):
        home.env.pop(name, None)
    for extra in ({}, {"DISPLAY": ":4242", "QT_QPA_PLATFORM": "xcb"}, {"QT_QPA_PLATFORM": "nonsense"}):
        result = subprocess.run([WINDOW], env={**home.env, **extra}, capture_output=True, text=True, timeout=20)
        expect(result.returncode == 2 and one_line(result.stderr) and "display" in result.stderr,
               f"without a display ({extra}): {result.returncode}, {result.stderr!r}")


def full_disk():
    """A write beyond what the process may write stands for a full disk."""
    home = Home()
    home.pim("import", write(home, "a.ics", event("a", "20260310T090000", ["SUMMARY:kept"])))
    many = write(home, "many.ics", *[event(f"m{n}", "20260311T090000", ["SUMMARY:" + "x" * 900]) for n in range(3000)])
    room = os.path.getsize(home.volume) // 1024 + 200
    result = subprocess.run(["bash", "-c", f"trap '' XFSZ; ulimit -f {room}; exec {PIM} import {many}"], env=home.env,
                            capture_output=True, text=True, timeout=60)
    expect(result.returncode not in (0, -25) and result.stderr.strip(), f"a full disk: {result.returncode} {result.stderr!r}")
    expect([i["subject"] for i in home.agenda("2026-03-10", "2026-03-10")] == ["kept"], "the item from before is gone")
    expect(home.pim("check").returncode == 0, "the volume is not sound after a full disk")


def main():
    for name, make, wanted in FAULTS:
        tools(name, make, wanted)
    full_disk()
    without_display()
    if all(shutil.which(tool) for tool in ("Xvfb", "xdotool", "import")):
        display = Display()
        try:
            for name, make, wanted in FAULTS:
                windows(name, make, wanted, display.name)
        finally:
            display.close()
    finish()


if __name__ == "__main__":
    main()
