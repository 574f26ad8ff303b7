"""norvex-sim among peers that are malicious, slow, or many."""

import contextlib
import errno
import os
import resource
import select
import socket
import struct

import pytest

import norvex_wire as wire
from norvex_control import Refused
from programs import LIMIT

# Of the daemon, in bytes, whatever a peer does; with room for a sanitizer's own.
MEMORY_BOUND = 384 << 20
ITEMS = 10000
GET_ITEMS = ("IDebugPrintControl.GetMenuItems", wire.branch(1, []))
SIXTY_MIB = wire.header(wire.CALL, serial=1, tree=60 << 20)
NEVER_READS = "does not read its replies"


@pytest.fixture
def tv(tv_off):
    # What a sanitizer keeps of freed memory is not the daemon's.
    options = os.environ.get("ASAN_OPTIONS", "") + ":quarantine_size_mb=16"
    tv_off.start("--client-grace", 0, ASAN_OPTIONS=options.strip(":"))
    return tv_off


@pytest.fixture
def connect(tv):
    """Connections that end with the test."""
    with contextlib.ExitStack() as connections:
        yield lambda **options: connections.enter_context(tv.connect(**options))


@pytest.fixture
def many_descriptors():
    soft, hard = resource.getrlimit(resource.RLIMIT_NOFILE)
    if hard < 2000:
        pytest.skip("too few descriptors")
    resource.setrlimit(resource.RLIMIT_NOFILE, (max(soft, 2000), hard))
    yield
    resource.setrlimit(resource.RLIMIT_NOFILE, (soft, hard))


def assert_serves(tv):
    with tv.connect() as client:
        assert client.stop() == 0


def memory(tv):
    with open(f"/proc/{tv.process.pid}/statm", encoding="utf-8") as file:
        return int(file.read().split()[1]) * resource.getpagesize()


def processor_time(tv):
    with open(f"/proc/{tv.process.pid}/stat", encoding="utf-8") as file:
        fields = file.read().rsplit(")", 1)[1].split()
    return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")


def descriptors(tv):
    return len(os.listdir(f"/proc/{tv.process.pid}/fd"))


def subscribe(tv, client):
    _, session = client.open_session("ISignalSubscriber", 0)
    return tv.connect(token=client.token, role=wire.ROLE_SIGNALS, session=session)


# ---- malformed bytes ----

@pytest.mark.parametrize("packet", [
    b"x", b"nonsense" * 10, wire.packet(wire.header(wire.CALL, serial=1, tree=0xFFFFFFFF)),
    wire.packet(SIXTY_MIB, more=True), wire.packet(wire.message(wire.CALL)), wire.packet(wire.message(wire.WELCOME)),
    wire.packet(wire.message(wire.HELLO)), wire.packet(wire.message(wire.HELLO, b"\1" * 7)),
    wire.packet(wire.message(99)), wire.packet(wire.hello_message(b"t" * 17)),
    wire.packet(wire.hello_message(b"t" * 16)[:-1]), b"\0" * 100000],
    ids=["byte", "text", "4 GiB", "more", "call", "welcome", "no token", "no tree", "kind", "token", "cut", "zeros"])
def test_a_malformed_packet_before_the_hello_ends_only_its_connection(tv, client, packet):
    with tv.connect(hello=False) as peer:
        peer.socket.send(packet)
        peer.assert_closed()
    assert client.stop() == 0
    assert "dropped connection" in tv.log()


def test_another_version_is_refused(tv, client):
    assert client.stop() == 0
    with tv.connect(hello=False) as peer, pytest.raises(wire.Closed):
        peer.hello(version=2)
    # Its end is seen before the line is written; an answer comes after it.
    assert client.stop() == 0
    # The line is of no call.
    assert "norvex: #0 dropped connection 2: unsupported version 2" in tv.log()


def test_a_hello_may_be_repeated_but_not_with_another_token(client):
    client.hello()
    client.token = os.urandom(16)
    with pytest.raises(wire.Closed):
        client.hello()


def test_a_long_message_before_the_hello_gets_no_memory(tv):
    with tv.connect(hello=False) as peer:
        with contextlib.suppress(wire.Closed):
            peer.send(wire.message(wire.HELLO, bytes(200000)))
        peer.assert_closed()


@pytest.mark.parametrize("announced", [0xFFFFFFFF, (64 << 20) + 1])
def test_a_message_over_64_mib_is_refused_by_its_header(tv, client, announced):
    with tv.connect() as peer:
        header = wire.header(wire.CALL, serial=1, tree=announced)
        peer.socket.send(wire.packet(header.ljust(wire.MAX_PAYLOAD, b"\0"), more=True))
        peer.assert_closed()
    assert client.stop() == 0
    assert tv.log().count("malformed packet") == 1


def test_a_packet_cut_at_any_byte_ends_its_connection(tv, client):
    whole = wire.packet(wire.call_message("IDebugPrintControl.Stop", [], serial=1))
    for size in range(1, len(whole)):
        with tv.connect() as peer:
            peer.socket.send(whole[:size])
            peer.assert_closed()
    assert client.stop() == 0


# ---- memory ----

def test_what_a_header_announces_takes_no_memory(tv, connect, client):
    before = memory(tv)
    for _ in range(200):
        # The first of a thousand packets; the others never come.
        connect().socket.send(wire.packet(SIXTY_MIB.ljust(wire.MAX_PAYLOAD, b"\0"), more=True))
    assert client.stop() == 0
    assert memory(tv) - before < 200 * 4 * wire.MAX_PAYLOAD


def test_incomplete_messages_take_bounded_memory(tv, connect, client):
    for peer in [connect() for _ in range(8)]:
        with contextlib.suppress(BrokenPipeError, ConnectionResetError):
            peer.socket.send(wire.packet(SIXTY_MIB.ljust(wire.MAX_PAYLOAD, b"\0"), more=True))
            for _ in range(900):
                peer.socket.send(wire.packet(bytes(wire.MAX_PAYLOAD), more=True))
        assert client.stop() == 0
    assert memory(tv) < MEMORY_BOUND
    assert "take too much memory" in tv.log()


@pytest.mark.slow
def test_who_stops_in_the_middle_of_a_message_makes_room_for_others(tv, connect, client):
    stuck = [connect(), connect()]
    for peer in stuck:
        peer.socket.send(wire.packet(SIXTY_MIB.ljust(wire.MAX_PAYLOAD, b"\0"), more=True))
        for _ in range((60 << 20) // wire.MAX_PAYLOAD - 1):
            peer.socket.send(wire.packet(bytes(wire.MAX_PAYLOAD), more=True))
    assert client.execute("x" * (60 << 20)) == (-1, "")
    # One was in the way, the other one's time ends.
    for peer in stuck:
        peer.assert_closed()
    # Its end is seen before the line is written; an answer comes after it.
    assert client.stop() == 0
    assert tv.log().count("take too much memory") == 1
    assert tv.log().count("the rest of its message did not come in time") == 1


def test_queued_answers_take_bounded_memory(tv, connect, client):
    # Some 48 MiB each.
    tv.set("items", 500000)
    late = []
    while "take too much memory" not in tv.log():
        assert len(late) < 8
        late.append(connect())
        late[-1].ask(*GET_ITEMS)
        # Its answer has begun to come, or there was no room for it.
        assert select.select([late[-1].socket], [], [], LIMIT)[0]
        assert client.stop() == 0
    assert len(late) > 1
    # Those before the one that was too much get theirs.
    assert len(wire.nodes(late[0].answer()[1])) == 16 + 500000


# ---- peers that do not read ----

def ask_until_nothing_is_taken(client):
    """How many requests it took: the daemon reads no more of one whose answers wait."""
    client.socket.setblocking(False)
    with pytest.raises(BlockingIOError):
        while True:
            client.ask(*GET_ITEMS)
    client.serial -= 1
    client.socket.settimeout(LIMIT)
    return client.serial


def test_answers_that_are_read_late_are_whole_and_others_are_served_meanwhile(tv, client):
    tv.set("items", ITEMS)
    with tv.connect() as late:
        asked = ask_until_nothing_is_taken(late)
        assert client.stop() == 0
        assert memory(tv) < MEMORY_BOUND
        items = client.menu_items()
        assert [item_id for _, _, item_id in items[16:]] == list(range(117, 117 + ITEMS))
        answer = client.call(*GET_ITEMS)
        for late.serial in range(1, asked + 1):
            assert late.answer() == answer
        # It is read from again.
        assert late.stop() == 0


def test_one_that_goes_while_its_answers_wait_leaves_nothing(tv, client):
    tv.set("items", ITEMS)
    before = descriptors(tv)
    with tv.connect() as late:
        ask_until_nothing_is_taken(late)
    tv.wait("/daemon/clients/1 == null")
    assert client.stop() == 0
    assert descriptors(tv) == before


def test_signals_that_are_read_late_are_all_there_in_their_order(tv, client):
    with subscribe(tv, client) as late:
        # More than the kernel keeps for it, less than makes it one that never reads; all together are more than that.
        for first in range(1, 200000, 20000):
            tv.signal(193, "serviceId=1", "count=10000")
            tv.signal(193, "serviceId=1", "count=10000")
            for _ in range(19999):
                late.socket.recv(4096)
            kind, _, _, tree = late.receive()
            assert (kind, wire.read(wire.by_tag(tree)[4], "Q")) == (wire.SIGNAL, first + 19999)
    assert NEVER_READS not in tv.log()


def test_a_subscriber_that_never_reads_is_dropped_and_others_are_served(tv, connect, client):
    bad = connect()
    with subscribe(tv, bad), subscribe(tv, client) as reading:
        sent = 0
        while NEVER_READS not in tv.log():
            sent += tv.signal(193, "serviceId=1", "count=10000")
            for _ in range(10000):
                assert reading.receive()[0] == wire.SIGNAL
            assert client.stop() == 0
        assert memory(tv) < MEMORY_BOUND
        # It had its chance.
        assert sent > 20000
        # Its calls are another matter.
        assert bad.stop() == 0


def test_a_log_follower_that_never_reads_is_dropped(tv, client):
    with tv.connect(role=wire.ROLE_LOG, tag="norvex"):
        word = "x" * 200
        nonsense = wire.message(wire.CALL, interface=word, method=word)
        while NEVER_READS not in tv.log():
            for _ in range(1000):
                client.send(nonsense)
                client.receive()
        assert client.stop() == 0
    assert memory(tv) < MEMORY_BOUND


# ---- peers that are many ----

@pytest.mark.slow
@pytest.mark.usefixtures("many_descriptors")
def test_a_thousand_silent_connections_are_evicted(tv, connect, client):
    silent = [connect(hello=False) for _ in range(1000)]
    assert_serves(tv)
    assert client.stop() == 0
    # Those that were left are dropped in time, which the last one's end tells.
    for connection in reversed(silent):
        connection.assert_closed()
    assert "evicted without a hello" in tv.log()
    assert "no hello in time" in tv.log()


@pytest.mark.slow
@pytest.mark.usefixtures("many_descriptors")
def test_many_connections_to_the_control_socket_delay_no_client(tv, client):
    with contextlib.ExitStack() as ends:
        crowd = [ends.enter_context(socket.socket(socket.AF_UNIX)) for _ in range(1000)]
        for peer in crowd:
            peer.setsockopt(socket.SOL_SOCKET, socket.SO_SNDTIMEO, struct.pack("ll", LIMIT, 0))
            peer.connect(tv.control_path)
            peer.settimeout(LIMIT)
        assert client.stop() == 0
        assert tv.state("/debug/qos") is False
        # Who has asked for nothing in time is let go, without a word.
        for peer in crowd:
            with contextlib.suppress(ConnectionResetError):
                assert peer.recv(1) == b""


@pytest.mark.slow
@pytest.mark.usefixtures("many_descriptors")
def test_1280_can_wait_at_once_and_are_told_and_one_more_is_told_why_not(tv, client):
    with contextlib.ExitStack() as ends:
        answers = []
        for _ in range(1280):
            waiter = ends.enter_context(socket.socket(socket.AF_UNIX))
            waiter.settimeout(LIMIT)
            waiter.connect(tv.control_path)
            waiter.sendall(tv.written("wait", "/debug/itemsOn == 1", "--timeout", 3600))
            answers.append(ends.enter_context(waiter.makefile()))
            assert "limit" in answers[-1].readline()
        assert "1280 control connections are open" in tv.simctl_refusal("state")
        client.start()
        for word in ("items", "101"):
            client.execute(word)
        assert {answer.read() for answer in answers} == {'{"status":0}\n'}


@pytest.mark.slow
def test_running_out_of_descriptors_is_survived(tv, connect, client):
    limit = descriptors(tv) + 2
    resource.prlimit(tv.process.pid, resource.RLIMIT_NOFILE, (limit, limit))
    peers = [connect(hello=False) for _ in range(3)]
    before = processor_time(tv)
    # What it has goes on; the queue waits without spinning.
    assert client.stop() == 0
    assert "cannot accept: " + os.strerror(errno.EMFILE) in tv.log()
    # Each silent one is dropped in time, and lets the next one in.
    for peer in peers:
        peer.assert_closed()
        peer.close()
    assert processor_time(tv) - before < 1.0
    assert_serves(tv)
    # Who has said hello may be silent.
    assert client.stop() == 0


def test_thousands_that_come_and_go_leave_nothing(tv, client):
    before = descriptors(tv)
    for count in range(4000):
        tv.connect(hello=count % 4 == 0).close()
    tv.wait("/daemon/clients/1 == null")
    assert client.stop() == 0
    assert descriptors(tv) == before
    assert memory(tv) < MEMORY_BOUND


# ---- what one client may have ----

def test_signals_are_for_the_client_whose_session_it_is(tv, client):
    _, session = client.open_session("ISignalSubscriber", 0)
    with tv.connect() as other:
        for wrong in (session, session + 1, 0):
            with pytest.raises(wire.Closed):
                tv.connect(token=other.token, role=wire.ROLE_SIGNALS, session=wrong)
    with tv.connect(token=client.token, role=wire.ROLE_SIGNALS, session=session) as signals:
        tv.signal(193, "serviceId=1")
        assert signals.receive()[0] == wire.SIGNAL
    assert f"requested signals of session {session}, which is not its own" in tv.log()


def test_a_second_signal_connection_of_a_session_ends_the_first(tv, client):
    _, session = client.open_session("ISignalSubscriber", 0)
    options = {"token": client.token, "role": wire.ROLE_SIGNALS, "session": session}
    with tv.connect(**options) as first, tv.connect(**options) as second:
        first.assert_closed()
        tv.signal(193, "serviceId=1")
        assert second.receive()[0] == wire.SIGNAL
        assert "dropped connection 2: replaced by connection 3" in tv.log()
        # Nor does it outlive its session.
        assert client.close_session(session) == 1
        second.assert_closed()


def test_a_client_has_64_connections_at_most_and_others_have_their_own(tv, connect, client):
    own = [connect(token=client.token) for _ in range(63)]
    with pytest.raises(wire.Closed):
        connect(token=client.token)
    assert_serves(tv)
    assert "client 1 already has 64 connections" in tv.log()
    own.pop().close()
    tv.wait("/daemon/clients/0/connections == 63")
    assert connect(token=client.token).stop() == 0


def test_the_key_value_store_has_1024_keys_at_most(tv):
    # One is there from the start.
    for number in range(1, 1024):
        tv.set("key", f"key/{number}", number)
    with pytest.raises(Refused, match="the key-value store is full"):
        tv.set("key", "key/more", 1)
    tv.set("key", "key/1", 5)


def test_there_are_1024_log_tags_at_most(tv, client):
    def start(tag):
        return client.status("IDevice.StartLogTag", wire.text(1, tag, wire.IN))

    known = len(tv.state("/device/logTags"))
    assert {start(f"tag-{number}") for number in range(1024 - known)} == {1}
    assert start("tag-more") < 0
    assert start("tag-0") == 1
