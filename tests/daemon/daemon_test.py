"""norvex-sim and norvex-simctl as processes."""

import json
import signal
import socket
import subprocess
import unittest

import norvex_wire as wire
from norvex_tv import LIMIT, SIMCTL
from tv_test_case import TvTestCase


class DebugPrintControlTestCase(TvTestCase):
    STATUS = wire.value(0, "i", -1)

    def setUp(self):
        self.daemon = self.tv()
        self.client = self.daemon.connect()
        self.addCleanup(self.client.close)

    def call(self, method, method_id, *arguments, status=STATUS):
        return self.client.call("IDebugPrintControl", method, method_id, [status, *arguments])

    def test_a_dialogue_from_start_to_stop(self):
        status, screen = self.client.start()
        self.assertEqual(status, 1)
        self.assertTrue(screen.endswith("norvex> "))
        status, screen = self.client.execute("nonsense")
        self.assertEqual(status, 1)
        self.assertIn('Unknown word "nonsense"', screen)
        self.assertEqual(self.client.execute("99")[0], 0)
        self.assertEqual(self.client.stop(), 1)
        self.assertEqual(self.client.stop(), 0)

    def test_a_word_without_a_dialogue_is_refused(self):
        self.assertEqual(self.client.execute("help"), (-1, ""))
        self.client.start()
        self.client.execute("99")
        self.assertEqual(self.client.execute("help"), (-1, ""))
        self.assertIn("#1 client 1 has no dialogue open", self.daemon.log())

    def test_each_client_has_its_own_dialogue(self):
        with self.daemon.connect() as other:
            self.client.start()
            self.client.execute("items")
            self.assertEqual(other.execute("101")[0], -1)
            other.start()
            self.assertIn("Unknown word", other.execute("101")[1])
            self.assertIn("Tuner lock is ON", self.client.execute("101")[1])
            self.assertIn(" items on : 1 of 16", other.execute("status")[1])
            # A second connection of the same client goes on where the first one is.
            with self.daemon.connect(token=self.client.token) as again:
                self.assertIn("Tuner lock is OFF", again.execute("101")[1])

    def test_items_are_listed_and_set(self):
        def items():
            answer = self.call("GetMenuItems", 4, wire.branch(1, []))
            self.assertEqual(wire.read(answer[0], "i"), 1)
            listed = []
            for place, (tag, kind, _, content) in enumerate(wire.nodes(answer[1])):
                self.assertEqual((tag, kind), (place, wire.BRANCH))
                item = wire.by_tag(content)
                listed.append((wire.read_text(item[0]), wire.read(item[1], "B"),
                               wire.read(item[2], "I")))
            return listed

        self.assertEqual(items()[:2], [("Tuner lock", 0, 101), ("Section filter", 0, 102)])
        answer = self.call("SetMenuItem", 6, wire.menu_item(1, "any name", 1, 102, wire.IN))
        self.assertEqual(wire.read(answer[0], "i"), 1)
        self.assertEqual(items()[1], ("Section filter", 1, 102))
        answer = self.call("SetMenuItem", 6, wire.menu_item(1, "Tuner lock", 1, 7, wire.IN))
        self.assertEqual(wire.read(answer[0], "i"), -2)
        both = [wire.menu_item(0, "", 1, 101), wire.menu_item(1, "", 0, 102)]
        self.call("SetMenuItems", 5, wire.branch(1, both, wire.IN))
        self.assertEqual([item[1] for item in items()[:3]], [1, 0, 0])
        # One that is not there, and none is set.
        both = [wire.menu_item(0, "", 0, 101), wire.menu_item(1, "", 0, 7)]
        answer = self.call("SetMenuItems", 5, wire.branch(1, both, wire.IN))
        self.assertEqual(wire.read(answer[0], "i"), -2)
        self.assertEqual(items()[0][1], 1)
        answer = self.call("Check", 3, wire.value(1, "i", 0))
        self.assertEqual((wire.read(answer[0], "i"), wire.read(answer[1], "i")), (1, 1))

    def test_ten_thousand_items_arrive_whole(self):
        self.daemon.simctl("set", "items", 10000)
        answer = self.call("GetMenuItems", 4, wire.branch(1, []))
        listed = wire.nodes(answer[1])
        self.assertEqual(len(listed), 10016)
        last = wire.by_tag(listed[-1][3])
        self.assertEqual(wire.read_text(last[0]), "Extra debug switch 10000")
        self.assertEqual(wire.read(last[2], "I"), 10116)

    def test_an_answer_that_would_be_too_long_is_empty_and_said(self):
        self.daemon.simctl("set", "items", 1000000)
        self.assertEqual(self.call("GetMenuItems", 4, wire.branch(1, [])), {})
        self.assertEqual(self.daemon.calls()[-1]["fault"], "the reply is too long")
        self.daemon.simctl("set", "items", 0)
        self.assertEqual(len(wire.nodes(self.call("GetMenuItems", 4, wire.branch(1, []))[1])), 16)

    def test_numbers_of_items_that_make_no_sense_are_refused(self):
        for words in (["x"], ["1", "2"], ["-1"], ["1000001"], ["1x"]):
            result = self.daemon.run_simctl("set", "items", *words)
            self.assertEqual((result.returncode, len(result.stderr.splitlines())), (1, 1), words)
        self.assertEqual(len(self.daemon.state()["debug"]["items"]), 16)

    def test_qos_and_modes_are_switched(self):
        nothing = wire.value(0, "B", 0)
        self.assertEqual(self.call("IsQoSEnabled", 8, status=nothing)[0], b"\0")
        answer = self.call("SetQoSEnabled", 7, wire.value(1, "B", 1, wire.IN))
        self.assertEqual(wire.read(answer[0], "i"), 1)
        self.assertEqual(self.call("IsQoSEnabled", 8, status=nothing)[0], b"\1")
        for mode, result in ((1, 1), (9, -2)):
            answer = self.call("SetDebugMode", 9, wire.value(1, "i", mode, wire.IN),
                               wire.value(2, "B", 1, wire.IN))
            self.assertEqual(wire.read(answer[0], "i"), result)
            answer = self.call("IsDebugModeEnabled", 10, wire.value(1, "i", mode, wire.IN),
                               status=nothing)
            self.assertEqual(wire.read(answer[0], "B"), int(result > 0))

    def test_the_screen_of_a_dialogue_is_shown(self):
        self.client.start()
        for word, screen in (("nonsense", "main"), ("status", "status"), ("items", "items"),
                             ("modes", "modes"), ("qos", "qos")):
            self.client.execute(word)
            shown = list(self.daemon.state()["debug"]["dialogues"].values())
            self.assertEqual(shown, [{"open": True, "screen": screen}])

    def test_a_dialogue_ends_with_its_client(self):
        self.client.start()
        self.client.close()
        self.daemon.wait("/debug/dialogues == {}")
        self.assertIn("client 1 is gone", self.daemon.log())


class DeviceTestCase(TvTestCase):
    def test_keys_are_read(self):
        tv = self.tv()
        with tv.connect() as client:
            def get(key):
                answer = client.call("IDevice", "GetInt", 0,
                                     [wire.value(0, "i", -1), wire.text(1, key, wire.IN),
                                      wire.value(2, "i", 77)])
                return [wire.read(answer[place], "i") for place in sorted(answer)]

            self.assertEqual(get("db/tv-viewer/window_id"), [1, 1])
            tv.simctl("set", "key", "db/tv-viewer/window_id", "-3")
            self.assertEqual(get("db/tv-viewer/window_id"), [1, -3])
            self.assertEqual(get("db/none"), [-2])
            for words in (["a"], ["a", "x"], ["a", "1x"], ["a", "99999999999"], ["", "1"]):
                tv.simctl("set", "key", *words, status=1)
            tv.simctl("reset")
            self.assertEqual(get("db/tv-viewer/window_id"), [1, 1])

    def test_a_tag_is_followed_while_it_is_started(self):
        tv = self.tv()
        with tv.connect() as client, tv.connect(role=wire.ROLE_LOG, tag="norvex") as follower, \
                tv.connect(role=wire.ROLE_LOG, tag="quarle-daemon") as other:
            def switch(method, method_id, tag):
                answer = client.call("IDevice", method, method_id,
                                     [wire.value(0, "i", -1), wire.text(1, tag, wire.IN)])
                return wire.read(answer[0], "i")

            self.assertEqual(client.execute("x")[0], -1)
            kind, _, _, tree = follower.receive()
            self.assertEqual(kind, wire.LOG)
            self.assertRegex(wire.read_text(wire.by_tag(tree)[0]),
                             r"^[-0-9]{10}T[:.0-9]{12} \d+ norvex: #1 client 1 has no dialogue")
            self.assertEqual(switch("StartLogTag", 1, "quarle-daemon"), 1)
            self.assertTrue(tv.state()["device"]["logTags"]["quarle-daemon"])
            self.assertEqual(switch("StopLogTag", 2, "quarle-daemon"), 1)
            # The daemon's own tag cannot be stopped.
            self.assertEqual(switch("StopLogTag", 2, "norvex"), -3)
            self.assertEqual(switch("StartLogTag", 1, ""), -3)
            self.assertEqual(switch("StartLogTag", 1, "two words"), -3)
            # Of its own tag nothing was written: the next message is none.
            other.socket.setblocking(False)
            with self.assertRaises(BlockingIOError):
                other.receive()
            tv.end()
            other.socket.setblocking(True)
            self.assert_closed(other)


class ControlTestCase(TvTestCase):
    def setUp(self):
        self.daemon = self.tv()

    def test_the_state_is_shown_a_line_a_value(self):
        lines = self.daemon.simctl("state").splitlines()
        self.assertIn("/debug/qos false", lines)
        self.assertIn('/debug/items/0/name "Tuner lock"', lines)
        self.assertIn("/device/keys/db~1tv-viewer~1window_id 1", lines)

    def test_the_journal_has_every_call_with_its_words(self):
        with self.daemon.connect() as client:
            client.start()
            client.execute("a\n\u00e4")
            client.call("INone", "Do", 3, [wire.node(0, wire.VALUE, b"\1\2", wire.IN)])
        calls = self.daemon.calls()
        self.assertEqual([call["sequence"] for call in calls], [1, 2, 3])
        self.assertEqual(calls[1]["method"], "Execute")
        self.assertEqual(calls[1]["arguments"][1], {
            "place": 1, "direction": "in", "name": "command", "type": "text",
            "value": "a\n\u00e4"})
        self.assertEqual(calls[1]["results"][0]["value"], 1)
        self.assertEqual(calls[2]["arguments"][0]["value"], {"hex": "0102"})
        self.assertEqual(calls[2]["fault"], "unknown operation")
        lines = self.daemon.simctl("calls").splitlines()
        self.assertRegex(lines[1], r'^#2 client 1 IDebugPrintControl.Execute\(command="a\\n\\u00e4"\)'
                                   r' = status 1, screen "')

    def test_json_is_never_invalid(self):
        with self.daemon.connect() as client:
            client.start()
            client.execute(b"\xff\xfe\x80")
            client.call("I\udcff".encode("utf-8", "surrogateescape").decode("latin-1"), "Do", 0)
        result = subprocess.run([SIMCTL, "--socket", self.daemon.socket, "calls", "--json"],
                                capture_output=True, timeout=LIMIT, check=True)
        calls = [json.loads(line) for line in result.stdout.decode("utf-8").splitlines()]
        self.assertEqual(calls[1]["arguments"][1]["value"], "\ufffd\ufffd\ufffd")

    def test_calls_are_followed(self):
        with self.daemon.connect() as client, subprocess.Popen(
                [SIMCTL, "--socket", self.daemon.socket, "calls", "--follow", "--json"],
                stdout=subprocess.PIPE, text=True) as follower:
            client.start()
            self.assertEqual(json.loads(follower.stdout.readline())["method"], "Start")
            client.stop()
            self.assertEqual(json.loads(follower.stdout.readline())["method"], "Stop")
            self.daemon.end()
            self.assertEqual(follower.stdout.read(), "")
            self.assertEqual(follower.wait(LIMIT), 0)

    def test_a_follower_that_does_not_read_holds_nobody_up(self):
        with self.daemon.connect() as client, socket.socket(socket.AF_UNIX) as follower:
            follower.connect(self.daemon.socket + ".ctl")
            follower.send(b'{"command":"calls","follow":true}\n')
            client.start()
            for _ in range(3000):
                client.execute("items")
            self.assertEqual(client.execute("99")[0], 0)
            lines = b""
            follower.settimeout(LIMIT)
            while b'"value":"99"' not in lines:
                received = follower.recv(1 << 20)
                self.assertTrue(received)
                lines = lines[-1000:] + received

    def test_waiting_for_the_state(self):
        self.daemon.simctl("wait", "/debug/qos == false")
        self.daemon.simctl("wait", "/debug/qos", "!=", "true")
        self.daemon.simctl("wait", "/debug/items/0/name", "==", "Tuner", "lock")
        self.daemon.simctl("wait", "/debug/none == null")
        for holds, fails in (("< 1", "< 0"), ("<= 0", "<= -1"), ("> -1", "> 0"), (">= 0", ">= 1")):
            self.daemon.simctl("wait", f"/debug/itemsOn {holds}")
            self.daemon.simctl("wait", f"/debug/itemsOn {fails}", "--timeout", "0.01", status=1)
        self.daemon.simctl("wait", "/daemon/injections", "==", "[]")
        result = self.daemon.run_simctl("wait", "/debug/itemsOn > 0", "--timeout", "0.05")
        self.assertEqual((result.returncode, result.stderr), (1, "norvex-simctl: timed out\n"))
        with self.daemon.connect() as client, subprocess.Popen(
                [SIMCTL, "--socket", self.daemon.socket, "wait", "/debug/itemsOn >= 2"]) as waiter:
            client.start()
            client.execute("items")
            client.execute("101")
            self.assertIsNone(waiter.poll())
            client.execute("102")
            self.assertEqual(waiter.wait(LIMIT), 0)

    def test_waiting_for_calls(self):
        result = self.daemon.run_simctl("wait", "calls", "INone.Do", 1)
        self.assertEqual((result.returncode, len(result.stderr.splitlines())), (1, 1))
        with self.daemon.connect() as client, subprocess.Popen(
                [SIMCTL, "--socket", self.daemon.socket, "wait",
                 "calls IDebugPrintControl.Stop 3"]) as waiter:
            for _ in range(3):
                self.assertIsNone(waiter.poll())
                client.stop()
            self.assertEqual(waiter.wait(LIMIT), 0)
        self.daemon.simctl("wait", "calls", "IDebugPrintControl.Stop", 2)
        self.daemon.simctl("reset")
        self.daemon.simctl("wait", "calls", "IDebugPrintControl.Stop", 1, "--timeout", "0.05",
                           status=1)

    def test_ordered_failures_happen(self):
        with self.daemon.connect() as client:
            self.daemon.simctl("inject", "IDebugPrintControl.Stop", "--result", "-7", "--count", 2)
            self.assertEqual([client.stop(), client.stop(), client.stop()], [-7, -7, 0])
            self.daemon.simctl("inject", "com.holvi.IDebugPrintControl.Stop", "--delay", 50)
            self.assertEqual(client.stop(), 0)
            self.daemon.simctl("inject", "IDebugPrintControl.Stop", "--drop")
            client.ask("IDebugPrintControl", "Stop", 2, [wire.value(0, "i", -1)])
            # The lost reply's place is taken by the next one's.
            self.assertEqual(client.stop(), 0)
            self.daemon.simctl("inject", "IDebugPrintControl.Stop", "--close")
            with self.assertRaises(wire.Closed):
                client.stop()
        injected = [call.get("injected") for call in self.daemon.calls()]
        self.assertEqual(injected, ["result", "result", None, "delay", "drop", None, "close"])
        with self.daemon.connect() as client:
            self.daemon.simctl("inject", "IDebugPrintControl.Stop", "--die")
            with self.assertRaises(wire.Closed):
                client.stop()
        self.assertEqual(self.daemon.process.wait(LIMIT), -signal.SIGKILL)
        self.daemon.simctl("state", status=1)

    def test_an_ordered_result_is_also_that_of_an_operation_that_says_yes_or_no(self):
        asked = [wire.value(0, "B", 0)]
        with self.daemon.connect() as client:
            for result, answer in ((1, b"\1"), (-5, b"\1"), (0, b"\0")):
                self.daemon.simctl("inject", "IDebugPrintControl.IsQoSEnabled", "--result", result)
                self.assertEqual(client.call("IDebugPrintControl", "IsQoSEnabled", 8, asked)[0],
                                 answer)

    def test_the_journal_cuts_what_is_long(self):
        with self.daemon.connect() as client:
            client.start()
            client.execute("x" * 100000)
        call = self.daemon.calls()[-1]
        self.assertEqual(call["method"], "Execute")
        # Its status, its text with length and bytes, and the text that it asks for.
        self.assertEqual(call["argumentsCut"], 3 * 8 + 4 + (8 + 4) + (8 + 100000) + 4)

    def test_what_is_ordered_is_shown_until_it_has_happened(self):
        for order in (["--result", -7, "--count", 2], ["--delay", 50], ["--drop"], ["--close"],
                      ["--die", "--with", "x"]):
            self.daemon.simctl("inject", "IDebugPrintControl.Execute", *order)
        with self.daemon.connect() as client:
            client.start()
            client.execute("items")
        orders = [(order["interface"], order["method"], order["kind"], order["number"], order["with"],
                   order["calls"]) for order in self.daemon.state()["daemon"]["injections"]]
        place = ("com.holvi.IDebugPrintControl", "Execute")
        self.assertEqual(orders, [(*place, "result", -7, "", 1), (*place, "delay", 50, "", 1),
                                  (*place, "drop", 0, "", 1), (*place, "close", 0, "", 1),
                                  (*place, "die", 0, "x", 1)])

    def test_a_failure_may_be_for_calls_with_a_text_only(self):
        self.daemon.simctl("inject", "INorvexSession.Open", "--result", "-7", "--with", "IAVControl")
        self.daemon.simctl("inject", "IDebugPrintControl.Execute", "--result", "-8", "--with", "items",
                           "--count", 2)
        self.daemon.simctl("inject", "IDebugPrintControl.Execute", "--result", "-9")
        with self.daemon.connect() as client:
            self.assertEqual(client.open_session("ITunerControl")[0], 0)
            self.assertEqual(client.open_session("IAVControl"), (-7, 0))
            self.assertEqual(client.open_session("IAVControl")[0], 0)
            client.start()
            # Each takes the first order that is for it.
            self.assertEqual([client.execute(word)[0] for word in ("modes", "items", "qos", "items", "items")],
                             [-9, -8, 1, -8, 1])

    def test_what_cannot_be_ordered_is_said(self):
        result = self.daemon.run_simctl("inject", "INone.Do", "--drop")
        self.assertEqual((result.returncode, result.stderr),
                         (1, 'norvex-simctl: no operation is called "INone.Do"\n'))
        result = self.daemon.run_simctl("set", "nonsense", "1")
        self.assertEqual(result.returncode, 1)
        self.assertIn("items, key", result.stderr)

    def test_reset_brings_everything_back(self):
        new = self.daemon.state()
        with self.daemon.connect() as client:
            client.start()
            client.execute("items")
            client.execute("all")
            client.stop()
        self.daemon.simctl("set", "items", 5)
        self.daemon.simctl("inject", "IDebugPrintControl.Stop", "--drop")
        self.daemon.simctl("reset")
        state = self.daemon.state()
        self.assertEqual(self.daemon.calls(), [])
        for part in set(new) - {"daemon"}:
            if part != "clock":
                self.assertEqual(state[part], new[part])
        # What it shows goes on.
        self.assertFalse(state["clock"]["set"])
        self.assertEqual(state["daemon"]["injections"], [])

    def test_requests_that_make_no_sense_are_refused(self):
        for request in [b"\n", b"nonsense\n", b"[]\n", b"{}\n", b'{"command":1}\n',
                        b'{"command":"none"}\n', b'{"command":"wait"}\n',
                        b'{"command":"wait","path":"debug","comparison":"==","value":1}\n',
                        b'{"command":"inject","method":5}\n', b'{"command":"set","name":"items"}\n']:
            with socket.socket(socket.AF_UNIX) as control:
                control.settimeout(LIMIT)
                control.connect(self.daemon.socket + ".ctl")
                control.send(request)
                answer = b""
                while received := control.recv(4096):
                    answer += received
                self.assertIn("error", json.loads(answer), request)


class SessionTestCase(TvTestCase):
    def test_a_client_keeps_its_sessions_for_a_while(self):
        tv = self.tv()
        with tv.connect() as client:
            token = client.token
            self.assertEqual(client.open_session("IDebugPrintControl"), (-2, 0))
            self.assertEqual(client.open_session("INone"), (-2, 0))
            self.assertEqual(client.open_session("IAVControl", 1, -1), (-3, 0))
            status, session = client.open_session("IAVControl")
            self.assertEqual(status, 0)
        with tv.connect(token=token) as client:
            with tv.connect() as other:
                self.assertEqual(other.close_session(session), -2)
            self.assertEqual(client.close_session(session), 1)
            self.assertEqual(client.close_session(session), -2)

    def test_a_client_that_is_gone_loses_them(self):
        tv = self.tv()
        with tv.connect() as client:
            client.open_session("IAVControl")
            client.open_session("IAVControl", 101)
            self.assertEqual(len(tv.state()["daemon"]["sessions"]), 2)
        tv.wait("/daemon/sessions == []")
        tv.wait("/daemon/clients == []")


if __name__ == "__main__":
    unittest.main()
