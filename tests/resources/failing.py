"""Programs whose calls fail in turn: the first of a kind, then the second, until a run has no such
call any more. FailingCalls.cpp, which is preloaded, tells what a kind is.

ZARN_BIN and ZARN_LIB name the folders of the build, ZARN_SANITIZE how it was built. With
ZARN_EVERY_CALL=1 each call of each kind fails with each of its errors; without it some of each kind
do, with one or two."""

import errno
import os
import sqlite3

BIN = os.environ["ZARN_BIN"]
LIB = os.environ["ZARN_LIB"]
SANITIZED = bool(os.environ.get("ZARN_SANITIZE"))
EVERY_CALL = os.environ.get("ZARN_EVERY_CALL") == "1"
SUPPORT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "support")

# Never reached in a run that goes well.
LIMIT = 20

# What each kind fails with: the usual causes. A name ends with "+" where all calls from that one on
# fail, as they do on a full disk.
ERRORS = {
    "open": ("EMFILE", "EACCES"),
    "read": ("EIO",),
    "write": ("ENOSPC", "ENOSPC+", "EIO"),
    "sync": ("EIO",),
    "truncate": ("EIO",),
    "stat": ("EACCES",),
    "unlink": ("EACCES",),
    "lock": ("ENOLCK",),
    "socket": ("EMFILE",),
    "bind": ("EACCES",),
    "listen": ("EADDRINUSE",),
    "connect": ("ECONNREFUSED", "ENOMEM"),
    "accept": ("EMFILE", "ECONNABORTED"),
    "send": ("ENOBUFS", "EPIPE"),
    "receive": ("ECONNRESET", "ENOMEM"),
    "option": ("ENOBUFS",),
    "poll": ("ENOMEM",),
    "eventfd": ("EMFILE",),
    "signalfd": ("EMFILE",),
    "random": ("ENOSYS",),
    "thread": ("EAGAIN",),
    "fork": ("EAGAIN",),
    "sqlite-open": ("SQLITE_CANTOPEN", "SQLITE_NOMEM"),
    "sqlite-prepare": ("SQLITE_NOMEM", "SQLITE_IOERR"),
    "sqlite-step": ("SQLITE_FULL+", "SQLITE_IOERR", "SQLITE_FULL", "SQLITE_BUSY", "SQLITE_NOMEM"),
    "sqlite-exec": ("SQLITE_IOERR", "SQLITE_FULL", "SQLITE_BUSY"),
    "sqlite-bind": ("SQLITE_NOMEM",),
    "sqlite-text": ("SQLITE_NOMEM",),
}
SQLITE = {"SQLITE_BUSY": 5, "SQLITE_NOMEM": 7, "SQLITE_IOERR": 10, "SQLITE_FULL": 13,
          "SQLITE_CANTOPEN": 14}


def errors_of(kind):
    return ERRORS[kind] if EVERY_CALL else ERRORS[kind][:2]


class Order:
    """One call that is to fail: its kind, its number, its error."""

    def __init__(self, kind, error, number):
        self.kind = kind
        self.error = error
        self.number = number

    def __str__(self):
        return f"{self.kind} {self.number}: {self.error}"

    def environment(self, note):
        name = self.error.removesuffix("+")
        found = {
            "LD_PRELOAD": os.path.join(LIB, "libfailing-calls.so"),
            "FAILING_CALL": self.kind,
            "FAILING_NUMBER": str(self.number),
            "FAILING_ERROR": str(SQLITE.get(name) or getattr(errno, name)),
            "FAILING_LASTS": "1" if self.error.endswith("+") else "0",
            "FAILING_NOTE": note,
        }
        if SANITIZED:
            # The sanitizer wants to be the first library, and the preloaded one is before it.
            options = os.environ.get("ASAN_OPTIONS", "")
            found["ASAN_OPTIONS"] = f"{options}:verify_asan_link_order=0".lstrip(":")
        return found


def numbers():
    """1, 2, 3... where every call is to fail; else fewer and fewer as they grow, so that early and
    late calls are among them."""
    number = 1
    while True:
        yield number
        number += 1 if EVERY_CALL else 1 + number * (3 if SANITIZED else 1)


def integrity(path):
    """What SQLite finds wrong with a database; "ok" for nothing, and for one that is not there."""
    if not os.path.exists(path):
        return "ok"
    database = sqlite3.connect(path)
    try:
        return "; ".join(row[0] for row in database.execute("PRAGMA integrity_check"))
    finally:
        database.close()
