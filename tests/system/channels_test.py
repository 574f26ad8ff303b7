"""Channels: looked up, tuned and scanned from the console."""

import pytest

from console_test import MAIN_PROMPT, enter
from norvex_tv import PROCESS_PROMPT

LINE_UP = """\
transponder air 474000
  service 0x11 7-1 "One" captions
    programme 00:00 1440 "Twelve units"
  service 0x12 8-1 "Two"
transponder air 482000
  service 0x8000000000000013 9-1 "Three"
"""


@pytest.fixture
def tv(tv_off, folder):
    (folder / "own.lineup").write_text(LINE_UP)
    tv_off.start("--lineup", folder / "own.lineup")
    return tv_off


def tune(console, major):
    """Test 13, command 1: broadcast on air. What it prints."""
    console.answer(("13", PROCESS_PROMPT), ("1", "major> "))
    printed = console.type(str(major), "[Test14 List", PROCESS_PROMPT)
    console.answer(("99", "major> "), ("1", MAIN_PROMPT))
    return printed


def scan(console, expected):
    """Test 18, command 3."""
    console.answer(("18", PROCESS_PROMPT), ("3", expected))


def test_a_channel_is_looked_up_tuned_and_signalled_once_a_scan_has_subscribed(tv):
    tv.set("scan-pace", 0)
    console = enter(tv)
    assert "failed" not in tune(console, 7)
    assert tv.state("/pipelines/1:0/service") == "0x11"
    # Nobody has subscribed yet: no signal's line has come.
    assert "\tSIGNAL" not in console.before
    # Signals come when they come, also within the menu's own lines: only theirs are whole.
    scan(console, "SIGNAL_TUNE_AROUND_FINISHED -> profile:1, screenId: 0, completed: true\r\n")
    console.answer(("99", MAIN_PROMPT), ("13", PROCESS_PROMPT), ("1", "major> "),
                   ("9", "\tSIGNAL_SI_STARTED -> profile:1, screenId: 0, chType:1, srvProfile:0, chNumber:9\r\n"))
    assert tv.state("/pipelines/1:0/service") == "0x8000000000000013"
    console.leave("99 1 99 99")


def test_a_channel_that_is_not_there_is_not_tuned(tv):
    console = enter(tv)
    tune(console, 7)
    assert "FindService failed" in tune(console, 500)
    assert tv.state("/pipelines/1:0/service") == "0x11"
    console.leave("99 99")


def test_a_change_waits_for_the_receiver_of_another_console(tv):
    receiver = enter(tv)
    receiver.answer(("17", "cmd> "), ("1", "Succesfully called RegisterForStateChange (App1), ret=1\r\n"))
    viewer = enter(tv)
    assert "failed" not in tune(viewer, 8)
    assert tv.state("/pipelines/1:0/service") is None
    receiver.answer(("7", "pending=1\r\n"), ("2", "major (int)> "), ("8", f"major = 8 ,serviceId = {0x12}\r\n"))
    receiver.expect_exact("Succesfully called NotifyReceiverState (App1), ret=1\r\n")
    assert tv.state("/pipelines/1:0/service") == "0x12"
    receiver.type("7", "pending=0\r\n")
    viewer.leave("99 99")
    receiver.leave("99 99 99")


def test_a_scan_that_is_stopped_says_so(tv):
    tv.set("scan-pace", 3600000)
    console = enter(tv)
    scan(console, "SIGNAL_SI_STARTED")
    assert (tv.state("/scan/done"), tv.state("/pipelines/1:0/tuner/at")) == (0, "air/474000")
    console.type("4", "SIGNAL_TUNE_AROUND_FINISHED -> profile:1, screenId: 0, completed: false\r\n")
    console.leave("99 99 99")


def test_the_console_goes_on_when_the_tv_is_killed_during_a_scan(tv):
    tv.set("scan-pace", 3600000)
    console = enter(tv)
    scan(console, "SIGNAL_SI_STARTED")
    tv.kill()
    console.type("4", "\tcalled StopManualScan, ret: -1\r\n")
    tv.start()
    console.type("3", "SIGNAL_SI_STARTED")
    assert tv.state("/scan/running") is not None
    console.leave("99 99 99")


def test_programmes_of_a_line_up_of_ones_own_are_listed(tv):
    assert "\tfreq:474000 -> 7-1: title size: 12\n\tno data in 2 programs\n" in tv.run_words("5 18 1 99 99 99\n")


def test_the_boot_up_service_is_set(tv):
    assert "failed" not in tv.run_words("5 21 7 99 99\n")
    assert tv.state("/lineUp/bootup/service") == "0x11"


def test_two_consoles_tune_pipelines_of_their_own(tv):
    first, second = enter(tv), enter(tv)
    tune(first, 7)
    # The source test's command 3 goes to picture in picture.
    second.answer(("7", "select num> "), ("3", "major> "), ("8", "select num> "))
    assert tv.state("/pipelines/1:0/service") == "0x11"
    assert tv.state("/pipelines/101:0/service") == "0x12"
    first.leave("99 99")
    second.leave("99 99 99")
