"""The console while what its client library needs fails: sockets, descriptors, its log, processes and
threads. Each call of each kind in turn, with a simulated TV that is well."""

import collections
import os
import subprocess
import tempfile
import unittest

import failing
import tv_visit
from norvex_tv import Tv

# Commands that ask for no further word: a refusal moves none of those that follow.
COMMANDS = "5 10 4 5 8 11 14 15 10 10 99 99"
SUCCESS = " CheckTunerSignalState Success!\n"
REFUSAL = " CheckTunerSignalState failed!\n"
# Dialogues, in which a refusal moves the words that follow; they end in any case.
DIALOGUES = ("1 help items 101 99 7 0 99 4 0 1 0 0 99 3 0 99 6 5 1 0 1 99 2 0 1 1 99 0 21 7 "
             "18 1 2 5 99 19 10 99 12 1 2 99 17 1 3 99 20 1 99 16 1 0 99 13 1 7 99 7 99 99 99")


class ClientResourcesTestCase(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.figures = collections.Counter()
        cls.by_kind = collections.Counter()
        cls.tv = Tv()

    @classmethod
    def tearDownClass(cls):
        cls.tv.__exit__()
        if failing.EVERY_CALL:
            for kind, count in sorted(cls.by_kind.items()):
                print(f"  {kind}: {count}")
            print("  " + ", ".join(f"{name} {count}" for name, count in cls.figures.items()))

    def run_host(self, order, arguments):
        """Its result, and what it wrote into the log of its device."""
        with tempfile.TemporaryDirectory() as folder:
            note = os.path.join(folder, "note")
            log = os.path.join(folder, "log")
            environment = {
                **os.environ, **order.environment(note),
                "NORVEX_SOCKET": self.tv.socket,
                "NORVEX_LOG": log,
                "NORVEX_DEVICE_DIR": os.path.join(folder, "device"),
                "NORVEX_CONNECT_LIMIT_MS": "2000",
                "NORVEX_CALL_LIMIT_MS": "2000",
                # What the console keeps on purpose.
                "LSAN_OPTIONS": f"suppressions={failing.SUPPORT}/leaks.supp:print_suppressions=0:"
                                "fast_unwind_on_malloc=0",
            }
            result = subprocess.run([os.path.join(failing.BIN, "zarn-debughost"), *arguments],
                                    env=environment, stdin=subprocess.DEVNULL, text=True,
                                    capture_output=True, timeout=failing.LIMIT, check=False)
            self.has_failed = os.path.exists(note)
            lines = []
            if os.path.exists(log):
                with open(log, encoding="utf-8") as file:
                    lines = file.read().splitlines()
        return result, lines

    def check(self, result, order):
        """A clean end: of its own, or one line that says why."""
        errors = [line for line in result.stderr.splitlines() if line and "GLib-WARNING" not in line]
        if result.returncode == 0:
            self.assertEqual(errors, [], order)
            return True
        self.assertEqual((result.returncode, len(errors)), (1, 1), result.stderr)
        self.assertTrue(errors[0].startswith("zarn-debughost: "), errors)
        self.figures["clean ends"] += 1
        return False

    def fail_in_turn(self, kinds, arguments, judge):
        for kind in kinds:
            for error in failing.errors_of(kind):
                for number in failing.numbers():
                    order = failing.Order(kind, error, number)
                    self.has_failed = False
                    with self.subTest(order=str(order)):
                        result, log = self.run_host(order, arguments)
                        if self.check(result, order):
                            judge(result.stdout, log, order)
                    if not self.has_failed:
                        self.assertGreater(number, 1, f"there was no call to fail: {kind}")
                        break
                    self.figures["failed calls"] += 1
                    self.by_kind[f"{kind} {error}"] += 1
        # Nobody has been harmed but the console itself.
        [answer] = tv_visit.ask_control(self.tv.socket, {"command": "state"})
        self.assertIn("state", answer)

    def judge_commands(self, output, log, order):
        successes, refusals = output.count(SUCCESS), output.count(REFUSAL)
        self.assertEqual(successes + refusals, 3, output)
        # The menu was there for each word, and once more behind the test console.
        self.assertEqual(output.count("\n\ncmd> "), len(COMMANDS.split()), output)
        # One call fails once; then it goes on as if nothing had been.
        self.assertLess(refusals, 3, output)
        if refusals and order.kind != "open":
            self.assertTrue(self.is_told(log), log)
        self.count(log)

    def judge_dialogues(self, output, log, _):
        self.assertTrue(output.startswith("DebugUtil\n"))
        if not self.has_failed:
            self.assertNotIn("failed", output.replace("SetTVMode failed", ""), log)
        self.count(log)

    @staticmethod
    def is_told(log):
        return any("norvex-client: " in line for line in log)

    def count(self, log):
        """A failed call that the client has made good is told to nobody."""
        if self.is_told(log):
            self.assertTrue(self.has_failed, log)
            self.figures["clean refusals"] += 1
        elif self.has_failed:
            self.figures["without effect"] += 1

    def test_sockets_under_commands(self):
        self.fail_in_turn(["socket", "connect", "send", "receive", "option"], ["-c", COMMANDS],
                          self.judge_commands)

    def test_the_rest_under_commands(self):
        self.fail_in_turn(["stat", "poll", "eventfd", "random", "thread"],
                          ["-c", COMMANDS], self.judge_commands)

    def test_sockets_under_dialogues(self):
        self.fail_in_turn(["socket", "connect", "send", "receive"], ["-c", DIALOGUES],
                          self.judge_dialogues)

    def test_the_rest_under_dialogues(self):
        self.fail_in_turn(["open", "write", "stat", "thread", "fork"], ["-c", DIALOGUES],
                          self.judge_dialogues)

    def test_a_script_that_cannot_be_read(self):
        with tempfile.NamedTemporaryFile("w", suffix=".txt") as script:
            script.write("expect cmd>\n" + "\n".join(COMMANDS.split()) + "\n")
            script.flush()
            self.fail_in_turn(["open", "read", "thread"], ["--script", script.name],
                              self.judge_commands)
