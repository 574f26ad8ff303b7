"""The console for a long time: each menu entered again and again, the plug-in loaded again and again, the simulated TV
started again and again under one console. What the process holds must not grow, but for what the console keeps on
purpose. script/endurance runs the long form: ZARN_ENTRIES, ZARN_LOADS and ZARN_RESTARTS say how often."""

import collections
import json
import os

import pytest

from menus import TESTS
from norvex_tv import PROCESS_PROMPT
from programs import PLUGIN, SANITIZE, program, run

ENTRIES = int(os.environ.get("ZARN_ENTRIES", 50))
LOADS = int(os.environ.get("ZARN_LOADS", 20))
RESTARTS = int(os.environ.get("ZARN_RESTARTS", 10))
# The sibling library is there on a device, and where script/in-device says so.
HAS_SIBLING = os.path.exists("/usr/lib64/liblumo-debugmenu.so")
# Of a whole run, in seconds; never reached in one that goes well.
LIMIT = 3600
# What may come and go by chance in a run: bytes on the heap, and of memory in use.
HEAP_SLACK = 4096
RESIDENT_SLACK = 512 << 10
# Connections that lie idle between two calls: the menu's and the one of the signals' thread. How many there are at a
# moment depends on who was at it when the TV came back.
IDLE_CONNECTIONS = 2

# Kept on purpose, in bytes on the heap an entry, what the allocator adds to them included.
LOOP = 32         # the main loop of each entry of the test console
NAVIGATION = 224  # a service navigation, its session and the session's name
SCAN = 208        # a scan control, likewise
GUIDE = 208       # a service guide, likewise

# A name, words that enter a menu and leave it, and what is kept of that. `refused` is a factory that answers nothing.
Menu = collections.namedtuple("Menu", "name words kept refused has_tv", defaults=(0, None, True))


# The early returns, without a TV, which has a limit to what one client may leave open.
WITHOUT_TV = [
    ("boot-up-service-no-number", "21 x", NAVIGATION, None),
    ("boot-up-service-not-found", "21 7", NAVIGATION, None),
    ("invalid-service-no-source-control", TESTS["invalid-service"], NAVIGATION, "CreateSourceControl"),
    ("programme-guide-no-guide", TESTS["programme-guide"], SCAN, "CreateServiceGuide"),
    ("programme-guide-no-navigation", TESTS["programme-guide"], SCAN + GUIDE, "CreateServiceNavigation"),
]
MENUS = [
    Menu("norvex-dialogue", "1 help status 99"),
    Menu("menu-without-a-process", "2"),
    Menu("media-log", "3 99"),
    Menu("media-log-viewer", "3 0 99"),
    Menu("provider-log", "4 99"),
    Menu("provider-log-switched", "4 0 1 0 0 99"),
    Menu("sibling-library", "6 99" if HAS_SIBLING else "6"),
    Menu("simple-menu", "7 99"),
    Menu("simple-menu-switched", "7 0 99"),
    Menu("test-console", "5 99", LOOP),
    *(Menu(name, f"5 {words} 99", LOOP) for name, words in TESTS.items()),
    *(Menu(name, f"5 {words} 99", LOOP + kept, refused, False) for name, words, kept, refused in WITHOUT_TV),
]


def growth(found, kept=0, idle=0):
    """Text about what has grown."""
    times = found["times"]
    grown = []
    if "heap" in found:
        # A sanitizer's heap has the sizes as they were asked for.
        slack = HEAP_SLACK + (times * (kept // 2) if SANITIZE else 0)
        if abs(found["heap"] - times * kept) > slack:
            grown.append(f'heap by {found["heap"] / times:.1f} bytes a time, expected {kept}')
    if found["resident"] > RESIDENT_SLACK + 2 * times * kept and not SANITIZE:
        grown.append(f'memory by {found["resident"]} bytes')
    if found["descriptors"] > idle:
        grown.append(f'descriptors by {found["descriptors"]}')
    if found["threads"] > 0:
        grown.append(f'threads by {found["threads"]}')
    return ", ".join(grown)


def assert_flat(name, found, kept=0, idle=0):
    heap = f'{found["heap"] / found["times"]:.1f} (kept {kept}) heap bytes each, ' if "heap" in found else ""
    print(f'\n{name}: {found["times"]} times, {heap}memory {found["resident"] >> 10:+d} KiB, '
          f'descriptors {found["descriptors"]:+d}, threads {found["threads"]:+d}', end=" ", flush=True)
    assert not growth(found, kept, idle)


def measure_console(tv, mode, times, words, **environment):
    # What is kept is counted here.
    sanitizer = os.environ.get("ASAN_OPTIONS", "") + ":detect_leaks=0:quarantine_size_mb=1"
    result = run(program("zarn-endurance"), mode, PLUGIN, times, words, timeout=LIMIT,
                 env={**tv.environment, "ASAN_OPTIONS": sanitizer, **environment})
    return json.loads(result.stdout)


@pytest.mark.slow
@pytest.mark.parametrize("menu", MENUS, ids=lambda menu: menu.name)
def test_a_menu_is_left_as_it_was_entered(tv_off, menu):
    if menu.has_tv:
        tv_off.start()
        tv_off.set("scan-pace", 0)
    refused = {"REFUSED_FACTORY": menu.refused} if menu.refused else {}
    assert_flat(menu.name, measure_console(tv_off, "entries", ENTRIES, menu.words, **refused), menu.kept)


def test_nothing_is_left_of_many_loads_of_the_plug_in(tv):
    # In one load: a dialogue, the simple menu, the test console with a test.
    found = measure_console(tv, "loads", LOADS, "1 99 7 99 5 10 99")
    if SANITIZE:
        # A sanitizer keeps notes on each library that comes and goes.
        del found["heap"]
    assert_flat("loads", found, LOOP)


def measure_process(pid):
    with open(f"/proc/{pid}/status", encoding="utf-8") as status:
        [resident] = [int(line.split()[1]) for line in status if line.startswith("RssAnon:")]
    return {"resident": resident << 10, "descriptors": len(os.listdir(f"/proc/{pid}/fd")),
            "threads": len(os.listdir(f"/proc/{pid}/task"))}


def test_a_console_outlives_many_restarts_of_its_tv(tv):
    """The next call after each goes well. Every tenth time the test console is left and entered anew."""
    main_menu = " 21. Set boot up service\r\n"
    tv.environment["ASAN_OPTIONS"] = os.environ.get("ASAN_OPTIONS", "") + ":detect_leaks=0:quarantine_size_mb=1"
    console = tv.open_console()
    console.type("5", main_menu, PROCESS_PROMPT)
    warm_up = RESTARTS // 10 + 10
    for number in range(warm_up + RESTARTS):
        if number == warm_up:
            # The subscriber is at home in the TV as it is now; the same further down.
            tv.wait("/subscribers/0/connected == true")
            before = measure_process(console.pid)
        tv.kill()
        tv.start()
        assert console.type("10", " Success!", PROCESS_PROMPT).endswith("CheckTunerSignalState")
        if number % 10 == 9:
            console.type("99 5", main_menu, PROCESS_PROMPT)
    tv.wait("/subscribers/0/connected == true")
    after = measure_process(console.pid)
    console.leave("99 99")
    assert_flat("restarts", {"times": RESTARTS, **{name: after[name] - before[name] for name in before}}, LOOP,
                IDLE_CONNECTIONS)


@pytest.mark.parametrize("change, told", [
    ({}, ""), ({"descriptors": 1, "threads": 1}, "descriptors by 1, threads by 1"),
    ({"heap": 10000}, "heap by 100.0 bytes a time, expected 32"),
    pytest.param({"resident": 1 << 20}, "memory by 1048576 bytes",
                 marks=pytest.mark.skipif(bool(SANITIZE), reason="a sanitizer's memory is its own"))])
def test_what_grows_is_told(change, told):
    flat = {"times": 100, "heap": 3200, "resident": 0, "descriptors": 0, "threads": 0}
    assert growth({**flat, **change}, 32) == told
