"""tonvane-lab in a real window, and what only the dialog on Qt has."""

import os
import struct
from pathlib import Path

from desks import CLOSE
from programs import good, read_filters, wav

pytest_plugins = ["desks"]
WHITE = b"\xff\xff\xff"
TARGET, PASSBAND, FILTER = (0x8F, 0, 0xFF), (0, 0xC0, 0x80), (0xFF, 0, 0)  # curves
DEVICES, LOOPBACK = 4001, ["Up"]  # the menu, and the last of its entries: without hardware


def test_menu_key_opens_the_menu_of_a_plain_start(desk):
    desk.start()
    desk.screen.keys("Menu")
    desk.until(desk.screen.popups)
    desk.screen.keys("Escape")
    desk.until(lambda: not desk.screen.popups())
    desk.click(CLOSE)
    assert desk.ended() == 0


def test_text_of_the_plot_grows_with_the_screens_density(desk):
    for scale, pixels in (1, 8), (1.25, 10):
        desk.environment["QT_SCALE_FACTOR"] = str(scale)
        desk.start()
        x, y = desk.screen.corner(desk.window)
        labels = x + 100, y + round(296 * scale) - 19, 600, 18  # at the plot's lower edge

        def rows_with_ink():
            picture = desk.screen.picture(labels).convert("L")
            return (picture.point(lambda level: 255 * (level < 150)).getbbox() or (0, 0, 0, 0))[1::2]
        desk.until(lambda: rows_with_ink()[1] - rows_with_ink()[0] == pixels)
        desk.screen.keys("Escape")
        assert desk.ended() == 2


def test_device_of_the_menu_measures(panel, amplifier):
    panel.link(amplifier.port)
    panel.start()
    panel.press(2060)
    panel.until(lambda: WHITE in panel.look(2071, inside=30))
    assert WHITE not in panel.look(2072, inside=30)  # of a box to be read only
    panel.pick(DEVICES, *LOOPBACK)
    panel.press(2000)
    file = Path("measured.qsr")
    rate, *values = struct.unpack("<i32768d", panel.until(lambda: file.exists() and file.read_bytes()))
    assert rate == 48000
    assert values[32] > 0.9  # a wire
    assert abs(values[31]) < 0.1
    panel.press(8)
    assert panel.ended() == 0


def test_keyboard_moves_the_knot_beside_the_clicked_one_and_saves_the_plot(desk):
    desk.start_batch("small48", "-noprompt")
    desk.screen.click(desk.on_plot(1300, 0))
    desk.screen.keys("Page_Up", "Up", "Up", "Shift_L+Right", "Tab", "Down", "Control_L+s")
    desk.choose_file("Save As", desk.folder / "plot")
    desk.click(CLOSE)
    assert desk.ended() == 0
    assert Path("plot.png").read_bytes().startswith(b"\x89PNG")
    lines = Path("target.txt").read_text().splitlines()
    assert lines[:2] + lines[4:5] == ["-savedcurve", "-7", "501, 3"]  # -6, 500 Hz, 1 dB before


def test_filter_follows_the_mouse_and_what_that_leaves_is_a_design(panel):
    panel.start_batch("small48", "-noprompt")
    panel.tick(2032)  # without the target curve and its knots, which would lie over the filter's
    panel.tick(2033)

    def pixels(color):
        colors = panel.screen.picture(panel.plot()).getdata()
        return [place for place, found in enumerate(colors) if found == color]
    panel.until(lambda: pixels(PASSBAND) and not pixels(TARGET))
    still = pixels(FILTER)
    panel.click(2021)  # the gain clamp: its list without a choice
    panel.until(panel.screen.popups)
    panel.screen.keys("Up")
    panel.until(lambda: pixels(FILTER) != still)
    panel.screen.keys("Escape")
    panel.until(lambda: pixels(FILTER) == still)
    panel.screen.drag(panel.on_plot(1300, 0), panel.on_plot(1500, -10),
                      meanwhile=lambda: panel.until(lambda: pixels(FILTER) != still))
    panel.press(8)
    assert panel.ended() == 0
    good("design", "response", "--target", "target.txt", "-o", "designed.txt")
    assert Path("target.txt").read_text().startswith("-savedcurve")
    assert read_filters("filter.txt") == read_filters("designed.txt")


def test_wave_file_plays_from_where_it_is_asked_to_and_stops(panel):
    size = 2_000_000_000  # of a file with holes, which plays long enough even without hardware
    head = bytearray(wav(96000, [], channels=2))
    head[4:8], head[40:44] = struct.pack("<I", 36 + size), struct.pack("<I", size)
    Path("long.wav").write_bytes(head)
    os.truncate("long.wav", len(head) + size)

    def time_after(before):
        panel.until(lambda: panel.look(1005) != before)
        return panel.look(1005)

    panel.start()
    panel.pick(DEVICES, *LOOPBACK)
    no_time = panel.look(1005)
    panel.press(4000)
    panel.choose_file("Open", panel.folder / "long.wav")
    start = time_after(no_time)
    panel.press((1004, 0.75))
    chosen = time_after(start)
    panel.press(1002)
    time_after(chosen)
    panel.press(1003)
    panel.until(lambda: panel.look(1005) == start)
    panel.press(8)
    assert panel.ended() == 0
