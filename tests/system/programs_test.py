"""What holds for every program: its output, its descriptors, its messages."""

import os
import subprocess

import pytest

from programs import HOST, LIMIT, SIM, SIMCTL, program, run

VIEWER = program("dlogutil")
PROGRAMS = [HOST, SIM, SIMCTL, VIEWER]
EACH_PROGRAM = pytest.mark.parametrize("path", PROGRAMS, ids=os.path.basename)


def test_every_program_is_tested_here():
    """Those that are installed."""
    built = {name for name in os.listdir(os.path.dirname(SIM)) if name.startswith(("norvex-", "zarn-", "dlogutil"))}
    assert {os.path.basename(path) for path in PROGRAMS} == built - {"zarn-endurance"}


def assert_full_disk_is_said(*command, **options):
    with open("/dev/full", "wb") as full:
        result = run(*command, status=1, capture_output=False, stdout=full, stderr=subprocess.PIPE, **options)
    assert result.stderr.count("\n") == 1 and "standard output" in result.stderr, result
    assert result.stderr.startswith(os.path.basename(command[0]) + ": ")


@EACH_PROGRAM
def test_help_on_a_full_disk_is_status_1_and_a_line(path):
    assert_full_disk_is_said(path, "--help")


@pytest.mark.parametrize("words", ["state", "state --json", "calls", "calls --follow", "calls --json", "operations",
                                   "lineup show", "signal 81", "--help", "wait --help"])
def test_an_answer_on_a_full_disk_is_status_1_and_a_line(tv, words):
    with tv.connect() as client:
        client.start()
    assert_full_disk_is_said(SIMCTL, *words.split(), env=tv.environment)


def test_the_consoles_output_on_a_full_disk_is_status_1_and_a_line(tv):
    assert_full_disk_is_said(HOST, "-c", "5 15 99 99", env=tv.environment)


def test_log_lines_on_a_full_disk_are_status_1_and_a_line(tv):
    with open("/dev/full", "wb") as full, subprocess.Popen(
            [VIEWER, "norvex"], stdout=full, stderr=subprocess.PIPE, text=True, env=tv.environment) as viewer:
        tv.wait("/daemon/viewers == 1")
        tv.reset()
        assert viewer.communicate(timeout=LIMIT)[1] == "dlogutil: standard output: No space left on device\n"
        assert viewer.returncode == 1


def test_nothing_of_a_tv_takes_the_place_of_a_closed_standard_descriptor(tv_off):
    ready, told = os.pipe()
    tv_off.process = subprocess.Popen(
        ["/bin/sh", "-c", 'exec "$@" <&- >&- 2>&-', "sh", SIM, "--log", tv_off.folder / "log", "--database",
         tv_off.folder / "base", "--ready-fd", str(told)], env=tv_off.environment, pass_fds=[told])
    os.close(told)
    with os.fdopen(ready) as lines:
        assert lines.read() == "ready\n"
    opened = f"/proc/{tv_off.process.pid}/fd"
    assert [os.readlink(f"{opened}/{number}") for number in range(3)] == ["/dev/null"] * 3


@pytest.mark.parametrize("words", ["state", "--help"])
def test_an_answer_for_a_closed_standard_output_is_an_error(tv, words):
    result = run("/bin/sh", "-c", 'exec "$@" <&- >&-', "sh", SIMCTL, words, status=1, env=tv.environment)
    assert result.stderr == "norvex-simctl: standard output: Bad file descriptor\n"


@EACH_PROGRAM
def test_a_message_is_one_short_line_that_is_safe_to_show(path):
    word = "--\x1b[31m\u009b\n" + "x" * 100_000
    arguments = {SIMCTL: ["--socket=" + word, "state"]}.get(path, [word])
    result = run(path, *arguments, status=1 if path == SIMCTL else 2)
    assert result.stderr.count("\n") == 1 and len(result.stderr) < 1200
    assert not set(result.stderr[:-1]) & {chr(code) for code in [*range(32), *range(127, 160)]}
