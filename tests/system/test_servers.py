"""The devices on real audio servers without hardware, in real time: what is played is captured."""

import random
import signal
from pathlib import Path

import pytest

from programs import LIMIT, Running, cli, run, until
from servers import JACK_PERIOD, WakeWatch, measured

pytest_plugins = ["servers"]

FRAME = 8  # bytes of a frame in the files of device-probe: 32 bits, stereo


def measure(device):
    with WakeWatch() as watch:
        done = cli("measure", "--device", device, "-o", "out.qsr")
    watch.excuse("the measurement is not good" in done.err)
    assert (done.code, done.err) == (0, "")
    return measured("out.qsr")


def probe(device, played, *arguments):
    """What the device reports of a run, undisturbed."""
    Path("in").write_bytes(played)
    with WakeWatch() as watch:
        printed = run("device-probe", device, 48000, 2, "in", "out", *arguments).out
    watch.excuse("xruns 0" not in printed)
    return printed


def test_measured_direct_path_is_flat_and_in_place_on_jack_three_times(folder, jack):
    for _ in range(3):
        flatness, onset = measure("jack:speaker")
        assert flatness < 0.00001
        assert onset == 32


def test_measured_direct_path_is_flat_on_pulseaudio_three_times(folder, pulse):
    for _ in range(3):
        assert measure("alsa")[0] < 0.003


def test_jack_captures_what_it_plays_in_step_with_its_latency(folder, jack):
    # Of 16 bits, which floats keep.
    played = b"".join(b"\0\0" + random.randbytes(2) for _ in range(2 * 60000))
    expected = bytes(FRAME * JACK_PERIOD) + played
    printed = probe("jack:speaker", played, len(expected) // FRAME)
    assert printed == f"latency {JACK_PERIOD}\nxruns 0\nlost 0\n"
    assert Path("out").read_bytes()[:len(expected)] == expected


def test_callback_on_jack_does_not_disturb_the_system(jack):
    done = run("jack-callback", env={"TONVANE_SERVER": str(jack.process.pid)})
    assert done.code == 0, done.out
    if "SKIPPED" in done.out:
        pytest.skip("NOT TESTED: this kernel or this build does not show system calls")


def test_pause_loses_neither_frames_nor_the_device_on_pulseaudio(folder, pulse):
    assert probe("alsa", bytes(FRAME * 100000), 0, 40000) == "latency 0\nxruns 0\nlost 0\n"


@pytest.mark.parametrize("server, device", [("jack", "jack:speaker"), ("pulse", "alsa")])
def test_server_that_ends_loses_the_device_and_frees_its_workers(folder, request, server, device):
    server = request.getfixturevalue(server)
    Path("in").write_bytes(bytes(FRAME * 48000 * 60))
    with Running("device-probe", device, 48000, 2, "in", "out", 48000 * 60) as program:
        until(lambda: "started\n" in program.output(), program)
        server.end()
        until(lambda: "lost 1\n" in program.output(), program)


@pytest.mark.parametrize("server, device", [("jack", "jack:speaker"), ("pulse", "alsa")])
@pytest.mark.parametrize("moment, limit, code, words", [
    ("before", 1, 1, "does not answer\n"), ("while", 10, 1, "the device has stopped delivering\n"),
    ("while", 600, 130, "interrupted\n")])
def test_frozen_server_is_given_up(folder, request, server, device, moment, limit, code, words):
    frozen = request.getfixturevalue(server).process
    if moment == "before":
        frozen.send_signal(signal.SIGSTOP)
    try:
        with Running("tonvane-cli", "measure", "--device", device, "-o", "out.qsr", "--timeout",
                     limit) as program:
            if moment == "while":
                until(lambda: "Measuring: 25 %" in program.output(), program)
                frozen.send_signal(signal.SIGSTOP)
            if code == 130:
                program.process.send_signal(signal.SIGINT)
            assert program.process.wait(LIMIT) == code
            assert program.output().endswith(words)
    finally:
        frozen.send_signal(signal.SIGCONT)


def test_rate_that_the_server_does_not_have_is_refused(folder, jack):
    folder.put("in", "")
    assert run("device-probe", "jack:speaker", 44100, 2, "in", "out", 0).out == (
        "refused: Sample rate 44100 Hz is not supported: the JACK server runs at 48000 Hz\n")


def test_devices_are_those_that_are_there_and_no_server_is_started(jack):
    def devices():
        done = cli("devices")
        assert done.err == ""
        return [line.split()[:2] for line in done.out.splitlines() if line[0] != " "]

    assert devices() == [["200", "alsa"], ["201", "jack:system"], ["202", "jack:speaker"],
                         ["300", "simulated"]]
    jack.end()
    assert devices() == [["200", "alsa"], ["300", "simulated"]]
