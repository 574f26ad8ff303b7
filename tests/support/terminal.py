"""A program on a terminal of its own."""

import pexpect

from programs import LIMIT


class Terminal(pexpect.spawn):
    def __init__(self, program, *arguments, environment=None, echo=False):
        super().__init__(program, list(arguments), env=environment, echo=echo, timeout=LIMIT, encoding="utf-8",
                         dimensions=(50, 200))
        # What is typed is sent at once.
        self.delaybeforesend = None

    def expect_all(self, *texts):
        """Waits for each of the texts in turn; what came before the first."""
        before = None
        for text in texts:
            self.expect_exact(text)
            before = self.before if before is None else before
        return before

    def type(self, words, *texts):
        """Types each word on a line of its own, and waits for the texts."""
        for word in words.split():
            self.sendline(word)
        return self.expect_all(*texts)

    def answer(self, *steps):
        """Each step is a word to type and the text that comes of it."""
        for word, text in steps:
            self.type(word, text)

    def end(self):
        """Waits for the program's end: its exit status, or else the signal that ended it."""
        self.expect_exact(pexpect.EOF)
        self.wait()
        return self.exitstatus, self.signalstatus

    def leave(self, words):
        """Types the words and sees the program end well."""
        self.type(words)
        assert self.end() == (0, None), self.before
