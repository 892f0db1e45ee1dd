// Raw ufuncs, one for each calculation without lists and each number of arguments: price_6, price_7. All of float64.
#pragma once

#include "adapters/numpy/python_objects.hpp"
#include "catalogue/catalogue.hpp"

namespace finance::adapters::numpy {

// Before all else; false with Python's error set.
bool import_numpy();

// {6: price_6, 7: price_7}; each is put into the module by its name too, so that it can be pickled.
Owned make_ufuncs(PyObject* module, const catalogue::Calculation& calculation);

}  // namespace finance::adapters::numpy
