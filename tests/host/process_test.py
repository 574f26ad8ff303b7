"""How the host opens a plug-in, feeds it, and ends."""

import fcntl
import os
import shutil
import signal
import subprocess
import time
import unittest

from hostprocess import BUILD, EXAMPLE, HOST, LIMIT, START, HostTestCase

MISSING = "/usr/lib/no-such-plugin.so"


class InputTestCase(HostTestCase):
    def test_piped_words_put_only_the_consoles_own_bytes_on_the_output(self):
        result = self.run_host(words="one two\n99\n")
        self.assert_done(result, START + "got one\ncmd> got two\ncmd> example closed\n")

    def test_words_of_the_command_line_take_the_place_of_standard_input(self):
        result = self.run_host("-c", "one 99", words="other\n")
        self.assert_done(result, START + "got one\ncmd> example closed\n")

    def test_no_words_end_the_first_read(self):
        self.assert_done(self.run_host("-c", ""), START)

    def test_the_last_word_has_its_effect_without_a_line_end(self):
        self.assert_done(self.run_host(words="one"), START + "got one\ncmd> ")
        self.assert_done(self.run_host(words="99"), START + "example closed\n")
        self.assert_done(self.run_host("-c", "one"), START + "got one\ncmd> ")

    def test_the_end_of_input_ends_any_depth_without_being_seen(self):
        for depth in range(1, 4):
            output = START + "sub> " * depth
            self.assert_done(self.run_host(words="sub " * depth), output)
            output = START + "sub> " * depth + f"sub {depth} got x\nsub> "
            self.assert_done(self.run_host(words="sub " * depth + "x"), output)

    def test_a_hundred_thousand_words_all_have_their_effect(self):
        result = self.run_host(words="word\n" * 100_000)
        self.assert_done(result, START + "got word\ncmd> " * 100_000)

    def test_an_absent_standard_input_is_an_empty_one(self):
        process = subprocess.run(
            ["/bin/sh", "-c", 'exec "$@" <&-', "sh", HOST, EXAMPLE],
            capture_output=True, text=True, timeout=LIMIT, check=False,
        )
        self.assert_done(process, START)

    def test_a_prompt_that_the_plug_in_does_not_flush_comes_before_the_host_waits(self):
        with self.started_host() as host:
            self.read_until(host.stdout, "cmd> ")
            host.stdin.write(b"ask\n")
            self.assertEqual(self.read_until(host.stdout, "name? "), "name? ")
            host.stdin.write(b"you\n")
            self.assertEqual(self.read_until(host.stdout, "cmd> "), "hello you\ncmd> ")

    def test_the_process_ends_within_200_ms_of_the_read_that_finds_no_word(self):
        # A sanitizer's own work at the end is not what is measured.
        limit = 3.0 if BUILD else 0.2
        times = []
        for _ in range(5):
            with self.started_host() as host:
                host.stdin.write(b"sub sub\n")
                self.read_until(host.stdout, "cmd> sub> sub> ")
                before = time.monotonic()
                host.stdin.close()
                self.assertEqual(host.wait(LIMIT), 0)
                times.append(time.monotonic() - before)
        self.assertLess(min(times), limit)

    def test_a_read_interrupted_by_a_signal_is_taken_up_again(self):
        with self.started_host() as host:
            host.stdin.write(b"usr1 ")
            self.read_until(host.stdout, "cmd> cmd> ")
            for _ in range(3):
                host.send_signal(signal.SIGUSR1)
                self.read_until(host.stdout, "usr1\n")
                host.stdin.write(b"one ")
                self.assertEqual(self.read_until(host.stdout, "cmd> "), "got one\ncmd> ")
            host.stdin.close()
            self.assertEqual(host.wait(LIMIT), 0)

    def test_a_non_blocking_standard_input_is_waited_for(self):
        reader, writer = os.pipe()
        fcntl.fcntl(reader, fcntl.F_SETFL, os.O_NONBLOCK)
        with self.started_host(stdin=reader) as host:
            os.close(reader)
            self.read_until(host.stdout, "cmd> ")
            os.write(writer, b"one")
            os.close(writer)
            self.read_until(host.stdout, "got one\ncmd> ")
            self.assertEqual(host.wait(LIMIT), 0)


class LoadingTestCase(HostTestCase):
    def test_the_entrys_return_closes_the_plug_in_and_is_status_0(self):
        # The farewell is in the record: it was said while the host was still listening, so before main had ended.
        result = self.run_host("--transcript", self.path("record"), words="99")
        self.assert_done(result, START + "example closed\n")
        self.assertEqual(self.read("record"), START + "99\nexample closed\n")

    def test_another_entry_is_run_where_it_is_named(self):
        result = self.run_host("--entry", "another_entry")
        self.assert_done(result, "another entry\nexample closed\n")

    def test_a_missing_plug_in_is_one_line_and_status_1(self):
        result = self.run_host(plugin=MISSING)
        self.assertEqual((result.returncode, result.stdout), (1, ""))
        self.assert_one_line(result.stderr, MISSING)

    def test_a_file_that_is_no_library_is_one_line_and_status_1(self):
        result = self.run_host(plugin=self.write("plugin.so", "text\n"))
        self.assertEqual((result.returncode, result.stdout), (1, ""))
        self.assert_one_line(result.stderr, "plugin.so")

    def test_a_missing_entry_is_one_line_and_status_1(self):
        result = self.run_host("--entry", "no_such_entry")
        self.assertEqual(result.returncode, 1)
        self.assert_one_line(result.stderr, "no_such_entry", EXAMPLE)

    def test_a_bad_command_line_is_one_line_and_status_2(self):
        for arguments in (["--bogus"], ["-c", "1", "--script", "s"], ["second.so"]):
            result = self.run_host(*arguments)
            self.assertEqual((result.returncode, result.stdout), (2, ""))
            self.assert_one_line(result.stderr)

    def test_help_is_status_0(self):
        result = self.run_host("--help", plugin=MISSING)
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        self.assertIn("--transcript FILE", result.stdout)

    def install(self):
        """The host alone in a folder of its own."""
        for folder in ("bin", "lib", "elsewhere"):
            os.mkdir(self.path(folder))
        return shutil.copy2(HOST, self.path("bin"))

    def run_installed(self, host, **environment):
        return subprocess.run(
            [host], stdin=subprocess.DEVNULL, capture_output=True, text=True, timeout=LIMIT,
            check=False, env={**os.environ, **environment},
        )

    def test_the_default_plug_in_stands_beside_the_host(self):
        host = self.install()
        shutil.copy2(EXAMPLE, self.path("lib/libzarn-debugmenu.so"))
        self.write("elsewhere/libzarn-debugmenu.so", "not a library\n")
        result = self.run_installed(host, LD_LIBRARY_PATH=self.path("elsewhere"))
        self.assert_done(result, START)

    def test_without_one_beside_it_the_loader_finds_the_default_plug_in(self):
        host = self.install()
        shutil.copy2(EXAMPLE, self.path("elsewhere/libzarn-debugmenu.so"))
        result = self.run_installed(host, LD_LIBRARY_PATH=self.path("elsewhere"))
        self.assert_done(result, START)

    def test_without_any_default_plug_in_it_is_one_line_and_status_1(self):
        result = self.run_installed(self.install())
        self.assertEqual(result.returncode, 1)
        self.assert_one_line(result.stderr, "libzarn-debugmenu.so")

    def test_children_of_the_plug_in_inherit_the_standard_descriptors_only(self):
        reader, writer = os.pipe()
        self.addCleanup(os.close, reader)
        self.addCleanup(os.close, writer)
        script = self.write("script", "child\n")
        for input_options in ([], ["--script", script], ["-c", "child"]):
            result = self.run_host(
                "--transcript", self.path("record"), *input_options,
                words="child\n", pass_fds=(reader, writer),
            )
            # The last number is the listing program's own.
            self.assert_done(result, START + "child has:\n0\n1\n2\n3\ncmd> ")


class OutputTestCase(HostTestCase):
    def end_with_reader_gone(self, words, **options):
        """Lets the host print into a pipe that nobody reads, with words that never run out."""
        feeder = subprocess.Popen(["/usr/bin/yes", words], stdout=subprocess.PIPE)
        reader, writer = os.pipe()
        os.close(reader)
        try:
            with self.started_host(stdin=feeder.stdout, stdout=writer, **options) as host:
                os.close(writer)
                return host.wait(LIMIT), host.stderr.read().decode()
        finally:
            feeder.kill()
            feeder.wait()
            feeder.stdout.close()

    def test_a_reader_that_has_gone_ends_the_process(self):
        self.assertEqual(self.end_with_reader_gone("word"), (-signal.SIGPIPE, ""))

    def test_a_reader_that_has_gone_ends_it_though_the_caller_ignores_the_signal(self):
        result = self.end_with_reader_gone(
            "word",
            restore_signals=False,
            preexec_fn=lambda: signal.signal(signal.SIGPIPE, signal.SIG_IGN),
        )
        self.assertEqual(result, (-signal.SIGPIPE, ""))

    def test_a_reader_that_goes_ends_it_though_the_plug_in_ignores_the_signal(self):
        with self.started_host() as host:
            host.stdin.write(b"ignorepipe ")
            self.read_until(host.stdout, "cmd> cmd> ")
            host.stdout.close()
            host.stdin.write(b"word ")
            self.assertEqual(host.wait(LIMIT), 1)
            self.assert_one_line(host.stderr.read().decode(), "standard output")

    def test_output_that_cannot_be_written_is_one_line_and_status_1(self):
        with open("/dev/full", "w", encoding="utf-8") as full:
            for words in (b"one two", b"99"):
                reader, writer = os.pipe()
                os.write(writer, words)
                os.close(writer)
                with self.started_host(stdin=reader, stdout=full) as host:
                    os.close(reader)
                    self.assertEqual(host.wait(LIMIT), 1)
                    self.assert_one_line(host.stderr.read().decode(), "standard output")

    def test_output_of_a_plug_in_that_ends_unflushed_is_not_lost(self):
        self.assert_done(self.run_host(words="unflushed"), START + "not flushedcmd> ")


    def test_absent_standard_descriptors_are_not_taken_by_a_file_that_the_host_opens(self):
        for closed in ("<&- >&-", "<&- >&- 2>&-"):
            process = subprocess.run(
                ["/bin/sh", "-c", f'exec "$@" {closed}', "sh", HOST, EXAMPLE, "-c", "one child 99",
                 "--transcript", self.path("record")],
                timeout=LIMIT, check=False,
            )
            self.assertEqual(process.returncode, 0)
            self.assertEqual(
                self.read("record"),
                START + "one\ngot one\ncmd> child\nchild has:\ncmd> 99\nexample closed\n",
            )


class InstrumentedTestCase(HostTestCase):
    @unittest.skipUnless("address" in BUILD, "only an address sanitizer build looks for leaks")
    def test_a_leak_is_reported_at_the_end_of_input(self):
        result = self.run_host(words="leak sub")
        self.assertIn("LeakSanitizer", result.stderr)
        self.assertNotEqual(result.returncode, 0)

    @unittest.skipUnless("thread" in BUILD, "only a thread sanitizer build looks for races")
    def test_a_race_is_not_forgotten_at_the_end_of_input(self):
        result = self.run_host(words="race sub")
        self.assertIn("ThreadSanitizer: data race", result.stderr)
        self.assertEqual(result.returncode, 66)

    @unittest.skipUnless("coverage" in BUILD, "only a coverage build counts")
    def test_counted_lines_of_host_and_plug_in_are_written_at_the_end_of_input(self):
        self.run_host(words="sub", env={**os.environ, "GCOV_PREFIX": self.folder})
        written = [name for _, _, names in os.walk(self.folder) for name in names]
        self.assertIn("ExampleConsole.cpp.gcda", written)
        self.assertIn("ConsoleRun.cpp.gcda", written)
