"""The long run: everything that the console can be asked for, once; then again with something going
wrong at each boundary between console and TV in turn.

As a program (see script/faults) it goes through all of them and tells what it has measured."""

import argparse
import collections
import multiprocessing
import struct
import sys
import time

import norvex_proxy
import norvex_wire as wire
from fault_kinds import KINDS, Kill
from fault_rig import Rig
from programs import LIMIT

# Beyond the call limit, for a command of any number of calls.
COMMAND_SLACK = 0.5
FIRST_SUCCESS = 2.0

AREA = "0 0 960 540 0 0 480 270 0 0 1920 1080 "
WORDS = {
    # The text dialogue, the provider log switch, the menu of items, the test console; then each of
    # its tests.
    "run": "1 help status items 101 103 all none 102 modes 1 qos on none 99 4 0 1 0 0 0 1 99 7 1 2 1 x 99 5 "
           "1 0 1 99 2 0 1 1 2 0 1 0 99 0 3 1 1 2 2 1 99 4 5 6 1 2 3 4 5 6 7 8 99 7 1 2 3 5 4 5 6 7 7 99 "
           "8 9 10 11 12 1 2 3 4 5 6 7 8 99 13 1 7 2 5 3 5 4 5 5 5 6 5 99 1 14 15 16 1 0 2 0 7 99 "
           "17 1 4 7 2 7 5 7 3 6 7 99 18 1 2 3 4 5 6 7 99 "
           "19 1 2 3 " + AREA + "10 5 1 1 7 1 6 1 1 8 1 9 1 " + AREA + "4 1 0 0 1920 1080 10 99 "
           "20 1 2 99 21 7 99 99",
    # Answers of several packets. A list that long is not left: the end of the input is its end.
    "long lists": "1 items 101 99 7 1",
}
OPTIONS = {"run": (), "long lists": ("--items", "2000")}

Step = collections.namedtuple("Step", "place word")


def is_top(place):
    """Whether a new item of the process menu or the test console is chosen there."""
    return place[0].startswith("Process Debug List") and place[1] == "cmd> "


class Recorder(norvex_proxy.Fault):
    """Nothing goes wrong: what the database holds after each exchange."""

    def __init__(self, rig):
        self.rig = rig
        self.stored = [rig.stored()]
        # What the TV says of it, for each content that there was.
        self.states = {self.stored[0]: rig.kept_state()}

    def answer(self, exchange, link, packets):
        stored, state = self.rig.stored(), self.rig.kept_state()
        self.stored.append(stored)
        assert self.states.setdefault(stored, state) == state, \
            f"{exchange.name} is answered before its change is stored"
        return packets


class Recording:
    """The run without a fault."""

    def __init__(self, name, call_limit):
        self.name = name
        self.call_limit = call_limit
        self.steps = []
        # Each answer waits until the database has been read.
        with Rig(LIMIT, OPTIONS[name]) as rig:
            recorder = rig.proxy.fault = Recorder(rig)
            place = rig.arrive()
            for word in WORDS[name].split():
                assert place is not None, "the console has ended early"
                self.steps.append(Step(place, word))
                rig.console.type(word)
                place = rig.arrive()
            if place is not None:
                rig.end_input()
            assert rig.console.finish() == (0, ""), "the console has not ended well"
            assert rig.failures() == 0
            self.exchanges = [exchange.name for exchange in rig.proxy.exchanges]
            self.calls = [call["interface"].removeprefix("com.holvi.") + "." + call["method"]
                          for call in rig.tv.calls()]
        assert [name for name in self.exchanges if name != "hello"] == self.calls
        self.stored = recorder.stored
        self.states = recorder.states

    def operations(self):
        """The number of an exchange for each operation that there is: its last one."""
        return sorted({name: number for number, name in enumerate(self.exchanges, 1)}.values())


class Figures:
    """What the runs have shown, at most and in all."""

    def __init__(self):
        self.runs = collections.Counter()
        self.lost = 0
        self.call = self.command = self.success = 0.0
        self.problems = []

    def add(self, other):
        self.runs += other.runs
        self.lost += other.lost
        self.call = max(self.call, other.call)
        self.command = max(self.command, other.command)
        self.success = max(self.success, other.success)
        self.problems += other.problems

    def expect(self, condition, *told):
        if not condition:
            self.problems.append(" ".join(map(str, told)))


class FaultyRun:
    """The recorded run once more, with one fault."""

    def __init__(self, recording, kind, number, way):
        self.recording = recording
        self.what = f"{recording.name}, {kind} ({way}) at {number}, {recording.exchanges[number - 1]}:"
        self.figures = Figures()
        self.figures.runs[kind] += 1
        with Rig(recording.call_limit, OPTIONS[recording.name]) as rig:
            self.rig = rig
            self.fault = rig.proxy.fault = KINDS[kind](rig, number, way)
            self.next = 0
            self.typed = []
            self.logged = 0
            self.recovered = False
            try:
                self.run()
                self.expect(rig.tv.end() == 0, "the TV has not ended well")
            except (AssertionError, OSError, struct.error) as error:
                self.figures.expect(False, self.what, repr(error))

    def expect(self, condition, *told):
        self.figures.expect(condition, self.what, *told)

    def run(self):
        place = self.rig.arrive()
        for _ in range(2 * len(self.recording.steps)):
            if place is None:
                break
            word = self.choose(place)
            if word is None:
                self.rig.end_input()
                break
            self.rig.console.type(word)
            self.typed.append(self.rig.console.typed)
            place = self.rig.arrive()
            self.note_command(word, place)
        self.expect(self.rig.console.ended and self.rig.console.finish() == (0, ""),
                    "the console has not ended well")
        self.expect(self.fault.happened, "it has not come to that")
        self.expect(self.next == len(self.recording.steps), "menus were left out")
        if not self.recovered:
            self.come_back()
        self.note_calls()

    def choose(self, place):
        """The word to type: the run's next one, or where the fault has led elsewhere the next one
        that is for this place. A menu that the run enters is never left out. None: no word is left."""
        steps = self.recording.steps
        if self.next == len(steps):
            return None
        ahead = self.next
        while ahead < len(steps) and steps[ahead].place != place:
            ahead += 1
        skipped = steps[self.next:ahead]
        if ahead == len(steps) or any(is_top(step.place) for step in skipped):
            return "99"
        self.expect(not skipped or self.fault.happened, "another way than before, at", place)
        self.next = ahead + 1
        return steps[ahead].word

    def note_command(self, word, place):
        seconds = time.monotonic() - self.rig.console.typed
        self.figures.command = max(self.figures.command, seconds)
        self.expect(seconds <= self.recording.call_limit + COMMAND_SLACK,
                    f"{word!r} took {seconds:.3f} s")
        if self.fault.happened and not self.recovered and place is not None:
            self.come_back()

    def come_back(self):
        """At the first prompt after the fault."""
        self.recovered = True
        failures = self.rig.failures()
        least, most = self.fault.failures
        self.expect(least <= failures <= most, failures, "calls have failed")
        self.fault.end()
        self.rig.settle(self.fault.spoilt)
        self.logged = self.rig.failures()
        if isinstance(self.fault, Kill):
            lost = self.fault.has_lost(self.recording)
            self.figures.lost += lost
            self.expect(not lost, "the TV has lost what it had answered")

    def note_calls(self):
        rig = self.rig
        for exchange in rig.proxy.exchanges:
            exchange.end()
            self.figures.call = max(self.figures.call, exchange.seconds)
            self.expect(exchange.seconds <= self.recording.call_limit + COMMAND_SLACK,
                        f"{exchange.name} took {exchange.seconds:.3f} s")
        self.expect(rig.failures() == self.logged, "calls have failed afterwards")
        if rig.ready:
            self.note_first_success()

    def note_first_success(self):
        """Of the calls that came after the restart, the first one. At the end of the run there may
        be none."""
        for exchange in self.rig.proxy.exchanges:
            if exchange.kind == wire.CALL and exchange.began >= self.rig.ready:
                typed = max(typed for typed in self.typed if typed <= exchange.began)
                seconds = exchange.ended - max(self.rig.ready, typed)
                self.figures.success = max(self.figures.success, seconds)
                self.expect(exchange.answered, "the first call afterwards has failed")
                self.expect(seconds <= FIRST_SUCCESS, f"first success after {seconds:.3f} s")
                break


def sample(recording, kind, every):
    """Each way at every so manieth boundary, beginning elsewhere for each."""
    ways = KINDS[kind].WAYS
    numbers = range(1, len(recording.exchanges) + 1)
    # Answers are alike for all calls of an operation.
    if kind == "bad answer" and every > 1:
        numbers = recording.operations()
    return [(recording.name, kind, number, way)
            for start, way in enumerate(ways)
            for number in numbers[start * min(every, len(numbers)) // len(ways)::every]]


RECORDINGS = {}


def run(what):
    name, *fault = what
    return FaultyRun(RECORDINGS[name], *fault).figures


def positive(kind):
    def read(word):
        value = kind(word)
        if value <= 0:
            raise argparse.ArgumentTypeError(f"expected more than 0, not {word}")
        return value
    read.__name__ = "number"
    return read


def read_command_line():
    parser = argparse.ArgumentParser(prog="faults", description=__doc__.split("\n\n", maxsplit=1)[0])
    parser.add_argument("--every", type=positive(int), default=10, metavar="N",
                        help="each kind of fault at every N-th boundary (default: 10)")
    parser.add_argument("--all", dest="every", action="store_const", const=1, help="at each of them")
    parser.add_argument("--kind", action="append", choices=KINDS, help="only this kind; may be repeated")
    parser.add_argument("--call-limit", type=positive(float), default=1.0, metavar="SECONDS",
                        help="the client's limit for a call (default: 1)")
    parser.add_argument("--jobs", type=positive(int), default=2, metavar="N", help="runs at a time (default: 2)")
    return parser.parse_args()


def main():
    options = read_command_line()
    began = time.monotonic()
    whole = Figures()
    plan = []
    for name in WORDS:
        RECORDINGS[name] = recording = Recording(name, options.call_limit)
        print(f"{name}: {len(recording.steps)} words, {len(recording.calls)} calls of "
              f"{len(set(recording.calls))} operations, {len(recording.exchanges)} boundaries with the hellos",
              flush=True)
        for kind in options.kind or KINDS:
            plan += sample(recording, kind, options.every)
    with multiprocessing.Pool(options.jobs) as pool:
        for figures in pool.imap_unordered(run, plan):
            whole.add(figures)
            for problem in figures.problems:
                print(problem, flush=True)
            if sum(whole.runs.values()) % 500 == 0:
                print(f"faults: {sum(whole.runs.values())} of {len(plan)} runs", file=sys.stderr)
    for kind, count in whole.runs.items():
        print(f"{kind}: {count} runs")
    print(f"slowest call {whole.call:.3f} s, slowest command {whole.command:.3f} s "
          f"(call limit {options.call_limit:.3f} s), slowest first success afterwards {whole.success:.3f} s")
    print(f"faults: {sum(whole.runs.values())} runs in {time.monotonic() - began:.0f} s, "
          f"lost commits {whole.lost}, findings {len(whole.problems)}")
    return 1 if whole.problems else 0


if __name__ == "__main__":
    sys.exit(main())
