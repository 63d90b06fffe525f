#!/usr/bin/env python3
"""Real and broken cards: the contacts agree with the answers beside them, a second import changes nothing,
and their birthdays stand in the agenda with the right age.
"""
import datetime as dt
import glob
import json
import os
import re
import sqlite3
import sys

from support import DATA, Home, expect, finish

SKIPPED = 77
PHONES = ["phone_mobile", "phone_work", "phone_work_2", "phone_home", "phone_home_2", "phone_work_fax",
          "phone_home_fax", "phone_car", "phone_pager"]
COUNTS = re.compile(r": (\d+) created, (\d+) updated, (\d+) unchanged, (\d+) left out")


def contacts(home):
    base = sqlite3.connect(f"file:{home.volume}?mode=ro", uri=True)
    base.row_factory = sqlite3.Row
    rows = [dict(row) for row in base.execute('SELECT * FROM "Contacts Database" ORDER BY record_number')]
    base.close()
    return rows


def kept(row, name):
    """Values of a property among the kept lines."""
    lines = (row["foreign_text"] or "").splitlines()
    return [line.split(":", 1)[1] for line in lines if re.match(rf"(?i)(\w+\.)?{name}[;:]", line)]


def day(text):
    return text[:10] if text else None


def counts(result, name):
    match = COUNTS.search(result.stdout)
    expect(match, f"{name}: no counts: {result.stdout} {result.stderr}")
    return tuple(map(int, match.groups())) if match else (0, 0, 0, 0)


def compare(name, row, card):
    def same(what, got, wanted):
        expect(got == wanted, f"{name}: {card['fn']}: {what} {got!r} instead of {wanted!r}")
    same("name", row["name"], card["fn"])
    parts = [row[key] or "" for key in ("last_name", "first_name", "middle_name", "title", "suffix")]
    same("parts", parts, card["n"])
    phones = {row[key] for key in PHONES if row[key]} | set(kept(row, "TEL"))
    same("phones", phones, set(card["phones"]))
    mails = {row[key] for key in ("detail", "mail_2", "mail_3") if row[key]} | set(kept(row, "EMAIL"))
    same("mails", mails, set(card["mails"]))
    same("birthday", day(row["birthday"]), card.get("birthday"))
    same("anniversary", day(row["anniversary"]), card.get("anniversary"))


def check_agenda(name, home, cards):
    wanted = []
    for card in cards:
        for key, text in (("birthday", "B.D."), ("anniversary", "Ann.")):
            if not card.get(key):
                continue
            date = dt.date.fromisoformat(card[key])
            for year in (2026, 2027):
                wanted.append((f"{year}-{date.month:02}-{date.day:02}", key,
                               f"{card['fn']} {text} ({year - date.year})"))
    got = [(row["day"], row["kind"], row["subject"]) for row in home.agenda("2026-01-01", "2027-12-31")]
    expect(sorted(got) == sorted(wanted), f"{name}: agenda {sorted(got)} instead of {sorted(wanted)}")


def check_real(path):
    name = os.path.basename(path)
    with open(path[:-4] + ".expected.json") as source:
        cards = json.load(source)["cards"]
    home = Home()
    first = home.pim("import", path)
    expect(first.returncode == 0, f"{name}: import ends with {first.returncode}: {first.stderr[-300:]}")
    expect(counts(first, name) == (len(cards), 0, 0, 0), f"{name}: {first.stdout}")
    rows = contacts(home)
    expect(len(rows) == len(cards), f"{name}: {len(rows)} contacts instead of {len(cards)}")
    for row, card in zip(rows, cards):
        compare(name, row, card)
    again = home.pim("import", path)
    expect(counts(again, name) == (0, 0, len(cards), 0), f"{name}: a second import: {again.stdout}")
    expect(contacts(home) == rows, f"{name}: the second import changed a contact")
    check_agenda(name, home, cards)
    expect(home.pim("check").returncode == 0, f"{name}: the volume is not sound")


def check_broken(folder, case):
    path, name = os.path.join(folder, case["file"]), case["file"]
    home = Home()
    result = home.pim("import", path, timeout=case["seconds"])
    expect(result.returncode in (0, 1, 2), f"{name}: ends with {result.returncode}")
    rows = contacts(home)
    expect(case["records_min"] <= len(rows) <= case["records_max"], f"{name}: {len(rows)} contacts")
    expect(bool(result.stderr) == case["message"], f"{name}: told: {result.stderr!r}")
    expect(home.pim("check").returncode == 0, f"{name}: the volume is not sound")


def main():
    files = sorted(glob.glob(os.path.join(DATA, "contacts", "*.vcf")))
    if not files:
        print("no shared data")
        sys.exit(SKIPPED)
    for path in files:
        check_real(path)
    folder = os.path.join(DATA, "malformed")
    with open(os.path.join(folder, "index.json")) as source:
        broken = [case for case in json.load(source)["files"] if case["file"].endswith(".vcf")]
    for case in broken:
        check_broken(folder, case)
    print(f"{len(files)} files of cards, {len(broken)} broken ones")
    finish()


if __name__ == "__main__":
    main()
