"""What goes wrong between a console and its TV: each class at one boundary, in the ways that it lists. Called by the
relay, see relay.Fault."""

import random

import norvex_wire as wire
from relay import Fault

MANY = 1 << 30


class At(Fault):
    """Once, at the exchange of a number."""

    WAYS = ()

    def __init__(self, harness, number, way):
        assert way in self.WAYS
        self.harness = harness
        self.number = number
        self.way = way
        self.happened = False
        # Whose answer does not come any more, or is none.
        self.spoilt = None
        # How many failed calls the client library logs by the next prompt: at least, at most.
        self.failures = (0, 1)

    def is_it(self, exchange, *ways):
        if exchange.number != self.number or (ways and self.way not in ways):
            return False
        self.happened = True
        return True

    def end(self):
        """At the prompt after it: all is well again from here on."""


class Kill(At):
    """The TV is killed, and started again once the console has come to its next prompt."""

    # With the request unread; during its work; with the answer on its way; with the answer given; as the first, but a
    # new TV is there before the console sees that the old one has gone.
    WAYS = ("unread", "working", "unanswered", "answered", "replaced")

    def __init__(self, *what):
        super().__init__(*what)
        if self.way != "replaced":
            self.failures = (0, MANY)
        # What the database held when the TV was dead, and what a new one said of it.
        self.kept = None
        self.state = None

    def kill(self):
        self.harness.tv.kill()
        self.kept = self.harness.stored()

    def ask(self, exchange, link):
        if not self.is_it(exchange, "unread", "working", "replaced"):
            return True
        if self.way == "working":
            link.pass_on()
        self.kill()
        if self.way == "replaced":
            self.state = self.harness.restart()
        else:
            self.harness.relay.close()
        return False

    def answer(self, exchange, link, packets):
        if not self.is_it(exchange, "unanswered", "answered"):
            return packets
        self.kill()
        if self.way == "answered":
            exchange.end(answered=True)
            link.send(packets)
        self.harness.relay.close()
        return None

    def end(self):
        if self.state is None:
            self.state = self.harness.restart()

    def has_lost(self, recording):
        """Whether something that was answered is not there any more, or something else is."""
        before, after = recording.stored[self.number - 1], recording.stored[self.number]
        possible = {"unread": [before], "replaced": [before], "working": [before, after]}.get(self.way, [after])
        return self.kept not in possible or self.state != recording.states[self.kept]


class Stop(At):
    """The TV stands still, and goes on once the console has come to its next prompt."""

    WAYS = ("unread", "answered")

    def __init__(self, *what):
        super().__init__(*what)
        self.failures = (0, MANY)

    def ask(self, exchange, link):
        if self.is_it(exchange, "unread"):
            self.harness.stop()
        return True

    def answer(self, exchange, link, packets):
        if self.is_it(exchange, "answered"):
            self.harness.stop()
        return packets

    def end(self):
        if self.happened:
            self.harness.go_on()


def header(packets, **changes):
    """The packets with another message header in the first."""
    names = ("kind", "method_id", "serial", "session", "interface", "method", "tree")
    fields = dict(zip(names, wire.HEADER.unpack_from(packets[0], 4)))
    fields.update({name: change(fields[name]) for name, change in changes.items()})
    return [packets[0][:4] + wire.header(**fields) + packets[0][28:], *packets[1:]]


class BadAnswer(At):
    """The TV executes the call; the reply is changed on its way."""

    CHANGES = {
        # An empty packet's like would be the end of the connection: see "closed".
        "packet cut": lambda packets: [packets[0][:2]],
        "header cut": lambda packets: [packets[0][:14]],
        "tree cut": lambda packets: [*packets[:-1], packets[-1][:max(1, len(packets[-1]) - 3)]],
        "too long": lambda packets: [*packets[:-1], packets[-1] + b"\0" * 9],
        "further packets lost": lambda packets: [packets[0][:3] + b"\1" + packets[0][4:]],
        "foreign magic": lambda packets: [b"HT" + packets[0][2:], *packets[1:]],
        "a call": lambda packets: header(packets, kind=lambda _: wire.CALL),
        "a signal": lambda packets: header(packets, kind=lambda _: wire.SIGNAL),
        "the other answer": lambda packets: header(packets, kind=lambda kind: wire.WELCOME + wire.REPLY - kind),
        "no known kind": lambda packets: header(packets, kind=lambda _: 99),
        "serial ahead": lambda packets: header(packets, serial=lambda serial: serial + 1),
        "serial behind": lambda packets: header(packets, serial=lambda serial: (serial - 1) & 0xFFFFFFFF),
        "4 GiB announced": lambda packets: header(packets, tree=lambda _: 0xFFFFFFFF),
        "names announced": lambda packets: header(packets, interface=lambda _: 0xFFFF),
        "nodes that lie": lambda packets: [
            packets[0][:28] + packets[0][28:].replace(b"\4\0\0\0", b"\xff\xff\xff\x7f"), *packets[1:]],
        "no tree": lambda packets: [header(packets, tree=lambda _: 0)[0][:28]],
    }
    # Nothing comes that says so.
    SLOW = ("late", "serial behind", "further packets lost")
    # A tree's content is for who has asked for it: the exchange as such has gone well. Sessions are the connection's
    # own affair.
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
        self.spoilt = exchange
        if self.way in self.SLOW:
            # The others fail at once if the TV is slow to answer the hello that comes next.
            self.failures = (0, MANY)
        elif exchange.name not in self.SILENT and (
                self.way not in self.TREES or exchange.name == "INorvexSession.Open"):
            self.failures = (1, 1)
        if self.way == "late":
            self.held = link, packets
        elif self.way == "garbage":
            numbers = random.Random(self.number)
            kept = (28, *[4] * (len(packets) - 1))
            link.send([packet[:size] + numbers.randbytes(len(packet) - size) for size, packet in zip(kept, packets)])
        elif self.way in self.CHANGES:
            link.send(self.CHANGES[self.way](packets))
        else:
            if self.way == "half and closed":
                link.send(packets[:len(packets) // 2] or [packets[0][:len(packets[0]) // 2]])
            link.close()
        # The exchange goes on for as long as the client makes something of that.
        return None

    def end(self):
        if self.held and self.held[0] in self.harness.relay.links:
            link, packets = self.held
            link.send(packets)


KINDS = {"kill": Kill, "stop": Stop, "bad answer": BadAnswer}
