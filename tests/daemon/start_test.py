"""norvex-sim's start and end, and what outlives it."""

import json
import os
import signal
import stat
import subprocess

import norvex_wire as wire
from norvex_tv import LIMIT, SIM, SIMCTL
from tv_test_case import TvTestCase


class StartTestCase(TvTestCase):
    def test_help_is_shown(self):
        for words in [[SIM], [SIMCTL], [SIMCTL, "state"], [SIMCTL, "calls"], [SIMCTL, "inject"],
                      [SIMCTL, "wait"], [SIMCTL, "reset"], [SIMCTL, "set"]]:
            result = subprocess.run([*words, "--help"], capture_output=True, text=True,
                                    timeout=LIMIT, check=False)
            self.assertEqual((result.returncode, result.stderr), (0, ""))
            self.assertIn("Usage: ", result.stdout)

    def test_bad_arguments_are_one_line_and_status_2(self):
        for words in [["--nonsense"], ["word"], ["--ready-fd", "x"], ["--items", "-1"],
                      ["--socket"], ["--ready-fd", "987"], ["--socket", "/tmp/" + "x" * 200]]:
            self.assert_fails([SIM, *words], 2, "norvex-sim: ")
        for words in [[], ["nonsense"], ["inject", "IA.B"], ["inject", "IA.B", "--drop", "--die"],
                      ["inject", "--drop"], ["inject", "IA.B", "--delay", "-1"], ["wait"],
                      ["wait", "/debug/qos"], ["wait", "/debug/qos", "like", "1"],
                      ["wait", "calls", "IA.B", "many"], ["set"]]:
            self.assert_fails([SIMCTL, *words], 2, "norvex-simctl: ")

    def test_a_file_that_is_no_database_is_refused(self):
        folder = self.folder()
        path = os.path.join(folder, "text")
        with open(path, "w", encoding="utf-8") as file:
            file.write("no database\n" * 100)
        words = [SIM, "--socket", os.path.join(folder, "s"), "--database"]
        self.assert_fails([*words, path], 1, "file is not a database")
        self.assert_fails([*words, os.path.join(folder, "none", "db")], 1, "unable to open")
        self.assertEqual(os.listdir(folder), ["text"])

    def test_sockets_are_the_users_own_and_go_at_the_end(self):
        tv = self.tv()
        for path in (tv.socket, tv.socket + ".ctl"):
            self.assertEqual(stat.S_IMODE(os.stat(path).st_mode), 0o600)
        for number in (signal.SIGTERM, signal.SIGINT):
            with tv.connect() as client:
                self.assertEqual(tv.end(number), 0)
                self.assert_closed(client)
            self.assertEqual(os.listdir(tv.folder), ["log"])
            tv.start()

    def test_a_second_daemon_on_a_socket_is_refused(self):
        tv = self.tv()
        self.assert_fails([SIM, "--socket", tv.socket], 1,
                          "another norvex-sim is running on " + tv.socket)
        self.assertEqual(tv.simctl("wait", "/debug/qos == false"), "")

    def test_of_many_that_start_at_once_exactly_one_runs(self):
        folder = self.folder()
        path = os.path.join(folder, "s")
        for _ in range(3):
            ready, told = os.pipe()
            daemons = [subprocess.Popen([SIM, "--socket", path, "--ready-fd", str(told)],
                                        pass_fds=[told], stderr=subprocess.PIPE)
                       for _ in range(6)]
            os.close(told)
            with os.fdopen(ready) as lines:
                self.assertEqual(lines.read(), "ready\n")
            for daemon in daemons:
                self.addCleanup(daemon.communicate)
                self.addCleanup(daemon.kill)
            state = json.loads(subprocess.run([SIMCTL, "--socket", path, "state", "--json"],
                                              stdout=subprocess.PIPE, check=True).stdout)
            for daemon in daemons:
                if daemon.pid != state["daemon"]["pid"]:
                    self.assertEqual(daemon.wait(LIMIT), 1)
            # The next round finds what a dead one leaves.
            [running] = [daemon for daemon in daemons if daemon.poll() is None]
            running.kill()
            running.wait(LIMIT)

    def test_the_socket_of_a_dead_daemon_is_cleared_away(self):
        tv = self.tv()
        with tv.connect() as client:
            before = client.epoch
        tv.kill()
        self.assertIn("tv.sock", os.listdir(tv.folder))
        tv.start()
        with tv.connect() as client:
            self.assertNotEqual(client.epoch, before)

    def test_what_is_no_socket_stays(self):
        path = os.path.join(self.folder(), "s")
        with open(path, "w", encoding="utf-8") as file:
            file.write("mine")
        self.assert_fails([SIM, "--socket", path], 1, "exists and is no socket")
        with open(path, encoding="utf-8") as file:
            self.assertEqual(file.read(), "mine")

    def test_the_environment_names_the_socket(self):
        folder = self.folder()
        environment = {**os.environ, "NORVEX_SOCKET": os.path.join(folder, "s")}
        self.assert_fails([SIMCTL, "state"], 1, "no daemon is running at", env=environment)
        del environment["NORVEX_SOCKET"]
        environment["XDG_RUNTIME_DIR"] = folder
        self.assert_fails([SIMCTL, "state"], 1, os.path.join(folder, "norvex.sock"),
                          env=environment)

    def test_state_is_kept_in_the_database_through_a_sudden_end(self):
        tv = self.tv("--database", os.path.join(self.folder(), "db"))
        with tv.connect() as client:
            client.start()
            client.execute("items")
            client.execute("103")
            client.execute("qos")
            client.execute("on")
            client.call("IDevice", "StartLogTag", 1,
                        [wire.value(0, "i", -1), wire.text(1, "quarle-daemon", wire.IN)])
        tv.simctl("set", "key", "db/other", "-5")
        tv.kill()
        tv.start()
        state = tv.state()
        self.assertEqual(state["debug"]["itemsOn"], 1)
        self.assertTrue(state["debug"]["items"][2]["state"])
        self.assertTrue(state["debug"]["qos"])
        self.assertTrue(state["device"]["logTags"]["quarle-daemon"])
        self.assertEqual(state["device"]["keys"]["db/other"], -5)

    def test_without_a_database_state_ends_with_the_daemon(self):
        tv = self.tv()
        with tv.connect() as client:
            client.start()
            client.execute("qos")
            client.execute("on")
        # It survives the client, though.
        self.assertTrue(tv.state()["debug"]["qos"])
        tv.end()
        tv.start()
        self.assertFalse(tv.state()["debug"]["qos"])
