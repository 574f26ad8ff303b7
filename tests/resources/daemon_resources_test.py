"""The simulated TV while what it needs fails: files, sockets, its database. Each call of each kind in turn, on a
database that is new and on one that was there."""

import contextlib
import os
import pathlib
import shutil
import sqlite3
import tempfile

import pytest

import failing
from norvex_tv import NotStarted, Tv
from tv_visit import OLD_LINE_UP, Visit, kept_by


@pytest.fixture(scope="module")
def left():
    """What a TV has left, by name, and a folder with its database (base) and its line-up. It is in memory, where there
    is such a folder: what is synced is not what is tested."""
    memory = "/dev/shm" if os.access("/dev/shm", os.W_OK) else None
    with tempfile.TemporaryDirectory(prefix="zarn-", dir=memory) as name:
        folder = pathlib.Path(name)
        (folder / "old.lineup").write_text(OLD_LINE_UP)
        (folder / "base").mkdir()
        tv = Tv(folder / "base")
        tv.start("--database", folder / "base/database", "--lineup", folder / "old.lineup")
        tv.set("key", "db/kept", 1)
        tv.set("items", 5)
        kept = kept_by(tv)
        assert tv.end() == 0
        yield kept, folder


def kept_in(folder, *options):
    """What a database holds: it is whole, and a start on it goes well."""
    if (folder / "database").exists():
        with contextlib.closing(sqlite3.connect(folder / "database")) as database:
            assert database.execute("PRAGMA integrity_check").fetchall() == [("ok",)]
    tv = Tv(folder)
    tv.start("--database", folder / "database", *options)
    kept = kept_by(tv)
    assert tv.end() == 0, tv.errors()
    return kept


def run_one(left, order, is_new, visit_by):
    """One run in which a call fails; what came of it, nothing when there was no such call."""
    before, root = left
    folder = root / "run"
    shutil.rmtree(folder, ignore_errors=True)
    options = []
    if is_new:
        folder.mkdir()
        before = {**before, "key": None}
        options = ["--lineup", root / "old.lineup"]
    else:
        shutil.copytree(root / "base", folder)
    tv = Tv(folder)
    visit = Visit(tv, before)
    note = folder / "note"
    try:
        tv.start("--database", folder / "database", *options, **failing.environment(order, note))
        is_ready = True
        visit_by(visit)
    except NotStarted:
        is_ready = False
    ended_by_itself = tv.process.poll() is not None
    if ended_by_itself:
        assert tv.process.returncode == 1 and tv.errors().startswith("norvex-sim: "), tv.errors()
        assert tv.errors().count("\n") == 1
    else:
        assert tv.end() == 0, tv.errors()
    if is_new and not is_ready:
        # Nothing was promised yet. Without a line-up of its own it has the built-in one.
        kept_in(folder, *options)
        return "clean end"
    kept = kept_in(folder)
    if not note.exists():
        assert not ended_by_itself and (visit.unanswered, visit.refused) == (0, 0)
        assert {name: {value} for name, value in kept.items()} == visit.may_be
        return None
    for name, value in kept.items():
        assert value in visit.may_be[name], name
    return "clean end" if ended_by_itself else "refusal" if visit.refused or visit.unanswered else "made good"


def fail_in_turn(left, kind, is_new=False, visit_by=Visit.run):
    failing.fail_in_turn(kind, lambda order: run_one(left, order, is_new, visit_by))


def test_a_line_up_that_does_not_reach_the_disk_is_not_saved(tv_off, folder):
    (folder / "saved").write_text("before")
    tv_off.start(**failing.environment(failing.Order("sync", "EIO+", 1), folder / "note"))
    assert "Input/output error" in tv_off.simctl_refusal("lineup", "save", folder / "saved")
    assert (folder / "saved").read_text() == "before"


@pytest.mark.slow
@pytest.mark.parametrize("kind", [
    "open", "read", "write", "sync", "truncate", "stat", "unlink", "rename", "lock", "socket", "bind", "listen",
    "accept", "send", "receive", "option", "epoll", "signalfd", "sqlite-open", "sqlite-prepare", "sqlite-exec", "sqlite-text",
    "sqlite-step", "sqlite-bind"])
def test_a_tv_with_a_database_keeps_what_it_has_answered(left, kind):
    fail_in_turn(left, kind)


@pytest.mark.slow
@pytest.mark.parametrize("kind", [
    "open", "write", "sync", "lock", "sqlite-prepare", "sqlite-step", "sqlite-exec", "sqlite-bind"])
def test_a_new_tv_keeps_what_it_has_answered(left, kind):
    fail_in_turn(left, kind, is_new=True)


@pytest.mark.slow
@pytest.mark.parametrize("kind", ["write", "sqlite-step", "sqlite-exec", "sqlite-prepare"])
def test_a_reset_is_whole_or_refused(left, kind):
    fail_in_turn(left, kind, visit_by=Visit.reset)
