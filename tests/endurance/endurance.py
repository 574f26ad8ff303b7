#!/usr/bin/python3
"""The console for a long time: each menu entered again and again, the plug-in loaded again and again,
the simulated TV started again and again under one console. What the process holds must not grow, but
for what the console keeps on purpose.

ZARN_BIN and ZARN_LIB name the folders of the build. As a program: endurance.py ENTRIES LOADS RESTARTS
[MENU...], a line for each; status 1 when something grew."""

import json
import os
import select
import subprocess
import sys
import tempfile

from norvex_tv import Tv

BIN = os.environ["ZARN_BIN"]
PLUGIN = os.path.join(os.environ["ZARN_LIB"], "libzarn-debugmenu.so")
SANITIZED = bool(os.environ.get("ZARN_SANITIZE"))
# The sibling library is there on a device, and where script/in-device says so.
SIBLING = "/usr/lib64/liblumo-debugmenu.so"
# Of a whole run, in seconds; never reached in one that goes well.
LIMIT = 3600
# What may come and go by chance in a run: bytes on the heap, and of memory in use.
HEAP_SLACK = 4096
RESIDENT_SLACK = 512 << 10
# Connections that lie idle between two calls: the menu's and the one of the signals' thread. How many
# there are at a moment depends on who was at it when the TV came back.
IDLE_CONNECTIONS = 2

# Kept on purpose, in bytes on the heap an entry, what the allocator adds to them included.
LOOP = 32         # the main loop of each entry of the test console
NAVIGATION = 224  # a service navigation, its session and the session's name
SCAN = 208        # a scan control, likewise
GUIDE = 208       # a service guide, likewise


class Menu:
    """Words that enter it and leave it, and what is kept of that."""

    def __init__(self, name, words, *, kept=0, refused=None, has_tv=True):
        self.name = name
        self.words = words
        self.kept = kept
        self.refused = refused
        self.has_tv = has_tv


def test(number, name, words="", **more):
    """One of the test console's."""
    return Menu(f"test {number}: {name}", f"5 {number} {words} 99", kept=LOOP + more.pop("kept", 0),
                **more)


MENUS = [
    Menu("norvex dialogue", "1 help status 99"),
    Menu("menu without a process", "2"),
    Menu("media log", "3 99"),
    Menu("media log, a viewer", "3 0 99"),
    Menu("provider log", "4 99"),
    Menu("provider log, on and off", "4 0 1 0 0 99"),
    Menu("sibling library", "6 99" if os.path.exists(SIBLING) else "6"),
    Menu("simple menu", "7 99"),
    Menu("simple menu, a switch", "7 0 99"),
    Menu("test console", "5 99", kept=LOOP),
    test(1, "reference count", "0 1 99"),
    test(2, "mute", "0 1 1 2 0 99 0"),
    test(3, "hdmi analysis", "1 1 1 2 1 99"),
    test(4, "status"),
    test(5, "air"),
    test(6, "dtv mode", "1 2 3 4 5 6 7 8 99"),
    test(7, "source", "1 2 4 5 7 3 7 6 7 99"),
    test(8, "video decoder"),
    test(9, "av mode"),
    test(10, "tuner"),
    test(11, "latest channel"),
    test(12, "preparation", "1 4 2 5 8 6 99"),
    test(13, "tv mode", "1 7 2 7 4 7 99 7"),
    test(14, "crop video"),
    test(15, "caption"),
    test(16, "preview source", "1 13 2 0 7 99"),
    test(17, "signal tune preparation", "1 2 7 4 5 7 7 3 6 99"),
    test(18, "programme guide", "1 2 3 4 5 6 7 99"),
    test(19, "zoom", "1 2 3 0 0 960 540 0 0 480 270 0 0 1920 1080 10 99"),
    test(20, "invalid service", "1 2 99"),
    test(21, "boot-up service", "7"),
    # The early returns. Without a TV, which has a limit to what one client may leave open.
    test(21, "boot-up service, no number", "x", kept=NAVIGATION, has_tv=False),
    test(21, "boot-up service, refused", "7", kept=NAVIGATION, has_tv=False),
    test(20, "invalid service, no source control", kept=NAVIGATION, has_tv=False,
         refused="CreateSourceControl"),
    test(18, "programme guide, no guide", kept=SCAN, has_tv=False, refused="CreateServiceGuide"),
    test(18, "programme guide, no navigation", kept=SCAN + GUIDE, has_tv=False,
         refused="CreateServiceNavigation"),
]
# In one load: a dialogue, the simple menu, the test console with a test.
LOAD_WORDS = "1 99 7 99 5 10 99"


class Grown(Exception):
    """Something that should have stayed as it was has not."""


def environment_for(folder, socket, refused=None):
    found = {**os.environ, "NORVEX_SOCKET": socket, "NORVEX_LOG": os.path.join(folder, "client.log"),
             "NORVEX_DEVICE_DIR": os.path.join(folder, "device")}
    # What is kept is counted here.
    found["ASAN_OPTIONS"] = found.get("ASAN_OPTIONS", "") + ":detect_leaks=0:quarantine_size_mb=1"
    if refused:
        found["REFUSED_FACTORY"] = refused
    return found


def run_console(mode, times, words, folder, socket, refused=None):
    result = subprocess.run([os.path.join(BIN, "zarn-endurance"), mode, PLUGIN, str(times), words],
                            env=environment_for(folder, socket, refused), stdin=subprocess.DEVNULL,
                            capture_output=True, text=True, timeout=LIMIT, check=False)
    if result.returncode != 0:
        raise Grown(f"ended with {result.returncode}: {result.stderr.strip()}")
    return json.loads(result.stdout)


def judge(found, kept=0, idle=0):
    """Nothing, or what has grown."""
    times = found["times"]
    grown = []
    if "heap" in found:
        # A sanitizer's heap has the sizes as they were asked for.
        slack = HEAP_SLACK + (times * (kept // 2) if SANITIZED else 0)
        if abs(found["heap"] - times * kept) > slack:
            grown.append(f'heap by {found["heap"] / times:.1f} bytes a time, expected {kept}')
    if found["resident"] > RESIDENT_SLACK + 2 * times * kept and not SANITIZED:
        grown.append(f'memory by {found["resident"]} bytes')
    if found["descriptors"] > idle:
        grown.append(f'descriptors by {found["descriptors"]}')
    if found["threads"] > 0:
        grown.append(f'threads by {found["threads"]}')
    return ", ".join(grown)


def enter(menu, times):
    """What is left of so many entries of a menu."""
    with tempfile.TemporaryDirectory() as folder:
        if not menu.has_tv:
            return run_console("entries", times, menu.words, folder, os.path.join(folder, "none"),
                               menu.refused)
        with Tv() as tv:
            tv.simctl("set", "scan-pace", 0)
            return run_console("entries", times, menu.words, folder, tv.socket, menu.refused)


def load(times):
    """What is left of so many loads, each unloaded for good."""
    with tempfile.TemporaryDirectory() as folder, Tv() as tv:
        found = run_console("loads", times, LOAD_WORDS, folder, tv.socket)
    if SANITIZED:
        # A sanitizer keeps notes on each library that comes and goes.
        del found["heap"]
    return found


class Host:
    """The console in a process of its own, at the other end of two pipes."""

    def __init__(self, folder, socket):
        self.process = subprocess.Popen(
            [os.path.join(BIN, "zarn-debughost"), PLUGIN], env=environment_for(folder, socket),
            stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        self.output = b""

    def type(self, words, text):
        """Waits for the text that comes of the words; what came before it."""
        self.process.stdin.write(words.encode() + b"\n")
        self.process.stdin.flush()
        while text.encode() not in self.output:
            if not select.select([self.process.stdout], [], [], 60)[0]:
                raise Grown(f"no answer to {words}: {self.output[-300:]}")
            more = os.read(self.process.stdout.fileno(), 1 << 16)
            if not more:
                raise Grown(f"the console ended at {words}: {self.output[-300:]}")
            self.output += more
        before, self.output = self.output.split(text.encode(), 1)
        return before.decode(errors="replace")

    def measure(self):
        root = f"/proc/{self.process.pid}"
        with open(f"{root}/status", encoding="utf-8") as status:
            [resident] = [int(line.split()[1]) for line in status if line.startswith("RssAnon:")]
        return {"resident": resident << 10, "descriptors": len(os.listdir(f"{root}/fd")),
                "threads": len(os.listdir(f"{root}/task"))}

    def end(self):
        """Leaves the process menu; its status."""
        self.process.communicate(b"99\n", timeout=60)
        return self.process.returncode


def restart(times):
    """What is left in one console of so many new runs of its TV. Each is killed and started again;
    the next call goes well. Every tenth time the test console is left and entered anew."""
    warm_up = times // 10 + 10
    prompt = " 99 : Exit\n====================================\n\ncmd> "
    with tempfile.TemporaryDirectory() as folder, Tv() as tv:
        host = Host(folder, tv.socket)
        try:
            host.type("5", " 21. Set boot up service\n")
            before = None
            for number in range(warm_up + times):
                if number == warm_up:
                    # The subscriber is at home in the TV as it is now; the same further down.
                    tv.wait("/subscribers/0/client", ">=", "1")
                    before = host.measure()
                tv.kill()
                tv.start()
                # With its prompt: the console is at rest when it is measured.
                said = host.type("10", "CheckTunerSignalState")
                said = host.type("9 9", prompt)
                if " Success!" not in said:
                    raise Grown(f"restart {number + 1}: the next call failed: {said[:40]}")
                if number % 10 == 9:
                    host.type("99 5", " 21. Set boot up service\n")
            tv.wait("/subscribers/0/client", ">=", "1")
            after = host.measure()
            host.type("99 9 8", "Command not implemented")
            status = host.end()
        finally:
            host.process.kill()
            host.process.wait()
        if status != 0:
            raise Grown(f"the console ended with {status}")
    return {"times": times, **{name: after[name] - before[name] for name in before}}


def main(entries, loads, restarts, *names):
    known = [*(menu.name for menu in MENUS), "loads", "restarts"]
    if unknown := [name for name in names if name not in known]:
        print(f"endurance: no run is called '{unknown[0]}'; there are: {', '.join(known)}", file=sys.stderr)
        return 2
    failed = 0

    def show(name, run, kept=0, idle=0):
        nonlocal failed
        try:
            found = run()
            grown = judge(found, kept, idle)
        except Grown as failure:
            print(f"{name}: {failure}", flush=True)
            failed += 1
            return
        failed += bool(grown)
        heap = f'{found["heap"] / found["times"]:.1f} (kept {kept}) heap bytes each, ' \
            if "heap" in found else ""
        print(f'{name}: {found["times"]} times, {heap}memory {found["resident"] >> 10:+d} KiB, '
              f'descriptors {found["descriptors"]:+d}, threads {found["threads"]:+d}'
              f'{": GROWN: " + grown if grown else ""}', flush=True)

    for menu in MENUS:
        if not names or menu.name in names:
            show(menu.name, lambda menu=menu: enter(menu, entries), menu.kept)
    if not names or "loads" in names:
        show("loads", lambda: load(loads), LOOP)
    if not names or "restarts" in names:
        show("restarts", lambda: restart(restarts), LOOP, IDLE_CONNECTIONS)
    print(f"endurance: {failed} grown" if failed else "endurance: flat", flush=True)
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main(*map(int, sys.argv[1:4]), *sys.argv[4:]))
