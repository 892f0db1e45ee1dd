"""A person at a pseudo-terminal: what is typed at a program, and what the screen shows."""
import fcntl
import os
import pathlib
import pty
import re
import select
import struct
import sys
import tempfile
import termios
import time

PATIENCE = 20.0  # seconds for a text to appear; a sanitized build on a busy machine is slow
PROMPT = "finance> "
WITHIN = ".. "  # where a line goes on
PAYMENT = "-1199.1010503055047"
TAB, UP, ENTER, CTRL_C, CTRL_D, CTRL_Z = "\t", "\x1b[A", "\r", "\x03", "\x04", "\x1a"
CONTROL_SEQUENCE = re.compile(r"\x1b\[[0-9;?]*[A-Za-z]|\x07|\x1b[=>]")


class Terminal:
    """One run of the program. What it has shown since the last expectation is in `shown`."""

    def __init__(self, program, state, arguments=(), **environment):
        self.process, self.screen = pty.fork()
        if self.process == 0:
            os.environ.update({"TERM": "xterm", "LC_ALL": "C.UTF-8", "XDG_STATE_HOME": str(state)} | environment)
            os.execv(program, [program, *arguments])
        self.resize(50, 200)
        self.shown = ""

    def resize(self, rows, columns):
        fcntl.ioctl(self.screen, termios.TIOCSWINSZ, struct.pack("HHHH", rows, columns, 0, 0))

    def type(self, text):
        os.write(self.screen, text if isinstance(text, bytes) else text.encode())

    def read(self, patience):
        """False where nothing comes any more."""
        if not select.select([self.screen], [], [], patience)[0]:
            return False
        try:
            piece = os.read(self.screen, 4096)
        except OSError:  # the program has left
            return False
        self.shown += CONTROL_SEQUENCE.sub("", piece.decode(errors="replace"))
        return bool(piece)

    def expect(self, text):
        """Waits until the screen shows the text; returns what came before it and forgets both."""
        deadline = time.monotonic() + PATIENCE
        while text not in self.shown:
            if not self.read(max(0.0, deadline - time.monotonic())) and text not in self.shown:
                raise AssertionError(f"{text!r} does not appear, but {self.shown!r}")
        before, self.shown = self.shown.split(text, 1)
        return before

    def ask(self, line, answer):
        """Types a line; the next thing printed must be the answer."""
        self.type(line + ENTER)
        self.expect("\r\n")
        before = self.expect("\n")
        assert before == answer + "\r", f"{line!r} answers {before!r}, not {answer!r}"
        self.expect(PROMPT)

    def wait(self):
        """The exit status, or minus the signal that ended it."""
        return os.waitstatus_to_exitcode(os.waitpid(self.process, 0)[1])

    def leave(self):
        while self.read(PATIENCE):
            pass
        return self.wait()


def run_sessions(*sessions):
    """Each is given the program of the command line and a folder for its state that they share."""
    program = sys.argv[1]
    with tempfile.TemporaryDirectory() as folder:
        for session in sessions:
            session(program, pathlib.Path(folder))
            print(f"{session.__name__}: as expected")
