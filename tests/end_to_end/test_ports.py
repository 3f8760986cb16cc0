"""The program on the pseudo-terminals of simulated instruments."""

import re
import signal

import programs


class Ports(programs.Case):
    def direct(self, port, model, cal, ports, baud=19200):
        return self.start("--port", port, "--baud", baud, "--model", model, "--cal", cal, MARISONDE_PORTS=ports)

    def logged(self, minimum):
        """The raw and the calibrated file of the only window, once they hold so many lines."""
        def enough():
            raw, dat = self.temporary("0.raw"), self.temporary("0.dat")
            if not raw or not dat:
                return None
            texts = programs.behind_header(raw[0]), programs.behind_header(dat[0])
            return texts if min(text.count(b"\r\n") for text in texts) >= minimum else None
        return programs.wait_for("data in both files", enough)

    def test_records_raw_and_calibrated_data_of_an_instrument(self):
        for model, baud in [("corvane-6", 115200), ("l-tidal", 9600), ("delph-4", 19200)]:
            with self.subTest(model=model):
                device, cal = self.simulator(model, "--rate", 10, "--extra-every", 0, "--baud", baud)
                program = self.direct(7, model, cal, "7=" + device, baud)
                raw, dat = self.logged(8)
                # All but the first and last line are whole: recording began and was read in the midst of them.
                for line in raw.split(b"\r\n")[1:-1]:
                    self.assertRegex(line, rb"^(\*[A-Z][0-9A-F]+|[-0-9.,: /]+)$")
                for line in dat.split(b"\r\n")[:-1]:
                    self.assertRegex(line, rb"^[-0-9.,:E+ /]+$")
                self.end(program)
                for file in self.temporary("0.*"):
                    file.unlink()

    def test_several_programs_each_on_a_port_of_their_own(self):
        first, first_cal = self.simulator("corvane-4", "--rate", 10)
        second, second_cal = self.simulator("delph-2", "--rate", 10)
        ports = f"1={first},31={second}"
        self.direct(1, "Corvane-4", first_cal, ports)
        programs.wait_for("the first program's file", lambda: self.temporary("0.raw"))
        self.direct(31, "Delph-2", second_cal, ports)

        def both():
            files = self.temporary("0.raw")
            texts = [programs.behind_header(file) for file in files]
            return texts if len(texts) == 2 and all(text.count(b"\r\n") > 3 for text in texts) else None

        corvane, delph = programs.wait_for("two files", both)
        self.assertIn(b"*T", corvane)
        self.assertNotIn(b"*T", delph)
        self.assertIn("2", re.findall(r"^Instance=(\d+)", self.settings.read_text(), re.MULTILINE))

    def test_a_port_that_is_not_there_leaves_the_program_running(self):
        program = self.direct(3, "delph-2", self.home / "none.cal", "3=/nowhere/at/all")
        programs.wait_for("the settings", self.settings.exists)
        self.assertIsNone(program.poll())
        status, _, _ = self.end(program, signal.SIGTERM)
        self.assertEqual(status, -signal.SIGTERM)


if __name__ == "__main__":
    programs.main()
