"""norvex-sim's start and end, and what outlives it."""

import os
import signal
import socket
import stat
import subprocess

import pytest

import norvex_wire as wire
from norvex_control import Control
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
    assert "unable to open" in refusal(*words, folder / "none/db")
    assert os.listdir(folder) == ["text"]


def test_sockets_are_the_users_own_and_go_at_the_end(tv):
    for path in (tv.socket, tv.control_path):
        assert stat.S_IMODE(os.stat(path).st_mode) == 0o600
    for number in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP):
        with tv.connect() as client:
            assert tv.end(number) == 0
            client.assert_closed()
        assert {"errors", "log"} == set(os.listdir(tv.folder))
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
        client.status("IDevice.StartLogTag", wire.text(1, "quarle-daemon", wire.IN))
    tv.set("key", "db/other", -5)


def switched_on(tv):
    return (tv.state("/debug/itemsOn"), tv.state("/debug/items/2/state"), tv.state("/debug/qos"),
            tv.state("/device/logTags/quarle-daemon"), tv.state("/device/keys/db~1other"))


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
    assert switched_on(tv_off) == (0, False, False, False, None)


def test_a_database_is_one_tvs(tv_off):
    tv_off.start("--database", tv_off.folder / "db")
    assert "database is locked" in refusal(SIM, "--socket", tv_off.folder / "other", "--database", tv_off.folder / "db")


def test_without_a_database_state_outlives_the_client_and_ends_with_the_daemon(tv):
    switch_on(tv)
    assert switched_on(tv) == (1, True, True, True, -5)
    tv.end()
    tv.start()
    assert switched_on(tv) == (0, False, False, False, None)
