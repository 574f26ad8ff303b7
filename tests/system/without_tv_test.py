"""The test console where no TV service runs: every command comes back, nothing crashes."""

import multiprocessing
import os
import socket

import pytest

from menus import TESTS
from programs import LIMIT

EACH_TEST = pytest.mark.parametrize("words", TESTS.values(), ids=TESTS)
NOBODY = 65534


@EACH_TEST
def test_every_command_returns_without_a_tv(tv_off, words):
    assert tv_off.run_words(f"5 {words} 99 99\n").endswith("cmd> ")


@EACH_TEST
def test_every_command_comes_back_where_the_tv_has_ended(tv, words):
    console = tv.open_console()
    console.type("5", "cmd> ")
    tv.kill()
    console.leave(f"{words} 99 99")


def listen_as_nobody(path, pipe):
    """In the TV's place. What the first visitor sends, b"" for nothing."""
    os.setgroups([])
    os.setgid(NOBODY)
    os.setuid(NOBODY)
    with socket.socket(socket.AF_UNIX, socket.SOCK_SEQPACKET) as listener:
        listener.settimeout(LIMIT)
        listener.bind(path)
        os.chmod(path, 0o666)
        listener.listen()
        pipe.send("ready")
        with listener.accept()[0] as visitor:
            visitor.settimeout(LIMIT)
            pipe.send(visitor.recv(4096))


@pytest.mark.skipif(os.geteuid() != 0, reason="becoming another user takes root")
def test_another_users_process_in_the_tvs_place_gets_no_data(tv_off):
    os.chmod(tv_off.folder, 0o777)
    mine, theirs = multiprocessing.Pipe()
    listener = multiprocessing.get_context("fork").Process(target=listen_as_nobody, args=(tv_off.socket, theirs))
    listener.start()
    try:
        assert mine.recv() == "ready"
        tv_off.run_words("1 99\n")
        assert mine.recv() == b""
        assert "IDebugPrintControl.Start: the TV service belongs to another user" in tv_off.client_log()
    finally:
        listener.kill()
        listener.join(LIMIT)
