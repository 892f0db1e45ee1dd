"""The examples of a page: console blocks, fenced or indented by four blanks, in README.md and docs/.

An example is a line `$ command`, in which `finance` is run, with its output below: up to the next example or the end of
the block, but for blank lines at its end. A backslash at the command's end joins the next line. A line `finance ...`
that begins a block, or follows a blank line or another such line, is an example without output; what stands after two
blanks describes it. In a block fenced as text only the former are examples.
"""
import pathlib
import re
from dataclasses import dataclass

PROMPT = "$ "
UNSHOWN = re.compile(r"finance\s")
RUNS_FINANCE = re.compile(r"(?:^|[|;&]\s*)finance(?=\s|$)")


@dataclass
class Example:
    line: int
    command: str
    output: "str | None"  # None: not shown


@dataclass
class Block:
    line: int  # of its first line of text, from 1
    fenced_as: str  # "" for indented ones
    text: "list[str]"

    def is_console(self):
        return self.fenced_as.startswith("console") or any(line.startswith(PROMPT) for line in self.text)


def blocks_of(text):
    blocks, current, fence = [], None, None
    for number, line in enumerate(text.splitlines(), 1):
        mark = re.match(r" {0,3}(`{3,}|~{3,})\s*(\S*)", line)
        if fence:
            if mark and mark.group(1).startswith(fence) and not mark.group(2):
                current = fence = None
            else:
                current.text.append(line)
        elif mark:
            fence, current = mark.group(1), Block(number + 1, mark.group(2), [])
            blocks.append(current)
        elif line.startswith("    "):
            if current is None:
                current = Block(number, "", [])
                blocks.append(current)
            current.text.append(line[4:])
        elif line.strip():
            current = None
        elif current:
            current.text.append("")
    return blocks


def prompted(lines, number):
    """The command of the `$ ` line at lines[0], and how many lines it takes."""
    command, taken = lines[0][len(PROMPT):], 1
    while command.endswith("\\") and taken < len(lines):
        command, taken = command[:-1] + lines[taken], taken + 1
    return Example(number, command, ""), taken


def examples_of(block):
    examples, example, i = [], None, 0
    while i < len(block.text):
        line, number = block.text[i], block.line + i
        taken = 1
        if line.startswith(PROMPT):
            example, taken = prompted(block.text[i:], number)
            examples.append(example)
        elif block.fenced_as != "text" and UNSHOWN.match(line) and (i == 0 or not block.text[i - 1] or example is None):
            example = None
            examples.append(Example(number, re.split(r"\s{2,}", line)[0], None))
        elif example:
            example.output += line + "\n"
        i += taken
    for example in examples:
        if example.output is not None:
            example.output = re.sub(r"\n*\Z", "\n" if example.output.strip("\n") else "", example.output, count=1)
    return [example for example in examples if RUNS_FINANCE.search(example.command)]


def pages_of(root):
    return [root / "README.md", *sorted((root / "docs").rglob("*.md"))]


def read(page):
    """(its examples, whether it has console blocks)"""
    blocks = blocks_of(pathlib.Path(page).read_text(encoding="utf-8"))
    return [example for block in blocks for example in examples_of(block)], any(block.is_console() for block in blocks)
