#!/usr/bin/env python3
"""Whole-program figures: agenda, import, and the start of the window under Xvfb.

usage: whole_programs.py BIN FOLDER   FOLDER holds W10.ics and W100.ics; volumes are made beside them
"""
import json
import os
import re
import statistics
import subprocess
import sys
import tempfile
import time

BIN, FOLDER = os.path.abspath(sys.argv[1]), os.path.abspath(sys.argv[2])
PIM, WINDOW = os.path.join(BIN, "tessera-pim"), os.path.join(BIN, "tessera")


def environment(volume, home):
    env = dict(os.environ, TZ="America/New_York", LC_ALL="C.UTF-8", TESSERA_VOLUME=volume, HOME=home,
               XDG_DATA_HOME=home + "/data", XDG_CONFIG_HOME=home + "/config", XDG_RUNTIME_DIR=home)
    return env


def once(arguments, env, output=subprocess.DEVNULL):
    started = time.perf_counter()
    process = subprocess.Popen(arguments, env=env, stdout=output, stderr=subprocess.DEVNULL)
    _, status, usage = os.wait4(process.pid, 0)
    process.returncode = os.waitstatus_to_exitcode(status)
    return time.perf_counter() - started, usage.ru_maxrss / 1024, process.returncode


def figure(name, runs):
    times = sorted(run[0] * 1000 for run in runs)
    print(f"{name:34} {statistics.median(times):8.1f} ms  ({times[0]:.1f} to {times[-1]:.1f}), peak {max(r[1] for r in runs):.0f} MB")


def first_paint(env, home):
    """Milliseconds from exec to the first painted day, and resident memory then."""
    process = subprocess.Popen([WINDOW, "OPEN|DAILY|66371040"], env=dict(env, TESSERA_TRACE_START="1"),
                               stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True)
    line = ""
    for line in process.stderr:
        if re.search(r"[0-9.]+ ms", line):
            break
    time.sleep(0.5)
    with open(f"/proc/{process.pid}/status") as status:
        resident = int(re.search(r"VmRSS:\s+(\d+)", status.read()).group(1)) / 1024
    process.terminate()
    process.wait()
    return float(re.search(r"([0-9.]+) ms", line).group(1)) / 1000, resident, 0


def main():
    for name in ("W10", "W100"):
        calendar, volume = os.path.join(FOLDER, name + ".ics"), os.path.join(FOLDER, name + ".vol")
        with tempfile.TemporaryDirectory() as home:
            imports = []
            for run in range(3):
                for file in (volume, volume + "-wal", volume + "-shm"):
                    if os.path.exists(file):
                        os.remove(file)
                imports.append(once([PIM, "import", calendar], environment(volume, home)))
            figure(f"{name} import", imports)
            env = environment(volume, home)
            agenda = [PIM, "agenda", "2026-03-01", "2026-03-31", "--json"]
            once(agenda, env)
            figure(f"{name} agenda of March 2026", [once(agenda, env) for _ in range(11)])
            rows = subprocess.run(agenda, env=env, capture_output=True, text=True).stdout.splitlines()
            distinct = {(row["uid"], row["start"]) for row in map(json.loads, rows) if row["kind"] == "appointment"}
            print(f"{name} distinct occurrences of appointments {len(distinct)}")
            if os.environ.get("DISPLAY"):
                first_paint(env, home)
                figure(f"{name} exec to first painted day", [first_paint(env, home) for _ in range(9)])


main()
