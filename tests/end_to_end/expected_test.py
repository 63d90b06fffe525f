#!/usr/bin/env python3
"""Real calendars: what the agenda shows agrees, occurrence for occurrence, with the answers beside them.

Two differences are meant and tolerated for just their own reasons: local time follows the rule of
the current year for all years, and a rule on day 29 to 31 shows on the last day of shorter months.
usage: expected_test.py [FILE...]   names of calendars; all of them otherwise
"""
import calendar
import collections
import datetime as dt
import functools
import glob
import json
import os
import re
import sys
import zoneinfo

from support import DATA, Home, expect, finish

DEVICE = "Europe/Berlin"
YEAR = dt.datetime.now().year
UTC = dt.timezone.utc
SKIPPED = 77

Row = collections.namedtuple("Row", "uid start end all_day summary")


# ---- the rule of the current year, as a zone record holds it

@functools.cache
def year_rule(name):
    """(standard offset, daylight offset or None, start and end of daylight as (month, weekday, week, wall seconds))"""
    zone = zoneinfo.ZoneInfo(name)
    steps, at = [], dt.datetime(YEAR, 1, 1, tzinfo=UTC)
    before = at.astimezone(zone).utcoffset()
    for _ in range(366 * 24 * 2):
        at += dt.timedelta(minutes=30)
        after = at.astimezone(zone).utcoffset()
        if after != before and at.year == YEAR:
            wall = at.replace(tzinfo=None) + before
            last = wall.day + 7 > calendar.monthrange(YEAR, wall.month)[1]
            steps.append((after - before, (wall.month, wall.weekday(), 5 if last else (wall.day - 1) // 7 + 1,
                                           wall - dt.datetime(wall.year, wall.month, wall.day))))
            if len(steps) == 1:
                first = (before, after)
        before = after
    if len(steps) != 2:
        return before, None, None, None
    if steps[0][0] > dt.timedelta(0):
        return first[0], first[1], steps[0][1], steps[1][1]
    return first[1], first[0], steps[1][1], steps[0][1]


def transition(rule, year):
    month, weekday, week, time = rule
    first = dt.datetime(year, month, 1)
    day = first + dt.timedelta(days=(weekday - first.weekday()) % 7 + 7 * (week - 1))
    while day.month != month:
        day -= dt.timedelta(days=7)
    return day + time


def is_daylight(name, wall):
    _, daylight, begins, ends = year_rule(name)
    if daylight is None:
        return False
    d, s = transition(begins, wall.year), transition(ends, wall.year)
    return d <= wall < s if d < s else not s <= wall < d


def rule_offset(name, wall):
    standard, daylight, _, _ = year_rule(name)
    return daylight if is_daylight(name, wall) else standard


def rule_local(name, utc):
    standard, daylight, _, _ = year_rule(name)
    if daylight is not None and is_daylight(name, utc + standard):
        return utc + daylight
    return utc + standard


def by_year_rule(exact, zones):
    """All local times that the current year's rules may give for a moment of a file."""
    utc = exact.astimezone(UTC).replace(tzinfo=None)
    yield rule_local(DEVICE, utc)
    for name in zones:
        try:
            wall = exact.astimezone(zoneinfo.ZoneInfo(name)).replace(tzinfo=None)
        except (zoneinfo.ZoneInfoNotFoundError, ValueError):
            continue
        yield rule_local(DEVICE, wall - rule_offset(name, wall))


# ---- what a file says of its zones and days

def facts(path):
    """By uid: the zones named, and the days of month of starts that repeat by month or year."""
    with open(path, "rb") as source:
        text = re.sub(rb"\r?\n[ \t]", b"", source.read()).decode("utf-8", "replace")
    zones, days = collections.defaultdict(set), collections.defaultdict(set)
    for block in re.findall(r"(?is)BEGIN:VEVENT(.*?)END:VEVENT", text):
        uid = re.search(r"(?im)^UID[^:\r\n]*:(.*?)\s*$", block)
        key = uid.group(1) if uid else ""
        zones[key].update(re.findall(r'(?i)TZID="?([^":;\r\n]+)', block))
        start = re.search(r"(?im)^DTSTART[^:\r\n]*:\d{6}(\d\d)", block)
        if start and re.search(r"(?im)^RRULE.*FREQ=(MONTHLY|YEARLY)", block):
            days[key].add(int(start.group(1)))
    return zones, days


# ---- rows

def moment(text):
    return dt.datetime.fromisoformat(text) if text else None


def shown(home, first, last):
    """Occurrences of the agenda, each once however many days it covers."""
    rows = {}
    for row in home.agenda(first, last):
        if row["kind"] == "task":
            continue
        start = moment(row["start"])
        uid = "" if row["uid"].endswith("@content") else row["uid"]
        summary = row["subject"]
        if row["recurrence"]:
            summary = re.sub(r" \(\d+\)$", "", summary)
        rows[row["id"], start] = Row(uid, start, moment(row["end"]) or start, row["all_day"], summary)
    return list(rows.values())


def wanted(occurrence):
    start, end = (moment(occurrence[k]) for k in ("start", "end"))
    summary = re.sub(r" \(\d+\)$", "", " ".join((occurrence["summary"] or "").split("\n")))
    if occurrence.get("status") == "CANCELLED":
        summary = "Cancelled: " + summary
    return Row(occurrence["uid"] or "", start, end, occurrence["all_day"], summary)


def naive(row):
    cut = {k: getattr(row, k).replace(tzinfo=None, second=0) for k in ("start", "end")}
    return row._replace(**cut, summary=row.summary.strip())


def is_contested(row, contested):
    return row.uid in contested or "#" + row.summary.removeprefix("Cancelled: ") in contested


def moved_by_rule(row, zones, rows):
    """The same occurrence by the current year's rules, if shown."""
    if row.all_day:
        return None
    length = row.end - row.start
    for start in by_year_rule(row.start, zones):
        for end in {start + length, *by_year_rule(row.end, zones)}:
            other = naive(row)._replace(start=start.replace(second=0), end=end.replace(second=0))
            if rows[other]:
                return other
    return None


def is_month_end(row, days):
    length = calendar.monthrange(row.start.year, row.start.month)[1]
    return row.start.day == length and any(day > length for day in days)


def compare(name, home, zones, days, answers, span):
    contested = answers.get("contested", {})
    first = dt.date.fromisoformat(span["from"])
    last = dt.date.fromisoformat(span["to"]) - dt.timedelta(days=1)
    got = collections.Counter(naive(r) for r in shown(home, str(first), str(last)) if not is_contested(r, contested))
    agreed = excused = 0
    left = []
    for row in map(wanted, span["occurrences"]):
        if is_contested(row, contested):
            continue
        if got[naive(row)]:
            got[naive(row)] -= 1
            agreed += 1
        else:
            left.append(row)
    for row in left:
        other = moved_by_rule(row, zones[row.uid], got)
        if other:
            got[other] -= 1
            excused += 1
            continue
        # Moved over the edge of the range.
        outside = not row.all_day and not any(
            first <= start.date() <= last for start in by_year_rule(row.start, zones[row.uid]))
        excused += outside
        expect(outside, f"{name} {span['from']}: not shown: {naive(row)}")
    for row in got.elements():
        fine = is_month_end(row, days[row.uid])
        excused += fine
        expect(fine, f"{name} {span['from']}: shown beyond: {row}")
    return agreed, excused


# ---- tasks

TaskRow = collections.namedtuple("TaskRow", "uid start due summary complete priority categories recurs")


def wanted_task(task):
    def days(key):
        if not task.get(key):
            return {None}
        exact = moment(task[key])
        if exact.tzinfo is None:
            return {exact.date()}
        return {exact.date(), *(wall.date() for wall in by_year_rule(exact, []))}

    number = int(task.get("priority", 0))
    priority = 2 if 1 <= number <= 4 else 0 if 6 <= number <= 9 else 1
    complete = task.get("status") == "COMPLETED" or "completed" in task
    return [TaskRow(task["uid"] or "", start, due, task["summary"].strip(), complete, priority,
                    tuple(sorted(task.get("categories", []), key=str.lower)), bool(task.get("rrule")))
            for start in days("dtstart") for due in days("due")]


def shown_tasks(home, tasks):
    """Every task once, off the days on which it shows; one without a date shows today."""
    days = [moment(task[key]).date() for task in tasks for key in ("due",) if task.get(key)] + [dt.date.today()]
    rows = {}
    for day in sorted({d + dt.timedelta(days=n) for d in days for n in (-1, 0, 1)}):
        for row in home.agenda(str(day), str(day)):
            if row["kind"] == "task":
                rows[row["id"]] = row
    date = lambda text: moment(text).date() if text else None
    return collections.Counter(
        TaskRow("" if row["uid"].endswith("@content") else row["uid"], date(row["start"]), date(row["end"]), row["subject"].strip(), row["complete"],
                row["priority"], tuple(sorted(row["categories"], key=str.lower)), row["recurrence"] != 0)
        for row in rows.values())


def compare_tasks(name, home, tasks):
    settings = os.path.join(home.env["XDG_DATA_HOME"], "tessera")
    os.makedirs(settings, exist_ok=True)
    with open(os.path.join(settings, "ZELVCalendar.ini"), "w", encoding="utf-16") as out:
        out.write("[Tasks]\r\nIgnoreCompletedTasksOlderThan=0\r\n")
    got = shown_tasks(home, tasks)
    agreed = 0
    for task in tasks:
        found = next((row for row in wanted_task(task) if got[row]), None)
        expect(found, f"{name}: no task {wanted_task(task)[0]}")
        if found:
            got[found] -= 1
            agreed += 1
    for row in got.elements():
        expect(False, f"{name}: a task beyond: {row}")
    return agreed


def main():
    folder = os.path.join(DATA, "calendars")
    files = sorted(glob.glob(os.path.join(folder, "*.ics")))
    if not files:
        print("no shared data")
        sys.exit(SKIPPED)
    chosen = set(sys.argv[1:])
    agreed = excused = tasks = 0
    for path in files:
        name = os.path.basename(path)
        if chosen and name not in chosen:
            continue
        with open(path[:-4] + ".expected.json") as source:
            answers = json.load(source)
        home = Home(DEVICE)
        result = home.pim("import", path)
        expect(result.returncode in (0, 1), f"{name}: import ends with {result.returncode}: {result.stderr[-300:]}")
        zones, days = facts(path)
        for span in answers["ranges"]:
            counts = compare(name, home, zones, days, answers, span)
            agreed, excused = agreed + counts[0], excused + counts[1]
        tasks += compare_tasks(name, home, answers.get("tasks", []))
    print(f"{agreed} occurrences agree, {excused} differ as they should, {tasks} tasks agree")
    expect(agreed > 0, "nothing was compared")
    finish()


if __name__ == "__main__":
    main()
