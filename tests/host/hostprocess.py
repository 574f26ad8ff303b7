"""The host program as a process, with the tests' example console in it."""

import contextlib
import os
import select
import subprocess
import tempfile
import unittest

HOST = os.environ["ZARN_HOST"]
EXAMPLE = os.environ["ZARN_EXAMPLE"]
# The sanitizers of this build, or "coverage", or nothing.
BUILD = os.environ.get("ZARN_BUILD", "")

# Never reached in a run that goes well.
LIMIT = 60

START = "Example\ncmd> "


class HostTestCase(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = folder.name

    def path(self, name):
        return os.path.join(self.folder, name)

    def write(self, name, text):
        with open(self.path(name), "w", encoding="utf-8", newline="") as file:
            file.write(text)
        return self.path(name)

    def read(self, name):
        with open(self.path(name), encoding="utf-8", newline="") as file:
            return file.read()

    def run_host(self, *arguments, words="", plugin=EXAMPLE, **options):
        """Runs the host to its end; its output and errors are texts."""
        return subprocess.run(
            [HOST, plugin, *arguments] if plugin else [HOST, *arguments],
            input=None if "stdin" in options else words,
            stdout=subprocess.PIPE,
            stderr=subprocess.PIPE,
            text=True,
            timeout=LIMIT,
            check=False,
            **options,
        )

    @contextlib.contextmanager
    def started_host(self, *arguments, **options):
        """The running host, with pipes at its ends; killed if the test leaves it running."""
        process = subprocess.Popen(
            [HOST, EXAMPLE, *arguments],
            **{
                "stdin": subprocess.PIPE,
                "stdout": subprocess.PIPE,
                "stderr": subprocess.PIPE,
                "bufsize": 0,
                **options,
            },
        )
        try:
            yield process
        finally:
            process.kill()
            process.wait()
            for stream in (process.stdin, process.stdout, process.stderr):
                if stream:
                    stream.close()

    def read_until(self, stream, text):
        """What comes on a pipe up to and with `text`."""
        got = ""
        while not got.endswith(text):
            ready, _, _ = select.select([stream], [], [], LIMIT)
            self.assertTrue(ready, f"only {got!r} came")
            piece = os.read(stream.fileno(), 1)
            self.assertTrue(piece, f"the output ended with {got!r}")
            got += piece.decode()
        return got

    def assert_one_line(self, text, *parts):
        self.assertEqual(text.count("\n"), 1, text)
        self.assertTrue(text.startswith("zarn-debughost: "), text)
        for part in parts:
            self.assertIn(part, text)

    def assert_done(self, result, output):
        self.assertEqual(result.stderr, "")
        self.assertEqual(result.stdout, output)
        self.assertEqual(result.returncode, 0)
