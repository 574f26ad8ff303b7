"""What tests of the simulated TV's process share."""

import subprocess
import tempfile
import unittest

import norvex_wire as wire
from norvex_tv import LIMIT, Tv


class TvTestCase(unittest.TestCase):
    def tv(self, *options, **more):
        tv = Tv(*options, **more)
        self.addCleanup(tv.__exit__)
        return tv

    def folder(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        return folder.name

    def assert_fails(self, words, status, text, **options):
        result = subprocess.run(words, capture_output=True, text=True, timeout=LIMIT, check=False,
                                **options)
        self.assertEqual((result.returncode, result.stdout), (status, ""), result)
        self.assertEqual(len(result.stderr.splitlines()), 1, result.stderr)
        self.assertIn(text, result.stderr)

    def assert_closed(self, connection):
        with self.assertRaises(wire.Closed):
            connection.receive()
