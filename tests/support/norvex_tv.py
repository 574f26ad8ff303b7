"""A simulated TV, and a console on it: processes on sockets and files in a folder of their own."""

import os
import pathlib
import signal
import subprocess

import norvex_wire
from norvex_control import Control
from programs import HOST, LIMIT, ROOT, SIM, SIMCTL, refusal, run
from terminal import Terminal

# The console's limit for a call, in seconds, where a test waits for it to pass.
CALL_LIMIT = 3.0
PROCESS_PROMPT = " 99 : Exit\r\n====================================\r\n\r\ncmd> "


def start_sims(count, *arguments, pass_also=(), **options):
    """Processes of norvex-sim that are started at once, and whether clients can connect to one of them. Those that
    they cannot connect to end by themselves."""
    ready, told = os.pipe()
    try:
        processes = [subprocess.Popen([SIM, "--ready-fd", str(told), *map(str, arguments)], pass_fds=[told, *pass_also],
                                      stdin=subprocess.DEVNULL, **options) for _ in range(count)]
    finally:
        os.close(told)
    with os.fdopen(ready) as lines:
        return processes, lines.read() == "ready\n"


class NotStarted(Exception):
    """The TV has ended before clients could connect."""


class Tv(Control):
    """Made without being started."""

    def __init__(self, folder):
        self.folder = pathlib.Path(folder)
        self.socket = str(self.folder / "tv.sock")
        super().__init__(self.socket)
        self.options = ()
        self.process = None
        self.consoles = []
        # Of all that runs here.
        self.environment = {
            **os.environ,
            "NORVEX_SOCKET": self.socket,
            "NORVEX_LOG": str(self.folder / "client.log"),
            "NORVEX_DEVICE_DIR": str(self.folder / "device"),
            "NORVEX_CALL_LIMIT_MS": str(int(CALL_LIMIT * 1000)),
            # What the console keeps on purpose.
            "LSAN_OPTIONS": f"suppressions={ROOT}/tests/support/leaks.supp:print_suppressions=0:"
                            "fast_unwind_on_malloc=0",
        }

    # ---- the TV ----

    def start(self, *options, **environment):
        """Returns when clients can connect. Without options it is started as it was before."""
        self.options = options or self.options
        with open(self.folder / "errors", "ab") as errors:
            [self.process], ready = start_sims(1, "--log", self.folder / "log", *self.options, stdout=errors,
                                               stderr=errors, env={**self.environment, **environment})
        if not ready:
            raise NotStarted(f"norvex-sim ended with {self.process.wait(LIMIT)}: {self.errors()}")

    def end(self, number=signal.SIGTERM):
        """Ends it as a user does; its status."""
        self.process.send_signal(number)
        return self.process.wait(LIMIT)

    def kill(self):
        """Ends it on the spot, if it runs. A stopped one as well."""
        self.process.kill()
        self.process.wait(LIMIT)

    def close(self):
        """One that still runs ends well, whatever it went through. Nothing was written on standard error."""
        for console in self.consoles:
            console.close(force=True)
        if self.process and self.process.poll() is None:
            self.process.send_signal(signal.SIGCONT)
            try:
                assert self.end() == 0, self.errors()
            finally:
                self.kill()
        assert not self.errors()

    def errors(self):
        path = self.folder / "errors"
        return path.read_text(errors="replace") if path.exists() else ""

    def log(self):
        return (self.folder / "log").read_text()

    # ---- who speaks to it ----

    def connect(self, **options):
        return norvex_wire.Connection(self.socket, **options)

    def simctl(self, *words):
        """What the program prints."""
        return run(SIMCTL, *words, env=self.environment).stdout

    def simctl_refusal(self, *words, status=1):
        """Its one line of error."""
        return refusal(SIMCTL, *words, status=status, env=self.environment)

    def operations(self):
        """The journal's calls but for those that open and close sessions, as "Interface.Method"."""
        names = [call["interface"].removeprefix("com.holvi.") + "." + call["method"] for call in self.calls()]
        return [name for name in names if not name.startswith("INorvexSession.")]

    # ---- who watches it ----

    def open_terminal(self, program, *arguments):
        terminal = Terminal(program, *arguments, environment=self.environment)
        self.consoles.append(terminal)
        return terminal

    def open_console(self, *arguments, through=()):
        """A console on a terminal of its own, at the process menu. `through` is the command that runs it."""
        console = self.open_terminal(*through, HOST, *arguments)
        console.expect_all("DebugUtil\r\n", PROCESS_PROMPT)
        return console

    def run_words(self, words, **options):
        """A console that is fed by a pipe, and ends well; what it prints."""
        result = run(HOST, input=words, env=self.environment, **options)
        assert result.stderr == ""
        return result.stdout

    def client_log(self):
        return (self.folder / "client.log").read_text()
