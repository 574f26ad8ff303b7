"""Programs whose calls fail in turn: the first of a kind, then the second, until a run has no such call any more.
FailingCalls.cpp, which is preloaded, tells what a kind is.

With ZARN_EVERY_CALL=1 each call of each kind fails with each of its errors; without it some of each kind do, with one
or two."""

import collections
import errno
import os

from programs import BUILD, SANITIZE

EVERY_CALL = os.environ.get("ZARN_EVERY_CALL") == "1"

# What each kind fails with: the usual causes. A name ends with "+" where all calls from that one on fail, as they do on
# a full disk.
ERRORS = {kind: errors.split() for kind, errors in {
    "open": "EMFILE EACCES", "read": "EIO", "write": "ENOSPC ENOSPC+ EIO", "sync": "EIO", "truncate": "EIO",
    "stat": "EACCES", "unlink": "EACCES", "rename": "EACCES", "lock": "ENOLCK",
    "socket": "EMFILE", "bind": "EACCES", "listen": "EADDRINUSE", "connect": "ECONNREFUSED ENOMEM",
    "accept": "EMFILE ECONNABORTED", "send": "ENOBUFS EPIPE", "receive": "ECONNRESET ENOMEM", "option": "ENOBUFS",
    "epoll": "ENOMEM", "poll": "ENOMEM", "eventfd": "EMFILE", "signalfd": "EMFILE", "random": "ENOSYS",
    "thread": "EAGAIN", "fork": "EAGAIN",
    "sqlite-open": "SQLITE_CANTOPEN SQLITE_NOMEM", "sqlite-prepare": "SQLITE_NOMEM SQLITE_IOERR",
    "sqlite-step": "SQLITE_FULL+ SQLITE_IOERR SQLITE_FULL SQLITE_BUSY SQLITE_NOMEM",
    "sqlite-exec": "SQLITE_IOERR SQLITE_FULL SQLITE_BUSY", "sqlite-bind": "SQLITE_NOMEM", "sqlite-text": "SQLITE_NOMEM",
}.items()}
SQLITE = {"SQLITE_BUSY": 5, "SQLITE_NOMEM": 7, "SQLITE_IOERR": 10, "SQLITE_FULL": 13, "SQLITE_CANTOPEN": 14}

# One call that is to fail: its kind, its error, its number.
Order = collections.namedtuple("Order", "kind error number")


def environment(order, note):
    """Of the program whose call is to fail. The file `note` is there afterwards if there was such a call."""
    name = order.error.removesuffix("+")
    options = os.environ.get("ASAN_OPTIONS", "")
    return {
        "LD_PRELOAD": str(BUILD / "lib/libfailing-calls.so"),
        "FAILING_CALL": order.kind,
        "FAILING_NUMBER": str(order.number),
        "FAILING_ERROR": str(SQLITE.get(name) or getattr(errno, name)),
        "FAILING_LASTS": "1" if order.error.endswith("+") else "0",
        "FAILING_NOTE": str(note),
        # The sanitizer wants to be the first library, and the preloaded one is before it.
        **({"ASAN_OPTIONS": f"{options}:verify_asan_link_order=0".lstrip(":")} if SANITIZE else {}),
    }


def fail_in_turn(kind, run):
    """`run` takes an order and tells what came of it, None where there was no such call."""
    outcomes = collections.Counter()
    for error in ERRORS[kind] if EVERY_CALL else ERRORS[kind][:2]:
        number = 1
        while True:
            order = Order(kind, error, number)
            # Shown where the test fails.
            print(order)
            outcome = run(order)
            if outcome is None:
                break
            outcomes[outcome] += 1
            # Fewer and fewer as they grow, so that early and late calls are among them.
            number += 1 if EVERY_CALL else 1 + number * (3 if SANITIZE else 1)
        assert number > 1, "there was no call to fail"
    print(f"{kind}: {dict(outcomes)}")
