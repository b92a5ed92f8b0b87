"""System calls fail, one in a run: what comes of it is what a good run leaves, or the command says that
it is not. strace makes them fail."""

import collections
import concurrent.futures
import re
import shutil

import pytest

from programs import BIN, GOLDEN, Folder, run, wav

COMMANDS = {  # and the files that they write
    "design r.qsr -o f --target t --report j --export apo=e": "f j e",
    "design r.csv -o f": "f",
    "plot r.qsr -o p.svg": "p.svg",
    "convert r.wav r.f32": "r.f32",
    "convert filters e.json": "e.json",
    "measure -o m.qsr --report j --device simulated:r.qsr": "m.qsr j",
    "play r.wav --device simulated": "",
    "devices": "",
    "link --port PORT program filters": "",
    "link --port PORT dump d": "d",
    "-cmd 48000 r.qsr qsr f t -noprompt": "f t",
    "-cmd 48000 r.csv csv f t -noprompt": "f t",
}
INPUTS = {"r.qsr": GOLDEN / "small48.qsr", "r.csv": GOLDEN / "logspaced.csv",
          "r.wav": wav(48000, [9999] + 32767 * [0]), "t": GOLDEN / "tilt6.txt",
          "filters": GOLDEN / "port44-warm3.filter.txt"}
MOST = 12  # failures of one kind of call, spread over the run
NEVER = {"execve", "exit", "exit_group", "futex", "rt_sigreturn"}  # have no failure to tell of


def attempt(place, command, outputs, *options):
    """A run in a new folder: its end, the calls that it made, what it printed and wrote, the names."""
    place.mkdir()
    for name, contents in {**dict.fromkeys(outputs, "old"), **INPUTS}.items():
        place.put(name, contents)
    done = run("strace", "-f", "-qq", "-o", "log", *options, BIN / "tonvane-cli",
               *command.split(), cwd=place, limit=20)
    calls = re.findall(r"^\d+ +(\w+)\(", (place / "log").read_text(errors="replace"), re.M)
    printed = [line for line in done.out.splitlines() if "%" not in line]  # no progress
    left = [(place / name).read_bytes() for name in outputs]
    if "p.svg" in outputs:  # is whole: what fonts there are is the system's affair
        left = [left[0][-7:]]
    return done, collections.Counter(calls), printed, left, place.names()


@pytest.mark.skipif(not shutil.which("strace"), reason="NOT TESTED: there is no strace")
@pytest.mark.parametrize("command", COMMANDS)
def test_no_call_fails_unnoticed(folder, amplifier, command):
    outputs = COMMANDS[command].split()
    command = command.replace("PORT", amplifier.port)
    good, calls, printed, new, names = attempt(Folder(folder / "good"), command, outputs)
    assert (good.code, good.err) == (0, "")
    loading = attempt(Folder(folder / "loading"), "--version", [])[1]
    old = [b"old"] * len(outputs)

    def complaint(fault):
        call, number = fault
        done, _, told, left, found = attempt(
            Folder(folder / f"{call}{number}"), command, outputs,
            "-e", f"inject={call}:error=EIO:when={number}")
        batch = command.startswith("-cmd")
        said = done.code != 0 or (batch and done.err != "")
        as_it_was = left == new or (said and (batch or left == old))
        clean = found == names or batch or call == "unlink"
        return "" if as_it_was and clean and (said or told == printed) else f"{fault}: {done} {found}"

    faults = [(call, number) for call, count in calls.items() if call not in NEVER
              for number in range(loading[call] + 1, count + 1,
                                  max(count - loading[call], 0) // MOST + 1)]
    with concurrent.futures.ThreadPoolExecutor() as pool:
        assert [text for text in pool.map(complaint, faults) if text] == []
