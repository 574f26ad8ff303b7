"""Types random words at the console on a simulated TV and checks what must hold for each of them.

A word is mostly a row of the menu on the screen, so that every menu is reached without a copy of them here.
script/soak has the options."""

import argparse
import collections
import fcntl
import os
import pathlib
import random
import re
import select
import subprocess
import sys
import tempfile
import time

ROOT = pathlib.Path(__file__).resolve().parents[2]
# Seconds until the console asks for the next word. A call takes up to five, and a machine may be busy.
LIMIT = 60

TITLE = re.compile(rb"=\n[ \t]+\[([^\]\n]+)\]")
ROW = re.compile(rb"^ *(\w+) *[.:]", re.MULTILINE)
# What only this menu shows. The other menus are counted by their titles.
MENUS = {"process menu": b" 1. Norvex\n", "dialogue": b"norvex> ", "media log menu": b"GST_FPA_PARSER",
         "provider log menu": b"QUARLE_PROVIDER", "simple menu": b"QoS is ", "test console": b" 1. Reference Count Test\n"}
# The tests of the test console are counted by the number that chooses them: some show no menu, two the same title.
TESTS = {f"test {number}": ("test console", b"%d" % number) for number in range(1, 22)}
# A run of so many words must reach all of them.
MANY = 1000

LIMITS = [b"%d" % (sign * (power + offset)) for power in (2**15, 2**16, 2**31, 2**32, 2**63, 2**64)
          for offset in (-1, 0, 1, 99) for sign in (1, -1)]
TEXTS = [b"on", b"off", b"all", b"none", b"main", b"help", b"0x10", b"1e3", b"1,000", b"%s%n", b"-", b"99.", b"99x",
         b"+99", b"099", b"\xd0\xb4\xd0\xb0", b"\xff\xfe", b"\x1b[2J", b"\x00"]


class Finding(Exception):
    """Something that must not happen."""


def draw(rng, rows):
    """The next word: mostly one of the rows or, where there are none, an argument."""
    if rng.random() < 0.8:
        return rng.choice(rows or [b"0", b"1", b"2", b"99", b"%d" % rng.randrange(50), b"%d" % rng.randrange(2000)])
    return rng.choice([
        lambda: rng.choice(LIMITS),
        lambda: rng.choice(TEXTS),
        lambda: rng.choice([b"+%d", b"0%d", b"%dx", b"-%d", b"%d.5", b"%d"]) % rng.randrange(130),
        lambda: rng.choice([b"0", b"1", b"9", b"x", b"+"]) * rng.randrange(1, 4000),
        lambda: b"".join(rng.randbytes(rng.randrange(1, 40)).split()) or b"?",
    ])()


class Console:
    """The host with the plug-in, from its start to its end."""

    def __init__(self, binaries, **options):
        self.process = subprocess.Popen(
            [ROOT / "script/in-device", "--build", binaries.parent, binaries / "zarn-debughost"],
            stdin=subprocess.PIPE, stdout=subprocess.PIPE, bufsize=0, **options)
        # One page: while it holds text that the host has not read, it does not poll as writable.
        fcntl.fcntl(self.process.stdin, fcntl.F_SETPIPE_SZ, 4096)
        os.set_blocking(self.process.stdout.fileno(), False)
        self.ended = False

    def answer(self, word):
        """Types a word. Returns what was printed until the console asked for the next one or ended."""
        # The console skips the second line end, but not before it asks for the next word.
        return self.type(word + b"\n") + self.type(b"\n")

    def type(self, text):
        """Returns what was printed until the text had been read."""
        try:
            self.process.stdin.write(text)
        except BrokenPipeError:
            pass
        return self.collect({self.process.stdin: select.POLLOUT, self.process.stdout: select.POLLIN})

    def end(self):
        """Ends the input. Returns when the host and the log viewers that it started have ended."""
        self.process.stdin.close()
        self.collect({self.process.stdout: select.POLLIN})
        if self.process.wait(LIMIT) != 0:
            raise Finding(f"the console ended with status {self.process.returncode}")

    def collect(self, streams):
        poll = select.poll()
        for stream, event in streams.items():
            poll.register(stream, event)
        output = b""
        deadline = time.monotonic() + LIMIT
        while not self.ended:
            events = dict(poll.poll(LIMIT * 1000))
            if time.monotonic() > deadline:
                raise Finding(f"the console asked for no word and did not end within {LIMIT} s")
            # All that a pipe holds.
            block = self.process.stdout.read(1 << 16)
            self.ended = block == b""
            output += block or b""
            if select.POLLOUT in events.values():
                break
            if not self.process.stdin.closed and self.process.stdin.fileno() in events:
                # Nobody reads any more: the end of the output follows.
                poll.unregister(self.process.stdin)
        return output


class Soak:
    """A TV and, one after the other, consoles on it."""

    def __init__(self, options, folder, errors):
        self.options = options
        self.rng = random.Random(options.seed)
        self.deadline = time.monotonic() + (options.seconds or float("inf"))
        self.typed = []
        self.shown = collections.Counter()
        self.used = collections.Counter()
        self.console = None
        reports = f"log_path={folder}/sanitizer"
        self.streams = {"stderr": errors, "env": {
            **os.environ, "NORVEX_SOCKET": f"{folder}/norvex.sock", "NORVEX_LOG": "/dev/null",
            "NORVEX_DEVICE_DIR": f"{folder}/device", "ASAN_OPTIONS": reports, "TSAN_OPTIONS": reports,
            # What the console keeps on purpose.
            "LSAN_OPTIONS": f"suppressions={ROOT}/tests/support/leaks.supp:print_suppressions=0:fast_unwind_on_malloc=0"}}
        ready, told = os.pipe()
        self.tv = subprocess.Popen([options.bin / "norvex-sim", "--log", "/dev/null", "--ready-fd", str(told)],
                                   pass_fds=[told], **self.streams)
        os.close(told)
        with os.fdopen(ready) as lines:
            lines.readline()

    def run(self):
        """Types all words. Raises a finding."""
        while self.more():
            self.enter(Console(self.options.bin, **self.streams))
        if subprocess.run([self.options.bin / "norvex-simctl", "state"], stdout=subprocess.DEVNULL, timeout=LIMIT,
                          check=False, **self.streams).returncode != 0:
            raise Finding("the TV does not answer")
        self.tv.terminate()
        if self.tv.wait(LIMIT) != 0:
            raise Finding(f"the TV ended with status {self.tv.returncode}")
        missing = [name for name, count in self.counts().items() if not count]
        if missing and len(self.typed) >= MANY and not self.options.given:
            raise Finding(f"not reached: {', '.join(missing)}")

    def more(self):
        return len(self.typed) < self.options.words and time.monotonic() < self.deadline

    def enter(self, console):
        """Types words until they are used up or the console has been left."""
        self.console = console
        menu, rows = self.look(console.answer(b""))
        while self.more() and not console.ended:
            least = min((self.used[menu, row] for row in rows), default=0)
            rare = [row for row in rows if self.used[menu, row] == least]
            word = self.options.given[len(self.typed)] if self.options.given else draw(self.rng, rare)
            self.typed.append(word)
            self.used[menu, word] += 1
            before = menu
            menu, rows = self.look(console.answer(word))
            if self.tv.poll() is not None:
                raise Finding(f"the TV ended with status {self.tv.returncode}")
        early = console.ended and before != "process menu"
        console.end()
        if early:
            raise Finding("the console ended within a menu")

    def look(self, output):
        """The menu that was shown last and its rows; neither where the console asks for something else."""
        menu, rows = None, []
        _, *parts = TITLE.split(output)
        for title, screen in zip(parts[::2], parts[1::2]):
            menu = next((name for name, text in MENUS.items() if text in screen), title.decode())
            rows = ROW.findall(screen)
            self.shown[menu] += 1
        return menu, rows

    def counts(self):
        return {**dict.fromkeys(MENUS, 0), **self.shown, **{name: self.used[choice] for name, choice in TESTS.items()}}

    def kill(self):
        for process in filter(None, (self.console and self.console.process, self.tv)):
            if process.poll() is None:
                process.terminate()
                process.wait(LIMIT)


def main():
    parser = argparse.ArgumentParser(prog="soak")
    parser.add_argument("--bin", required=True, type=lambda name: pathlib.Path(name).resolve())
    parser.add_argument("--words", type=int)
    parser.add_argument("--seconds", type=int)
    parser.add_argument("--seed", type=int, default=int(time.time()))
    parser.add_argument("--words-from", dest="given", type=lambda name: pathlib.Path(name).read_bytes().split())
    options = parser.parse_args()
    options.words = len(options.given or []) or options.words or (float("inf") if options.seconds else 20000)

    finding = ""
    with tempfile.TemporaryDirectory(prefix="zarn-soak.") as folder, open(f"{folder}/errors", "w+b") as errors:
        soak = Soak(options, folder, errors)
        try:
            soak.run()
        except Finding as found:
            finding = f"soak: finding: {found}\n"
        finally:
            soak.kill()
        for report in pathlib.Path(folder).glob("sanitizer*"):
            finding += report.read_text()
        for name, count in soak.counts().items():
            print(f"{count:8} {name}")
        if finding:
            errors.seek(0)
            words = options.bin.parent / f"soak-{options.seed}.words"
            words.write_bytes(b"\n".join(soak.typed) + b"\n")
            print(finding, errors.read().decode(errors="replace"), sep="")
            print("soak: the last words:", *(word[:40] for word in soak.typed[-10:]))
            print(f"soak: replay with: script/soak --preset {options.bin.parent.name} --words-from {os.path.relpath(words)}")
    print(f"soak: {len(soak.typed)} words, seed {options.seed}, {1 if finding else 0} findings")
    return 1 if finding else 0


sys.exit(main())
