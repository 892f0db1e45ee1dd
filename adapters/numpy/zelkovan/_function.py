"""What calculations with and without lists have in common: a name, parameters, a documentation, and how they are pickled."""

import inspect
import keyword

from . import _zelkovan
from ._convert import CONVERTERS, shown
from ._documentation import documentation, usage

CATALOGUE = {entry["name"]: entry for entry in _zelkovan.calculations}


def python_name(name):
    """The name, with an underscore behind it where Python has that word for itself."""
    return name + "_" if keyword.iskeyword(name) else name


def function_named(name):
    import zelkovan

    return getattr(zelkovan, name)


class Function:
    """A calculation. Call it with numbers, arrays, Series, or dask's arrays and Series."""

    def __init__(self, entry):
        self.calculation = entry["name"]
        self.__name__ = self.__qualname__ = python_name(entry["name"].lower())
        self.__module__ = "zelkovan"
        self.ufuncs = entry["ufuncs"]
        self.gives_dates = entry["result"] == "date"
        self.parameters = entry["parameters"]
        self.names = [python_name(parameter["name"]) for parameter in self.parameters]
        self._converters = [CONVERTERS[parameter["kind"]] for parameter in self.parameters]
        self._fewest = sum(not parameter["optional"] for parameter in self.parameters)
        self.__signature__ = self._signature()
        self.__doc__ = documentation(entry, self.__name__, self.names)

    def __repr__(self):
        return f"<zelkovan.{self._listed()}>"

    def __reduce__(self):
        return function_named, (self.__name__,)

    def __dask_tokenize__(self):
        return "zelkovan", self.__name__

    # Of arguments that only this kind of function has.
    _extras = ()

    def _signature(self):
        by_name = inspect.Parameter.POSITIONAL_OR_KEYWORD
        parameters = [
            inspect.Parameter(name, by_name, default=... if parameter["optional"] else inspect.Parameter.empty)
            for name, parameter in zip(self.names, self.parameters)
        ]
        parameters += [
            inspect.Parameter(name, inspect.Parameter.KEYWORD_ONLY, default=default) for name, default in self._extras
        ]
        return inspect.Signature(parameters)

    def _label(self, i):
        return f"{self.calculation}: argument {i + 1} ({self.parameters[i]['name']})"

    def _bound(self, arguments, named):
        """The values in the parameters' order, without those left out; `...` is one left out."""
        if len(arguments) > len(self.names):
            raise TypeError(f"{self.__name__}() takes at most {len(self.names)} arguments, not {len(arguments)}")
        values = dict(zip(self.names, arguments))
        for name, value in named.items():
            if name not in self.names:
                raise TypeError(f"{self.__name__}() has no argument {shown(name)}: {self._listed()}")
            if name in values:
                raise TypeError(f"{self.__name__}() has got {name!r} twice")
            values[name] = value
        given = [name for name in self.names if values.get(name, ...) is not ...]
        self._check_left_out(given)
        return [values[name] for name in given]

    def _check_left_out(self, given):
        count = max(len(given), self._fewest)
        for i, name in enumerate(self.names):
            if name in given:
                continue
            if not self.parameters[i]["optional"]:
                raise TypeError(f"{self.__name__}() lacks {name!r}: {self._listed()}")
            if i < count:
                raise TypeError(f"{self.__name__}() needs {name!r} where {given[-1]!r} is given")

    def _listed(self):
        return usage(self.__name__, self.names, self.parameters)
