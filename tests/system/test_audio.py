"""The commands that play and capture, on simulated devices."""

import json

import pytest

from programs import EXAMPLES, cli, good, read_filters, wav

SPEAKER = f"simulated:{EXAMPLES}/small-speaker.qsr"


def test_measurement_leaves_the_file_that_gives_the_same_filter(folder):
    printed = good("measure", "--device", SPEAKER, "-o", "speaker.qsr", "--report", "r.json")
    assert "Measuring: 100 %\n" in printed
    assert "Wrote speaker.qsr\nWrote r.json\n" in printed
    report = json.loads((folder / "r.json").read_text())
    assert (report["device"], report["sampleRateHz"]) == (SPEAKER, 48000)
    assert report["delaySamples"] == 109 + 32  # the example's own, behind the lead
    assert (report["clippedSamples"], report["warnings"]) == (0, [])

    good("design", "speaker.qsr", "-o", "file.txt")
    printed = good("design", "--measure", "--device", SPEAKER, "-o", "once.txt")
    assert "Filter for the measurement on simulated:" in printed
    assert len(read_filters("file.txt")[1]) == 35
    assert (folder / "once.txt").read_bytes() == (folder / "file.txt").read_bytes()
    assert folder.names() == {"speaker.qsr", "r.json", "file.txt", "once.txt"}


def test_file_plays_to_its_end_from_where_it_is_asked_to(folder):
    folder.put("in.wav", wav(8000, [0] * 4_000_001))
    printed = good("play", "in.wav", "--device", "simulated", "--from", 450)
    assert "Playing in.wav on simulated, 08:21\n" in printed  # rounded up
    assert "Playing: 0 %" not in printed
    assert printed.endswith("Playing: 100 %\n")


@pytest.mark.parametrize("command", ["measure -o n", "design --measure -o n", "play in.wav"])
def test_without_a_sound_card_no_result_is_made_up(folder, command):
    folder.put("in.wav", wav(8000, [0]))
    done = cli(*command.split(), env={"ALSA_CONFIG_PATH": "/dev/null"})
    assert (done.code, folder.names()) == (1, {"in.wav"})
    assert "tonvane-cli: alsa: cannot be opened for playing" in done.err
