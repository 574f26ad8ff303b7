"""Uses a simulated TV whose calls fail: changes everything that its database keeps, and records what may be
found there afterwards."""

import os
import struct

import norvex_wire as wire
from norvex_control import Refused
from norvex_wire import IN

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
# In seconds; who waits longer has been left hanging, which fails the test.
LIMIT = 10
# The TV has ended, or has closed the connection.
GONE = (wire.Closed, ConnectionError, FileNotFoundError)


def kept_by(tv):
    """What is kept, by name."""
    debug, device, line_up = (tv.state(path, limit=LIMIT) for path in ("/debug", "/device", "/lineUp"))
    return {
        "qos": debug["qos"],
        "items": tuple(item["id"] for item in debug["items"] if item["state"]),
        "mode": debug["modes"]["timing"],
        "key": device["keys"].get("db/kept"),
        "tag": device["logTags"].get("other", False),
        "bootup": (line_up["bootup"] or {}).get("service"),
        # What a scan has found comes and goes in one piece with the rest of the line-up.
        "lineUp": (line_up["services"], line_up["programmes"]),
    }


def criteria(conditions, fetched):
    packed = b"".join(struct.pack("<iii", *each) for each in conditions)
    return wire.branch(1, [wire.node(0, wire.ARRAY, packed),
                           wire.node(1, wire.ARRAY, struct.pack(f"<{len(fetched)}i", *fetched))], IN)


def tv_mode(tag, antenna):
    return wire.branch(tag, [wire.value(0, "i", antenna), wire.value(1, "i", 0)], IN)


class Visit:
    """`before` is what is kept at first."""

    def __init__(self, tv, before):
        self.tv = tv
        # By name: what may be found afterwards.
        self.may_be = {name: {value} for name, value in before.items()}
        self.client = None
        self.token = os.urandom(16)
        self.sessions = {}
        self.refused = 0
        self.unanswered = 0

    def forget(self):
        if self.client is not None:
            self.client.close()
        self.client = None

    def ask(self, operation, *arguments, session=0):
        """The out arguments; nothing where there was no answer."""
        try:
            if self.client is None:
                self.client = self.tv.connect(token=self.token, limit=LIMIT, hello=False)
                self.client.hello()
            return self.client.call(operation, *arguments, session=session)
        except GONE:
            self.forget()
            self.unanswered += 1
            return None

    def status(self, operation, *arguments, session=0):
        answer = self.ask(operation, *arguments, session=session)
        if answer is None:
            return None
        # Without a session there is nobody who could say why not.
        return wire.read(answer[0], "i") if 0 in answer else -1

    def on(self, profile, operation, *arguments):
        """A call on a session. 0 where the session was refused: calls on it are."""
        interface = operation.split(".")[0]
        if interface not in self.sessions:
            answer = self.ask("INorvexSession.Open", wire.value(1, "I", 0), wire.text(2, "com.holvi." + interface, IN),
                              wire.value(3, "i", profile, IN), wire.value(4, "i", 0, IN))
            if answer is not None and 1 in answer:
                self.sessions[interface] = wire.read(answer[1], "I")
        return self.status(operation, *arguments, session=self.sessions.get(interface, 0))

    def order(self, request, *arguments, **options):
        """A request to the control socket: 1 done, -1 refused, nothing without an answer."""
        try:
            request(*arguments, limit=LIMIT, **options)
        except Refused:
            return -1
        except GONE:
            self.unanswered += 1
            return None
        return 1

    def note(self, status, **wanted):
        """Of a requested change: above 0 it is done, below 0 it is not, without an answer it may be either."""
        for name, value in wanted.items():
            if status is None:
                self.may_be[name].add(value)
            elif status > 0:
                self.may_be[name] = {value}
        self.refused += status is not None and status < 0

    def switch(self):
        # The number of items is the daemon's own affair; setting it forgets the switches.
        self.note(self.order(self.tv.set, "items", 2), items=(), qos=False, mode=False)
        self.note(self.status("IDebugPrintControl.SetQoSEnabled", wire.value(1, "B", 1, IN)), qos=True)
        self.note(self.status("IDebugPrintControl.SetDebugMode", wire.value(1, "i", 1, IN), wire.value(2, "B", 1, IN)),
                  mode=True)
        if self.may_be["items"] == {()}:
            items = [wire.menu_item(place, "", 1, 101 + place) for place in range(3)]
            self.note(self.status("IDebugPrintControl.SetMenuItems", wire.branch(1, items, IN)), items=(101, 102, 103))
        if self.may_be["items"] == {(101, 102, 103)}:
            self.note(self.status("IDebugPrintControl.SetMenuItem", wire.menu_item(1, "", 0, 102, IN)),
                      items=(101, 103))
        self.note(self.status("IDevice.StartLogTag", wire.text(1, "other", IN)), tag=True)
        self.note(self.order(self.tv.set, "key", "db/kept", 7), key=7)

    def look_up(self):
        # Of one that was there all the time, no answer but a find or a refusal is true.
        assert self.on(0, "IService.FindService", criteria([(0, 13, 7)], [12]), wire.branch(2, []),
                       wire.value(3, "i", 1, IN)) != 0, "a service that is there was not found"
        self.on(1, "IServiceNavigation.GetServiceList", criteria([], [12, 13]), wire.branch(2, []), tv_mode(3, 0),
                wire.value(4, "i", 0, IN), wire.value(5, "i", 0, IN))
        self.on(0, "IServiceGuide.GetCurrentProgram", wire.value(1, "Q", 0x11, IN), wire.branch(2, []))
        self.note(self.on(1, "IServiceNavigation.SetBootupService", wire.value(1, "Q", 0x11, IN), tv_mode(2, 0),
                          wire.value(3, "i", 0, IN)), bootup="0x11")

    def scan(self):
        """Of the four services one has a present programme; a scan of cable gives it to two more."""
        self.order(self.tv.set, "scan-pace", 0)
        started = self.on(0, "IScanControl.StartBarkerChannelScan", wire.text(1, "", IN), tv_mode(2, 1))
        self.may_be["lineUp"].add((4, 3))
        if started is not None and started >= 0:
            self.order(self.tv.wait, "/scan/running == null")
            try:
                if self.tv.state("/scan/last", limit=LIMIT) == "completed":
                    self.may_be["lineUp"] = {(4, 3)}
            except GONE:
                pass

    def change_line_up(self):
        def show(limit):
            assert self.tv.show_lineup(limit=limit).count("service") == 4, "a part was shown for the whole"

        path = self.tv.folder / "new.lineup"
        path.write_text(NEW_LINE_UP)
        self.order(show)
        self.save_line_up()
        self.note(self.order(self.tv.load_lineup, path), lineUp=(5, 2))

    def save_line_up(self):
        """Replaces a file as a whole, or not at all."""
        path = self.tv.folder / "saved.lineup"
        path.write_text("before")
        answer = self.order(self.tv.save_lineup, path)
        self.note(answer)
        is_new = path.read_text() != "before"
        assert not is_new or path.read_text().count("service") == 4, "a part was saved"
        assert answer is None or is_new == (answer == 1)
        assert answer is None or not list(self.tv.folder.glob(".new-*"))

    def run(self):
        """All of it, as far as the TV lives."""
        for part in (self.switch, self.look_up, self.scan, self.change_line_up):
            part()
        self.forget()

    def reset(self):
        """Restores the initial state."""
        status = self.order(self.tv.reset)
        # Each part by itself.
        self.note(status if status != -1 else None, qos=False, items=(), mode=False, tag=False, key=None, bootup=None,
                  lineUp=(68, 224))
        self.refused += status == -1
