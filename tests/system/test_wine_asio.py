"""Measurements and faults on ASIO, by the programs for Windows."""

import struct
from pathlib import Path

import pytest

from servers import measured
from wine import built, put_ahead, windows_name, wine

pytest_plugins = ["wine"]
put_ahead(0)

LOOP, BROKEN = "asio:Loop driver", "asio:Broken driver"
BROKEN_KEY = r"HKLM\Software\asio\Broken driver"


@pytest.fixture(scope="module", autouse=True)
def drivers(server):
    """The loop driver, and one whose library is not there."""
    library = windows_name(built("asio-loop-driver.dll"))
    assert wine("regsvr32", "/s", library).code == 0
    wine("reg", "add", BROKEN_KEY, "/f", "/v", "clsid", "/d",
         "{00000000-1111-2222-3333-444444444444}")
    yield
    wine("regsvr32", "/s", "/u", library)
    wine("reg", "delete", BROKEN_KEY, "/f")


def on_loop(program, *arguments, words):
    return wine(program, *arguments, env={"TONVANE_LOOP": "speed=4 log=log " + words})


def test_every_driver_is_on_the_list_under_its_number():
    listed = wine("tonvane-cli.exe", "devices").out
    for part in ("200  winmm ", LOOP, BROKEN, "\n201  asio:", "\n202  asio:", "\n300  simulated "):
        assert part in listed


LOOPS = [  # latency, the sample rates that the driver is asked for, its words
    (1024, (48000,), "type=int32 frames=512 input=512 output=512"),
    (1101, (48000,), "type=float32 frames=256 input=300 output=801 ready=1"),
    (5000, (48000,), "type=int32 frames=1024 input=1 output=4999 ready=1"),
    (96, (44100, 48000), "type=float32 frames=96 input=96 output=0 rate=192000"),
    (128, (48000,), "type=int32 frames=64 input=64 output=64"),
    (4096, (48000,), "type=float32 frames=2048 input=2048 output=2048")]


@pytest.mark.parametrize("latency, rates, words", LOOPS)
def test_path_is_flat_and_in_place_and_the_driver_is_called_in_order(folder, latency, rates, words):
    measure = ("measure", "--device", LOOP, "-o", "out.qsr")
    done = on_loop("tonvane-cli.exe", *measure, words=words)
    assert done.code == 0, done.out
    assert measured("out.qsr") == (pytest.approx(0, abs=0.00001), 32)

    played = [2**31 - 1, -2**31, -2**31, 2**31 - 1, 1, -1]
    while len(played) < 40000:
        played.append((played[-1] * 1103515245 + 12345 + 2**31) % 2**32 - 2**31)
    folder.put("in", struct.pack("<40000i", *played))
    done = on_loop("device-probe.exe", LOOP, 48000, 2, "in", "out", 32768, words=words)
    assert done.out.replace("started\n", "") == f"latency {latency}\nxruns 0\nlost 0\n"
    asked = "".join(f"setSampleRate {rate}\n" for rate in rates)
    frames = words.split("frames=")[1].split()[0]
    assert Path("log").read_text().endswith(
        f"init\n{asked}createBuffers {frames} in0 in1 out0 out1\nstart\nstop\ndisposeBuffers\n"
        "disposeBuffers\ngone\n")
    captured = struct.unpack("<65536i", Path("out").read_bytes())
    wanted = ([0] * 2 * latency + played + [0] * 65536)[:65536]
    off = max(abs((a - b + 2**31) % 2**32 - 2**31) for a, b in zip(captured, wanted))
    assert off <= (0 if "int32" in words else 128)  # a step of a float, beyond the largest word


@pytest.mark.parametrize("words, device, complaint, is_shown", [
    ("fault=init", LOOP, "Number of channels (in, out) = (2, 2) is not supported", True),
    ("channels=1", LOOP, "Number of channels (in, out) = (2, 2) is not supported", True),
    ("fault=rate", LOOP, "Sample rate 48000 Hz is not supported", True),
    ("", BROKEN, "Failed to load ASIO driver: Broken driver", True),
    ("fault=buffers", LOOP, "The ASIO driver cannot be opened (error -994)", False),
    ("fault=start", LOOP, "the device was lost during the measurement", False),
    ("fault=stall", LOOP, "the device has stopped delivering", False),
    ("fault=resync", LOOP, "try again with nothing else running", False),
    ("type=int16", LOOP, "the device has delivered nothing", False)])
def test_fault_of_a_driver_is_told_of_and_the_driver_let_go(
        folder, words, device, complaint, is_shown):
    done = on_loop("tonvane-cli.exe", "measure", "--device", device, "-o", "out.qsr", "--timeout",
                   1, words=words)
    assert done.code == 1
    assert done.out.endswith(complaint + "\n")
    assert not Path("out.qsr").exists()
    if device == LOOP:
        assert Path("log").read_text().endswith("disposeBuffers\ngone\n")
    if is_shown:
        probed = on_loop("device-probe.exe", device, 48000, 2, "in", "out", 0, words=words)
        assert probed.code == 1
        assert probed.out == f"shown: {complaint}\nrefused: {complaint}\n"
