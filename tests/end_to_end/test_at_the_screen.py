"""Every model connected by a person at the screen: the dialog opened, port and rate chosen or searched for, the
instrument started, its data recorded."""

import time
import unittest
from concurrent.futures import ThreadPoolExecutor

import programs
import screen

ABSENT = screen.missing()
SIDE_BY_SIDE = 5


@unittest.skipIf(ABSENT, "there is no screen to look at: " + " and ".join(ABSENT) + " is not installed")
class AtTheScreen(programs.Case):
    def sit_down(self, name, ports, cal_file=""):
        """A person's own screen with the program on it, and where it puts its data."""
        home = self.home / name
        (home / "tmp").mkdir(parents=True)
        settings = home / "settings.ini"
        settings.write_text(f"[App]\nPath=/\n2.85=TRUE\nRecallLastCal=1\nCalFile={cal_file}\n[Connection]\nLoadCal=1\n")
        place = screen.Screen(self)
        folders = {key: str(home / "tmp") for key in ("TMP", "TMPDIR", "XDG_RUNTIME_DIR")}
        self.start(MARISONDE_PORTS=ports, MARISONDE_SETTINGS=str(settings), **folders, **place.variables)
        return place, home

    def open_the_dialog(self, place):
        place.wait_for("Marisonde")
        place.press("F2")
        place.wait_for("Connect to Instrument")

    def start_and_record(self, place, home, first_bytes):
        """Starts the instrument; its lines arrive in the raw file."""
        place.wait_for("Marisonde")
        place.press("F5")
        def recorded():
            files = sorted(home.glob("tmp/Marisonde*/*/0.raw"))
            return files and any(line.startswith(first_bytes)
                                 for line in programs.behind_header(files[0]).split(b"\r\n"))
        programs.wait_for("recorded lines", recorded, 25)

    def fetched(self, home, serial):
        texts = [path.read_text("latin-1") for path in home.glob("tmp/Marisonde*/*/temp*.cal")]
        self.assertTrue(any("Serial=" + serial in text for text in texts), "no calibration of " + serial)

    def serial_of(self, cal):
        [line] = [line for line in cal.read_text("latin-1").splitlines() if line.startswith("Serial=")]
        return line.split("=")[1]

    def wait_until_kept(self, home, *lines):
        """Port and rate reach the settings soon after the dialog has closed."""
        programs.wait_for("the settings " + " ".join(lines), lambda: set(lines) <= set(
            (home / "settings.ini").read_text().splitlines()))

    def by_port(self, model, device, cal):
        place, home = self.sit_down("port " + model, "4=" + device)
        self.open_the_dialog(place)
        place.press("alt+b")
        place.type("19200")
        place.press("alt+c")
        place.wait_until_gone("Connect to Instrument")
        self.fetched(home, self.serial_of(cal))
        self.wait_until_kept(home, "Port=4", "Baud=19200")
        self.start_and_record(place, home, FIRST_BYTES[model])

    def by_search(self, model, device, cal):
        place, home = self.sit_down("search " + model, "2=/dev/does-not-exist,7=" + device)
        self.open_the_dialog(place)
        place.press("alt+s")
        place.wait_until_gone("Connect to Instrument")
        self.fetched(home, self.serial_of(cal))
        self.wait_until_kept(home, "Port=7", "Baud=9600")
        self.start_and_record(place, home, FIRST_BYTES[model])

    def each_model(self, try_one, *options):
        """All that name themselves, some at a time."""
        instruments = [(model, *self.simulator(model, "--start", "stopped", *options)) for model in IDENTIFIED]
        with ThreadPoolExecutor(SIDE_BY_SIDE) as people:
            tries = [(model, people.submit(try_one, model, device, cal)) for model, device, cal in instruments]
            for model, result in tries:
                with self.subTest(model=model):
                    result.result()

    def test_connects_at_a_port_and_rate(self):
        self.each_model(self.by_port)

    def test_connects_by_a_search(self):
        self.each_model(self.by_search, "--baud", 9600)

    def test_the_model_without_a_name_is_opened_without_identifying_it(self):
        # An x-Tidal has no name of its own in what it says of itself, so that its port and model are chosen.
        device, cal = self.simulator("x-Tidal", "--start", "stopped")
        place, home = self.sit_down("x-Tidal", "4=" + device, cal)
        self.open_the_dialog(place)
        place.press("alt+b")
        place.type("19200")
        place.press("alt+i")
        place.type("x-T")
        place.press("alt+o", "alt+c")
        time.sleep(1)
        place.press("Escape")
        place.wait_until_gone("Connect to Instrument")
        self.start_and_record(place, home, FIRST_BYTES["x-Tidal"])

    def test_a_search_does_not_take_it_for_another(self):
        device, _ = self.simulator("x-Tidal", "--start", "stopped")
        place, home = self.sit_down("x-Tidal", "4=" + device)
        self.open_the_dialog(place)
        place.press("alt+s")
        time.sleep(5)
        self.assertTrue(place.windows("Connect to Instrument"))
        place.press("Escape", "Escape")
        place.wait_until_gone("Connect to Instrument")
        self.assertEqual(list(home.glob("tmp/Marisonde*/*/temp*.cal")), [])


IDENTIFIED = [model for model in programs.MODELS if model != "x-Tidal"]
FIRST_BYTES = {model: b"*T" if model.startswith("Corvane") else b"*A" if model == "l-Tidal" else
               b"*C" if model == "n-Tidal" else b"1" for model in programs.MODELS}

if __name__ == "__main__":
    programs.main()
