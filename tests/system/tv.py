"""A simulated TV and the console on it, each in a process of its own."""

import json
import os
import signal
import subprocess
import tempfile
import unittest

import pexpect

BIN = os.environ["ZARN_BIN"]
BUILD = os.environ.get("ZARN_BUILD", "")
SUPPORT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "support")

# Never reached in a run that goes well.
LIMIT = 60
# The client's limit for a call, where a test waits for it to pass.
CALL_LIMIT = 3.0

PROCESS_PROMPT = " 99 : Exit\r\n====================================\r\n\r\ncmd> "


def program(name):
    return os.path.join(BIN, name)


class SystemTestCase(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="zarn-")
        self.addCleanup(folder.cleanup)
        self.folder = folder.name
        self.socket = self.path("norvex.sock")
        self.environment = {
            **os.environ,
            "NORVEX_SOCKET": self.socket,
            "NORVEX_LOG": self.path("client.log"),
            "NORVEX_DEVICE_DIR": self.path("device"),
            "NORVEX_CALL_LIMIT_MS": str(int(CALL_LIMIT * 1000)),
            # What the console keeps on purpose.
            "LSAN_OPTIONS": f"suppressions={SUPPORT}/leaks.supp:print_suppressions=0:fast_unwind_on_malloc=0",
        }
        self.tv = None

    def path(self, name):
        return os.path.join(self.folder, name)

    def start_tv(self, *arguments):
        """Starts the TV and waits until it takes clients."""
        ready, told = os.pipe()
        with open(self.path("tv.log"), "ab") as log:
            self.tv = subprocess.Popen(
                [program("norvex-sim"), "--ready-fd", str(told), *arguments],
                env=self.environment,
                pass_fds=[told],
                stdin=subprocess.DEVNULL,
                stdout=log,
                stderr=log,
            )
        os.close(told)
        self.addCleanup(self.end_tv, self.tv)
        with os.fdopen(ready, "rb") as lines:
            self.assertTrue(lines.readline(), "the TV did not start")

    def end_tv(self, tv):
        """As a user ends it: a TV that still runs leaves well, whatever it went through."""
        if tv.poll() is None:
            tv.send_signal(signal.SIGCONT)
            tv.terminate()
            try:
                self.assertEqual(tv.wait(LIMIT), 0, "the TV did not end well")
            finally:
                tv.kill()

    def kill_tv(self):
        self.tv.kill()
        self.tv.wait()

    def simctl(self, *arguments, check=True):
        """Its standard output."""
        result = subprocess.run(
            [program("norvex-simctl"), *arguments],
            env=self.environment,
            stdin=subprocess.DEVNULL,
            capture_output=True,
            text=True,
            timeout=LIMIT,
            check=False,
        )
        if check:
            self.assertEqual(result.returncode, 0, result.stderr)
        return result.stdout

    def state(self, path=""):
        """What stands at a path of the state, "/debug/qos"."""
        found = json.loads(self.simctl("state", "--json"))
        for step in path.split("/")[1:]:
            found = found[int(step)] if isinstance(found, list) else found[step]
        return found

    def wait_for(self, *condition):
        self.simctl("wait", "--timeout", str(LIMIT), " ".join(condition))

    def calls(self):
        """The journal's calls but for those that open and close sessions, as "Interface.Method"."""
        lines = [json.loads(line) for line in self.simctl("calls", "--json").splitlines()]
        names = [f'{line["interface"].removeprefix("com.holvi.")}.{line["method"]}' for line in lines]
        return [name for name in names if not name.startswith("INorvexSession.")]

    def open_console(self, *arguments, command=None):
        """The console on a terminal of its own, at the process menu."""
        console = pexpect.spawn(
            command[0] if command else program("zarn-debughost"),
            [*(command[1:] if command else []), *arguments],
            env=self.environment,
            timeout=LIMIT,
            encoding="utf-8",
            echo=False,
            dimensions=(50, 200),
        )
        self.addCleanup(console.close, force=True)
        console.delaybeforesend = None
        console.expect_exact("DebugUtil\r\n")
        console.expect_exact(PROCESS_PROMPT)
        return console

    def leave(self, console, *words):
        """Types the words and sees the console end well."""
        for word in words:
            console.sendline(word)
        console.expect_exact(pexpect.EOF)
        console.wait()
        self.assertEqual((console.exitstatus, console.signalstatus), (0, None), console.before)

    def run_words(self, words, **options):
        """Pipes the words to the console; its result."""
        return subprocess.run(
            [program("zarn-debughost")],
            input=words,
            env={**self.environment, **options},
            capture_output=True,
            text=True,
            timeout=LIMIT,
            check=False,
        )
