"""norvex-simctl lineup: files in, files out, and what cannot be."""

import os

from norvex_tv import SIMCTL
from tv_test_case import TvTestCase

SMALL = """transponder air 474000
service 0x11 7-1 "Seven"
programme 00:00 1440 "All day long"
"""


class LineUpTestCase(TvTestCase):
    def setUp(self):
        self.daemon = self.tv()
        self.files = self.folder()

    def path(self, name):
        return os.path.join(self.files, name)

    def write(self, name, text):
        with open(self.path(name), "w", encoding="utf-8") as file:
            file.write(text)
        return self.path(name)

    def read(self, name):
        with open(self.path(name), encoding="utf-8") as file:
            return file.read()

    def lineup(self, *words):
        return [SIMCTL, "--socket", self.daemon.socket, "lineup", *words]

    def test_a_saved_one_is_the_one_that_is_shown_and_loads_again(self):
        self.daemon.simctl("lineup", "load", self.write("small", SMALL))
        self.daemon.simctl("lineup", "save", self.path("saved"))
        self.assertEqual(self.read("saved"), self.daemon.simctl("lineup", "show"))
        for piece in ("474000", "7-1", "Seven", "All day long"):
            self.assertIn(piece, self.read("saved"))
        self.daemon.simctl("reset")
        self.daemon.simctl("lineup", "load", self.path("saved"))
        self.assertEqual(self.daemon.simctl("lineup", "show"), self.read("saved"))
        self.assertEqual(os.listdir(self.files).count("saved.part"), 0)

    def test_saving_replaces_a_file_as_a_whole_or_not_at_all(self):
        self.write("saved", "before")
        self.daemon.kill()
        self.assert_fails(self.lineup("save", self.path("saved")), 1, "norvex-simctl: ")
        self.assertEqual(self.read("saved"), "before")
        self.assertEqual(os.listdir(self.files), ["saved"])

    def test_what_cannot_be_written_is_said(self):
        self.assert_fails(self.lineup("save", self.path("none/saved")), 1, "cannot be written")
        os.mkdir(self.path("folder"))
        self.assert_fails(self.lineup("save", self.path("folder")), 1, "cannot be written")
        self.assertEqual(os.listdir(self.files), ["folder"])

    def test_what_cannot_be_loaded_is_said_and_leaves_the_line_up(self):
        shown = self.daemon.simctl("lineup", "show")
        self.assert_fails(self.lineup("load", self.path("none")), 1, "No such file or directory")
        self.assert_fails(self.lineup("load", self.files), 1, "expected a regular file")
        with open(self.path("huge"), "wb") as file:
            file.truncate((512 << 20) + 1)
        self.assert_fails(self.lineup("load", self.path("huge")), 1, "expected at most 512 MiB")
        self.assert_fails(self.lineup("load", self.write("bad", SMALL + "nonsense\n")), 1, "bad:4:")
        self.assertEqual(self.daemon.simctl("lineup", "show"), shown)
