"""What all tests in Python share. The programs are those of the build that ZARN_BUILD names: support/programs.py."""

import pathlib
import tempfile

import pytest

from norvex_tv import Tv


@pytest.fixture
def folder():
    """Of this test alone, with a short path: sockets are made in it."""
    with tempfile.TemporaryDirectory(prefix="zarn-") as name:
        yield pathlib.Path(name)


@pytest.fixture
def tv_off(folder):
    """A simulated TV that the test starts itself. It has to end well, and no sanitizer may have anything to say."""
    tv = Tv(folder)
    yield tv
    tv.close()


@pytest.fixture
def tv(tv_off):
    """A simulated TV that runs."""
    tv_off.start()
    return tv_off


@pytest.fixture(scope="module")
def shared_tv():
    """A simulated TV that runs, for tests of a module that leave it as it was."""
    with tempfile.TemporaryDirectory(prefix="zarn-") as name:
        tv = Tv(name)
        tv.start()
        yield tv
        tv.close()


@pytest.fixture
def client(tv):
    """A client of it."""
    with tv.connect() as connection:
        yield connection
