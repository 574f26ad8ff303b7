"""A relay between clients and a simulated TV, packet for packet. It numbers what clients ask for,
and at each of these boundaries a test may act: on the TV, on the connection, on the answer."""

import contextlib
import os
import selectors
import socket
import struct
import time

import norvex_wire as wire

PACKET = wire.MAX_PAYLOAD + 4
ANSWERS = {wire.HELLO: wire.WELCOME, wire.CALL: wire.REPLY}


class Exchange:
    """What a client has asked for, from the moment that it was seen until the client has its
    answer, or waits no longer."""

    def __init__(self, number, data):
        self.number = number
        self.kind, _, self.serial, _, interface, method, _, _ = struct.unpack_from("<BxhIIHHII", data)
        names = data[24:24 + interface + method].decode()
        self.name = "hello"
        if self.kind == wire.CALL:
            self.name = f"{names[:interface].removeprefix('com.holvi.')}.{names[interface:]}"
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
        """Before the client sees an answer: the packets that it gets. None: the fault has seen to
        that itself."""
        del exchange, link
        return packets


class Link:
    """A client's connection and the one to the TV that belongs to it."""

    def __init__(self, proxy, client):
        self.proxy = proxy
        self.client = client
        self.exchange = None
        self.request = b""
        self.packets = []
        self.server = socket.socket(socket.AF_UNIX, socket.SOCK_SEQPACKET)
        try:
            self.server.connect(proxy.target)
        except OSError:
            client.close()
            self.server.close()
            return
        proxy.links.append(self)
        proxy.selector.register(client, selectors.EVENT_READ, self.from_client)
        proxy.selector.register(self.server, selectors.EVENT_READ, self.from_server)

    def close(self):
        if self not in self.proxy.links:
            return
        self.proxy.links.remove(self)
        for end in (self.client, self.server):
            self.proxy.selector.unregister(end)
            end.close()
        if self.exchange:
            self.exchange.end()

    @staticmethod
    def take(end, flags=0):
        try:
            return end.recv(PACKET, flags)
        except ConnectionResetError:
            return b""

    def from_client(self):
        packet = self.take(self.client, socket.MSG_PEEK)
        if not packet:
            return self.close()
        self.request += packet[4:]
        if not packet[3]:
            if self.exchange:
                self.exchange.end()
            self.exchange = Exchange(len(self.proxy.exchanges) + 1, self.request)
            self.request = b""
            self.proxy.exchanges.append(self.exchange)
            if not self.proxy.fault.ask(self.exchange, self):
                return None
        return self.pass_on()

    def pass_on(self):
        """Hands the packet that lies unread to the TV."""
        try:
            self.server.send(self.client.recv(PACKET))
        except OSError:
            self.close()

    def from_server(self):
        packet = self.take(self.server)
        if not packet:
            return self.close()
        self.packets.append(packet)
        if packet[3]:
            return None
        packets, self.packets = self.packets, []
        if self.exchange and packets[0][4] == ANSWERS[self.exchange.kind]:
            packets = self.proxy.fault.answer(self.exchange, self, packets)
            if packets is None:
                return None
            self.exchange.end(answered=True)
        return self.send(packets)

    def send(self, packets):
        """To the client."""
        try:
            for packet in packets:
                self.client.send(packet)
        except OSError:
            self.close()


class Proxy:
    """Listens for clients in the TV's place. Not a thread: the owner's loop calls what the selector
    holds for a descriptor that is ready."""

    def __init__(self, path, target, selector):
        self.path = path
        self.target = target
        self.selector = selector
        self.fault = Fault()
        self.links = []
        self.exchanges = []
        self.listener = None

    def open(self):
        """In place of whoever has listened there before."""
        self.stop_listening()
        with contextlib.suppress(FileNotFoundError):
            os.unlink(self.path)
        self.listener = socket.socket(socket.AF_UNIX, socket.SOCK_SEQPACKET)
        self.listener.bind(self.path)
        self.listener.listen(128)
        self.selector.register(self.listener, selectors.EVENT_READ, self.accept)

    def accept(self):
        Link(self, self.listener.accept()[0])

    def drop_links(self):
        """As their clients see it: the TV has ended."""
        for link in list(self.links):
            link.close()

    def close(self):
        """As when the TV ends: nobody listens any more, and every connection is at its end."""
        self.stop_listening()
        self.drop_links()

    def stop_listening(self):
        if self.listener:
            self.selector.unregister(self.listener)
            self.listener.close()
            self.listener = None
