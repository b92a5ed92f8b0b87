"""Inputs of every kind, and results for other programs."""

import json
import re
import struct

import pytest

from programs import (BIN, GOLDEN, GOLDEN_CASES, cli, decode, fir_db, good, qsr, read_filters, run,
                      wav)

CASE = GOLDEN_CASES["port44"]


def floats(data):
    return [value for value, in struct.iter_unpack("<f", data)]


def test_impulse_response_has_the_same_filter_in_every_form(folder):
    folder.put("r.qsr", GOLDEN / CASE.response)
    good("convert", "r.qsr", "r.wav")
    good("convert", "r.wav", "r.f32")
    good("convert", "r.f32", "again.qsr", "--rate", 44100)
    samples = floats((folder / "r.f32").read_bytes())
    assert (folder / "again.qsr").read_bytes() == qsr(44100, samples)
    for form in ["r.wav"], ["r.f32", "--rate", 44100], ["again.qsr", "--strict"]:
        good("design", *form, "-o", "f", "--target", GOLDEN / CASE.target, "--fit", "iterated")
        CASE.expect(read_filters("f")[1])


@pytest.mark.parametrize("response", ["port44.qsr", "logspaced.csv", "port44.wav"])
def test_response_from_a_pipe_has_the_filter_of_the_file(folder, response):
    source = GOLDEN / response
    if response.endswith("wav"):
        source = folder / response
        good("convert", GOLDEN / CASE.response, source)
    good("design", source, "-o", "f")
    piped = 'cat "$1" | "$2" design /dev/stdin -o p'
    assert run("sh", "-c", piped, "sh", source, BIN / "tonvane-cli").code == 0
    assert (folder / "p").read_bytes() == (folder / "f").read_bytes()


def test_spectrum_is_that_of_the_samples(folder):
    folder.put("r.qsr", qsr(44100, [0.0, 0.5, 0.0, 0.25] + [0.0] * 32764))
    good("convert", "r.qsr", "s.csv")
    rows = [tuple(map(float, row.split(","))) for row in (folder / "s.csv").read_text().split()]
    assert [hertz for hertz, _ in rows] == [k * 44100 / 32768 for k in range(1, 16385)]
    assert [level for _, level in rows] == pytest.approx(
        [fir_db([0.0, 0.5, 0.0, 0.25], hertz, 44100) for hertz, _ in rows], abs=1e-6)


def test_channel_is_the_one_that_is_asked_for(folder):
    folder.put("r.wav", wav(48000, [n % 2 * (n < 9) * 1000 for n in range(2 * 32768)], channels=2))
    good("convert", "r.wav", "right.f32", "--channel", 2)
    assert floats((folder / "right.f32").read_bytes())[:6] == [1000 / 32768] * 4 + [0.0] * 2


def test_table_becomes_one_for_calling_tools(folder):
    folder.put("in.txt", "Freq\tdB\r\n1.000,5\t-3,25\r\n20\t1\r\n30.000\t2\r\n")
    done = cli("convert", "in.txt", "out.csv", "--rate", 48000)
    assert done.code == 0
    assert (folder / "out.csv").read_text() == "20.0,1.0\n1000.5,-3.25\n24000.0,-3.25\n"
    assert "Note: in.txt: 1 row above 24000 Hz" in done.err
    assert "decimal commas" in done.err
    cli("convert", "in.txt", "out.frd")
    assert (folder / "out.frd").read_text() == "20.0,1.0\n1000.5,-3.25\n30000.0,2.0\n"


# Where a reader of each kind finds b0, b1, b2, a1 and a2, and the sign of its feedback.
KINDS = {
    "apo": (r"Coefficients (\S+) (\S+) (\S+) 1\.0 (\S+) (\S+)\n", 1),
    "camilladsp": (r"b0: (.+)\s+b1: (.+)\s+b2: (.+)\s+a1: (.+)\s+a2: (.+)", 1),
    "minidsp": (r"b0=(.+),\nb1=(.+),\nb2=(.+),\na1=(.+),\na2=([^,\n]+)", -1),
    "csv": (r"\d,(.+),(.+),(.+),(.+),(.+)", 1),
    "json": (r'"b": \[\s+(.+),\s+(.+),\s+(.+)\s+\],\s+"a": \[\s+1\.0,\s+(.+),\s+(.+)\s', 1),
}


def test_exports_of_a_design_and_of_its_filter_file_are_read_back_alike(folder):
    wanted = [f"--export={kind}=d.{kind}" for kind in (*KINDS, "fir-text", "fir-wav")]
    good("design", GOLDEN / CASE.response, "-o", "f", "--report", "r.json", *wanted)
    sections = decode(read_filters("f")[1])
    for kind, (pattern, sign) in KINDS.items():
        good("convert", "f", "c." + kind, "--kind", kind, "--rate", 44100)
        text = (folder / ("d." + kind)).read_text()
        assert text == (folder / ("c." + kind)).read_text()
        found = [tuple(map(float, section)) for section in re.findall(pattern, text)]
        assert found == [(*b, sign * a1, sign * a2) for *b, a1, a2 in sections], kind

    taps = [float(line) for line in (folder / "d.fir-text").read_text().split()]
    sound = (folder / "d.fir-wav").read_bytes()
    assert floats(sound[sound.index(b"data") + 8:]) == pytest.approx(taps, rel=1e-6)
    report = json.loads((folder / "r.json").read_text())
    assert f"Highest gain {report['highestGain']['db']:.2f} dB" in (folder / "d.apo").read_text()
    for hertz, level in list(zip(report["curves"]["frequencyHz"], report["curves"]["firDb"]))[::50]:
        # The report has the level drop of the gain clamp taken out.
        assert fir_db(taps, hertz, 44100) - report["gainClampDb"] == pytest.approx(level, abs=1e-6)
