"""The dialogue with a process's own debug menu, and its switches."""

import signal
import time

from tv import CALL_LIMIT, PROCESS_PROMPT, SystemTestCase

START_FAILED = (
    "Failed to start selected[1] debug print control\r\nCommand not implemented\r\n"
)


class DialogueTestCase(SystemTestCase):
    def test_a_dialogue_goes_through_the_processs_screens_and_back(self):
        self.start_tv()
        console = self.open_console()
        console.sendline("1")
        console.expect_exact("> ")
        console.sendline("help")
        console.expect_exact("status")
        console.expect_exact("> ")
        console.sendline("gibberish")
        console.expect_exact("gibberish")
        console.expect_exact("> ")
        console.sendline("99")
        console.expect_exact(PROCESS_PROMPT)
        self.leave(console, "99")
        self.assertEqual(
            self.calls(),
            ["IDebugPrintControl.Start"]
            + ["IDebugPrintControl.Execute"] * 3
            + ["IDebugPrintControl.Stop"],
        )

    def test_the_dialogue_ends_when_the_process_is_killed_in_the_middle_and_the_next_finds_its_successor(self):
        self.start_tv()
        console = self.open_console()
        console.sendline("1")
        console.expect_exact("> ")
        self.kill_tv()
        console.sendline("help")
        console.expect_exact(PROCESS_PROMPT)
        self.start_tv()
        console.sendline("1")
        console.expect_exact("> ")
        console.sendline("99")
        console.expect_exact(PROCESS_PROMPT)
        self.leave(console, "99")

    def test_without_a_process_the_start_fails_with_two_lines_and_the_menu_goes_on(self):
        console = self.open_console()
        for _ in range(2):
            console.sendline("1")
            console.expect_exact(START_FAILED)
            console.expect_exact(PROCESS_PROMPT)
        self.leave(console, "99")

    def test_a_stopped_process_costs_one_command_one_call_limit_and_the_next_none(self):
        self.start_tv()
        console = self.open_console()
        console.sendline("1")
        console.expect_exact("> ")
        self.tv.send_signal(signal.SIGSTOP)
        begin = time.monotonic()
        # Execute waits for the limit; Stop, which follows, must not wait for another.
        console.sendline("help")
        console.expect_exact(PROCESS_PROMPT)
        first = time.monotonic() - begin
        self.assertGreaterEqual(first, CALL_LIMIT * 0.9)
        self.assertLess(first, CALL_LIMIT * 2)
        # The simple menu makes two calls a page; it is known now that nobody answers.
        begin = time.monotonic()
        console.sendline("7")
        console.expect_exact("QoS is disabled")
        console.expect_exact("cmd> ")
        self.assertLess(time.monotonic() - begin, CALL_LIMIT)
        console.sendline("99")
        console.expect_exact(PROCESS_PROMPT)
        self.tv.send_signal(signal.SIGCONT)
        self.wait_for("/daemon/calls", ">=", "1")
        console.sendline("1")
        index = console.expect_exact(["> ", START_FAILED])
        self.assertEqual(index, 0)
        console.sendline("99")
        console.expect_exact(PROCESS_PROMPT)
        self.leave(console, "99")

    def test_a_reply_that_is_lost_costs_its_call_alone(self):
        self.start_tv()
        console = self.open_console()
        self.simctl("inject", "IDebugPrintControl.Start", "--drop")
        console.sendline("1")
        console.expect_exact(START_FAILED)
        console.expect_exact(PROCESS_PROMPT)
        console.sendline("1")
        console.expect_exact("> ")
        console.sendline("99")
        console.expect_exact(PROCESS_PROMPT)
        self.leave(console, "99")

    def test_a_refusal_in_the_reply_is_told_as_a_failed_start(self):
        self.start_tv()
        self.simctl("inject", "IDebugPrintControl.Start", "--result", "0")
        console = self.open_console()
        console.sendline("1")
        console.expect_exact(START_FAILED)
        console.expect_exact(PROCESS_PROMPT)
        self.leave(console, "99")


class SwitchesTestCase(SystemTestCase):
    def test_an_item_flipped_by_number_is_flipped_in_the_process_and_shown_on(self):
        self.start_tv()
        console = self.open_console()
        console.sendline("7")
        console.expect_exact("1 : [OFF] ")
        console.expect_exact("cmd> ")
        console.sendline("1")
        console.expect_exact("1 : [ON ] ")
        console.expect_exact("cmd> ")
        self.assertTrue(self.state("/debug/items/1/state"))
        self.assertFalse(self.state("/debug/items/0/state"))
        console.sendline("1")
        console.expect_exact("1 : [OFF] ")
        self.assertFalse(self.state("/debug/items/1/state"))
        self.leave(console, "99", "99")

    def test_the_switches_outlive_the_console_but_not_the_process(self):
        self.start_tv()
        self.run_words("7 3 99 99\n")
        self.assertTrue(self.state("/debug/items/3/state"))
        self.assertIn("3 : [ON ] ", self.run_words("7 99 99\n").stdout)
        self.kill_tv()
        self.start_tv()
        self.assertIn("3 : [OFF] ", self.run_words("7 99 99\n").stdout)

    def test_with_a_database_the_switches_outlive_a_killed_process(self):
        database = self.path("tv.db")
        self.start_tv("--database", database)
        self.run_words("7 3 99 99\n")
        self.kill_tv()
        self.start_tv("--database", database)
        self.assertTrue(self.state("/debug/items/3/state"))


class WordsTestCase(SystemTestCase):
    def test_the_last_word_has_its_effect_without_a_line_end(self):
        self.start_tv()
        result = self.run_words("7 2")
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        self.assertTrue(self.state("/debug/items/2/state"))

    def test_the_end_of_input_ends_the_console_at_any_depth(self):
        self.start_tv()
        for words in ("", "1", "1 help", "3", "4", "4 0", "5", "5 2", "5 2 0 1", "5 19 3", "7"):
            with self.subTest(words=words):
                result = self.run_words(words)
                self.assertEqual((result.returncode, result.stderr), (0, ""))
