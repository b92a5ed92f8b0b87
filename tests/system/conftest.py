import tempfile

import pytest

pytest.register_assert_rewrite("programs", "desks", "screen", "servers", "wine")

from programs import Amplifier, Folder


@pytest.fixture
def folder(monkeypatch):
    """The test runs in it."""
    with tempfile.TemporaryDirectory(prefix="tonvane test ") as place:
        monkeypatch.chdir(place)
        yield Folder(place)


@pytest.fixture
def amplifier():
    with Amplifier() as beside:
        yield beside
