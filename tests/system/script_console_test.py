"""script/console, as it is typed: in a checkout of which this build is the release."""

import os
import shutil

import pytest

from programs import BUILD, LIMIT, ROOT, run
from terminal import Terminal

EXIT = " 99 : Exit"


@pytest.fixture
def checkout(folder):
    """Its packages are installed and all is built. Temporary files go to its folder "tmp"."""
    for name in ("script/console", "script/in-device", "script/lib"):
        (shutil.copytree if name.endswith("lib") else shutil.copy)(ROOT / name, make_parent(folder / name))
    for name in ("script/setup", "script/build"):
        (folder / name).write_text("#!/bin/sh\n")
        (folder / name).chmod(0o755)
    make_parent(folder / "build/release").symlink_to(BUILD)
    (folder / "tmp").mkdir()
    return folder


def make_parent(path):
    path.parent.mkdir(parents=True, exist_ok=True)
    return path


@pytest.fixture
def environment(checkout):
    others = {name: value for name, value in os.environ.items() if not name.startswith("NORVEX_")}
    return {**others, "TMPDIR": str(checkout / "tmp"), "NORVEX_LOG": str(checkout / "client.log")}


@pytest.fixture
def console(checkout, environment):
    def start(*arguments, **options):
        return run(checkout / "script/console", *arguments, env=environment, timeout=LIMIT, **options)
    return start


def assert_nothing_is_left(checkout):
    """Of the TV, whose socket and log are in the folder, and of the script."""
    assert not os.listdir(checkout / "tmp")


def test_the_words_of_an_argument_reach_a_tv_that_ends_with_the_console(console, checkout):
    shown = console("-c", "1 qos on 99 99").stdout
    assert "QoS is ON" in shown and shown.startswith("DebugUtil\n")
    assert_nothing_is_left(checkout)


def test_the_words_of_a_pipe_do_so_as_well(console):
    assert "QoS is ON" in console(input="1 qos on 99 99\n").stdout


def test_a_tv_that_is_named_is_used_and_stays(tv, checkout, environment, console):
    environment["NORVEX_SOCKET"] = tv.socket
    assert EXIT in console("-c", "1 99 99").stdout
    assert tv.operations()[0] == "IDebugPrintControl.Start"
    assert_nothing_is_left(checkout)


def test_the_status_is_the_hosts(console, folder, checkout):
    (folder / "words").write_text("1\nexpect \"no such text\" within 0.01\n")
    assert "no such text" in console("--script", folder / "words", status=3).stderr
    assert_nothing_is_left(checkout)


def test_the_scripts_help_and_the_hosts(console):
    assert console("--help").stdout.startswith("Usage: script/console")
    assert "Usage: zarn-debughost" in console("--", "--help").stdout


def test_control_c_ends_the_console_and_its_tv(checkout, environment):
    terminal = Terminal(str(checkout / "script/console"), environment=environment)
    terminal.expect_exact("cmd> ")
    terminal.sendintr()
    terminal.end()
    assert_nothing_is_left(checkout)
