"""script/console, as it is typed: in a checkout of which this build is the release."""

import os
import pathlib
import select
import shutil
import signal
import socket
import struct
import subprocess

import pytest

from programs import BUILD, LIMIT, ROOT, can_mount, refusal, run
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


def read_until(stream, text):
    got = b""
    while not got.endswith(text):
        piece = os.read(stream.fileno(), 4096)
        assert piece, f"the output ended with {got!r}"
        got += piece


class Watched:
    """Another process, and its end."""

    def __init__(self, number):
        self.number = number
        self.descriptor = os.pidfd_open(number)

    def parent(self):
        status = pathlib.Path(f"/proc/{self.number}/status").read_text()
        return Watched(int(status.split("PPid:")[1].split()[0]))

    def await_end(self):
        assert select.select([self.descriptor], [], [], LIMIT)[0]
        os.close(self.descriptor)


def find_tv(script, checkout):
    """The TV of a script whose console waits for a word."""
    read_until(script.stdout, b"cmd> ")
    [path] = (checkout / "tmp").glob("zarn-console.*/norvex.sock.ctl")
    with socket.socket(socket.AF_UNIX) as control:
        control.connect(str(path))
        return Watched(struct.unpack("3i", control.getsockopt(socket.SOL_SOCKET, socket.SO_PEERCRED, 12))[0])


def test_a_console_whose_script_is_killed_ends_with_its_tv_and_leaves_nothing(checkout, environment):
    with subprocess.Popen([checkout / "script/console"], stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                          env=environment, bufsize=0) as script:
        tv = find_tv(script, checkout)
        keeper = tv.parent()
        script.kill()
        tv.await_end()
        keeper.await_end()
        # The host, and the script that it runs in, have ended.
        while os.read(script.stdout.fileno(), 4096):
            pass
    assert_nothing_is_left(checkout)


@pytest.mark.slow
def test_a_tv_that_does_not_end_is_killed(checkout, environment):
    with subprocess.Popen([checkout / "script/console"], stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                          env=environment, bufsize=0) as script:
        tv = find_tv(script, checkout)
        os.kill(tv.number, signal.SIGSTOP)
        script.stdin.close()
        tv.await_end()
        assert script.wait(LIMIT) == 0
    assert_nothing_is_left(checkout)


def test_a_tv_that_ended_early_is_said(checkout, environment):
    with subprocess.Popen([checkout / "script/console"], stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                          stderr=subprocess.PIPE, env=environment, bufsize=0) as script:
        tv = find_tv(script, checkout)
        os.kill(tv.number, signal.SIGTERM)
        tv.await_end()
        script.stdin.close()
        assert script.wait(LIMIT) == 0
        assert b"console: the simulated TV ended early: " in script.stderr.read()
    assert_nothing_is_left(checkout)


def test_a_tv_that_is_named_and_gone_is_an_error(checkout, environment, folder):
    environment["NORVEX_SOCKET"] = str(folder / "gone")
    assert refusal(checkout / "script/console", "-c", "99", env=environment) == (
        f"console: no TV is running at {folder}/gone; start norvex-sim, or unset NORVEX_SOCKET\n")


@pytest.mark.parametrize("name", ["a b", "a:b", "a,b", 'a"b', "a\\b", "a'b", "a[b]*", "a$b", "-a", "a=b"])
def test_temporary_files_may_be_in_a_folder_of_any_name(checkout, environment, console, name):
    environment["TMPDIR"] = str(checkout / "tmp" / name)
    os.mkdir(environment["TMPDIR"])
    result = console("-c", "6 99 1 qos on 99 99")
    assert "QoS is ON" in result.stdout and result.stderr == ""
    # The sibling library, where nothing hinders mounts.
    assert "[LUMO Debug]" in result.stdout or not can_mount()
    assert os.listdir(checkout / "tmp") == [name] and not os.listdir(environment["TMPDIR"])


def test_a_tmpdir_that_is_missing_or_too_long_is_one_line(checkout, environment):
    script = checkout / "script/console"
    environment["TMPDIR"] = str(checkout / "none")
    assert str(checkout / "none") in run(script, "-c", "99", status=1, env=environment).stderr
    environment["TMPDIR"] = str(checkout / "tmp" / ("x" * 100))
    os.mkdir(environment["TMPDIR"])
    assert "is too long" in refusal(script, "-c", "99", env=environment)
    assert not os.listdir(environment["TMPDIR"])


@pytest.mark.parametrize("way", ["a symbolic link", "a folder with blanks", "CDPATH", "exported options"])
def test_the_console_opens_by_way_of(checkout, environment, way):
    script = checkout / "script/console"
    if way == "a symbolic link":
        (checkout / "zarn").symlink_to("script/console")
        (checkout / "other").symlink_to(checkout / "zarn")
        script = checkout / "other"
    elif way == "a folder with blanks":
        (checkout / "a b").mkdir()
        for name in ("script", "build"):
            (checkout / name).rename(checkout / "a b" / name)
        script = checkout / "a b/script/console"
    elif way == "CDPATH":
        environment["CDPATH"] = str(checkout)
    else:
        environment["SHELLOPTS"] = "braceexpand:emacs:hashall:histexpand:history:monitor:noclobber:noglob:nounset"
        environment["BASHOPTS"] = "failglob:nocasematch:nullglob"
    result = run(script, "-c", "1 qos on 99 99", env=environment, cwd=checkout)
    assert "QoS is ON" in result.stdout and result.stderr == ""
    assert_nothing_is_left(checkout)


def test_help_on_a_full_disk_ends_the_script_with_status_1(checkout):
    for name in ("console", "in-device"):
        with open("/dev/full", "wb") as full:
            told = run(checkout / "script" / name, "--help", status=1, capture_output=False, stdout=full,
                       stderr=subprocess.PIPE).stderr
        assert told == f"{name}: cannot write to standard output\n"


@pytest.mark.skipif(not can_mount(), reason="nothing can be mounted here")
def test_what_a_command_leaves_running_is_ended_though_it_ignores_sigterm():
    # It holds the script's output, which is read to its end.
    run(ROOT / "script/in-device", "--build", BUILD, "sh", "-c", "trap '' TERM; tail -f /dev/null &")
