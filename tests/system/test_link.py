"""tonvane-cli link and design --program against the virtual amplifier."""

import pathlib
import signal

import pytest

from programs import GOLDEN, LIMIT, Amplifier, Running, cli, good, read_filters, until

UNITY = "00800000 00000000 00000000 00000000 00000000 (1, 0, 0, 0, 0)"
TRIM = "write 1B Oscilator Trim: 80"
PERIOD = "read 1A Start/Stop Period: 1 byte"
PATIENT = ("--timeout", 1000 * LIMIT)
FILTERS = GOLDEN / "small48-tilt6.filter.txt"
NAMES = ("29 PEQ Coef L0", "2A PEQ Coef L1", "2B PEQ Coef L2", "2C PEQ Coef L3", "2D PEQ Coef L4",
         "2E PEQ Coef L5", "30 PEQ Coef R0")  # in that file


@pytest.fixture
def link(amplifier, folder):
    """What a link command prints."""
    return lambda *arguments: good("link", "--port", amplifier.port, *PATIENT, *arguments)


def stopped(*lines):
    """The frames of a connection that does something while the audio is stopped."""
    return [TRIM, PERIOD, "write 05 System Control 2: 40", *lines, PERIOD,
            "write 05 System Control 2: 00"]


def sections(path):
    """The words of each section in hexadecimal."""
    words = [f"{word:08X}" for word in read_filters(path)[1]]
    return [" ".join(words[i:i + 5]) for i in range(0, len(words), 5)]


def test_single_registers_are_read_and_written(amplifier, link):
    link("write", "Master Vol", "0x30")
    link("write", "51", "1", "800000")
    assert amplifier.frames() == [
        TRIM, "write 07 Master Vol: 30",
        TRIM, "write 51 Out: [L-L R-L]: 00000001 00800000 (1.1920929e-07, 1)"]
    assert link("read", "7") == "07 Master Vol: 30\n"
    assert link("read", "peq coef l0") == f"29 PEQ Coef L0: {UNITY}\n"
    link("write", "29", "800000", "0", "0", "0", "0")
    assert amplifier.frames()[-1] == "  ! written while the audio runs"
    assert amplifier.end() == 0


def test_filter_file_is_programmed_and_read_back(amplifier, link, folder):
    assert link("program", FILTERS) == "Wrote 7 registers, read back and compared\n"
    frames = [frame.partition(" (")[0] for frame in amplifier.frames()]
    assert frames == [
        *stopped(*(f"write {name}: {text}" for name, text in zip(NAMES, sections(FILTERS)))),
        *(f"read {name}: 20 bytes" for name in NAMES)]
    link("dump", "dump.dat")
    dump = (folder / "dump.dat").read_text()
    assert dump.count("\n") == 120
    assert all(f"\t{text}\n" in dump for text in sections(FILTERS))


def test_groups_are_written_while_the_audio_is_stopped(amplifier, link, folder):
    off = stopped(
        f"write 58 BIQ for DRC1 - L0: {UNITY}", f"write 59 BIQ for DRC1 - L1: {UNITY}",
        "write 70 DRC1 Out Weight L: 00800000 (1)", f"write 5A BIQ for DRC2 - L0: {UNITY}",
        f"write 5B BIQ for DRC2 - L1: {UNITY}", "write 71 DRC2 Out Weight L: 00000000 (0)")
    dry = link("--dry-run", "crossover", "off").splitlines()
    assert [dry.pop(1), dry.pop(3), dry.pop()] == ["wait 240 ms", "wait 23 ms", "wait 23 ms"]
    assert dry == off
    for command in ["read", "29"], ["dump", "d"], ["watch"]:
        link(*command, "--dry-run")
    assert (amplifier.frames(), folder.names()) == ([], set())
    link("crossover", "off")
    assert amplifier.frames() == off
    link("drc", "2", "--threshold", "0", "--release", "5000")
    words = [frame.split(" (")[0].split(": ")[1] for frame in amplifier.frames()[3:7]]
    assert words == ["00020022", "0002A39B 007D5C65", "000000AF FFFFFFDD", "08000000 07FFFFFF"]
    link("preset")
    assert len(amplifier.frames()) == len(stopped(*range(32)))


def test_design_is_sent_as_its_filter_file_has_it(amplifier, folder):
    design = ("design", GOLDEN / "port44.qsr", "-o", "f.txt", "--program", *PATIENT, "--port",
              amplifier.port)
    assert good(*design).endswith("Programmed the amplifier\n")
    frames, texts = amplifier.frames(), sections("f.txt")
    assert len(frames) == len(stopped(*texts, *texts))  # and read back
    assert all(f" PEQ Coef L{k}: {text}" in frames[3 + k] for k, text in enumerate(texts))


@pytest.mark.parametrize("fault, command, complaint", [
    ("silent", ("link", "read", "07", "--timeout", 1), "answered 0 of 1 bytes within 1 ms"),
    ("closing --after 5", ("link", "program", FILTERS, *PATIENT),
     "at the write of 2B PEQ Coef L2; 2 of 7 registers are written, and the amplifier may"),
    ("closing --after 20", ("link", "dump", "d", *PATIENT), "closed the connection after 0 of"),
    ("garbage", ("link", "program", FILTERS, *PATIENT),
     "all registers are written, but 29 PEQ Coef L0 does not read back as it was written"),
    ("garbage", ("design", GOLDEN / "port44.qsr", "-o", "f.txt", "--program", *PATIENT),
     "all registers are written, but 29 PEQ Coef L0 does not read back as it was written"),
    ("garbage", ("link", "dump", "none/d", *PATIENT), "none/d: cannot be written"),
])
def test_what_went_wrong_is_told_and_no_half_a_file_written(folder, fault, command, complaint):
    with Amplifier("--fault", *fault.split()) as faulty:
        done = cli(*command, "--port", faulty.port)
    assert (done.code, done.err.count("\n"), folder.names() - {"f.txt"}) == (1, 1, set())
    assert complaint in done.err


def test_ctrl_c_waits_until_the_amplifier_runs_with_a_whole_filter():
    with Amplifier("--fault", "pausing", "--after", 5) as pausing:
        words = "link", "program", FILTERS, *PATIENT, "--port", pausing.port
        status = pathlib.Path(f"/proc/{pausing.process.pid}/status")
        with Running("tonvane-cli", *words) as program:
            until(lambda: "State:\tT" in status.read_text(), program)
            program.process.send_signal(signal.SIGINT)
            pausing.process.send_signal(signal.SIGCONT)
            assert program.process.wait(LIMIT) == 130
            assert "the amplifier runs" in program.output()
        assert len(pausing.frames()) == len(stopped(*NAMES))


def test_nothing_printed_reaches_the_amplifier_without_a_standard_output(amplifier):
    watch = cli("link", "--port", amplifier.port, *PATIENT, "watch", "--interval", 0, "--rounds", 1,
                runner=("sh", "-c", 'exec "$@" >&-', "sh"))
    assert "server" not in watch.err
    assert len(amplifier.frames()) == 1 + 2 * 119


def test_watching_prints_what_has_changed():
    with Amplifier("--fault", "garbage", "--after", 1 + 2 * 119) as changing:  # from the third look
        printed = good("link", "--port", changing.port, *PATIENT, "watch", "--interval", 0,
                       "--rounds", 3).splitlines()
        assert len(changing.frames()) == 1 + 4 * 119
    assert printed[0] == "Watching all registers"
    assert len(printed) == 1 + 119
    assert "07 Master Vol: 00" in printed
