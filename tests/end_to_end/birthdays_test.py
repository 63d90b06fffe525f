#!/usr/bin/env python3
"""Birthdays of a card file stand in the agenda with the right age: across New Year, on 29 February of leap
years and others, in the year of birth, and for a year that nobody knows."""
import os

from support import Home, expect, finish

# Name, version of the card, birthday and anniversary as written there.
CARDS = [
    ("Leap Day", "3.0", "BDAY:2000-02-29", "X-ANNIVERSARY:20240229"),
    ("New Year", "4.0", "BDAY:19900101", "ANNIVERSARY:20151231"),
    ("Old Year", "2.1", "BDAY:19651231", ""),
    ("Fresh Child", "4.0", "BDAY:2026-01-02", ""),
    ("Ageless", "4.0", "BDAY:--0103", ""),
]

WANTED = {
    ("2025-12-28", "2026-01-05"): [
        ("2025-12-31", "New Year Ann. (10)"), ("2025-12-31", "Old Year B.D. (60)"),
        ("2026-01-01", "New Year B.D. (36)"), ("2026-01-02", "Fresh Child B.D. (0)"),
        ("2026-01-03", "Ageless B.D."),
    ],
    ("2027-12-30", "2028-01-04"): [
        ("2027-12-31", "New Year Ann. (12)"), ("2027-12-31", "Old Year B.D. (62)"),
        ("2028-01-01", "New Year B.D. (38)"), ("2028-01-02", "Fresh Child B.D. (2)"),
        ("2028-01-03", "Ageless B.D."),
    ],
    ("2026-02-20", "2026-03-05"): [("2026-02-28", "Leap Day Ann. (2)"), ("2026-02-28", "Leap Day B.D. (26)")],
    ("2028-02-28", "2028-02-28"): [("2028-02-28", "Leap Day Ann. (4)"), ("2028-02-28", "Leap Day B.D. (28)")],
    ("2028-02-29", "2028-03-01"): [],
    ("2000-02-20", "2000-03-05"): [("2000-02-28", "Leap Day B.D. (0)")],
    ("1999-02-20", "1999-03-05"): [],  # not born yet
}


def write_cards(path):
    with open(path, "w", encoding="utf-8", newline="") as out:
        for name, version, *dates in CARDS:
            last = name.split()[-1]
            lines = ["BEGIN:VCARD", f"VERSION:{version}", f"N:{last};{name.split()[0]};;;", f"FN:{name}"]
            out.write("\r\n".join([*lines, *filter(None, dates), "END:VCARD", ""]))


def main():
    for zone in ("Europe/Berlin", "America/Los_Angeles", "Pacific/Auckland"):
        home = Home(zone)
        path = os.path.join(home.path, "cards.vcf")
        write_cards(path)
        result = home.pim("import", path)
        expect(result.returncode == 0, f"{zone}: import ends with {result.returncode}: {result.stderr}")
        for (first, last), wanted in WANTED.items():
            got = sorted((row["day"], row["subject"]) for row in home.agenda(first, last))
            expect(got == sorted(wanted), f"{zone}: {first}: {got} instead of {sorted(wanted)}")
    finish()


if __name__ == "__main__":
    main()
