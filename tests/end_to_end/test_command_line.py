"""What the program answers on its command line."""

import programs


class CommandLine(programs.Case):
    def test_help(self):
        status, out, err = self.run_to_end("--help")
        self.assertEqual((status, err), (0, ""))
        self.assertTrue(out.startswith("Usage: marisonde [options]\n"))
        for word in ["--port", "--baud", "--model", "--cal", "--demo", "MARISONDE_PORTS", *programs.MODELS]:
            self.assertIn(word, out)

    def test_version(self):
        self.assertEqual(self.run_to_end("--version"), (0, "marisonde 2.85\n", ""))

    def test_mistakes_are_told_and_end_with_status_2(self):
        for arguments, complaint in [
                (["--frob"], "Unknown option '--frob'."),
                (["--port"], "--port needs a value: N."),
                (["--port", "32", "--model", "delph-2"], "The port must be a number from 1 to 31."),
                (["--port", "0", "--model", "delph-2"], "The port must be a number from 1 to 31."),
                (["--port", "1", "--baud", "1200"], "The rate must be 4800, 9600, 19200, 38400, 57600 or 115200."),
                (["--model", "delph-2"], "--model goes with --port."),
                (["--cal", "a.cal", "cast.raw"], "--cal does not go with 'cast.raw'; write"),
                (["--demo", "corvane-7"], "'corvane-7' is not a model. Models are: Corvane-6,"),
                (["--demo", ",".join(["delph-2"] * 7)], "Cannot open more than 6 windows."),
                (["--demo", "delph-2", "--seconds", "0"], "The time must be at least one second.")]:
            with self.subTest(arguments=arguments):
                status, out, err = self.run_to_end(*arguments)
                self.assertEqual((status, out), (2, ""))
                self.assertTrue(err.startswith("marisonde: " + complaint), err)
                self.assertTrue(err.endswith("\nTry 'marisonde --help'.\n"), err)

    def test_a_window_without_a_screen_is_told_of(self):
        for arguments in [[], ["--open", "cast.raw"], ["--demo", "delph-2"]]:
            with self.subTest(arguments=arguments):
                status, out, err = self.run_to_end(*arguments, QT_QPA_PLATFORM="xcb", DISPLAY="", WAYLAND_DISPLAY="")
                self.assertEqual((status, out), (1, ""))
                self.assertTrue(err.endswith("marisonde: There is no screen to show a window on. "
                                             "'marisonde convert' needs none.\n"), err)

    def test_files_that_are_missing_end_the_program_without_a_window(self):
        status, out, _ = self.run_to_end("/nowhere/cast.raw;/nowhere/instrument.cal")
        self.assertNotEqual(status, 0)
        self.assertEqual(out, "")


if __name__ == "__main__":
    programs.main()
