"""Tonvane.exe: what test_dialog.py tells of the dialog, and what only it has."""

from test_dialog import *
from wine import *

PLACES = {  # in dialog units: left, top, width; 0 is the plot, 65535 the last frame
    0: (4, 4, 500), 65535: (392, 150, 58), 8: (460, 160, 44), 2006: (13, 160, 90), 2007: (123, 160, 90), 2008: (233, 160, 83),
    2021: (341, 162, 36), 3001: (400, 162, 42)}
LEGEND_TEXTS = 2006, 2007, 2008


def test_every_control_has_its_id_and_nearly_all_are_hidden(desk):
    desk.start()
    controls = [line.split() for line in desk.probe("controls").splitlines()]
    shown = {int(c[0]): tuple(map(int, c[3:6])) for c in controls if c[1] == "V"}
    assert len(controls) - len(shown) >= 51
    for control, (left, top, width) in PLACES.items():
        place = shown.pop(control)
        if control in LEGEND_TEXTS:  # which are as long as they have to be
            assert place[2] > desk.pixels(width)[0], control
            place = (*place[:2], *desk.pixels(width))
        assert place == desk.pixels(left, top, width), control
    assert shown == {}


def test_recent_files_of_any_kind_of_text_are_read_from_the_registry(desk):
    for name, length in (("short.wav", 8000), ("long.wav", 10 * 8000 + 800)):
        desk.folder.put(name, wav(8000, [0] * length))
    for words in (("FileCount", "/t", "REG_DWORD", "/d", 2), ("File0", "/d", "short.wav"),
                  ("File1", "/t", "REG_EXPAND_SZ", "/d", "long.wav")):
        wine("reg", "add", RECENT_FILES, "/f", "/v", *words)
    desk.start()
    assert desk.probe("items", 1000) == "* short.wav\nlong.wav\n"
    assert desk.probe("text", 1005) == "00:00 / 00:01\n"
    desk.choose(1000, 1)
    assert desk.probe("text", 1005) == "00:00 / 00:11\n"  # 10.1 seconds
    desk.probe("slide", 1004, 21)
    assert desk.probe("text", 1005) == "00:05 / 00:11\n"


@pytest.fixture
def broken_driver(desk):
    key = r"HKLM\Software\asio\Nobody"
    wine("reg", "add", key, "/v", "clsid", "/d", "{5B1C8A10-0000-4000-8000-00000000A51A}", "/f")
    yield
    wine("reg", "delete", key, "/f")


def test_device_is_chosen_from_the_system_menu(desk, broken_driver):
    desk.start()

    def expect_refusal():
        desk.expect("Error")
        desk.expect_text("Failed to load ASIO driver: Nobody")
        desk.screen.keys("Return")
        desk.expect("Tonvane")

    desk.probe("system", 0xF100, 32)  # the menu of the Alt and the blank key
    desk.until(desk.screen.popups)
    desk.screen.keys("Up", "Right", "Down", "Return")  # may arrive as another message than from outside
    expect_refusal()
    desk.probe("system", 201)
    expect_refusal()
    desk.press(8)
    assert desk.ended() == 0
