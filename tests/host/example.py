"""The host program with the tests' example console in it."""

import contextlib
import os
import select
import subprocess

from programs import BUILD, HOST, LIMIT, refusal, run

EXAMPLE = str(BUILD / "lib/libhost-example-console.so")
START = "Example\ncmd> "


def output_of(*arguments, words="", status=0, **options):
    """Runs the example to its end, which must be with this status and without a word on standard error."""
    result = run(HOST, EXAMPLE, *arguments, status=status, input=words, **options)
    assert result.stderr == ""
    return result.stdout


def refused(*arguments, plugin=EXAMPLE, **options):
    """The one line with which the host refuses to run it."""
    return refusal(HOST, *([plugin] if plugin else []), *arguments, **options)


@contextlib.contextmanager
def started_host(*arguments, **options):
    """The running host, with pipes at its ends; killed if the test leaves it running."""
    with subprocess.Popen([HOST, EXAMPLE, *map(str, arguments)],
                          **{"stdin": subprocess.PIPE, "stdout": subprocess.PIPE, "stderr": subprocess.PIPE,
                             "bufsize": 0, **options}) as process:
        try:
            yield process
        finally:
            process.kill()


def read_until(stream, text):
    """What comes on a pipe up to and with `text`."""
    got = ""
    while not got.endswith(text):
        assert select.select([stream], [], [], LIMIT)[0], f"only {got!r} came"
        piece = os.read(stream.fileno(), 1)
        assert piece, f"the output ended with {got!r}"
        got += piece.decode()
    return got
