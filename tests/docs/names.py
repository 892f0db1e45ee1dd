#!/usr/bin/env python3
"""Does docs/names.md hold? Each name of its first columns is a word of the module's sources, and each name that
abi/zelkovan.h exports stands on the page.

    names.py SOURCE_FOLDER
"""
import pathlib
import re
import sys

FOLDERS = ("abi", "calendar", "cashflow", "depreciation", "module", "moneymarket", "securities")
HANDLER = "fnc_PMT"  # made by a macro from the name of the calculation


def names_on(page):
    first_columns = re.findall(r"^\| (`[^|]*) \|", page, re.MULTILINE)
    return {name for cell in first_columns for name in re.findall(r"`(\w+)`", cell)}


def words_of(root):
    files = [path for folder in FOLDERS for path in (root / folder).iterdir()]
    sources = [path.read_text(encoding="utf-8") for path in files if path.suffix in {".hpp", ".cpp", ".h", ".S"}]
    return set(re.findall(r"\w+", "".join(sources)))


def exported_by(header):
    declarations = re.findall(r"^ZELKOVAN_EXPORT ([^;(]*?)(\w+)(?:\[\d*\])?[;(]", header, re.MULTILINE)
    return {name for _, name in declarations}


def main():
    root = pathlib.Path(sys.argv[1])
    names = names_on((root / "docs/names.md").read_text(encoding="utf-8"))
    exported = exported_by((root / "abi/zelkovan.h").read_text(encoding="utf-8"))
    gone = sorted(names - words_of(root) - {HANDLER})
    untold = sorted(exported - names)
    if not names or not exported:
        sys.exit("no names were found")
    print(f"{len(names)} names on the page; not in the sources: {gone or 'none'}")
    print(f"{len(exported)} exported; not on the page: {untold or 'none'}")
    return 1 if gone or untold else 0


if __name__ == "__main__":
    sys.exit(main())
