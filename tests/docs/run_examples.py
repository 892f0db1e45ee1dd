#!/usr/bin/env python3
"""Does the documentation say what the command says? Runs every example of README.md and docs/ (pages.py says what one
is) in a folder that has examples/, and compares standard output and error together, byte for byte.

    run_examples.py path/to/finance SOURCE_FOLDER

Exit status 1 where an output differs, an example without output is not answered, a page has console blocks but no
example, or there was nothing to run at all.
"""
import difflib
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile

import pages

SECONDS = 60


def ran(command, folder, program):
    environment = {"PATH": f"{program.parent}:{os.environ['PATH']}", "LC_ALL": "C.UTF-8", "HOME": str(folder)}
    for name in ("ASAN_OPTIONS", "UBSAN_OPTIONS", "TSAN_OPTIONS", "LSAN_OPTIONS"):
        if name in os.environ:
            environment[name] = os.environ[name]
    done = subprocess.run(["sh", "-c", command], cwd=folder, env=environment, stdin=subprocess.DEVNULL,
                          stdout=subprocess.PIPE, stderr=subprocess.STDOUT, timeout=SECONDS, check=False)
    return done.returncode, done.stdout.decode(errors="backslashreplace")


def fault(example, folder, program):
    """What is wrong with the example, "" for nothing."""
    try:
        status, output = ran(example.command, folder, program)
    except subprocess.TimeoutExpired:
        return f"still running after {SECONDS} seconds\n"
    if example.output is None:
        return f"exit status {status}\n{output}" if status != 0 else ""
    shown, printed = (text.splitlines(keepends=True) for text in (example.output, output))
    return "".join(difflib.unified_diff(shown, printed, "the page", "the command", n=0))


def check(page, root, folder, program):
    """(examples run, faults found), with a line for each fault"""
    examples, has_console_blocks = pages.read(page)
    name = page.relative_to(root)
    faults = 0
    for example in examples:
        found = fault(example, folder, program)
        if found:
            faults += 1
            print(f"{name}:{example.line}: $ {example.command}\n{found}")
    if has_console_blocks and not examples:
        faults += 1
        print(f"{name}: has console blocks, but no example of finance")
    print(f"{name}: {len(examples)} examples run, {faults} faults")
    return len(examples), faults


def main():
    program, root = (pathlib.Path(word).resolve() for word in sys.argv[1:])
    if program.name != "finance" or not os.access(program, os.X_OK):
        sys.exit(f"{program} is not the command finance")
    run = faults = 0
    for page in pages.pages_of(root):
        with tempfile.TemporaryDirectory() as folder:
            shutil.copytree(root / "examples", pathlib.Path(folder, "examples"))
            counts = check(page, root, pathlib.Path(folder), program)
        run, faults = run + counts[0], faults + counts[1]
    print(f"{run} examples run in all, {faults} faults")
    return 0 if run > 0 and faults == 0 else 1


if __name__ == "__main__":
    sys.exit(main())
