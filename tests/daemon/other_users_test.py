"""norvex-sim and other users of the machine."""

import multiprocessing
import os
import socket
import stat

import pytest

import norvex_wire as wire
from norvex_tv import start_sims
from programs import LIMIT, SIM, SIMCTL, refusal

NOBODY = 65534
ROOT_ONLY = pytest.mark.skipif(os.geteuid() != 0, reason="becoming another user takes root")


def visit(path, kind, outcome):
    """As the user nobody: connects, sends a request, and reports the outcome."""
    os.setgroups([])
    os.setgid(NOBODY)
    os.setuid(NOBODY)
    request = wire.packet(wire.hello_message(b"t" * 16)) if kind == socket.SOCK_SEQPACKET else b'{"arguments": ["state"]}\n'
    with socket.socket(socket.AF_UNIX, kind) as visitor:
        visitor.settimeout(LIMIT)
        try:
            visitor.connect(path)
            visitor.send(request)
            outcome.send(visitor.recv(100))
        except OSError as error:
            outcome.send(type(error))


def visit_as_nobody(path, kind):
    mine, theirs = multiprocessing.Pipe()
    visitor = multiprocessing.get_context("fork").Process(target=visit, args=(path, kind, theirs))
    visitor.start()
    outcome = mine.recv()
    visitor.join(LIMIT)
    return outcome


@ROOT_ONLY
def test_another_user_is_refused_even_where_the_sockets_are_open_to_all(tv):
    sockets = ((tv.socket, socket.SOCK_SEQPACKET), (tv.control_path, socket.SOCK_STREAM))
    os.chmod(tv.folder, 0o755)
    for path, kind in sockets:
        assert visit_as_nobody(path, kind) is PermissionError
    assert "refused a connection" not in tv.log()
    # Whatever the mode lets in is looked at as well.
    for number, (path, kind) in enumerate(sockets, 1):
        os.chmod(path, 0o666)
        assert visit_as_nobody(path, kind) in (b"", BrokenPipeError, ConnectionResetError)
        tv.state()
        assert tv.log().count(f"refused a connection from user {NOBODY}") == number
    with tv.connect() as client:
        assert client.stop() == 0
    assert tv.calls()[0]["client"] == 1


def listen_as_nobody(path, outcome):
    """What the first one who connects says before its end."""
    os.setgroups([])
    os.setgid(NOBODY)
    os.setuid(NOBODY)
    with socket.socket(socket.AF_UNIX) as listener:
        listener.bind(path)
        listener.listen()
        outcome.send("listens")
        connection = listener.accept()[0]
        with connection:
            outcome.send(connection.recv(100))


@ROOT_ONLY
def test_a_control_socket_of_another_user_gets_no_data(folder):
    os.chmod(folder, 0o777)
    mine, theirs = multiprocessing.Pipe()
    listener = multiprocessing.get_context("fork").Process(target=listen_as_nobody,
                                                           args=(f"{folder}/s.ctl", theirs))
    listener.start()
    assert mine.recv() == "listens"
    assert "belongs to another user" in refusal(SIMCTL, "--socket", folder / "s", "state")
    assert mine.recv() == b""
    listener.join(LIMIT)


def in_folder(folder):
    return {**{name: value for name, value in os.environ.items() if name != "NORVEX_SOCKET"},
            "XDG_RUNTIME_DIR": str(folder)}


def assert_is_refused(folder):
    assert f"{folder}: not a directory of this user only" in refusal(SIM, env=in_folder(folder))
    assert os.listdir(folder) == []


@ROOT_ONLY
def test_a_folder_of_another_user_is_not_listened_in(folder):
    os.chown(folder, NOBODY, NOBODY)
    assert_is_refused(folder)


@pytest.mark.parametrize("mode", [0o755, 0o750, 0o701, 0o770], ids=oct)
def test_a_folder_that_others_may_enter_is_not_listened_in(folder, mode):
    os.chmod(folder, mode)
    assert_is_refused(folder)


def test_a_link_to_a_folder_is_not_listened_in(folder):
    (folder / "own").mkdir(0o700)
    (folder / "link").symlink_to(folder / "own")
    assert_is_refused(folder / "link")


def test_a_missing_folder_is_created_for_this_user_only(folder):
    [daemon], ready = start_sims(1, env=in_folder(folder / "run"), umask=0)
    try:
        assert ready
        assert stat.S_IMODE(os.stat(folder / "run").st_mode) == 0o700
        for name in ("norvex.sock", "norvex.sock.ctl", "norvex.sock.lock"):
            assert stat.S_IMODE(os.stat(folder / "run" / name).st_mode) == 0o600
    finally:
        daemon.terminate()
        assert daemon.wait(LIMIT) == 0


@ROOT_ONLY
def test_a_device_folder_of_another_user_is_not_used(folder):
    # Where a user without a home has it; nobody has this number.
    user = 2_000_000_000 + os.getpid()
    own = f"/tmp/norvex-{user}"
    os.chmod(folder, 0o777)
    environment = {name: value for name, value in os.environ.items()
                   if name not in ("HOME", "XDG_STATE_HOME", "NORVEX_DEVICE_DIR")}
    os.mkdir(own)
    try:
        assert f"{own}: not a directory of this user only" in \
            refusal(SIM, "--socket", folder / "s", env=environment, user=user)
        assert os.listdir(own) == []
    finally:
        os.rmdir(own)
