"""Calculations without lists: a thin callable around raw ufuncs, one for each number of arguments."""

import numpy as np

from . import _convert, _dask, _refusals, _zelkovan
from ._function import Function


class ScalarFunction(Function):
    """A calculation without lists. `ufuncs` has the raw ufuncs, of float64, by their number of arguments."""

    _extras = (("out", None), ("where", True))

    def __call__(self, *arguments, out=None, where=True, **named):
        values = self._bound(arguments, named)
        way = _refusals.way_now()
        if _dask.any_lazy(values):
            return _dask.scalars(self, values, way, out, where)
        return self.evaluated(values, way, out, where)

    def evaluated(self, values, way, out=None, where=True):
        index = _convert.common_index(values)
        arrays = [self._converters[i](value, self._label(i)) for i, value in enumerate(values)]
        answers, where = self._called(arrays, out, where)
        if _zelkovan.outcome() > 0:
            _refusals.settle(answers, lambda row: self._error(values, arrays, answers.shape, row), way, where)
        if self.gives_dates:
            answers = _convert.as_dates(answers)
        if out is not None:
            return _kept(answers, _only(out), where)
        return answers[()] if index is None else _convert.as_series(answers, index)

    def _called(self, arrays, out, where):
        """The answers, refused rows marked, and the mask. Written to out where nothing stands between."""
        ufunc = self.ufuncs[len(arrays)]
        _zelkovan.outcome()
        if out is None and where is True:
            return np.asarray(ufunc(*arrays)), True
        where = np.asarray(where, bool)
        target = None if out is None else _only(out)
        if target is None or target.dtype != np.float64:
            shapes = [array.shape for array in (*arrays, where)] + ([] if target is None else [target.shape])
            target = np.full(np.broadcast_shapes(*shapes), np.nan)
        return ufunc(*arrays, out=target, where=where), where

    def _error(self, values, arrays, shape, row):
        """The call of the refused row again, for the reason in words."""
        arguments = []
        for value, array, converter in zip(values, arrays, self._converters):
            words = _convert.words_of(value) if converter is _convert.basis else None
            one = np.broadcast_to(array if words is None else words, shape)[row]
            arguments.append(float(one) if words is None else _convert.worded(one))
        sentence, position, argument, element = _zelkovan.refusal(self.calculation, tuple(arguments))
        return _refusals.RefusedError(self.calculation, argument, position, element, row, sentence)


def _only(out):
    if isinstance(out, tuple):
        (out,) = out
    if not isinstance(out, np.ndarray):
        raise TypeError(f"out is an array, not {type(out).__name__}")
    return out


def _kept(answers, out, where):
    if answers is not out:
        np.copyto(out, answers, casting="same_kind", where=where)
    return out
