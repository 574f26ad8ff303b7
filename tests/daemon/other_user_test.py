"""norvex-sim and other users of the machine."""

import multiprocessing
import os
import socket
import stat
import subprocess
import unittest

import norvex_wire as wire
from norvex_tv import LIMIT, SIM
from tv_test_case import TvTestCase

NOBODY = 65534


def visit(path, kind, outcome):
    """As nobody: connects, asks, and tells what came of it."""
    os.setgroups([])
    os.setgid(NOBODY)
    os.setuid(NOBODY)
    hello = wire.message(wire.HELLO, wire.value(0, "I", 1) + wire.node(1, wire.ARRAY, b"t" * 16))
    requests = {socket.SOCK_SEQPACKET: wire.packets(hello)[0],
                socket.SOCK_STREAM: b'{"command": "state"}\n'}
    with socket.socket(socket.AF_UNIX, kind) as visitor:
        visitor.settimeout(LIMIT)
        try:
            visitor.connect(path)
            visitor.send(requests[kind])
            outcome.send(visitor.recv(100))
        except OSError as error:
            outcome.send(type(error))


class OtherUserTestCase(TvTestCase):
    def visit(self, path, kind):
        mine, theirs = multiprocessing.Pipe()
        visitor = multiprocessing.get_context("fork").Process(target=visit, args=(path, kind, theirs))
        visitor.start()
        outcome = mine.recv()
        visitor.join(LIMIT)
        mine.close()
        theirs.close()
        return outcome

    @unittest.skipUnless(os.geteuid() == 0, "becoming another user takes root")
    def test_another_user_is_refused_even_where_the_sockets_are_open_to_all(self):
        tv = self.tv()
        sockets = ((tv.socket, socket.SOCK_SEQPACKET), (tv.socket + ".ctl", socket.SOCK_STREAM))
        os.chmod(tv.folder, 0o755)
        for path, kind in sockets:
            self.assertIs(self.visit(path, kind), PermissionError)
        self.assertNotIn("refused a connection", tv.log())
        # Whatever the mode lets in is looked at as well.
        for number, (path, kind) in enumerate(sockets, 1):
            os.chmod(path, 0o666)
            self.assertIn(self.visit(path, kind), (b"", BrokenPipeError, ConnectionResetError))
            tv.simctl("state")
            self.assertEqual(tv.log().count(f"refused a connection of user {NOBODY}"), number)
        with tv.connect() as client:
            self.assertEqual(client.stop(), 0)
        self.assertEqual(tv.calls()[0]["client"], 1)

    @unittest.skipUnless(os.geteuid() == 0, "giving a folder away takes root")
    def test_a_folder_of_another_user_is_not_listened_in(self):
        folder = self.folder()
        os.chown(folder, NOBODY, NOBODY)
        self.assert_is_refused(folder)

    def test_a_folder_that_others_may_enter_is_not_listened_in(self):
        folder = self.folder()
        for mode in (0o755, 0o750, 0o701, 0o770):
            os.chmod(folder, mode)
            self.assert_is_refused(folder)
        os.chmod(folder, 0o700)
        link = os.path.join(self.folder(), "link")
        os.symlink(folder, link)
        self.assert_is_refused(link)

    def assert_is_refused(self, folder):
        self.assert_fails([SIM], 1, f"{folder}: is no directory of this user alone",
                          env=self.in_folder(folder))
        self.assertEqual(os.listdir(folder), [])

    @staticmethod
    def in_folder(folder):
        environment = {**os.environ, "XDG_RUNTIME_DIR": folder}
        environment.pop("NORVEX_SOCKET", None)
        return environment

    def test_a_folder_that_is_not_there_is_made_for_this_user_alone(self):
        folder = os.path.join(self.folder(), "run")
        ready, told = os.pipe()
        daemon = subprocess.Popen([SIM, "--ready-fd", str(told)], env=self.in_folder(folder),
                                  pass_fds=[told], umask=0)
        self.addCleanup(daemon.wait, LIMIT)
        self.addCleanup(daemon.terminate)
        os.close(told)
        with os.fdopen(ready) as lines:
            self.assertEqual(lines.read(), "ready\n")
        self.assertEqual(stat.S_IMODE(os.stat(folder).st_mode), 0o700)
        for name in ("norvex.sock", "norvex.sock.ctl", "norvex.sock.lock"):
            self.assertEqual(stat.S_IMODE(os.stat(os.path.join(folder, name)).st_mode), 0o600)
