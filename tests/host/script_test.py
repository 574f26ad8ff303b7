"""Scripts: typed words, expected texts, and the report of a missing one."""

import os
import re
import signal
import time

import pytest

from example import EXAMPLE, START, output_of, read_until, refused, started_host
from programs import HOST, LIMIT, run


@pytest.fixture
def script(folder):
    """Writes a script."""
    def write(text):
        (folder / "script").write_text(text)
        return folder / "script"
    return write


@pytest.fixture
def missed_by(script):
    """Runs a script in which the expectation of a line is missed; what is printed until then."""
    def missed(text, line, missed_text, *arguments):
        path = script(text)
        result = run(HOST, EXAMPLE, "--script", path, *arguments, status=3)
        assert result.stderr.startswith(f"zarn-debughost: {path}:{line}: ") and result.stderr.count("\n") == 1
        assert f'"{missed_text}"' in result.stderr
        return result.stdout
    return missed


@pytest.mark.parametrize("text, output", [
    ("# a comment\n\none two\n\\expect this\nsub\n",
     "got one\ncmd> got two\ncmd> got expect\ncmd> got this\ncmd> sub> "),
    ('expect Example\none\nexpect got one\nexpect "\\ncmd> " within 30\n99\n', "got one\ncmd> example closed\n"),
    ("99\nexpect example closed within 50\n", "example closed\n"), ("99\n99\none\n", "example closed\n"), ("", ""),
    ("word\nexpect got word\n" * 5000, "got word\ncmd> " * 5000)],
    ids=["words", "expected texts", "expected on leaving", "words after leaving", "empty", "ten thousand steps"])
def test_a_script_is_carried_out_to_its_end(script, text, output):
    # Standard input is not read beside it.
    assert output_of("--script", script(text), words="two\n") == START + output


def test_a_text_that_does_not_come_ends_with_status_3_and_names_file_and_line(missed_by):
    assert missed_by("one\nexpect got one\nexpect got two within 0.05\n99\n", 3, "got two") == START + "got one\ncmd> "


def test_a_text_that_came_before_the_last_step_is_missed(missed_by):
    missed_by("one\ntwo\nexpect got one within 0.05\n", 3, "got one")


def test_a_console_that_hangs_is_a_miss_after_the_limit(missed_by):
    before = time.monotonic()
    assert "hanging\n" in missed_by("hang\nexpect cmd> within 0.5\n", 2, "cmd>")
    assert time.monotonic() - before >= 0.5


def test_a_text_that_does_not_come_on_leaving_is_missed(missed_by):
    missed_by("99\nexpect anything else within 50\n", 2, "anything else")


def test_a_miss_keeps_what_was_printed_and_recorded(missed_by, folder):
    printed = missed_by("unflushed\nhang\nexpect nothing within 0.05\n", 3, "nothing", "--transcript",
                        folder / "record")
    assert printed == START + "not flushedcmd> hanging\n"
    assert (folder / "record").read_text() == START + "unflushed\nnot flushedcmd> hang\nhanging\n"


def test_a_text_from_another_thread_is_waited_for(script, folder):
    os.mkfifo(folder / "pipe")
    with started_host("--script", script(f"later {folder}/pipe\nexpect signal: now within 50\n99\n")) as host:
        read_until(host.stdout, "pipe> cmd> ")
        (folder / "pipe").write_text("now\n")
        assert read_until(host.stdout, "closed\n") == "signal: now\nexample closed\n"
        assert host.wait(LIMIT) == 0


def test_signals_are_left_to_the_plug_ins_threads(script):
    with started_host("--script", script("one\nexpect never within 3600\n")) as host:
        read_until(host.stdout, "got one\ncmd> ")
        threads = os.listdir(f"/proc/{host.pid}/task")
        assert len(threads) > 1
        for thread in threads:
            with open(f"/proc/{host.pid}/task/{thread}/status", encoding="utf-8") as status:
                blocked = int(re.search("SigBlk:\\s*([0-9a-f]+)", status.read())[1], 16)
            assert (not blocked & 1 << (signal.SIGINT - 1)) == (int(thread) == host.pid)


def test_a_long_expected_text_is_cut_in_the_line_about_it(script):
    path = script(f"expect {'x' * 100_000} within 0.01\n")
    told = run(HOST, EXAMPLE, "--script", path, status=3).stderr
    assert told.startswith(f"zarn-debughost: {path}:1: ") and told.endswith("x...\n") and len(told) < 1100


def test_a_script_without_end_is_refused():
    assert "the script /dev/zero is too long" in refused("--script", "/dev/zero")


def test_a_badly_written_script_is_status_2_before_anything_runs(script):
    path = script("one\nexpect\n")
    assert f"{path}:2: " in refused("--script", path, status=2)


def test_an_unreadable_script_is_named(folder):
    for path in (folder / "missing", folder):
        assert str(path) in refused("--script", path)
