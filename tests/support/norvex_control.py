"""The control socket of a simulated TV. How a request is written is known here and nowhere else among the tests."""

import json
import socket

from programs import LIMIT


class Refused(Exception):
    """The TV's reason."""


class Control:
    def __init__(self, path):
        """`path` is that of the socket which the TV's clients use."""
        self.control_path = path + ".ctl"

    def exchange(self, data, limit=LIMIT):
        """All that is answered to the bytes."""
        with socket.socket(socket.AF_UNIX) as control:
            control.settimeout(limit)
            control.connect(self.control_path)
            control.sendall(data)
            answer = b""
            while received := control.recv(1 << 20):
                answer += received
        return answer

    @staticmethod
    def written(*arguments):
        return json.dumps({"arguments": [str(argument) for argument in arguments]}).encode() + b"\n"

    def ask(self, *arguments, limit=LIMIT):
        """What norvex-simctl prints with these arguments."""
        printed = reason = ""
        for line in self.exchange(self.written(*arguments), limit).splitlines(keepends=True):
            answer = json.loads(line) if line.endswith(b"\n") else {}
            printed += answer.get("print", "")
            reason += answer.get("error", "")
            if answer.get("status"):
                raise Refused(reason)
            if "status" in answer:
                return printed
        raise ConnectionError(f"{arguments} was not answered")

    def state(self, path="", **options):
        """What stands at a path of the state, as "/debug/qos"; None where nothing does."""
        found = json.loads(self.ask("state", "--json", **options))
        for step in path.split("/")[1:]:
            step = step.replace("~1", "/")
            if isinstance(found, list):
                found = found[int(step)] if int(step) < len(found) else None
            else:
                found = (found or {}).get(step)
        return found

    def calls(self):
        """The journal."""
        return [json.loads(line) for line in self.ask("calls", "--json").splitlines()]

    def set(self, name, *values, **options):
        self.ask("set", name, *values, **options)

    def reset(self, **options):
        self.ask("reset", **options)

    def signal(self, *arguments):
        """How many were sent."""
        return int(self.ask("signal", *arguments))

    def inject(self, operation, kind, number=0, *, count=1, with_text=""):
        """A failure: "result", "delay" (both with a number), "drop", "close" or "die"."""
        self.ask("inject", operation, "--" + kind, *([number] if kind in ("result", "delay") else []),
                 "--count", count, *(["--with", with_text] if with_text else []))

    def wait(self, condition, limit=LIMIT):
        """Returns when a condition holds: "/debug/qos == true"."""
        self.ask("wait", condition, "--timeout", limit, limit=limit + 10)

    def show_lineup(self, **options):
        return self.ask("lineup", "show", **options)

    def load_lineup(self, path, **options):
        self.ask("lineup", "load", path, **options)

    def save_lineup(self, path, **options):
        self.ask("lineup", "save", path, **options)
