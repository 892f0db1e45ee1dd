// What the module hands to Python.
#pragma once

#include "adapters/numpy/python_objects.hpp"
#include "catalogue/catalogue.hpp"

namespace finance::adapters::numpy {

// {"name": "PRICE", "answers": ..., "documentation": ..., "example": (arguments, result), "result": "rate",
//  "parameters": ({"name": "settlement", "kind": "date", "meaning": ..., "optional": False}, ...)}
Owned catalogue_entry(const catalogue::Calculation& calculation);

// Null, with Python's error set, where there is none of that name.
const catalogue::Calculation* calculation_named(PyObject* name);

// Before all else; false with Python's error set.
bool import_numpy();

// Raw ufuncs, one for each number of arguments, all of float64: {6: price_6, 7: price_7}. Each is put into the module by
// its name too, so that it can be pickled.
Owned make_ufuncs(PyObject* module, const catalogue::Calculation& calculation);

// refusal(NAME, (float, text or float64 array, ...)) -> (sentence, position or None, parameter's name or None)
PyObject* refusal_of(PyObject* module, PyObject* arguments);

}  // namespace finance::adapters::numpy
