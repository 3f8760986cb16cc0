"""The demonstration on simulated instruments: raw file, calibrated file and picture of each window."""

import struct
from pathlib import Path

import programs


def size_of_png(path):
    text = Path(path).read_bytes()
    assert text[:8] == b"\x89PNG\r\n\x1a\n", path
    return struct.unpack(">II", text[16:24])


class Demonstration(programs.Case):
    def windows(self, out):
        """What was told of each window, by line."""
        windows = []
        for line in out.splitlines():
            if line.startswith("  "):
                what, path = line.strip().split("  ", 1)
                windows[-1][what] = path.strip()
            else:
                model, samples = line.rsplit(", ", 1)
                windows.append({"model": model, "samples": int(samples.split()[0])})
        return windows

    def check(self, window):
        self.assertGreaterEqual(window["samples"], 2)
        raw = programs.behind_header(window["raw file"])
        dat = programs.behind_header(window["calibrated file"])
        self.assertGreaterEqual(raw.count(b"\r\n"), window["samples"])
        lines = [line for line in dat.split(b"\r\n") if line[:1].isdigit()]
        self.assertEqual(len(lines), window["samples"], dat[:300])
        width, height = size_of_png(window["picture"])
        self.assertGreaterEqual(width, 640)
        self.assertGreaterEqual(height, 420)
        self.assertGreater(Path(window["picture"]).stat().st_size, 5000)

    def demonstrate(self, models, seconds):
        status, out, err = self.run_to_end("--demo", ",".join(models), "--seconds", seconds)
        self.assertEqual((status, err), (0, ""))
        windows = self.windows(out)
        self.assertEqual([window["model"].lower() for window in windows], [model.lower() for model in models])
        for window in windows:
            with self.subTest(model=window["model"]):
                self.check(window)
        for kind in ("raw file", "calibrated file", "picture"):
            paths = [window[kind] for window in windows]
            self.assertEqual(len(set(paths)), len(paths), "windows share a " + kind)
        self.assertEqual(self.temporary("*.raw") + self.temporary("*.dat"), [])

    def test_six_models_at_once(self):
        self.demonstrate(programs.MODELS[:6], 6)

    def test_the_other_models_in_any_case(self):
        self.demonstrate([model.upper() for model in programs.MODELS[6:]], 6)

    def test_one_model_in_several_windows(self):
        self.demonstrate(["delph-2", "delph-2", "delph-2"], 5)


if __name__ == "__main__":
    programs.main()
