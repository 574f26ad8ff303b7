"""What goes wrong between a console and its TV: each class at one boundary, in the ways that it
lists. Called by the relay, see norvex_proxy.Fault."""

import random
import struct

import norvex_proxy
import norvex_wire as wire


MANY = 1 << 30


class At(norvex_proxy.Fault):
    """Once, at the exchange of a number."""

    WAYS = ()

    def __init__(self, rig, number, way):
        assert way in self.WAYS
        self.rig = rig
        self.number = number
        self.way = way
        self.happened = None
        # Whose answer does not come any more, or is none.
        self.spoilt = None
        # How many failed calls the client library logs by the next prompt: at least, at most.
        self.failures = (0, 1)

    def is_it(self, exchange):
        return exchange.number == self.number

    def end(self):
        """At the prompt after it: all is well again from here on."""


class Kill(At):
    """The TV is killed, and started again once the console has come to its next prompt."""

    # With the request unread; during its work; with the answer on its way; with the answer given;
    # as the first, but a new TV is there before the console sees that the old one has gone.
    WAYS = ("unread", "working", "unanswered", "answered", "replaced")

    def __init__(self, *what):
        super().__init__(*what)
        if self.way != "replaced":
            self.failures = (0, MANY)
        # What the database held when the TV was dead, and what a new one said of it.
        self.kept = None
        self.state = None

    def kill(self):
        self.rig.tv.kill()
        self.kept = self.rig.stored()

    def ask(self, exchange, link):
        if not self.is_it(exchange) or self.way in ("unanswered", "answered"):
            return True
        self.happened = exchange
        if self.way == "working":
            link.pass_on()
        self.kill()
        if self.way == "replaced":
            self.state = self.rig.restart()
        else:
            self.rig.proxy.close()
        return False

    def answer(self, exchange, link, packets):
        if not self.is_it(exchange):
            return packets
        self.happened = exchange
        self.kill()
        if self.way == "answered":
            exchange.end(answered=True)
            link.send(packets)
        self.rig.proxy.close()
        return None

    def end(self):
        if self.state is None:
            self.state = self.rig.restart()

    def has_lost(self, recording):
        """Whether something that was answered is not there any more, or something else is."""
        before, after = recording.stored[self.number - 1], recording.stored[self.number]
        possible = {"unread": [before], "replaced": [before], "working": [before, after],
                    "unanswered": [after], "answered": [after]}[self.way]
        return self.kept not in possible or self.state != recording.states[self.kept]


class Stop(At):
    """The TV stands still, and goes on once the console has come to its next prompt."""

    WAYS = ("unread", "answered")

    def __init__(self, *what):
        super().__init__(*what)
        self.failures = (0, MANY)

    def ask(self, exchange, link):
        if self.is_it(exchange) and self.way == "unread":
            self.happened = exchange
            self.rig.stop()
        return True

    def answer(self, exchange, link, packets):
        if self.is_it(exchange) and self.way == "answered":
            self.happened = exchange
            self.rig.stop()
        return packets

    def end(self):
        if self.happened:
            self.rig.go_on()


def header(packets, **changes):
    """The packets with another message header in the first."""
    names = ("kind", "id", "serial", "session", "interface", "method", "tree", "zero")
    fields = dict(zip(names, struct.unpack_from("<BxhIIHHII", packets[0], 4)))
    fields.update({name: change(fields[name]) for name, change in changes.items()})
    first = packets[0][:4] + struct.pack("<BxhIIHHII", *fields.values()) + packets[0][28:]
    return [first, *packets[1:]]


def cut_last(packets, size):
    return [*packets[:-1], packets[-1][:max(1, size)]]


class BadAnswer(At):
    """The TV does its work; what comes back is not what it said."""

    CHANGES = {
        # An empty packet's like would be the end of the connection: see "closed".
        "packet cut": lambda packets: [packets[0][:2]],
        "header cut": lambda packets: [packets[0][:14]],
        "tree cut": lambda packets: cut_last(packets, len(packets[-1]) - 3),
        "too long": lambda packets: [*packets[:-1], packets[-1] + b"\0" * 9],
        "further packets lost": lambda packets: [packets[0][:3] + b"\1" + packets[0][4:]],
        "foreign magic": lambda packets: [b"HT" + packets[0][2:], *packets[1:]],
        "a call": lambda packets: header(packets, kind=lambda _: wire.CALL),
        "a signal": lambda packets: header(packets, kind=lambda _: wire.SIGNAL),
        "the other answer": lambda packets: header(
            packets, kind=lambda kind: wire.WELCOME + wire.REPLY - kind),
        "no known kind": lambda packets: header(packets, kind=lambda _: 99),
        "serial ahead": lambda packets: header(packets, serial=lambda serial: serial + 1),
        "serial behind": lambda packets: header(
            packets, serial=lambda serial: (serial - 1) & 0xFFFFFFFF),
        "4 GiB announced": lambda packets: header(packets, tree=lambda _: 0xFFFFFFFF),
        "names announced": lambda packets: header(packets, interface=lambda _: 0xFFFF),
        "nodes that lie": lambda packets: [
            packets[0][:28] + packets[0][28:].replace(b"\4\0\0\0", b"\xff\xff\xff\x7f"), *packets[1:]],
        "no tree": lambda packets: [header(packets, tree=lambda _: 0)[0][:28]],
    }
    # Nothing comes that says so.
    SLOW = ("late", "serial behind", "further packets lost")
    # A tree's content is for who has asked for it: the exchange as such has gone well. Sessions
    # are the connection's own affair.
    TREES = ("garbage", "nodes that lie", "no tree")
    # What fails there is not told: the connection is made anew, the session is gone by itself.
    SILENT = ("hello", "INorvexSession.Close")
    # Over the time limit; half of it, and then the end of the connection.
    WAYS = (*CHANGES, "garbage", "late", "closed", "half and closed")

    def __init__(self, *what):
        super().__init__(*what)
        self.held = None

    def answer(self, exchange, link, packets):
        if not self.is_it(exchange):
            return packets
        self.happened = self.spoilt = exchange
        if self.way in self.SLOW:
            # The others fail at once if the TV is slow to answer the hello that comes next.
            self.failures = (0, MANY)
        elif exchange.name not in self.SILENT and (
                self.way not in self.TREES or exchange.name == "INorvexSession.Open"):
            self.failures = (1, 1)
        if self.way == "late":
            self.held = link, packets
        elif self.way == "closed":
            link.close()
        elif self.way == "half and closed":
            link.send(packets[:len(packets) // 2] or [packets[0][:len(packets[0]) // 2]])
            link.close()
        elif self.way == "garbage":
            link.send(self.noise(packets))
        else:
            link.send(self.CHANGES[self.way](packets))
        # The exchange goes on for as long as the client makes something of that.
        return None

    def noise(self, packets):
        numbers = random.Random(self.number)
        return [packets[0][:28] + numbers.randbytes(len(packets[0]) - 28),
                *(packet[:4] + numbers.randbytes(len(packet) - 4) for packet in packets[1:])]

    def end(self):
        if self.held and self.held[0] in self.rig.proxy.links:
            link, packets = self.held
            link.send(packets)


KINDS = {"kill": Kill, "stop": Stop, "bad answer": BadAnswer}
