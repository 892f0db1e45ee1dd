#!/usr/bin/env python3
"""What the prompt leaves behind: real shells in a pseudo-terminal.

    terminal_manners.py PROGRAM
"""
import os
import pathlib
import shutil
import signal
import sys
import tempfile

from terminal_session import CTRL_C, CTRL_D, CTRL_Z, ENTER, PAYMENT, PROMPT, TAB, Terminal

SHELLS = {"bash": ["--norc", "--noprofile", "-i"], "zsh": ["-f", "-i"]}
SHELL_PROMPT = "shell: "


class Shell(Terminal):
    def __init__(self, name, state):
        super().__init__(shutil.which(name), state, arguments=SHELLS[name], PS1=SHELL_PROMPT)
        self.expect(SHELL_PROMPT)

    def run(self, line):
        self.type(line + ENTER)
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


def keys_that_crashed(program, state):
    """Tab where there is nothing to copy; the editing library's own commands, with an open quotation mark."""
    terminal = Terminal(program, state)
    terminal.expect(PROMPT)
    terminal.type(TAB + TAB)
    terminal.expect("YIELDMAT")
    terminal.expect(PROMPT)
    terminal.type("\x1bx'" + ENTER)
    terminal.expect("no second ' follows")
    terminal.expect(PROMPT)
    terminal.ask("PMT 0.005 360 200000", PAYMENT)
    terminal.type("quit" + ENTER)
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


def main():
    program = sys.argv[1]
    with tempfile.TemporaryDirectory() as folder:
        state = pathlib.Path(folder)
        for session in (terminal_left_as_found, keys_that_crashed, history_that_is_no_file):
            session(program, state)
            print(f"{session.__name__}: as expected")


if __name__ == "__main__":
    main()
