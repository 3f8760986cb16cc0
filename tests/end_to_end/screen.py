"""A screen of its own with a keyboard and a mouse, on which a test sees and uses the program as a person does."""

import os
import shutil
import subprocess

import programs

TOOLS = ("Xvfb", "xdotool")


def missing():
    """The tools that are not installed; without them there is no screen to look at."""
    return [tool for tool in TOOLS if shutil.which(tool) is None]


class Screen:
    def __init__(self, case):
        reader, writer = os.pipe()
        self.server = subprocess.Popen(["Xvfb", "-displayfd", str(writer), "-screen", "0", "1280x900x24", "-nolisten",
                                        "tcp", "-noreset"], pass_fds=[writer], stdout=subprocess.DEVNULL,
                                       stderr=subprocess.DEVNULL)
        case.addCleanup(self.end)
        os.close(writer)
        with os.fdopen(reader) as numbers:
            self.display = ":" + numbers.readline().strip()
        self.variables = {"DISPLAY": self.display, "QT_QPA_PLATFORM": "xcb"}

    def end(self):
        self.server.terminate()
        self.server.wait(15)

    def tool(self, *words):
        environment = {**os.environ, "DISPLAY": self.display}
        return subprocess.run(["xdotool", *map(str, words)], env=environment, text=True, capture_output=True,
                              timeout=15).stdout.split()

    def windows(self, title):
        return self.tool("search", "--onlyvisible", "--name", title)

    def wait_for(self, title):
        """Waits for a window and clicks into its lower left corner, where nothing reacts, so that keys go to it; a
        program that is busy takes notice of the click later, and would not know whose keys come before."""
        try:
            window = programs.wait_for("the window " + title, lambda: self.windows(title), 40)[-1]
            size = dict(line.split("=") for line in self.tool("getwindowgeometry", "--shell", window))
            self.tool("mousemove", "--window", window, 3, int(size["HEIGHT"]) - 3, "click", 1)
            programs.wait_for("the focus on " + title, lambda: self.tool("getwindowfocus") == [window])
        except AssertionError as error:
            raise AssertionError(f"{error}; there are the windows {self.titles()}") from None
        return window

    def titles(self):
        return [" ".join(self.tool("getwindowname", window)) for window in self.windows("")]

    def wait_until_gone(self, title, seconds=20.0):
        programs.wait_for("the end of the window " + title, lambda: not self.windows(title), seconds)

    def press(self, *keys):
        self.tool("key", "--delay", 20, *keys)

    def type(self, text):
        self.tool("type", "--delay", 20, text)
