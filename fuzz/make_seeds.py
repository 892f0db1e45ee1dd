#!/usr/bin/env python3
"""Writes the seeds of the fuzzers into fuzz/seeds/, small inputs from which the search starts, and the dictionary of
names. With --check it writes nothing: exit status 1 where a file is not what it would write.

The layouts are those that the fuzz_*.cpp read. A seed is never wrong: whatever its bytes, they mean something.
"""
import datetime
import pathlib
import re
import struct
import sys

HERE = pathlib.Path(__file__).resolve().parent
# Ascending by name: smallest and largest count, the name included; 0 where there is none.
ROWS = re.findall(r"ROW\((\w+), (\d+), (\d+)\)", (HERE.parent / "module" / "financial_list.hpp").read_text())


def day(text):
    return (datetime.date.fromisoformat(text) - datetime.date(1960, 1, 1)).days


FILES = {}  # bytes by path


class Seeds:
    def __init__(self, target):
        self.folder = HERE / "seeds" / target

    def write(self, name, *parts):
        FILES[self.folder / name] = b"".join(parts)


def number(value):
    """A number of fuzz/input.hpp: a small whole one in a byte, else all its bits."""
    if value == int(value) and -128 <= value < 128:
        return bytes([2]) + struct.pack("<b", int(value))
    return bytes([0]) + struct.pack("<d", value)


# ---- dispatcher

MISSING, ABSENT = "missing", "absent"
DAYS_A_YEAR = 365.2425
WRAP_OF_YEARS = float(int(2.0**31 * DAYS_A_YEAR))
WRAP_OF_MONTHS = float(int(2.0**31 / 12.0 * DAYS_A_YEAR))
KEYWORDS = ["30/360", "ACTUAL", "ACT/360", "ACT/365", "EU30/360"]


def argument(value):
    if value == MISSING:
        return bytes([9]) + struct.pack("<Q", 0xFFFFFE0000000000)
    if value == ABSENT:
        return bytes([8, 1])
    if value in KEYWORDS:
        return bytes([11, KEYWORDS.index(value)])
    return bytes([4]) + number(day(value) if isinstance(value, str) else value)


def call(name, arguments, host_mode=0):
    index = [row[0] for row in ROWS].index(name)
    least, most = map(int, ROWS[index][1:])
    shape = 1 + len(arguments) - least
    assert 0 <= shape <= (most or least + 13) - least, name
    head = bytes([host_mode, index, shape, 0xA5, 1, 0, 1, 0])  # note mode 72, no note so far
    return head + bytes([0, 0, 0xF0]) + b"".join(map(argument, arguments)) + bytes([0, 0, 0, 0])


CALLS = [
    ("PMT", [0.005, 360, 200000.0]),
    ("PPMT", [0.005, 12, 360, 200000.0, 0, 1]),
    ("CUMIPMT", [0.005, 360, 200000.0, 13, 24, 0]),
    ("NPER", [0.01, -100, 5000.0, ABSENT, 1]),
    ("RATE", [48, -200.0, 8000.0]),
    ("FV", [0.06, 10, -200.0, -500.0, 1]),
    ("EFFECT", [0.0525, 4]),
    ("FVSCHEDULE", [1, 0.09, 0.11, 0.1]),
    ("IRR", [-100, 60, 60]),
    ("IRR", [15, -2, 4, -11, 5, 14, -4]),
    ("MIRR", [-120, 39, 30, 21, 37, 46, 0.1, 0.12]),
    ("NPV", [0.1, -100, 30, 42, 68]),
    ("XIRR", [-100, 27, 43, 32, 28, "2008-01-01", "2008-03-01", "2008-10-30", "2009-02-15", "2009-04-01", 0.1], 8),
    ("XIRR", [100, 110, "2008-01-01", "2009-01-01"]),
    ("XNPV", [0.09, -100, 27, "2008-01-01", "2008-03-01"], 8),
    ("PRICE", ["2008-02-15", "2017-11-15", 0.0575, 0.065, 100, 2, "30/360"]),
    ("YIELD", ["2008-02-15", "2016-11-15", 0.0575, 95.04287, 100, 2, "ACTUAL"]),
    ("MDURATION", ["2008-01-01", "2016-01-01", 0.08, 0.09, 2, 1]),
    ("YIELDMAT", ["2008-03-15", "2008-11-03", "2007-11-08", 0.0625, 100.0123, "EU30/360"]),
    ("ODDFPRICE", ["2008-11-11", "2021-03-01", "2008-10-15", "2009-03-01", 0.0785, 0.0625, 100, 2, "ACTUAL"]),
    ("ODDLYIELD", ["2008-04-20", "2008-06-15", "2007-12-24", 0.0375, 99.875, 100, 2, "ACT/365"]),
    ("ACCRINT", ["2008-03-01", "2008-08-31", "2008-05-01", 0.1, 1000.0, 2, MISSING]),
    ("COUPNCD", ["2011-01-25", "2011-11-15", 2, "ACT/360"]),
    ("YEARFRAC", ["2012-01-01", "2012-07-30", 3]),
    ("DISC", ["2007-01-25", "2007-06-15", 97.975, 100, 1]),
    ("TBILLEQ", ["2008-03-31", "2008-06-01", 0.0914]),
    ("DOLLARFR", [1.125, 16]),
    ("AMORDEGRC", [2400.0, "2008-08-19", "2008-12-31", 300.0, 1, 0.15, 1]),
    ("DB", [1000000.0, 100000.0, 6, 7, 7]),
    ("VDB", [2400.0, 300.0, 10, 0.5, 1.5, 1.5, 1]),
    # Long, and around where counts of days, months and years wrap
    ("CUMIPMT", [1e-170, 2e7, 1000.0, 1, 10000001, 0]),
    ("PRICE", [0, WRAP_OF_MONTHS, 0.0575, 1e-9, 100, 12, 1]),
    ("YIELD", [0, WRAP_OF_YEARS, 0.05, 95.0, 100, 4, 0]),
    ("DURATION", [2.0**31, 2.0**32, 0.08, 1e-12, 2, 1]),
    ("ODDFPRICE", [0, 1e10, -90, 92, 0.0785, 1e-9, 100, 4, 1]),
    ("ODDLPRICE", [-1e10, 1e10, -2e10, 0.0375, 0.04, 100, 2, 1]),
    ("COUPNUM", [-WRAP_OF_YEARS, WRAP_OF_YEARS, 12, 0]),
    ("COUPPCD", [1e16, 2.0**53, 3, 1]),
    ("YEARFRAC", [-WRAP_OF_YEARS, WRAP_OF_YEARS, 1]),
    ("DDB", [1e9, 1.0, 2.0**31, 2.0**31 - 1, 1e-9]),
    ("VDB", [1e9, 1.0, 2.0**31, 5.0, 2.0**31 - 1, 2.0, 0]),
    ("AMORDEGRC", [1e9, 0, 100, 1.0, 2.0**31 - 1, 1e-9, 1]),
    ("AMORLINC", [1e9, 0, 100, 1.0, 2.0**31 - 1, 1e-9, 1]),
    ("DB", [1e300, 1e-300, 2.0**31 - 1, 2.0**31 - 1, 1]),
]


def dispatcher():
    seeds = Seeds("dispatcher")
    for number_of_call, (name, arguments, *mode) in enumerate(CALLS):
        seeds.write(f"{number_of_call:02}-{name.lower()}", call(name, arguments, *mode))


# ---- text: routine, then its own

def text():
    seeds = Seeds("text")
    seeds.write("order-case-blind", bytes([0, 0x3D, 7]), b"cumipmt", bytes([0, 8]), b"CUMPRINC", bytes([0, 0]))
    seeds.write("order-padded", bytes([0, 1, 3]), b"PMT", bytes([0, 6]), b"PMT \x1f ", bytes([0, 0]))
    seeds.write("order-multibyte", bytes([0, 3, 4]), b"\x83ab ", bytes([0, 4]), b"\x83AB ", bytes([0, 0]))
    seeds.write("order-negative", bytes([0, 1, 2]), b"ab", bytes([0, 2]), b"ab", bytes([250, 254]))
    seeds.write("lengths", bytes([1]), b" ", bytes([8]), b"  PMT\0  ", bytes([0]))
    seeds.write("all-blank", bytes([1]), b" ", bytes([5]), b"     ", bytes([0]))
    seeds.write("copy-apart", bytes([2, 12]), b"abcdef______", bytes([0, 6, 4, 6, 0, 0]))
    seeds.write("copy-overlapping", bytes([2, 10]), b"0123456789", bytes([0, 3, 7, 7, 0, 0]))
    seeds.write("delete-blanks", bytes([3, 11]), b"act / 360  ", bytes([1]), b" ", bytes([0, 0]))
    seeds.write("delete-terminated", bytes([3, 8]), b"a,b;c,d;", bytes([2]), b",;", bytes([1, 1]))
    seeds.write("upper", bytes([4, 0, 2, 0, 1, 8]), b"eu30/360", bytes([0]))
    seeds.write("lower-multibyte", bytes([4, 0, 3, 1, 0, 6]), b"AB\x83CDE", bytes([0]))


# ---- basis: mode, flags, then a number or a text

def basis():
    seeds = Seeds("basis")
    for code, keyword in enumerate(KEYWORDS):
        seeds.write(f"keyword-{code}", bytes([0, 0xF0, code]), bytes([1] * len(keyword)), bytes([0]))
        seeds.write(f"any-text-{code}", bytes([code % 4, 0, 128 + len(keyword)]), keyword.encode(), bytes([3]))
    seeds.write("blanks-anywhere", bytes([0, 0, 64 + 2]), bytes([0x3F, 1, 0x31, 0, 0x3F, 0, 1]), bytes([20, 3]))
    seeds.write("too-long", bytes([2, 0, 255, 60, 3]))
    seeds.write("one-wrong", bytes([0, 0, 32 + 1]), bytes([0] * 6), bytes([5]), b"X")
    for name, value in ("fraction", 47), ("just-below-0", -15), ("too-large", 80), ("below", -16):
        seeds.write(f"number-{name}", bytes([0x18, 0]), struct.pack("<b", value))
    seeds.write("number-nan", bytes([0x08, 0, 0]), struct.pack("<Q", 0xFFF8000000000001))
    seeds.write("number-edge", bytes([0x0C, 0, 1, 27]))


# ---- roots: periods, kind of list, flows

def roots():
    seeds = Seeds("roots")
    lists = {
        "one-change": [-100, 60, 60],
        "zeros-at-ends": [0, 0, -100, 110, 0],
        "ten-and-twenty": [-100, 230, -132],
        "below-and-above-1": [-100, 160, -55],
        "third-method": [15, -2, 4, -11, 5, 14, -4],
        "root-below-0": [18, 19, -8, 1],
        "none": [1, -1, 1],
        "out-of-reach": [15, -4, 18, -1],
        "one-sign": [5, 6, 7],
        "double-root": [-1, 2, -1],
        "far-apart": [-1e300, 1e-300],
        "smallest": [-5e-324, 5e-324],
        "largest": [-1.7e308, 1.7e308, 1e200],
        "missing": [-100, float("nan"), 121],
        "infinite": [-100, float("inf"), -100],
    }
    for name, flows in lists.items():
        raw = b"".join(bytes([0, 0]) + struct.pack("<d", flow) for flow in flows)
        seeds.write(name, bytes([0, 11, 0]), raw)
    seeds.write("long", bytes([0, 11, 3]), bytes([1, 156]), bytes([0xFD, 9]) * 4)


# ---- table: delimiter, small block, long or short limit, then the text

def table():
    seeds = Seeds("table")
    texts = {
        "plain": b"id,rate,nper\n1,0.05,12\n2,0.06,24\n",
        "no-last-line-end": b"a,b\nc,d",
        "carriage-returns": b"a,b\r\nc,d\r\n\r\n",
        "quoted": b'"a,b","c\nd","e""f"\n"",""""\n',
        "malformed": b'"a"x,b\n5" pipe,"q"y"z\n',
        "open": b'a,b\n"c,d\ne,f\n',
        "nul": b"a,b\nc,\0d\n",
        "bom": b"\xef\xbb\xbfa,b\n1,2\n",
        "utf16": b"\xff\xfea\0,\0",
        "empty-lines": b"\n\n,\n",
        "too-long": b"a\n" + b"b" * 40 + b"\nc\n",
        "sixteen": b"0123456789abcde,0123456789abcdef,x\n",
    }
    for name, content in texts.items():
        seeds.write(name, bytes([0, 4, 0, 0]), content)
    seeds.write("tabs", bytes([3, 0, 1]), b'a\t"b\tc"\n')


# ---- calls: mode, header line, calls

def calls():
    seeds = Seeds("calls")
    header = b'rate,nper,pv,"x, y",ACTUAL,twice,twice,pmt\n'
    texts = {
        "in-order": b"PMT(rate,nper,pv)",
        "by-name": b"PMT(pv=pv, nper = 12, rate=5.75%) as p",
        "two": b'PMT(rate,nper,pv), PV(rate, 12, -100) as "present, value"',
        "quoted": b"PMT(\"x, y\", 12, '100')",
        "numbered": b"pmt($1,$2,$3)",
        "dates": b"YEARFRAC(2024-01-01, nper, act/360) as y, COUPNUM(0, pv, 2, ACTUAL)",
        "lists": b"NPV(rate, pv, nper, -5), XNPV(rate, 1, pv, 2024-01-01, nper)",
        "left-out": b"PMT(rate,nper,pv,,type=1),FV(rate,nper,fv=,.)",
        "ambiguous": b"PMT(twice,nper,pv)",
        "within": b"PMT(PV(rate),nper,pv)",
        "open": b'PMT("rate',
        "misspelt": b"PTM(rat,nper,pv)",
        "doubled": b"PMT(rate,nper,pv),PMT(rate,nper,pv)",
    }
    for name, content in texts.items():
        seeds.write(name, bytes([0]), header, content)
    seeds.write("columns", bytes([6]), header, b'rate, "x, y", $3')
    seeds.write("without-header", bytes([1]), b"5,6,7\n", b"PMT($1,$2,$3)")
    seeds.write("with-status", bytes([8]), header, b"PMT(rate,nper,pv) as p, PV(rate,1,1) as p_status")


# ---- dictionary of the dispatcher: names, and patterns of doubles that decide something

DOUBLES = {
    "one": 1.0,
    "infinity": float("inf"),
    "two_to_53": 2.0**53,
    "minus_two_to_63": -(2.0**63),
    "largest": sys.float_info.max,
    "smallest": 5e-324,
    "ten_percent": 0.1,
    "hundred": 100.0,
    "wrap_of_days": 2.0**31,
    "wrap_of_months": WRAP_OF_MONTHS,
    "wrap_of_years": WRAP_OF_YEARS,
}


def entry(name, raw):
    return f'{name}="' + "".join(f"\\x{byte:02X}" for byte in raw) + '"'


def dictionary():
    lines = ["# Made by fuzz/make_seeds.py: names, and patterns of doubles that decide something."]
    lines += [f'"{name}"' for name in [row[0] for row in ROWS] + KEYWORDS]
    lines += [entry(name, struct.pack("<d", value)) for name, value in DOUBLES.items()]
    lines.append(entry("missing", argument(MISSING)[1:]))
    FILES[HERE / "dictionaries" / "dispatcher.dict"] = ("\n".join(lines) + "\n").encode()


def main():
    for make in dispatcher, text, basis, roots, table, calls, dictionary:
        make()
    kept = {path for path in (HERE / "seeds").rglob("*") if path.is_file()}
    stale = [path for path, made in FILES.items() if not path.exists() or path.read_bytes() != made]
    stale += kept - FILES.keys()
    if "--check" in sys.argv[1:]:
        for path in sorted(stale):
            print(f"out of date: {path.relative_to(HERE.parent)}; refresh with: fuzz/make_seeds.py")
        return 1 if stale else 0
    for path in stale:
        if path in FILES:
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_bytes(FILES[path])
        else:
            path.unlink()
    return 0


if __name__ == "__main__":
    sys.exit(main())
