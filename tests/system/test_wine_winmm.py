"""Measurements on WinMM, by the program for Windows."""

from pathlib import Path

import pytest

from programs import Running, until
from servers import WakeWatch, measured
from wine import RUNNER, built, put_ahead, wine

pytest_plugins = ["wine", "servers"]
put_ahead(0)
MEASURE = ("measure", "--device", "winmm", "-o", "out.qsr", "--timeout", 2)


@pytest.fixture
def winmm(folder, server, pulse):
    """Sound by Wine's ALSA driver, which is the one that keeps every frame."""
    put_ahead(pulse.process.pid)  # which has reset what it came with
    drivers = r"HKCU\Software\Wine\Drivers"
    wine("reg", "add", drivers, "/f", "/v", "Audio", "/d", "alsa")
    yield
    wine("reg", "delete", drivers, "/f", "/v", "Audio")


def test_direct_path_is_flat(winmm):
    # A client that asks for short delays, without which the capture begins a second late; it has
    # settled when it has recorded three seconds.
    with Running("parec", "--raw", "--latency-msec=5", "-d", "loop.monitor") as recorder:
        until(lambda: (recorder.place / "output").stat().st_size >= 3 * 48000 * 4, recorder)
        with WakeWatch() as watch:
            done = wine("tonvane-cli.exe", *MEASURE)
    flatness = measured("out.qsr")[0] if done.code == 0 else None
    watch.excuse(flatness is None or flatness >= 0.05)
    assert done.code == 0, done.out
    assert flatness < 0.05


def test_end_of_the_sound_server_ends_the_program_and_is_told_of(winmm, pulse):
    with Running(built("tonvane-cli.exe"), *MEASURE, runner=RUNNER) as program:
        until(lambda: "Measuring: 25 %" in program.output(), program)
        pulse.end()
        assert program.process.wait() == 1
        assert "tonvane-cli: winmm: the device has stopped delivering" in program.output()
    done = wine("tonvane-cli.exe", *MEASURE)
    assert done.code == 1
    assert "WinMM has no device to capture from" in done.out
    assert not Path("out.qsr").exists()
