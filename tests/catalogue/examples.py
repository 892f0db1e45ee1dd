#!/usr/bin/env python3
"""Are the examples of the catalogue right? Each is read from the headers and its result compared with that of the slow
model, which knows nothing of the module.

    examples.py CATALOGUE_FOLDER MODEL_FOLDER
"""
import datetime
import glob
import os
import re
import sys

catalogue_folder, model_folder = sys.argv[1:]
sys.path.insert(0, model_folder)

import arguments
import draw

EPOCH = datetime.date(1960, 1, 1)
DATE = re.compile(r"\d{4}-\d\d-\d\d")
ROW = re.compile(r'\.name = "([A-Z]+)",\s*\.answers.*?\.example =\s*\{((?:\s*"[^"]*")+),\s*"([^"]*)"\}', re.DOTALL)


def one_argument(text):
    if DATE.fullmatch(text):
        return arguments.Number((datetime.date.fromisoformat(text) - EPOCH).days)
    try:
        return arguments.Number(float(text))
    except ValueError:
        return arguments.Text(text.encode())


def arguments_of(line):
    """Named ones, in the calculation's order and with none left out in between, so that the names do not matter."""
    values = [word.split("=")[1] for word in line.split()]
    return [one_argument(text) for value in values for text in value.split(",")]


def shortest(value):
    """As the command prints: the fewest digits, in plain or in scientific notation, whichever is shorter."""
    plain = repr(value)
    digits = plain[:-2] if plain.endswith(".0") else plain
    scientific = "%.*e" % (max(len(digits.strip("-0").replace(".", "")) - 1, 0), value)
    return scientific if float(scientific) == value and len(scientific) < len(digits) else digits


def modelled(name, given, calculation, dated):
    status, _, result = arguments.run(calculation, arguments.Call(given, name.encode()))
    assert status == arguments.SUCCESS, (name, status)
    return (EPOCH + datetime.timedelta(int(result))).isoformat() if dated else shortest(result)


def main():
    calculations = draw.load()[0]
    rows = []
    for path in sorted(glob.glob(os.path.join(catalogue_folder, "*.hpp"))):
        with open(path, encoding="utf-8") as header:
            rows += ROW.findall(header.read())
    names = [name for name, _, _ in rows]
    wrong = []
    if sorted(names) != sorted(draw.COUNTS):
        wrong.append("rows: %s" % (set(names) ^ set(draw.COUNTS) or "one of them twice"))
    for name, literals, printed in rows:
        given = arguments_of("".join(re.findall(r'"([^"]*)"', literals)))
        expected = modelled(name, given, calculations[name], DATE.fullmatch(printed))
        if printed != expected:
            wrong.append("%s: the catalogue says %s, the model %s" % (name, printed, expected))
    print("%d examples, %d wrong" % (len(rows), len(wrong)), *wrong, sep="\n")
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
