"""The dialogue with a process's own debug menu, and its switches."""

import signal
import time

import pytest

from norvex_tv import PROCESS_PROMPT

START_FAILED = "Failed to start selected[1] debug print control\r\nCommand not implemented\r\n"
# The console's limit for a call, in seconds, where a test waits for it to pass.
CALL_LIMIT = 2.0


def test_a_dialogue_goes_through_the_processs_screens_and_back(tv):
    console = tv.open_console()
    console.answer(("1", "> "), ("help", "status"), ("gibberish", "gibberish"), ("99", PROCESS_PROMPT))
    console.leave("99")
    assert tv.operations() == ["IDebugPrintControl." + name for name in ("Start", *["Execute"] * 3, "Stop")]


def test_the_dialogue_ends_when_the_process_is_killed_and_the_next_finds_its_successor(tv):
    console = tv.open_console()
    console.type("1", "> ")
    tv.kill()
    console.type("help", PROCESS_PROMPT)
    tv.start()
    console.answer(("1", "> "), ("99", PROCESS_PROMPT))
    console.leave("99")


def test_without_a_process_the_start_fails_with_two_lines_and_the_menu_goes_on(tv_off):
    console = tv_off.open_console()
    for _ in range(2):
        console.type("1", START_FAILED, PROCESS_PROMPT)
    console.leave("99")


def test_a_refusal_in_the_reply_is_reported_as_a_failed_start(tv):
    tv.inject("IDebugPrintControl.Start", "result", 0)
    console = tv.open_console()
    console.type("1", START_FAILED, PROCESS_PROMPT)
    console.leave("99")


def test_a_lost_reply_fails_only_its_call(tv):
    tv.environment["NORVEX_CALL_LIMIT_MS"] = "1000"
    console = tv.open_console()
    tv.inject("IDebugPrintControl.Start", "drop")
    console.type("1", START_FAILED, PROCESS_PROMPT)
    console.answer(("1", "> "), ("99", PROCESS_PROMPT))
    console.leave("99")


@pytest.mark.slow
def test_a_stopped_process_costs_one_command_one_call_limit_and_the_next_none(tv):
    tv.environment["NORVEX_CALL_LIMIT_MS"] = str(int(CALL_LIMIT * 1000))
    console = tv.open_console()
    console.type("1", "> ")
    tv.process.send_signal(signal.SIGSTOP)
    began = time.monotonic()
    # Execute waits for the limit; Stop, which follows, must not wait for another.
    console.type("help", PROCESS_PROMPT)
    assert CALL_LIMIT * 0.9 <= time.monotonic() - began < CALL_LIMIT * 2
    # The simple menu makes two calls a page; it is known now that nobody answers.
    began = time.monotonic()
    console.type("7", "QoS is disabled", "cmd> ")
    assert time.monotonic() - began < CALL_LIMIT
    console.type("99", PROCESS_PROMPT)
    tv.process.send_signal(signal.SIGCONT)
    tv.wait("/daemon/calls >= 1")
    console.answer(("1", "norvex> "), ("99", PROCESS_PROMPT))
    console.leave("99")


def test_an_item_flipped_by_number_is_flipped_in_the_process_and_shown_on(tv):
    console = tv.open_console()
    console.type("7", "1 : [OFF] ", "cmd> ")
    console.type("1", "1 : [ON ] ", "cmd> ")
    assert [tv.state(f"/debug/items/{number}/state") for number in (0, 1)] == [False, True]
    console.type("1", "1 : [OFF] ")
    assert tv.state("/debug/items/1/state") is False
    console.leave("99 99")


@pytest.mark.parametrize("words", ["", "1", "1 help", "3", "4", "4 0", "5", "5 2", "5 2 0 1", "5 19 3", "7"])
def test_the_end_of_input_ends_the_console_at_any_depth(shared_tv, words):
    shared_tv.run_words(words)
