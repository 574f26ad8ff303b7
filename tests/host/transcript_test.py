"""The record of a session."""

import os
import pathlib
import re
import subprocess

import pytest

from example import EXAMPLE, START, output_of, read_until, refused, started_host
from programs import HOST, LIMIT, run


@pytest.fixture
def record(folder):
    return folder / "record"


def test_each_word_stands_after_the_prompt_that_it_answered(record):
    output_of("--transcript", record, words="one sub x\n\n 99 two")
    assert record.read_text() == \
        START + "one\ngot one\ncmd> sub\nsub> x\nsub 1 got x\nsub> 99\ncmd> two\ngot two\ncmd> "


def test_words_of_the_command_line_and_of_a_script_are_recorded_likewise(record, folder):
    (folder / "script").write_text("one two\nexpect got two\n")
    for arguments in (("-c", "one two"), ("--script", folder / "script")):
        output_of("--transcript", record, *arguments)
        assert record.read_text() == START + "one\ngot one\ncmd> two\ngot two\ncmd> "


def test_lines_of_two_threads_are_whole_and_in_the_order_of_the_output(record):
    output = output_of("--transcript", record, words="both")
    assert record.read_text().replace("cmd> both\n", "cmd> ", 1) == output
    for who in ("left", "right"):
        numbers = re.findall(f"^(?:cmd> )?{who} line ([0-9]+)$", output, re.MULTILINE)
        assert numbers == [str(number) for number in range(2000)]


def test_an_earlier_record_is_replaced(record):
    record.write_text("x" * 1000)
    output_of("--transcript", record)
    assert record.read_text() == START


def test_a_session_that_is_killed_has_left_its_record(record):
    run(HOST, EXAMPLE, "--transcript", record, input="one crash", status=-9)
    assert record.read_text() == START + "one\ngot one\ncmd> crash\nabout to crash"


def test_a_record_that_cannot_be_opened_is_named_before_anything_runs():
    assert "no/such/folder" in refused("--transcript", "no/such/folder", input="one")


@pytest.mark.parametrize("used", ["the script", "the plug-in", "standard input", "standard output"])
def test_a_file_that_the_run_uses_is_not_overwritten(record, folder, used):
    record.write_bytes(pathlib.Path(EXAMPLE).read_bytes() if used == "the plug-in" else b"one\n99\n")
    before = record.read_bytes()
    (folder / "link").symlink_to(record)
    with open(record, "r+b") as file:
        arguments = {"the script": [EXAMPLE, "--script", record], "the plug-in": [record]}.get(used, [EXAMPLE])
        streams = {"standard input": {"stdin": file}, "standard output": {
            "stdout": file, "stderr": subprocess.PIPE, "capture_output": False}}.get(used, {})
        result = run(HOST, *arguments, "--transcript", folder / "link", status=1, **streams)
    assert result.stderr.count("\n") == 1 and "/link: this file is " + used in result.stderr
    assert record.read_bytes() == before


@pytest.mark.parametrize("arguments", [["/no/such/plugin.so"], [EXAMPLE, "--entry", "no_such_entry"],
                                       [EXAMPLE, "--script", "/no/such/script"], [EXAMPLE, "--script", "/dev/zero"]])
def test_a_run_that_does_not_start_leaves_the_earlier_record(record, arguments):
    record.write_text("earlier")
    run(HOST, *arguments, "--transcript", record, status=1)
    assert record.read_text() == "earlier"


def test_a_record_whose_reader_goes_is_reported_at_the_end(record):
    os.mkfifo(record)
    with started_host("--transcript", str(record)) as host:
        with open(record, "rb", buffering=0) as reader:
            read_until(host.stdout, "cmd> ")
            assert reader.read(len(START)) == START.encode()
        assert host.communicate(b"one two 99\n", LIMIT) == (
            b"got one\ncmd> got two\ncmd> example closed\n",
            f"zarn-debughost: cannot write the transcript {record}: Broken pipe\n".encode())
        assert host.returncode == 1


@pytest.mark.parametrize("words, output", [("one", "got one\ncmd> "), ("99", "example closed\n")])
def test_a_record_that_cannot_be_written_is_reported_at_the_end(words, output):
    result = run(HOST, EXAMPLE, "--transcript", "/dev/full", input=words, status=1)
    assert result.stdout == START + output
    assert result.stderr.count("\n") == 1 and "/dev/full" in result.stderr


def test_a_missed_expectation_is_the_status_also_where_the_transcript_cannot_be_written(folder):
    (folder / "script").write_text('expect "no such text" within 0.01\n')
    result = run(HOST, EXAMPLE, "--transcript", "/dev/full", "--script", folder / "script", status=3)
    assert "no such text" in result.stderr and "/dev/full" in result.stderr
