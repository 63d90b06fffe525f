#!/usr/bin/env python3
"""A person enters and changes items in a real window, by finger and by keyboard alone; another process and
libical read what became of them. Needs Xvfb, xdotool and ImageMagick."""
import ctypes
import ctypes.util
import os
import shutil
import signal
import subprocess
import sys

from support import WINDOW, Home, expect, finish
from tasks_test import close_window, open_window, waits, xdo
from window_test import Display, MINUTES_2026_03_10, settled

DAYS = ("2026-03-01", "2026-04-30")
TITLE, ROW, KEYS = 28, 22, 40  # pixels of a form at 96 dots per inch
START, END, RECURRENCE, CATEGORIES, NOTE = 2, 3, 8, 9, 11  # rows of an appointment, from the top


class Hand:
    def __init__(self, home, number):
        self.home, self.number = home, number
        place = dict(line.split("=") for line in xdo(home, "getwindowgeometry", "--shell", number).splitlines())
        self.x, self.y, self.width, self.height = (int(place[key]) for key in ("X", "Y", "WIDTH", "HEIGHT"))

    def press(self, *keys):
        for key in keys:
            xdo(self.home, "key", "--window", self.number, key)
            settled(self.home)

    def write(self, text):
        xdo(self.home, "type", "--window", self.number, text)
        settled(self.home)

    def tap(self, x, y):
        xdo(self.home, "mousemove", self.x + x, self.y + y, "click", 1)
        settled(self.home)

    def tap_row(self, row):
        self.tap(self.width // 3, TITLE + ROW * row + ROW // 2)

    def tap_key(self, index, count):
        self.tap((2 * index + 1) * self.width // (2 * count), self.height - KEYS // 2)

    def go_to(self, day):
        minutes = MINUTES_2026_03_10 + (day - 10) * 1440
        handed = subprocess.run([WINDOW, f"OPEN|DAILY|{minutes}"], env=self.home.env, capture_output=True)
        expect(handed.returncode == 255, "the window does not take a request")
        settled(self.home)

    def new_appointment(self, subject):  # by keyboard
        self.press("F2", "Down", "Return")
        self.write(subject)

    def down_to(self, row, start=0):
        self.press(*["Down"] * (row - start))


def shown(home, subject):
    """What the agenda tells of an item: its days, with start and end."""
    return [(i["day"][5:], i["start"][11:16], i["end"][11:16]) for i in home.agenda(*DAYS) if i["subject"] == subject]


def by_finger(hand):
    """A timed appointment with a category and a note."""
    hand.tap_key(4, 5)
    hand.tap(hand.width // 3, 20)  # New Appointment
    hand.write("Review")
    hand.tap_row(CATEGORIES)
    hand.write("Work")  # where there is no category the field has the keyboard
    hand.press("Return", "Return")  # adds it, and yes
    hand.tap_key(0, 2)
    hand.tap_row(NOTE)
    hand.write("Bring the plans")
    hand.tap_key(0, 2)
    expect(waits(lambda: shown(hand.home, "Review") == [("03-10", "12:00", "13:00")]),
           f"entered by finger: {shown(hand.home, 'Review')}")
    item = next((i for i in hand.home.agenda(*DAYS) if i["subject"] == "Review"), {})
    expect(item.get("categories") == ["Work"] and item.get("note"), f"category and note: {item}")
    # The same item, changed from the menu that a tap on it opens.
    hand.tap(hand.width // 2, TITLE + ROW)
    hand.tap(hand.width // 2, TITLE + 20)  # Edit
    hand.tap_row(0)
    hand.press("End")
    hand.write(" of plans")
    hand.tap_key(0, 2)
    expect(waits(lambda: shown(hand.home, "Review of plans") != []), "a change by finger is not stored")


def all_day(hand):
    hand.go_to(10)
    hand.new_appointment("Fair")
    hand.down_to(END)
    hand.press("Return", "Right", "Up", "Up", "Return")  # the day's drum, two further
    hand.press("Down", "Right", "F1")
    expect(waits(lambda: [s[0] for s in shown(hand.home, "Fair")] == ["03-10", "03-11", "03-12"]),
           f"an all-day appointment over three days: {shown(hand.home, 'Fair')}")
    expect(all(i["all_day"] for i in hand.home.agenda(*DAYS) if i["subject"] == "Fair"), "it is not all day")


def weekly(hand):
    """Tuesdays and Thursdays, ten times; then one occurrence moves and one goes."""
    hand.new_appointment("Class")
    hand.down_to(RECURRENCE)
    hand.press("Left", "Down", "Return")  # the last choice is the pattern of one's own
    hand.press("Right", "Down", "Down", "Return")  # weekly; its days
    hand.press("Down", "Down", "Down", "Down", "space", "F1")
    hand.press("Down", "Down", "Right", "Right", "Down", "ctrl+a")
    hand.write("10")
    hand.press("F1", "F1")
    days = ["03-10", "03-12", "03-17", "03-19", "03-24", "03-26", "03-31", "04-02", "04-07", "04-09"]
    expect(waits(lambda: [s[0] for s in shown(hand.home, "Class")] == days), f"a series: {shown(hand.home, 'Class')}")

    hand.go_to(19)
    hand.press("Down", "Return", "F1", "Return")  # its details, Edit, the occurrence
    hand.down_to(START)
    hand.press("Return", "Right", "Up", "Return", "F1")
    days[3] = "03-20"
    expect(waits(lambda: [s[0] for s in shown(hand.home, "Class")] == days), f"one moved: {shown(hand.home, 'Class')}")

    hand.press("Escape")
    hand.go_to(24)
    hand.press("F2", "Down", "Down", "Down", "Return", "Return", "Return")  # Delete, yes, the occurrence
    days.remove("03-24")
    expect(waits(lambda: [s[0] for s in shown(hand.home, "Class")] == days), f"one deleted: {shown(hand.home, 'Class')}")


def yearly(hand):
    hand.go_to(14)
    hand.new_appointment("Pi day")
    hand.down_to(RECURRENCE)
    hand.press("Left", "Left", "F1")
    found = lambda year: [i["subject"] for i in hand.home.agenda(f"{year}-03-14", f"{year}-03-14")]
    expect(waits(lambda: found(2026) + found(2031) == ["Pi day (0)", "Pi day (5)"]), f"a yearly event: {found(2026)}, {found(2031)}")


def task(hand):
    hand.go_to(10)
    hand.press("F2", "Down", "Down", "Return")
    hand.write("Paint")
    hand.press("Down", "space", "Return", "Right", "Up", "Return")  # starts on the 11th
    hand.press("Down", "Return", "Right", "Up", "Up", "Return")  # and is due two days later than it was
    hand.press("Down", "space", "F1")
    tasks = lambda: [i for i in hand.home.agenda(*DAYS) if i["kind"] == "task"]
    expect(waits(lambda: tasks() != []), "a task is not stored")
    dates = {(i["start"][:10], i["end"][:10], i["reminder"]) for i in tasks()}
    expect(len(dates) == 1 and next(iter(dates))[0] == "2026-03-11" and next(iter(dates))[2],
           f"a task's start, due date and reminder: {dates}")
    return tasks()[0]["end"][:10]


def read_by_libical(home, due):
    name = ctypes.util.find_library("ical")
    if not expect(name, "libical is not there"):
        return
    ical = ctypes.CDLL(name)
    for function in ("icalparser_parse_string", "icalcomponent_get_first_component", "icalcomponent_get_next_component",
                     "icalcomponent_get_first_property", "icalcomponent_get_next_property"):
        getattr(ical, function).restype = ctypes.c_void_p
    ical.icalproperty_get_value_as_string.restype = ctypes.c_char_p
    exported = home.pim("export", "--output", os.path.join(home.path, "out.ics"))
    expect(exported.returncode == 0, f"the export fails: {exported.stderr}")
    with open(os.path.join(home.path, "out.ics"), "rb") as file:
        root = ctypes.c_void_p(ical.icalparser_parse_string(file.read()))
    expect(root, "libical cannot read the export")

    def values(component, kind):
        number, found = ical.icalproperty_string_to_kind(kind.encode()), []
        at = ical.icalcomponent_get_first_property(ctypes.c_void_p(component), number)
        while at:
            found.append(ical.icalproperty_get_value_as_string(ctypes.c_void_p(at)).decode())
            at = ical.icalcomponent_get_next_property(ctypes.c_void_p(component), number)
        return found

    def components(kind):
        number = ical.icalcomponent_string_to_kind(kind.encode())
        at = ical.icalcomponent_get_first_component(root, number)
        while at:
            yield at
            at = ical.icalcomponent_get_next_component(root, number)

    kinds = ("SUMMARY", "DTSTART", "DTEND", "RRULE", "CATEGORIES", "DESCRIPTION")
    events = [{kind: values(event, kind) for kind in (*kinds, "RECURRENCE-ID", "EXDATE")} for event in components("VEVENT")]
    of = lambda subject: [event for event in events if event["SUMMARY"] == [subject]]
    expect([(e["DTSTART"], e["CATEGORIES"], e["DESCRIPTION"]) for e in of("Review of plans")] ==
           [(["20260310T110000Z"], ["Work"], ["Bring the plans"])], f"libical reads {of('Review of plans')}")
    expect([(e["DTSTART"], e["DTEND"]) for e in of("Fair")] == [(["20260310"], ["20260313"])], f"libical reads {of('Fair')}")
    series = [e for e in of("Class") if e["RRULE"]]
    expect(len(series) == 1 and sorted(series[0]["RRULE"][0].split(";")) == ["BYDAY=TU,TH", "COUNT=10", "FREQ=WEEKLY"],
           f"libical reads {series}")
    expect(series and [day[:8] for day in series[0]["EXDATE"]] == ["20260324"], f"libical reads {series}")
    moved = [e for e in of("Class") if e["RECURRENCE-ID"]]
    expect([(e["RECURRENCE-ID"][0][:8], e["DTSTART"]) for e in moved] == [("20260319", ["20260320T120000"])],
           f"libical reads {moved}")
    expect([e["RRULE"][0].split(";")[0] for e in of("Pi day")] == ["FREQ=YEARLY"], f"libical reads {of('Pi day')}")
    tasks = [{kind: values(task, kind) for kind in ("SUMMARY", "DTSTART", "DUE")} for task in components("VTODO")]
    expect(tasks == [{"SUMMARY": ["Paint"], "DTSTART": ["20260311"], "DUE": [due.replace("-", "")]}], f"libical reads {tasks}")


def main():
    for tool in ("Xvfb", "xdotool", "import"):
        if not shutil.which(tool):
            print(f"{tool} is not installed")
            sys.exit(77)
    display, home, window = Display(), Home(), None
    home.env.update(DISPLAY=display.name, QT_QPA_PLATFORM="xcb")
    home.env.pop("WAYLAND_DISPLAY", None)
    try:
        window, number = open_window(home)
        hand = Hand(home, number)
        by_finger(hand)
        all_day(hand)
        weekly(hand)
        yearly(hand)
        due = task(hand)
        read_by_libical(home, due)
        checked = home.pim("check")
        expect(checked.returncode == 0, f"the volume is not sound: {checked.stdout}{checked.stderr}")
        close_window(window)
    finally:
        if window and window.poll() is None:
            window.send_signal(signal.SIGKILL)
        display.close()
    finish()


if __name__ == "__main__":
    main()
