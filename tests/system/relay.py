"""A relay between clients and a simulated TV, packet for packet. It numbers what clients ask for, and at each of these
boundaries a test may act: on the TV, on the connection, on the answer."""

import contextlib
import os
import selectors
import socket
import time

import norvex_wire as wire

PACKET = wire.MAX_PAYLOAD + 4
ANSWERS = {wire.HELLO: wire.WELCOME, wire.CALL: wire.REPLY}


class Exchange:
    """A request of a client, from its arrival until the client has the answer or no longer waits."""

    def __init__(self, number, data):
        self.number = number
        self.kind, _, self.serial, _, interface, method, _, _ = wire.HEADER.unpack_from(data)
        names = data[24:24 + interface + method].decode()
        self.name = f"{names[:interface].removeprefix('com.holvi.')}.{names[interface:]}" if names else "hello"
        self.began = time.monotonic()
        self.ended = None
        self.answered = False

    def end(self, answered=False):
        if self.ended is None:
            self.ended = time.monotonic()
            self.answered = answered

    @property
    def seconds(self):
        return (self.ended or time.monotonic()) - self.began


class Fault:
    """What a test does at the boundaries. This one does nothing."""

    def ask(self, exchange, link):
        """Before the TV sees a request, which is still unread. False: it is not passed on."""
        del exchange, link
        return True

    def answer(self, exchange, link, packets):
        """Before the client sees an answer: the packets that it gets. None: the fault has seen to that itself."""
        del exchange, link
        return packets


class Link:
    """A client's connection and the one to the TV that belongs to it."""

    def __init__(self, relay, client):
        self.relay = relay
        self.client = client
        self.exchange = None
        self.request = b""
        self.packets = []
        self.server = socket.socket(socket.AF_UNIX, socket.SOCK_SEQPACKET)
        try:
            self.server.connect(relay.target)
        except OSError:
            client.close()
            self.server.close()
            return
        relay.links.append(self)
        relay.selector.register(client, selectors.EVENT_READ, self.from_client)
        relay.selector.register(self.server, selectors.EVENT_READ, self.from_server)

    def close(self):
        if self in self.relay.links:
            self.relay.links.remove(self)
            for end in (self.client, self.server):
                self.relay.selector.unregister(end)
                end.close()
            if self.exchange:
                self.exchange.end()

    def take(self, end, flags=0):
        """A packet; nothing at the connection's end, of which nothing is left then."""
        with contextlib.suppress(ConnectionResetError):
            if packet := end.recv(PACKET, flags):
                return packet
        return self.close()

    def from_client(self):
        packet = self.take(self.client, socket.MSG_PEEK)
        if not packet:
            return
        self.request += packet[4:]
        if not packet[3]:
            if self.exchange:
                self.exchange.end()
            self.exchange = Exchange(len(self.relay.exchanges) + 1, self.request)
            self.request = b""
            self.relay.exchanges.append(self.exchange)
            if not self.relay.fault.ask(self.exchange, self):
                return
        self.pass_on()

    def pass_on(self):
        """Hands the packet that lies unread to the TV."""
        try:
            self.server.send(self.client.recv(PACKET))
        except OSError:
            self.close()

    def from_server(self):
        packet = self.take(self.server)
        if not packet:
            return
        self.packets.append(packet)
        if packet[3]:
            return
        packets, self.packets = self.packets, []
        if self.exchange and packets[0][4] == ANSWERS[self.exchange.kind]:
            packets = self.relay.fault.answer(self.exchange, self, packets)
            if packets is None:
                return
            self.exchange.end(answered=True)
        self.send(packets)

    def send(self, packets):
        """To the client."""
        try:
            for packet in packets:
                self.client.send(packet)
        except OSError:
            self.close()


class Relay:
    """Listens for clients in the TV's place. Not a thread: the owner's loop calls what the selector holds for a
    descriptor that is ready."""

    def __init__(self, path, target, selector):
        self.path = path
        self.target = target
        self.selector = selector
        self.fault = Fault()
        self.links = []
        self.exchanges = []
        self.listener = None

    def open(self):
        """Replaces an earlier listener."""
        self.stop_listening()
        with contextlib.suppress(FileNotFoundError):
            os.unlink(self.path)
        self.listener = socket.socket(socket.AF_UNIX, socket.SOCK_SEQPACKET)
        self.listener.bind(self.path)
        self.listener.listen(128)
        self.selector.register(self.listener, selectors.EVENT_READ, lambda: Link(self, self.listener.accept()[0]))

    def drop_links(self):
        """As their clients see it: the TV has ended."""
        for link in list(self.links):
            link.close()

    def stop_listening(self):
        if self.listener:
            self.selector.unregister(self.listener)
            self.listener.close()
            self.listener = None

    def close(self):
        """As when the TV ends: nothing listens any more, and all connections are closed."""
        self.stop_listening()
        self.drop_links()
