#!/usr/bin/env python3
"""Is what the documentation shows right? Works out its examples with the slow model, which knows nothing of the module
or of the command: answers digit for digit, refusals by the argument at fault.

    agree_with_model.py SOURCE_FOLDER

Named arguments are taken in the order in which they stand. Examples that are no call, or that the command cannot read
(they end in `try:`), are left out.
"""
import datetime
import math
import pathlib
import re
import shlex
import sys
from fractions import Fraction

import pages

root = pathlib.Path(sys.argv[1]).resolve()
sys.path.insert(0, str(root / "tests" / "model"))

import arguments
import draw

CALL = re.compile(r"finance ([A-Z]+) (.*?)(; echo \$\?)?")
TOO_LARGE = re.compile(r"finance: [A-Z]+: too large: .*")
REFUSAL = re.compile(r"finance: ([A-Z]+): (?:argument (\d+) \(.*|no answer: .*)")
NOT_MEANT = " is no day of the years "  # the command's own rule: the model answers such calls
EPOCH = datetime.date(1960, 1, 1)
DATE = re.compile(r"\d{4}-\d\d-\d\d")
# The first of these is no division.
FORMULA = re.compile(r"(?!\d+/360$)[\d.%()+*/ -]+")
VALUE = re.compile(r"\d{4}-\d\d-\d\d|[\d.]+%?")


def number_of(text):
    """A date's days; of a number the double nearest to it, percentages divided exactly."""
    if DATE.fullmatch(text):
        return float((datetime.date.fromisoformat(text) - EPOCH).days)
    return float(Fraction(text.rstrip("%")) / (100 if text.endswith("%") else 1))


def argument_of(text):
    if text == ".":
        return arguments.Number(math.nan)
    try:
        return arguments.Number(number_of(text))
    except ValueError:
        if not FORMULA.fullmatch(text):
            return arguments.Text(text.encode())
    # Of nothing but numbers, signs and brackets, in doubles as everywhere.
    return arguments.Number(eval(VALUE.sub(lambda value: repr(number_of(value[0])), text)))


def arguments_of(words):
    texts = [text for word in words for text in word.split("=")[-1].split(",")]
    while texts and not texts[-1]:
        texts.pop()
    return [argument_of(text) for text in texts]


def same_answer(value, shown):
    if math.isnan(value):
        return shown == "."
    if DATE.fullmatch(shown):
        return shown == (EPOCH + datetime.timedelta(int(value))).isoformat()
    return float(shown) == value


def agrees(name, given, shown, calculation):
    """Whether the first line shown, the answer or the refusal, is what the model says."""
    refusal = REFUSAL.fullmatch(shown)
    status, flagged, value = arguments.run(calculation, arguments.Call(given, name.encode()))
    if refusal:
        slots = {int(refusal.group(2))} if refusal.group(2) else set()
        return status != arguments.SUCCESS and set(flagged) == slots
    if TOO_LARGE.fullmatch(shown):
        return status == arguments.SUCCESS and math.isinf(value)
    return status == arguments.SUCCESS and same_answer(value, shown)


def verdict(example, calculations):
    """True or False, None where the model has no say."""
    call = CALL.fullmatch(example.command)
    if not call or not example.output or call.group(1) not in draw.COUNTS:
        return None
    if "\ntry: " in example.output or NOT_MEANT in example.output:
        return None
    lines = example.output.splitlines()
    if call.group(3) and lines.pop() != ("1" if REFUSAL.fullmatch(lines[0]) else "0"):
        return False
    name = call.group(1)
    return agrees(name, arguments_of(shlex.split(call.group(2))), lines[0], calculations[name])


def main():
    calculations = draw.load()[0]
    counts = {True: 0, False: 0, None: 0}
    for page in pages.pages_of(root):
        for example in pages.read(page)[0]:
            agreed = verdict(example, calculations)
            counts[agreed] += 1
            if agreed is False:
                print(f"{page.relative_to(root)}:{example.line}: the model disagrees: $ {example.command}")
    print(f"{counts[True]} examples agree with the model, {counts[False]} do not, {counts[None]} are no call")
    return 0 if counts[True] > 0 and counts[False] == 0 else 1


if __name__ == "__main__":
    sys.exit(main())
