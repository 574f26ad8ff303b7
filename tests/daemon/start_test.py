"""norvex-sim's start and end, and what outlives it."""

import os
import signal
import socket
import sqlite3
import stat
import subprocess

import pytest

import norvex_wire as wire
from norvex_control import Control, Refused
from norvex_tv import start_sims
from programs import LIMIT, SIM, SIMCTL, refusal, run


def test_help_is_shown():
    result = run(SIM, "--help")
    assert result.stderr == "" and "Usage: " in result.stdout and "--client-grace" in result.stdout


def test_without_a_tv_the_help_of_simctl_is_its_own_options(folder):
    result = run(SIMCTL, "--socket", folder / "s", "--help")
    assert "--socket PATH" in result.stdout and "Commands:" not in result.stdout
    assert result.stderr == f"norvex-simctl: no TV is running at {folder}/s.ctl\n"


@pytest.mark.parametrize("program, arguments", [
    (SIM, "--nonsense"), (SIM, "word"), (SIM, "--ready-fd x"), (SIM, "--items -1"), (SIM, "--client-grace -1"),
    (SIM, "--socket"), (SIM, "--ready-fd 987"), (SIM, "--socket /tmp/" + "x" * 200),
    (SIMCTL, ""), (SIMCTL, "state --socket")])
def test_bad_arguments_are_one_line_and_status_2(program, arguments):
    refusal(program, *arguments.split(), status=2)


def test_a_file_that_is_not_a_database_is_refused(folder):
    (folder / "text").write_text("no database\n" * 100)
    words = [SIM, "--socket", folder / "s", "--database"]
    assert "file is not a database" in refusal(*words, folder / "text")
    assert "No such file or directory" in refusal(*words, folder / "none/db")
    assert "expected a regular file" in refusal(*words, "/dev/null")
    assert os.listdir(folder) == ["text"]


@pytest.mark.parametrize("application, version, reason", [
    (0, 0, "database of another program"), (0x12345678, 1, "database of another program"),
    (0x4E56544D, 2, "database of version 2, expected 1")])
def test_a_database_of_another_program_or_version_is_refused_and_left_alone(folder, application, version, reason):
    with sqlite3.connect(folder / "db") as database:
        database.executescript(f"PRAGMA application_id = {application}; PRAGMA user_version = {version};"
                               "CREATE TABLE setting (mine)")
    database.close()
    before = (folder / "db").read_bytes()
    assert refusal(SIM, "--socket", folder / "s", "--database", folder / "db") == f"norvex-sim: {folder}/db: {reason}\n"
    assert (folder / "db").read_bytes() == before
    assert os.listdir(folder) == ["db"]


def test_a_new_database_is_the_users_own(tv_off):
    tv_off.start("--database", tv_off.folder / "db")
    for name in ("db", "db-wal"):
        assert stat.S_IMODE((tv_off.folder / name).stat().st_mode) == 0o600


@pytest.mark.parametrize("replacement", [None, b"another file"])
def test_a_change_is_refused_once_the_database_has_gone(tv_off, replacement):
    path = tv_off.folder / "db"
    tv_off.start("--database", path)
    tv_off.set("key", "db/first", 1)
    path.unlink()
    if replacement:
        path.write_bytes(replacement)
    with pytest.raises(Refused, match=f"{path} was deleted or replaced"):
        tv_off.set("key", "db/second", 2)
    with tv_off.connect() as client:
        assert client.status("IDevice.StartLogTag", wire.text(1, "quarle-daemon", wire.IN)) == -5
    assert f"{path} was deleted or replaced" in tv_off.log()
    # What was there stays, here and at the path.
    assert (tv_off.state("/device/keys/db~1first"), tv_off.state("/device/keys/db~1second")) == (1, None)
    tv_off.end()
    assert (path.read_bytes() if path.exists() else None) == replacement


def test_sockets_are_the_users_own_and_go_at_the_end(tv):
    for path in (tv.socket, tv.control_path):
        assert stat.S_IMODE(os.stat(path).st_mode) == 0o600
    for number in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP):
        with tv.connect() as client:
            assert tv.end(number) == 0
            client.assert_closed()
        assert {"device", "errors", "log"} == set(os.listdir(tv.folder))
        tv.start()


def test_a_hang_up_that_its_starter_ignores_does_not_end_it(tv_off):
    before = signal.signal(signal.SIGHUP, signal.SIG_IGN)
    try:
        tv_off.start()
    finally:
        signal.signal(signal.SIGHUP, before)
    tv_off.process.send_signal(signal.SIGHUP)
    tv_off.wait("/debug/qos == false")
    assert tv_off.end() == 0


@pytest.mark.parametrize("make", [os.pipe, lambda: [end.detach() for end in socket.socketpair()]],
                         ids=["pipe", "socket pair"])
def test_it_ends_when_the_pipe_that_it_was_given_is_closed(tv_off, make):
    given, kept = make()
    process = None
    try:
        [process], ready = start_sims(1, "--socket", tv_off.socket, "--life-fd", given, pass_also=[given])
        assert ready
        os.write(kept, b"what it says does not matter")
        tv_off.wait("/debug/qos == false")
    finally:
        os.close(given)
        os.close(kept)
    assert process.wait(LIMIT) == 0
    assert os.listdir(tv_off.folder) == []


@pytest.mark.parametrize("descriptor", ["987", "0"])
def test_a_descriptor_that_is_no_pipe_is_refused(folder, descriptor):
    assert "is not a pipe" in refusal(SIM, "--socket", folder / "s", "--life-fd", descriptor, status=2,
                                      stdin=subprocess.DEVNULL)


def test_a_log_pipe_that_nobody_reads_delays_nobody(folder):
    os.mkfifo(folder / "log")
    [daemon], ready = start_sims(1, "--socket", folder / "s", "--log", folder / "log")
    assert ready
    control = Control(str(folder / "s"))
    with wire.Connection(str(folder / "s")) as client:
        while not control.state("/daemon/lostLogLines"):
            for _ in range(500):
                assert client.execute("x") == (-1, "")
    daemon.terminate()
    assert daemon.wait(LIMIT) == 0


def test_a_second_daemon_on_a_socket_is_refused(tv):
    assert "another norvex-sim is running on " + tv.socket in refusal(SIM, "--socket", tv.socket)
    tv.wait("/debug/qos == false")


def test_of_many_that_start_at_once_exactly_one_runs(folder):
    control = Control(str(folder / "s"))
    for _ in range(3):
        daemons, ready = start_sims(6, "--socket", folder / "s", stderr=subprocess.DEVNULL)
        try:
            assert ready
            running = control.state("/daemon/pid")
            assert [daemon.wait(LIMIT) for daemon in daemons if daemon.pid != running] == [1] * 5
        finally:
            # The next round finds what a dead one leaves.
            for daemon in daemons:
                daemon.kill()
                daemon.wait()


def test_the_socket_of_a_dead_daemon_is_cleared_away(tv):
    with tv.connect() as client:
        before = client.epoch
    tv.kill()
    assert os.path.exists(tv.socket)
    tv.start()
    with tv.connect() as client:
        assert client.epoch != before


def test_a_file_that_is_not_a_socket_stays(folder):
    (folder / "s").write_text("mine")
    assert "exists and is not a socket" in refusal(SIM, "--socket", folder / "s")
    assert (folder / "s").read_text() == "mine"


@pytest.mark.parametrize("name", ["s", "s.ctl"])
@pytest.mark.parametrize("kind", [socket.SOCK_SEQPACKET, socket.SOCK_STREAM, socket.SOCK_DGRAM])
def test_the_socket_of_another_program_stays(folder, name, kind):
    with socket.socket(socket.AF_UNIX, kind) as other:
        other.bind(str(folder / name))
        if kind != socket.SOCK_DGRAM:
            # Nobody accepts, and the queue is full.
            other.listen(0)
            waiting = socket.socket(socket.AF_UNIX, kind)
            waiting.connect(str(folder / name))
        before = (folder / name).stat()
        assert f"{folder}/{name}: another program is listening there" in refusal(SIM, "--socket", folder / "s")
        assert (folder / name).stat() == before
        assert os.listdir(folder) == [name]


@pytest.mark.parametrize("make", [
    lambda path: path.write_text("mine"), lambda path: path.write_text(""), os.mkfifo, os.mkdir,
    lambda path: path.symlink_to("elsewhere")], ids=["text", "empty", "fifo", "folder", "link"])
def test_a_lock_file_that_is_not_one_is_neither_used_nor_removed(folder, make):
    make(folder / "s.lock")
    before = (folder / "s.lock").lstat()
    assert f"{folder}/s.lock: " in refusal(SIM, "--socket", folder / "s")
    assert (folder / "s.lock").lstat() == before
    assert os.listdir(folder) == ["s.lock"]


def test_a_tv_whose_files_were_removed_leaves_those_of_the_next_one(tv, folder):
    for name in ("tv.sock", "tv.sock.ctl", "tv.sock.lock"):
        (folder / name).unlink()
    [second], ready = start_sims(1, "--socket", tv.socket)
    try:
        assert ready
        assert tv.end() == 0
        assert tv.state("/daemon/pid") == second.pid
        assert "another norvex-sim is running" in refusal(SIM, "--socket", tv.socket)
    finally:
        second.terminate()
        second.wait(LIMIT)
    assert {"device", "errors", "log"} == set(os.listdir(folder))


def test_the_environment_names_the_socket(folder):
    environment = {**os.environ, "NORVEX_SOCKET": str(folder / "s")}
    assert f"no TV is running at {folder}/s.ctl" in refusal(SIMCTL, "state", env=environment)
    del environment["NORVEX_SOCKET"]
    environment["XDG_RUNTIME_DIR"] = str(folder)
    assert f"{folder}/norvex.sock" in refusal(SIMCTL, "state", env=environment)


def switch_on(tv):
    with tv.connect() as client:
        client.start()
        for word in ("items", "103", "qos", "on"):
            client.execute(word)
        client.status("IDevice.StartLogTag", wire.text(1, "other", wire.IN))
    tv.set("key", "db/other", -5)


def switched_on(tv):
    return (tv.state("/debug/itemsOn"), tv.state("/debug/items/2/state"), tv.state("/debug/qos"),
            tv.state("/device/logTags/other"), tv.state("/device/keys/db~1other"))


def test_state_is_kept_in_the_database_through_a_sudden_end(tv_off):
    tv_off.start("--database", tv_off.folder / "db")
    switch_on(tv_off)
    tv_off.kill()
    tv_off.start()
    assert switched_on(tv_off) == (1, True, True, True, -5)


def test_what_was_reset_is_not_back_after_the_next_start(tv_off):
    tv_off.start("--database", tv_off.folder / "db")
    switch_on(tv_off)
    tv_off.reset()
    tv_off.kill()
    tv_off.start()
    assert switched_on(tv_off) == (0, False, False, None, None)


def test_a_database_is_one_tvs(tv_off):
    tv_off.start("--database", tv_off.folder / "db")
    assert "database is locked" in refusal(SIM, "--socket", tv_off.folder / "other", "--database", tv_off.folder / "db")


def test_without_a_database_state_outlives_the_client_and_ends_with_the_daemon(tv):
    switch_on(tv)
    assert switched_on(tv) == (1, True, True, True, -5)
    tv.end()
    tv.start()
    assert switched_on(tv) == (0, False, False, None, None)
