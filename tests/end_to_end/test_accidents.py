"""What is left when a program is killed, and what the next start makes of it."""

import os
import time

import programs


class Accidents(programs.Case):
    def sampling(self, model="corvane-6"):
        """A program that records, and the cable to its instrument."""
        device, cal = self.simulator(model, "--rate", 8, "--extra-every", 0)
        cable = programs.Cable(device)
        self.addCleanup(cable.cut)
        program = self.start("--port", 1, "--model", model, "--cal", cal, MARISONDE_PORTS="1=" + cable.device)
        return program, cable

    def recorded(self, running=1):
        """The raw file of the last of so many running copies, once it holds some data."""
        def enough():
            files = self.temporary("0.raw")
            texts = [programs.behind_header(file) for file in files]
            return files[-1] if len(files) == running and all(len(text) > 200 for text in texts) else None
        return programs.wait_for("recorded data", enough)

    def test_a_killed_program_loses_less_than_a_second(self):
        program, cable = self.sampling()
        # What waited in the device while the program started belongs to the stream as well.
        self.recorded()
        time.sleep(1.5)
        program.kill()
        died = time.monotonic()
        program.wait()
        safe = cable.until(died - 1)
        self.assertGreater(len(safe), 400)

        status, _, err = self.run_to_end("--demo", "delph-2", "--seconds", 1)
        self.assertEqual(status, 0)
        [raw] = self.recovered(".raw")
        [dat] = self.recovered(".dat")
        for path in (raw, dat):
            self.assertIn(str(path), err)
        self.assertIn("Marisonde did not end properly the last time.", err)
        self.assertRegex(raw.name, r"^\d{4}-\d\d-\d\d \d\d-\d\d-\d\d 0\.raw$")

        kept = programs.behind_header(raw)
        everything = cable.until(died + 1)
        place = everything.find(kept)
        self.assertGreaterEqual(place, 0, "the raw file is no part of what was sent")
        self.assertGreaterEqual(place + len(kept), len(safe))
        samples = [line for line in programs.behind_header(dat).split(b"\r\n") if line]
        whole = safe[place:].split(b"\r\n")[1:-1]
        self.assertGreaterEqual(len(samples), len(whole))

        status, _, err = self.run_to_end("--demo", "delph-2", "--seconds", 1)
        self.assertEqual((status, err), (0, ""), "recovered files are told of once")
        self.assertEqual(len(self.recovered(".raw")), 1)

    def test_a_running_copy_is_left_alone_when_another_died(self):
        first, cable = self.sampling("delph-2")
        alive = self.recorded()
        second, _ = self.sampling("corvane-4")
        dead = self.recorded(running=2)
        self.assertNotEqual(alive.parent, dead.parent)
        second.kill()
        second.wait()
        self.run_to_end("--demo", "delph-2", "--seconds", 1)
        self.assertIsNone(first.poll())
        self.assertTrue(alive.exists())
        self.assertFalse(dead.exists())
        self.assertEqual(len(self.recovered(".raw")), 1)
        before = alive.stat().st_size
        programs.wait_for("more data", lambda: alive.stat().st_size > before)

    def test_settings_that_cannot_be_written_are_told_and_hold_up_nothing(self):
        (self.home / "file").write_text("no folder")
        status, out, err = self.run_to_end("--demo", "delph-2", "--seconds", 1,
                                           MARISONDE_SETTINGS=str(self.home / "file" / "settings.ini"))
        self.assertEqual(status, 0)
        self.assertIn("raw file", out)
        self.assertIn("The settings cannot be kept: " + str(self.home / "file" / "settings.ini"), err)
        self.assertEqual(err.count("cannot be kept"), 1)

    def test_settings_are_kept_in_the_file_that_the_environment_names(self):
        self.run_to_end("--demo", "delph-2", "--seconds", 1)
        text = self.settings.read_text()
        for key in ("[App]", "Width=", "Height=", "MaxGraphPoints=50000", "[Sigma]", "[bbPrefs]"):
            self.assertIn(key, text)
        self.assertFalse(any(name.suffix == ".ini" for name in (self.home / "config").rglob("*")))

    def test_the_folder_for_temporary_files_may_be_missing(self):
        if os.geteuid() != 0:
            os.chmod(self.home / "tmp", 0o500)
            self.addCleanup(os.chmod, self.home / "tmp", 0o700)
        else:
            self.environment["TMP"] = self.environment["TMPDIR"] = str(self.settings / "below-a-file")
            self.settings.write_text("")
        program = self.start()
        error = program.stderr.readline()
        self.assertIn("marisonde: ", error)
        self.assertIn("Marisonde-", error)
        self.assertIsNone(program.poll())


if __name__ == "__main__":
    programs.main()
