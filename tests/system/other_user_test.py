"""The console where another user's process listens in the TV's place."""

import multiprocessing
import os
import socket
import unittest

from tv import LIMIT, SystemTestCase

NOBODY = 65534


def listen(path, pipe):
    """As nobody: in the TV's place. What the first visitor sends, b"" for nothing."""
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


class OtherUserTestCase(SystemTestCase):
    @unittest.skipUnless(os.geteuid() == 0, "becoming another user takes root")
    def test_another_users_process_in_the_tvs_place_is_told_nothing(self):
        os.chmod(self.folder, 0o777)
        mine, theirs = multiprocessing.Pipe()
        listener = multiprocessing.get_context("fork").Process(target=listen, args=(self.socket, theirs))
        listener.start()
        self.addCleanup(listener.join, LIMIT)
        self.addCleanup(listener.kill)
        self.assertEqual(mine.recv(), "ready")
        result = self.run_words("1 99\n")
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        self.assertEqual(mine.recv(), b"")
        with open(self.path("client.log"), encoding="utf-8") as log:
            self.assertIn("IDebugPrintControl.Start: the TV service is another user's process", log.read())
