"""The example files, and the program that makes them."""

from programs import EXAMPLES, Folder, good, read_filters, run


def test_example_files_are_those_that_their_program_makes(folder):
    for _ in "made", "made again":
        assert run("make-example-speaker", folder).code == 0
        assert folder.names() == Folder(EXAMPLES).names() - {"README.md"}
        for name in folder.names():
            assert (folder / name).read_bytes() == (EXAMPLES / name).read_bytes(), name
    assert run("make-example-speaker", folder / "none").code == 1


def test_example_files_can_be_used_together(folder):
    for response in "small-speaker.qsr", "small-speaker.csv":
        for target in "target-flat.txt", "target-warm.txt", "target-saved.txt":
            good("design", EXAMPLES / response, "--target", EXAMPLES / target, "--strict",
                 "--addresses", EXAMPLES / "registeraddress.cfg", "-o", "f")
            assert len(read_filters("f")[1]) == 35
