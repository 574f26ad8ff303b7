"""The short form of script/endurance."""

import unittest

import endurance


class EnduranceTestCase(unittest.TestCase):
    def check(self, found, kept=0, idle=0):
        self.assertEqual(endurance.judge(found, kept, idle), "", found)

    def test_each_menu_is_left_as_it_was_entered(self):
        for menu in endurance.MENUS:
            with self.subTest(menu=menu.name):
                self.check(endurance.enter(menu, 50), menu.kept)

    def test_the_plug_in_is_unloaded_each_time(self):
        self.check(endurance.load(20), endurance.LOOP)

    def test_a_console_outlives_many_runs_of_its_tv(self):
        self.check(endurance.restart(10), endurance.LOOP, endurance.IDLE_CONNECTIONS)

    def test_what_grows_is_told(self):
        flat = {"times": 100, "heap": 3200, "resident": 0, "descriptors": 0, "threads": 0}
        self.assertEqual(endurance.judge(flat, 32), "")
        self.assertEqual(endurance.judge({**flat, "descriptors": 1, "threads": 1}, 32),
                         "descriptors by 1, threads by 1")
        self.assertIn("heap by 100.0 bytes a time, expected 0",
                      endurance.judge({**flat, "heap": 10000}))
        if not endurance.SANITIZED:
            self.assertIn("memory by", endurance.judge({**flat, "resident": 1 << 20}, 32))
