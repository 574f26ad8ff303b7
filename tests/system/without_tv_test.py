"""The test console where no TV service runs: every command comes back, nothing crashes."""

from tv import SystemTestCase

RECTANGLE = "1 2 3 4 "

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
    "19 zoom": "19 1 2 3 " + RECTANGLE * 3 + "4 1 " + RECTANGLE + "5 1 1 6 1 1 7 1 8 1 9 1 " + RECTANGLE * 3 + "10 99",
    "20 invalid service": "20 1 2 99",
    "21 boot-up service": "21 5",
}


class WithoutTvTestCase(SystemTestCase):
    def test_every_item_and_every_command_of_its_menu_comes_back(self):
        for name, words in VISITS.items():
            with self.subTest(visit=name):
                result = self.run_words(f"5 {words} 99 99\n")
                self.assertEqual((result.returncode, result.stderr), (0, ""))
                self.assertTrue(result.stdout.endswith("cmd> "), result.stdout[-300:])

    def test_all_of_them_in_one_run(self):
        result = self.run_words("5 " + " ".join(VISITS.values()) + " 99 99\n")
        self.assertEqual((result.returncode, result.stderr), (0, ""))

    def test_they_come_back_as_well_when_the_tv_ends_while_they_run(self):
        for name, words in VISITS.items():
            with self.subTest(visit=name):
                self.start_tv()
                console = self.open_console()
                console.sendline("5")
                console.expect_exact("cmd> ")
                self.kill_tv()
                self.leave(console, *words.split(), "99", "99")
