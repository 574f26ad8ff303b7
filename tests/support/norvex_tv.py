"""A simulated TV for tests: norvex-sim as a process of its own, and norvex-simctl.

NORVEX_SIM and NORVEX_SIMCTL name the programs."""

import json
import os
import signal
import subprocess
import tempfile

import norvex_wire

SIM = os.environ["NORVEX_SIM"]
SIMCTL = os.environ["NORVEX_SIMCTL"]
# Never reached in a run that goes well.
LIMIT = 60


class Tv:
    """A daemon on a socket in a folder of its own. Ended and cleaned up at the end of a with."""

    def __init__(self, *options, folder=None, environment=None):
        self._folder = None if folder else tempfile.TemporaryDirectory()
        self.folder = folder or self._folder.name
        self.options = options
        self.environment = {**os.environ, **(environment or {})}
        self.socket = self.path("tv.sock")
        self.process = None
        self.start()

    def path(self, name):
        return os.path.join(self.folder, name)

    def start(self, *options):
        """Returns when clients can connect."""
        ready, told = os.pipe()
        try:
            self.process = subprocess.Popen(
                [SIM, "--socket", self.socket, "--log", self.path("log"), "--ready-fd", str(told),
                 *self.options, *options],
                pass_fds=[told], env=self.environment)
        finally:
            os.close(told)
        with os.fdopen(ready) as lines:
            line = lines.read()
        if line != "ready\n":
            raise RuntimeError(f"norvex-sim ended: {self.process.wait(LIMIT)}")

    def __enter__(self):
        return self

    def __exit__(self, *_):
        try:
            # One that still runs leaves well, whatever it went through.
            if self.process.poll() is None:
                self.process.send_signal(signal.SIGCONT)
                status = self.end()
                assert status == 0, f"norvex-sim ended: {status}"
        finally:
            self.kill()
            if self._folder:
                self._folder.cleanup()

    def end(self, number=signal.SIGTERM):
        """Ends it as a user does; its status."""
        self.process.send_signal(number)
        return self.process.wait(LIMIT)

    def kill(self):
        """Ends it on the spot, if it runs. A stopped one as well."""
        if self.process.poll() is None:
            self.process.kill()
        self.process.wait(LIMIT)

    def log(self):
        with open(self.path("log"), encoding="utf-8") as file:
            return file.read()

    def connect(self, **options):
        return norvex_wire.Connection(self.socket, **options)

    def simctl(self, *words, status=0):
        """Runs norvex-simctl to its end; its output."""
        result = self.run_simctl(*words)
        assert result.returncode == status, (words, result)
        return result.stdout

    def run_simctl(self, *words):
        return subprocess.run([SIMCTL, "--socket", self.socket, *map(str, words)],
                              capture_output=True, text=True, timeout=LIMIT, check=False)

    def state(self):
        return json.loads(self.simctl("state", "--json"))

    def calls(self):
        return [json.loads(line) for line in self.simctl("calls", "--json").splitlines()]

    def wait(self, *condition):
        """Returns when the condition of `norvex-simctl wait` holds."""
        self.simctl("wait", "--timeout", LIMIT / 2, *condition)
