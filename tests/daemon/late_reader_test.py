"""Peers of norvex-sim that read late: nothing that waits for them is lost or exchanged, and others
are served meanwhile."""

import os
import select

import norvex_wire as wire
from tv_test_case import TvTestCase

ITEMS = 10000


class LateReaderTestCase(TvTestCase):
    def setUp(self):
        self.daemon = self.tv()

    def ask_for_items(self, client):
        client.ask("IDebugPrintControl", "GetMenuItems", 4,
                   [wire.value(0, "i", -1), wire.branch(1, [])])

    def take_items(self, client, serial):
        """The numbers of the items in the next answer."""
        kind, answered, _, tree = client.receive()
        self.assertEqual((kind, answered), (wire.REPLY, serial))
        return [wire.read(wire.by_tag(item)[2], "I")
                for _, _, _, item in wire.nodes(wire.by_tag(tree)[1])]

    def ask_until_nothing_is_taken(self, client):
        """How many requests it took: the daemon reads no more of one whose answers wait."""
        client.socket.setblocking(False)
        asked = 0
        try:
            while True:
                self.ask_for_items(client)
                asked += 1
        except BlockingIOError:
            client.serial -= 1
        client.socket.settimeout(10)
        return asked

    def test_a_long_answer_that_is_read_late_is_whole(self):
        self.daemon.simctl("set", "items", ITEMS)
        with self.daemon.connect() as late, self.daemon.connect() as other:
            asked = self.ask_until_nothing_is_taken(late)
            self.assertEqual(other.stop(), 0)
            for serial in range(1, asked + 1):
                items = self.take_items(late, serial)
                self.assertEqual(len(items), 16 + ITEMS)
                self.assertEqual(items[16:], list(range(117, 117 + ITEMS)))
            # It is read from again.
            self.assertEqual(late.stop(), 0)

    def test_signals_that_are_read_late_are_all_there_in_their_order(self):
        count = 10000
        with self.daemon.connect() as client:
            _, session = client.open_session("ISignalSubscriber", 0)
            with self.daemon.connect(token=client.token, role=wire.ROLE_SIGNALS,
                                     session=session) as late:
                # More than the kernel keeps for it, less than makes it one that never reads.
                self.daemon.simctl("signal", 193, "serviceId=1", f"count={count}")
                for number in range(1, count + 1):
                    kind, _, _, tree = late.receive()
                    self.assertEqual(kind, wire.SIGNAL)
                    self.assertEqual(wire.read(wire.by_tag(tree)[4], "Q"), number)
        self.assertNotIn("takes nothing of what is sent to it", self.daemon.log())

    def test_one_that_goes_while_its_answers_wait_leaves_nothing(self):
        def held():
            return len(os.listdir(f"/proc/{self.daemon.process.pid}/fd"))

        self.daemon.simctl("set", "items", ITEMS)
        with self.daemon.connect() as other:
            descriptors = held()
            with self.daemon.connect() as late:
                self.ask_until_nothing_is_taken(late)
            self.daemon.wait("/daemon/clients/1 == null")
            self.assertEqual(other.stop(), 0)
            self.assertEqual(held(), descriptors)

    def test_answers_that_wait_take_so_much_memory_and_no_more(self):
        # Some 48 MiB each.
        self.daemon.simctl("set", "items", 500000)
        late = []
        while "take too much memory" not in self.daemon.log():
            self.assertLess(len(late), 8)
            client = self.daemon.connect()
            self.addCleanup(client.close)
            late.append(client)
            self.ask_for_items(client)
            # Its answer has begun to come, or there was no room for it.
            self.assertTrue(select.select([client.socket], [], [], 60)[0])
            with self.daemon.connect() as other:
                self.assertEqual(other.stop(), 0)
        self.assertGreater(len(late), 1)
        # Those before the one that was too much get theirs.
        self.assertEqual(len(self.take_items(late[0], 1)), 16 + 500000)

