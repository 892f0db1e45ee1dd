"""Calculations of lists: of one list, of each row of a table, of ragged lists, of the groups of a column."""

import sys

import numpy as np

from . import _convert, _dask, _refusals, _zelkovan
from ._function import Function

_PLAIN = ["C_CONTIGUOUS", "ALIGNED"]  # what comes out of a message of dask's may lie at any address


class Rows:
    """A list for each row: stretches of one array. shape is that of the rows, () where there is one list."""

    def __init__(self, values, starts, lengths, shape, index=None):
        self.values = np.require(values, np.float64, _PLAIN)
        self.starts = starts
        self.lengths = lengths
        self.shape = shape
        self.index = index

    def spread(self, shape):
        """What the module takes: an entry for each row of that shape."""
        return self.values, _spread(self.starts, self.shape, shape), _spread(self.lengths, self.shape, shape)

    def at(self, row, shape):
        starts, lengths = (np.broadcast_to(x.reshape(self.shape), shape)[row] for x in (self.starts, self.lengths))
        return self.values[starts : starts + lengths]


def _spread(numbers, of, shape):
    return np.require(np.broadcast_to(numbers.reshape(of), shape).ravel(), None, _PLAIN)


def _is_list(value):
    return isinstance(value, (list, tuple)) or np.ndim(value) > 0


def _nested(value):
    """The lists of a list of lists, or None."""
    if isinstance(value, (list, tuple)) or getattr(value, "dtype", None) == object:
        if getattr(value, "ndim", 1) == 1 and len(value) > 0 and all(_is_list(one) for one in value):
            return list(value)
    return None


def rows_of(value, converter, label):
    lists = _nested(value)
    index = value.index if _convert.pandas_kind(value, "DataFrame") else None
    if lists is None:
        return _table(converter(value, label), label, index)
    arrays = [converter(one, label) for one in lists]
    if _convert.pandas_kind(value, "Series"):
        index = value.index
    if any(array.ndim != 1 for array in arrays):
        return _table(np.stack(arrays), label, index)
    lengths = np.array([len(array) for array in arrays], np.int64)
    return Rows(np.concatenate(arrays), np.cumsum(lengths) - lengths, lengths, (len(arrays),), index)


def _table(array, label, index):
    if array.ndim == 0:
        raise TypeError(f"{label}: a list is wanted, not one value")
    shape = array.shape[:-1]
    rows = int(np.prod(shape, dtype=np.int64))
    lengths = np.full(rows, array.shape[-1], np.int64)
    return Rows(array.ravel(), np.arange(rows, dtype=np.int64) * array.shape[-1], lengths, shape, index)


def groups_of(keys):
    """The distinct keys in their order, each row's number among them, and which rows have a key at all."""
    if _convert.pandas_kind(keys, "Series"):
        pandas = sys.modules["pandas"]
        codes, unique = pandas.factorize(keys, sort=True)
        return pandas.Index(unique, name=keys.name), codes
    keys = np.asarray(keys)
    if keys.ndim != 1:
        raise TypeError("by is one list of keys")
    return np.unique(keys, return_inverse=True)


class ListFunction(Function):
    """A calculation of lists. A table's lists are its rows: they lie along the last axis."""

    _extras = (("by", None),)

    def __call__(self, *arguments, by=None, **named):
        values = self._bound(arguments, named)
        way = _refusals.way_now()
        if _dask.any_lazy([*values, by]):
            return _dask.lists(self, values, way, by)
        return self.evaluated(values, way, by)

    def takes_list(self, i):
        return self.parameters[i]["kind"] in ("numbers", "dates")

    def evaluated(self, values, way, by=None):
        if by is not None:
            return self._grouped(values, way, by)
        arguments = [
            (rows_of if self.takes_list(i) else self._scalar)(value, self._converters[i], self._label(i))
            for i, value in enumerate(values)
        ]
        indexes = [argument.index for argument in arguments if isinstance(argument, Rows) and argument.index is not None]
        index = indexes[0] if indexes else _convert.common_index(
            value for i, value in enumerate(values) if not self.takes_list(i)
        )
        answers = self._called(arguments, (), way)
        return answers[()] if index is None else _convert.as_series(answers, index)

    @staticmethod
    def _scalar(value, converter, label):
        return converter(value, label)

    def _called(self, arguments, shape, way, row_words=None):
        shape = np.broadcast_shapes(shape, *(argument.shape for argument in arguments))
        given = tuple(
            argument.spread(shape) if isinstance(argument, Rows) else _spread(argument, argument.shape, shape)
            for argument in arguments
        )
        answers = np.empty(int(np.prod(shape, dtype=np.int64)))
        refused = _zelkovan.call_lists(self.calculation, given, answers)
        answers = answers.reshape(shape)
        if refused > 0:
            _refusals.settle(answers, lambda row: self._error(arguments, shape, row, row_words), way)
        return _convert.as_dates(answers) if self.gives_dates else answers

    def _error(self, arguments, shape, row, row_words):
        one = tuple(
            argument.at(row, shape) if isinstance(argument, Rows) else float(np.broadcast_to(argument, shape)[row])
            for argument in arguments
        )
        sentence, position, argument, element = _zelkovan.refusal(self.calculation, one)
        words = None if row_words is None else row_words(row)
        return _refusals.RefusedError(self.calculation, argument, position, element, row, sentence, words)

    # ---- Groups

    def _grouped(self, values, way, by):
        _convert.common_index([*(value for i, value in enumerate(values) if self.takes_list(i)), by])
        unique, codes = groups_of(by)
        order = np.argsort(codes, kind="stable")[np.count_nonzero(codes < 0) :]
        lengths = np.bincount(codes[order], minlength=len(unique)).astype(np.int64)
        arguments = []
        for i, value in enumerate(values):
            array = self._converters[i](value, self._label(i))
            if self.takes_list(i):
                if array.shape != codes.shape:
                    raise ValueError(f"{self._label(i)}: a value for each key of by is wanted")
                array = Rows(array[order], np.cumsum(lengths) - lengths, lengths, lengths.shape)
            arguments.append(array)
        answers = self._called(arguments, lengths.shape, way, lambda row: f" (group {_convert.shown_key(unique[row[0]])})")
        if any(_convert.pandas_kind(value, "Series") for value in (*values, by)):
            index = sys.modules["pandas"].Index(unique)
            return _convert.as_series(answers, index)
        return unique, answers
