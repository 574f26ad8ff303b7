"""The test console where no TV service runs: every command comes back, nothing crashes."""

import multiprocessing
import os
import socket

import pytest

from programs import LIMIT

AREAS = "1 2 3 4 " * 3
# The words of each visit, from the test console's main menu back to it.
VISITS = {
    "1 reference count": "1 0 1 99",
    "2 mute": "2 0 1 1 2 0 99 0",
    "3 hdmi analysis": "3 1 1 2 2 1 99",
    "4 status": "4",
    "5 set tv mode": "5",
    "6 dtv mode": "6 1 2 3 4 5 6 7 8 99",
    "7 set source": "7 1 2 3 5 4 5 6 5 7 99",
    "8 restart decoder": "8",
    "9 nothing": "9",
    "10 tuner": "10",
    "11 latest services": "11",
    "12 preparation": "12 1 2 3 4 5 6 7 8 99",
    "13 tv mode with service": "13 1 5 2 5 3 5 4 5 5 5 6 5 99 1",
    "14 crop": "14",
    "15 captions": "15",
    "16 preview": "16 1 0 2 0 5 99",
    "17 signal tune preparation": "17 1 2 5 3 4 5 5 6 7 99",
    "18 guide": "18 1 2 3 4 5 6 7 99",
    "19 zoom": "19 1 2 3 " + AREAS + "4 1 1 2 3 4 5 1 1 6 1 1 7 1 8 1 9 1 " + AREAS + "10 99",
    "20 invalid service": "20 1 2 99",
    "21 boot-up service": "21 5",
}
EACH_VISIT = pytest.mark.parametrize("words", VISITS.values(), ids=VISITS)
NOBODY = 65534


@EACH_VISIT
def test_every_command_comes_back_where_no_tv_is(tv_off, words):
    assert tv_off.run_words(f"5 {words} 99 99\n").endswith("cmd> ")


@EACH_VISIT
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
def test_another_users_process_in_the_tvs_place_is_told_nothing(tv_off):
    os.chmod(tv_off.folder, 0o777)
    mine, theirs = multiprocessing.Pipe()
    listener = multiprocessing.get_context("fork").Process(target=listen_as_nobody, args=(tv_off.socket, theirs))
    listener.start()
    try:
        assert mine.recv() == "ready"
        tv_off.run_words("1 99\n")
        assert mine.recv() == b""
        assert "IDebugPrintControl.Start: the TV service is another user's process" in tv_off.client_log()
    finally:
        listener.kill()
        listener.join(LIMIT)
