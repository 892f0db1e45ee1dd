"""Columns of ours beside those of other libraries: the same rows, one run, all taking turns, one thread each.

    peers.py BUILD DUCKDB      DUCKDB: libduckdb.so; prints a Markdown table; best of nine rounds

Beside ours, as functions of NumPy and of DuckDB, stand NumPy's own formulas, DuckDB's own arithmetic, QuantLib, and of
npm financial, @formulajs/formulajs and xirr (package.json). NumPy and DuckDB take whole columns, the others a row at a
time, and of long columns only the first rows.

A cell says nanoseconds a row and to how many digits the answers agree with ours, in the row where they agree least.
Rows that differ by more than a millionth, or have no answer, are counted beside it, and the first is shown below the
table. A peer that is not installed, or has no such function, says so.
"""

import pathlib
import subprocess
import sys
import tempfile
import time

import numpy as np

import zelkovan
from cases import cases
from duckdb_library import Database

ROUNDS = 9
ANOTHER_ANSWER = 1e-6  # relative


def seconds(run):
    start = time.perf_counter()
    answers = run()
    return time.perf_counter() - start, answers


class Numpy:
    """Whole columns: ours, or NumPy's own formula."""

    def __init__(self, title, run_of):
        self.title, self.run_of = title, run_of

    def round(self, case):
        run = self.run_of(case)
        return run and seconds(lambda: run(*case.columns))


def ours(case):
    function = getattr(zelkovan, case.name.lower(), None) or getattr(zelkovan, case.name.lower() + "_")
    return lambda *columns: function(*columns, *case.fixed)


def our_sql(case):
    arguments = [f"a{i}" for i in range(len(case.columns))] + [repr(value) for value in case.fixed]
    return f"fin_{case.name.lower()}({', '.join(arguments)})"


class Duckdb:
    """Answers are read once, from a file with all digits; what is timed is their sum."""

    def __init__(self, title, database, data, expression_of):
        self.title, self.database, self.data, self.expression_of = title, database, data, expression_of
        self.answers = {}

    def round(self, case):
        expression = self.expression_of(case)
        if not expression:
            return None
        if case.name not in self.answers:
            self.database.run(f"COPY (SELECT {expression} FROM {case.name}) TO '{self.data}/answers.csv' (HEADER false)")
            self.answers[case.name] = np.loadtxt(f"{self.data}/answers.csv")
        taken, _ = seconds(lambda: self.database.run(f"SELECT sum({expression}) FROM {case.name}"))
        return taken, self.answers[case.name]


def fill(database, data, case):
    """A table of the case's columns a0, a1 and so on, lists where they are."""
    parts = []
    for i, column in enumerate(case.columns):
        path = f"{data}/{case.name}.{i}.csv"
        with open(path, "w", encoding="ascii") as file:
            for row, values in enumerate(column.tolist()):
                file.write(f'{row}|{values}\n')
        kind = "DOUBLE[]" if column.ndim == 2 else "DOUBLE"
        parts.append(f"(FROM read_csv('{path}', delim = '|', columns = {{'id': 'BIGINT', 'a{i}': '{kind}'}}))")
    database.run(f"CREATE TABLE {case.name} AS FROM {' JOIN '.join([parts[0]] + [p + ' USING (id)' for p in parts[1:]])} "
                 "ORDER BY id")


class Program:
    """A program that answers each line `CASE ROWS LENGTH` with the seconds that it took, or none."""

    def __init__(self, title, command, data):
        self.title, self.data = title, data
        self.process = subprocess.Popen(command, stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True,
                                        env={"PATH": "/usr/bin:/bin", "TZ": "UTC"})

    def round(self, case):
        self.process.stdin.write(f"{case.name} {case.few} {case.length}\n")
        self.process.stdin.flush()
        answer = self.process.stdout.readline().strip()
        if not answer:
            sys.exit(f"{self.title} has ended at {case.name}")
        return None if answer == "none" else (float(answer), np.fromfile(f"{self.data}/answers.f64"))


class Absent:
    def __init__(self, title):
        self.title = title

    def round(self, case):
        return "not installed"


def all_peers(build, duckdb, data, tables):
    peers = [Numpy("ours, NumPy", ours)]
    extension = build / "lib/zelkovan.duckdb_extension"
    if duckdb.exists() and extension.exists():
        database = Database(str(duckdb), extension)
        for case in tables:
            fill(database, data, case)
        peers.append(Duckdb("ours, DuckDB", database, data, our_sql))
        arithmetic = Duckdb("DuckDB's arithmetic", database, data, lambda case: case.by_duckdb)
    else:
        peers.append(Absent("ours, DuckDB"))
        arithmetic = Absent("DuckDB's arithmetic")
    peers += [Numpy("NumPy's formula", lambda case: case.by_numpy), arithmetic]
    quantlib = build / "bin/quantlib_columns"
    peers.append(Program("QuantLib", [quantlib, data], data) if quantlib.exists() else Absent("QuantLib"))
    packages = build / "peers"
    script = pathlib.Path(__file__).with_name("npm_columns.mjs")
    for package in "financial", "@formulajs/formulajs", "xirr":
        there = (packages / "node_modules" / package).exists()
        peers.append(Program(package, ["node", script, package, data, packages], data) if there else Absent(package))
    return peers


def agreement(answers, expected, remarks, label):
    """Digits that agree in the worst row of those that do, and how many are no answer or another one."""
    apart = np.abs(answers - expected) / np.abs(expected)
    none = np.isnan(answers)
    others = ~(none | (apart <= ANOTHER_ANSWER))
    worst = apart[~(none | others)].max(initial=0.0)
    words = ["all bits" if worst == 0.0 else f"{int(-np.log10(worst))} digits"] if not (none | others).all() else []
    for rows, what in (none, "without answer"), (others, "differ"):
        if not rows.any():
            continue
        words.append(f"{rows.sum()} of {len(rows)} {what}")
        first = np.flatnonzero(rows)[0]
        remarks.append(f"- {label}: {words[-1]}; the first is row {first}: {answers[first]:.17g}, "
                       f"ours {expected[first]:.17g}")
    return ", ".join(words)


def cell(result, expected, remarks, label):
    if not isinstance(result, tuple):
        return result or "–"
    best, answers = result
    nanoseconds = f"{1e9 * best / len(answers):,.1f}"
    if answers is expected:
        return nanoseconds
    return f"{nanoseconds} ({agreement(answers, expected[:len(answers)], remarks, label)})"


def measured(case, peers):
    """The best round of each, and its answers."""
    results = [None] * len(peers)
    for _ in range(ROUNDS):
        for i, peer in enumerate(peers):
            result = peer.round(case)
            if not isinstance(result, tuple) or results[i] is None or result[0] < results[i][0]:
                results[i] = result
    return results


def main(build, duckdb):
    tables = cases(np.random.default_rng(1))
    with tempfile.TemporaryDirectory() as data:
        for case in tables:
            for i, column in enumerate(case.columns):
                column.tofile(f"{data}/{case.name}.{i}.f64")
        peers = all_peers(pathlib.Path(build), pathlib.Path(duckdb), data, tables)
        remarks = []
        print("| ns a row | " + " | ".join(peer.title for peer in peers) + " |\n|---|" + "---:|" * len(peers))
        for case in tables:
            results = measured(case, peers)
            expected = results[0][1]
            cells = [cell(result, expected, remarks, f"{case.name}, {peer.title}")
                     for result, peer in zip(results, peers)]
            print(f"| {case.name}, {case.rows_are} | " + " | ".join(cells) + " |", flush=True)
        print("\n" + "\n".join(remarks) if remarks else "\nAll rows agree.")


if __name__ == "__main__":
    main(*sys.argv[1:])
