"""Scripts: words typed, texts waited for, and how a miss is told."""

import os
import re
import signal
import time

from hostprocess import START, HostTestCase


class ScriptTestCase(HostTestCase):
    def run_script(self, text, *arguments):
        self.script = self.write("script", text)
        return self.run_host("--script", self.script, *arguments)

    def assert_missed(self, result, line, text):
        self.assertEqual(result.returncode, 3)
        self.assert_one_line(result.stderr, f"{self.script}:{line}: ", text)

    def test_lines_are_typed_and_the_end_of_the_script_is_the_end_of_input(self):
        result = self.run_script("# a comment\n\none two\n\\expect this\nsub\n")
        output = "got one\ncmd> got two\ncmd> got expect\ncmd> got this\ncmd> sub> "
        self.assert_done(result, START + output)

    def test_expected_texts_that_come_let_the_script_go_on(self):
        result = self.run_script(
            "expect Example\none\nexpect got one\nexpect \"\\ncmd> \" within 30\n99\n"
        )
        self.assert_done(result, START + "got one\ncmd> example closed\n")

    def test_a_text_that_does_not_come_ends_with_status_3_and_names_file_and_line(self):
        result = self.run_script("one\nexpect got one\nexpect got two within 0.05\n99\n")
        self.assert_missed(result, 3, '"got two"')
        self.assertEqual(result.stdout, START + "got one\ncmd> ")

    def test_a_text_that_came_before_the_last_step_is_missed(self):
        result = self.run_script("one\ntwo\nexpect got one within 0.05\n")
        self.assert_missed(result, 3, '"got one"')

    def test_a_console_that_hangs_is_a_miss_within_the_limit(self):
        before = time.monotonic()
        result = self.run_script("hang\nexpect cmd> within 0.5\n")
        self.assert_missed(result, 2, '"cmd> "'.replace(" ", ""))
        self.assertGreaterEqual(time.monotonic() - before, 0.5)
        self.assertIn("hanging\n", result.stdout)

    def test_a_miss_keeps_what_was_printed_and_recorded(self):
        result = self.run_script(
            "unflushed\nhang\nexpect nothing within 0.05\n", "--transcript", self.path("record")
        )
        self.assert_missed(result, 3, "nothing")
        self.assertEqual(result.stdout, START + "not flushedcmd> hanging\n")
        self.assertEqual(
            self.read("record"), START + "unflushed\nnot flushedcmd> hang\nhanging\n"
        )

    def test_a_text_from_another_thread_is_waited_for(self):
        pipe = self.path("pipe")
        os.mkfifo(pipe)
        script = self.write("script", f"later {pipe}\nexpect signal: now within 50\n99\n")
        with self.started_host("--script", script) as host:
            self.read_until(host.stdout, "pipe> cmd> ")
            with open(pipe, "w", encoding="utf-8") as later:
                later.write("now\n")
            self.assertEqual(
                self.read_until(host.stdout, "closed\n"), "signal: now\nexample closed\n"
            )
            self.assertEqual(host.wait(), 0)

    def test_signals_are_left_to_the_plug_ins_threads(self):
        script = self.write("script", "one\nexpect never within 3600\n")
        with self.started_host("--script", script) as host:
            self.read_until(host.stdout, "got one\ncmd> ")
            threads = os.listdir(f"/proc/{host.pid}/task")
            self.assertGreater(len(threads), 1)
            for thread in threads:
                with open(f"/proc/{host.pid}/task/{thread}/status", encoding="utf-8") as status:
                    blocked = int(re.search("SigBlk:\\s*([0-9a-f]+)", status.read())[1], 16)
                taken = not blocked & 1 << (signal.SIGINT - 1)
                self.assertEqual(taken, int(thread) == host.pid)

    def test_texts_printed_on_leaving_can_be_expected(self):
        self.assert_done(
            self.run_script("99\nexpect example closed within 50\n"), START + "example closed\n"
        )
        result = self.run_script("99\nexpect anything else within 50\n")
        self.assert_missed(result, 2, "anything else")

    def test_words_that_follow_the_leaving_are_not_read(self):
        self.assert_done(self.run_script("99\n99\none\n"), START + "example closed\n")

    def test_standard_input_is_not_read_beside_a_script(self):
        result = self.run_host("--script", self.write("script", "one\n"), words="two\n")
        self.assert_done(result, START + "got one\ncmd> ")

    def test_a_badly_written_script_is_one_line_and_status_2_before_anything_runs(self):
        result = self.run_script("one\nexpect\n")
        self.assertEqual((result.returncode, result.stdout), (2, ""))
        self.assert_one_line(result.stderr, f"{self.script}:2: ")

    def test_an_unreadable_script_is_one_line_and_status_1(self):
        for script in (self.path("missing"), self.folder):
            result = self.run_host("--script", script)
            self.assertEqual((result.returncode, result.stdout), (1, ""))
            self.assert_one_line(result.stderr, script)

    def test_an_empty_script_ends_the_first_read(self):
        self.assert_done(self.run_script(""), START)

    def test_a_script_of_ten_thousand_steps_is_carried_out(self):
        result = self.run_script("word\nexpect got word\n" * 5000)
        self.assert_done(result, START + "got word\ncmd> " * 5000)
