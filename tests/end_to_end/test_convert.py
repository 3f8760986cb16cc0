"""Conversion of stored files from a script, on a computer without a display."""

import os
import pty
import signal
import subprocess

import programs


def line(seconds, damaged=False):
    """One sample of a Corvane-6 with its checksum."""
    body = f"*D{seconds:08X}" + "03E807D00BB80FA013881770FFFF0400" + "12345123" + "1F403C02"
    total = sum(body[1:].encode()) + damaged
    return f"{body}{total % 256:02X}\r\n"


class Convert(programs.Case):
    def setUp(self):
        super().setUp()
        # A window would need this display.
        self.environment.update(QT_QPA_PLATFORM="xcb", DISPLAY=":97")
        _, self.cal = self.simulator("corvane-6")
        self.raw = self.home / "my cast.raw"
        self.text = "".join(line(1231070712 + i) for i in range(1000))
        self.raw.write_bytes(self.text.encode())

    def samples(self, path):
        return programs.behind_header(path).decode().splitlines()

    def test_a_pair_of_files(self):
        self.assertEqual(self.run_to_end(f'"{self.raw}";"{self.cal}"'), (0, "", ""))
        samples = self.samples(self.home / "my cast.dat")
        self.assertEqual(len(samples), 1000)
        # 1231070712 s after the start of 1970 are 14248.503611 days; the day count begins in 1899.
        self.assertTrue(samples[0].startswith("39817.50361111111,"), samples[0])
        self.assertEqual(samples[0].count(","), 18)
        self.assertEqual(self.raw.read_bytes(), self.text.encode())

    def test_missing_files_end_it_silently(self):
        for pair in [f"{self.home}/none.raw;{self.cal}", f"{self.raw};{self.home}/none.cal", f"{self.raw}"]:
            with self.subTest(pair=pair):
                status, out, err = self.run_to_end(pair)
                self.assertEqual((out, err), ("", ""))
                self.assertNotEqual(status, 0)
        self.assertEqual(list(self.home.glob("*.dat")), [])

    def test_a_calibrated_file_is_refused(self):
        dat = self.home / "cast.dat"
        dat.write_text("precious")
        status, _, err = self.run_to_end(f"{dat};{self.cal}")
        self.assertNotEqual(status, 0)
        self.assertIn("it is a calibrated file", err)
        self.assertEqual(dat.read_text(), "precious")

    def test_many_files_with_a_summary_of_each(self):
        second = self.home / "second.raw"
        second.write_text(line(1) + line(2, damaged=True) + "hello\r\n", newline="")
        out_folder = self.home / "out"
        out_folder.mkdir()
        status, out, err = self.run_to_end("convert", "--cal", self.cal, "--out", out_folder, self.raw, second,
                                           self.home / "none.raw")
        self.assertEqual(status, 1)
        self.assertEqual(out, f"{self.raw}: 1000 lines, 1000 samples -> {out_folder}/my cast.dat\n"
                              f"{second}: 3 lines, 1 sample, 2 lines passed over: 1 bad checksum, 1 text -> "
                              f"{out_folder}/second.dat\n")
        self.assertEqual(err, f"marisonde: Error opening {self.home}/none.raw: No such file or directory\n")
        status, out, err = self.run_to_end("convert", "--cal", self.cal, "--out", out_folder, second)
        self.assertEqual((status, out), (1, ""))
        self.assertIn("exists already", err)
        again = self.run_to_end("convert", "--overwrite", "--cal", self.cal, "--out", out_folder, second)
        self.assertEqual(again[0], 0)

    def test_raw_numbers(self):
        self.assertEqual(self.run_to_end("convert", "--to", "dec", self.raw)[0], 0)
        table = (self.home / "my cast.dec").read_text().splitlines()
        self.assertEqual(len(table), 1001)
        self.assertEqual(table[0][:28], "Time,Pressure,Snorm1,Snorm2,")
        self.assertEqual(table[1].split(",")[1:4], ["8000", "1000", "2000"])

    def test_an_interrupted_run_leaves_nothing_behind(self):
        with self.raw.open("ab") as file:
            for _ in range(1500):
                file.write(self.text.encode())
        for stop in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
            process = self.start("convert", "--cal", self.cal, self.raw)
            programs.wait_for("the file to be written", lambda: list(self.home.glob("*.converting")))
            process.send_signal(stop)
            _, err = process.communicate(timeout=15)
            self.assertEqual((process.returncode, err), (130, ""), stop)
            self.assertEqual(list(self.home.glob("my cast.dat*")), [], stop)

    def test_progress_on_a_terminal(self):
        with self.raw.open("ab") as file:
            for _ in range(300):
                file.write(self.text.encode())
        near, far = pty.openpty()
        status = subprocess.call([programs.program(0, "MARISONDE"), "convert", "--cal", self.cal, self.raw],
                                 env=self.environment, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=far)
        os.close(far)
        shown = os.read(near, 65536).decode()
        os.close(near)
        self.assertEqual(status, 0)
        self.assertIn(" %", shown)


if __name__ == "__main__":
    programs.main()
