"""The dialog of each system on a screen, with the ways in which a person reaches it."""

import contextlib
import math
import os
import tempfile

import pytest
from PIL import Image

from programs import BIN, GOLDEN, GOLDEN_CASES, LIMIT, Folder, Running, cli, until
from screen import Screen, differing

CLOSE, GAIN_CLAMP, INPUT_RATE = (482, 168), (359, 168), (421, 168)  # dialog units
PLOT = (4, 4, 500, 144)
LEGEND = 28  # pixels below the plot in a picture of tonvane-cli


class Desk(contextlib.ExitStack):
    """tonvane on Qt, in a folder. Places are dialog units from the window's upper left corner."""

    command, runner, title, unit = ("tonvane",), (), "Tonvane", (2, 2)
    fit = "iterated"

    def __init__(self, screen, folder):
        super().__init__()
        self.screen, self.folder = screen, folder
        self.environment = {
            "DISPLAY": screen.name, "HOME": str(folder), "XDG_STATE_HOME": f"{folder}/state",
            "XDG_RUNTIME_DIR": str(folder), "JACK_DEFAULT_SERVER": "nobody's",
            "QT_QPA_PLATFORM": "xcb", "QT_STYLE_OVERRIDE": "Fusion"}

    def start(self, *arguments, first=None):
        """Starts the program; its first window has the keyboard then."""
        self.program = self.enter_context(Running(
            *self.command, *arguments, env=self.environment, runner=self.runner))
        self.window = None
        self.expect(first or self.title)

    def start_batch(self, name, *prompt):
        case = GOLDEN_CASES[name]
        kind = case.response[-3:]
        self.folder.put("response", GOLDEN / case.response)
        self.folder.put("target.txt", GOLDEN / case.target)
        self.batch = ("-cmd", 48000, "response", kind, "filter.txt", "target.txt")
        self.start(*self.batch, *prompt)

    def until(self, condition):
        """Waits for something that the program brings about."""
        return until(condition, self.program)

    def ended(self):
        """The exit code of the program that is about to end."""
        return self.program.process.wait(LIMIT)

    def expect(self, title):
        """Waits for another window to take the keyboard."""
        self.window = self.until(lambda: self.screen.focused(title, self.window))

    def answer(self, title, key):
        self.expect(title)
        self.screen.keys(key)

    def choose_file(self, title, path):
        before, self.window = self.window, None
        self.expect(title)
        self.screen.type(self.name_of(path))
        self.screen.keys("Return")
        self.until(lambda: self.screen.is_gone(self.window))
        self.window = None
        self.expect(self.title)
        assert self.window == before

    def expect_text(self, text):
        """Of the box that is shown, where a program outside can read it."""

    def link(self, port):
        """Has the program take the link server at this port."""
        self.command += ("--port", port)

    def name_of(self, path):
        return str(path)

    def pixels(self, *units):
        """Pixels of distances across and down."""
        return tuple(int(unit * self.unit[i % 2] + 0.5) for i, unit in enumerate(units))

    def point(self, place):
        return tuple(map(sum, zip(self.screen.corner(self.window), self.pixels(*place))))

    def click(self, place):
        self.screen.click(self.point(place))

    def pick(self, place, *keys):
        """Opens a list or a menu with the mouse and chooses with the keyboard."""
        self.click(place)
        self.until(self.screen.popups)
        self.screen.keys(*keys, "Return")
        self.until(lambda: not self.screen.popups())

    def plot(self):
        """Where the plot is on the screen, inside its margins of 56, 8, 16 and 24 pixels."""
        width, height = self.pixels(*PLOT)[2:]
        left, top = self.point(PLOT[:2])
        return left + 56, top + 8, width - 72, height - 32

    def on_plot(self, hertz, decibels):
        """The axes go from 20 Hz to 24 kHz and from 10 to -40 dB."""
        left, top, width, height = self.plot()
        return (left + round(math.log(hertz / 20, 1200) * width),
                top + round((10 - decibels) / 50 * height))

    def expect_plot(self, target):
        """Waits until the plot shows what tonvane-cli draws for the response and a target file."""
        width, height = self.pixels(*PLOT)[2:]
        cli("plot", "response", "--target", target, "--caption", "", "-o", "plot.png", "--size",
            f"{width}x{height + LEGEND}", "--fit", self.fit)
        wanted = Image.open("plot.png").convert("RGB").crop((56, 8, width - 16, height - 24))
        # The rim of a curve may differ; a ring would be more.
        self.until(lambda: differing(self.screen.picture(self.plot()), wanted, 100) < 100)

    def drop(self, name):
        x, y = self.screen.corner(self.window)
        self.screen.drop(self.window, self.folder / name, (x + 100, y + 100))


class Lab(Desk):
    """tonvane-lab, with the controls that the dialog hides; they go by their numbers."""

    command, title = ("tonvane-lab", "--layout", "layout"), "Tonvane Lab"
    fit = "refined"

    def start(self, *arguments, **setting):
        super().start(*arguments, **setting)
        layout = self.until(lambda: os.path.exists("layout") and open("layout").read())
        x, y = self.screen.corner(self.window)
        self._places = {}
        for line in layout.splitlines():
            control, left, top, width, height = map(int, line.split())
            self._places[control] = (x + left, y + top, width, height)
        os.remove("layout")

    def point(self, place):
        """The middle of a control or, with a second number, how far from its left to its right."""
        control, part = place if isinstance(place, tuple) else (place, 0.5)
        left, top, width, height = self._places[control]
        return left + round(part * width), top + height // 2

    press = tick = Desk.click

    def plot(self):
        left, top, width, height = self._places[2011]
        return left + 56, top + 8, width - 72, height - 32

    def put(self, control, text):
        self.press(control)
        self.screen.keys("Control_L+a")
        self.screen.type(text)

    def leave(self, control):
        self.screen.keys("Tab")

    def choose(self, control, entry):
        self.pick(control, *["Down"] * entry)

    def look(self, control, inside=0):
        """What a control looks like without the mouse on it, so many pixels from left and right."""
        self.screen.move((0, 0))
        left, top, width, height = self._places[control]
        place = left + inside, top, width - 2 * inside, height
        return self.screen.picture(place).tobytes()

    def recent_files(self):
        lines = (self.folder / "state/tonvane/recent-files").read_text().splitlines()
        return [os.path.basename(line) for line in lines if line.startswith("File") and "/" in line]


@pytest.fixture(scope="session")
def screen():
    with tempfile.TemporaryDirectory() as home, Screen(Folder(home)) as shown:
        yield shown


@pytest.fixture
def desk(screen, folder):
    with Desk(screen, folder) as started:
        yield started


@pytest.fixture
def panel(screen, folder):
    """The dialog with all controls within reach."""
    with Lab(screen, folder) as started:
        yield started


@pytest.hookimpl(hookwrapper=True)
def pytest_runtest_makereport(item, call):
    """Leaves a picture of the screen beside the programs when something went wrong."""
    report = (yield).get_result()
    if report.failed and "screen" in item.funcargs:
        item.funcargs["screen"].picture().save(BIN.parent / f"{item.name}.png")
