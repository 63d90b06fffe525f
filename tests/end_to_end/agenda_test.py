#!/usr/bin/env python3
"""What agenda, search, check and backup print, byte for byte where programs read it, and how they end."""
import json
import os
import sqlite3

from support import Home, calendar, event, expect, finish, todo

KEYS = ["day", "kind", "id", "uid", "subject", "location", "start", "end", "occurrence", "all_day", "recurrence", "busy",
        "sensitivity", "categories", "note", "reminder", "attendees", "conflict"]

EVENTS = [
    event("plain@x", "20260310T100000", ['SUMMARY:Quote " back \\\\ slash \U0001F600 Grüße', "LOCATION:Room 1", "DESCRIPTION:Note",
                                         "CLASS:PRIVATE", "CATEGORIES:Work,Family"], "20260310T113000"),
    event("beside@x", "20260310T110000", ["SUMMARY:Beside", "TRANSP:OPAQUE"], "20260310T120000"),
    event("days@x", "20260311", ["SUMMARY:Two days"], "20260313").replace("DTSTART:", "DTSTART;VALUE=DATE:")
    .replace("DTEND:", "DTEND;VALUE=DATE:"),
    event("series@x", "20260309T080000", ["SUMMARY:Daily", "RRULE:FREQ=DAILY;COUNT=400"], "20260309T081500"),
    event("series@x", "20260310T090000", ["RECURRENCE-ID:20260310T080000", "SUMMARY:Daily, moved"], "20260310T091500"),
    event("night@x", "20260314T220000", ["SUMMARY:Night"], "20260315T010000"),
    event("fair@x", "20410506T080000", ["SUMMARY:Fair"], "20410506T090000"),
    todo("paint@x", ["SUMMARY:Paint", "DTSTART;VALUE=DATE:20410504", "DUE;VALUE=DATE:20410506", "PRIORITY:2", "CATEGORIES:Home",
                     "RRULE:FREQ=MONTHLY;COUNT=3"]),
    todo("paid@x", ["SUMMARY:Paid", "DUE;VALUE=DATE:20410506", "PRIORITY:9", "STATUS:COMPLETED"]),
]


def rows_are_exact(home):
    result = home.pim("agenda", "2026-03-10", "2026-03-12", "--json")
    expect(result.returncode == 0, result.stderr)
    lines = result.stdout.splitlines()
    rows = [json.loads(line) for line in lines]
    expect(all(list(row) == KEYS for row in rows), "keys in their order")
    expect([(row["day"], row["subject"]) for row in rows] == [
        ("2026-03-10", "Daily, moved"), ("2026-03-10", 'Quote " back \\ slash \U0001F600 Grüße'), ("2026-03-10", "Beside"),
        ("2026-03-11", "Two days"), ("2026-03-11", "Daily"), ("2026-03-12", "Two days"), ("2026-03-12", "Daily")],
        f"rows: {result.stdout}")
    ids = {row["uid"]: row["id"] for row in rows}
    expect(lines[1] == '{"day":"2026-03-10","kind":"appointment","id":%d,"uid":"plain@x","subject":"Quote \\" back \\\\ slash'
           ' \U0001F600 Grüße","location":"Room 1","start":"2026-03-10T10:00","end":"2026-03-10T11:30","occurrence":null,'
           '"all_day":false,"recurrence":0,"busy":2,"sensitivity":2,"categories":["Work","Family"],"note":true,"reminder":false,'
           '"attendees":false,"conflict":true}' % ids["plain@x"],
           lines[1])
    moved, daily, days = rows[0], rows[4], rows[3]
    expect((moved["start"], moved["occurrence"], moved["recurrence"]) == ("2026-03-10T09:00", "2026-03-10T08:00", 2), moved)
    expect((daily["occurrence"], daily["recurrence"]) == ("2026-03-11T08:00", 1), daily)
    expect((days["all_day"], days["start"], days["end"]) == (True, "2026-03-11T00:00", "2026-03-13T00:00"), days)


def tasks_stand_behind(home):
    """A task's row is an appointment's with two keys more."""
    rows = home.agenda("2041-05-04", "2041-05-06")
    expect([(row["day"], row["kind"], row["subject"]) for row in rows] == [
        ("2041-05-04", "task", "Paint"), ("2041-05-05", "task", "Paint"),
        ("2041-05-06", "appointment", "Fair"), ("2041-05-06", "task", "Paint"), ("2041-05-06", "task", "Paid")], rows)
    expect(all(list(row) == KEYS + ["complete", "priority"] for row in rows if row["kind"] == "task"), rows)
    paint, paid = rows[3], rows[4]
    expect((paint["start"], paint["end"], paint["all_day"], paint["occurrence"]) ==
           ("2041-05-04T00:00", "2041-05-06T00:00", False, None), paint)
    expect((paint["complete"], paint["priority"], paint["uid"], paint["categories"], paint["recurrence"]) ==
           (False, 2, "paint@x", ["Home"], 1), paint)
    expect((paid["complete"], paid["priority"], paid["start"]) == (True, 0, None), paid)
    lines = home.pim("agenda", "2041-05-06", "2041-05-06").stdout.splitlines()
    expect(lines[2:] == ["  to do        Paint", "  done         Paid"], lines)
    check = home.pim("check")
    expect(check.returncode == 0 and " 2 tasks" in check.stdout, check.stdout)


def zones_and_settings_count(home):
    home.env["TZ"] = "Asia/Kolkata"
    expect([row["day"] for row in home.agenda("2026-03-10", "2026-03-14") if row["uid"] == "days@x"] ==
           ["2026-03-11", "2026-03-12"], "an all-day item stays on its days")
    home.env["TZ"] = "Europe/Berlin"
    days = [row["day"] for row in home.agenda("2026-03-14", "2026-03-15") if row["uid"] == "night@x"]
    expect(days == ["2026-03-14", "2026-03-15"], days)
    folder = os.path.join(home.env["XDG_DATA_HOME"], "tessera")
    os.makedirs(folder, exist_ok=True)
    settings = os.path.join(folder, "ZELVCalendar.ini")
    with open(settings, "w", encoding="utf-16") as out:
        out.write("[General]\r\nHumanTime=4\r\n")
    days = [row["day"] for row in home.agenda("2026-03-14", "2026-03-15") if row["uid"] == "night@x"]
    expect(days == ["2026-03-14"], f"the settings' small hours: {days}")
    os.unlink(settings)


def long_ranges_lose_nothing(home):
    rows = [row for row in home.agenda("2026-01-15", "2027-12-20") if row["uid"] == "series@x"]
    expect(len(rows) == 400, f"{len(rows)} of 400 occurrences in a range of two years")
    expect(rows == sorted(rows, key=lambda row: row["day"]), "days in order")
    short = [row for row in home.agenda("2026-03-05", "2026-05-13") if row["uid"] == "series@x"]
    expect(short == [row for row in rows if row["day"] <= "2026-05-13"], "70 days at once are the same")


def text_is_readable(home):
    result = home.pim("agenda", "2026-03-10", "2026-03-15")
    lines = result.stdout.splitlines()
    expect("  11:00-12:00  Beside" in lines, result.stdout)
    expect("  all day      Two days" in lines, result.stdout)
    expect(any(line.startswith("  22:00-...") for line in lines), result.stdout)
    expect(any(line.startswith("  ...  -01:00") for line in lines), result.stdout)
    expect(any(line.endswith(" (Room 1)") for line in lines), result.stdout)
    expect(lines[0].startswith("2026-03-10 "), result.stdout)


def search_finds_by_subject(home):
    def found(*arguments):
        result = home.pim("search", *arguments, "--json")
        expect(result.returncode == 0, f"search {arguments}: {result}")
        return [json.loads(line) for line in result.stdout.splitlines()]

    for arguments, subjects in (
            (["DA"], ["Daily", "Two days"]), (["da", "--starts-with"], ["Daily"]), (["pai"], ["Paint", "Paid"]),
            (["ai"], ["Paint", "Paid", "Daily", "Fair"]), (["ai", "--type", "tasks"], ["Paint", "Paid"]),
            (["ai", "--type", "appointments"], ["Daily", "Fair"]), (["ai", "--limit", "3"], ["Paint", "Paid", "Daily"]),
            (["GRÜSSE"], []), (["GRÜẞE"], ['Quote " back \\ slash \U0001F600 Grüße']), (["Room 1"], [])):
        rows = found(*arguments)
        expect([row["subject"] for row in rows] == subjects, f"search {arguments}: {rows}")
    paint, _, daily, fair = found("ai")
    expect(list(paint) == KEYS + ["complete", "priority"] and list(daily) == KEYS, "keys in their order")
    expect((paint["day"], daily["day"], daily["start"], daily["recurrence"], fair["uid"]) ==
           ("2041-05-06", "2026-03-09", "2026-03-09T08:00", 1, "fair@x"), [paint, daily, fair])
    expect(home.pim("search", "ai").stdout.splitlines() == [
        "2041-05-06  to do        Paint", "2041-05-06  done         Paid", "2026-03-09  08:00-08:15  Daily",
        "2041-05-06  08:00-09:00  Fair"], home.pim("search", "ai").stdout)


def wrong_calls_end_with_two(home):
    for arguments in (["agenda", "2026-03-10"], ["agenda", "2026-03-10", "2026-02-30"], ["agenda", "2026-03-11", "2026-03-10"],
                      ["--volume", os.path.join(home.path, "none.vol"), "agenda", "2026-03-10", "2026-03-11"],
                      ["--volume", os.path.join(home.path, "none.vol"), "check"],
                      ["search"], ["search", ""], ["search", "x", "--limit", "0"], ["search", "x", "--type", "notes"],
                      ["--volume", os.path.join(home.path, "none.vol"), "search", "x"],
                      ["backup", home.path], ["backup", home.volume]):
        result = home.pim(*arguments)
        expect(result.returncode == 2 and result.stderr and not result.stdout, f"{arguments}: {result}")
    expect(not os.path.exists(os.path.join(home.path, "none.vol")), "reading makes no volume")
    text = os.path.join(home.path, "text")
    with open(text, "w") as out:
        out.write("no volume " * 200)
    expect(home.pim("--volume", text, "agenda", "2026-03-10", "2026-03-11").returncode == 2, "a text is no volume")


def copies_and_faults(home):
    copy = os.path.join(home.path, "copy.vol")
    expect(home.pim("backup", copy).returncode == 0, "backup")
    same = home.pim("--volume", copy, "agenda", "2026-03-01", "2026-03-31", "--json").stdout
    expect(same == home.pim("agenda", "2026-03-01", "2026-03-31", "--json").stdout != "", "the copy shows the same")
    expect(home.pim("--volume", copy, "check").returncode == 0, "the copy is sound")
    with sqlite3.connect(copy) as volume:
        table, = volume.execute("SELECT 'records_' || id FROM databases WHERE name = 'Appointments Database'").fetchone()
        oid, = volume.execute(f"SELECT min(oid) FROM {table}").fetchone()
        volume.execute(f"UPDATE {table} SET p{0x10420040:08x} = NULL WHERE oid = ?", (oid,))
    volume.close()
    cut_off = os.path.join(home.path, "cut-off.vol")
    open(cut_off, "w").close()
    check = home.pim("--volume", cut_off, "check")
    expect(check.returncode == 0, f"a volume cut off while it was made is an empty one: {check}")
    check = home.pim("--volume", copy, "check")
    expect(check.returncode == 1 and f"record {oid}" in check.stdout, f"a half-written item: {check}")


def main():
    home = Home()
    path = os.path.join(home.path, "input.ics")
    with open(path, "w", newline="") as out:
        out.write(calendar(*EVENTS))
    expect(home.pim("import", path).returncode == 0, "import")
    rows_are_exact(home)
    tasks_stand_behind(home)
    zones_and_settings_count(home)
    long_ranges_lose_nothing(home)
    text_is_readable(home)
    search_finds_by_subject(home)
    wrong_calls_end_with_two(home)
    copies_and_faults(home)
    finish()


main()
