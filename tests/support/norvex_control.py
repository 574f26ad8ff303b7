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
    def written(command, **fields):
        return json.dumps({"command": command, **fields}).encode() + b"\n"

    def request(self, command, *, limit=LIMIT, least=1, **fields):
        """The answer's lines, `least` or more."""
        answer = self.exchange(self.written(command, **fields), limit)
        lines = [json.loads(line) for line in answer.splitlines(keepends=True) if line.endswith(b"\n")]
        if len(lines) < least:
            raise ConnectionError(f"{command} was not answered")
        if lines and "error" in lines[-1]:
            raise Refused(lines[-1]["error"])
        return lines

    def state(self, path="", **options):
        """What stands at a path of the state, as "/debug/qos"; None where nothing does."""
        found = self.request("state", **options)[0]["state"]
        for step in path.split("/")[1:]:
            step = step.replace("~1", "/")
            if isinstance(found, list):
                found = found[int(step)] if int(step) < len(found) else None
            else:
                found = (found or {}).get(step)
        return found

    def calls(self):
        """The journal."""
        return [line["call"] for line in self.request("calls", follow=False, least=0)]

    def set(self, name, *words, **options):
        self.request("set", name=name, words=[str(word) for word in words], **options)

    def reset(self, **options):
        self.request("reset", **options)

    def signal(self, *words):
        """How many were sent."""
        return self.request("signal", words=[str(word) for word in words])[0]["sent"]

    def inject(self, operation, kind, number=0, *, count=1, with_text=""):
        """Orders a failure: "result", "delay" (both with a number), "drop", "close" or "die"."""
        self.request("inject", method=operation, kind=kind, count=count,
                     **({"number": number} if kind in ("result", "delay") else {}),
                     **({"with": with_text} if with_text else {}))

    def wait(self, condition, limit=LIMIT):
        """Returns when a condition holds: "/debug/qos == true"."""
        path, comparison, value = condition.split(maxsplit=2)
        self.request("wait", path=path, comparison=comparison, value=json.loads(value), timeout=limit * 1000,
                     limit=limit + 10)

    def show_lineup(self, **options):
        return "".join(line["text"] for line in self.request("lineup", action="show", **options))

    def load_lineup(self, path, name, **options):
        self.request("lineup", action="load", path=path, name=name, **options)
