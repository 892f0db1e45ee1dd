#!/usr/bin/env python3
"""Is the host that docs/hosting.md shows the one of tests/abi/c_host.c, and does it print what the page says?

    hosting.py SOURCE_FOLDER path/to/c_host path/to/zelkovan.so

Blanks at the end of a line do not count. Exit status 1 where page and file or page and output differ, or where the
example is longer than the page promises or includes a file of the project other than the public header.
"""
import difflib
import pathlib
import re
import subprocess
import sys

MOST_LINES = 150
SECONDS = 60


def lines_of(text):
    return [line.rstrip() for line in text.splitlines()]


def the_block(page, language):
    blocks = re.findall(rf"^```{language}\n(.*?)^```$", page, re.MULTILINE | re.DOTALL)
    if len(blocks) != 1:
        sys.exit(f"docs/hosting.md has {len(blocks)} blocks of {language} instead of one")
    return lines_of(blocks[0])


def main():
    root, program, module = (pathlib.Path(word).resolve() for word in sys.argv[1:])
    page = (root / "docs/hosting.md").read_text(encoding="utf-8")
    example = (root / "tests/abi/c_host.c").read_text(encoding="utf-8")
    done = subprocess.run([program, module], stdout=subprocess.PIPE, text=True, timeout=SECONDS, check=True)
    faults = [
        *difflib.unified_diff(the_block(page, "c"), lines_of(example), "the page", "the file", n=0, lineterm=""),
        *difflib.unified_diff(the_block(page, "text"), lines_of(done.stdout), "the page", "the host", n=0, lineterm=""),
    ]
    ours = [name for name in re.findall(r'#\s*include\s*[<"](.*)[>"]', example) if "/" in name]
    if ours != ["zelkovan/zelkovan.h"]:
        faults.append(f"c_host.c includes {ours}")
    if len(example.splitlines()) > MOST_LINES:
        faults.append(f"c_host.c has {len(example.splitlines())} lines, more than {MOST_LINES}")
    print(*faults or ["the page shows the example and what it prints"], sep="\n")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
