"""Programs built for Windows, under Wine.

The environment says with what: TONVANE_WINE and TONVANE_WINE_SERVER are the commands that start a
Windows program and Wine's server, TONVANE_WINDOWS_BIN is the folder that the programs were built into,
WINEPREFIX the prefix. tools/run-windows-tests sets them. All tests share the prefix: they run one
after another, and each takes away what it has left in the registry.
"""

import contextlib
import os
import re
from pathlib import Path

import pytest

from desks import Desk
from programs import LIMIT, Result, Running, run

if "TONVANE_WINE" not in os.environ:
    pytest.skip("there is no Wine; use tools/run-windows-tests", allow_module_level=True)
os.environ |= {"WINEDEBUG": "-all", "LC_ALL": "C.UTF-8"}  # of the names of files
RUNNER = (os.environ["TONVANE_WINE"],)
SERVER = os.environ["TONVANE_WINE_SERVER"]
DRIVE_C = Path(os.environ["WINEPREFIX"]) / "drive_c"
RECENT_FILES = r"HKCU\Software\Halvern\Tonvane2\Recent File List"


def built(program):
    return Path(os.environ["TONVANE_WINDOWS_BIN"]) / program


def wine(program, *arguments, env=None):
    """Runs a program of ours, or one of Wine's own such as "reg", to its end."""
    path = built(program) if built(program).exists() else program
    # Into a file: the first program leaves services behind that would keep a pipe open.
    with Running(path, *arguments, runner=RUNNER, env=env) as done:
        return Result(done.process.wait(LIMIT), done.output(), "")


def put_ahead(process):
    """A process, and what it starts from now on, runs ahead of what keeps the machine busy."""
    with contextlib.suppress(PermissionError):
        os.sched_setscheduler(process, os.SCHED_RR, os.sched_param(10))


def windows_name(path):
    return "Z:" + str(path).replace("/", "\\")


class WineDesk(Desk):
    """Tonvane.exe. A program outside, window-probe, reaches all of its controls."""

    command, runner, unit = (built("Tonvane.exe"),), RUNNER, (1.5, 1.625)

    def __init__(self, screen, folder):
        super().__init__(screen, folder)
        self.environment = {}

    def probe(self, *words, title="Tonvane"):
        done = wine("window-probe.exe", title, *words)
        assert done.code == 0, words
        return done.out

    def expect_text(self, text):
        assert self.probe("text", 65535, title="Error") == text + "\n"

    def link(self, port):
        self.environment["TONVANE_LINK_PORT"] = port

    def name_of(self, path):
        return windows_name(path)

    def press(self, control):
        self.probe("post", control)

    def tick(self, control):
        self.probe("check", control, 1)

    def put(self, control, text):
        self.probe("settext", control, text)

    def leave(self, control):
        self.probe("post", control, 512)

    def choose(self, control, entry):
        self.probe("choose", control, entry)

    def recent_files(self):
        found = re.findall(r"File\d+ .*\\(.*)", wine("reg", "query", RECENT_FILES).out)
        return [name.strip() for name in found]


@pytest.fixture(scope="session", autouse=True)
def server():
    """Wine's own, without one that is still there from before."""
    run(SERVER, "-k")
    with Running(SERVER, "--foreground", "--persistent") as beside:
        yield beside
        run(SERVER, "-k")  # with all that it has started


@pytest.fixture(scope="session")
def wine_screen(screen, server):
    """The first program of a server decides on which screen all others get their windows."""
    os.environ["DISPLAY"] = screen.name
    return screen


@pytest.fixture
def desk(wine_screen, folder):
    wine("reg", "delete", RECENT_FILES, "/f")
    with WineDesk(wine_screen, folder) as started:
        yield started


@pytest.fixture
def panel(desk):
    return desk
