#!/usr/bin/env python3
"""A person in a real window and another process on the same volume: completing by key and by a tap on the
check box, a recurring task that moves on, deleting with its questions, and 500 changes of a script beside
the person's own. Needs Xvfb and xdotool."""
import shutil
import signal
import subprocess
import sys
import time

from support import PIM, WINDOW, Home, event, expect, finish, todo
from window_test import Display, settled, write

MINUTES_2026_03_10 = 66371040
DAY = "2026-03-10"
IMPORTS, EVENTS_EACH, TOGGLES = 20, 25, 21


def xdo(home, *arguments):
    return subprocess.run(["xdotool", *map(str, arguments)], env=home.env, capture_output=True, text=True,
                          timeout=20).stdout.strip()


def items(home, kind, first=DAY, last=DAY):
    return [item for item in home.agenda(first, last) if item["kind"] == kind]


def waits(condition, seconds=6):
    until = time.monotonic() + seconds
    while time.monotonic() < until:
        if condition():
            return True
        time.sleep(0.1)
    return False


def open_window(home):
    window = subprocess.Popen([WINDOW, f"OPEN|DAILY|{MINUTES_2026_03_10}"], env=home.env,
                              stderr=subprocess.PIPE, text=True)
    number = xdo(home, "search", "--sync", "--onlyvisible", "--class", "tessera").split()
    expect(number, "the window does not come up")
    settled(home)
    return window, number[0]


def close_window(window):
    window.terminate()
    try:
        _, complaints = window.communicate(timeout=10)
        expect(window.returncode == 0, f"the window ends with {window.returncode}")
        expect("lock" not in complaints and "busy" not in complaints, f"the window complains: {complaints}")
    except subprocess.TimeoutExpired:
        expect(False, "the window does not close")


def is_complete(home):
    tasks = items(home, "task")
    return bool(tasks) and tasks[0]["complete"]


def complete_by_hand(home):
    """By key, and by a tap on the check box at the row's left."""
    home.pim("import", write(home, "one.ics", todo("t", ["SUMMARY:rent", "DUE;VALUE=DATE:20260310"])))
    window, number = open_window(home)
    xdo(home, "key", "--window", number, "9")
    expect(waits(lambda: is_complete(home)), "key 9 does not complete the task")
    settled(home)
    place = dict(line.split("=") for line in xdo(home, "getwindowgeometry", "--shell", number).splitlines())
    for x in range(18, 60, 6):  # the box's place follows the text size
        xdo(home, "mousemove", int(place["X"]) + x, int(place["Y"]) + 40, "click", 1)
        if waits(lambda: not is_complete(home), 0.6):
            break
    expect(not is_complete(home), "no tap at the row's left activates the task")
    return window, number


def recurring_moves_on(home):
    home.pim("import", write(home, "series.ics", todo("s", [
        "SUMMARY:water", "DTSTART;VALUE=DATE:20260310", "DUE;VALUE=DATE:20260310", "RRULE:FREQ=DAILY;COUNT=9"])))
    window, number = open_window(home)
    xdo(home, "key", "--window", number, "9")
    expect(waits(lambda: [i["subject"] for i in items(home, "task", "2026-03-11", "2026-03-11")
                          if not i["complete"]] == ["water"]),
           f"a recurring task does not move on: {items(home, 'task', DAY, '2026-03-12')}")
    close_window(window)


def delete_by_hand(home):
    """From the menu with its questions: first one occurrence of a series, then on the next day all of it."""
    home.pim("import", write(home, "walk.ics", event("d", "20260310T070000", ["SUMMARY:walk", "RRULE:FREQ=DAILY;COUNT=5"])))
    window, number = open_window(home)

    def press(*keys):
        for key in keys:
            xdo(home, "key", "--window", number, key)
            settled(home)

    def days():
        return [i["day"][-2:] for i in items(home, "appointment", DAY, "2026-03-20")]

    to_delete = ["F2", "Down", "Down", "Down", "Return"]  # below the rows for new items
    press(*to_delete)
    expect(days() == ["10", "11", "12", "13", "14"], "the item goes before its question is answered")
    press("Return", "Return")  # yes; the first cell is the occurrence
    expect(waits(lambda: days() == ["11", "12", "13", "14"]), f"left after deleting an occurrence: {days()}")
    request = subprocess.run([WINDOW, f"OPEN|DAILY|{MINUTES_2026_03_10 + 1440}"], env=home.env, capture_output=True)
    expect(request.returncode == 255, "the window does not take a request")
    settled(home)
    press(*to_delete, "Return", "Right", "Return")
    expect(waits(lambda: days() == []), f"left after deleting the series: {days()}")
    close_window(window)


def two_writers(home, number):
    """The script's changes in one process after the other, the person's in the window; all must stand."""
    before = is_complete(home)
    complaints, pressed = [], 0
    for turn in range(IMPORTS):
        events = [event(f"w{n}", f"202604{n % 28 + 1:02d}T{turn % 10 + 8:02d}0000",
                        [f"SUMMARY:turn {turn}", f"SEQUENCE:{turn}"]) for n in range(EVENTS_EACH)]
        script = subprocess.Popen([PIM, "import", write(home, "turn.ics", *events)], env=home.env,
                                  stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True)
        if pressed < TOGGLES:
            xdo(home, "key", "--window", number, "9")
            pressed += 1
        _, errors = script.communicate(timeout=20)
        if script.returncode != 0:
            complaints.append(errors)
    while pressed < TOGGLES:
        xdo(home, "key", "--window", number, "9")
        pressed += 1
    expect(not complaints, f"the script is refused {len(complaints)} times: {complaints[:1]}")
    expect(waits(lambda: is_complete(home) == (before != bool(TOGGLES % 2))), "a change made in the window is lost")
    found = [i["subject"] for i in items(home, "appointment", "2026-04-01", "2026-04-30")]
    expect(found == [f"turn {IMPORTS - 1}"] * EVENTS_EACH, f"changes of the script are lost: {found}")
    checked = home.pim("check")
    expect(checked.returncode == 0, f"the volume is not sound: {checked.stdout}{checked.stderr}")


def main():
    for tool in ("Xvfb", "xdotool", "import"):
        if not shutil.which(tool):
            print(f"{tool} is not installed")
            sys.exit(77)
    display, homes, window = Display(), [Home(), Home(), Home()], None
    for home in homes:
        home.env.update(DISPLAY=display.name, QT_QPA_PLATFORM="xcb")
        home.env.pop("WAYLAND_DISPLAY", None)
    try:
        recurring_moves_on(homes[1])
        delete_by_hand(homes[2])
        window, number = complete_by_hand(homes[0])
        started = time.monotonic()
        two_writers(homes[0], number)
        print(f"two writers: {time.monotonic() - started:.1f} s")
        close_window(window)
    finally:
        if window and window.poll() is None:
            window.send_signal(signal.SIGKILL)
        display.close()
    finish()


if __name__ == "__main__":
    main()
