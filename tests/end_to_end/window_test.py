#!/usr/bin/env python3
"""Two processes and a real window: new items appear by themselves, requests are handed over,
a long import never freezes the window. Needs Xvfb, xdotool and ImageMagick."""
import hashlib
import os
import shutil
import signal
import subprocess
import sys
import time

from support import PIM, WINDOW, Home, calendar, event, expect, finish

MINUTES_2026_03_10 = 66371040  # 10 March 2026 as a request carries it


class Display:
    def __init__(self):
        read, write = os.pipe()
        self.server = subprocess.Popen(["Xvfb", "-displayfd", str(write), "-screen", "0", "800x700x24", "-nolisten",
                                        "tcp", "-noreset"], pass_fds=[write], stderr=subprocess.DEVNULL)
        os.close(write)
        self.answer = read  # stays open: a server whose answer nobody reads gives up
        self.name = ":" + os.read(read, 16).decode().strip()

    def close(self):
        self.server.terminate()
        self.server.wait()
        os.close(self.answer)


def picture(home):
    out = subprocess.run(["import", "-window", "root", "-silent", "rgb:-"], env=home.env, capture_output=True)
    return hashlib.sha256(out.stdout).hexdigest() if out.stdout else ""


def settled(home, seconds=5):
    """The picture once it has stopped changing."""
    last, until = picture(home), time.monotonic() + seconds
    while time.monotonic() < until:
        time.sleep(0.15)
        now = picture(home)
        if now == last:
            return now
        last = now
    return last


def changes(home, before, seconds=4):
    until = time.monotonic() + seconds
    while time.monotonic() < until:
        if picture(home) != before:
            return True
        time.sleep(0.05)
    return False


def write(home, name, *events):
    path = os.path.join(home.path, name)
    with open(path, "w", newline="") as out:
        out.write(calendar(*events))
    return path


def request(home, text):
    return subprocess.run([WINDOW, text], env=home.env, capture_output=True, text=True, timeout=20)


def main():
    for tool in ("Xvfb", "xdotool", "import"):
        if not shutil.which(tool):
            print(f"{tool} is not installed")
            sys.exit(77)
    home, display = Home(), Display()
    home.env.update(DISPLAY=display.name, QT_QPA_PLATFORM="xcb")
    home.env.pop("WAYLAND_DISPLAY", None)
    window = None
    try:
        home.pim("import", write(home, "first.ics", event("a", "20260310T090000", ["SUMMARY:first"])))
        window = subprocess.Popen([WINDOW, f"OPEN|DAILY|{MINUTES_2026_03_10}"], env=home.env)
        found = subprocess.run(["xdotool", "search", "--sync", "--onlyvisible", "--class", "tessera"], env=home.env,
                               capture_output=True, text=True, timeout=20)
        expect(found.stdout.strip(), "the window does not come up")
        before = settled(home)

        home.pim("import", write(home, "second.ics", event("b", "20260310T110000", ["SUMMARY:second"])))
        expect(changes(home, before), "an item imported by another process does not appear")

        before = settled(home)
        handed = request(home, f"OPEN|DAILY|{MINUTES_2026_03_10 + 1440}")
        expect(handed.returncode == 255, f"a handed-over request ends with {handed.returncode}")
        expect(changes(home, before), "a handed-over request does not change the day")
        density = request(home, "REPORTLOGPIXELS")
        expect(density.returncode in (96, 192) and density.stdout.strip() == str(density.returncode),
               f"REPORTLOGPIXELS ends with {density.returncode} and prints {density.stdout!r}")

        many = [event(f"m{n}", f"202603{n % 28 + 1:02d}T{n % 10 + 8:02d}0000", [f"SUMMARY:item {n}"]) for n in range(3000)]
        before = settled(home)
        importer = subprocess.Popen([PIM, "import", write(home, "many.ics", *many)], env=home.env, stdout=subprocess.DEVNULL)
        worst = 0.0
        while importer.poll() is None:
            started = time.monotonic()
            request(home, f"OPEN|DAILY|{MINUTES_2026_03_10}")
            worst = max(worst, time.monotonic() - started)
        expect(importer.returncode == 0, f"the importer beside a window ends with {importer.returncode}")
        expect(changes(home, before), "the imported items do not appear")
        expect(window.poll() is None, "the window has gone")
        print(f"slowest answer beside an import: {worst * 1000:.0f} ms")

        window.terminate()
        try:
            code = window.wait(timeout=10)
            expect(code == 0, f"the window ends with {code}")
        except subprocess.TimeoutExpired:
            expect(False, "the window does not close")
        expect(os.path.exists(os.path.join(home.env["XDG_DATA_HOME"], "tessera", "ZELVCalendar.ini")), "no settings were saved")
    finally:
        if window and window.poll() is None:
            window.send_signal(signal.SIGKILL)
        display.close()
    finish()


if __name__ == "__main__":
    main()
