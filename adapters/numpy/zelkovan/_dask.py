"""dask's arrays and Series: the same call for each of their blocks, when they are computed.

What a refused call does is what was set when the call was written down, since blocks are computed elsewhere.
"""

import functools

import numpy as np

from . import _convert


def is_lazy(value):
    return hasattr(value, "__dask_graph__")


def any_lazy(values):
    return any(is_lazy(value) for value in values)


def call_block(function, way, *values):
    return function.evaluated(values, way)


def call_block_by(function, way, *values):
    *values, by = values
    return function.evaluated(values, way, by)


def _has_frames(values):
    import dask.array

    return any(is_lazy(value) and not isinstance(value, dask.array.Array) for value in values)


def _type(function):
    return np.dtype("M8[D]") if function.gives_dates else np.dtype("f8")


def scalars(function, values, way, out, where):
    if out is not None or where is not True:
        raise TypeError(f"{function.__name__}() takes no out and no where with dask's arrays")
    block = functools.partial(call_block, function, way)
    if _has_frames(values):
        return _partitions(block, values, _type(function))
    from dask.array.core import elemwise

    lazy = [np.asarray(value) if isinstance(value, (list, tuple)) else value for value in values]
    return elemwise(block, *lazy, dtype=_type(function))


def _partitions(block, values, dtype):
    import dask.array
    import dask.dataframe
    import pandas

    for value in values:
        array = isinstance(value, (dask.array.Array, list, tuple)) or np.ndim(value) > 0
        if array and not isinstance(value, (dask.dataframe.Series, pandas.Series)):
            raise TypeError("beside a dask Series an argument is a Series or one value, not an array")
    meta = pandas.Series([], dtype="M8[ns]" if dtype.kind == "M" else dtype)
    return dask.dataframe.map_partitions(block, *values, meta=meta)


# ---- Lists


def lists(function, values, way, by):
    if by is not None or _has_frames(values):
        return _series_lists(function, values, way, by)
    from dask.array import apply_gufunc

    signature = ",".join("(n)" if function.takes_list(i) else "()" for i in range(len(values))) + "->()"
    block = functools.partial(call_block, function, way)
    return apply_gufunc(
        block, signature, *values, output_dtypes=[_type(function)], allow_rechunk=True, vectorize=False
    )


def _series_lists(function, values, way, by):
    """A list may lie in any partition: they are put together when they are computed."""
    import dask
    import dask.array
    import dask.dataframe
    import pandas

    def whole(value):
        return value.repartition(npartitions=1) if isinstance(value, dask.dataframe.Series) else value

    if by is None:
        joined = [dask.delayed(pandas.concat)(value.to_delayed()) if is_lazy(value) else value for value in values]
        one = dask.delayed(call_block, pure=True)(function, way, *joined)
        return dask.array.from_delayed(one, shape=(), dtype=_type(function))
    if not isinstance(by, dask.dataframe.Series):
        raise TypeError("by is a dask Series where the lists are")
    block = functools.partial(call_block_by, function, way)
    meta = pandas.Series([], dtype=_type(function), index=pandas.Index([], dtype=by.dtype, name=by.name))
    answers = dask.dataframe.map_partitions(block, *map(whole, values), whole(by), meta=meta)
    return answers.clear_divisions()
