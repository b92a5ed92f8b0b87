"""tonvane-cli design and plot: the filter, what is told of it, its pictures."""

import json
import math
import re
from xml.etree import ElementTree

import pytest
from PIL import Image

from programs import (GOLDEN, GOLDEN_CASES, ONE_CORE, cli, decode, good, read_filters, response_db,
                      run)

RED, BLUE = "stroke:rgb(100%,0%,0%)", "stroke:rgb(0%,0%,100%)"


def report_of(folder, *arguments):
    good("design", *arguments, "-o", "f.txt", "--report", "r.json")
    return json.loads((folder / "r.json").read_text())


def test_filter_and_report_are_the_references(folder):
    case, figures = GOLDEN_CASES["small48"], GOLDEN_CASES["small48"].figures
    report = report_of(folder, GOLDEN / case.response, "--target", GOLDEN / case.target, "--format",
                       20, "--addresses", GOLDEN / "registeraddress.cfg", "--fit", "iterated")
    addresses, words = read_filters("f.txt")
    assert addresses == [0x29, 0x2A, 0x2B, 0x2C, 0x2D, 0x2E, 0x30]
    assert (folder / "f.txt").read_text().count("\n") == 7
    case.expect(words)
    good("design", GOLDEN / case.response, "--target", GOLDEN / case.target, "-o", "l.txt",
         "--fit", "iterated", "--solver", "lapack")
    case.expect(read_filters("l.txt")[1])
    assert read_filters("l.txt")[1] != words

    expected = {key: figures[key] for key in (
        "delaySamples", "polarity", "cutoffHz", "gainClampDb", "wrappedCoefficients")} | {
        "sampleRateHz": figures["measuringRate"],
        "loudnessDb": 10.0 * math.log10(figures["measuredLoudness"]),
        "levelDb": 10.0 * math.log10(figures["level"]),
        "loudnessRatioDb": 20.0 * math.log10(figures["loudnessRatio"])}
    assert {key: report[key] for key in expected} == pytest.approx(expected, abs=1e-6)
    assert report["fit"]["pass"] == figures["bestPass"] + 1
    assert report["fit"]["rmsDb"] == pytest.approx(figures["cascadeRmsDb"], abs=0.01)
    assert report["largestPoleRadius"] == pytest.approx(figures["maxPole"], abs=0.002)
    assert report["deviationAfterDb"] < report["deviationBeforeDb"]
    assert re.match(r"Inside .* rises 54\.3 dB", *report["warnings"])

    sections, curves = report["sections"], report["curves"]
    assert [int(word, 16) for section in sections for word in section["words"]] == words
    designed = [(*section["b"], *section["a"][1:]) for section in sections]
    assert max(report["poleRadii"]) == report["largestPoleRadius"]
    encoded = [response_db(decode(words), hertz, 48000) for hertz in curves["frequencyHz"]]
    off = [level - response_db(designed, hertz, 48000)
           for hertz, level in zip(curves["frequencyHz"], encoded)]
    assert curves["filterDb"] == pytest.approx(encoded, abs=1e-9)
    assert len(curves["targetDb"]) == len(curves["measuredDb"]) == len(encoded)
    assert report["highestGain"]["db"] > max(encoded) - 1e-3
    assert report["quantisation"]["largestHz"] == max(
        zip(map(abs, off), curves["frequencyHz"]))[1]
    assert report["quantisation"]["largestDb"] == pytest.approx(max(map(abs, off)), abs=1e-9)
    assert report["quantisation"]["rmsDb"] == pytest.approx(
        math.sqrt(sum(x * x for x in off) / len(off)), abs=1e-9)


# What a prototype of its own reached: RMS and largest error against the wanted correction, dB.
@pytest.mark.parametrize("name, rms, largest", [
    ("small48", 0.15, 0.73), ("port44", 0.10, 0.42), ("logspaced", 0.14, 0.52)])
def test_refined_fit_is_closer_and_stays_within_its_bounds(folder, name, rms, largest):
    case = GOLDEN_CASES[name]
    design = (GOLDEN / case.response, "--target", GOLDEN / case.target)
    refined = report_of(folder, *design)
    words = read_filters("f.txt")[1]
    iterated = report_of(folder, *design, "--fit", "iterated")
    case.expect(read_filters("f.txt")[1])
    assert (refined["fit"]["method"], iterated["fit"]["method"]) == ("refined", "iterated")
    assert refined["wanted"]["rmsDb"] < min(iterated["wanted"]["rmsDb"], rms + 0.02)
    assert refined["wanted"]["largestDb"] < largest + 0.1
    assert refined["highestGain"]["db"] + refined["gainClampDb"] < 0.002
    assert refined["warnings"] == []

    curves, rate = refined["curves"], refined["sampleRateHz"]
    off = [level - wanted for level, wanted in zip(curves["filterDb"], curves["wantedDb"])]
    assert refined["wanted"]["rmsDb"] == pytest.approx(
        math.sqrt(sum(x * x for x in off) / len(off)), abs=1e-9)
    sections = decode(words)
    hertz = curves["frequencyHz"][::4]
    behind = [max(response_db(sections[:count], x, rate) for x in hertz)
              for count in range(1, 8)]
    assert max(behind) - behind[-1] == pytest.approx(refined["inside"]["db"], abs=0.1)
    assert {*words[::5]} == {words[0]}
    summary = good("design", *design, "-o", "f.txt")
    assert f"{refined['noiseDb']:.1f} dB above that of one rounding" in summary
    plots = {good("plot", *design, "-o", "p.svg", "--caption", "", *fit) and
             (folder / "p.svg").read_text() for fit in ((), ("--fit", "refined"))}
    assert len(plots) == 1
    cli("plot", *design, "-o", "p.svg", "--caption", "", "--fit", "iterated")
    assert (folder / "p.svg").read_text() not in plots


def test_bump_of_a_table_is_cut_where_it_is(folder):
    folder.put("r.csv", "20,0\n2840,12\n3170,0\n20000,0\n")
    report = report_of(folder, "r.csv", "--rate", 96000)
    assert report["sampleRateHz"] == 96000
    _, deepest = min(zip(report["curves"]["filterDb"], report["curves"]["frequencyHz"]))
    assert deepest == pytest.approx(3000.0, abs=150.0)
    assert "delaySamples" not in report


def test_pages_and_pictures_are_of_the_design_that_is_asked_for(folder):
    speaker = 'a<b>&"c\'.qsr'
    folder.put(speaker, GOLDEN / "port44.qsr")
    options = ("--target", GOLDEN / "warm3.txt", "--gain-clamp", -4)
    good("design", speaker, "-o", "f.txt", "--report", "r.html", "--plot", "d.svg", *options)
    page, picture = (folder / "r.html").read_text(), (folder / "d.svg").read_text()
    assert page.startswith("<!DOCTYPE html>")
    text = "".join(ElementTree.fromstring(page).itertext())
    for part in speaker, "warm3.txt", "f.txt", "-4 dB":
        assert part in text
    drawing = picture[picture.index("<svg"):]
    assert drawing in page
    assert not re.search("<script|http|src=|href=|url[(]|@import|>nan", page.replace(drawing, ""))
    good("design", speaker, "-o", "f.txt", "--report", "w.html", "--gain-clamp", 0)
    warned = (folder / "w.html").read_text()
    assert warned.index("Look at this before shipping") < warned.index("<svg")
    good("plot", speaker, "-o", "p.svg", *options)
    assert (folder / "p.svg").read_text() == picture


def test_picture_has_the_kind_size_and_curves_that_are_asked_for(folder):
    def plot(name, *options):
        assert good("plot", GOLDEN / "port44.qsr", "-o", name, *options) == f"Wrote {name}\n"
        return (folder / name).read_bytes()
    plot("p.PNG")
    plot("q.png", "--size", "600x400", "--scale", 2)
    for name, size in ("p.PNG", (750, 300)), ("q.png", (1200, 800)):
        with Image.open(name) as image:
            image.load()
            assert (image.format, image.size) == ("PNG", size)
    assert plot("p.pdf").startswith(b"%PDF-")
    usual = plot("u.svg")
    assert plot("c.svg", "--caption", "\udcff another") != usual != plot("c.svg", "--caption", "")
    assert b'width="750px" height="300px"' in plot("a.svg", "--show", "all")
    for curves, red, blue in (("biquads", True, False), ("measured,target", False, True),
                              ("target,measured,biquads", True, True)):
        drawing = plot("p.svg", "--show", curves)
        assert (RED in drawing.decode(), BLUE in drawing.decode()) == (red, blue)
        assert (drawing == usual) == (red and blue)


def test_one_input_has_the_same_bytes_in_every_run(folder):
    """Also in a place where decimals have a comma, and on one core."""
    run("localedef", "-i", "de_DE", "-f", "UTF-8", folder / "de_DE.UTF-8")
    assert folder.names() == {"de_DE.UTF-8"}, "needs the sources of the Debian package locales"
    comma = {"env": {"LOCPATH": str(folder), "LC_ALL": "de_DE.UTF-8"}}
    for response in "small48.qsr", "logspaced.csv":
        folder.put(response, GOLDEN / response)
        results = set()
        for setting in {}, {}, comma, {"runner": ONE_CORE}:
            folder.put("t", GOLDEN / "tilt6.txt")
            good("-cmd", "48000", response, response[-3:], "b", "t", "-noprompt", **setting)
            printed = good("design", response, "-o", "f", "--report", "r", "--export", "apo=e",
                           **setting)
            results.add((printed, *((folder / name).read_bytes() for name in "b e f r t".split())))
        assert len(results) == 1
