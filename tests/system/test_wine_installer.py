"""The installer for Windows without its pages, and the tests that are a program for Windows."""

import re
import shutil

from programs import read_filters, until
from wine import DRIVE_C, built, wine

pytest_plugins = ["wine"]
UNINSTALL = r"HKCU\Software\Microsoft\Windows\CurrentVersion\Uninstall\Tonvane"


def entry(name):
    """A value of the entry in the list of programs; empty without it."""
    return "".join(re.findall(r"REG_SZ +(.*\S)", wine("reg", "query", UNINSTALL, "/v", name).out))


def traces():
    """Everything of the user's with the program's name, but for the uninstaller at work."""
    names = (path.name for path in (DRIVE_C / "users").rglob("*"))
    return {name for name in names if re.fullmatch(r"Tonvane(\..*)?|tonvane-cli\.exe", name)}


def test_installer_puts_the_programs_in_the_users_folder_and_takes_them_away(folder):
    assert wine(built("../Tonvane-setup.exe"), "/S").code == 0
    assert traces() == {"Tonvane", "Tonvane.exe", "Tonvane.lnk", "tonvane-cli.exe"}
    assert entry("DisplayName") == "Tonvane"
    place = entry("InstallLocation")
    assert "\\AppData\\Local\\" in place
    place = DRIVE_C / place[3:].replace("\\", "/")
    folder.put("speaker.qsr", place / "examples/small-speaker.qsr")
    assert wine(place / "tonvane-cli.exe", "design", "speaker.qsr", "-o", "f.txt").code == 0
    assert len(read_filters("f.txt")[1]) == 35

    shutil.copy("f.txt", place / "mine.txt")  # what the user has put there stays
    assert wine(place / "uninstall.exe", "/S").code == 0
    until(lambda: not entry("InstallLocation"))  # it goes on as a copy of itself
    assert traces() == {"Tonvane"}
    assert {path.name for path in place.iterdir()} == {"mine.txt"}
    shutil.rmtree(place)


def test_canvas_on_gdi_draws_as_every_canvas_does():
    done = wine("tests-ui_win32.exe")
    assert done.code == 0, done.out
    assert "[  PASSED  ] " in done.out
