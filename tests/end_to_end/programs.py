"""The programs under test, each in a folder of its own, off screen. Their paths are in the environment
(MARISONDE, MARISONDE_SIMULATOR) or are the first two arguments of the test."""

import contextlib
import os
import select
import shutil
import signal
import subprocess
import sys
import tempfile
import termios
import threading
import time
import tty
import unittest
from pathlib import Path

MODELS = ["Corvane-6", "Corvane-4", "Corvane-2", "l-Tidal", "n-Tidal", "x-Tidal", "Fathom-2", "Delph-2", "Delph-4",
          "Delph-6"]


def program(number, variable):
    paths = [argument for argument in sys.argv[1:] if os.path.isabs(argument)]
    return paths[number] if len(paths) > number else os.environ[variable]


def wait_for(what, condition, seconds=15.0):
    """The first true value of the condition; fails when there is none in time."""
    end = time.monotonic() + seconds
    while True:
        value = condition()
        if value:
            return value
        if time.monotonic() > end:
            raise AssertionError("waited in vain for " + what)
        time.sleep(0.02)


class Case(unittest.TestCase):
    """A test with a home, settings and temporary folder of its own. Programs that it started end with it."""

    def setUp(self):
        self.home = Path(tempfile.mkdtemp(prefix="marisonde-end-to-end-"))
        self.addCleanup(shutil.rmtree, self.home, ignore_errors=True)
        for folder in ("tmp", "data", "config"):
            (self.home / folder).mkdir(mode=0o700)
        self.settings = self.home / "settings.ini"
        self.environment = {
            **{key: value for key, value in os.environ.items() if not key.startswith(("MARISONDE", "QT_", "TEMP"))},
            "QT_QPA_PLATFORM": "offscreen", "HOME": str(self.home), "TMPDIR": str(self.home / "tmp"),
            "TMP": str(self.home / "tmp"), "XDG_DATA_HOME": str(self.home / "data"),
            "XDG_CONFIG_HOME": str(self.home / "config"), "XDG_RUNTIME_DIR": str(self.home / "tmp"),
            "MARISONDE_SETTINGS": str(self.settings),
        }

    def start(self, *arguments, which=0, **variables):
        names = ["MARISONDE", "MARISONDE_SIMULATOR"]
        process = subprocess.Popen([program(which, names[which]), *map(str, arguments)], text=True,
                                   env={**self.environment, **variables}, stdin=subprocess.DEVNULL,
                                   stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        self.addCleanup(self.end, process)
        return process

    def end(self, process, with_signal=signal.SIGKILL):
        if process.poll() is None:
            process.send_signal(with_signal)
        out, err = process.communicate(timeout=15)
        return process.returncode, out, err

    def run_to_end(self, *arguments, seconds=30, which=0, **variables):
        """Exit status, output and error output of a program that ends by itself."""
        process = self.start(*arguments, which=which, **variables)
        try:
            out, err = process.communicate(timeout=seconds)
        except subprocess.TimeoutExpired:
            raise AssertionError("did not end: " + " ".join(map(str, arguments))) from None
        return process.returncode, out, err

    def simulator(self, *arguments):
        """A simulated instrument: the paths of its device and of its calibration."""
        number = len(list(self.home.glob("*.cal")))
        cal = self.home / f"instrument{number}.cal"
        process = self.start(*arguments, "--cal", cal, which=1)
        return process.stdout.readline().split()[1], cal

    def temporary(self, name):
        """Files of that name below the temporary folder, by running copy."""
        return sorted((self.home / "tmp").glob("Marisonde*/*/" + name))

    def recovered(self, ending):
        return sorted((self.home / "data" / "Marisonde" / "recovered").glob("*" + ending))


def behind_header(path):
    """The bytes of a data file behind its header."""
    text = Path(path).read_bytes()
    for last in (b"[EndHeader]\r\n", b"[Data]\r\n"):
        place = text.rfind(last)
        if place >= 0:
            return text[place + len(last):]
    return b""


class Cable:
    """Carries what an instrument sends to a device of its own, and remembers when it did."""

    def __init__(self, device):
        self.far = os.open(device, os.O_RDWR | os.O_NOCTTY)
        tty.setraw(self.far)
        settings = termios.tcgetattr(self.far)
        settings[4] = settings[5] = termios.B19200
        termios.tcsetattr(self.far, termios.TCSANOW, settings)
        self.near, self.slave = os.openpty()
        tty.setraw(self.slave)
        self.device = os.ttyname(self.slave)
        self.sent = []  # (time, bytes)
        self.carrying = True
        self.thread = threading.Thread(target=self._carry, daemon=True)
        self.thread.start()

    def _carry(self):
        while self.carrying:
            ready, _, _ = select.select([self.far], [], [], 0.05)
            if ready:
                chunk = os.read(self.far, 4096)
                os.write(self.near, chunk)
                self.sent.append((time.monotonic(), chunk))

    def until(self, when):
        """Everything carried before that time."""
        return b"".join(chunk for at, chunk in self.sent if at <= when)

    def cut(self):
        self.carrying = False
        self.thread.join()
        for handle in (self.far, self.near, self.slave):
            with contextlib.suppress(OSError):
                os.close(handle)


def main():
    unittest.main(argv=[argument for argument in sys.argv if argument == sys.argv[0] or not os.path.isabs(argument)])
