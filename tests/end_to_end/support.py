"""Shared by the end-to-end tests: the programs, a private home, and measuring of one command."""
import json
import os
import resource
import subprocess
import sys
import tempfile
import threading
import time

BIN = os.environ.get("TESSERA_BIN", "build/debug/bin")
PIM = os.path.join(BIN, "tessera-pim")
WINDOW = os.path.join(BIN, "tessera")
DATA = os.environ.get("TESSERA_DATA", os.path.join(os.getcwd(), "..", "shared", "data"))

faults = []


def expect(condition, text):
    """Notes a fault and goes on, so that one run tells them all."""
    if not condition:
        faults.append(text)
        print("FAULT:", text, flush=True)
    return condition


def finish():
    print(f"{len(faults)} faults")
    sys.exit(1 if faults else 0)


class Home:
    """An empty home folder and the environment that keeps a program inside it."""

    def __init__(self, zone="Europe/Berlin", language="C.UTF-8"):
        self.folder = tempfile.TemporaryDirectory(prefix="tessera-test-")
        self.path = self.folder.name
        run = os.path.join(self.path, "run")
        os.makedirs(run, mode=0o700)
        self.volume = os.path.join(self.path, "pim.vol")
        self.env = dict(os.environ, HOME=self.path, XDG_DATA_HOME=os.path.join(self.path, "data"),
                        XDG_CONFIG_HOME=os.path.join(self.path, "config"), XDG_RUNTIME_DIR=run,
                        TESSERA_VOLUME=self.volume, TZ=zone, LC_ALL=language, LANG=language)
        self.env.pop("LANGUAGE", None)
        self.env.setdefault("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent")

    def pim(self, *arguments, **options):
        return subprocess.run([PIM, *arguments], env=self.env, capture_output=True, text=True,
                              errors="replace", timeout=options.pop("timeout", 120), **options)

    def agenda(self, first, last):
        result = self.pim("agenda", first, last, "--json")
        expect(result.returncode == 0, f"agenda ends with {result.returncode}: {result.stderr}")
        return [json.loads(line) for line in result.stdout.splitlines()]


class Measured:
    """One finished command: exit code, seconds, peak memory of that process alone in MB."""

    def __init__(self, arguments, env, stdin=None, timeout=60):
        started = time.monotonic()
        with tempfile.TemporaryFile() as out:
            process = subprocess.Popen(arguments, env=env, stdin=stdin, stdout=out, stderr=subprocess.STDOUT)
            timer = threading.Timer(timeout, process.kill)
            timer.start()
            _, status, usage = os.wait4(process.pid, 0)
            timer.cancel()
            process.returncode = os.waitstatus_to_exitcode(status)
            self.seconds = time.monotonic() - started
            out.seek(0)
            self.output = out.read().decode("utf-8", "replace")
        self.code = process.returncode
        self.megabytes = usage.ru_maxrss / 1024


def event(uid, start, lines=(), end=None):
    text = ["BEGIN:VEVENT", f"UID:{uid}", f"DTSTART:{start}"]
    if end:
        text.append(f"DTEND:{end}")
    return "\r\n".join([*text, *lines, "END:VEVENT"])


def todo(uid, lines=()):
    return "\r\n".join(["BEGIN:VTODO", f"UID:{uid}", *lines, "END:VTODO"])


def calendar(*components):
    return "\r\n".join(["BEGIN:VCALENDAR", "VERSION:2.0", "PRODID:-//test//EN", *components, "END:VCALENDAR", ""])
