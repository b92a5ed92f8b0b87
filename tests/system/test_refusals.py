"""What no command can serve: a line of complaint, the exit code, and every file as it was."""

import random
import re
import shlex

import pytest

from programs import BIN, EXAMPLES, GOLDEN, cli, qsr, run, wav

COMPLAINTS = [  # one line, exit code 1
    ("design none -o n", "none: cannot be opened"),
    ("design empty -o n", "empty: the file is empty"),
    ("design zero.qsr -o n", "zero.qsr: the response is silence"),
    ("design filters -o n", "filters:1: is a filter file"),
    ("design t.csv -o n --rate 7999", "--rate: expected 8000 to 192000"),
    ("design good.qsr -o n --rate 44100", "good.qsr: the file's sample rate is 48000 Hz"),
    ("design good.qsr -o n --target t.csv", "t.csv:1: expected -zerocurve"),
    ("design good.qsr -o n --addresses t.csv", 't.csv:1: expected "address'),
    ("design good.qsr -o old --report none/r", "none/r: cannot be written"),
    ("design good.qsr -o /dev/full", "/dev/full: cannot be written"),
    ("design good.qsr -o ./good.qsr", "good.qsr: would overwrite"),
    ("design t.csv --target old -o old", "old: would overwrite"),
    ("design t.csv -o n --report ./n", "n: would overwrite"),
    ("design t.csv -o n --export apo=n", "n: would overwrite"),
    ("design t.csv -o n --plot n.gif", "n.gif: expected a name that ends in .png, .svg or .pdf"),
    ("design t.csv -o n --plot n.png --size 300x100", "n.png: a picture of 300x100 has no room"),
    ("plot good.png -o good.png", "good.png: would overwrite"),
    ("plot t.csv -o n.png --size 9000x300", "--size: expected WIDTHxHEIGHT in pixels, at most"),
    ("plot t.csv -o n.png --size 8000x8000 --scale 8", "100 million pixels"),
    ("plot t.csv -o n.png --show target,noise", "there is no curve noise; expected all,"),
    ("convert t.csv n.qsr", "n.qsr: a table of levels has no phase"),
    ("convert t.csv t.csv", "t.csv: would overwrite"),
    ("convert t.csv n.csv --kind apo", "t.csv: is a response"),
    ("convert t.csv n.csv --channel 1", "--channel: only a wave file"),
    ("convert guess.csv old --strict", "guess.csv: the level is taken from"),
    ("convert named.wav n.csv --strict", "named.wav: taken for a table"),
    ("convert good.qsr n.yml", "n.yml: an impulse response can become"),
    ("convert raw.f32 n.qsr", "raw.f32: raw samples come without a sample rate"),
    ("convert cut.wav n.qsr", "cut.wav: is no wave file"),
    ("convert cut.txt n.json", "cut.txt:1: the file ends"),
    ("convert filters n.txt", "n.txt: say with --kind"),
    ("convert filters n --kind fir-wav", "n: a filter file holds no FIR"),
    ("measure -o n --rate 7999", "--rate: expected 8000 to 192000 Hz"),
    (f"measure -o n --device 'simulated:{EXAMPLES}/small-speaker.qsr' --rate 44100",
     "at 48000 Hz, not at the 44100"),
    ("measure -o good.qsr --device simulated:./good.qsr", "good.qsr: would overwrite"),
    ("measure -o n --report good.qsr --device simulated:good.qsr", "good.qsr: would overwrite"),
    ("design --measure -o good.qsr --device simulated:good.qsr", "good.qsr: would overwrite"),
    ("measure -o n --device gramophone", "gramophone: there is no such audio device"),
    ("measure -o n --device alsa:gramophone",
     'Cannot open the ALSA device "gramophone" for capture: No such file or directory'),
    ("measure -o n --device simulated --report n", "n: would overwrite another file"),
    ("play none.wav --device simulated", "none.wav: cannot be opened"),
    ("play t.csv --device simulated", "t.csv: is no wave file"),
    ("play 2s.wav --device simulated --from 2.5", "2s.wav: the file ends after 2.00 seconds"),
    ("play silent.wav --device simulated", "silent.wav: the file holds no sound"),
    ("play law.wav --device simulated", "law.wav: expected 8 to 32 bit integers or float32 samples"),
    ("play fast.wav --device simulated", "fast.wav: the file's sample rate is 2100000000 Hz"),
    ("design t.csv -o n --solver lapack", "--solver: is for the iterated fit"),
    ("play /dev/null --device simulated", "/dev/null: is no plain file"),
    ("link read 78", "78: there is no such register; the last one is 77"),
    ("link read 55", "55: the register has no contents"),
    ("link read Volume", "Volume: expected a register's number"),
    ("link write 07 100", "100: expected a word of 1 to 2 hexadecimal digits"),
    ("link write 29 1 2 3 4", "29: the register takes 5 words, not 4"),
    ("link program volume", "volume: 07 Master Vol is no register for a filter"),
    ("link program twice", "twice: 2A PEQ Coef L1 stands twice"),
    ("link crossover 9", "9: expected a frequency of 10 to 23999 Hz"),
    ("link crossover 1k", "1k: expected a frequency in whole Hz, or off"),
    ("link drc 1 --rate 1", "--rate: expected 8000 to 192000 Hz"),
]
USAGES = [  # exit code 2
    "", "tune", "design", "plot t.csv", "convert t.csv", "measure", "play", "link", "link read",
    "design t.csv", "design t.csv --measure -o n", "design t.csv -o n --faster",
    "design t.csv -o n --fit best", "design t.csv -o n --gain-clamp 1", "design t.csv -o n --format 5",
    "design t.csv -o n --rate fast", "design t.csv -o n --size 600x400",
    "design t.csv -o n --export apo", "design t.csv -o n --export none=x",
    "plot t.csv -o n.png --scale 0", "convert filters n --kind none", "play t.csv --from -1",
    "''", "design t.csv '' -o n", "design --measure '' -o n", "play t.csv --from nan",
    "design t.csv -o ''", "design t.csv -o n --report ''", "design t.csv -o n --plot ''",
    "design t.csv -o n --target ''", "design t.csv -o n --addresses ''", "plot t.csv -o ''",
    "measure -o ''", "measure -o n --report ''", "link write 07", "link drc 3", "link read 07 --timeout 0", "link --port 70000 read 07",
]
BATCHES = [  # exit code 0 in spite of the complaint; what is written all the same
    ("'' none qsr f t", "Error: Failed to open speaker response file\n", ""),
    ("'' none csv f t", "Error: Failed to process data.\n", "t"),
    ("'' good.qsr csv f t", "Error: Failed to process data.\n", "t"),
    ("'' good.qsr qsr f none/t", "Error: Failed to save Target Response data.\n", "f"),
    ("'' zero.qsr qsr f t", "Warning: zero.qsr: the response is silence\nWarning: The design did not "
     "give numbers; do not use the filter.\nWarning: With a gain clamp", "f t"),
    ("'' good.qsr qsr none/f t", "none/f: cannot be written: No such file", "t"),
    ("'' good.qsr qsr /none/f t", "//none/f: cannot be written: No such file", "t"),
    ("'' good.qsr qsr '' t", "", ""),
    ("'' good.qsr qsr f ''", "", "f"),
    ("'' good.qsr qsr f f", "Warning: f: is the filter file as well", "f"),
    ("'' good.qsr qsr good.qsr t", "good.qsr: cannot be written: it is the response\n", "t"),
    ("'' cut.qsr qsr f t", "Warning: cut.qsr: ends after 44 of 262148 bytes", "f t"),
    ("'' gap.csv csv f t", "Warning: gap.csv: not every line", "f t"),
    ("'' '' qsr f t", "Warning: no response is given", ""),
    ("48000", "Warning: no response is given", ""),
]


GOOD, SILENCE = qsr(48000, [1.0] + [0.0] * 32767), qsr(48000, [0.0] * 32768)
FILTERS = (GOLDEN / "port44-warm3.filter.txt").read_text()
INPUTS = {
    "good.qsr": GOOD, "good.png": GOOD, "zero.qsr": SILENCE, "empty": "", "old": "old",
    "cut.qsr": GOOD[:44], "gap.csv": "20,1\n30\n40,1\n20000,2\n", "t.csv": "20,1\n", "guess.csv": "20,1,2,3.5\n", "named.wav": "20,1\n", "cut.wav": "RIFF",
    "silent.wav": wav(8000, []), "2s.wav": wav(8000, [0] * 16001),
    "law.wav": wav(8000, [0]).replace(b"\1\0\1\0", b"\7\0\1\0"), "fast.wav": wav(2100000000, [0]), "raw.f32": b"\0\0\x80\x3F",
    "filters": FILTERS, "cut.txt": "0x29 00 80 00 00\n", "volume": "0x07" + FILTERS[4:],
    "twice": "0x2A" + FILTERS[4:],
}


@pytest.mark.parametrize("command, code, complaint, written", [
    *((command, 1, complaint, "") for command, complaint in COMPLAINTS),
    *((command, 2, "", "") for command in USAGES),
    *(("-cmd " + words, 0, complaint, written) for words, complaint, written in BATCHES)])
def test_what_cannot_be_served_is_told_and_leaves_the_files(
        folder, amplifier, command, code, complaint, written):
    for name, contents in INPUTS.items():
        folder.put(name, contents)
    before = {name: (folder / name).read_bytes() for name in INPUTS}
    done = cli(*shlex.split(command.replace("link ", f"link --port {amplifier.port} ", 1)))
    assert done.code == code
    assert folder.names() == {*INPUTS, *written.split()}
    assert {name: (folder / name).read_bytes() for name in INPUTS} == before
    assert amplifier.frames() == []
    assert complaint in done.err
    assert (done.err == "") == (code == 0 and complaint == "")
    if code == 1:
        assert done.err.startswith("tonvane-cli: ")
        assert done.err.count("\n") == 1


@pytest.mark.parametrize("command", [
    "design --device simulated", "plot", "convert", "measure --device simulated",
    "play --device simulated", "link --dry-run", "link --dry-run drc", "devices"])
def test_every_list_of_options_comes_to_an_end(folder, command):
    folder.put("t.csv", INPUTS["t.csv"])
    options = re.findall(r"^ +(?:-\w,)?(--[a-z-]+)", cli(*command.split(), "--help").out, re.M)
    words = [*({*options} - {"--program", "--device"}), "", "", "t.csv", "n", "1", "-o", "--"]
    choice = random.Random(command)
    for _ in range(20):
        chosen = choice.choices(words, k=choice.randrange(6))
        assert cli(*command.split(), *chosen, limit=20).code in (0, 1, 2), chosen


@pytest.mark.parametrize("command", ["--help", "devices", "link --dry-run read 07",
                                     f"design {EXAMPLES}/small-speaker.csv -o n"])
def test_full_standard_output_is_an_error(folder, command):
    done = run("sh", "-c", f"'{BIN}/tonvane-cli' {command} >/dev/full")
    assert (done.code, done.err) == (1, "tonvane-cli: standard output cannot be written\n")


def test_file_that_is_standard_output_has_it_to_itself(folder):
    design = f"'{BIN}/tonvane-cli' design '{EXAMPLES}/small-speaker.csv' -o"
    for command in f"{design} f", f"{design} /dev/stdout > g", f"{design} /dev/stdout | cat > h":
        assert run("sh", "-c", command).code == 0
    assert (folder / "f").read_text() == (folder / "g").read_text() == (folder / "h").read_text()


@pytest.mark.parametrize("question, part", [
    ("--version", "tonvane-cli 0."), ("--help", "-cmd RATE RESPONSE"), ("devices", "simulated"),
    ("design --help", "--gain-clamp"), ("link drc --help", "--threshold")])
def test_what_is_asked_about_the_program_is_told(question, part):
    done = cli(*question.split())
    assert (done.code, done.err) == (0, "")
    assert part in done.out
