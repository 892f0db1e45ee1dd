// The catalogue as Python reads it.
#pragma once

#include "adapters/numpy/python_objects.hpp"
#include "catalogue/catalogue.hpp"

namespace finance::adapters::numpy {

// {"name": "PRICE", "answers": ..., "documentation": ..., "example": (arguments, result), "result": "rate",
//  "parameters": ({"name": "settlement", "kind": "date", "meaning": ..., "optional": False}, ...)}
Owned catalogue_entry(const catalogue::Calculation& calculation);

// Null, with Python's error set, where there is none of that name.
const catalogue::Calculation* calculation_named(PyObject* name);

}  // namespace finance::adapters::numpy
