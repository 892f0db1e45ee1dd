// The catalogue's examples in SQL.
#pragma once

#include <string>
#include <vector>

#include "catalogue/catalogue.hpp"

namespace finance::test {

std::string sql_name(const catalogue::Calculation& calculation);  // "fin_price"

// "DATE", "VARCHAR", "DOUBLE", "DATE[]", "DOUBLE[]".
std::string sql_type(const catalogue::Parameter& parameter);

// The example's arguments, in order: DATE '2025-01-20', '0.05'::DOUBLE, 'ACTUAL', ['-1000', '600']::DOUBLE[]. A test fails
// where they are not the calculation's first parameters.
std::vector<std::string> sql_arguments(const catalogue::Calculation& calculation);

// "fin_price(a, b, ...)"
std::string sql_call(const catalogue::Calculation& calculation, const std::vector<std::string>& arguments);

}  // namespace finance::test
