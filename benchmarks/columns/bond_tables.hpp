// The tables of column_speed for securities with coupons.
#pragma once

#include "benchmarks/columns/column_cases.hpp"

namespace finance::bench {

inline constexpr double day_2008 = 17532;  // 1 January 2008

void odd_first_price_60(Table& table, Random& random);
void odd_first_price_any(Table& table, Random& random);
void odd_first_yield_60(Table& table, Random& random);
void odd_first_yield_any(Table& table, Random& random);
void odd_last_price(Table& table, Random& random);
void odd_last_yield(Table& table, Random& random);
void accrued(Table& table, Random& random);
void price_60(Table& table, Random& random);
void price_any(Table& table, Random& random);
void yield_60(Table& table, Random& random);
void yield_any(Table& table, Random& random);
void duration_60(Table& table, Random& random);

}  // namespace finance::bench
