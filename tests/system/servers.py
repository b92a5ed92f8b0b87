"""Audio servers without hardware, private to a test; whether this machine keeps up with them, and
how good a measurement on them is."""

import cmath
import math
import os
import struct
import threading
import time
from pathlib import Path

import pytest

from programs import Running, run, until

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
    monkeypatch.setenv("PULSE_COOKIE", f"{tmp_path}/cookie")
    monkeypatch.setenv("PULSE_SERVER", f"unix:{tmp_path}/native")
    monkeypatch.setenv("PULSE_SINK", "loop")
    monkeypatch.setenv("PULSE_SOURCE", "loop.monitor")
    monkeypatch.setenv("ALSA_CONFIG_PATH", f"{tmp_path}/asound.conf")
    (tmp_path / "asound.conf").write_text(
        "</usr/share/alsa/alsa.conf>\npcm.!default { type pulse }\nctl.!default { type pulse }\n")
    with Running("pulseaudio", "-n", "--system=false", "--daemonize=no", "--use-pid-file=no",
                 "--exit-idle-time=-1", "--disallow-exit",
                 "-L", "module-null-sink sink_name=loop format=s16le channels=2 rate=48000",
                 "-L", f"module-native-protocol-unix auth-anonymous=1 socket={tmp_path}/native",
                 env={"PULSE_SERVER": ""}) as server:
        until((tmp_path / "native").exists, server)
        yield server


class WakeWatch:
    """How late this machine wakes a thread, in a `with` block."""

    def __enter__(self):
        self.latest, self._ended = 0.0, threading.Event()
        self._thread = threading.Thread(target=self._watch)
        self._thread.start()
        return self

    def __exit__(self, *_):
        self._ended.set()
        self._thread.join()

    def _watch(self):
        due = time.monotonic() + 0.002
        while not self._ended.wait(0.002):
            self.latest = max(self.latest, time.monotonic() - due)
            due = time.monotonic() + 0.002

    def excuse(self, had_gaps):
        """Skips the test when gaps in its run are no wonder."""
        if had_gaps and self.latest > 0.015:
            pytest.skip("NOT TESTED: this machine is too busy for audio, it woke a thread "
                        f"{1000 * self.latest:.0f} ms late, and the run had gaps")


def _spectrum(samples):
    """The discrete Fourier transform of a power of two of samples."""
    if len(samples) == 1:
        return samples
    even, odd = _spectrum(samples[::2]), _spectrum(samples[1::2])
    turned = [cmath.rect(1.0, -math.tau * k / len(samples)) * x for k, x in enumerate(odd)]
    return [a + b for a, b in zip(even, turned)] + [a - b for a, b in zip(even, turned)]


def measured(path):
    """Of a measurement of a direct path at 48 kHz: the distance from its level at 1 kHz, 40 Hz to
    20 kHz, in dB, and the sample of its peak."""
    samples = struct.unpack("<i32768d", Path(path).read_bytes())[1:]
    levels = [abs(x) for x in _spectrum(samples)]
    reference = levels[683]
    return (max(abs(20 * math.log10(level / reference)) for level in levels[28:13654]),
            max(range(32768), key=lambda i: abs(samples[i])))
