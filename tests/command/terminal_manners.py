#!/usr/bin/env python3
"""What the prompt leaves behind, and what stops it: real shells in a pseudo-terminal.

    terminal_manners.py PROGRAM
"""
import os
import pathlib
import shutil
import signal
import threading
import time

from terminal import CTRL_C, CTRL_D, CTRL_Z, ENTER, PAYMENT, PROMPT, TAB, Terminal, run_sessions

SHELLS = {"bash": ["--norc", "--noprofile", "-i"], "zsh": ["-f", "-i"]}
SHELL_PROMPT = "shell: "


class Shell(Terminal):
    def __init__(self, name, state):
        super().__init__(shutil.which(name), state, arguments=SHELLS[name], PS1=SHELL_PROMPT)
        self.expect(SHELL_PROMPT)
        self.run(":")  # told the size of its window, a shell may show its prompt once more

    def run(self, line):
        self.type(f"{line}; printf 'do''ne\\n'{ENTER}")  # what is typed is not what is printed
        self.expect("done\r\n")
        self.expect(SHELL_PROMPT)

    def modes(self, file):
        self.run(f"stty -a >'{file}'")
        return file.read_text()

    def job(self):
        return int(pathlib.Path(f"/proc/{self.process}/task/{self.process}/children").read_text().split()[0])

    def bye(self):
        self.type("exit" + ENTER)
        self.leave()


def typed(keys):
    return lambda shell: shell.type(keys)


def interrupted_then_left(shell):
    shell.type("PMT 1" + CTRL_C)
    shell.expect(PROMPT)
    shell.type(CTRL_D)


def killed(number):
    return lambda shell: os.kill(shell.job(), number)


def stopped_then_left(shell):
    shell.type(CTRL_Z)
    shell.expect(SHELL_PROMPT)
    shell.type("fg" + ENTER)
    shell.expect(PROMPT)
    shell.type("quit" + ENTER)


WAYS_OUT = {
    "quit": typed("quit" + ENTER),
    "quit after an answer": typed("PMT 0.005 360 200000" + ENTER + "quit" + ENTER),
    "Ctrl-D": typed(CTRL_D),
    "Ctrl-C, Ctrl-D": interrupted_then_left,
    "Ctrl-Z, fg, quit": stopped_then_left,
    "kill -TERM": killed(signal.SIGTERM),
    "kill -HUP": killed(signal.SIGHUP),
    "an abort": killed(signal.SIGABRT),
    "a fault": killed(signal.SIGSEGV),
}


def terminal_left_as_found(program, state):
    shells = [name for name in SHELLS if shutil.which(name)]
    assert "bash" in shells
    checked = 0
    for name in shells:
        shell = Shell(name, state)
        shell.run("ulimit -c 0")
        before = shell.modes(state / "before")
        assert " icanon" in before and " echo " in before, before
        for way, leave in WAYS_OUT.items():
            shell.type(program + ENTER)
            shell.expect(PROMPT)
            leave(shell)
            shell.expect(SHELL_PROMPT)
            after = shell.modes(state / "after")
            assert after == before, f"{name}, {way}: before {before}, after {after}"
            checked += 1
        shell.bye()
    assert checked == len(shells) * len(WAYS_OUT)


def stopped_within(terminal, line, begun):
    """The job is stopped once it has begun, the session goes on and ends as if nothing had been."""
    terminal.type(line + ENTER)
    begun()
    terminal.type(CTRL_C)
    terminal.expect("stopped\r\n" + PROMPT)
    terminal.ask("PMT 0.005 360 200000", PAYMENT)


class EndlessTable:
    """Rows in a named pipe, as long as somebody reads them."""

    def __init__(self, path):
        os.mkfifo(path)
        self.path = path
        self.begun = threading.Event()
        threading.Thread(target=self.feed, daemon=True).start()

    def feed(self):
        with open(self.path, "wb", buffering=0) as pipe:
            try:
                pipe.write(b"rate,nper,pv\n")
                for _ in iter(int, 1):
                    pipe.write(b"0.005,360,200000\n" * 1000)
                    self.begun.set()
            except BrokenPipeError:
                pass

    def wait(self):
        assert self.begun.wait(20)


def typed_row(terminal):
    """A row of a table that is typed has been answered; the job waits for the next one."""
    terminal.expect("\r\n")
    terminal.type("rate,nper,pv" + ENTER + "0.005,360,200000" + ENTER)
    terminal.expect(f"200000,{PAYMENT}\r\n")
    time.sleep(0.2)


def jobs_that_are_stopped(program, state):
    terminal = Terminal(program, state)
    terminal.expect(PROMPT)
    for number, job in enumerate(("map 'PMT(rate,nper,pv)' --output /dev/null", "fold 'NPV(0.1, pv)'")):
        table = EndlessTable(state / f"table{number}")
        stopped_within(terminal, f"{job} {table.path}", table.wait)
    stopped_within(terminal, "map 'PMT(rate,nper,pv)'", lambda: typed_row(terminal))
    schedule = "schedule loan rate=0.000001 nper=100000000 pv=1000 --csv"
    stopped_within(terminal, schedule, lambda: terminal.expect("\r\n9,"))
    terminal.type(CTRL_D)
    assert terminal.leave() == 0


def settled(terminal):
    """Until the screen shows nothing new."""
    while terminal.read(0.4):
        pass
    terminal.shown = ""


def keys_that_crashed(program, state):
    """Tab where there is nothing to copy; the editing library's own commands, with an open quotation mark."""
    terminal = Terminal(program, state)
    terminal.expect(PROMPT)
    terminal.type(TAB + TAB)
    terminal.expect("YIELDMAT")
    terminal.expect(PROMPT)
    terminal.type(b"\xfc\xa2\x94\x8b\x80\x86" + TAB.encode())  # no character, but a sequence of six bytes
    settled(terminal)
    terminal.type(CTRL_C)
    terminal.expect(PROMPT)
    terminal.type("\x1bx'" + ENTER)
    terminal.expect("no second ' follows")
    terminal.expect(PROMPT)
    terminal.ask("PMT 0.005 360 200000", PAYMENT)
    terminal.type("quit" + ENTER)
    assert terminal.leave() == 0


def windows_and_lines_that_crashed(program, state):
    """A long line in a window that becomes small; Tab behind it; the mark, and a search of nothing."""
    terminal = Terminal(program, state)
    terminal.expect(PROMPT)
    for rows, columns in ((2, 5), (1, 2), (24, 80)):
        terminal.type("(" * 3000)
        settled(terminal)
        terminal.resize(rows, columns)
        terminal.type("日" * 500 + " x" + TAB + TAB + "\x01\x05")
        settled(terminal)
        terminal.type("\x00\x15\x18\x18\x1bw\x12\x17\x07\x1b\x1f\x1b9\x1b9\x1b9x")
        settled(terminal)
        terminal.resize(50, 200)
        terminal.type(CTRL_C)
        settled(terminal)
        terminal.ask("PMT 0.005 360 200000", PAYMENT)
    terminal.type(CTRL_D)
    assert terminal.leave() == 0


def a_long_line_stays_whole(program, state):
    """Its end is refused, whatever key would have cut it."""
    terminal = Terminal(program, state)
    terminal.expect(PROMPT)
    terminal.ask("PMT 0.005 360 200000", PAYMENT)
    for up, down in (("\x1b[A", "\x1b[B"), ("\x1bOA", "\x1bOB"), ("\x10", "\x0e"), ("\x1bp", "\x1bn"), ("\x12", "\x1bn")):
        terminal.type("NPV 0.25 " + "0 " * 900 + "125x")
        settled(terminal)
        terminal.type(up + down)
        settled(terminal)
        terminal.type(ENTER)
        terminal.expect("'125x' is not a number")
        terminal.expect(PROMPT)
    terminal.type(CTRL_D)
    assert terminal.leave() == 0


def history_that_is_no_file(program, state):
    folder = state / "odd" / "finance"
    folder.mkdir(parents=True)
    os.mkfifo(folder / "history")
    for _ in range(2):
        terminal = Terminal(program, state / "odd")
        terminal.expect(PROMPT)
        terminal.ask("PMT 0.005 360 200000", PAYMENT)
        terminal.type("quit" + ENTER)
        assert terminal.leave() == 0
        (folder / "history").unlink()
        (folder / "history").symlink_to("/dev/tty")


def help_fits(program, state):
    shell = Shell("bash", state)
    shell.run("stty cols 64")
    for told, width in (("", 64), ("COLUMNS=52 ", 52)):
        for words in ("help fold", "help PRICE", "help", "list"):
            shell.type(f"{told}{program} {words}; echo e''nd" + ENTER)
            shell.expect("\n")
            lines = shell.expect("end\r\n").replace("\r", "").split("\n")
            shell.expect(SHELL_PROMPT)
            assert len(lines) > 10 and max(map(len, lines)) in range(width - 12, width + 1), (width, lines)
    shell.bye()


def arguments_in_the_order_of_a_call(program, state):
    terminal = Terminal(program, state)
    terminal.expect(PROMPT)
    terminal.type("PMT " + TAB + TAB)
    shown = terminal.expect("type=")
    names = [name for name in shown.split() if name.endswith("=")]
    assert names == ["rate=", "nper=", "pv=", "fv="], shown
    terminal.expect(PROMPT)
    terminal.type(CTRL_C)
    terminal.expect(PROMPT)
    terminal.type(CTRL_D)
    assert terminal.leave() == 0


if __name__ == "__main__":
    run_sessions(terminal_left_as_found, jobs_that_are_stopped, keys_that_crashed,
                 windows_and_lines_that_crashed, a_long_line_stays_whole, history_that_is_no_file, help_fits,
                 arguments_in_the_order_of_a_call)
