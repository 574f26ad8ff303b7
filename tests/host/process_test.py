"""How the host opens a plug-in, feeds it, and ends."""

import fcntl
import os
import shutil
import signal
import subprocess
import time

import pytest

from example import EXAMPLE, START, output_of, read_until, refused, started_host
from programs import COVERAGE, HOST, LIMIT, SANITIZE, run

MISSING = "/usr/lib/no-such-plugin.so"
ONE_TWO = START + "got one\ncmd> got two\ncmd> "


# ---- input ----

@pytest.mark.parametrize("arguments, words, output", [
    ((), "one two\n99\n", ONE_TWO + "example closed\n"), ((), "one two", ONE_TWO),
    ((), "99", START + "example closed\n"),
    ((), "", START), (("-c", "one two"), "", ONE_TWO), (("-c", ""), "99", START),
    (("-c", "one 99"), "two\n", START + "got one\ncmd> example closed\n")],
    ids=["piped", "no line end", "99 without line end", "nothing", "given", "nothing given", "given and piped"])
def test_each_word_up_to_the_last_has_its_effect_and_the_output_is_the_consoles_own(arguments, words, output):
    assert output_of(*arguments, words=words) == output


@pytest.mark.parametrize("depth", [1, 2, 3])
def test_the_end_of_input_ends_any_depth_without_being_seen(depth):
    output = START + "sub> " * depth
    assert output_of(words="sub " * depth) == output
    assert output_of(words="sub " * depth + "x") == output + f"sub {depth} got x\nsub> "


def test_a_hundred_thousand_words_all_have_their_effect():
    assert output_of(words="word\n" * 100_000) == START + "got word\ncmd> " * 100_000


def test_an_absent_standard_input_is_an_empty_one():
    assert run("/bin/sh", "-c", 'exec "$@" <&-', "sh", HOST, EXAMPLE).stdout == START


def test_a_prompt_that_the_plug_in_does_not_flush_comes_before_the_host_waits():
    with started_host() as host:
        read_until(host.stdout, "cmd> ")
        host.stdin.write(b"ask\n")
        assert read_until(host.stdout, "name? ") == "name? "
        host.stdin.write(b"you\n")
        assert read_until(host.stdout, "cmd> ") == "hello you\ncmd> "


def test_the_process_ends_within_200_ms_of_the_read_that_finds_no_word():
    def time_to_end():
        with started_host() as host:
            host.stdin.write(b"sub sub\n")
            read_until(host.stdout, "cmd> sub> sub> ")
            before = time.monotonic()
            host.stdin.close()
            assert host.wait(LIMIT) == 0
            return time.monotonic() - before

    # A sanitizer's own work at the end is not what is measured.
    assert min(time_to_end() for _ in range(5)) < (3.0 if SANITIZE or COVERAGE else 0.2)


def test_a_read_interrupted_by_a_signal_is_taken_up_again():
    with started_host() as host:
        host.stdin.write(b"usr1 ")
        read_until(host.stdout, "cmd> cmd> ")
        for _ in range(3):
            host.send_signal(signal.SIGUSR1)
            read_until(host.stdout, "usr1\n")
            host.stdin.write(b"one ")
            assert read_until(host.stdout, "cmd> ") == "got one\ncmd> "
        host.stdin.close()
        assert host.wait(LIMIT) == 0


def test_a_standard_input_that_cannot_be_read_is_named(folder):
    directory = os.open(folder, os.O_RDONLY)
    try:
        result = run(HOST, EXAMPLE, stdin=directory, status=1)
    finally:
        os.close(directory)
    assert result.stderr == "zarn-debughost: cannot read standard input: Is a directory\n"


def test_a_non_blocking_standard_input_is_waited_for():
    reader, writer = os.pipe()
    fcntl.fcntl(reader, fcntl.F_SETFL, os.O_NONBLOCK)
    with started_host(stdin=reader) as host:
        os.close(reader)
        read_until(host.stdout, "cmd> ")
        os.write(writer, b"one")
        os.close(writer)
        read_until(host.stdout, "got one\ncmd> ")
        assert host.wait(LIMIT) == 0


# ---- loading ----

def test_the_entrys_return_closes_the_plug_in_while_the_host_still_listens(folder):
    output_of("--transcript", folder / "record", words="99")
    assert (folder / "record").read_text() == START + "99\nexample closed\n"


def test_another_entry_is_run_where_it_is_named():
    assert output_of("--entry", "another_entry") == "another entry\nexample closed\n"


def test_a_missing_plug_in_or_entry_is_named():
    assert MISSING in refused(plugin=MISSING)
    result = run(HOST, EXAMPLE, "--entry", "no_such_entry", status=1)
    assert result.stderr.count("\n") == 1 and EXAMPLE in result.stderr and "no_such_entry" in result.stderr


def test_a_file_that_is_not_a_library_is_named(folder):
    (folder / "plugin.so").write_text("text\n")
    assert "plugin.so" in refused(plugin=folder / "plugin.so")


@pytest.mark.parametrize("arguments", [["--bogus"], ["-c", "1", "--script", "s"], ["second.so"]])
def test_a_bad_command_line_is_status_2(arguments):
    refused(*arguments, status=2)


def test_help_needs_no_plug_in():
    result = run(HOST, MISSING, "--help")
    assert result.stderr == "" and "--transcript FILE" in result.stdout


@pytest.fixture
def installed(folder):
    """The host alone in a folder of its own, with another where the loader looks."""
    for name in ("bin", "lib", "elsewhere"):
        (folder / name).mkdir()
    return shutil.copy2(HOST, folder / "bin"), {**os.environ, "LD_LIBRARY_PATH": str(folder / "elsewhere")}


def test_the_default_plug_in_is_next_to_the_host(folder, installed):
    host, environment = installed
    shutil.copy2(EXAMPLE, folder / "lib/libzarn-debugmenu.so")
    (folder / "elsewhere/libzarn-debugmenu.so").write_text("not a library\n")
    assert run(host, env=environment).stdout == START


def test_without_one_next_to_it_the_loader_finds_the_default_plug_in(folder, installed):
    host, environment = installed
    shutil.copy2(EXAMPLE, folder / "elsewhere/libzarn-debugmenu.so")
    assert run(host, env=environment).stdout == START


def test_without_any_default_plug_in_it_is_named(installed):
    host, environment = installed
    result = run(host, status=1, env=environment)
    assert result.stderr.count("\n") == 1 and "libzarn-debugmenu.so" in result.stderr


@pytest.mark.parametrize("source", ["pipe", "script", "given"])
def test_children_of_the_plug_in_inherit_the_standard_descriptors_only(folder, source):
    (folder / "script").write_text("child\n")
    arguments = {"pipe": [], "script": ["--script", folder / "script"], "given": ["-c", "child"]}[source]
    ends = os.pipe()
    try:
        # The last number is the listing program's own.
        assert output_of("--transcript", folder / "record", *arguments, words="child\n", pass_fds=ends) == \
            START + "child has:\n0\n1\n2\n3\ncmd> "
    finally:
        for end in ends:
            os.close(end)


# ---- output ----

@pytest.mark.parametrize("options", [{}, {"restore_signals": False, "preexec_fn": lambda: signal.signal(
    signal.SIGPIPE, signal.SIG_IGN)}], ids=["default", "ignored by the caller"])
def test_a_reader_that_has_gone_ends_the_process(options):
    reader, writer = os.pipe()
    os.close(reader)
    # Words that never run out.
    with subprocess.Popen(["/usr/bin/yes", "word"], stdout=subprocess.PIPE) as feeder, \
            started_host(stdin=feeder.stdout, stdout=writer, **options) as host:
        os.close(writer)
        assert host.wait(LIMIT) == -signal.SIGPIPE
        assert host.stderr.read() == b""
        feeder.kill()


def test_a_reader_that_goes_ends_it_though_the_plug_in_ignores_the_signal():
    with started_host() as host:
        host.stdin.write(b"ignorepipe ")
        read_until(host.stdout, "cmd> cmd> ")
        host.stdout.close()
        host.stdin.write(b"word ")
        assert host.wait(LIMIT) == 1
        assert b"standard output" in host.stderr.read()


@pytest.mark.parametrize("words", ["one two", "99"])
def test_output_that_cannot_be_written_is_named(words):
    with open("/dev/full", "wb") as full:
        result = run(HOST, EXAMPLE, "-c", words, status=1, capture_output=False, stdout=full, stderr=subprocess.PIPE)
    assert result.stderr.count("\n") == 1 and "standard output" in result.stderr


def test_output_of_a_plug_in_that_ends_unflushed_is_not_lost():
    assert output_of(words="unflushed") == START + "not flushedcmd> "


@pytest.mark.parametrize("closed", ["<&- >&-", "<&- >&- 2>&-"])
def test_absent_standard_descriptors_are_not_taken_by_a_file_that_the_host_opens(folder, closed):
    run("/bin/sh", "-c", f'exec "$@" {closed}', "sh", HOST, EXAMPLE, "-c", "one child 99", "--transcript",
        folder / "record")
    assert (folder / "record").read_text() == \
        START + "one\ngot one\ncmd> child\nchild has:\ncmd> 99\nexample closed\n"


# ---- exceptions ----

@pytest.mark.parametrize("source", ["given", "script"])
def test_an_exception_of_any_type_is_one_line_that_is_safe_to_show(folder, source):
    def end_of(word):
        (folder / "script").write_text(word + "\n")
        result = run(HOST, EXAMPLE, *(["-c", word] if source == "given" else ["--script", folder / "script"]), status=1)
        assert result.stdout == START and result.stderr.count("\n") == 1
        return result.stderr

    assert end_of("throw-number") == "zarn-debughost: the console threw an exception that is no std::exception\n"
    told = end_of("throw")
    assert told.startswith("zarn-debughost: the console threw an exception: \\x1b[31mred\\xc2\\x9bxxx")
    assert told.endswith("xxx...\n") and len(told) < 1100


def test_an_exception_that_cannot_reach_the_host_is_one_line():
    told = "zarn-debughost: the console threw an exception that is no std::exception\n"
    assert refused(env={**os.environ, "EXAMPLE_THROWS_AT_LOAD": "1"}) == told
    result = run(HOST, EXAMPLE, "-c", "throw-in-thread", status=1)
    assert (result.stdout, result.stderr) == (START, told)


# ---- what a build reports at the end of input ----

@pytest.mark.skipif("address" not in SANITIZE, reason="only an address sanitizer build looks for leaks")
def test_a_leak_is_reported():
    result = run(HOST, EXAMPLE, input="leak sub", status=None)
    assert "LeakSanitizer" in result.stderr and result.returncode != 0


@pytest.mark.skipif("thread" not in SANITIZE, reason="only a thread sanitizer build looks for races")
def test_a_race_is_not_forgotten():
    assert "ThreadSanitizer: data race" in run(HOST, EXAMPLE, input="race sub", status=66).stderr


@pytest.mark.skipif(not COVERAGE, reason="only a coverage build counts")
def test_counted_lines_of_host_and_plug_in_are_written(folder):
    run(HOST, EXAMPLE, input="sub", env={**os.environ, "GCOV_PREFIX": str(folder)})
    written = {path.name for path in folder.rglob("*.gcda")}
    assert {"ExampleConsole.cpp.gcda", "ConsoleRun.cpp.gcda"} <= written
