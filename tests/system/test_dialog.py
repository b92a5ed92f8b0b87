"""The dialog in a real window, with a real mouse and keyboard: on Qt and, under Wine, on Windows."""

import math
import re
from pathlib import Path

import pytest

from desks import CLOSE, GAIN_CLAMP, INPUT_RATE
from programs import GOLDEN, GOLDEN_CASES, good, read_filters, until, wav

pytest_plugins = ["desks"]


def words():
    return read_filters("filter.txt")[1]


def words_without_window(desk):
    *batch, _, target = desk.batch
    good(*batch, "other.txt", target, "-noprompt")
    return read_filters("other.txt")[1]


def target():
    """Kind, gain clamp and knots of the target file."""
    kind, gain, *points = Path("target.txt").read_text().split("\n")
    return kind, int(gain), [tuple(map(int, point.split(","))) for point in points if point]


def test_batch_start_shows_its_curves_and_writes_its_files_on_close(desk):
    desk.start_batch("small48", "-noprompt")
    desk.expect_plot("target.txt")
    assert not Path("filter.txt").exists()
    desk.screen.move(desk.point(INPUT_RATE))
    desk.screen.button(5)  # the wheel: the list has not got the keyboard
    desk.click(CLOSE)
    assert (desk.ended(), desk.program.output()) == (0, "")
    wanted = GOLDEN_CASES["small48"].path("target.txt")
    assert Path("target.txt").read_text() == wanted.read_text()
    assert words() == words_without_window(desk)


def test_dragged_knot_changes_plot_and_files_as_the_drag_says(desk):
    desk.start_batch("small48", "-noprompt")
    desk.expect_plot("target.txt")
    _, gain, knots = target()
    Path("dragged.txt").write_text(Path("target.txt").read_text().replace("1300,0", "1700,-6"))
    desk.screen.drag(desk.on_plot(1300, 0), desk.on_plot(1500, -3), desk.on_plot(1700, -6),
                     meanwhile=lambda: desk.screen.button(3))  # which opens no menu then
    desk.screen.move(desk.on_plot(1600, -20))  # with nothing in its hand
    desk.expect_plot("dragged.txt")
    desk.screen.drag(desk.on_plot(220, 2), desk.on_plot(220, 5))
    desk.screen.keys("Control_L+z")
    pixel = 1700 * math.log(1200) / desk.plot()[2]  # Hz
    desk.click(CLOSE)
    assert desk.ended() == 0
    dragged = target()[2][3]
    assert dragged == (pytest.approx(1700, abs=pixel), pytest.approx(-6, abs=1))
    assert target() == ("-savedcurve", gain, [*knots[:3], dragged, *knots[4:]])
    assert words() == words_without_window(desk)


def test_lists_of_gain_clamp_and_input_rate_give_what_is_chosen(desk):
    desk.start_batch("logspaced", "-noprompt")
    desk.pick(INPUT_RATE, "Up")
    desk.pick(GAIN_CLAMP, "Down", "Down")
    desk.click(CLOSE)
    assert desk.ended() == 0
    assert target()[1] == -8
    assert words() != words_without_window(desk)  # which keeps the rate


@pytest.mark.parametrize("way, answer, code, writes", [
    ("button", "Return", 0, True), ("box", "Escape", 2, False), ("escape", None, 2, False)])
def test_every_way_out_has_its_exit_code_and_files(desk, way, answer, code, writes):
    desk.start_batch("small48")
    before = Path("target.txt").read_text()
    if way == "button":
        desk.click(CLOSE)
    elif way == "box":
        desk.screen.click_close_box(desk.window)
    else:  # while a knot is held
        desk.screen.drag(desk.on_plot(1300, 0), meanwhile=lambda: (
            desk.screen.keys("Escape"), desk.ended()))
    if answer:
        desk.answer("Prompt", answer)
    assert desk.ended() == code
    assert Path("filter.txt").exists() == writes
    assert (Path("target.txt").read_text() != before) == writes


def test_files_that_cannot_be_read_are_told_of_and_the_dialog_comes_up(desk):
    Path("bad.txt").write_text("no target")
    desk.start("-cmd", 48000, "missing.qsr", "qsr", "f.txt", "bad.txt", first="Error")
    desk.expect_text("Failed to load desired response data. File is missing.")
    desk.screen.keys("Return")
    desk.expect("Error")
    desk.expect_text("Failed to open speaker response file")
    desk.screen.keys("Return")
    desk.expect("Tonvane")
    desk.click(CLOSE)
    assert desk.ended() == 0
    assert not Path("f.txt").exists()
    assert Path("bad.txt").read_text() == "no target"


def test_controls_of_the_panel_reach_the_amplifier(panel, amplifier):
    panel.link(amplifier.port)
    panel.start("-cmd", 48000, GOLDEN / "small48.qsr", "qsr", "f.txt")
    bracket = "write 05 System Control 2: 40.*%s.*write 05 System Control 2: 00"
    for act, words, frames in (
            (panel.press, (2060,), "write 1B Oscilator Trim: 80"),
            (panel.screen.type, ("9",), ""),  # into no box
            (panel.put, (2071, "29"), ""),
            (panel.press, (2080,), "read 29 PEQ Coef L0: 20 bytes"),
            (panel.put, (2074, "00123456"), ""),
            (panel.press, (2079,), "write 29 PEQ Coef L0: 00123456 "),
            (panel.tick, (2084,), bracket % "write 46 DRC control: 00020021"),
            (panel.put, (2098, "1000"), ""),
            (panel.leave, (2098,), bracket % "write 58"),
            (panel.put, (2090, "99"), ""),
            (panel.leave, (2090,), "")):
        log = []
        act(*words)
        until(lambda: log.extend(amplifier.frames()) or
              re.search(frames, "\n".join(log), re.DOTALL), amplifier)
    panel.answer("", "Return")  # 99 dB are refused
    panel.expect(panel.title)
    panel.press(2070)
    panel.choose_file("Open", panel.folder / "dump")
    dump = Path("dump.dat")
    lines = panel.until(lambda: dump.exists() and dump.read_text().splitlines())
    assert len(lines) == 120
    assert {"46\t00020021", "40\t0040C371 0040C370"} <= {*lines}  # still -30 dB
    panel.screen.keys("Escape")
    assert panel.ended() == 2


def test_dropped_wave_files_are_there_at_the_next_start(panel):
    for name in ("a.wav", "b.wav"):
        panel.folder.put(name, wav(8000, [0] * 8000))
    panel.start()
    for name in ("a.wav", "b.wav"):
        panel.drop(name)
    panel.press(8)
    assert panel.ended() == 0
    assert panel.recent_files() == ["b.wav", "a.wav"]
    panel.start()
    panel.choose(1000, 1)
    panel.press(8)
    assert panel.ended() == 0
    assert panel.recent_files() == ["a.wav", "b.wav"]
