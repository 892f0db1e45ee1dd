"""Docstrings and stubs, made from the catalogue; its examples, against the command."""

import ast
import doctest
import inspect
import keyword
import os
import pathlib
import subprocess
import unittest

import numpy as np

import zelkovan
from support import same_bits


class Examples(unittest.TestCase):
    def test_docstrings_run(self):
        """Expected: the results printed in the catalogue."""
        runner = doctest.DocTestRunner()
        parser = doctest.DocTestParser()
        for name, function in zelkovan.functions.items():
            examples = parser.get_doctest(function.__doc__, {}, name, None, None)
            self.assertEqual(len(examples.examples), 2, name)
            runner.run(examples)
        tried, failed = runner.summarize().attempted, runner.summarize().failed
        self.assertEqual((tried, failed), (2 * len(zelkovan.functions), 0))

    def test_same_bits_as_the_command(self):
        entries = [entry for entry in zelkovan._zelkovan.calculations]
        lines = "".join(f"{entry['name']} {entry['example'][0]}\n" for entry in entries)
        # A sanitizer's runtime that was preloaded for Python is within the command already.
        environment = {name: value for name, value in os.environ.items() if name != "LD_PRELOAD"}
        run = subprocess.run(
            [os.environ["FINANCE"]], input=lines, capture_output=True, text=True, check=True, env=environment
        )
        printed = run.stdout.split()
        self.assertEqual(len(printed), len(entries))
        for entry, answer in zip(entries, printed):
            function = next(f for f in zelkovan.functions.values() if f.calculation == entry["name"])
            call = function.__doc__.rsplit(">>> print(", 1)[1].split("\n")[0].rstrip(")") + ")"
            ours = eval(call, {"zelkovan": zelkovan})
            if function.gives_dates:
                self.assertEqual(ours, np.datetime64(answer))
            else:
                self.assertTrue(same_bits(ours, float(answer)), entry["name"])


class Page(unittest.TestCase):
    def test_page_runs(self):
        try:
            import dask.array
            import pandas
        except ImportError:
            self.skipTest("pandas or dask not found")
        flags = doctest.NORMALIZE_WHITESPACE | doctest.IGNORE_EXCEPTION_DETAIL
        result = doctest.testfile(os.environ["NUMPY_PAGE"], module_relative=False, optionflags=flags)
        self.assertGreater(result.attempted, 15)
        self.assertEqual(result.failed, 0)


class Names(unittest.TestCase):
    def test_functions_and_parameters(self):
        self.assertEqual(len(zelkovan.functions), len(zelkovan._zelkovan.calculations))
        for name, function in zelkovan.functions.items():
            self.assertIs(getattr(zelkovan, name), function)
            self.assertIn(name, zelkovan.__all__)
            self.assertEqual(function.__name__, name)
            parameters = list(inspect.signature(function).parameters)
            self.assertEqual(parameters[: len(function.names)], function.names)
            for word in (name, *parameters):
                self.assertFalse(keyword.iskeyword(word))
                self.assertTrue(word.isidentifier())
        self.assertIn("yield_", zelkovan.price.names)
        self.assertIn("yield_", zelkovan.functions)

    def test_docstring_says_all(self):
        text = zelkovan.price.__doc__
        self.assertTrue(text.startswith("price(settlement, maturity, rate, yield_, redemption, frequency, basis=...)\n"))
        for part in ("  yield_: annual yield", "Formula:\n", "No answer: ", "Example:\n"):
            self.assertIn(part, text)


class Stubs(unittest.TestCase):
    def test_every_function_as_it_is(self):
        folder = pathlib.Path(zelkovan.__file__).parent
        self.assertTrue((folder / "py.typed").exists())
        tree = ast.parse((folder / "__init__.pyi").read_text(encoding="utf-8"))
        classes = {node.name: node for node in tree.body if isinstance(node, ast.ClassDef)}
        typed = {node.target.id for node in tree.body if isinstance(node, ast.AnnAssign)}
        for name, function in zelkovan.functions.items():
            self.assertIn(name, typed)
            calls = [node for node in classes["_" + name].body if isinstance(node, ast.FunctionDef)]
            self.assertEqual(len(calls), 2 if function.ufuncs else 1)
            for call in calls:
                names = [argument.arg for argument in call.args.args]
                self.assertEqual(names, ["self", *function.names])
                optional = [parameter["optional"] for parameter in function.parameters]
                self.assertEqual(len(call.args.defaults), sum(optional))
        declared = {node.name for node in tree.body if isinstance(node, (ast.ClassDef, ast.FunctionDef))} | typed
        self.assertEqual(set(zelkovan.__all__) - declared, set())


if __name__ == "__main__":
    unittest.main()
