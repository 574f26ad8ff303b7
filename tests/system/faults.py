"""The long run: every command of the console once; then again with a fault at each boundary between
console and TV in turn.

As a program (see script/faults) it runs all of them and prints the measurements."""

import argparse
import collections
import multiprocessing
import struct
import sys
import time

import norvex_wire as wire
from fault_harness import Harness
from fault_kinds import KINDS, Kill
from menus import TESTS
from programs import LIMIT
from relay import Fault

# Beyond the call limit, for a command of any number of calls.
COMMAND_SLACK = 0.5
FIRST_SUCCESS = 2.0

WORDS = {
    # The text dialogue, the provider log switch, the menu of items, the test console; then each of its tests.
    "run": "1 help status items 101 103 all none 102 modes 1 qos on none 99 4 0 1 0 0 0 1 99 7 1 2 1 x 99 5 " +
           " ".join(TESTS.values()) + " 99 99",
    # Answers of several packets. A list that long is not left: the end of the input is its end.
    "long lists": "1 items 101 99 7 1",
}
OPTIONS = {"run": (), "long lists": ("--items", "2000")}

Step = collections.namedtuple("Step", "place word")


def is_top(place):
    """Whether a new item of the process menu or the test console is chosen there."""
    return place[0].startswith("Process Debug List") and place[1] == "cmd> "


class Recorder(Fault):
    """Nothing goes wrong: what the database holds after each exchange."""

    def __init__(self, harness):
        self.harness = harness
        self.stored = [harness.stored()]
        # What the TV says of it, for each content that there was.
        self.states = {self.stored[0]: harness.kept_state()}

    def answer(self, exchange, link, packets):
        stored, state = self.harness.stored(), self.harness.kept_state()
        self.stored.append(stored)
        assert self.states.setdefault(stored, state) == state, f"{exchange.name} is answered before it is stored"
        return packets


class Recording:
    """The run without a fault."""

    def __init__(self, name, call_limit, command_slack=COMMAND_SLACK, first_success=FIRST_SUCCESS):
        self.name = name
        self.call_limit = call_limit
        self.command_limit = call_limit + command_slack
        self.first_success = first_success
        self.steps = []
        # Each answer waits until the database has been read.
        with Harness(LIMIT, OPTIONS[name]) as harness:
            recorder = harness.relay.fault = Recorder(harness)
            place = harness.arrive()
            for word in WORDS[name].split():
                assert place is not None, "the console has ended early"
                self.steps.append(Step(place, word))
                harness.console.type(word)
                place = harness.arrive()
            if place is not None:
                harness.end_input()
            assert harness.console.has_ended_well()
            assert harness.failures() == 0
            self.exchanges = [exchange.name for exchange in harness.relay.exchanges]
            self.calls = [call["interface"].removeprefix("com.holvi.") + "." + call["method"]
                          for call in harness.tv.calls()]
        assert [name for name in self.exchanges if name != "hello"] == self.calls
        self.stored = recorder.stored
        self.states = recorder.states

    def sample(self, kind, every):
        """Each way at every so manieth boundary, beginning elsewhere for each: (recording, kind, number, way)."""
        ways = KINDS[kind].WAYS
        numbers = range(1, len(self.exchanges) + 1)
        # Answers are alike for all calls of an operation.
        if kind == "bad answer" and every > 1:
            numbers = sorted({name: number for number, name in enumerate(self.exchanges, 1)}.values())
        return [(self.name, kind, number, way) for start, way in enumerate(ways)
                for number in numbers[start * min(every, len(numbers)) // len(ways)::every]]


class Figures:
    """What the runs have shown, at most and in all."""

    def __init__(self):
        self.runs = collections.Counter()
        self.slowest = collections.Counter()
        self.lost = 0
        self.problems = []

    def add(self, other):
        self.runs += other.runs
        self.slowest |= other.slowest
        self.lost += other.lost
        self.problems += other.problems


class FaultyRun:
    """Repeats the recorded run, with one fault."""

    def __init__(self, recording, kind, number, way):
        self.recording = recording
        self.what = f"{recording.name}, {kind} ({way}) at {number}, {recording.exchanges[number - 1]}:"
        self.figures = Figures()
        self.figures.runs[kind] += 1
        with Harness(recording.call_limit, OPTIONS[recording.name]) as harness:
            self.harness = harness
            self.fault = harness.relay.fault = KINDS[kind](harness, number, way)
            self.next = 0
            self.typed = []
            self.logged = 0
            self.recovered = False
            try:
                self.run()
                self.expect(harness.tv.end() == 0 and not harness.tv.errors(), "the TV has not ended well")
            except (AssertionError, OSError, struct.error) as error:
                self.expect(False, repr(error))

    def expect(self, condition, problem):
        if not condition:
            self.figures.problems.append(f"{self.what} {problem}")

    def expect_within(self, limit, seconds, figure, what):
        self.figures.slowest[figure] = max(self.figures.slowest[figure], seconds)
        self.expect(seconds <= limit, f"{what} took {seconds:.3f} s")

    def run(self):
        console = self.harness.console
        place = self.harness.arrive()
        for _ in range(2 * len(self.recording.steps)):
            if place is None:
                break
            word = self.choose(place)
            if word is None:
                self.harness.end_input()
                break
            console.type(word)
            self.typed.append(console.typed)
            place = self.harness.arrive()
            self.expect_within(self.recording.command_limit, time.monotonic() - console.typed, "command",
                               repr(word))
            if self.fault.happened and not self.recovered and place is not None:
                self.come_back()
        self.expect(console.has_ended_well(), "the console has not ended well")
        self.expect(self.fault.happened, "it has not come to that")
        self.expect(self.next == len(self.recording.steps), "menus were left out")
        if not self.recovered:
            self.come_back()
        self.note_calls()

    def choose(self, place):
        """The word to type: the run's next one, or where the fault has led elsewhere the next one that is for this
        place. A menu that the run enters is never left out. None: no word is left."""
        steps = self.recording.steps
        if self.next == len(steps):
            return None
        ahead = self.next
        while ahead < len(steps) and steps[ahead].place != place:
            ahead += 1
        skipped = steps[self.next:ahead]
        if ahead == len(steps) or any(is_top(step.place) for step in skipped):
            return "99"
        self.expect(not skipped or self.fault.happened, f"another way than before, at {place}")
        self.next = ahead + 1
        return steps[ahead].word

    def come_back(self):
        """At the first prompt after the fault."""
        self.recovered = True
        failures = self.harness.failures()
        least, most = self.fault.failures
        self.expect(least <= failures <= most, f"{failures} calls have failed")
        self.fault.end()
        self.harness.settle(self.fault.spoilt)
        self.logged = self.harness.failures()
        if isinstance(self.fault, Kill) and self.fault.has_lost(self.recording):
            self.figures.lost += 1
            self.expect(False, "the TV has lost what it had answered")

    def note_calls(self):
        exchanges, ready = self.harness.relay.exchanges, self.harness.ready
        for exchange in exchanges:
            exchange.end()
            self.expect_within(self.recording.command_limit, exchange.seconds, "call", exchange.name)
        self.expect(self.harness.failures() == self.logged, "calls have failed afterwards")
        # Of the calls that came after a restart, the first one. At the end of the run there may be none.
        for exchange in exchanges:
            if ready and exchange.kind == wire.CALL and exchange.began >= ready:
                typed = max(typed for typed in self.typed if typed <= exchange.began)
                self.expect(exchange.answered, "the first call afterwards has failed")
                self.expect_within(self.recording.first_success, exchange.ended - max(ready, typed), "success",
                                   "the first call afterwards")
                break


RECORDINGS = {}


def run(what):
    name, *fault = what
    return FaultyRun(RECORDINGS[name], *fault).figures


def read_command_line():
    parser = argparse.ArgumentParser(prog="faults", description=__doc__.split("\n\n", maxsplit=1)[0])
    parser.add_argument("--every", type=int, default=10, metavar="N",
                        help="each kind of fault at every N-th boundary (default: 10)")
    parser.add_argument("--all", dest="every", action="store_const", const=1, help="at each of them")
    parser.add_argument("--kind", action="append", choices=KINDS, help="only this kind; may be repeated")
    parser.add_argument("--call-limit", type=float, default=1.0, metavar="SECONDS",
                        help="the client's limit for a call (default: 1)")
    parser.add_argument("--jobs", type=int, default=2, metavar="N", help="runs at a time (default: 2)")
    options = parser.parse_args()
    if min(options.every, options.call_limit, options.jobs) <= 0:
        parser.error("expected numbers above 0")
    return options


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
            plan += recording.sample(kind, options.every)
    with multiprocessing.Pool(options.jobs) as pool:
        for figures in pool.imap_unordered(run, plan):
            whole.add(figures)
            for problem in figures.problems:
                print(problem, flush=True)
            if whole.runs.total() % 500 == 0:
                print(f"faults: {whole.runs.total()} of {len(plan)} runs", file=sys.stderr)
    for kind, count in whole.runs.items():
        print(f"{kind}: {count} runs")
    print(f"slowest call {whole.slowest['call']:.3f} s, slowest command {whole.slowest['command']:.3f} s "
          f"(call limit {options.call_limit:.3f} s), slowest first success afterwards {whole.slowest['success']:.3f} s")
    print(f"faults: {whole.runs.total()} runs in {time.monotonic() - began:.0f} s, lost commits {whole.lost}, "
          f"findings {len(whole.problems)}")
    return 1 if whole.problems else 0


if __name__ == "__main__":
    sys.exit(main())
