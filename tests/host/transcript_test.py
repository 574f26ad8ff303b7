"""The record of a session."""

import re

from hostprocess import START, HostTestCase


class TranscriptTestCase(HostTestCase):
    def transcript_of(self, *arguments, **options):
        self.result = self.run_host("--transcript", self.path("record"), *arguments, **options)
        return self.read("record")

    def test_each_word_stands_behind_the_prompt_that_it_answered(self):
        record = self.transcript_of(words="one sub x\n\n 99 two")
        self.assertEqual(
            record,
            START + "one\ngot one\ncmd> sub\nsub> x\nsub 1 got x\nsub> 99\ncmd> two\n"
            "got two\ncmd> ",
        )
        self.assert_done(
            self.result,
            START + "got one\ncmd> sub> sub 1 got x\nsub> cmd> got two\ncmd> ",
        )

    def test_words_of_the_command_line_and_of_a_script_are_recorded_likewise(self):
        expected = START + "one\ngot one\ncmd> two\ngot two\ncmd> "
        self.assertEqual(self.transcript_of("-c", "one two"), expected)
        script = self.write("script", "one two\nexpect got two\n")
        self.assertEqual(self.transcript_of("--script", script), expected)

    def test_lines_of_two_threads_are_whole_and_in_the_order_of_the_output(self):
        record = self.transcript_of(words="both")
        self.assertEqual(record.replace("cmd> both\n", "cmd> ", 1), self.result.stdout)
        for who in ("left", "right"):
            numbers = re.findall(f"^(?:cmd> )?{who} line ([0-9]+)$", self.result.stdout, re.MULTILINE)
            self.assertEqual(numbers, [str(number) for number in range(2000)])

    def test_an_earlier_record_is_replaced(self):
        self.write("record", "x" * 1000)
        self.assertEqual(self.transcript_of(words=""), START)

    def test_a_session_that_is_killed_has_left_its_record(self):
        record = self.transcript_of(words="one crash")
        self.assertEqual(self.result.returncode, -9)
        self.assertEqual(record, START + "one\ngot one\ncmd> crash\nabout to crash")

    def test_a_record_that_cannot_be_opened_is_one_line_and_status_1_before_anything_runs(self):
        result = self.run_host("--transcript", self.path("no/such/folder"), words="one")
        self.assertEqual((result.returncode, result.stdout), (1, ""))
        self.assert_one_line(result.stderr, self.path("no/such/folder"))

    def test_a_record_that_cannot_be_written_is_told_at_the_end(self):
        for words, output in (("one", "got one\ncmd> "), ("99", "example closed\n")):
            result = self.run_host("--transcript", "/dev/full", words=words)
            self.assertEqual((result.returncode, result.stdout), (1, START + output))
            self.assert_one_line(result.stderr, "/dev/full")
