"""How much one client may have of norvex-sim, and that it is told so."""

import json
import socket

import norvex_wire as wire
from norvex_tv import SIMCTL
from tv_test_case import TvTestCase

SESSIONS = 4096
KEYS = 1024
TAGS = 1024


class BoundsTestCase(TvTestCase):
    def setUp(self):
        self.daemon = self.tv()

    def ask(self, request):
        """The control socket's answer; quicker than a process a request."""
        with socket.socket(socket.AF_UNIX) as control, control.makefile("rw") as lines:
            control.connect(self.daemon.socket + ".ctl")
            lines.write(json.dumps(request) + "\n")
            lines.flush()
            return json.loads(lines.readline())

    def test_a_client_has_so_many_sessions_and_no_more(self):
        with self.daemon.connect() as client, self.daemon.connect() as other:
            sessions = [client.open_session("IAVControl") for _ in range(SESSIONS)]
            self.assertEqual({status for status, _ in sessions}, {0})
            self.assertLess(client.open_session("IAVControl")[0], 0)
            self.assertIn(f"has {SESSIONS} sessions: no more", self.daemon.log())
            # The others have their own.
            self.assertEqual(other.open_session("IAVControl")[0], 0)
            self.assertEqual(client.close_session(sessions[0][1]), 1)
            self.assertEqual(client.open_session("IAVControl")[0], 0)

    def test_the_key_value_store_has_so_many_keys_and_no_more(self):
        # One is there from the start.
        for number in range(1, KEYS):
            self.assertEqual(self.ask({"command": "set", "name": "key",
                                       "words": [f"key/{number}", str(number)]}), {})
        self.assert_fails([SIMCTL, "--socket", self.daemon.socket, "set", "key", "key/more", "1"], 1,
                          "the key-value store is full")
        self.daemon.simctl("set", "key", "key/1", 5)

    def test_log_tags_are_so_many_and_no_more(self):
        with self.daemon.connect() as client:
            def start(tag):
                answer = client.call("IDevice", "StartLogTag", 1,
                                     [wire.value(0, "i", -1), wire.text(1, tag, wire.IN)])
                return wire.read(answer[0], "i")

            known = len(self.daemon.state()["device"]["logTags"])
            self.assertEqual({start(f"tag-{number}") for number in range(TAGS - known)}, {1})
            self.assertLess(start("tag-more"), 0)
            self.assertEqual(start("tag-0"), 1)
