#!/usr/bin/env python3
"""Writes the seeds of recurrence_blob_fuzz beside this script: one small blob for each layout."""
import os
import struct

FOLDER = os.path.join(os.path.dirname(os.path.abspath(__file__)), "corpus", "recurrence_blob")
DAY0 = 109205  # days from 1601 to day number 0


def minutes(day, minute=0):
    return (day + DAY0) * 1440 + minute


def blob(version, kind, period, fields, end=0x2023, deleted=(), records=b"", changed=()):
    out = bytes([version]) + bytes(5) + struct.pack("<H", kind) + bytes(6) + struct.pack("<I", period) + bytes(4)
    for field in fields:
        out += struct.pack("<HH", field, 0)
    out += struct.pack("<HH", end, 0)
    out += bytes(8 if version >= 5 else 0) + struct.pack("<HHI", 10, 0, 0)
    out += struct.pack("<I", len(deleted)) + b"".join(struct.pack("<I", minutes(d)) for d in deleted)
    out += struct.pack("<I", len(changed)) + b"".join(struct.pack("<I", minutes(d)) for d in changed)
    out += struct.pack("<II", minutes(44990), minutes(46000)) + bytes(8) + struct.pack("<II", 600, 660)
    return out + struct.pack("<H", len(changed)) + records


def record(day, flags, rest=b""):
    return struct.pack("<IIIH", minutes(day + 1, 700), minutes(day + 1, 760), minutes(day, 600), flags) + rest


def text(value):
    return struct.pack("<HH", len(value) + 1, len(value)) + value.encode("utf-16-le")


ZONE = struct.pack("<iii", -60, 0, -60) + bytes(2) + struct.pack("<8H", 0, 10, 0, 5, 3, 0, 0, 0) + bytes(2)
ZONE += struct.pack("<8H", 0, 3, 0, 5, 2, 0, 0, 0)
EVERY_FLAG = text("ab") + bytes(12) + text("c") + struct.pack("<III", 2, 0, 1) + struct.pack("<I", 6) + b"TNo1a\0"
SEEDS = {
    "daily": blob(5, 0, 1440, []),
    "daily_old": blob(4, 0, 2880, [], 0x2021),
    "weekly": blob(5, 1, 2, [0x2A], 0x2022, deleted=[45003]),
    "monthly": blob(5, 2, 1, [31]),
    "ordinal": blob(5, 3, 1, [0x20, 5]),
    "yearly_old": blob(3, 5, 12, [29]),
    "changed": blob(5, 1, 1, [2], deleted=[45003], changed=[45004], records=record(45003, 0x1FF, EVERY_FLAG)),
    "foreign_note": blob(5, 1, 1, [2], deleted=[45003], changed=[45004],
                         records=record(45003, 0x100, struct.pack("<I", 3) + b"ink")) + b"tail",
}

os.makedirs(FOLDER, exist_ok=True)
for name, data in SEEDS.items():
    for suffix, zone in (("", b""), ("_zone", ZONE)):
        with open(os.path.join(FOLDER, name + suffix), "wb") as file:
            file.write(bytes([len(zone)]) + zone + data)
