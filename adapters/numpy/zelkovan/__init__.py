"""Financial calculations over arrays.

Each calculation is a function of this package: zelkovan.price, zelkovan.pmt, zelkovan.irr. Arguments are numbers, arrays,
pandas Series, or dask's arrays and Series; dates are datetime64, dates, year-month-day, or days since 1960-01-01. What a
refused call does is set with errstate.
"""

from . import _zelkovan
from ._function import CATALOGUE as _CATALOGUE
from ._lists import ListFunction
from ._refusals import RefusedError, RefusedWarning, errstate, geterr, seterr
from ._scalars import ScalarFunction

functions = {}
for _entry in _CATALOGUE.values():
    _made = (ScalarFunction if _entry["ufuncs"] else ListFunction)(_entry)
    functions[_made.__name__] = globals()[_made.__name__] = _made
del _entry, _made

basis_words = tuple(_zelkovan.basis_words)
__version__ = _zelkovan.version

__all__ = [
    "ListFunction",
    "RefusedError",
    "RefusedWarning",
    "ScalarFunction",
    "basis_words",
    "errstate",
    "functions",
    "geterr",
    "seterr",
    *functions,
]
