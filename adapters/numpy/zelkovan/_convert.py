"""Arguments as the calculations have them, float64, and their answers as Python has them.

A date is the number of days since 1960-01-01, a basis its code, a missing value a NaN.
"""

import datetime
import sys

import numpy as np

from . import _zelkovan

_DAY_0 = np.datetime64("1960-01-01", "D")
_DAYS_TO_1970 = int((np.datetime64(0, "D") - _DAY_0).astype(np.int64))
_ORDINAL_OF_DAY_0 = datetime.date(1960, 1, 1).toordinal()
_UNKNOWN_WORD = -1.0  # no basis has this code: the call is refused, in its turn
_LARGEST_DAY = 2.0**62
_REPEATED = {str, np.str_, type(None), datetime.date, datetime.datetime}  # not numbers: 0.0 equals -0.0


# ---- Containers


def pandas_kind(value, *names):
    """Whether a value is one of pandas' classes of these names; pandas is not imported for it."""
    pandas = sys.modules.get("pandas")
    return pandas is not None and isinstance(value, tuple(getattr(pandas, name) for name in names))


def as_array(value):
    """An array of numbers, datetime64, text or objects, whatever holds the values."""
    if isinstance(value, np.ma.MaskedArray):
        return _masked(value)
    if pandas_kind(value, "Series", "Index", "DataFrame"):
        return _pandas_array(value)
    if pandas_kind(value, "Categorical") or hasattr(value, "isna"):
        return _pandas_array(sys.modules["pandas"].Series(value))
    return np.asarray(value)


def _masked(value):
    array = value.data.astype(object)
    array[np.ma.getmaskarray(value)] = None
    return array


def _pandas_array(value):
    types = value.dtypes if pandas_kind(value, "DataFrame") else [value.dtype]
    if all(isinstance(one, np.dtype) for one in types):
        return value.to_numpy()
    if len(types) == 1 and getattr(types[0], "tz", None) is not None:
        stamps = value.dt if pandas_kind(value, "Series") else value
        return stamps.tz_localize(None).to_numpy()
    numeric = all(getattr(one, "kind", "O") in "iufb" for one in types)
    return value.to_numpy(dtype=np.float64, na_value=np.nan) if numeric else value.to_numpy(dtype=object)


def common_index(values):
    """The index of all Series; None where there is no Series. Rows are matched by position, so indexes must agree."""
    index = None
    for value in values:
        if not pandas_kind(value, "Series"):
            continue
        if index is None:
            index = value.index
        elif index is not value.index and not index.equals(value.index):
            raise ValueError("the indexes of the Series differ: align them first")
    return index


def is_missing(value):
    if value is None:
        return True
    pandas = sys.modules.get("pandas")
    if pandas is not None and value is pandas.NA:
        return True
    return isinstance(value, (float, np.floating, np.datetime64, datetime.datetime)) and value != value


def _each(array, function):
    """The function of each object, NaN for what is missing. Words and days repeat: equal ones are looked at once."""

    def one(x):
        return np.nan if is_missing(x) else function(x)

    objects = array.astype(object, copy=False).ravel().tolist()
    if len(objects) > 1 and _REPEATED.issuperset(map(type, objects)):
        one = {x: one(x) for x in set(objects)}.__getitem__
    return np.fromiter(map(one, objects), np.float64, array.size).reshape(array.shape)


# ---- Numbers


def numbers(value, label):
    array = as_array(value)
    if array.dtype == np.float64:
        return array
    if array.dtype.kind in "iufb":
        return array.astype(np.float64)
    if array.dtype.kind == "O":
        return _each(array, lambda x: _number(x, label))
    raise TypeError(f"{label}: numbers are wanted, not {_named(array)}")


def _number(x, label):
    if isinstance(x, (str, bytes, datetime.date, datetime.timedelta, np.datetime64, np.timedelta64)):
        raise TypeError(f"{label}: a number is wanted, not {shown(x)}")
    try:
        return float(x)
    except TypeError:
        raise TypeError(f"{label}: a number is wanted, not {type(x).__name__}") from None


def _named(array):
    return shown(array[()]) if array.ndim == 0 else f"an array of {array.dtype}"


# ---- Dates


def dates(value, label):
    array = as_array(value)
    if array.dtype.kind == "M":
        return _host_days(array)
    if array.dtype.kind in "UO":
        return _each(array, lambda x: _day(x, label))
    return numbers(array, label)


def _host_days(array):
    unit, _ = np.datetime_data(array.dtype)
    if unit == "generic":  # nothing but NaT
        return np.full(array.shape, np.nan)
    whole = array.astype("M8[D]", copy=False)
    days = np.asarray(whole.view(np.int64) + _DAYS_TO_1970, np.float64)
    if unit not in "YMWD":
        days = days + (array - whole) / np.timedelta64(1, "D")
    missing = np.isnat(array)
    if missing.any():
        days = np.where(missing, np.nan, days)
    return days


def _day(x, label):
    if isinstance(x, str):
        day = _zelkovan.host_date(_readable(x))
        if day is None:
            raise ValueError(f"{label}: {shown(x)} is not a date (year-month-day)")
        return day
    if isinstance(x, np.datetime64):
        return float(_host_days(np.asarray(x)))
    if isinstance(x, datetime.datetime):
        local = x.replace(tzinfo=None)
        part = local - datetime.datetime(local.year, local.month, local.day)
        return float(local.toordinal() - _ORDINAL_OF_DAY_0) + part / datetime.timedelta(days=1)
    if isinstance(x, datetime.date):
        return float(x.toordinal() - _ORDINAL_OF_DAY_0)
    return _number(x, label)


def _readable(text):
    return text.encode("utf-8", "replace").decode("utf-8")


# ---- Sentences


def shown(value):
    """A value as Python writes it, for a sentence: no control characters, and where it is long its beginning."""
    return _zelkovan.shown(repr(value))


def shown_key(key):
    """The same of a group's key, without quotation marks."""
    return _zelkovan.shown(_readable(str(key)))


# ---- Bases


def basis(value, label):
    array = as_array(value)
    return _each(array, lambda x: _code(x, label)) if array.dtype.kind in "UO" else numbers(array, label)


def _code(x, label):
    if not isinstance(x, str):
        return _number(x, label)
    code = _zelkovan.basis_code(_readable(x))
    return _UNKNOWN_WORD if code is None else code


def words_of(value):
    """The texts of a basis as they were given, for the sentence of a refusal; None where there are none."""
    array = as_array(value)
    return array.astype(object) if array.dtype.kind in "UO" else None


def worded(x):
    """One basis for a sentence: its text, or its code."""
    return _readable(x) if isinstance(x, str) else float(x)


CONVERTERS = {
    "number": numbers,
    "whole": numbers,
    "flag": numbers,
    "numbers": numbers,
    "date": dates,
    "date_time": dates,
    "dates": dates,
    "basis": basis,
}


# ---- Answers


def as_dates(days):
    """datetime64[D] of host days; NaN, and what no datetime64 can be, is NaT."""
    there = np.abs(days) < _LARGEST_DAY
    result = np.full(np.shape(days), np.datetime64("NaT", "D"))
    result[there] = days[there].astype(np.int64).view("m8[D]") + _DAY_0
    return result


def as_series(answers, index):
    pandas = sys.modules["pandas"]
    if answers.ndim != 1 or len(answers) != len(index):
        raise ValueError(f"the answers have the shape {answers.shape}, which the index of the Series does not fit")
    try:
        return pandas.Series(answers, index=index)
    except pandas.errors.OutOfBoundsDatetime:  # a year that pandas' nanoseconds do not reach
        return pandas.Series(answers.astype(object), index=index)
