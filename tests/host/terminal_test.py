"""The host at a real terminal."""

import signal
import termios

import pexpect

from hostprocess import EXAMPLE, HOST, LIMIT, HostTestCase


class AtTerminal(HostTestCase):
    def start(self, *arguments):
        self.terminal = pexpect.spawn(HOST, [EXAMPLE, *arguments], timeout=LIMIT)
        self.addCleanup(self.terminal.close, force=True)
        self.terminal.delaybeforesend = None
        self.terminal.expect_exact("cmd> ")

    def modes(self):
        return termios.tcgetattr(self.terminal.child_fd)

    def wait_for_end(self):
        """The exit status, or else the signal that ended the host."""
        self.terminal.wait()
        return self.terminal.exitstatus, self.terminal.signalstatus


class TerminalTestCase(AtTerminal):
    def setUp(self):
        super().setUp()
        self.start("--transcript", self.path("record"))
        self.found = self.modes()

    def switch_echo_off(self):
        self.terminal.sendline("noecho")
        self.terminal.expect_exact("echo is off")
        self.terminal.expect_exact("cmd> ")
        self.assertNotEqual(self.modes(), self.found)

    def assert_modes_as_found(self):
        self.assertEqual(self.modes(), self.found)

    def test_a_line_is_answered_as_soon_as_it_is_typed(self):
        for word in ("one", "two"):
            self.terminal.sendline(word)
            self.terminal.expect_exact(f"{word}\r\ngot {word}\r\ncmd> ")
        self.terminal.sendline("99")
        self.terminal.expect_exact("example closed")
        self.assertEqual(self.wait_for_end(), (0, None))
        self.assert_modes_as_found()

    def test_an_empty_line_asks_for_nothing_new(self):
        self.terminal.sendline("")
        self.terminal.sendline("one")
        self.terminal.expect_exact("got one\r\ncmd> ")
        self.assertEqual(self.terminal.before, b"\r\none\r\n")

    def test_control_d_is_the_end_of_input_at_any_depth(self):
        self.terminal.sendline("sub")
        self.terminal.expect_exact("sub> ")
        self.terminal.sendeof()
        self.terminal.expect_exact(pexpect.EOF)
        self.assertEqual(self.wait_for_end(), (0, None))
        self.assertNotIn(b"THE END WAS SEEN", self.terminal.before)
        self.assertEqual(self.read("record"), "Example\ncmd> sub\nsub> ")

    def test_control_d_behind_a_word_lets_the_word_have_its_effect(self):
        self.terminal.send("one")
        self.terminal.sendeof()
        self.terminal.sendeof()
        self.terminal.expect_exact("got one\r\ncmd> ")
        self.assertEqual(self.wait_for_end(), (0, None))

    def test_control_c_at_a_prompt_ends_it_as_an_interrupted_program(self):
        self.terminal.sendintr()
        self.assertEqual(self.wait_for_end(), (None, signal.SIGINT))
        self.assert_modes_as_found()
        self.assertEqual(self.read("record"), "Example\ncmd> ")

    def test_control_c_ends_a_console_that_hangs(self):
        self.terminal.sendline("hang")
        self.terminal.expect_exact("hanging")
        self.terminal.sendintr()
        self.assertEqual(self.wait_for_end(), (None, signal.SIGINT))
        self.assertEqual(self.read("record"), "Example\ncmd> hang\nhanging\n")

    def test_changed_modes_are_put_back_by_control_c(self):
        self.switch_echo_off()
        self.terminal.sendintr()
        self.assertEqual(self.wait_for_end(), (None, signal.SIGINT))
        self.assert_modes_as_found()

    def test_changed_modes_are_put_back_when_the_process_is_asked_to_end(self):
        for number in (signal.SIGTERM, signal.SIGHUP):
            self.switch_echo_off()
            self.terminal.kill(number)
            self.assertEqual(self.wait_for_end(), (None, number))
            self.assert_modes_as_found()
            self.start()

    def test_changed_modes_are_put_back_at_the_end_of_input(self):
        self.switch_echo_off()
        self.terminal.sendeof()
        self.assertEqual(self.wait_for_end(), (0, None))
        self.assert_modes_as_found()

    def test_changed_modes_are_put_back_when_the_entry_returns(self):
        self.switch_echo_off()
        self.terminal.sendline("99")
        self.assertEqual(self.wait_for_end(), (0, None))
        self.assert_modes_as_found()


class ScriptedTerminalTestCase(AtTerminal):
    def test_control_c_ends_a_script_that_waits(self):
        self.start("--script", self.write("script", "noecho\nexpect never within 3600\n"))
        self.terminal.expect_exact("echo is off\r\ncmd> ")
        self.assertFalse(self.modes()[3] & termios.ECHO)
        self.terminal.sendintr()
        self.assertEqual(self.wait_for_end(), (None, signal.SIGINT))
        self.assertTrue(self.modes()[3] & termios.ECHO)
