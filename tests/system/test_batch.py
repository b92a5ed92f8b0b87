"""tonvane-cli -cmd, as calling tools start it."""

import pytest

from programs import GOLDEN, GOLDEN_CASES, cli, good, qsr, read_filters


def crlf(path):
    return path.read_bytes().replace(b"\n", b"\r\n")


def expect_reference(folder, name, lines, *arguments):
    """A run with f.txt and t.txt as filter and target file writes what the reference has."""
    good("-cmd", *arguments)
    assert (folder / "f.txt").read_text().count("\n") == lines
    addresses, words = read_filters("f.txt")
    GOLDEN_CASES[name].expect(words)
    assert (folder / "t.txt").read_bytes() == GOLDEN_CASES[name].path("target.txt").read_bytes()
    return addresses


def test_files_from_windows_are_taken_as_they_are(folder):
    folder.put("small48.qsr", GOLDEN / "small48.qsr")
    folder.put("t.txt", crlf(GOLDEN / "tilt6.txt"))
    folder.put("registeraddress.cfg", crlf(GOLDEN / "registeraddress.cfg"))
    # An empty rate is 48000 Hz, and capitals in the response's name do not matter.
    assert expect_reference(folder, "small48", 35, "", "SMALL48.qsr", "qsr", ".\\f.txt", "t.txt",
                            "-noprompt") == [0x29, 0x2A, 0x2B, 0x2C, 0x2D, 0x2E, 0x30]


def test_response_with_capitals_is_found_as_it_is_given(folder):
    folder.put("Port44.QSR", GOLDEN / "port44.qsr")
    (folder / "port44.qsr").mkdir()  # is no file
    folder.put("t.txt", GOLDEN / "warm3.txt")
    expect_reference(folder, "port44", 7, "44100", "Port44.QSR", "qsr", "f.txt", "t.txt")


def test_paths_may_be_whole_and_have_blanks(folder):
    (folder / "My speakers").mkdir()
    folder.put("My speakers/log spaced.csv", GOLDEN / "logspaced.csv")
    folder.put("t.txt", GOLDEN / "tilt6.txt")
    expect_reference(folder, "logspaced", 7, "48000", folder / "My speakers/log spaced.csv", "csv",
                     "f.txt", folder / "t.txt", "-noprompt")


def test_target_file_that_does_not_load_is_kept_beside(folder):
    folder.put("r.qsr", GOLDEN / "small48.qsr")
    damaged = (GOLDEN / "tilt6.txt").read_text().replace(",", ";", 1)
    folder.put("t", damaged)
    command = "-cmd", "", "r.qsr", "qsr", "f", "t", "-noprompt"
    done = cli(*command)
    assert done.err == ("Error: Failed to load desired response data. File is missing.\n"
                        "Warning: t: did not load; what it held is in t.bak\n")
    assert (folder / "t.bak").read_text() == damaged
    good(*command)  # by now it loads

    folder.put("t", damaged)
    (folder / "t.bak").unlink()
    (folder / "t.bak").mkdir()
    assert "Warning: t: did not load, and stays as it is" in cli(*command).err
    assert (folder / "t").read_text() == damaged


@pytest.mark.parametrize("rate", [0, 1, -48000, -2**31, 2**31 - 1])
def test_filter_file_is_written_whatever_the_rate_of_the_response(folder, rate):
    folder.put("r.qsr", qsr(rate, []) + (GOLDEN / "small48.qsr").read_bytes()[4:])
    assert cli("-cmd", "48000", "r.qsr", "qsr", "f", "").code == 0
    assert len(read_filters("f")[1]) == 35
