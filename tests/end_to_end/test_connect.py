"""Connecting at the start of the program: all models on pseudo-terminals, at a port and rate that are known and by
search."""

import programs

IDENTIFIED = [model for model in programs.MODELS if model != "x-Tidal"]


class Connect(programs.Case):
    def begin(self, name, ports, choice, baud=19200):
        """A program that connects by itself."""
        settings = self.home / (name + ".ini")
        settings.write_text(f"[App]\nPath=/\n2.85=TRUE\nConnectOnStartup={choice}\n"
                            f"[Connection]\nPort=1\nBaud={baud}\nLoadCal=1\n")
        return self.start(MARISONDE_PORTS=ports, MARISONDE_SETTINGS=str(settings))

    def fetched(self, serial):
        """The calibration that a program fetched from the instrument of that serial."""
        def there():
            texts = [path.read_text("latin-1") for path in self.temporary("temp*.cal")]
            return [text for text in texts if "Serial=" + serial in text]
        return programs.wait_for("the calibration of " + serial, there, 25)[0]

    def values(self, text):
        """Keys with their numbers, by section; what does not change on the way through an instrument."""
        values, section = {}, ""
        for line in text.splitlines():
            line = line.split("//")[0].strip()
            if line.startswith("["):
                section = line.replace(" ", "").lower()
            elif "=" in line:
                key, value = line.split("=", 1)
                values[section, key.strip().lower()] = value.strip()
        return values

    def serial_of(self, cal):
        return self.values(cal.read_text("latin-1"))["[general]", "serial"]

    def test_all_models_at_a_known_port_and_rate(self):
        cals = []
        for model in IDENTIFIED:
            device, cal = self.simulator(model)
            self.begin(model, "1=" + device, 1)
            cals.append(cal)
        for model, cal in zip(IDENTIFIED, cals):
            with self.subTest(model=model):
                fetched = self.values(self.fetched(self.serial_of(cal)))
                self.assertEqual(fetched["[general]", "devicetype"], model)

    def test_a_search_finds_port_and_rate(self):
        device, cal = self.simulator("delph-4", "--baud", 38400)
        self.begin("search", "1=/dev/does-not-exist,2=" + device, 2)
        self.fetched(self.serial_of(cal))
        def kept():
            text = (self.home / "search.ini").read_text()
            return "Baud=38400" in text and "Port=2" in text
        programs.wait_for("port and rate in the settings", kept)


if __name__ == "__main__":
    programs.main()
