"""The simulated TV while what it needs fails: files, sockets, its database. Each call of each kind in
turn, on a database that is new and on one that was there."""

import collections
import os
import shutil
import signal
import subprocess
import tempfile
import unittest

import failing
import tv_visit

# In memory, where there is such a folder: what is synced is not what is tested.
FOLDERS = "/dev/shm" if os.access("/dev/shm", os.W_OK) else None


class Daemon:
    """A daemon whose call fails, or, without an order, none."""

    def __init__(self, folder, order=None, arguments=()):
        self.socket = os.path.join(folder, "tv.sock")
        self.note = os.path.join(folder, "note")
        self.errors = os.path.join(folder, "errors")
        environment = {**os.environ, **(order.environment(self.note) if order else {})}
        ready, told = os.pipe()
        with open(self.errors, "wb") as errors:
            self.process = subprocess.Popen(
                [os.path.join(failing.BIN, "norvex-sim"), "--socket", self.socket,
                 "--database", os.path.join(folder, "database"),
                 "--log", os.path.join(folder, "log"), "--ready-fd", str(told), *arguments],
                pass_fds=[told], env=environment, stdin=subprocess.DEVNULL,
                stdout=subprocess.DEVNULL, stderr=errors)
        os.close(told)
        with os.fdopen(ready) as lines:
            self.is_ready = lines.read() == "ready\n"

    def end(self):
        """Its status."""
        if self.is_ready and self.process.poll() is None:
            self.process.send_signal(signal.SIGTERM)
        try:
            return self.process.wait(failing.LIMIT)
        except subprocess.TimeoutExpired:
            self.process.kill()
            self.process.wait()
            return "hang"

    def has_failed(self):
        return os.path.exists(self.note)

    def error_lines(self):
        with open(self.errors, encoding="utf-8", errors="replace") as file:
            return [line for line in file.read().splitlines() if line]


class DaemonResourcesTestCase(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.figures = collections.Counter()
        cls.by_kind = collections.Counter()
        cls.folder = tempfile.TemporaryDirectory(dir=FOLDERS)
        base = cls.path("base")
        os.mkdir(base)
        with open(cls.path("old.lineup"), "w", encoding="utf-8") as file:
            file.write(tv_visit.OLD_LINE_UP)
        daemon = Daemon(base, arguments=["--lineup", cls.path("old.lineup")])
        for request in ({"command": "set", "name": "key", "words": ["db/kept", "1"]},
                        {"command": "set", "name": "items", "words": ["5"]}):
            tv_visit.ask_control(daemon.socket, request)
        cls.old = cls.kept_by(daemon)
        assert daemon.end() == 0

    @classmethod
    def tearDownClass(cls):
        cls.folder.cleanup()
        if failing.EVERY_CALL:
            for kind, count in sorted(cls.by_kind.items()):
                print(f"  {kind}: {count}")
            print("  " + ", ".join(f"{name} {count}" for name, count in cls.figures.items()))

    @classmethod
    def path(cls, name):
        return os.path.join(cls.folder.name, name)

    @staticmethod
    def kept_by(daemon):
        [answer] = tv_visit.ask_control(daemon.socket, {"command": "state"})
        return tv_visit.kept_of(answer["state"])

    def run_one(self, order, is_new, visit_by):
        """One run in which a call fails. Sets has_failed: whether there was such a call."""
        self.has_failed = False
        folder = self.path("run")
        shutil.rmtree(folder, ignore_errors=True)
        if is_new:
            os.mkdir(folder)
        else:
            shutil.copytree(self.path("base"), folder)
        before = dict(self.old)
        arguments = []
        if is_new:
            before["key"] = None
            arguments = ["--lineup", self.path("old.lineup")]

        daemon = Daemon(folder, order, arguments)
        visit = tv_visit.Visit(daemon.socket, folder, before)
        if daemon.is_ready:
            visit_by(visit)
        ended_by_itself = not daemon.is_ready or daemon.process.poll() is not None
        status = daemon.end()
        self.has_failed = daemon.has_failed()
        if not self.has_failed:
            self.assertEqual((status, visit.unanswered, visit.refused), (0, 0, 0), order)
            self.assertEqual({name: {value} for name, value in self.check_database(folder).items()},
                             visit.may_be)
            return

        if ended_by_itself:
            self.figures["clean ends"] += 1
            self.assertEqual(status, 1, daemon.error_lines())
            self.assertEqual(len(daemon.error_lines()), 1, daemon.error_lines())
            self.assertTrue(daemon.error_lines()[0].startswith("norvex-sim: "))
        else:
            self.assertEqual(status, 0, daemon.error_lines())
            if visit.refused or visit.unanswered:
                self.figures["clean refusals"] += 1
            else:
                self.figures["without effect"] += 1
        if is_new and ended_by_itself and not daemon.is_ready:
            # Nothing was promised yet. Without a line-up of its own it has the built-in one.
            self.check_database(folder, arguments)
        else:
            for name, value in self.check_database(folder).items():
                self.assertIn(value, visit.may_be[name], name)

    def check_database(self, folder, arguments=()):
        """Whole, and a start on it goes well; what is kept in it."""
        verdict = failing.integrity(os.path.join(folder, "database"))
        self.figures["torn"] += verdict != "ok"
        self.assertEqual(verdict, "ok")
        daemon = Daemon(folder, arguments=arguments)
        try:
            self.assertTrue(daemon.is_ready, daemon.error_lines())
            return self.kept_by(daemon)
        finally:
            self.assertEqual(daemon.end(), 0)

    def fail_in_turn(self, kinds, is_new=False, visit_by=tv_visit.Visit.run):
        for kind in kinds:
            for error in failing.errors_of(kind):
                for number in failing.numbers():
                    order = failing.Order(kind, error, number)
                    with self.subTest(order=str(order)):
                        self.run_one(order, is_new, visit_by)
                    if not self.has_failed:
                        self.assertGreater(number, 1, f"there was no call to fail: {kind}")
                        break
                    self.figures["failed calls"] += 1
                    self.by_kind[f"{kind} {error}"] += 1

    def test_files(self):
        self.fail_in_turn(["open", "read", "write", "sync", "truncate", "stat", "unlink", "lock"])

    def test_files_of_a_new_database(self):
        self.fail_in_turn(["open", "write", "sync", "lock"], is_new=True)

    def test_sockets(self):
        self.fail_in_turn(["socket", "bind", "listen", "accept", "send", "receive", "option"])

    def test_events(self):
        self.fail_in_turn(["poll", "eventfd", "signalfd"])

    def test_sqlite(self):
        self.fail_in_turn(["sqlite-open", "sqlite-prepare", "sqlite-exec", "sqlite-text"])

    def test_sqlite_steps(self):
        self.fail_in_turn(["sqlite-step", "sqlite-bind"])

    def test_sqlite_of_a_new_database(self):
        self.fail_in_turn(["sqlite-prepare", "sqlite-step", "sqlite-exec", "sqlite-bind"],
                          is_new=True)

    def test_a_reset(self):
        self.fail_in_turn(["write", "sqlite-step", "sqlite-exec", "sqlite-prepare"],
                          visit_by=tv_visit.Visit.reset)
