"""norvex-sim among peers that mean no good."""

import contextlib
import errno
import os
import random
import resource
import socket
import struct
import time

import norvex_wire as wire
from norvex_tv import LIMIT
from tv_test_case import TvTestCase

# Of the daemon, in bytes, whatever a peer does; with room for a sanitizer's own.
MEMORY_BOUND = 384 << 20
# For a call while others misbehave, in seconds; a busy machine and a sanitizer included.
PROMPT = 2.0


class HostilePeerTestCase(TvTestCase):
    def setUp(self):
        # What a sanitizer keeps of freed memory is not the daemon's.
        options = os.environ.get("ASAN_OPTIONS", "") + ":quarantine_size_mb=16"
        self.daemon = self.tv(environment={"ASAN_OPTIONS": options.strip(":")})

    def assert_serves(self):
        with self.daemon.connect() as client:
            self.assertEqual(client.stop(), 0)

    def raw(self):
        connection = self.daemon.connect(hello=False)
        self.addCleanup(connection.close)
        return connection

    def test_nonsense_ends_its_connection_alone(self):
        hello = wire.message(wire.HELLO, wire.value(0, "I", 1) + wire.node(1, wire.ARRAY, b"t" * 16)
                             + wire.value(2, "I", 0))
        huge = struct.pack("<BxhIIHHII", wire.CALL, 0, 1, 0, 0, 0, 0xFFFFFFFF, 0)
        with self.daemon.connect() as witness:
            for packet in [b"x", b"nonsense" * 10, wire.packets(huge)[0],
                           struct.pack("<HBB", 0x564E, 1, 1) + huge,
                           wire.packets(wire.message(wire.CALL))[0],
                           wire.packets(wire.message(wire.WELCOME))[0],
                           wire.packets(wire.message(wire.HELLO))[0],
                           wire.packets(wire.message(wire.HELLO, b"\1" * 7))[0],
                           wire.packets(wire.message(99))[0],
                           wire.packets(hello.replace(b"t" * 16, b"t" * 15 + b"\0\0"))[0],
                           b"\0" * 100000]:
                peer = self.raw()
                peer.socket.send(packet)
                self.assert_closed(peer)
            self.assertEqual(witness.stop(), 0)
        self.assertIn("dropped connection", self.daemon.log())

    def test_another_version_is_refused(self):
        peer = self.raw()
        with self.assertRaises(wire.Closed):
            peer.hello(version=2)
        # Its end is seen before the line is written; an answer comes after it.
        self.assert_serves()
        self.assertIn("speaks version 2", self.daemon.log())

    def test_a_hello_may_be_repeated_but_not_with_another_token(self):
        with self.daemon.connect() as client:
            client.hello()
            client.token = os.urandom(16)
            with self.assertRaises(wire.Closed):
                client.hello()

    def test_a_message_that_begins_long_before_the_hello_gets_no_memory(self):
        peer = self.raw()
        message = wire.message(wire.HELLO, bytes(200000))
        with contextlib.suppress(wire.Closed):
            peer.send(message)
        self.assert_closed(peer)

    def test_a_thousand_silent_connections_make_way(self):
        self.allow_descriptors()
        with self.daemon.connect() as client:
            silent = [self.raw() for _ in range(1000)]
            self.assert_serves()
            self.assert_prompt(client)
            # Those that were left are dropped in time, which the last one's end tells.
            self.assert_closed(silent[-1])
            for connection in silent:
                self.assert_closed(connection)
        self.assertIn("made way without having said hello", self.daemon.log())
        self.assertIn("said no hello in time", self.daemon.log())

    def test_a_client_that_never_reads_is_not_read_from_either(self):
        peer = self.daemon.connect()
        self.addCleanup(peer.close)
        self.daemon.simctl("set", "items", 10000)
        peer.socket.setblocking(False)
        with self.assertRaises(BlockingIOError):
            while True:
                peer.ask("IDebugPrintControl", "GetMenuItems", 4,
                         [wire.value(0, "i", -1), wire.branch(1, [])])
        self.assert_serves()
        # One reply waits, the other requests were not even taken.
        self.assertLess(self.memory(), MEMORY_BOUND)

    def test_a_follower_that_never_reads_is_dropped(self):
        follower = self.daemon.connect(role=wire.ROLE_LOG, tag="norvex")
        self.addCleanup(follower.close)
        with self.daemon.connect() as client:
            word = "x" * 200
            while "takes nothing of what is sent to it" not in self.daemon.log():
                for _ in range(1000):
                    client.call(word, word, 0)
            self.assertEqual(client.stop(), 0)
        self.assertLess(self.memory(), MEMORY_BOUND)

    def test_a_message_of_4_gib_is_refused_by_its_header(self):
        for announced in (0xFFFFFFFF, (64 << 20) + 1):
            peer = self.daemon.connect()
            self.addCleanup(peer.close)
            header = struct.pack("<BxhIIHHII", wire.CALL, 0, 1, 0, 0, 0, announced, 0)
            peer.socket.send(struct.pack("<HBB", 0x564E, 1, 1) + header.ljust(wire.MAX_PAYLOAD, b"\0"))
            self.assert_closed(peer)
        self.assert_serves()
        self.assertEqual(self.daemon.log().count("a packet makes no sense"), 2)

    def test_what_a_header_announces_takes_no_memory(self):
        before = self.memory()
        for _ in range(200):
            peer = self.daemon.connect()
            self.addCleanup(peer.close)
            header = struct.pack("<BxhIIHHII", wire.CALL, 0, 1, 0, 0, 0, 60 << 20, 0)
            # The first of a thousand packets; the others never come.
            peer.socket.send(struct.pack("<HBB", 0x564E, 1, 1) + header.ljust(wire.MAX_PAYLOAD, b"\0"))
        with self.daemon.connect() as client:
            self.assert_prompt(client)
        self.assertLess(self.memory() - before, 200 * 4 * wire.MAX_PAYLOAD)

    def test_half_a_header_is_no_header(self):
        whole = wire.packets(wire.message(wire.CALL, interface="com.holvi.IDebugPrintControl",
                                          method="Stop", method_id=2, serial=1))[0]
        with self.daemon.connect() as witness:
            for size in range(1, len(whole)):
                with self.daemon.connect() as peer:
                    peer.socket.send(whole[:size])
                    self.assert_closed(peer)
            self.assert_prompt(witness)

    def test_garbage_is_answered_or_ends_its_connection_alone(self):
        numbers = random.Random(7)
        good = wire.packets(wire.message(
            wire.CALL, wire.value(0, "i", -1) + wire.text(1, "items", wire.IN) + wire.asked_text(2),
            "com.holvi.IDebugPrintControl", "Execute", 1, 1))[0]
        with self.daemon.connect() as witness:
            for _ in range(2000):
                packet = bytearray(good if numbers.random() < 0.9 else numbers.randbytes(200))
                for _ in range(numbers.randint(1, 4)):
                    packet[numbers.randrange(len(packet))] = numbers.randrange(256)
                with self.daemon.connect() as peer:
                    peer.socket.send(packet)
                    # Its hello is answered behind it, or nothing is any more.
                    with contextlib.suppress(wire.Closed):
                        peer.send(wire.message(wire.HELLO, wire.value(0, "I", 1)
                                               + wire.node(1, wire.ARRAY, peer.token)))
                        while peer.receive()[0] != wire.WELCOME:
                            pass
            self.assert_prompt(witness)

    def test_thousands_that_come_and_go_leave_nothing(self):
        def held():
            return len(os.listdir(f"/proc/{self.daemon.process.pid}/fd"))

        with self.daemon.connect() as client:
            descriptors = held()
            for count in range(4000):
                self.daemon.connect(hello=count % 4 == 0).close()
            self.daemon.wait("/daemon/clients/1 == null")
            self.assert_prompt(client)
            self.assertEqual(held(), descriptors)
        self.assertLess(self.memory(), MEMORY_BOUND)

    def test_a_subscriber_that_never_reads_is_dropped_and_others_are_served(self):
        def subscriber(client):
            connection = self.daemon.connect(token=client.token, role=wire.ROLE_SIGNALS,
                                             session=client.open_session("ISignalSubscriber", 0)[1])
            self.addCleanup(connection.close)
            return connection

        with self.daemon.connect() as bad, self.daemon.connect() as good:
            subscriber(bad)
            reading = subscriber(good)
            sent = 0
            while "takes nothing of what is sent to it" not in self.daemon.log():
                self.daemon.simctl("signal", 193, "serviceId=1", "count=10000")
                sent += 10000
                for _ in range(10000):
                    self.assertEqual(reading.receive()[0], wire.SIGNAL)
                self.assert_prompt(good)
            self.assertLess(self.memory(), MEMORY_BOUND)
            # It had its chance.
            self.assertGreater(sent, 10000)
            # Its calls are another matter.
            self.assertEqual(bad.stop(), 0)

    def test_messages_that_never_become_whole_take_so_much_memory_and_no_more(self):
        header = struct.pack("<BxhIIHHII", wire.CALL, 0, 1, 0, 0, 0, 60 << 20, 0)
        packet = struct.pack("<HBB", 0x564E, 1, 1) + bytes(wire.MAX_PAYLOAD)
        hoarders = [self.daemon.connect() for _ in range(8)]
        with self.daemon.connect() as client:
            for peer in hoarders:
                self.addCleanup(peer.close)
                with contextlib.suppress(BrokenPipeError, ConnectionResetError):
                    peer.socket.send(packet[:4] + header + packet[28:])
                    for _ in range(900):
                        peer.socket.send(packet)
                self.assert_prompt(client)
            self.assertLess(self.memory(), MEMORY_BOUND)
        self.assertIn("take too much memory", self.daemon.log())

    def test_signals_are_for_the_client_whose_session_it_is(self):
        with self.daemon.connect() as client, self.daemon.connect() as other:
            _, session = client.open_session("ISignalSubscriber", 0)
            for wrong in (session, session + 1, 0):
                with self.assertRaises(wire.Closed):
                    self.daemon.connect(token=other.token, role=wire.ROLE_SIGNALS, session=wrong)
            with self.daemon.connect(token=client.token, role=wire.ROLE_SIGNALS,
                                     session=session) as signals:
                self.daemon.simctl("signal", 193, "serviceId=1")
                self.assertEqual(signals.receive()[0], wire.SIGNAL)
        self.assertIn(f"asks for the signals of session {session}, which is not its own",
                      self.daemon.log())

    def test_a_crowd_on_the_control_socket_holds_nobody_up(self):
        self.allow_descriptors()
        crowd = []
        for _ in range(1000):
            peer = socket.socket(socket.AF_UNIX)
            self.addCleanup(peer.close)
            peer.setsockopt(socket.SOL_SOCKET, socket.SO_SNDTIMEO, struct.pack("ll", LIMIT, 0))
            peer.connect(self.daemon.socket + ".ctl")
            peer.settimeout(LIMIT)
            crowd.append(peer)
        with self.daemon.connect() as client:
            self.assert_prompt(client)
        self.assertIn("/debug/qos false", self.daemon.simctl("state"))
        # Who has asked for nothing in time is let go, without a word.
        for peer in crowd:
            with contextlib.suppress(ConnectionResetError):
                self.assertEqual(peer.recv(1), b"")

    def test_running_out_of_descriptors_is_survived(self):
        pid = self.daemon.process.pid
        used = len(os.listdir(f"/proc/{pid}/fd"))
        with self.daemon.connect() as client:
            resource.prlimit(pid, resource.RLIMIT_NOFILE, (used + 3, used + 3))
            peers = [self.daemon.connect(hello=False) for _ in range(5)]
            before = self.processor_time()
            # What it has goes on; the queue waits without spinning.
            for _ in range(20):
                self.assertEqual(client.stop(), 0)
            self.assertIn("cannot accept: " + os.strerror(errno.EMFILE), self.daemon.log())
            # Each silent one is dropped in time, and lets the next one in.
            for peer in peers:
                self.assert_closed(peer)
                peer.close()
            self.assertLess(self.processor_time() - before, 1.0)
        with self.daemon.connect() as client:
            self.assertEqual(client.stop(), 0)

    def allow_descriptors(self):
        soft, hard = resource.getrlimit(resource.RLIMIT_NOFILE)
        if hard < 2000:
            self.skipTest("too few descriptors")
        resource.setrlimit(resource.RLIMIT_NOFILE, (max(soft, 2000), hard))
        self.addCleanup(resource.setrlimit, resource.RLIMIT_NOFILE, (soft, hard))

    def assert_prompt(self, client):
        """Calls are answered, none of them after more than PROMPT seconds."""
        for _ in range(20):
            began = time.monotonic()
            self.assertEqual(client.stop(), 0)
            self.assertLess(time.monotonic() - began, PROMPT)

    def memory(self):
        with open(f"/proc/{self.daemon.process.pid}/statm", encoding="utf-8") as file:
            return int(file.read().split()[1]) * resource.getpagesize()

    def processor_time(self):
        with open(f"/proc/{self.daemon.process.pid}/stat", encoding="utf-8") as file:
            fields = file.read().rsplit(")", 1)[1].split()
        return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")
