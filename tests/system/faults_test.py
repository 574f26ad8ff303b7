"""Some of the faults of faults.py; all of them: script/faults --all."""

import os
import unittest

import faults

# For machines that are busy with other tests.
CALL_LIMIT = 1.5
# A console with a sanitizer takes its time to end.
STEP = 3 if os.environ["ZARN_BUILD"] else 1


class FaultsTestCase(unittest.TestCase):
    def try_some(self, kind, every):
        for name, step in (("run", STEP), ("long lists", 4 * STEP)):
            recording = faults.Recording(name, CALL_LIMIT)
            for what in faults.sample(recording, kind, every)[::step]:
                with self.subTest(what=what):
                    self.assertEqual(faults.FaultyRun(recording, *what[1:]).figures.problems, [])

    def test_the_console_goes_on_and_nothing_is_lost_when_the_tv_is_killed_at_a_boundary(self):
        self.try_some("kill", 100)

    def test_the_console_goes_on_when_the_tv_stands_still_at_a_boundary(self):
        self.try_some("stop", 200)

    def test_the_console_goes_on_after_an_answer_that_makes_no_sense(self):
        self.try_some("bad answer", 80)
