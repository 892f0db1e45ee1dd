// Why one call is refused, for Python.
#pragma once

#include "adapters/numpy/python_objects.hpp"

namespace finance::adapters::numpy {

// refusal(NAME, (float, text or float64 array, ...)) -> (sentence, position or None, parameter's name or None)
PyObject* refusal_of(PyObject* module, PyObject* arguments);

}  // namespace finance::adapters::numpy
