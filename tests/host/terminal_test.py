"""The host at a real terminal."""

import signal
import termios

import pytest

from example import EXAMPLE
from programs import HOST
from terminal import Terminal


@pytest.fixture
def open_terminal(folder):
    """A terminal at the example's first prompt."""
    opened = []

    def start(*arguments):
        terminal = Terminal(HOST, EXAMPLE, "--transcript", str(folder / "record"), *arguments, echo=True)
        opened.append(terminal)
        return terminal
    yield start
    for terminal in opened:
        terminal.close(force=True)


@pytest.fixture
def terminal(open_terminal):
    terminal = open_terminal()
    terminal.expect_exact("cmd> ")
    return terminal


def modes(terminal):
    return termios.tcgetattr(terminal.child_fd)


def test_a_line_is_answered_as_soon_as_it_is_typed(terminal):
    found = modes(terminal)
    for word in ("one", "two"):
        terminal.type(word, f"{word}\r\ngot {word}\r\ncmd> ")
    terminal.type("99", "example closed")
    assert terminal.end() == (0, None)
    assert modes(terminal) == found


def test_an_empty_line_asks_for_nothing_new(terminal):
    terminal.sendline("")
    assert terminal.type("one", "got one\r\ncmd> ") == "\r\none\r\n"


def test_control_d_is_the_end_of_input_at_any_depth(terminal, folder):
    terminal.type("sub", "sub> ")
    terminal.sendeof()
    assert terminal.end() == (0, None)
    assert "THE END WAS SEEN" not in terminal.before
    assert (folder / "record").read_text() == "Example\ncmd> sub\nsub> "


def test_control_d_after_a_word_lets_the_word_have_its_effect(terminal):
    terminal.send("one")
    terminal.sendeof()
    terminal.sendeof()
    terminal.expect_exact("got one\r\ncmd> ")
    assert terminal.end() == (0, None)


@pytest.mark.parametrize("word, shown, record", [
    ("", "", "Example\ncmd> "), ("hang", "hanging", "Example\ncmd> hang\nhanging\n")], ids=["at a prompt", "hanging"])
def test_control_c_ends_it_as_an_interrupted_program(terminal, folder, word, shown, record):
    terminal.type(word, *([shown] if shown else []))
    terminal.sendintr()
    assert terminal.end() == (None, signal.SIGINT)
    assert (folder / "record").read_text() == record


@pytest.mark.parametrize("leave, ended", [
    (lambda terminal: terminal.sendintr(), (None, signal.SIGINT)),
    (lambda terminal: terminal.kill(signal.SIGTERM), (None, signal.SIGTERM)),
    (lambda terminal: terminal.kill(signal.SIGHUP), (None, signal.SIGHUP)),
    (lambda terminal: terminal.sendeof(), (0, None)), (lambda terminal: terminal.sendline("99"), (0, None))],
    ids=["control C", "SIGTERM", "SIGHUP", "end of input", "99"])
def test_changed_modes_are_put_back(terminal, leave, ended):
    found = modes(terminal)
    terminal.type("noecho", "echo is off", "cmd> ")
    assert modes(terminal) != found
    leave(terminal)
    assert terminal.end() == ended
    assert modes(terminal) == found


def test_control_c_ends_a_script_that_waits(open_terminal, folder):
    (folder / "script").write_text("noecho\nexpect never within 3600\n")
    terminal = open_terminal("--script", str(folder / "script"))
    terminal.expect_exact("echo is off\r\ncmd> ")
    assert not modes(terminal)[3] & termios.ECHO
    terminal.sendintr()
    assert terminal.end() == (None, signal.SIGINT)
    assert modes(terminal)[3] & termios.ECHO
