#!/usr/bin/env python3
"""A person at the prompt: drives the command through a pseudo-terminal and reads what the screen shows.

    terminal_session.py PROGRAM
"""
import os
import signal
import termios

from terminal import CTRL_C, CTRL_D, CTRL_Z, ENTER, PAYMENT, PROMPT, TAB, UP, WITHIN, Terminal, run_sessions


def answers(terminal):
    terminal.ask("PMT 0.005 360 200000", PAYMENT)
    terminal.ask("NPV 0.25 0 125", "80")
    terminal.ask("NPV 0.25 _", "64")
    terminal.ask("COUPNCD 2025-01-20 2030-11-15 2", "2025-05-15")
    terminal.ask("COUPNCD settlement=_ maturity=2030-11-15 frequency=2", "2025-11-15")


def errors(terminal):
    terminal.ask("PMT 0.005 2.5 200000", "PMT: argument 2 (nper): 2.5 is not a whole number")
    terminal.ask("PTM 1", "no calculation is called 'PTM' (did you mean PMT?) (try: list)")
    terminal.ask("PMT '1", "no second ' follows (try: ?)")
    terminal.ask("_", "2025-11-15")  # errors have left it alone


def variables_and_lines_that_go_on(terminal):
    terminal.ask("r = 6%/12", "r = 0.005")
    terminal.ask("$ finance PMT r 30*12 200000", PAYMENT)
    terminal.type("p = PMT(r, 360," + ENTER)
    terminal.expect(WITHIN)
    terminal.ask("200000)", f"p = {PAYMENT}")
    terminal.type(UP)
    terminal.expect("p = PMT(r, 360, 200000)")
    terminal.type(CTRL_C)
    terminal.expect(PROMPT)
    terminal.type("PMT r \\" + ENTER)
    terminal.expect(WITHIN)
    terminal.type("360" + CTRL_C)
    terminal.expect(PROMPT)
    terminal.ask("p", PAYMENT)


def completion(terminal):
    terminal.type("pm" + TAB)
    terminal.expect("PMT ")
    terminal.type("ra" + TAB)
    terminal.expect("te=")
    terminal.type("0.005 NP" + TAB)
    terminal.expect("nper=")
    terminal.type("360 ")
    terminal.expect("360 ")
    terminal.type(TAB + TAB)  # what is left, below the line
    names = terminal.expect("type=")
    assert "fv=" in names and "pv=" in names and "rate=" not in names, names
    terminal.expect("nper=360 ")
    terminal.ask("pv=200000", PAYMENT)
    terminal.type("?PM" + TAB)
    terminal.expect("T")
    terminal.type(CTRL_C)
    terminal.expect(PROMPT)


def completion_of_values(terminal):
    """The line that Tab has made is told by its answer: half of a year of 360 days, and 182 days of 366."""
    terminal.ask("YEARFRAC 2024-01-01 2024-07-01 basis=EU" + TAB, "0.5")
    terminal.ask("YEARFRAC 2024-01-01 2024-07-01 basis=actu" + TAB, "0.4972677595628415")


def completion_after_other_letters(terminal):
    terminal.type("PMT 'é é' np" + TAB)
    terminal.expect("er=")
    terminal.type(CTRL_C)
    terminal.expect(PROMPT)


def bytes_that_are_no_text(terminal):
    """None is lost: the bracket behind half a letter is there; each byte stands for the letter of its number."""
    terminal.type(b"P\xc3)\xff" + ENTER.encode())
    terminal.expect("no calculation is called 'PÃ)ÿ'")
    terminal.expect(PROMPT)


def help_pages(terminal):
    terminal.type("?PMT" + ENTER)
    terminal.expect("PMT: Level payment")
    terminal.expect("Example")
    terminal.expect(PROMPT)
    terminal.type("?" + ENTER)
    terminal.expect("NAME ARGUMENT...")
    terminal.expect(PROMPT)


def abandoned_line(terminal):
    terminal.type("PMT 1 2")
    terminal.expect("PMT 1 2")
    terminal.type(CTRL_C)
    before = terminal.expect(PROMPT)
    assert before == "\r\n", before
    terminal.ask("RATE 10 -10 100", "0")


def earlier_lines(terminal):
    terminal.type(UP)
    terminal.expect("RATE 10 -10 100")
    terminal.type(UP)
    terminal.expect("?")
    terminal.type(CTRL_C)
    terminal.expect(PROMPT)


def new_window_size(terminal):
    terminal.type("NPV 0.25")
    terminal.expect("NPV 0.25")
    terminal.resize(30, 100)
    os.kill(terminal.process, signal.SIGWINCH)
    terminal.ask(" 0 125", "80")


def first_session(program, state):
    terminal = Terminal(program, state)
    terminal.expect(PROMPT)
    for part in (answers, errors, variables_and_lines_that_go_on, completion, completion_of_values, completion_after_other_letters,
                 bytes_that_are_no_text, help_pages, abandoned_line, earlier_lines, new_window_size):
        part(terminal)
    terminal.type("é" + ENTER)
    terminal.expect("no calculation is called 'é'")
    terminal.expect(PROMPT)
    terminal.type(CTRL_D)
    assert terminal.leave() == 0


def second_session(program, state):
    """The lines of the first one are there; quit leaves as Ctrl-D does."""
    history = (state / "finance" / "history").read_text().splitlines()
    assert history[0] == "PMT 0.005 360 200000" and history[-1] == "é", history
    assert "PMT 1 2" not in history, "an abandoned line is not kept"
    terminal = Terminal(program, state)
    terminal.expect(PROMPT)
    terminal.type(UP + UP)
    terminal.expect("NPV 0.25 0 125")
    terminal.type(ENTER)
    terminal.expect("80")
    terminal.expect(PROMPT)
    terminal.type("quit" + ENTER)
    assert terminal.leave() == 0


def plain_locale(program, state):
    """Letters beyond ASCII are kept where the locale knows none."""
    terminal = Terminal(program, state, LC_ALL="C")
    terminal.expect(PROMPT)
    terminal.type("ü 1" + ENTER)
    terminal.expect("no calculation is called 'ü'")
    terminal.expect(PROMPT)
    terminal.type("exit" + ENTER)
    assert terminal.leave() == 0


def stopped_and_continued(program, state):
    """Under a shell: the line is there again after Ctrl-Z, bg and fg, and a request to terminate needs no fg."""
    shell = Terminal("/bin/bash", state, arguments=["--norc", "--noprofile", "-i"], PS1="shell: ")
    shell.expect("shell: ")
    shell.type(program + ENTER)
    shell.expect(PROMPT)
    shell.type("RATE 10 -10")
    shell.expect("RATE 10 -10")
    for command in ("fg", "bg"):
        shell.type(CTRL_Z)
        shell.expect("Stopped")
        shell.expect("shell: ")
        shell.type(command + ENTER)
        if command == "bg":
            shell.expect("shell: ")
            shell.type("fg" + ENTER)
        shell.expect(PROMPT + "RATE 10 -10")
    shell.ask(" 100", "0")
    shell.type(CTRL_Z)
    shell.expect("shell: ")
    shell.type("bg" + ENTER)
    shell.expect("shell: ")
    # In the background it stops as soon as it wants to read; only then does the shell continue what it terminates.
    shell.type('while [ -z "$(jobs -s)" ]; do sleep 0.01; done; job=$(jobs -p %1); kill %1; '
               'while kill -0 "$job" 2>/dev/null; do sleep 0.01; done; echo go""ne' + ENTER)
    shell.expect("gone")
    shell.type("exit" + ENTER)
    shell.leave()


def history_that_cannot_be_kept(program, state):
    terminal = Terminal(program, state / "finance" / "history")  # a file, not a folder
    terminal.expect(PROMPT)
    terminal.ask("RATE 10 -10 100", "0")
    terminal.type(CTRL_D)
    assert terminal.leave() == 0


def request_to_terminate(program, state):
    """The terminal is as it was before."""
    terminal = Terminal(program, state)
    local_modes = 3
    terminal.expect(PROMPT)
    terminal.type("PMT")
    terminal.expect("PMT")
    assert not termios.tcgetattr(terminal.screen)[local_modes] & termios.ICANON
    os.kill(terminal.process, signal.SIGTERM)
    assert terminal.wait() == -signal.SIGTERM
    assert termios.tcgetattr(terminal.screen)[local_modes] & termios.ICANON


if __name__ == "__main__":
    run_sessions(first_session, second_session, plain_locale, stopped_and_continued, history_that_cannot_be_kept,
                 request_to_terminate)
