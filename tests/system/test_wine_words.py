"""tonvane-cli for Windows has the same words as that for Linux, from files of any name."""

from pathlib import Path

import pytest

from programs import EXAMPLES, GOLDEN, GOLDEN_CASES, good, read_filters, wav
from wine import built, windows_name, wine

pytest_plugins = ["wine"]


def expect_same(*arguments):
    def written():
        return [Path(name).read_bytes() for name in ("f.txt", "t.txt")]

    good(*arguments)
    filters, target = written()
    Path("f.txt").write_text("old")  # the program has to replace a file that is there
    assert wine("tonvane-cli.exe", *arguments).code == 0
    assert written()[0] == filters.replace(b"\n", b"\r\n")
    is_written = arguments[0] == "-cmd"
    assert written()[1] == (target.replace(b"\n", b"\r\n") if is_written else target)


@pytest.mark.parametrize("name", GOLDEN_CASES)
def test_words_of_a_batch_start_are_those_of_linux(folder, name):
    case = GOLDEN_CASES[name]
    folder.put("response", GOLDEN / case.response)
    folder.put("t.txt", GOLDEN / case.target)
    rate = case.figures["measuringRate"]
    expect_same("-cmd", rate, "response", case.response[-3:], "f.txt", "t.txt", "-noprompt")


@pytest.mark.parametrize("response", ["small-speaker.qsr", "small-speaker.csv"])
@pytest.mark.parametrize("target", ["target-flat.txt", "target-warm.txt"])
def test_words_of_the_examples_are_those_of_linux(folder, response, target):
    folder.put("t.txt", EXAMPLES / target)
    expect_same("design", EXAMPLES / response, "--target", "t.txt", "-o", "f.txt")


@pytest.mark.parametrize("line, filters", [
    ("-cmd 48000 response  csv f.txt", "csv"),  # an empty word between two blanks
    ('-cmd "48000\\" response csv f.txt', "f.txt"),
    ('-cmd 48000 response csv xf.txt"', "f.txt")])
def test_command_line_of_a_calling_tool_is_taken_as_it_stands(folder, line, filters):
    folder.put("response", GOLDEN / "logspaced.csv")
    folder.put("run.bat", f'@"{windows_name(built("tonvane-cli.exe"))}" {line}\r\n')
    assert wine("cmd", "/c", "run.bat").code == 0
    assert len(read_filters(filters)[1]) == 35


def test_names_of_files_may_have_any_letters(folder):
    name = "\u00FC\u0416\u97F3 speaker"
    folder.put(name + ".qsr", GOLDEN / "small48.qsr")
    folder.put(name + ".wav", wav(48000, [0] * 4800))
    assert wine("tonvane-cli.exe", "design", name + ".qsr", "-o", name + ".txt").code == 0
    assert len(read_filters(name + ".txt")[1]) == 35
    assert wine("tonvane-cli.exe", "play", name + ".wav", "--device", "simulated").code == 0
