#!/usr/bin/env python3
"""Does run_examples.py find what it is there to find? Small pages against a command made of shell."""
import pathlib
import subprocess
import sys
import tempfile
import unittest

RUNNER = pathlib.Path(__file__).resolve().with_name("run_examples.py")
COMMAND = """#!/bin/sh
case $1 in
three) echo 3 ;;
lines) printf 'one\\n\\ntwo\\n' ;;
refused) echo 'finance: refused' >&2; exit 1 ;;
bare) printf 3 ;;
loans) cat examples/loans.csv ;;
*) echo "$*" ;;
esac
"""


class Runner(unittest.TestCase):
    def run_page(self, text):
        with tempfile.TemporaryDirectory() as name:
            root = pathlib.Path(name)
            for folder in ("bin", "docs", "examples"):
                (root / folder).mkdir()
            (root / "examples" / "loans.csv").write_text("loan,rate\n")
            (root / "README.md").write_text("Nothing to run.\n")
            (root / "docs" / "page.md").write_text(text)
            program = root / "bin" / "finance"
            program.write_text(COMMAND)
            program.chmod(0o755)
            done = subprocess.run([sys.executable, "-B", str(RUNNER), str(program), str(root)], capture_output=True,
                                  text=True, check=False)
            self.assertEqual(done.stderr, "")
            return done.returncode, done.stdout

    def assert_passes(self, text, examples):
        status, output = self.run_page(text)
        self.assertEqual(status, 0, output)
        self.assertIn(f"{examples} examples run in all, 0 faults", output)

    def assert_fails(self, text, words):
        status, output = self.run_page(text)
        self.assertEqual(status, 1, output)
        self.assertIn(words, output)

    def test_right_pages_pass(self):
        self.assert_passes("    $ finance three\n    3\n    $ finance lines\n    one\n\n    two\n\nText.\n", 2)
        self.assert_passes("```console\n$ finance three\n3\n$ cat file\nnot run\n```\n", 1)
        self.assert_passes("    $ finance refused; echo $?\n    finance: refused\n    1\n", 1)
        self.assert_passes("    $ cat examples/loans.csv | finance loans\n    loan,rate\n", 1)
        self.assert_passes("    $ finance a \\\n      b\n    a b\n\n    finance three    what it does\n", 2)

    def test_wrong_output_fails(self):
        self.assert_fails("    $ finance three\n    4\n", "-4")
        self.assert_fails("    $ finance three\n", "+3")
        self.assert_fails("    $ finance lines\n    one\n    two\n", "1 faults")
        self.assert_fails("    $ finance three\n    3\n    4\n", "-4")
        self.assert_fails("    $ finance refused\n    3\n", "+finance: refused")
        self.assert_fails("    $ finance bare\n    3\n", "1 faults")

    def test_unshown_output_must_be_an_answer(self):
        self.assert_fails("    finance refused    what it does\n", "exit status 1")

    def test_pages_without_examples_fail(self):
        self.assert_fails("    $ cat file\n    text\n", "no example of finance")
        self.assert_fails("```console\nfile\n```\n", "no example of finance")
        self.assert_fails("Text only, `$ finance three` in passing.\n", "0 examples run in all")


if __name__ == "__main__":
    unittest.main()
