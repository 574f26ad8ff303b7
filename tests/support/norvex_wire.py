"""A small client of the simulated TV's socket, for tests: speaks the bytes itself, so that it can
also speak nonsense. docs/wire-format.md tabulates them."""

import os
import socket
import struct

HELLO, WELCOME, CALL, REPLY, SIGNAL, LOG = range(1, 7)
VALUE, ARRAY, BRANCH, LENGTH = range(1, 5)
OUT, IN = 0, 1
ROLE_CALLS, ROLE_SIGNALS, ROLE_LOG = range(3)
MAX_PAYLOAD = 60 << 10


# ---- trees ----

def node(tag, kind, data, direction=OUT):
    return struct.pack("<hBBI", tag, kind, direction, len(data)) + data


def value(tag, layout, number, direction=OUT):
    return node(tag, VALUE, struct.pack("<" + layout, number), direction)


def branch(tag, children, direction=OUT):
    return node(tag, BRANCH, b"".join(children), direction)


def text(tag, content, direction=OUT):
    data = content.encode() if isinstance(content, str) else content
    children = [value(0, "I", len(data))]
    if data:
        children.append(node(1, ARRAY, data))
    return branch(tag, children, direction)


def asked_text(tag, length=0):
    """A text that is only out: its length alone."""
    return node(tag, LENGTH, struct.pack("<I", length))


def menu_item(tag, name, state, item_id, direction=OUT):
    return branch(tag, [text(0, name), value(1, "B", state), value(2, "I", item_id)], direction)


def nodes(data):
    """The nodes of a run of bytes: a list of (tag, kind, direction, content)."""
    found = []
    at = 0
    while at < len(data):
        tag, kind, direction, size = struct.unpack_from("<hBBI", data, at)
        at += 8 + size
        assert len(data) >= at, "a node is cut short"
        found.append((tag, kind, direction, data[at - size:at]))
    return found


def by_tag(data):
    return {tag: content for tag, _, _, content in nodes(data)}


def read(content, layout):
    return struct.unpack("<" + layout, content)[0]


def read_text(content):
    children = by_tag(content)
    data = children.get(1, b"")
    assert len(data) == read(children[0], "I")
    return data.decode(errors="replace")


# ---- messages and packets ----

def message(kind, tree=b"", interface="", method="", method_id=0, serial=0, session=0):
    names = interface.encode(), method.encode()
    return struct.pack("<BxhIIHHII", kind, method_id, serial, session, len(names[0]),
                       len(names[1]), len(tree), 0) + names[0] + names[1] + tree


def packets(data):
    pieces = [data[at:at + MAX_PAYLOAD] for at in range(0, len(data), MAX_PAYLOAD)]
    return [struct.pack("<HBB", 0x564E, 1, piece is not pieces[-1]) + piece for piece in pieces]


def parse(data):
    """(kind, serial, session, tree) of a whole message."""
    kind, _, serial, session, interface, method, tree, _ = struct.unpack_from("<BxhIIHHII", data)
    assert len(data) == 24 + interface + method + tree
    return kind, serial, session, data[24 + interface + method:]


class Closed(Exception):
    """The daemon has closed the connection."""


class Connection:
    """One connection, with its hello said unless told otherwise."""

    def __init__(self, path, token=None, role=ROLE_CALLS, session=None, tag=None, hello=True,
                 limit=10):
        self.token = token or os.urandom(16)
        self.epoch = None
        self.serial = 0
        self.socket = socket.socket(socket.AF_UNIX, socket.SOCK_SEQPACKET)
        # A connect that may not block gives up at once where the daemon is behind with accepting.
        self.socket.setsockopt(socket.SOL_SOCKET, socket.SO_SNDTIMEO, struct.pack("ll", limit, 0))
        self.socket.connect(path)
        self.socket.settimeout(limit)
        if hello:
            self.hello(role, session, tag)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()

    def close(self):
        self.socket.close()

    def send(self, data):
        try:
            for packet in packets(data):
                self.socket.send(packet)
        except (BrokenPipeError, ConnectionResetError) as error:
            raise Closed from error

    def receive(self):
        """The next message, as parse() gives it."""
        pieces = []
        while True:
            try:
                packet = self.socket.recv(4 + MAX_PAYLOAD)
            except ConnectionResetError as error:
                raise Closed from error
            if not packet:
                raise Closed
            magic, version, more = struct.unpack_from("<HBB", packet)
            assert (magic, version) == (0x564E, 1)
            pieces.append(packet[4:])
            if not more:
                return parse(b"".join(pieces))

    def hello(self, role=ROLE_CALLS, session=None, tag=None, version=1):
        tree = value(0, "I", version) + node(1, ARRAY, self.token) + value(2, "I", role)
        if session is not None:
            tree += value(3, "I", session)
        if tag is not None:
            tree += text(4, tag)
        self.send(message(HELLO, tree))
        kind, _, _, tree = self.receive()
        assert kind == WELCOME
        self.epoch = read(by_tag(tree)[1], "Q")

    def call(self, interface, method, method_id, arguments=(), session=0):
        """The out arguments by place."""
        self.ask(interface, method, method_id, arguments, session)
        return self.answer()

    def ask(self, interface, method, method_id, arguments=(), session=0):
        self.serial += 1
        self.send(message(CALL, b"".join(arguments), "com.holvi." + interface, method, method_id,
                          self.serial, session))

    def answer(self):
        kind, serial, _, tree = self.receive()
        assert (kind, serial) == (REPLY, self.serial)
        return by_tag(tree)

    def open_session(self, interface, profile=1, screen=0):
        """(status, session id)"""
        answer = self.call("INorvexSession", "Open", 0,
                           [value(0, "i", -1), value(1, "I", 0), text(2, "com.holvi." + interface,
                                                                     IN),
                            value(3, "i", profile, IN), value(4, "i", screen, IN)])
        return read(answer[0], "i"), read(answer[1], "I") if 1 in answer else 0

    def close_session(self, session):
        answer = self.call("INorvexSession", "Close", 1,
                           [value(0, "i", -1), value(1, "I", session, IN)])
        return read(answer[0], "i")

    # The debug print control's dialogue.

    def start(self):
        answer = self.call("IDebugPrintControl", "Start", 0, [value(0, "i", -1), asked_text(1)])
        return read(answer[0], "i"), read_text(answer[1])

    def execute(self, word):
        answer = self.call("IDebugPrintControl", "Execute", 1,
                           [value(0, "i", -1), text(1, word, IN), asked_text(2)])
        return read(answer[0], "i"), read_text(answer[2]) if 2 in answer else ""

    def stop(self):
        answer = self.call("IDebugPrintControl", "Stop", 2, [value(0, "i", -1)])
        return read(answer[0], "i")
