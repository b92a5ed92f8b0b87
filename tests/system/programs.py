"""Runs the programs of this project as processes of their own and reads what they leave."""

import cmath
import io
import json
import math
import os
import pathlib
import signal
import struct
import subprocess
import tempfile
import time
import wave
from dataclasses import dataclass
from functools import cached_property

ROOT = pathlib.Path(__file__).resolve().parents[2]
GOLDEN = ROOT / "tests/data/golden"
EXAMPLES = ROOT / "examples"
BIN = pathlib.Path(os.environ.get("TONVANE_BIN", ROOT / "build/release/bin"))
LIMIT = 60  # seconds: for anything, on a busy machine
ONE_CORE = ("taskset", "--cpu-list", str(min(os.sched_getaffinity(0))))  # a runner


def _start(command, runner, env):
    """The words of a command, behind a runner such as wine, and its environment."""
    ours = BIN / command[0]
    words = [*runner, ours if ours.exists() else command[0], *command[1:]]
    return [str(word) for word in words], {**os.environ, **(env or {})}


def _text(raw):
    return raw.decode(errors="surrogateescape").replace("\r\n", "\n")


class Folder(type(pathlib.Path())):
    """A folder of a test's own."""

    def names(self):
        """All that is in it, temporary files left behind too."""
        return set(os.listdir(self))

    def put(self, name, contents):
        """Writes text, bytes or a copy of another file."""
        if isinstance(contents, pathlib.Path):
            contents = contents.read_bytes()
        (self / name).write_bytes(contents.encode() if isinstance(contents, str) else contents)


@dataclass
class Result:
    code: int  # negative: the number of the signal that ended it
    out: str
    err: str


def run(*command, cwd=None, env=None, runner=(), limit=LIMIT):
    """Runs a program of this project, or of the system, to its end."""
    words, environment = _start(command, runner, env)
    done = subprocess.run(words, cwd=cwd, env=environment, stdin=subprocess.DEVNULL,
                          capture_output=True, timeout=limit, check=False)
    return Result(done.returncode, _text(done.stdout), _text(done.stderr))


def cli(*arguments, **setting):
    return run("tonvane-cli", *arguments, **setting)


def good(*arguments, **setting):
    """What tonvane-cli prints when all goes well."""
    done = cli(*arguments, **setting)
    assert (done.code, done.err) == (0, "")
    return done.out


def until(condition, program=None, limit=LIMIT):
    """Looks again and again until the condition gives something true, and returns that; not after
    the end of a program that is to bring it about."""
    end = time.monotonic() + limit
    while True:
        code = program.process.poll() if program else None
        if found := condition():
            return found
        assert code is None and time.monotonic() < end, (
            f"not within {limit} s (end with {code}): {program.output() if program else ''}")
        time.sleep(0.02)


class Running:
    """A program beside the test, to the end of its `with` block."""

    def __init__(self, *command, cwd=None, env=None, runner=(), pass_fds=()):
        words, environment = _start(command, runner, env)
        self._folder = tempfile.TemporaryDirectory(prefix="tonvane-")
        self.place = pathlib.Path(self._folder.name)  # for the program's own files
        with open(self.place / "output", "wb") as output:
            self.process = subprocess.Popen(
                words, cwd=cwd, env=environment, stdin=subprocess.DEVNULL, stdout=output,
                stderr=subprocess.STDOUT, pass_fds=pass_fds)

    def output(self):
        """All that it has printed, errors too."""
        return _text((self.place / "output").read_bytes())

    def end(self, number=signal.SIGTERM):
        """Ends it with a signal if it still runs; its exit code."""
        self.process.send_signal(number)  # not to a program whose end has been seen
        return self.process.wait(LIMIT)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        try:
            self.end()
        finally:
            self.process.kill()
            self._folder.cleanup()


class Amplifier(Running):
    """The virtual amplifier at a free port."""

    def __init__(self, *arguments):
        super().__init__("virtual-amplifier", "--port", 0, *arguments)
        until(lambda: "\n" in self.output(), self)
        self.port = self.output().split("\n")[0].split()[-1]
        self._taken = 1

    def frames(self):
        """The lines of its log since the last call."""
        lines = self.output().splitlines()
        taken, self._taken = self._taken, len(lines)
        return lines[taken:]


def read_filters(path):
    """Addresses and words of a filter file of either shape."""
    addresses, data = [], []
    for token in pathlib.Path(path).read_text().split():
        value = int(token, 16)
        if not token.startswith("0x"):
            data.append(value)
        elif value != 0xFF:
            addresses.append(value)
    return addresses, [word for word, in struct.iter_unpack(">i", bytes(data))]


def decode(words):
    """Sections b0, b1, b2, a1, a2 of words of 26 bits, 23 of them behind the point."""
    values = [((word + 2**25) % 2**26 - 2**25) / 2**23 for word in words]
    return [(*values[i:i + 3], -values[i + 3], -values[i + 4]) for i in range(0, len(values), 5)]


def response_db(sections, hertz, rate):
    z = cmath.rect(1.0, -2.0 * math.pi * hertz / rate)
    return 20.0 * math.log10(abs(math.prod(
        (b0 + z * (b1 + z * b2)) / (1.0 + z * (a1 + z * a2)) for b0, b1, b2, a1, a2 in sections)))


def fir_db(taps, hertz, rate):
    z = cmath.rect(1.0, -2.0 * math.pi * hertz / rate)
    return 20.0 * math.log10(abs(sum(tap * z**n for n, tap in enumerate(taps) if tap)))


@dataclass(frozen=True)
class GoldenCase:
    """A case with an independent program's figures."""
    name: str
    response: str
    target: str

    def path(self, kind):
        return GOLDEN / f"{self.name}.{kind}"

    @cached_property
    def figures(self):
        return json.loads(self.path("json").read_text())

    def expect(self, words):
        """The response of these words is the case's: within 0.02 dB, 0.01 dB RMS."""
        assert len(words) == 35
        grid, rate = self.figures["gridHz"], self.figures["measuringRate"]
        sections = decode(words)
        off = [response_db(sections, hertz, rate) - level
               for hertz, level in zip(grid, self.figures["cascadeDb"], strict=True)]
        assert max(map(abs, off)) < 0.02
        assert math.sqrt(sum(x * x for x in off) / len(off)) < 0.01


GOLDEN_CASES = {case.response.split(".")[0]: case for case in (
    GoldenCase("small48-tilt6", "small48.qsr", "tilt6.txt"),
    GoldenCase("port44-warm3", "port44.qsr", "warm3.txt"),
    GoldenCase("logspaced-tilt6", "logspaced.csv", "tilt6.txt"))}


def qsr(rate, samples):
    """The bytes of a speaker response file."""
    return struct.pack(f"<i{len(samples)}d", rate, *samples)


def wav(rate, samples, channels=1):
    """The bytes of a wave file of 16-bit samples."""
    file = io.BytesIO()
    with wave.open(file, "wb") as out:
        out.setparams((channels, 2, rate, 0, "NONE", ""))
        out.writeframes(struct.pack(f"<{len(samples)}h", *samples))
    return file.getvalue()
