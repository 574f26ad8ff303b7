"""A visit to a simulated TV whose calls fail: everything that it keeps in its database is asked for,
and what may be found there afterwards is noted."""

import json
import os
import socket
import struct

import norvex_wire as wire

OLD_LINE_UP = """\
transponder air 474000
  service 0x11 7-1 "One" captions
    programme 00:00 1440 "All day"
  service 0x12 8-1 "Two"
transponder cable 114000
  service 0x21 5-1 "Barker" barker
  service 0x22 6-1 "Four"
"""
NEW_LINE_UP = """\
transponder air 482000
  service 0x11 9-1 "One, elsewhere"
transponder satellite 11778000
  service 0x31 70-1 "Sat"
    programme 12:00 60 "Noon"
    programme 13:00 60
  service 0x32 71-1 "Sat Two"
  service 0x33 72-1 "Sat Three"
  service 0x34 73-1 "Sat Four"
"""
# Where the state has what is kept.
PLACES = {
    "qos": "/debug/qos",
    "items": "/debug/items",
    "mode": "/debug/modes/timing",
    "key": "/device/keys/db~1kept",
    "tag": "/device/logTags/quarle-daemon",
    "bootup": "/lineUp/bootup",
    "services": "/lineUp/services",
    "programmes": "/lineUp/programmes",
}
LIMIT = 10
# The TV has ended, or has closed the connection.
GONE = (wire.Closed, ConnectionError, FileNotFoundError)


class Hang(Exception):
    """Nothing came within the limit."""


def ask_control(path, request):
    """The answer of the control socket, line by line; none where the connection ended."""
    with socket.socket(socket.AF_UNIX) as control:
        control.settimeout(LIMIT)
        try:
            control.connect(path + ".ctl")
            control.sendall(json.dumps(request).encode() + b"\n")
            received = b""
            while True:
                more = control.recv(1 << 16)
                if not more:
                    break
                received += more
        except socket.timeout as error:
            raise Hang(request) from error
        except (ConnectionError, FileNotFoundError) as error:
            raise wire.Closed from error
    if not received.endswith(b"\n"):
        raise wire.Closed
    return [json.loads(line) for line in received.splitlines()]


def look_up(state, place):
    for step in place.split("/")[1:]:
        step = step.replace("~1", "/")
        if isinstance(state, list):
            state = state[int(step)] if int(step) < len(state) else None
        else:
            state = (state or {}).get(step)
    return state


def kept_of(state):
    """What is kept, by name."""
    found = {name: look_up(state, place) for name, place in PLACES.items()}
    found["items"] = tuple(item["id"] for item in found["items"] if item["state"])
    found["bootup"] = (found["bootup"] or {}).get("service")
    # What a scan has found comes and goes in one piece with the rest of the line-up.
    found["lineUp"] = (found.pop("services"), found.pop("programmes"))
    return found


def criteria(conditions, fetched):
    packed = b"".join(struct.pack("<iii", *each) for each in conditions)
    return wire.branch(1, [wire.node(0, wire.ARRAY, packed),
                           wire.node(1, wire.ARRAY, struct.pack(f"<{len(fetched)}i", *fetched))],
                       wire.IN)


def tv_mode(tag, antenna):
    return wire.branch(tag, [wire.value(0, "i", antenna), wire.value(1, "i", 0)], wire.IN)


class Visit:
    """`before` is what is kept at first."""

    def __init__(self, path, folder, before):
        self.path = path
        self.new_line_up = os.path.join(folder, "new.lineup")
        # By name: what may be found afterwards.
        self.may_be = {name: {value} for name, value in before.items()}
        self.client = None
        self.token = os.urandom(16)
        self.sessions = {}
        self.refused = 0
        self.unanswered = 0
        self.done = 0

    def connect(self):
        if self.client is None:
            try:
                self.client = wire.Connection(self.path, token=self.token, limit=LIMIT, hello=False)
                self.client.hello()
            except (socket.timeout, BlockingIOError) as error:
                raise Hang("connect") from error

    def forget(self):
        if self.client is not None:
            self.client.close()
        self.client = None

    def ask(self, interface, method, method_id, *arguments, session=0):
        """The out arguments; nothing where there was no answer."""
        try:
            self.connect()
            answer = self.client.call(interface, method, method_id,
                                      [wire.value(0, "i", -1), *arguments], session)
        except socket.timeout as error:
            raise Hang(f"{interface}.{method}") from error
        except GONE:
            self.forget()
            self.unanswered += 1
            return None
        return answer

    def status(self, *call, session=0):
        answer = self.ask(*call, session=session)
        if answer is None:
            return None
        # Without a session there is nobody who could say why not.
        return wire.read(answer[0], "i") if 0 in answer else -1

    def note(self, status, **wanted):
        """Of a change that was asked for: above 0 it is done, below 0 it is not, without an answer
        it may be either."""
        for name, value in wanted.items():
            if status is None:
                self.may_be[name].add(value)
            elif status > 0:
                self.may_be[name] = {value}
        if status is not None:
            self.done += status > 0
            self.refused += status < 0
        return status is not None and status > 0

    def control(self, command, **more):
        """1 done, -1 refused, nothing without an answer."""
        try:
            [answer] = ask_control(self.path, {"command": command, **more})
        except GONE:
            self.unanswered += 1
            return None
        return -1 if "error" in answer else 1

    def session(self, interface, profile):
        """0 where it was refused: calls on it are."""
        if interface not in self.sessions:
            answer = self.ask("INorvexSession", "Open", 0, wire.value(1, "I", 0),
                              wire.text(2, "com.holvi." + interface, wire.IN),
                              wire.value(3, "i", profile, wire.IN),
                              wire.value(4, "i", 0, wire.IN))
            if answer is None or 1 not in answer:
                return 0
            self.sessions[interface] = wire.read(answer[1], "I")
        return self.sessions[interface]

    def on(self, interface, profile, method, method_id, *arguments):
        return self.status(interface, method, method_id, *arguments,
                           session=self.session(interface, profile))

    def switches(self):
        # The number of items is the daemon's own affair; setting it forgets the switches.
        self.note(self.control("set", name="items", words=["2"]), items=(), qos=False, mode=False)
        self.note(self.status("IDebugPrintControl", "SetQoSEnabled", 7,
                              wire.value(1, "B", 1, wire.IN)), qos=True)
        self.note(self.status("IDebugPrintControl", "SetDebugMode", 9,
                              wire.value(1, "i", 1, wire.IN), wire.value(2, "B", 1, wire.IN)),
                  mode=True)
        all_three = [wire.menu_item(place, "", 1, 101 + place) for place in range(3)]
        if self.may_be["items"] == {()}:
            self.note(self.status("IDebugPrintControl", "SetMenuItems", 5,
                                  wire.branch(1, all_three, wire.IN)), items=(101, 102, 103))
        if self.may_be["items"] == {(101, 102, 103)}:
            self.note(self.status("IDebugPrintControl", "SetMenuItem", 6,
                                  wire.menu_item(1, "", 0, 102, wire.IN)), items=(101, 103))

    def device(self):
        self.note(self.status("IDevice", "StartLogTag", 1,
                              wire.text(1, "quarle-daemon", wire.IN)), tag=True)
        self.note(self.control("set", name="key", words=["db/kept", "7"]), key=7)

    def channels(self):
        found = self.on("IService", 0, "FindService", 0,
                        criteria([(0, 13, 7)], [12]), wire.branch(2, []),
                        wire.value(3, "i", 1, wire.IN))
        self.on("IServiceNavigation", 1, "GetServiceList", 1, criteria([], [12, 13]),
                wire.branch(2, []), tv_mode(3, 0), wire.value(4, "i", 0, wire.IN),
                wire.value(5, "i", 0, wire.IN))
        self.on("IServiceGuide", 0, "GetCurrentProgram", 0, wire.value(1, "Q", 0x11, wire.IN),
                wire.branch(2, []))
        # Of one that was there all the time, no answer but a find or a refusal is true.
        if found == 0:
            raise AssertionError("a service that is there was not found")
        self.note(self.on("IServiceNavigation", 1, "SetBootupService", 6,
                          wire.value(1, "Q", 0x11, wire.IN), tv_mode(2, 0),
                          wire.value(3, "i", 0, wire.IN)), bootup="0x11")

    def scan(self):
        """Of the four services one has a present programme; a scan of cable gives it to two more."""
        self.control("set", name="scan-pace", words=["0"])
        started = self.on("IScanControl", 0, "StartBarkerChannelScan", 4,
                          wire.text(1, "", wire.IN), tv_mode(2, 1))
        self.may_be["lineUp"].add((4, 3))
        if started is None or started < 0:
            return
        self.control("wait", path="/scan/running", comparison="==", value=None,
                     timeout=LIMIT * 1000)
        try:
            [answer] = ask_control(self.path, {"command": "state"})
        except GONE:
            return
        if answer["state"]["scan"]["last"] == "completed":
            self.may_be["lineUp"] = {(4, 3)}

    def line_up(self):
        with open(self.new_line_up, "w", encoding="utf-8") as file:
            file.write(NEW_LINE_UP)
        try:
            shown = ask_control(self.path, {"command": "lineup", "action": "show"})
            if "error" not in shown[-1] and shown[0]["text"].count("service") != 4:
                raise AssertionError("a part of the line-up was shown for the whole")
        except GONE:
            self.unanswered += 1
        self.note(self.control("lineup", action="load", path=self.new_line_up, name="new"),
                  lineUp=(5, 2))

    def run(self):
        """All of it, as far as the TV lives."""
        for part in (self.switches, self.device, self.channels, self.scan, self.line_up):
            part()
        self.forget()

    def reset(self):
        """Everything as it was when new."""
        status = self.control("reset")
        # Each part by itself.
        self.note(status if status != -1 else None, qos=False, items=(), mode=False, tag=False,
                  key=None, bootup=None, lineUp=(68, 224))
        self.refused += status == -1
        self.forget()
