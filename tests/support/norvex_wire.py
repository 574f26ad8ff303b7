"""A client of the simulated TV's socket that writes the bytes itself, so that it can also send malformed ones.
See docs/wire-format.md."""

import os
import re
import socket
import struct

from programs import ROOT

# The operations of each interface ("IAVControl"), in the order of their numbers.
TABLE = (ROOT / "simulator/interfaces/include/interfaces/Interfaces.h").read_text(encoding="utf-8")
OPERATIONS = {"I" + interface: re.findall(r"\w+", operations) for interface, operations in re.findall(
    r"^NORVEX_INTERFACE\((\w+),([^)]*)\)", TABLE, re.MULTILINE)}

HELLO, WELCOME, CALL, REPLY, SIGNAL, LOG = range(1, 7)
VALUE, ARRAY, BRANCH, LENGTH = range(1, 5)
OUT, IN = 0, 1
ROLE_CALLS, ROLE_SIGNALS, ROLE_LOG = range(3)
MAX_PAYLOAD = 60 << 10
HEADER = struct.Struct("<BxhIIHHII")


def header(kind, *, method_id=0, serial=0, session=0, interface=0, method=0, tree=0):
    """The last three are lengths."""
    return HEADER.pack(kind, method_id, serial, session, interface, method, tree, 0)


# ---- trees ----

def node(tag, kind, data, direction=OUT):
    return struct.pack("<hBBI", tag, kind, direction, len(data)) + data


def value(tag, layout, number, direction=OUT):
    return node(tag, VALUE, struct.pack("<" + layout, number), direction)


def branch(tag, children, direction=OUT):
    return node(tag, BRANCH, b"".join(children), direction)


def text(tag, content, direction=OUT):
    data = content.encode() if isinstance(content, str) else content
    return branch(tag, [value(0, "I", len(data)), *([node(1, ARRAY, data)] if data else [])], direction)


def asked_text(tag):
    """An out text: its length."""
    return node(tag, LENGTH, struct.pack("<I", 0))


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


def read_menu_items(content):
    """(name, state, id) of each."""
    items = [by_tag(item) for _, _, _, item in nodes(content)]
    return [(read_text(item[0]), read(item[1], "B"), read(item[2], "I")) for item in items]


# ---- messages and packets ----

def message(kind, tree=b"", interface="", method="", method_id=0, serial=0, session=0):
    names = interface.encode() + method.encode()
    return header(kind, method_id=method_id, serial=serial, session=session, interface=len(interface.encode()),
                  method=len(method.encode()), tree=len(tree)) + names + tree


def call_message(operation, arguments, serial=0, session=0):
    """Of an operation as "IAVControl.MuteVideo"."""
    interface, method = operation.split(".")
    # What follows a "_" tells overloads apart.
    return message(CALL, b"".join(arguments), "com.holvi." + interface, method.split("_")[0],
                   OPERATIONS[interface].index(method), serial, session)


def hello_message(token, role=ROLE_CALLS, version=1, more=b""):
    return message(HELLO, value(0, "I", version) + node(1, ARRAY, token) + value(2, "I", role) + more)


def packet(payload, more=False):
    return struct.pack("<HBB", 0x564E, 1, more) + payload


def packets(data):
    pieces = [data[at:at + MAX_PAYLOAD] for at in range(0, len(data), MAX_PAYLOAD)]
    return [packet(piece, piece is not pieces[-1]) for piece in pieces]


def parse(data):
    """(kind, serial, session, tree) of a whole message."""
    kind, _, serial, session, interface, method, tree, _ = HEADER.unpack_from(data)
    assert len(data) == HEADER.size + interface + method + tree
    return kind, serial, session, data[HEADER.size + interface + method:]


class Closed(Exception):
    """The daemon has closed the connection."""


STATUS = value(0, "i", -1)
YES_OR_NO = value(0, "B", 0)


class Connection:
    """One connection, by default with its hello sent."""

    def __init__(self, path, token=None, role=ROLE_CALLS, session=None, tag=None, hello=True, limit=10):
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
            for each in packets(data):
                self.socket.send(each)
        except (BrokenPipeError, ConnectionResetError) as error:
            raise Closed from error

    def receive(self):
        """The next message, as parse() gives it."""
        pieces = []
        while True:
            try:
                received = self.socket.recv(4 + MAX_PAYLOAD)
            except ConnectionResetError as error:
                raise Closed from error
            if not received:
                raise Closed
            magic, version, more = struct.unpack_from("<HBB", received)
            assert (magic, version) == (0x564E, 1)
            pieces.append(received[4:])
            if not more:
                return parse(b"".join(pieces))

    def assert_closed(self):
        """Nothing comes any more but the end."""
        try:
            raise AssertionError(f"not closed: {self.receive()}")
        except Closed:
            pass

    def hello(self, role=ROLE_CALLS, session=None, tag=None, version=1):
        more = (value(3, "I", session) if session is not None else b"") + (text(4, tag) if tag is not None else b"")
        self.send(hello_message(self.token, role, version, more))
        kind, _, _, tree = self.receive()
        assert kind == WELCOME
        self.epoch = read(by_tag(tree)[1], "Q")

    def ask(self, operation, *arguments, status=STATUS, session=0):
        """A call whose answer is not waited for. `arguments` are those after the status."""
        self.serial += 1
        self.send(call_message(operation, [status, *arguments], self.serial, session))

    def answer(self):
        """The out arguments by place."""
        kind, serial, _, tree = self.receive()
        assert (kind, serial) == (REPLY, self.serial)
        return by_tag(tree)

    def call(self, operation, *arguments, status=STATUS, session=0):
        self.ask(operation, *arguments, status=status, session=session)
        return self.answer()

    def status(self, operation, *arguments):
        return read(self.call(operation, *arguments)[0], "i")

    def open_session(self, interface, profile=1, screen=0):
        """(status, session id)"""
        answer = self.call("INorvexSession.Open", value(1, "I", 0), text(2, "com.holvi." + interface, IN),
                           value(3, "i", profile, IN), value(4, "i", screen, IN))
        return read(answer[0], "i"), read(answer[1], "I") if 1 in answer else 0

    def close_session(self, session):
        return self.status("INorvexSession.Close", value(1, "I", session, IN))

    # The debug print control's dialogue: (status, screen).

    def start(self):
        answer = self.call("IDebugPrintControl.Start", asked_text(1))
        return read(answer[0], "i"), read_text(answer[1])

    def execute(self, word):
        answer = self.call("IDebugPrintControl.Execute", text(1, word, IN), asked_text(2))
        return read(answer[0], "i"), read_text(answer[2]) if 2 in answer else ""

    def stop(self):
        return self.status("IDebugPrintControl.Stop")

    def menu_items(self):
        return read_menu_items(self.call("IDebugPrintControl.GetMenuItems", branch(1, []))[1])
