"""A console on a simulated TV with a relay between the two, all in one loop: nothing happens between two steps that is
not seen."""

import contextlib
import os
import pathlib
import re
import selectors
import signal
import sqlite3
import subprocess
import tempfile
import time

import norvex_wire as wire
from norvex_tv import Tv
from programs import HOST, LIMIT
from relay import Relay

# What the console writes when it waits for a word.
PROMPT = re.compile(
    r"(cmd> |norvex> |MLS:1 > |Analysis:2 > |num> |=13\)> |\(int\)> |major> |On:1 |OFF\[0\]: |\(1/0\) = |\w+ = )$")
MENU = re.compile(r"\[([^\]\n]+)\][\t ]*\n-{36}\n *([^\n]*)")
# A signal's line comes when it comes.
SIGNAL_LINE = re.compile(r"\tSIGNAL_[^\n]*\n")
PROVIDER_TAGS = ("quarle-daemon", "quarle-provider")
# Of the client library's log: an exchange that came to nothing.
FAILURE = re.compile(r"norvex-client: .*(?:TV service is|TV service lost|malformed answer)")


class Console:
    """The console on pipes."""

    def __init__(self, environment, selector):
        self.process = subprocess.Popen([HOST], env=environment, stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                        stderr=subprocess.PIPE)
        self.selector = selector
        os.set_blocking(self.process.stdout.fileno(), False)
        selector.register(self.process.stdout, selectors.EVENT_READ, self.read)
        self.text = ""
        self.menu = None
        self.ended = False
        self.typed = time.monotonic()

    def read(self):
        data = self.process.stdout.read()
        if data:
            self.text += data.decode(errors="replace")
        elif data == b"":
            self.selector.unregister(self.process.stdout)
            self.ended = True

    def type(self, word):
        self.text = ""
        self.typed = time.monotonic()
        self.process.stdin.write(word.encode() + b"\n")
        self.process.stdin.flush()

    def place(self):
        """Where it waits for a word: (menu, prompt). None while it does not."""
        text = SIGNAL_LINE.sub("", self.text)
        prompt = PROMPT.search(text)
        if not prompt:
            return None
        for title, item in MENU.findall(text):
            # Two menus have this one title.
            self.menu = f"{title}: {item}" if title == "Process Debug List" else title
        return self.menu, prompt.group(1)

    def has_ended_well(self):
        return self.ended and self.process.stderr.read() == b"" and self.process.wait(LIMIT) == 0

    def close(self):
        self.process.kill()
        self.process.wait(LIMIT)
        for end in (self.process.stdin, self.process.stdout, self.process.stderr):
            with contextlib.suppress(BrokenPipeError):
                end.close()


class Harness:
    """Made for one run of the console, in a folder of its own."""

    def __init__(self, call_limit, options=()):
        self.temporary = tempfile.TemporaryDirectory(prefix="zarn-")
        self.folder = pathlib.Path(self.temporary.name)
        self.selector = selectors.DefaultSelector()
        self.tv = Tv(self.folder)
        self.start("--database", self.folder / "database", *options)
        self.relay = Relay(str(self.folder / "front.sock"), self.tv.socket, self.selector)
        self.relay.open()
        # When there was a TV again.
        self.ready = None
        # The database's files as they were read last, and what they hold.
        self.read = None
        self.content = None
        limit = str(int(call_limit * 1000))
        self.console = Console({**self.tv.environment, "NORVEX_SOCKET": self.relay.path, "NORVEX_CALL_LIMIT_MS": limit,
                                "NORVEX_CONNECT_LIMIT_MS": limit}, self.selector)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.console.close()
        self.relay.close()
        self.tv.kill()
        self.selector.close()
        self.temporary.cleanup()

    # ---- the loop ----

    def run_until(self, condition):
        """Lets everything go on until the condition holds."""
        end = time.monotonic() + LIMIT
        while not condition():
            assert self.move(end - time.monotonic()), f"nothing moves any more, at {self.console.text[-300:]!r}"

    def move(self, limit=0):
        """Lets what is ready go on; false when nothing is, nor becomes so within the limit."""
        ready = self.selector.select(max(0, limit))
        for key, _ in ready:
            # One that was ready may have been closed by another's turn.
            if self.selector.get_map().get(key.fd) is key:
                key.data()
        return bool(ready)

    def arrive(self):
        """Lets the console come to its next prompt, or to its end (None); where it is."""
        self.run_until(lambda: self.console.ended or self.console.place())
        return None if self.console.ended else self.console.place()

    def end_input(self):
        """Nothing more is typed; lets the console come to its end."""
        self.console.process.stdin.close()
        self.run_until(lambda: self.console.ended)

    def settle(self, spoilt):
        """Returns when the TV has answered the hellos that it owes, but for a spoilt one: until then calls fail at
        once, as they should."""
        while self.move():
            pass
        self.run_until(lambda: not any(
            link.exchange and link.exchange.kind == wire.HELLO and link.exchange.ended is None
            and link.exchange is not spoilt for link in self.relay.links))

    # ---- the TV ----

    def start(self, *options):
        self.tv.start(*options)
        # A scan would write its programmes when it likes; this one stays with its first service.
        self.tv.set("scan-pace", 3600000)

    def restart(self):
        """A new TV. What it says of what it has kept, before anybody calls it."""
        self.start()
        state = self.kept_state()
        self.relay.open()
        self.relay.drop_links()
        self.ready = time.monotonic()
        return state

    def stop(self):
        """Returns when the TV stands still."""
        self.tv.process.send_signal(signal.SIGSTOP)
        os.waitid(os.P_PID, self.tv.process.pid, os.WSTOPPED)

    def go_on(self):
        """A stopped TV goes on."""
        self.tv.process.send_signal(signal.SIGCONT)
        os.waitid(os.P_PID, self.tv.process.pid, os.WCONTINUED)
        self.ready = time.monotonic()

    # ---- what is found ----

    def failures(self):
        """How many exchanges the client library has logged as failed."""
        with contextlib.suppress(FileNotFoundError):
            return len(FAILURE.findall(self.tv.client_log()))
        return 0

    def stored(self):
        """All that the database holds, committed: what a reader finds who comes after the TV's end. The TV's own files
        are not touched."""
        files = {path.name: path.read_bytes() for path in map(self.folder.joinpath, ("database", "database-wal"))
                 if path.exists()}
        if files != self.read:
            self.read = files
            with tempfile.TemporaryDirectory(prefix="zarn-") as copies:
                for name, data in files.items():
                    pathlib.Path(copies, name).write_bytes(data)
                with contextlib.closing(sqlite3.connect(os.path.join(copies, "database"))) as database:
                    assert database.execute("PRAGMA integrity_check").fetchall() == [("ok",)], "the database is torn"
                    self.content = tuple(database.iterdump())
        return self.content

    def kept_state(self):
        """What the TV says of what outlives it."""
        state = self.tv.state()
        del state["debug"]["dialogues"]
        # Their marker file, which the console writes, decides; it may be ahead of the calls.
        for tag in PROVIDER_TAGS:
            del state["device"]["logTags"][tag]
        return state["debug"], state["device"], state["lineUp"]
