"""Writes __init__.pyi from the catalogue: python3 -m zelkovan._stubs FILE."""

import pathlib
import sys

from . import functions
from ._scalars import ScalarFunction

_FUNCTION = '''class {}:
    __name__: str
    calculation: str
    gives_dates: bool
    parameters: tuple[dict[str, Any], ...]
    names: list[str]
    ufuncs: Mapping[int, np.ufunc]

'''

_HEAD = (
    '''# Made from the catalogue by zelkovan._stubs.
import contextlib
import datetime
from collections.abc import Mapping
from typing import Any, Literal, TypedDict, Union, overload

import numpy as np
import numpy.typing as npt

_One = Union[float, np.floating[Any], np.integer[Any]]
_OneDate = Union[float, str, datetime.date, np.datetime64]
_OneBasis = Union[float, str]
_Numbers = Any  # numbers, an array or Series of them, None
_Dates = Any  # dates, an array or Series of them, None
_Bases = Any  # words or codes, an array or Series of them, None
_Way = Literal["raise", "warn", "nan"]

class _Setting(TypedDict):
    refused: _Way

class RefusedError(ValueError):
    calculation: str
    argument: str | None
    position: int | None
    element: int | None
    row: tuple[int, ...]
    sentence: str

class RefusedWarning(UserWarning):
    count: int
    first: RefusedError
    sentence: str

class errstate(contextlib.ContextDecorator):
    def __init__(self, *, refused: _Way) -> None: ...
    def __enter__(self) -> errstate: ...
    def __exit__(self, *exception: object) -> None: ...

def seterr(*, refused: _Way) -> _Setting: ...
def geterr() -> _Setting: ...

'''
    + _FUNCTION.format("ScalarFunction")
    + _FUNCTION.format("ListFunction")
    + '''functions: Mapping[str, Any]
basis_words: tuple[str, ...]
__version__: str
'''
)

_ONE = {"date": "_OneDate", "date_time": "_OneDate", "basis": "_OneBasis"}
_MANY = {"date": "_Dates", "date_time": "_Dates", "dates": "_Dates", "basis": "_Bases"}


def _parameters(function, types, usual):
    words = []
    for parameter, name in zip(function.parameters, function.names):
        kind = types.get(parameter["kind"], usual)
        words.append(f"{name}: {kind}{' = ...' if parameter['optional'] else ''}")
    return ", ".join(["self", *words])


def _scalar_calls(function):
    one = "np.datetime64" if function.gives_dates else "np.float64"
    return (
        "    @overload\n"
        f"    def __call__({_parameters(function, _ONE, '_One')}) -> {one}: ...\n"
        "    @overload\n"
        f"    def __call__({_parameters(function, _MANY, '_Numbers')}, *, "
        "out: npt.NDArray[Any] | tuple[npt.NDArray[Any]] | None = None, where: npt.ArrayLike = True) -> Any: ...\n"
    )


def _list_calls(function):
    return f"    def __call__({_parameters(function, _MANY, '_Numbers')}, *, by: Any = None) -> Any: ...\n"


def _described(function):
    text = function.__doc__.replace("\\", "\\\\").replace('"""', "'''")
    return '    """' + "\n".join("    " + line if line else "" for line in text.splitlines()).strip() + '\n    """\n'


def stub():
    """The text of __init__.pyi."""
    text = _HEAD
    for name, function in functions.items():
        scalar = isinstance(function, ScalarFunction)
        text += f"\nclass _{name}({'ScalarFunction' if scalar else 'ListFunction'}):\n{_described(function)}"
        text += (_scalar_calls if scalar else _list_calls)(function) + f"\n{name}: _{name}\n"
    return text


if __name__ == "__main__":
    pathlib.Path(sys.argv[1]).write_text(stub(), encoding="utf-8")
