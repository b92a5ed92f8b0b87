"""Audio servers without hardware, private to a test; whether this machine keeps up with them, and
how good a measurement on them is."""

import os
import struct
import threading
import time
from pathlib import Path

import pytest

from programs import Running, good, run, until

JACK_PERIOD = 8192  # frames: a long one leaves a busy machine its time


@pytest.fixture
def jack(monkeypatch):
    """A JACK server at 48000 Hz with a client "speaker", whose capture is what was played."""
    for name, value in {"JACK_DEFAULT_SERVER": f"tonvane-test-{os.getpid()}",
                        "JACK_NO_START_SERVER": "1", "JACK_NO_AUDIO_RESERVATION": "1"}.items():
        monkeypatch.setenv(name, value)
    with Running("jackd", "-r", "-n", os.environ["JACK_DEFAULT_SERVER"],
                 "-d", "dummy", "-p", JACK_PERIOD) as server:
        until(lambda: "system:playback_2" in run("jack_lsp").out, server)
        with Running("jack-speaker") as speaker:
            until(lambda: "ready" in speaker.output(), speaker)
            yield server


@pytest.fixture
def pulse(monkeypatch, tmp_path):
    """A PulseAudio daemon with a null sink of 16 bits, stereo, 48000 Hz, whose monitor is the
    source, as ALSA's default device."""
    for name in ("XDG_RUNTIME_DIR", "PULSE_RUNTIME_PATH", "PULSE_STATE_PATH", "PULSE_CONFIG_PATH",
                 "HOME"):
        monkeypatch.setenv(name, str(tmp_path))
    for name, value in {"PULSE_COOKIE": f"{tmp_path}/cookie", "PULSE_SINK": "loop",
                        "PULSE_SERVER": f"unix:{tmp_path}/native", "PULSE_SOURCE": "loop.monitor",
                        "ALSA_CONFIG_PATH": f"{tmp_path}/asound.conf"}.items():
        monkeypatch.setenv(name, value)
    (tmp_path / "asound.conf").write_text(
        "</usr/share/alsa/alsa.conf>\npcm.!default { type pulse }\nctl.!default { type pulse }\n")
    with Running("pulseaudio", "-n", "--system=false", "--daemonize=no", "--use-pid-file=no",
                 "--exit-idle-time=-1", "--disallow-exit",
                 "-L", "module-null-sink sink_name=loop format=s16le channels=2 rate=48000",
                 "-L", f"module-native-protocol-unix auth-anonymous=1 socket={tmp_path}/native",
                 env={"PULSE_SERVER": ""}) as server:
        until((tmp_path / "native").exists, server)
        yield server


class WakeWatch(threading.Thread):
    """How late this machine wakes a thread, in a `with` block."""

    def __enter__(self):
        self.latest, self._ended = 0.0, threading.Event()
        self.start()
        return self

    def __exit__(self, *_):
        self._ended.set()
        self.join()

    def run(self):
        due = time.monotonic() + 0.002
        while not self._ended.wait(0.002):
            self.latest = max(self.latest, time.monotonic() - due)
            due = time.monotonic() + 0.002

    def excuse(self, had_gaps):
        """Skips the test when gaps in its run are no wonder."""
        if had_gaps and self.latest > 0.015:
            pytest.skip("NOT TESTED: this machine is too busy for audio, it woke a thread "
                        f"{1000 * self.latest:.0f} ms late, and the run had gaps")


def measured(path):
    """Of a measurement of a direct path at 48 kHz: the distance from its level at 1 kHz, 40 Hz to
    20 kHz, in dB, and the sample of its peak."""
    good("convert", path, "levels.csv")
    rows = [row.split(",") for row in Path("levels.csv").read_text().splitlines()]
    levels = {float(hertz): float(level) for hertz, level in rows}
    reference = min(levels, key=lambda hertz: abs(hertz - 1000))
    samples = struct.unpack("<i32768d", Path(path).read_bytes())[1:]
    return (max(abs(levels[x] - levels[reference]) for x in levels if 40 <= x <= 20000),
            max(range(32768), key=lambda i: abs(samples[i])))
