#!/usr/bin/env python3
"""Somebody who hits any key: random keys, pastes, window sizes and signals at the prompt, in a pseudo-terminal.

    terminal_fuzz.py PROGRAM SECONDS [SEED]         sessions, one seed after the other; the first is printed
    terminal_fuzz.py PROGRAM --replay SEED|FILE     one session again, by its seed or its actions

After its actions a session must still answer a call. A find is a sanitizer's report, no answer for a while, an end by a
signal that was not sent or with a status above 0, a terminal that is left in other modes than it was found in. It is told
with its seed and its actions, one a line: put into a file, they can be made fewer by hand. Leaks are not asked for: the
editing library keeps its state to the end of the process.
"""
import fcntl
import os
import pathlib
import pty
import random
import select
import signal
import struct
import sys
import tempfile
import termios
import time

from terminal import CTRL_C, CTRL_D, ENTER, PAYMENT, TAB

PATIENCE = 20.0  # seconds for the answer in the end; a sanitized build on a busy machine is slow
PROBE = "PMT 0.005 360 200000"
REPORTS = (b"AddressSanitizer", b"runtime error:", b"DEADLYSIGNAL")
GO_ON_KEY = b"\x11"  # Ctrl-S among random keys stops all output
QUIT_KEY = b"\x1c"  # the terminal makes a SIGQUIT of it
WAYS_OUT = (b"quit", b"exit", CTRL_D.encode())
ENDING = (signal.SIGHUP, signal.SIGTERM, signal.SIGQUIT)
ENVIRONMENT = {"TERM": "xterm", "ASAN_OPTIONS": "detect_leaks=0", "UBSAN_OPTIONS": "halt_on_error=1:print_stacktrace=1"}


# ---- What is done

NAMES = ("PMT", "pm", "PRICE", "COUPN", "XIRR", "YEARFRAC 2024-01-01 2024-07-01 basis=", "map ", "map 'PMT(", "fold ",
         "schedule ", "schedule loan ", "plot ", "help ", "?", "?PM", "variables", "list", "_", "r = ", "r", "NPV 0.25 ",
         "map 'SLN(a, 0, 1)' --", "fold 'IRR(a)' --by ", "map 'SLN(a, 0, 1)' table.csv --output ", "--json ", "quit", "exit")
PIECES = ("'", '"', "(", ")", ",", "=", "\\", "#", "-", "--", "..", " ", "  ", "0", "1e308", "-1", "5%", "2024-02-30", ".",
          "rate=", "nper=", "é", "ü", "日本", "\u0301", "𝔘", "\u200d", "\ufeff")
KEYS = (TAB, TAB + TAB, ENTER, "\n", CTRL_C, "\x01", "\x02", "\x05", "\x06", "\x07", "\x08", "\x0b", "\x0c", "\x0e", "\x10",
        "\x12", "\x14", "\x15", "\x16", "\x17", "\x19", "\x1a", "\x7f", "\x1b", "\x1bb", "\x1bd", "\x1bf", "\x1bx", "\x1b\x7f",
        "\x1b[A", "\x1b[B", "\x1b[C", "\x1b[D", "\x1b[H", "\x1b[F", "\x1b[3~", "\x1b[2~", "\x1bOA", "\x1b[200~", "\x1b[201~",
        "\x1b5", "\x1b99", "\x1b<", "\x1b>", "\x1bu", "\x1bl", "\x1bc", "\x1b\x1b", "\x18\x18", "\x00")


def any_bytes(draw, most):
    return bytes(draw.randrange(256) for _ in range(draw.randint(1, most)))


def pasted(draw):
    """A long line, or many short ones."""
    unit = draw.choice(["x", "1,", "(", "é", "日", "PMT(1,", "\x1b[A", "1 2 3\r", "'", "\t"]).encode()
    return unit, draw.randint(1, 6000) // len(unit) + 1


def action(draw):
    kind = draw.random()
    if kind < 0.30:
        return "keys", draw.choice(NAMES).encode() + draw.choice((b"", TAB.encode(), ENTER.encode()))
    if kind < 0.60:
        return "keys", "".join(draw.choice(KEYS) for _ in range(draw.randint(1, 4))).encode()
    if kind < 0.72:
        return "keys", "".join(draw.choice(PIECES) for _ in range(draw.randint(1, 6))).encode()
    if kind < 0.80:
        return "keys", any_bytes(draw, 20)
    if kind < 0.83:
        return "paste", pasted(draw)
    if kind < 0.90:
        return "size", (draw.choice((0, 1, 2, 24, 500)), draw.choice((0, 1, 2, 5, 9, 10, 11, 80, 1000)))
    if kind < 0.97:
        return "signal", int(draw.choice((signal.SIGINT, signal.SIGTSTP, signal.SIGWINCH, signal.SIGCONT)))
    if kind < 0.995:
        return "wait", draw.choice((0.001, 0.01, 0.05))
    return "signal", int(draw.choice(ENDING))


def session_of(seed):
    draw = random.Random(seed)
    history = b"".join(any_bytes(draw, 60) + b"\n" for _ in range(draw.choice((0, 0, 3))))
    locale = draw.choice(("C.UTF-8", "C.UTF-8", "C"))
    return [("history", history), ("locale", locale)] + [action(draw) for _ in range(draw.randint(5, 60))]


# ---- The terminal, with something like a shell in it

def shell(program, report):
    """Runs the program in the foreground, continues it whenever it stops, tells its end and whether the modes are kept."""
    for number in (signal.SIGINT, signal.SIGQUIT, signal.SIGTSTP, signal.SIGTTOU, signal.SIGTTIN, signal.SIGHUP):
        signal.signal(number, signal.SIG_IGN)
    before = termios.tcgetattr(0)
    process = os.fork()
    if process == 0:
        os.setpgid(0, 0)
        os.tcsetpgrp(0, os.getpid())
        for number in (signal.SIGINT, signal.SIGQUIT, signal.SIGTSTP, signal.SIGTTOU, signal.SIGTTIN, signal.SIGHUP):
            signal.signal(number, signal.SIG_DFL)
        os.execv(program, [program])
    os.write(report, f"{process}\n".encode())
    while True:
        status = os.waitpid(process, os.WUNTRACED)[1]
        if not os.WIFSTOPPED(status):
            break
        os.tcsetpgrp(0, os.getpgrp())
        time.sleep(0.01)
        os.tcsetpgrp(0, process)
        os.killpg(process, signal.SIGCONT)
    os.tcsetpgrp(0, os.getpgrp())
    kept = termios.tcgetattr(0) == before
    os.write(report, f"{os.waitstatus_to_exitcode(status)} {int(kept)}\n".encode())
    os._exit(0)


class Find(Exception):
    pass


class Session:
    """One run of the program, from its start to its end."""

    def __init__(self, program, folder, actions):
        told = dict(actions[:2])
        (folder / "finance").mkdir()
        (folder / "finance" / "history").write_bytes(told["history"])
        (folder / "table.csv").write_text("rate,nper,pv,a\n0.005,360,200000,1\n")
        self.report, report = os.pipe()
        self.shell, self.screen = pty.fork()
        if self.shell == 0:
            os.environ.update(ENVIRONMENT | {"LC_ALL": told["locale"], "XDG_STATE_HOME": str(folder)})
            os.chdir(folder)
            shell(program, report)
        os.close(report)
        os.set_blocking(self.screen, False)
        self.shown, self.sent = b"", set()
        self.told = b""  # by the shell
        self.process = int(self.line_told(PATIENCE))
        self.wait_for(b"finance> ", PATIENCE)

    def line_told(self, patience):
        """What the shell tells next; "" where it says nothing."""
        deadline = time.monotonic() + patience
        while b"\n" not in self.told:
            left = deadline - time.monotonic()
            if left <= 0 or not self.pump(min(left, 0.2)) and not select.select([self.report], [], [], 0)[0]:
                if left <= 0:
                    return ""
                continue
            if select.select([self.report], [], [], 0)[0]:
                piece = os.read(self.report, 100)
                self.told += piece
                if not piece:
                    return ""
        line, self.told = self.told.split(b"\n", 1)
        return line.decode()

    def pump(self, patience):
        """Reads what the screen shows; whether there was anything."""
        if not select.select([self.screen, self.report], [], [], patience)[0]:
            return False
        try:
            piece = os.read(self.screen, 65536)
        except BlockingIOError:
            return False
        except OSError:  # all have left
            return False
        self.shown += piece
        return True

    def check_reports(self):
        for report in REPORTS:
            if report in self.shown:
                self.wait_for(b"ABORTING", 10.0)
                at = self.shown.index(report)
                raise Find("a sanitizer's report:\n" + self.shown[at:at + 6000].decode(errors="replace"))

    def ended(self):
        return bool(select.select([self.report], [], [], 0)[0]) or bool(self.told)

    def wait_for(self, text, patience):
        deadline = time.monotonic() + patience
        while text not in self.shown and not self.ended() and time.monotonic() < deadline:
            self.pump(0.05)
        return text in self.shown

    def type(self, text):
        """Nothing is lost where the terminal has no room for a while; what the program never reads is."""
        deadline = time.monotonic() + PATIENCE
        while text and not self.ended() and time.monotonic() < deadline:
            try:
                text = text[os.write(self.screen, text):]
            except BlockingIOError:
                pass
            except OSError:
                return
            self.pump(0.002)

    def do(self, kind, what):
        if kind == "paste":
            self.do("keys", what[0] * what[1])
        elif kind == "keys":
            if QUIT_KEY in what:
                self.sent.add(signal.SIGQUIT)
            if any(way in what for way in WAYS_OUT):  # an interrupt may come upon its end
                self.sent.add(signal.SIGINT)
            self.type(what)
            while self.pump(0.002):
                pass
        elif kind == "size":
            fcntl.ioctl(self.screen, termios.TIOCSWINSZ, struct.pack("HHHH", *what, 0, 0))
        elif kind == "signal" and not self.ended():
            if what in ENDING:
                self.sent.add(what)
            os.kill(self.process, what)
        elif kind == "wait":
            time.sleep(what)

    def answers(self):
        """Whatever state it is in, an interrupt ends it; then a call is answered. False where it has ended."""
        deadline = time.monotonic() + PATIENCE
        fcntl.ioctl(self.screen, termios.TIOCSWINSZ, struct.pack("HHHH", 24, 80, 0, 0))
        while not self.ended() and time.monotonic() < deadline:
            while self.pump(0.02):
                pass
            self.type(GO_ON_KEY + CTRL_C.encode())
            self.pump(0.05)
            self.check_reports()
            self.shown = b""
            self.type((PROBE + ENTER).encode())
            answered = self.wait_for(PAYMENT.encode(), 2.0)
            self.check_reports()
            if answered:
                return True
        if self.ended():
            return False
        raise Find(f"no answer within {PATIENCE} s; the screen shows {self.shown[-2000:]!r}")

    def leave(self):
        """How it ends: by Ctrl-D at an empty line, unless it has ended already."""
        for attempt in range(10):
            if self.ended():
                break
            if attempt > 0:  # a key may have come late
                self.sent.add(signal.SIGINT)
                self.type(CTRL_C.encode())
            self.wait_for(b"finance> ", 2.0)
            self.type(CTRL_D.encode())
            for _ in range(20):
                if not self.ended():
                    self.pump(0.1)
        end = self.line_told(PATIENCE)
        while self.pump(0.05):
            pass
        self.check_reports()
        if not end:
            raise Find(f"it does not end; the screen shows {self.shown[-2000:]!r}")
        status, kept = map(int, end.split())
        if status != 0 and -status not in self.sent:
            raise Find(f"status {status}; the screen shows {self.shown[-3000:]!r}")
        if not kept:
            raise Find("the terminal is left in other modes")

    def close(self):
        for process in (getattr(self, "process", 0), self.shell):
            try:
                if process:
                    os.kill(process, signal.SIGKILL)
            except ProcessLookupError:
                pass
        os.close(self.screen)
        os.close(self.report)
        os.waitpid(self.shell, 0)


def run(program, actions):
    """What is found, or None."""
    with tempfile.TemporaryDirectory(prefix="finance_keys_") as folder:
        session = Session(program, pathlib.Path(folder), actions)
        try:
            for kind, what in actions[2:]:
                if not session.ended():
                    session.do(kind, what)
                session.check_reports()
            session.answers()
            session.leave()
        except Find as find:
            return str(find)
        finally:
            session.close()
    return None


def told(seed, actions, find):
    print(f"terminal_fuzz: seed {seed}: {find}\nits actions:", *map(repr, actions), sep="\n")


def replay(program, what):
    if what.isdigit():
        actions = session_of(int(what))
    else:
        actions = [eval(line, {}) for line in pathlib.Path(what).read_text().splitlines() if line]  # pylint: disable=eval-used
    find = run(program, actions)
    if find:
        told(what, actions, find)
    return 1 if find else 0


def main():
    program = str(pathlib.Path(sys.argv[1]).resolve())
    if sys.argv[2] == "--replay":
        return replay(program, sys.argv[3])
    seed = int(sys.argv[3]) if len(sys.argv) > 3 else int.from_bytes(os.urandom(4), "big")
    print(f"terminal_fuzz: the first seed is {seed}", flush=True)
    deadline = time.monotonic() + float(sys.argv[2])
    sessions = done = 0
    while time.monotonic() < deadline:
        actions = session_of(seed + sessions)
        find = run(program, actions)
        if find:
            told(seed + sessions, actions, find)
            return 1
        sessions, done = sessions + 1, done + len(actions)
    print(f"terminal_fuzz: {sessions} sessions, {done} actions, nothing found")
    return 0 if sessions else 1


if __name__ == "__main__":
    sys.exit(main())
