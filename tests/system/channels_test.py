"""Channels: looked up, tuned and scanned from the console."""

from tv import PROCESS_PROMPT, SystemTestCase

MAIN_PROMPT = " 21. Set boot up service\r\n------------------------------------\r\n" + PROCESS_PROMPT

LINE_UP = """\
transponder air 474000
  service 0x11 7-1 "One" captions
    programme 00:00 1440 "Twelve units"
  service 0x12 8-1 "Two"
transponder air 482000
  service 0x8000000000000013 9-1 "Three"
"""


class ChannelsTestCase(SystemTestCase):
    def start_with_line_up(self):
        with open(self.path("own.lineup"), "w", encoding="utf-8") as file:
            file.write(LINE_UP)
        self.start_tv("--lineup", self.path("own.lineup"))

    def enter(self):
        console = self.open_console()
        console.sendline("5")
        console.expect_exact(MAIN_PROMPT)
        return console

    def tune(self, console, major):
        """Test 13, command 1: broadcast on air."""
        console.sendline("13")
        console.expect_exact(PROCESS_PROMPT)
        console.sendline("1")
        console.expect_exact("major> ")
        console.sendline(str(major))
        console.expect_exact("[Test14 List")
        answer = console.before
        console.expect_exact(PROCESS_PROMPT)
        console.sendline("99")
        console.expect_exact("major> ")
        console.sendline("1")
        console.expect_exact(MAIN_PROMPT)
        return answer

    def test_a_channel_is_looked_up_tuned_and_seen_in_the_state_and_told_once_a_scan_has_subscribed(self):
        self.start_with_line_up()
        self.simctl("set", "scan-pace", "0")
        console = self.enter()
        self.assertNotIn("failed", self.tune(console, 7))
        self.assertEqual(self.state("/pipelines/1:0/service"), "0x11")
        # Nobody has subscribed yet: no signal's line has come.
        self.assertNotIn("\tSIGNAL", console.before)
        console.sendline("18")
        console.expect_exact(PROCESS_PROMPT)
        console.sendline("3")
        # Signals come when they come, also within the menu's own lines: only theirs are whole.
        console.expect_exact("SIGNAL_TUNE_AROUND_FINISHED -> profile:1, screenId: 0, completed: true\r\n")
        console.sendline("99")
        console.expect_exact(MAIN_PROMPT)
        console.sendline("13")
        console.expect_exact(PROCESS_PROMPT)
        console.sendline("1")
        console.expect_exact("major> ")
        console.sendline("9")
        console.expect_exact(
            "\tSIGNAL_SI_STARTED -> profile:1, screenId: 0, chType:1, srvProfile:0, chNumber:9\r\n"
        )
        self.assertEqual(self.state("/pipelines/1:0/service"), "0x8000000000000013")
        self.leave(console, "99", "1", "99", "99")

    def test_a_channel_that_is_not_there_is_not_tuned(self):
        self.start_with_line_up()
        console = self.enter()
        self.tune(console, 7)
        self.assertIn("FindService failed", self.tune(console, 500))
        self.assertEqual(self.state("/pipelines/1:0/service"), "0x11")
        self.leave(console, "99", "99")

    def test_a_change_waits_for_the_receiver_of_another_console(self):
        self.start_with_line_up()
        receiver = self.enter()
        receiver.sendline("17")
        receiver.expect_exact("cmd> ")
        receiver.sendline("1")
        receiver.expect_exact("Succesfully called RegisterForStateChange (App1), ret=1\r\n")
        viewer = self.enter()
        self.assertNotIn("failed", self.tune(viewer, 8))
        self.assertIsNone(self.state("/pipelines/1:0/service"))
        receiver.sendline("7")
        receiver.expect_exact("pending=1\r\n")
        receiver.sendline("2")
        receiver.expect_exact("major (int)> ")
        receiver.sendline("8")
        receiver.expect_exact(f"major = 8 ,serviceId = {0x12}\r\n")
        receiver.expect_exact("Succesfully called NotifyReceiverState (App1), ret=1\r\n")
        self.assertEqual(self.state("/pipelines/1:0/service"), "0x12")
        receiver.sendline("7")
        receiver.expect_exact("pending=0\r\n")
        self.leave(viewer, "99", "99")
        self.leave(receiver, "99", "99", "99")

    def test_a_scan_that_is_stopped_says_so(self):
        self.start_with_line_up()
        self.simctl("set", "scan-pace", "3600000")
        console = self.enter()
        console.sendline("18")
        console.expect_exact(PROCESS_PROMPT)
        console.sendline("3")
        console.expect_exact("SIGNAL_SI_STARTED")
        self.assertEqual(self.state("/scan/done"), 0)
        self.assertEqual(self.state("/pipelines/1:0/tuner/at"), "air/474000")
        console.sendline("4")
        console.expect_exact("SIGNAL_TUNE_AROUND_FINISHED -> profile:1, screenId: 0, completed: false\r\n")
        self.leave(console, "99", "99", "99")

    def test_the_console_goes_on_when_the_tv_is_killed_during_a_scan(self):
        self.start_with_line_up()
        self.simctl("set", "scan-pace", "3600000")
        console = self.enter()
        console.sendline("18")
        console.expect_exact(PROCESS_PROMPT)
        console.sendline("3")
        console.expect_exact("SIGNAL_SI_STARTED")
        self.kill_tv()
        console.sendline("4")
        console.expect_exact("\tcalled StopManualScan, ret: -1\r\n")
        self.start_tv("--lineup", self.path("own.lineup"))
        console.sendline("3")
        console.expect_exact("SIGNAL_SI_STARTED")
        self.assertIsNotNone(self.state("/scan/running"))
        self.leave(console, "99", "99", "99")

    def test_programmes_of_a_line_up_of_ones_own_are_listed(self):
        self.start_with_line_up()
        result = self.run_words("5 18 1 99 99 99\n")
        self.assertIn("\tfreq:474000 -> 7-1: title size: 12\n\tno data in 2 programs\n", result.stdout)

    def test_a_line_up_with_an_error_is_named_and_changes_nothing(self):
        self.start_with_line_up()
        with open(self.path("bad.lineup"), "w", encoding="utf-8") as file:
            file.write(LINE_UP + '  service 0x14 70000 "Too far"\n')
        self.simctl("lineup", "load", self.path("bad.lineup"), check=False)
        self.assertEqual(self.state("/lineUp/services"), 3)
        result = self.run_words("5 21 7 99 99\n")
        self.assertNotIn("failed", result.stdout)
        self.assertEqual(self.state("/lineUp/bootup/service"), "0x11")

    def test_two_consoles_tune_pipelines_of_their_own(self):
        self.start_with_line_up()
        first = self.enter()
        second = self.enter()
        self.tune(first, 7)
        # The source test's command 3 goes to picture in picture.
        for word, prompt in (("7", "select num> "), ("3", "major> "), ("8", "select num> ")):
            second.sendline(word)
            second.expect_exact(prompt)
        self.assertEqual(self.state("/pipelines/1:0/service"), "0x11")
        self.assertEqual(self.state("/pipelines/101:0/service"), "0x12")
        self.leave(first, "99", "99")
        self.leave(second, "99", "99", "99")
